# cmake -DPROGRAM=... -P AllRun.cmake
#
# Runs the nine benchmarks of the translator and those of its peer, a few iterations each.
execute_process(COMMAND ${PROGRAM} "--benchmark_filter=/16(/|$)" --iterations=64 --benchmark_format=csv
    RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE errors)
if(NOT result EQUAL 0)
    message(FATAL_ERROR "${result}\n${errors}")
endif()
string(REGEX MATCHALL "\"[a-z_/]+/16/iterations:64\",[0-9]+," rows "${output}")
list(LENGTH rows ran)
if(NOT ran EQUAL 18)
    message(FATAL_ERROR "${ran} of 18 ran:\n${output}")
endif()
