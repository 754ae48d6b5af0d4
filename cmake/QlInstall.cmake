include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

install(TARGETS ql_util EXPORT QuilletNativeUtilTargets RUNTIME DESTINATION bin ARCHIVE DESTINATION lib)
install(TARGETS qlutil dzip dunzip RUNTIME DESTINATION bin)
install(FILES ${QL_RUNTIME_DLLS} DESTINATION bin)
foreach(header ${QL_PUBLIC_HEADERS})
  get_filename_component(room ${header} DIRECTORY)
  install(FILES ${header} DESTINATION include/QuilletNativeUtil/${room})
endforeach()

# What the package's configuration names: the DLLs that go beside a host's program, and the word size.
set(QL_DLL_NAMES Quillet.Platform.Native.Util.dll DZIP32.DLL DUNZIP32.DLL)
foreach(dll ${QL_RUNTIME_DLLS})
  get_filename_component(name ${dll} NAME)
  list(APPEND QL_DLL_NAMES ${name})
endforeach()
math(EXPR QL_BITS "8 * ${CMAKE_SIZEOF_VOID_P}")

set(package_dir lib/cmake/QuilletNativeUtil)
install(EXPORT QuilletNativeUtilTargets NAMESPACE QuilletNativeUtil:: DESTINATION ${package_dir})
configure_package_config_file(cmake/QuilletNativeUtilConfig.cmake.in
  ${PROJECT_BINARY_DIR}/QuilletNativeUtilConfig.cmake INSTALL_DESTINATION ${package_dir})
# The configuration itself says what another word size means, in words.
write_basic_package_version_file(${PROJECT_BINARY_DIR}/QuilletNativeUtilConfigVersion.cmake
  COMPATIBILITY SameMajorVersion ARCH_INDEPENDENT)
install(FILES ${PROJECT_BINARY_DIR}/QuilletNativeUtilConfig.cmake
  ${PROJECT_BINARY_DIR}/QuilletNativeUtilConfigVersion.cmake DESTINATION ${package_dir})
install(FILES cmake/${CMAKE_SYSTEM_PROCESSOR}-w64-mingw32.cmake DESTINATION ${package_dir} RENAME toolchain.cmake)

set(document_dir share/doc/QuilletNativeUtil)
install(FILES README.md CHANGELOG.md DESTINATION ${document_dir})
install(DIRECTORY docs DESTINATION ${document_dir})
