# cmake -DCOMPILER=... -DFLAGS=... -DSOURCE=... -P MustNotCompile.cmake

# What message(FATAL_ERROR) prints is wrapped where the path of the source happens to end; a line of its own is not.
function(complain text)
    message(NOTICE "${SOURCE}${text}")
    message(FATAL_ERROR "see above")
endfunction()

file(STRINGS ${SOURCE} first_line LIMIT_COUNT 1)
if(NOT first_line MATCHES "^// EXPECT: (.+)$")
    complain(":1: first line must be '// EXPECT: <regular expression of the error>'")
endif()
set(expected "${CMAKE_MATCH_1}")

separate_arguments(flags UNIX_COMMAND "${FLAGS}")
execute_process(COMMAND ${CMAKE_COMMAND} -E env LC_ALL=C ${COMPILER} ${flags} ${SOURCE}
    RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
if(result EQUAL 0)
    complain(": compiled, but must not")
endif()
# Only errors count: a note that happens to carry the words is not the reason of the failure.
string(REGEX MATCHALL "[^\n]*error: [^\n]*" errors "${output}")
if(NOT errors MATCHES "${expected}")
    complain(": failed, but not with '${expected}':\n${output}")
endif()
