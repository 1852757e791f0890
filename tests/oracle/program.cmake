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
target_link_libraries(${target} PRIVATE test-support)
nta_link_floor(${target} translator)
