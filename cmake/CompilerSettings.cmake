set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

add_compile_options(-Wall -Wextra -Wpedantic)
if(NTA_WERROR)
    add_compile_options(-Werror)
endif()

# A unique symbol pins its library in the process for good; without them dlclose really unloads.
add_compile_options($<$<CXX_COMPILER_ID:GNU>:-fno-gnu-unique>)

if(NTA_SANITIZE)
    add_compile_options(-fsanitize=${NTA_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_link_options(-fsanitize=${NTA_SANITIZE})
endif()

if(NTA_COVERAGE)
    add_compile_options(--coverage -fprofile-update=atomic)
    add_link_options(--coverage)
endif()
