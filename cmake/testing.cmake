# What every test program is made with.
find_package(GTest REQUIRED)
include(GoogleTest)

# tesmar_test(NAME SOURCES... USES layers... [SOAK FILTER])
# The tests that FILTER (of GoogleTest) names have a long form, which TESMAR_SOAK in the environment
# asks for: they are labelled `soak`.
function(tesmar_test name)
  cmake_parse_arguments(TEST "" "SOAK" "SOURCES;USES" ${ARGN})
  add_executable(${name} ${TEST_SOURCES})
  target_link_libraries(${name} PRIVATE ${TEST_USES} GTest::gtest GTest::gtest_main)
  tesmar_warnings(${name})
  set_target_properties(${name} PROPERTIES BUILD_RPATH ${TESMAR_MODULES_DIR})
  if(TEST_SOAK)
    gtest_discover_tests(${name} DISCOVERY_TIMEOUT 60 TEST_LIST ${name}_SOAK
                         TEST_FILTER ${TEST_SOAK} PROPERTIES LABELS soak)
    set(others TEST_FILTER -${TEST_SOAK})
  endif()
  gtest_discover_tests(${name} DISCOVERY_TIMEOUT 60 ${others})
endfunction()
