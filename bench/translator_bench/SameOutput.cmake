# cmake -DPROGRAM=... -DHOSTS=... -P SameOutput.cmake
#
# The translator and its peer must end with the same output after the same changes, or they do not do the same work.
foreach(mode IN ITEMS dump dump-end)
    foreach(subject IN ITEMS ${mode} ${mode}-peer)
        execute_process(COMMAND ${PROGRAM} --${subject} ${HOSTS} RESULT_VARIABLE result OUTPUT_VARIABLE ${subject})
        if(NOT result EQUAL 0)
            message(FATAL_ERROR "--${subject} ${HOSTS}: ${result}")
        endif()
    endforeach()
    if(NOT ${mode} MATCHES "edge ")
        message(FATAL_ERROR "--${mode} ${HOSTS} shows no edge")
    endif()
    if(NOT ${mode} STREQUAL ${mode}-peer)
        message(FATAL_ERROR "--${mode} ${HOSTS} and --${mode}-peer ${HOSTS} differ")
    endif()
endforeach()
