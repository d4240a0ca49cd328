# kel_cpp_tests(<layer> LINK ...): the GoogleTest program of a layer, all *Test.cpp beside it.
function(kel_cpp_tests layer)
  cmake_parse_arguments(ARG "" "" "LINK;LABELS" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS *Test.cpp)
  add_executable(${layer}_tests ${sources})
  kel_warnings(${layer}_tests)
  target_link_libraries(${layer}_tests PRIVATE ${ARG_LINK} GTest::gtest_main)
  gtest_discover_tests(${layer}_tests TEST_PREFIX ${layer}. NO_PRETTY_VALUES PROPERTIES LABELS "${ARG_LABELS}" TIMEOUT 600)
endfunction()

# kel_lua_tests(<layer>): every *_spec.lua beside it, run by busted inside each host.
function(kel_lua_tests layer)
  file(GLOB specs CONFIGURE_DEPENDS *_spec.lua)
  foreach(spec ${specs})
    get_filename_component(name ${spec} NAME_WE)
    kel_lua_test(${layer}.${name} kel ${spec})
    kel_lua_test(${layer}.${name}.jit kel-jit ${spec})
  endforeach()
endfunction()

function(kel_lua_test name host spec)
  add_test(NAME ${name} COMMAND ${host} ${PROJECT_SOURCE_DIR}/tests/busted.lua -o TAP ${spec}
           WORKING_DIRECTORY ${PROJECT_SOURCE_DIR})
  set_tests_properties(${name} PROPERTIES LABELS quick TIMEOUT 600
                       ENVIRONMENT "KEL=$<TARGET_FILE:${host}>;KEL_LIB=${CMAKE_LIBRARY_OUTPUT_DIRECTORY};ASAN_OPTIONS=quarantine_size_mb=8")
endfunction()
