# How this folder's program differs from the others: it holds the object files of the libraries instead of linking
# them, because the linker can put a recorder only before calls from one object file of a program into another.
# Recorders.cpp, FlagLog.cpp and WalkCount.cpp tell which functions have one.
target_sources(${target} PRIVATE
    $<TARGET_OBJECTS:network-topology-platform>
    $<TARGET_OBJECTS:network-topology-aggregator>
    $<TARGET_OBJECTS:test-support>)
target_include_directories(${target} PRIVATE ${PROJECT_SOURCE_DIR})

# In a source that is included, g++ warns of a class whose members' types are in an unnamed namespace.
set_source_files_properties(${folder}/support/OutputFollower.cpp PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)

set(recorded "")
foreach(source IN ITEMS Recorders FlagLog WalkCount)
    set(source ${CMAKE_CURRENT_SOURCE_DIR}/${folder}/support/${source}.cpp)
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${source})
    file(READ ${source} text)
    string(REGEX MATCHALL "\"__wrap_[A-Za-z0-9_]+\"" labels "${text}")
    foreach(label IN LISTS labels)
        string(REGEX REPLACE "\"__wrap_(.*)\"" "\\1" symbol "${label}")
        list(APPEND recorded ${symbol})
        target_link_options(${target} PRIVATE -Wl,--wrap=${symbol})
    endforeach()
endforeach()

# A mutator without a recorder would go unseen.
function(add_recorder_test name recorded)
    add_test(NAME ${name}
        COMMAND ${CMAKE_COMMAND} -DNM=${CMAKE_NM} "-DRECORDED=${recorded}"
            "-DOBJECTS=$<TARGET_OBJECTS:network-topology-aggregator>"
            -P ${CMAKE_CURRENT_SOURCE_DIR}/${folder}/support/EveryMutatorIsRecorded.cmake)
endfunction()
add_recorder_test(translator.EveryMutatorIsRecorded "${recorded}")
list(FILTER recorded EXCLUDE REGEX "mlagRawIs")
add_recorder_test(translator.control.AMutatorWithoutRecorderIsFound "${recorded}")
set_tests_properties(translator.control.AMutatorWithoutRecorderIsFound PROPERTIES
    PASS_REGULAR_EXPRESSION "_ZN17NetworkTopologyV34Host9mlagRawIs[^ ]* is called, but not recorded")
