include(CMakePackageConfigHelpers)

set(packageFolder ${CMAKE_INSTALL_LIBDIR}/cmake/contextdata)
install(DIRECTORY include/contextdata host DESTINATION ${headerFolder} FILES_MATCHING PATTERN "*.h")
install(DIRECTORY share/ DESTINATION ${CMAKE_INSTALL_DATADIR})

# With an external host the package offers the library alone: whoever links it brings the host.
set(installedTargets contextdata host)
set(hostLibraryFlag "")
if(CONTEXTDATA_HOST STREQUAL embedded)
  list(APPEND installedTargets embedded contextdata_command)
  install(FILES embedded/CodePolicy.h embedded/Description.h embedded/Host.h embedded/Inspection.h embedded/Outline.h
    embedded/Snapshot.h embedded/ValueDescription.h
    DESTINATION ${headerFolder}/embedded)
  install(FILES syntax/Position.h DESTINATION ${headerFolder}/syntax)
  set(hostLibraryFlag "-lcontextdata-host")
endif()
set_target_properties(host PROPERTIES EXPORT_NAME headers)
set_target_properties(embedded PROPERTIES EXPORT_NAME host)
set_target_properties(contextdata_command PROPERTIES EXPORT_NAME command)
install(TARGETS ${installedTargets} EXPORT contextdata)
install(EXPORT contextdata NAMESPACE contextdata:: FILE contextdataTargets.cmake DESTINATION ${packageFolder})

configure_package_config_file(packaging/contextdataConfig.cmake.in contextdataConfig.cmake
  INSTALL_DESTINATION ${packageFolder})
write_basic_package_version_file(contextdataConfigVersion.cmake COMPATIBILITY SameMajorVersion)
cmake_path(RELATIVE_PATH CMAKE_INSTALL_FULL_LIBDIR BASE_DIRECTORY ${CMAKE_INSTALL_PREFIX} OUTPUT_VARIABLE libFolder)
string(REGEX REPLACE "[^/]+" ".." prefixFromLibFolder "${libFolder}")
configure_file(packaging/contextdata.pc.in contextdata.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/contextdataConfig.cmake ${PROJECT_BINARY_DIR}/contextdataConfigVersion.cmake
  DESTINATION ${packageFolder})
install(FILES ${PROJECT_BINARY_DIR}/contextdata.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
