# The topologies are those of the translator's tests.
target_sources(${target} PRIVATE ${CMAKE_CURRENT_SOURCE_DIR}/translator/support/Topologies.cpp)
target_link_libraries(${target} PRIVATE test-support)
nta_link_floor(${target} reflection)

# The names of the types stand in a section of their own.
if(CMAKE_READELF)
    add_test(NAME reflection.TypeNamesStandInASectionOfTheirOwn
        COMMAND ${CMAKE_READELF} --wide --string-dump=.vel.type $<TARGET_FILE:network-topology-aggregator>)
    set_tests_properties(reflection.TypeNamesStandInASectionOfTheirOwn PROPERTIES
        PASS_REGULAR_EXPRESSION
            "NetworkTopologyAggregator::PortBaseFinder.*NetworkTopologyAggregator::V2Sm|\
NetworkTopologyAggregator::V2Sm.*NetworkTopologyAggregator::PortBaseFinder")
endif()
