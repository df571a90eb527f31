# Debian packages by CPack, one for each component of cmake/VexoInstall.cmake;
# scripts/package.sh makes them.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME vexolc)
set(CPACK_PACKAGE_VENDOR "vexolc")
set(VEXOLC_PACKAGE_CONTACT "vexolc maintainers <vexolc@example.org>"
    CACHE STRING "Who answers for the Debian packages")
set(CPACK_PACKAGE_CONTACT "${VEXOLC_PACKAGE_CONTACT}")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${CMAKE_BINARY_DIR}" "${CMAKE_BINARY_DIR}/companion"
    "${CMAKE_BINARY_DIR}/sim")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_PRE_BUILD_SCRIPTS "${CMAKE_SOURCE_DIR}/cmake/package/ForDebian.cmake")

configure_file(cmake/package/changelog.in "${CMAKE_BINARY_DIR}/package/changelog" @ONLY)
configure_file(cmake/package/copyright "${CMAKE_BINARY_DIR}/package/copyright" COPYONLY)

# vexo_package(COMPONENT SECTION DEPENDS SUMMARY TEXT)
set(own_version "(= ${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE})")
macro(vexo_package name section depends summary text)
  string(TOUPPER "${name}" upper)
  list(APPEND CPACK_COMPONENTS_ALL ${name})
  set(CPACK_DEBIAN_${upper}_PACKAGE_NAME ${name})
  set(CPACK_DEBIAN_${upper}_PACKAGE_SECTION ${section})
  set(CPACK_DEBIAN_${upper}_PACKAGE_DEPENDS "${depends}")
  set(CPACK_DEBIAN_${upper}_DESCRIPTION "${summary}\n${text}")
  if("${section}" STREQUAL "libs")
    set(CPACK_DEBIAN_${upper}_PACKAGE_CONTROL_EXTRA "${CMAKE_SOURCE_DIR}/cmake/package/triggers")
  endif()
  foreach(document copyright changelog.Debian.gz)
    install(FILES "${CMAKE_BINARY_DIR}/package/${document}"
            DESTINATION "${CMAKE_INSTALL_DATADIR}/doc/${name}" COMPONENT ${name} EXCLUDE_FROM_ALL)
  endforeach()
endmacro()

vexo_package(libvexolc0 libs "libvexocompanion0 ${own_version}"
"line-card driver for a 54-port Ethernet switch"
"The driver makes 179 operations of a switch chip available behind three C entry
points. Its calls to the switch SDK are undefined in it: the program that uses
it brings an SDK, the vendor's on a card or libvexosim0, the simulated card.")
vexo_package(libvexocompanion0 libs "" "companion library of the vexolc line-card driver"
"The part of the line-card manager's library that the driver uses, so that the
driver can be loaded without the manager.")
vexo_package(libvexosim0 libs "" "simulated line card for the vexolc driver"
"The switch chip behind the calls of its SDK, forwarding real frames between TAP
interfaces, packet sockets, capture files and memory, and the board's device
nodes, served inside the process.")
vexo_package(libvexolc-dev libdevel
"libvexolc0 ${own_version}, libvexocompanion0 ${own_version}"
"line-card driver for a 54-port Ethernet switch, development files"
"Headers, CMake and pkg-config files of the driver, of its companion library,
and of the switch SDK's interface as the driver sees it.")
vexo_package(libvexosim-dev libdevel "libvexosim0 ${own_version}, libvexolc-dev ${own_version}"
"simulated line card for the vexolc driver, development files"
"The control interface of the simulated card, by which tests and tools hold it,
and the test kit for GoogleTest.")
set(CPACK_DEBIAN_LIBVEXOSIM-DEV_PACKAGE_SUGGESTS libgtest-dev)
vexo_package(vexosh net "libvexolc0 ${own_version}, libvexosim0 ${own_version}"
"shell for a simulated line card"
"Brings a simulated line card up through the vexolc driver, attaches its ports,
and plays the manager: every operation of the driver, tables, captures, and
traces of what becomes of a frame and why.")
include(CPack)
