# What every test program is made with.
find_package(GTest REQUIRED)
include(GoogleTest)

# tesmar_test(NAME SOURCES... USES floors... [LABELS labels...])
# Tests of the label "soak" have a long form: TESMAR_SOAK=f makes them f times as long.
function(tesmar_test name)
  cmake_parse_arguments(TEST "" "" "SOURCES;USES;LABELS" ${ARGN})
  add_executable(${name} ${TEST_SOURCES})
  target_link_libraries(${name} PRIVATE ${TEST_USES} GTest::gtest GTest::gtest_main)
  tesmar_warnings(${name})
  gtest_discover_tests(${name} DISCOVERY_TIMEOUT 60 PROPERTIES LABELS "${TEST_LABELS}")
endfunction()
