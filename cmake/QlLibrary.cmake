# Every room but the engines, which are programs of their own behind the library.
file(STRINGS cmake/floors.txt floors REGEX "^[a-z]")
string(REPLACE " " ";" rooms "${floors}")
list(REMOVE_ITEM rooms engine)
foreach(room ${rooms})
  add_subdirectory(${room})
endforeach()

get_property(QL_SOURCES GLOBAL PROPERTY QL_SOURCES)
get_property(QL_PUBLIC_HEADERS GLOBAL PROPERTY QL_PUBLIC_HEADERS)

if(QL_NATIVE)
  find_package(Threads REQUIRED)
  set(fakes registry system text threads)
  list(TRANSFORM fakes REPLACE "(.+)" "tests/native/fake_\\1.cpp")
  add_library(ql_util STATIC ${QL_SOURCES} ${fakes})
  target_link_libraries(ql_util PUBLIC ql_options Threads::Threads)
  target_compile_definitions(ql_util PUBLIC QL_UTIL_STATIC)
  ql_precompile(ql_util)
  return()
endif()

set(QL_FILE_DESCRIPTION "Quillet native utility library")
set(QL_INTERNAL_NAME Quillet.Platform.Native.Util)
configure_file(cmake/version.rc.in ${PROJECT_BINARY_DIR}/version.rc @ONLY)
add_library(ql_util SHARED ${QL_SOURCES} ${PROJECT_BINARY_DIR}/version.rc)
add_library(QuilletNativeUtil::util ALIAS ql_util)
set_target_properties(ql_util PROPERTIES
  PREFIX "" OUTPUT_NAME "Quillet.Platform.Native.Util" EXPORT_NAME util
  ARCHIVE_OUTPUT_NAME QuilletNativeUtil
  CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON)
target_compile_definitions(ql_util PRIVATE QL_UTIL_BUILD)
ql_precompile(ql_util platform/win32.h)
target_link_libraries(ql_util PRIVATE $<BUILD_INTERFACE:ql_options> $<BUILD_INTERFACE:ql_shipped>
  $<BUILD_INTERFACE:ql_late> advapi32 ntdll)
ql_part_symbols(ql_util)
target_include_directories(ql_util INTERFACE
  $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}> $<INSTALL_INTERFACE:include/QuilletNativeUtil>)
target_compile_features(ql_util INTERFACE cxx_std_20)
