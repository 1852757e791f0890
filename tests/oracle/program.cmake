# The oracle is slow by intent: it and what compares with it are always optimised, and what the sanitizers are to watch
# is the library, not its measure.
set(measure_options -O2)
if(NTA_SANITIZE)
    list(APPEND measure_options -fno-sanitize=all)
endif()
set_source_files_properties(
    ${CMAKE_CURRENT_SOURCE_DIR}/oracle/Oracle.cpp
    ${CMAKE_CURRENT_SOURCE_DIR}/oracle/Tape.cpp
    PROPERTIES
        SKIP_PRECOMPILE_HEADERS ON
        COMPILE_OPTIONS "${measure_options}")
set_source_files_properties(${CMAKE_CURRENT_SOURCE_DIR}/oracle/TranslatorSubject.cpp PROPERTIES
    SKIP_PRECOMPILE_HEADERS ON
    COMPILE_OPTIONS -O2)
# Compiled again by itself for each fault that is planted.
set_source_files_properties(${CMAKE_CURRENT_SOURCE_DIR}/oracle/TapesTest.cpp PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
target_link_libraries(${target} PRIVATE test-support)
nta_link_floor(${target} translator)

# Where the sanitizers watch, random histories run by the thousand, in parts that a machine's cores share. Recording
# more of an allocation's origin than its caller would cost a third of the time; a failing history prints itself and is
# short enough to be run again.
if(NTA_SANITIZE)
    foreach(part RANGE 3)
        math(EXPR seed "1 + 5000 * ${part}")
        add_test(NAME oracle.tapes.${part} COMMAND ${target} --gtest_brief=1 --gtest_filter=Tapes.*)
        set_tests_properties(oracle.tapes.${part} PROPERTIES
            COST 1000
            ENVIRONMENT "TAPES=5000;TAPE_SEED=${seed};ASAN_OPTIONS=malloc_context_size=1")
    endforeach()
endif()

# Whether the tapes find faults is for an hour that can be spared; that the faults can still be planted, for every build
# that looks at the sources.
if(NOT NTA_SANITIZE AND NOT NTA_COVERAGE)
    find_package(Python3 REQUIRED COMPONENTS Interpreter)
    set(oracle ${CMAKE_CURRENT_SOURCE_DIR}/oracle)
    add_test(NAME oracle.faults COMMAND Python3::Interpreter ${oracle}/seeded_faults.py
        --check --build ${PROJECT_BINARY_DIR})
    add_test(NAME oracle.faults.control COMMAND Python3::Interpreter ${oracle}/seeded_faults_test.py)
endif()
