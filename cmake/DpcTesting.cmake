# One QtTest suite per executable, registered with CTest. Every suite runs on the
# offscreen platform with test-mode standard paths, so no suite touches the user's
# real home or needs a display.
# ZEB_GEV_ADDRESSES keeps any GigE Vision discovery of a test on the loopback
# address: tests never send discovery broadcasts into the network.
set(DPC_TEST_ENVIRONMENT
  "QT_QPA_PLATFORM=offscreen"
  "ZEB_GEV_ADDRESSES=127.0.0.1"
  "LSAN_OPTIONS=suppressions=${CMAKE_SOURCE_DIR}/tests/lsan.supp:print_suppressions=0"
  "ASAN_OPTIONS=detect_leaks=1:abort_on_error=0:halt_on_error=1"
  "UBSAN_OPTIONS=halt_on_error=1:print_stacktrace=1")

# dpc_add_test(<name> SOURCES <files...> LIBS <targets...> [TIMEOUT <seconds>])
function(dpc_add_test name)
  cmake_parse_arguments(ARG "" "TIMEOUT" "SOURCES;LIBS" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE Qt5::Test ${ARG_LIBS})
  add_test(NAME ${name} COMMAND ${name})
  if(NOT ARG_TIMEOUT)
    set(ARG_TIMEOUT 300)
  endif()
  set_tests_properties(${name} PROPERTIES
    ENVIRONMENT "${DPC_TEST_ENVIRONMENT}"
    TIMEOUT ${ARG_TIMEOUT})
endfunction()

# dpc_add_benchmark(<name> SOURCES <files...> LIBS <targets...>)
function(dpc_add_benchmark name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LIBS" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE benchmark::benchmark ${ARG_LIBS})
  set_property(GLOBAL APPEND PROPERTY DPC_BENCHMARKS ${name})
endfunction()
