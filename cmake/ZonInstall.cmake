# Installing, in the components runtime, dev, doc and (from tool/) tool.
include(CMakePackageConfigHelpers)

# The public headers and those that they include.
function(zon_public_headers result)
  set(found)
  set(waiting api/zon.h api/zonx.h api/zonclasses.h)
  while(waiting)
    list(POP_FRONT waiting header)
    list(APPEND found ${header})
    file(STRINGS ${header} includes REGEX "^#include \"")
    list(TRANSFORM includes REPLACE "^#include \"([^\"]+)\".*$" "\\1")
    list(APPEND waiting ${includes})
    list(REMOVE_DUPLICATES waiting)
    list(REMOVE_ITEM waiting ${found})
  endwhile()
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${found})
  set(${result} ${found} PARENT_SCOPE)
endfunction()

# Installs a text under a name, compressed if gzip is available.
find_program(ZON_GZIP gzip)
mark_as_advanced(ZON_GZIP)
function(zon_install_text source name destination component)
  get_filename_component(source ${source} ABSOLUTE)
  if(ZON_GZIP)
    set(packed ${PROJECT_BINARY_DIR}/packed/${name}.gz)
    file(MAKE_DIRECTORY ${PROJECT_BINARY_DIR}/packed)
    execute_process(COMMAND ${ZON_GZIP} -9nc ${source} OUTPUT_FILE ${packed})
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${source})
    install(FILES ${packed} DESTINATION ${destination} COMPONENT ${component})
  else()
    install(FILES ${source} RENAME ${name} DESTINATION ${destination} COMPONENT ${component})
  endif()
endfunction()

install(TARGETS zon EXPORT zonTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT dev)
if(ZON_STATIC)
  install(TARGETS zon_static EXPORT zonTargets
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT dev)
endif()

# zon.h, zonx.h and zonclasses.h go to the include folder of the prefix, the headers that zonclasses.h
# includes to zon/ beside them, without the folders of the sources. Includes are changed to match, so that
# every header is found with the include folder alone.
zon_public_headers(ZON_PUBLIC_HEADERS)
foreach(header IN LISTS ZON_PUBLIC_HEADERS)
  set(below "")
  set(folder /zon)
  if(header MATCHES "^api/zon(x|classes)?\\.h$")
    set(below zon/)
    set(folder "")
  endif()
  file(READ ${header} text)
  string(REGEX REPLACE "(\n#include \")[a-z]+/" "\\1${below}" text "${text}")
  get_filename_component(name ${header} NAME)
  file(WRITE ${PROJECT_BINARY_DIR}/headers${folder}/${name} "${text}")
  install(FILES ${PROJECT_BINARY_DIR}/headers${folder}/${name}
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}${folder} COMPONENT dev)
endforeach()

# The interface for C++, over the two for C.
install(FILES hosts/cpp/zon.hpp DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT dev)

set(folder ${CMAKE_INSTALL_LIBDIR}/cmake/zon)
install(EXPORT zonTargets NAMESPACE zon:: DESTINATION ${folder} COMPONENT dev)
configure_package_config_file(cmake/zonConfig.cmake.in zonConfig.cmake INSTALL_DESTINATION ${folder})
write_basic_package_version_file(zonConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/zonConfig.cmake ${PROJECT_BINARY_DIR}/zonConfigVersion.cmake
  DESTINATION ${folder} COMPONENT dev)

# zon.pc finds the prefix relative to its own folder. Programs that link the static library also need the
# libraries that the shared one was linked with.
file(RELATIVE_PATH ZON_PC_UP ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
set(ZON_PC_LIBS)
foreach(library stdc++ c++ c++abi m)
  if(library IN_LIST CMAKE_CXX_IMPLICIT_LINK_LIBRARIES)
    string(APPEND ZON_PC_LIBS " -l${library}")
  endif()
endforeach()
string(REGEX REPLACE "/$" "" ZON_PC_UP ${ZON_PC_UP})
configure_file(cmake/zon.pc.in zon.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/zon.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT dev)

# The pages keep their relative places, so links between them work.
install(FILES README.md CONTRIBUTING.md SECURITY.md DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT doc)
install(FILES bench/RESULTS.md DESTINATION ${CMAKE_INSTALL_DOCDIR}/bench COMPONENT doc)
install(DIRECTORY examples DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT doc
  FILES_MATCHING PATTERN *.zon PATTERN *.c PATTERN *.cpp PATTERN *.f90 PATTERN *.pas PATTERN *.py)
install(DIRECTORY docs DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT doc
  FILES_MATCHING PATTERN *.md PATTERN man EXCLUDE)
zon_install_text(CHANGELOG.md changelog ${CMAKE_INSTALL_DOCDIR} doc)
file(GLOB pages CONFIGURE_DEPENDS docs/man/*.[135])
foreach(page IN LISTS pages)
  get_filename_component(name ${page} NAME)
  string(REGEX MATCH "[135]$" section ${name})
  set(component tool)  # zon(5) too: it is for people who edit files
  if(section EQUAL 3)
    set(component dev)
  endif()
  zon_install_text(${page} ${name} ${CMAKE_INSTALL_MANDIR}/man${section} ${component})
endforeach()
