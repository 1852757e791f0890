# cmake -DNM=... -DOBJECTS=... -DRECORDED=... -P EveryMutatorIsRecorded.cmake
#
# Every version-3 mutator that the object files call is among the recorded symbols, and there are such calls.
cmake_minimum_required(VERSION 3.25)

execute_process(COMMAND ${NM} -u ${OBJECTS} OUTPUT_VARIABLE undefined RESULT_VARIABLE result)
if(result)
    message(FATAL_ERROR "${NM} failed: ${result}")
endif()
string(REGEX MATCHALL
    "_ZN17NetworkTopologyV3[0-9]+[A-Za-z]+[0-9]+[A-Za-z]+(Is|Del|DelAll)E[A-Za-z0-9_]*" called "${undefined}")
list(REMOVE_DUPLICATES called)
if(NOT called)
    message(FATAL_ERROR "no mutator is called, which cannot be")
endif()
list(REMOVE_ITEM called ${RECORDED})
foreach(symbol IN LISTS called)
    message(NOTICE "${symbol} is called, but not recorded")
endforeach()
if(called)
    message(FATAL_ERROR "there are mutators without a recorder")
endif()
