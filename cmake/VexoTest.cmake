# vexo_add_test(NAME SOURCE... [LABELS label...] [LOCK resource...] [LIBS target...])
#
# A GoogleTest program on the test kit. Each of its tests runs in a process of its own, because a
# card is brought up once per process. Labels mean something:
#   threads  starts the SDK's threads: also run under TSan
#   hosts    makes namespaces and TAPs: run one at a time, natively and under ASan only
include(GoogleTest)

add_custom_target(vexo_tests)
add_custom_target(vexo_thread_tests)

# Test code is not optimised: it builds in a third of the time, and what it tests is.
function(vexo_set_up_test_target name)
  set_target_properties(${name} PROPERTIES CXX_STANDARD 20)
  target_compile_options(${name} PRIVATE -O0)
  target_link_libraries(${name} PRIVATE vexokit vexolc vexosim vexoboard GTest::gtest_main
                                        vexo_warnings)
endfunction()

# One precompiled header for all tests. Left out under a compiler cache, which it would defeat.
# A library that is compiled as a program is, so that nothing need be linked before it is used.
option(VEXOLC_TEST_PCH "Precompile what every test includes" ON)
function(vexo_make_test_pch)
  file(CONFIGURE OUTPUT "${CMAKE_CURRENT_BINARY_DIR}/test_pch.cpp" CONTENT "\n")
  add_library(vexo_test_pch OBJECT EXCLUDE_FROM_ALL "${CMAKE_CURRENT_BINARY_DIR}/test_pch.cpp")
  vexo_set_up_test_target(vexo_test_pch)
  set_target_properties(vexo_test_pch PROPERTIES POSITION_INDEPENDENT_CODE OFF)
  target_compile_options(vexo_test_pch PRIVATE -fPIE)
  target_precompile_headers(vexo_test_pch PRIVATE <gtest/gtest.h> <algorithm> <functional> <map>
                            <memory> <string> <vector>)
endfunction()

function(vexo_use_test_pch name)
  if(VEXOLC_TEST_PCH AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    if(NOT TARGET vexo_test_pch)
      vexo_make_test_pch()
    endif()
    target_precompile_headers(${name} REUSE_FROM vexo_test_pch)
  endif()
endfunction()

function(vexo_add_test name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "LABELS;LOCK;LIBS")
  add_executable(${name} ${arg_UNPARSED_ARGUMENTS})
  vexo_set_up_test_target(${name})
  target_link_libraries(${name} PRIVATE ${arg_LIBS})
  vexo_use_test_pch(${name})
  add_dependencies(vexo_tests ${name})
  if("threads" IN_LIST arg_LABELS)
    add_dependencies(vexo_thread_tests ${name})
  endif()
  if("hosts" IN_LIST arg_LABELS)
    list(APPEND arg_LOCK hosts)
  endif()
  set(properties TIMEOUT 120)
  if(arg_LABELS)
    list(APPEND properties LABELS "${arg_LABELS}")
  endif()
  if(arg_LOCK)
    list(APPEND properties RESOURCE_LOCK "${arg_LOCK}")
  endif()
  gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 60
                       PROPERTIES ${properties})
endfunction()
