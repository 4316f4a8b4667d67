# Packages for Debian: libzon0, libzon-dev, python3-zon and, with the command, zon-tools, with Fortran,
# libzon-fortran-dev. The prefix of the build must be /usr, as in scripts/package.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_VENDOR "the zon developers")
set(CPACK_PACKAGE_CONTACT "zon developers <zon@example.org>")
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR}/packages)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")  # each has its own
set(CPACK_STRIP_FILES ON)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR})

# Describes one package, and installs the files that every package has.
function(zon_package component name section summary text)
  set(documents ${CMAKE_INSTALL_DATAROOTDIR}/doc/${name})
  install(FILES ${PROJECT_BINARY_DIR}/copyright DESTINATION ${documents} COMPONENT ${component})
  zon_install_text(${PROJECT_BINARY_DIR}/changelog changelog.Debian ${documents} ${component})
  string(TOUPPER ${component} upper)
  set(CPACK_DEBIAN_${upper}_PACKAGE_NAME ${name} PARENT_SCOPE)
  set(CPACK_DEBIAN_${upper}_PACKAGE_SECTION ${section} PARENT_SCOPE)
  set(CPACK_DEBIAN_${upper}_DESCRIPTION "${summary}\n${text}" PARENT_SCOPE)
  set(CPACK_COMPONENT_${upper}_GROUP ${component} PARENT_SCOPE)
  set(CPACK_COMPONENTS_ALL ${CPACK_COMPONENTS_ALL} ${component} PARENT_SCOPE)
endfunction()

file(READ LICENSE licence)
string(REGEX REPLACE "^MIT License\n\nCopyright [^\n]*\n\n" "" licence "${licence}")
string(REGEX REPLACE "\n\n" "\n.\n" licence "${licence}")
string(REGEX REPLACE "\n([^\n])" "\n \\1" licence "${licence}")
file(WRITE ${PROJECT_BINARY_DIR}/copyright
  "Format: https://www.debian.org/doc/packaging-manuals/copyright-format/1.0/\nUpstream-Name: zon\n\n"
  "Files: *\nCopyright: 2026 the zon developers\nLicense: MIT\n ${licence}")
file(WRITE ${PROJECT_BINARY_DIR}/changelog
  "zon (${PROJECT_VERSION}-1) unstable; urgency=low\n\n  * See CHANGELOG.md of the sources.\n\n"
  " -- ${CPACK_PACKAGE_CONTACT}  Thu, 01 Jan 2026 00:00:00 +0000\n")

set(about "zon parameter files hold named sections, keywords and lists of typed values.")
zon_package(runtime libzon${PROJECT_VERSION_MAJOR} libs "library for zon parameter files"
  "${about}\nThis library reads, queries, builds, edits, compares and writes them.")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
file(WRITE ${PROJECT_BINARY_DIR}/triggers "activate-noawait ldconfig\n")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA ${PROJECT_BINARY_DIR}/triggers ${PROJECT_BINARY_DIR}/symbols)
add_custom_command(TARGET zon POST_BUILD
  COMMAND dpkg-gensymbols -plibzon${PROJECT_VERSION_MAJOR} -v${PROJECT_VERSION}-1 -c4 -e$<TARGET_SONAME_FILE:zon>
    -I${PROJECT_SOURCE_DIR}/cmake/libzon0.symbols -O${PROJECT_BINARY_DIR}/symbols)

set(same "libzon${PROJECT_VERSION_MAJOR} (= ${PROJECT_VERSION}-1)")
zon_package(dev libzon-dev libdevel "library for zon parameter files (development files)"
  "${about}\nThis package contains the headers and libraries to build programs with.")
set(CPACK_DEBIAN_DEV_PACKAGE_DEPENDS ${same})
list(APPEND CPACK_COMPONENTS_ALL doc)
set(CPACK_COMPONENT_DOC_GROUP dev)

if(TARGET zon_tool)
  zon_package(tool zon-tools utils "command for zon parameter files"
    "${about}\nThis package contains the command zon, which reads and checks them.")
  set(CPACK_DEBIAN_TOOL_PACKAGE_DEPENDS ${same})
  set(CPACK_DEBIAN_TOOL_PACKAGE_SHLIBDEPS ON)
endif()

if(TARGET zon_fortran)
  zon_package(fortran libzon-fortran-dev libdevel "library for zon parameter files (Fortran module)"
    "${about}\nThis package contains the Fortran module zon and its static library.")
  set(CPACK_DEBIAN_FORTRAN_PACKAGE_DEPENDS "libzon-dev (= ${PROJECT_VERSION}-1)")
  get_target_property(format zon_fortran ZON_MODULE_FORMAT)
  if(format MATCHES "gfortran")
    string(APPEND CPACK_DEBIAN_FORTRAN_PACKAGE_DEPENDS ", gfortran | ${format}")
  endif()
endif()

# Python. The scripts compile the package for every Python of the system and remove what was compiled.
zon_package(python python3-zon python "package for zon parameter files (Python 3)"
  "${about}\nThis package contains the Python package zon.")
set(CPACK_DEBIAN_PYTHON_PACKAGE_ARCHITECTURE all)
set(CPACK_DEBIAN_PYTHON_PACKAGE_DEPENDS
  "python3 (>= 3.9), python3:any, libzon${PROJECT_VERSION_MAJOR} (>= ${PROJECT_VERSION}-1)")
set(CPACK_DEBIAN_PYTHON_PACKAGE_SUGGESTS python3-numpy)
file(WRITE ${PROJECT_BINARY_DIR}/python/postinst
  "#!/bin/sh\nset -e\nif command -v py3compile >/dev/null; then py3compile -p python3-zon; fi\n")
file(WRITE ${PROJECT_BINARY_DIR}/python/prerm
  "#!/bin/sh\nset -e\nif command -v py3clean >/dev/null; then py3clean -p python3-zon; fi\n")
set(CPACK_DEBIAN_PYTHON_PACKAGE_CONTROL_EXTRA
  ${PROJECT_BINARY_DIR}/python/postinst ${PROJECT_BINARY_DIR}/python/prerm)
include(CPack)
