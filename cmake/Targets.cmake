# nta_library(NAME FOLDER...)
#
# Declares the library network-topology-NAME from every source below the folders, with every header below
# them public under its path from the repository root, and says how it is installed. Headers in a folder named
# `internal` are for the library's own sources and are not installed. With NTA_ARCHIVES a shared library comes with an
# archive of the same objects, the target network-topology-NAME-archive.
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
    # Nobody replaces a function of these libraries by one of the same name, and a virtual function that is called
    # is hardly ever the base's own: the first two let the compiler call in place what it sees, the third one
    # keeps it from guessing. Two counts that stand side by side change one at a time, too: loaded as one vector
    # they would wait for each other's stores.
    target_compile_options(${target} PRIVATE $<$<CXX_COMPILER_ID:GNU>:-fno-semantic-interposition -fno-plt
        -fno-devirtualize-speculatively -fno-tree-slp-vectorize>)
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
        FILE_SET HEADERS DESTINATION ${NTA_HEADERS_DESTINATION} COMPONENT development)
    if(BUILD_SHARED_LIBS AND NTA_ARCHIVES)
        add_library(${target}-archive STATIC $<TARGET_OBJECTS:${target}>)
        set_target_properties(${target}-archive PROPERTIES
            EXPORT_NAME ${name}
            OUTPUT_NAME ${target}
            LINKER_LANGUAGE CXX)
        target_compile_features(${target}-archive INTERFACE cxx_std_20)
        target_include_directories(${target}-archive INTERFACE $<INSTALL_INTERFACE:${NTA_HEADERS_DESTINATION}>)
        install(TARGETS ${target}-archive
            EXPORT NetworkTopologyAggregatorArchives
            ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)
    endif()
endfunction()

# nta_link_libraries(NAME OTHER)
#
# Says that each kind of network-topology-NAME needs that of network-topology-OTHER.
function(nta_link_libraries name other)
    target_link_libraries(network-topology-${name} PUBLIC network-topology-${other})
    if(TARGET network-topology-${name}-archive)
        target_link_libraries(network-topology-${name}-archive PUBLIC network-topology-${other}-archive)
    endif()
endfunction()

# nta_registers_types(NAME RECORD...)
#
# Makes sure that who links network-topology-NAME gets all types that it registers. Whoever goes by the names of types
# asks a linker for nothing. So a program is told to need the shared library though it names none of its symbols, and
# to take the records, given as symbols, from the archive; they bring along all that is registered.
function(nta_registers_types name)
    list(TRANSFORM ARGN PREPEND -Wl,--undefined= OUTPUT_VARIABLE anchors)
    set(target network-topology-${name})
    if(BUILD_SHARED_LIBS)
        target_link_options(${target} INTERFACE
            "SHELL:-Wl,--push-state,--no-as-needed \"$<TARGET_FILE:NetworkTopologyAggregator::${name}>\" -Wl,--pop-state")
    else()
        target_link_options(${target} INTERFACE ${anchors})
    endif()
    if(TARGET ${target}-archive)
        target_link_options(${target}-archive INTERFACE ${anchors})
    endif()
    # For pkg-config, in one word, because such words are sorted. It tells of both kinds.
    list(JOIN ARGN ",--undefined=" anchors)
    set(NTA_LINK_${name} "-Wl,--undefined=${anchors},--push-state,--no-as-needed,-l${target},--pop-state" PARENT_SCOPE)
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

# nta_compile_together(TARGET SOURCE...)
#
# Hands the sources of a folder to the compiler a dozen at a time, which spares it from reading the same headers for
# each: most of what a small source costs. They share what is in their unnamed namespaces, so that a helper's name has
# to be unique in its folder. A source that has compiler options of its own stays alone.
function(nta_compile_together target)
    set(most 14)
    set_target_properties(${target} PROPERTIES UNITY_BUILD ${NTA_UNITY} UNITY_BUILD_MODE GROUP)
    set(rest ${ARGN})
    while(rest)
        list(GET rest 0 source)
        cmake_path(GET source PARENT_PATH folder)
        set(together ${rest})
        list(FILTER together INCLUDE REGEX "^${folder}/[^/]*$")
        list(REMOVE_ITEM rest ${together})

        list(LENGTH together count)
        math(EXPR groups "(${count} + ${most} - 1) / ${most}")
        math(EXPR size "(${count} + ${groups} - 1) / ${groups}")
        cmake_path(RELATIVE_PATH folder BASE_DIRECTORY ${CMAKE_CURRENT_SOURCE_DIR})
        string(REPLACE "/" "-" name "${folder}")
        set(index 0)
        foreach(source IN LISTS together)
            math(EXPR group "${index} / ${size}")
            set_source_files_properties(${source} PROPERTIES UNITY_GROUP ${name}-${group})
            math(EXPR index "${index} + 1")
        endforeach()
    endwhile()
endfunction()
