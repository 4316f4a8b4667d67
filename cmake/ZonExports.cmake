# Makes the version script of the shared library from its list of symbols. Each line of the list is a name, or
# a pattern for the C++ names of one kind. Patterns are mangled names: in demangled form a template of the
# standard library that returns an exported class would match too.
function(zon_exports target)
  set(symbols ${PROJECT_SOURCE_DIR}/cmake/libzon0.symbols)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${symbols})
  file(STRINGS ${symbols} ZON_EXPORTS REGEX "^ .+@ZON_0")
  list(REMOVE_ITEM ZON_EXPORTS " ZON_0@ZON_0 0.1.0")
  list(TRANSFORM ZON_EXPORTS REPLACE "^ (\\(regex\\)\"\\^)?(.+)@ZON_0.*" "\\2")
  list(TRANSFORM ZON_EXPORTS REPLACE "\\.\\*" "*")
  list(JOIN ZON_EXPORTS ";\n    " ZON_EXPORTS)
  configure_file(${PROJECT_SOURCE_DIR}/cmake/zon.map.in zon.map @ONLY)
  target_link_options(${target} PRIVATE LINKER:--version-script=${PROJECT_BINARY_DIR}/zon.map)
  set(interposed ${PROJECT_SOURCE_DIR}/cmake/zon.interposed)
  target_link_options(${target} PRIVATE LINKER:--dynamic-list=${interposed})
  set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS ${PROJECT_BINARY_DIR}/zon.map ${interposed})
endfunction()
