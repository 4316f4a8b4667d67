# The version script of the shared library. The hooks stay weak, so a host's own still win.
function(zon_exports target)
  file(STRINGS cmake/exports.txt names)
  list(JOIN names ";\n    " ZON_EXPORTED_NAMES)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS cmake/exports.txt)
  configure_file(cmake/zon.map.in zon.map @ONLY)
  target_link_options(${target} PRIVATE LINKER:--version-script=${PROJECT_BINARY_DIR}/zon.map)
  set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS ${PROJECT_BINARY_DIR}/zon.map)
endfunction()
