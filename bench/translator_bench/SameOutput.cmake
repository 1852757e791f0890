# cmake -DPROGRAM=... -DHOSTS=... -P SameOutput.cmake
#
# The translator and its peer must end with the same output after the same changes, or they do not do the same work.
foreach(mode IN ITEMS dump dump-peer)
    execute_process(COMMAND ${PROGRAM} --${mode} ${HOSTS} RESULT_VARIABLE result OUTPUT_VARIABLE ${mode})
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "--${mode} ${HOSTS}: ${result}")
    endif()
endforeach()
if(NOT dump MATCHES "edge ")
    message(FATAL_ERROR "--dump ${HOSTS} shows no edge")
endif()
if(NOT dump STREQUAL dump-peer)
    message(FATAL_ERROR "--dump ${HOSTS} and --dump-peer ${HOSTS} differ")
endif()
