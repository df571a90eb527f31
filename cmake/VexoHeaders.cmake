# Builds every header on its own, twice included, so that none leans on what another file happened
# to include before it.
option(VEXOLC_CHECK_HEADERS "Build every header on its own" ON)

function(vexo_check_headers name standard)
  foreach(header ${ARGN})
    string(MAKE_C_IDENTIFIER "${header}" stem)
    set(source "${CMAKE_BINARY_DIR}/headers/${stem}.cpp")
    file(CONFIGURE OUTPUT "${source}" CONTENT "#include <@header@>\n#include <@header@>\n" @ONLY)
    list(APPEND sources "${source}")
  endforeach()
  add_library(${name} OBJECT ${sources})
  set_target_properties(${name} PROPERTIES CXX_STANDARD ${standard})
  target_link_libraries(${name} PRIVATE vexolc vexo_sdk_headers vexo_warnings)
  if(VEXOLC_BUILD_SIM)
    target_link_libraries(${name} PRIVATE vexosim vexoboard)
  endif()
endfunction()

if(VEXOLC_CHECK_HEADERS)
  foreach(folder core platform l2 flow pktio l3 companion)
    file(GLOB headers RELATIVE "${CMAKE_SOURCE_DIR}" CONFIGURE_DEPENDS
         "${CMAKE_SOURCE_DIR}/${folder}/*.h")
    list(APPEND driver_headers ${headers})
  endforeach()
  if(own_sdk)
    file(GLOB_RECURSE sdk_headers RELATIVE "${CMAKE_SOURCE_DIR}/sdk/include" CONFIGURE_DEPENDS
         "${CMAKE_SOURCE_DIR}/sdk/include/*.h")
  endif()
  vexo_check_headers(vexo_check_headers_17 17 ${driver_headers} ${sdk_headers})
  if(VEXOLC_BUILD_SIM)
    file(GLOB_RECURSE sim_headers RELATIVE "${CMAKE_SOURCE_DIR}" CONFIGURE_DEPENDS
         "${CMAKE_SOURCE_DIR}/sim/*.h")
    vexo_check_headers(vexo_check_headers_20 20 ${sim_headers})
  endif()
endif()
