# vexo_add_test(NAME SOURCE...): a GoogleTest program on the test kit. Each of its tests runs in a
# process of its own, because a card is brought up once per process.
include(GoogleTest)
function(vexo_add_test name)
  add_executable(${name} ${ARGN})
  set_target_properties(${name} PROPERTIES CXX_STANDARD 20)
  target_link_libraries(${name} PRIVATE vexokit vexolc vexosim vexoboard GTest::gtest_main
                                        vexo_warnings)
  gtest_discover_tests(${name} DISCOVERY_TIMEOUT 60 PROPERTIES TIMEOUT 120)
endfunction()
