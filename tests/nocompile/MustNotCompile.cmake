# cmake -DCOMPILER=... -DFLAGS=... -DSOURCE=... -P MustNotCompile.cmake
file(STRINGS ${SOURCE} first_line LIMIT_COUNT 1)
if(NOT first_line MATCHES "^// EXPECT: (.+)$")
    message(FATAL_ERROR "${SOURCE}:1: first line must be '// EXPECT: <regular expression of the error>'")
endif()
set(expected "${CMAKE_MATCH_1}")

separate_arguments(flags UNIX_COMMAND "${FLAGS}")
execute_process(COMMAND ${CMAKE_COMMAND} -E env LC_ALL=C ${COMPILER} ${flags} ${SOURCE}
    RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
if(result EQUAL 0)
    message(FATAL_ERROR "${SOURCE}: compiled, but must not")
endif()
# Only errors count: a note that happens to carry the words is not the reason of the failure.
string(REGEX MATCHALL "[^\n]*error: [^\n]*" errors "${output}")
if(NOT errors MATCHES "${expected}")
    message(FATAL_ERROR "${SOURCE}: failed, but not with '${expected}':\n${output}")
endif()
