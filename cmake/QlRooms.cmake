# Warnings and language facts that every target of this project shares.
add_library(ql_options INTERFACE)
target_include_directories(ql_options INTERFACE $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>)
target_compile_options(ql_options INTERFACE -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror)
if(QL_NATIVE)
  target_include_directories(ql_options INTERFACE $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/tests/native/include>)
  # A wide character has a sign here and none on Windows, so that changes of sign say nothing about the product.
  target_compile_options(ql_options INTERFACE
    $<$<CXX_COMPILER_ID:Clang>:-Wthread-safety> $<$<CXX_COMPILER_ID:Clang>:-Wno-sign-conversion>)
else()
  target_compile_definitions(ql_options INTERFACE _WIN32_WINNT=0x0601 WINVER=0x0601)
  if(CMAKE_SIZEOF_VOID_P EQUAL 4)
    # Doubles are doubles: the x87 unit would carry extra bits into some results and not into others.
    target_compile_options(ql_options INTERFACE -msse2 -mfpmath=sse)
  endif()
  # The cold part that this compiler splits off a function may be empty. It then shares its address with the next one,
  # and the unwinder may find the empty one and end the program at a throw that somebody would have caught.
  target_compile_options(ql_options INTERFACE -fno-reorder-blocks-and-partition)
endif()

# ql_precompile(TARGET [HEADER…]): reads beforehand what most sources begin with, which takes longer than all that
# follows.
function(ql_precompile target)
  target_precompile_headers(${target} PRIVATE <algorithm> <functional> <memory> <string> <string_view> <vector> ${ARGN})
endfunction()

# ql_room(NAME [NATIVE] PUBLIC headers… SOURCES files…): the files of a room. PUBLIC headers are installed. NATIVE marks
# a room that also builds without windows; WINDOWS_SOURCES are left out there.
set_property(GLOBAL PROPERTY QL_PUBLIC_HEADERS)
set_property(GLOBAL PROPERTY QL_SOURCES)
function(ql_room name)
  cmake_parse_arguments(ROOM "NATIVE" "" "PUBLIC;SOURCES;WINDOWS_SOURCES" ${ARGN})
  list(TRANSFORM ROOM_PUBLIC PREPEND ${name}/)
  set_property(GLOBAL APPEND PROPERTY QL_PUBLIC_HEADERS ${ROOM_PUBLIC})
  if(QL_NATIVE AND NOT ROOM_NATIVE)
    return()
  endif()
  if(NOT QL_NATIVE)
    list(APPEND ROOM_SOURCES ${ROOM_WINDOWS_SOURCES})
  endif()
  list(TRANSFORM ROOM_SOURCES PREPEND ${PROJECT_SOURCE_DIR}/${name}/)
  set_property(GLOBAL APPEND PROPERTY QL_SOURCES ${ROOM_SOURCES})
endfunction()
