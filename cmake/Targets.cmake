# nta_library(NAME FOLDER...)
#
# Declares the library network-topology-NAME from every source below the folders, with every header below
# them public under its path from the repository root, and says how it is installed. Headers in a folder named
# `internal` are for the library's own sources and are not installed.
function(nta_library name)
    set(sources "")
    set(headers "")
    foreach(folder IN LISTS ARGN)
        file(GLOB_RECURSE found CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/${folder}/*.cpp)
        list(APPEND sources ${found})
        file(GLOB_RECURSE found CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/${folder}/*.h)
        list(FILTER found EXCLUDE REGEX "/internal/")
        list(APPEND headers ${found})
    endforeach()

    set(target network-topology-${name})
    add_library(${target} ${sources})
    add_library(NetworkTopologyAggregator::${name} ALIAS ${target})
    target_sources(${target} PUBLIC FILE_SET HEADERS BASE_DIRS ${PROJECT_SOURCE_DIR} FILES ${headers})
    target_compile_features(${target} PUBLIC cxx_std_20)
    set_target_properties(${target} PROPERTIES
        EXPORT_NAME ${name}
        VERSION ${PROJECT_VERSION}
        SOVERSION ${PROJECT_VERSION_MAJOR}
        POSITION_INDEPENDENT_CODE ON
        INSTALL_RPATH "$ORIGIN")
    if(NTA_SANITIZE)
        # What the tests wait for. A sanitizer finds as much in code that is optimised a little.
        target_compile_options(${target} PRIVATE -O1)
    endif()
    if(BUILD_SHARED_LIBS)
        target_link_options(${target} PRIVATE -Wl,-Bsymbolic-functions)
        if(NOT NTA_SANITIZE)
            # The sanitizers' own symbols are found in the program, so there the check has to rest.
            target_link_options(${target} PRIVATE -Wl,--no-undefined)
        endif()
    endif()

    install(TARGETS ${target}
        EXPORT NetworkTopologyAggregatorTargets
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT libraries NAMELINK_COMPONENT development
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development
        FILE_SET HEADERS DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/network-topology COMPONENT development)
endfunction()

# nta_link_floor(TARGET FOLDER)
#
# Links what exercises FOLDER to the lowest library that holds it, so that a floor is built and tested
# without the ones above it. A folder that is not a floor gets everything there is.
function(nta_link_floor target folder)
    set(platform Vel VelThreadSafe Keln Mlag NetworkTopology NetworkTopologyV3 platform)
    set(aggregator finder translator reflection)
    if(folder IN_LIST platform)
        set(wanted network-topology-platform)
    elseif(folder IN_LIST aggregator)
        set(wanted network-topology-aggregator)
    else()
        set(wanted network-topology-platform network-topology-aggregator topology-sync-lib)
    endif()
    foreach(library IN LISTS wanted)
        if(TARGET ${library})
            target_link_libraries(${target} PRIVATE ${library})
        endif()
    endforeach()
    target_include_directories(${target} PRIVATE ${PROJECT_SOURCE_DIR})
endfunction()
