# In parts that a machine's cores share.
set(shards 2)

# Some of these tests run the program itself.
target_link_libraries(${target} PRIVATE test-support)
nta_link_floor(${target} tools)
if(TARGET topology-sync)
    set_source_files_properties(tools/cli/RunProgram.cpp PROPERTIES
        COMPILE_DEFINITIONS TOPOLOGY_SYNC_PROGRAM="$<TARGET_FILE:topology-sync>")
    add_dependencies(${target} topology-sync)
endif()
