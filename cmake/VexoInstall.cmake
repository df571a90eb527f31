# What `cmake --install` puts where, in components that are also the Debian packages: libraries, the
# headers that their users include, CMake and pkg-config files, and vexosh. Everything installed
# finds the rest from where it lies itself, so that the tree can be moved.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/vexolc")
file(RELATIVE_PATH bin_to_lib "${CMAKE_INSTALL_FULL_BINDIR}" "${CMAKE_INSTALL_FULL_LIBDIR}")
file(RELATIVE_PATH pkgconfig_to_prefix "${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig"
     "${CMAKE_INSTALL_PREFIX}")

# vexo_install_library(TARGET EXPORT RUNTIME_COMPONENT DEV_COMPONENT IMPORTED_NAME INCLUDE_DIR)
function(vexo_install_library target export runtime dev name include_dir)
  set_target_properties(${target} PROPERTIES EXPORT_NAME ${name} INSTALL_RPATH "$ORIGIN")
  install(TARGETS ${target} EXPORT ${export} LIBRARY COMPONENT ${runtime} NAMELINK_COMPONENT ${dev}
          ARCHIVE COMPONENT ${dev} INCLUDES DESTINATION "${include_dir}")
endfunction()

function(vexo_install_package_files dev export)
  install(EXPORT ${export} NAMESPACE vexolc:: DESTINATION "${package_dir}" COMPONENT ${dev})
  foreach(name ${ARGN})
    configure_file("${CMAKE_SOURCE_DIR}/cmake/package/${name}.pc.in"
                   "${CMAKE_BINARY_DIR}/package/${name}.pc" @ONLY)
    install(FILES "${CMAKE_BINARY_DIR}/package/${name}.pc"
            DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig" COMPONENT ${dev})
  endforeach()
endfunction()

# The driver. Some of its headers are of use inside the library only.
set(private_headers core/enum_table.h core/port_list.h core/result.h flow/field_qset.h l2/port_sweep.h
    l3/record.h pktio/receive.h platform/bus_access.h platform/sysconf.h)
foreach(folder core platform l2 flow pktio l3 companion)
  file(GLOB headers RELATIVE "${CMAKE_SOURCE_DIR}" CONFIGURE_DEPENDS
       "${CMAKE_SOURCE_DIR}/${folder}/*.h")
  list(REMOVE_ITEM headers ${private_headers})
  install(FILES ${headers} DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/vexolc/${folder}"
          COMPONENT libvexolc-dev)
endforeach()
set(driver_includes "${CMAKE_INSTALL_INCLUDEDIR}/vexolc")
vexo_install_library(vexolc vexolcDriver libvexolc0 libvexolc-dev driver "${driver_includes}")
vexo_install_library(vexo_companion vexolcDriver libvexocompanion0 libvexolc-dev companion
                     "${driver_includes}")
vexo_install_package_files(libvexolc-dev vexolcDriver vexolc)
configure_package_config_file(cmake/package/vexolcConfig.cmake.in
  "${CMAKE_BINARY_DIR}/package/vexolcConfig.cmake" INSTALL_DESTINATION "${package_dir}")
write_basic_package_version_file("${CMAKE_BINARY_DIR}/package/vexolcConfigVersion.cmake"
                                 COMPATIBILITY SameMinorVersion)
install(FILES "${CMAKE_BINARY_DIR}/package/vexolcConfig.cmake"
              "${CMAKE_BINARY_DIR}/package/vexolcConfigVersion.cmake"
        DESTINATION "${package_dir}" COMPONENT libvexolc-dev)

# The SDK interface and the simulated card. A vendor's headers are the vendor's to install.
if(own_sdk)
  install(DIRECTORY sdk/include/ DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/vexolc-sdk"
          COMPONENT libvexolc-dev FILES_MATCHING PATTERN "*.h")
  vexo_install_library(vexo_sdk_headers vexolcSdk libvexolc-dev libvexolc-dev sdk_interface
                       "${CMAKE_INSTALL_INCLUDEDIR}/vexolc-sdk")
  vexo_install_package_files(libvexolc-dev vexolcSdk vexolc-sdk)
endif()
if(own_sdk AND VEXOLC_BUILD_SIM)
  install(DIRECTORY sim/include/vexosim DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}"
          COMPONENT libvexosim-dev FILES_MATCHING PATTERN "*.h")
  set(sim_args vexolcSim libvexosim0 libvexosim-dev)
  vexo_install_library(vexosim ${sim_args} sim "${CMAKE_INSTALL_INCLUDEDIR}")
  vexo_install_library(vexoboard ${sim_args} board "${CMAKE_INSTALL_INCLUDEDIR}")
  vexo_install_library(vexo_atomic ${sim_args} atomic "${CMAKE_INSTALL_INCLUDEDIR}")
  vexo_install_package_files(libvexosim-dev vexolcSim vexosim)
endif()
if(own_sdk AND TARGET vexokit)
  install(DIRECTORY tests/kit/ DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/vexokit"
          COMPONENT libvexosim-dev FILES_MATCHING PATTERN "*.h")
  vexo_install_library(vexokit vexolcKit libvexosim-dev libvexosim-dev kit
                       "${CMAKE_INSTALL_INCLUDEDIR};${driver_includes}")
  vexo_install_package_files(libvexosim-dev vexolcKit)
endif()

if(own_sdk AND TARGET vexosh)
  set_target_properties(vexosh PROPERTIES INSTALL_RPATH "$ORIGIN/${bin_to_lib}")
  install(TARGETS vexosh COMPONENT vexosh)
  install(FILES "${CMAKE_BINARY_DIR}/tools/vexosh/vexosh.1"
          DESTINATION "${CMAKE_INSTALL_MANDIR}/man1" COMPONENT vexosh)
endif()
