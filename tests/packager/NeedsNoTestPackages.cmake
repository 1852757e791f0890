# Configures SOURCE_DIR with OPTIONS as if nothing were installed that only tests and benchmarks need. What a packager
# builds has to be there all the same, and nothing else.
file(REMOVE_RECURSE ${BINARY_DIR})
set(absent "")
foreach(package GTest benchmark Boost Python3)
    list(APPEND absent -DCMAKE_DISABLE_FIND_PACKAGE_${package}=ON)
endforeach()
execute_process(
    COMMAND ${CMAKE_COMMAND} -S ${SOURCE_DIR} -B ${BINARY_DIR} -G Ninja -DCMAKE_CXX_COMPILER=${CXX} ${absent} ${OPTIONS}
    RESULT_VARIABLE status
    OUTPUT_QUIET
    ERROR_VARIABLE messages)
if(messages MATCHES "CMAKE_DISABLE_FIND_PACKAGE_([A-Za-z0-9]+) is enabled")
    message(FATAL_ERROR "not without ${CMAKE_MATCH_1}")
endif()
if(NOT status EQUAL 0)
    message(FATAL_ERROR "cannot configure: ${messages}")
endif()

execute_process(COMMAND ${CMAKE_COMMAND} --build ${BINARY_DIR} --target help OUTPUT_VARIABLE targets)
foreach(wanted network-topology-platform network-topology-aggregator topology-sync)
    if(NOT targets MATCHES "\n${wanted}: phony")
        message(FATAL_ERROR "no target ${wanted}")
    endif()
endforeach()
if(targets MATCHES "\n(test-[^:]*|[^:\n]*[Bb]ench[^:]*): phony")
    message(FATAL_ERROR "a target of tests or benchmarks: ${CMAKE_MATCH_1}")
endif()
