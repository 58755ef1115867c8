file(GLOB_RECURSE exportedHeaders CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/include/*.h)
set(versionScript ${PROJECT_BINARY_DIR}/contextdata.map)
set(versionScriptTools
  ${PROJECT_SOURCE_DIR}/packaging/make-version-script.py
  ${PROJECT_SOURCE_DIR}/packaging/declarations.py
  ${PROJECT_SOURCE_DIR}/packaging/symbols.py)

# A shared library of the context-data objects that exports what the headers mark. Its host is the embedded one, or
# external: then the symbols of host/ stay undefined and come from the process that loads the library.
function(add_context_data_library target host)
  if(NOT TARGET version_script)
    add_custom_command(
      OUTPUT ${versionScript}
      COMMAND ${python} -B ${PROJECT_SOURCE_DIR}/packaging/make-version-script.py
              ${PROJECT_SOURCE_DIR}/include CONTEXTDATA_${PROJECT_VERSION_MAJOR} ${versionScript}
              $<TARGET_OBJECTS:contextdata_objects>
      DEPENDS ${versionScriptTools} ${exportedHeaders} contextdata_objects $<TARGET_OBJECTS:contextdata_objects>
      COMMAND_EXPAND_LISTS VERBATIM
      COMMENT "Writing the version script from the marks")
    add_custom_target(version_script DEPENDS ${versionScript})
  endif()
  add_library(${target} SHARED $<TARGET_OBJECTS:contextdata_objects>)
  add_dependencies(${target} version_script)
  target_link_libraries(${target} PUBLIC host)
  target_include_directories(${target} PUBLIC $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include>)
  target_link_options(${target} PRIVATE -Wl,--version-script=${versionScript})
  set_target_properties(${target} PROPERTIES
    LINK_DEPENDS ${versionScript} VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR})
  if(host STREQUAL embedded)
    target_link_libraries(${target} PUBLIC embedded)
    target_link_options(${target} PRIVATE -Wl,-z,defs)
  endif()
endfunction()
