# marlith_add_test(<name> SOURCES ... LIBS ... [GUI])
# One Qt Test executable per unit or window, registered with CTest. Every test
# runs on the offscreen platform, with its own temporary program folder. The time
# a test may take is the caller's (ctest --timeout), so that a mutation sample
# does not wait minutes on a test that a mutant made hang.
function(marlith_add_test name)
  cmake_parse_arguments(T "" "" "SOURCES;LIBS" ${ARGN})
  add_executable(${name} ${T_SOURCES})
  target_link_libraries(${name} PRIVATE ${T_LIBS} Qt6::Test)
  target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests)
  add_test(NAME ${name} COMMAND ${name})
  set_tests_properties(${name} PROPERTIES
    ENVIRONMENT "QT_QPA_PLATFORM=offscreen;QT_QPA_FONTDIR=/usr/share/fonts/truetype/dejavu")
endfunction()
