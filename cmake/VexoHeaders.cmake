# Installs the libraries with the headers that their users include, and builds every header on its
# own, twice included, so that none leans on what another file happened to include before it.
option(VEXOLC_CHECK_HEADERS "Build every header on its own" ON)

set(driver_folders core platform l2 flow pktio l3 companion)
# Of use inside the library only.
set(private_headers core/enum_table.h core/port_list.h core/result.h l3/record.h
    platform/bus_access.h)

include(GNUInstallDirs)
install(TARGETS vexolc vexo_companion vexosim vexoboard)
foreach(folder ${driver_folders})
  file(GLOB headers RELATIVE "${CMAKE_SOURCE_DIR}" CONFIGURE_DEPENDS
       "${CMAKE_SOURCE_DIR}/${folder}/*.h")
  list(APPEND checked17 ${headers})
  list(REMOVE_ITEM headers ${private_headers})
  install(FILES ${headers} DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/vexolc/${folder}")
endforeach()
install(DIRECTORY sim/include/vexosim DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}")

function(vexo_check_headers name standard)
  foreach(header ${ARGN})
    string(MAKE_C_IDENTIFIER "${header}" stem)
    set(source "${CMAKE_BINARY_DIR}/headers/${stem}.cpp")
    file(CONFIGURE OUTPUT "${source}" CONTENT "#include <@header@>\n#include <@header@>\n" @ONLY)
    list(APPEND sources "${source}")
  endforeach()
  add_library(${name} OBJECT ${sources})
  set_target_properties(${name} PROPERTIES CXX_STANDARD ${standard})
  target_link_libraries(${name} PRIVATE vexolc vexosim vexoboard vexo_warnings)
endfunction()

if(VEXOLC_CHECK_HEADERS)
  file(GLOB_RECURSE sdk_headers RELATIVE "${CMAKE_SOURCE_DIR}/sdk/include" CONFIGURE_DEPENDS
       "${CMAKE_SOURCE_DIR}/sdk/include/*.h")
  file(GLOB_RECURSE sim_headers RELATIVE "${CMAKE_SOURCE_DIR}" CONFIGURE_DEPENDS
       "${CMAKE_SOURCE_DIR}/sim/*.h")
  vexo_check_headers(vexo_check_headers_17 17 ${checked17} ${sdk_headers})
  vexo_check_headers(vexo_check_headers_20 20 ${sim_headers})
endif()
