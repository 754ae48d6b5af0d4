include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

install(TARGETS ql_util EXPORT QuilletNativeUtilTargets RUNTIME DESTINATION bin ARCHIVE DESTINATION lib)
install(TARGETS qlutil dzip dunzip RUNTIME DESTINATION bin)
install(FILES ${QL_RUNTIME_DLLS} DESTINATION bin)
foreach(header ${QL_PUBLIC_HEADERS})
  get_filename_component(room ${header} DIRECTORY)
  install(FILES ${header} DESTINATION include/QuilletNativeUtil/${room})
endforeach()

set(package_dir lib/cmake/QuilletNativeUtil)
install(EXPORT QuilletNativeUtilTargets NAMESPACE QuilletNativeUtil:: DESTINATION ${package_dir})
configure_package_config_file(cmake/QuilletNativeUtilConfig.cmake.in
  ${PROJECT_BINARY_DIR}/QuilletNativeUtilConfig.cmake INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/QuilletNativeUtilConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/QuilletNativeUtilConfig.cmake
  ${PROJECT_BINARY_DIR}/QuilletNativeUtilConfigVersion.cmake DESTINATION ${package_dir})
