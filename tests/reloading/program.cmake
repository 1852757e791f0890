# How this folder's program differs from the others: it does not link the library that it loads and lets go of again.
target_link_libraries(${target} PRIVATE test-support ${CMAKE_DL_LIBS})
nta_link_floor(${target} platform)
add_dependencies(${target} network-topology-aggregator)
target_compile_definitions(${target} PRIVATE
    NTA_AGGREGATOR_LIBRARY="$<TARGET_FILE:network-topology-aggregator>")
