# One static library per folder, one test program per folder.

# The libraries of what users run are built without, so that no source leans on headers that it does
# not include.
set(ZEPHYRA_PRECOMPILE "" CACHE STRING "What precompiles the headers that it includes: library, tests")

# Where the time goes into building and not into running, half the optimisation does.
set(zephyra_quick_to_build $<$<CONFIG:Release>:-O1>)

# zephyra_precompile(TARGET SHARED HEADERS...): the first target given a name SHARED makes the
# precompiled header, the others take it.
function(zephyra_precompile target shared)
    if(NOT shared IN_LIST ZEPHYRA_PRECOMPILE)
        return()
    endif()
    get_property(maker GLOBAL PROPERTY ZEPHYRA_PRECOMPILED_${shared})
    if(maker)
        target_precompile_headers(${target} REUSE_FROM ${maker})
    else()
        target_precompile_headers(${target} PRIVATE ${ARGN})
        set_property(GLOBAL PROPERTY ZEPHYRA_PRECOMPILED_${shared} ${target})
    endif()
endfunction()

# zephyra_library(NAME [FOLDERS sub ...] [EXCEPT a.cpp ...] [LINKS zephyra_other ...] [PRIVATE_LINKS third_party ...])
# makes zephyra_NAME of every source in this folder and the named ones below it. LINKS are the folders
# it may include; third-party libraries stay private. EXCEPT leaves files out, for who adds them.
function(zephyra_library name)
    cmake_parse_arguments(ARG "" "" "FOLDERS;EXCEPT;LINKS;PRIVATE_LINKS" ${ARGN})
    zephyra_glob(sources "*.cpp" ${ARG_FOLDERS})
    zephyra_glob(headers "*.h" ${ARG_FOLDERS})
    list(TRANSFORM ARG_EXCEPT PREPEND ${CMAKE_CURRENT_SOURCE_DIR}/)
    list(REMOVE_ITEM sources ${ARG_EXCEPT})
    list(REMOVE_ITEM headers ${ARG_EXCEPT})
    add_library(zephyra_${name} STATIC ${sources})
    target_sources(zephyra_${name} PUBLIC FILE_SET HEADERS BASE_DIRS ${PROJECT_SOURCE_DIR} FILES ${headers})
    target_link_libraries(zephyra_${name} PUBLIC zephyra_compile ${ARG_LINKS} PRIVATE ${ARG_PRIVATE_LINKS})
    zephyra_precompile(zephyra_${name} library <algorithm> <any> <array> <filesystem> <functional> <map> <memory> <optional> <string> <vector>)
endfunction()

# zephyra_glob(RESULT PATTERN FOLDER...): the files of this folder and of those below it; a new one is
# noticed when the next build begins.
function(zephyra_glob result pattern)
    set(patterns ${CMAKE_CURRENT_SOURCE_DIR}/${pattern})
    foreach(folder IN LISTS ARGN)
        list(APPEND patterns ${CMAKE_CURRENT_SOURCE_DIR}/${folder}/${pattern})
    endforeach()
    file(GLOB files CONFIGURE_DEPENDS ${patterns})
    set(${result} ${files} PARENT_SCOPE)
endfunction()

# zephyra_tests(NAME [SOURCES a_test.cpp ...] [LABEL hosts] [LOCK what] LINKS zephyra_x ...)
# makes NAME_tests, of every source in this folder unless SOURCES names others, and registers its
# cases; of those with the same LOCK one runs at a time.
# Tests find files of the tree through the ZEPHYRA_SOURCE_DIR and ZEPHYRA_BINARY_DIR definitions.
function(zephyra_tests name)
    cmake_parse_arguments(ARG "" "LABEL;LOCK" "SOURCES;LINKS" ${ARGN})
    if(NOT ARG_SOURCES)
        zephyra_glob(ARG_SOURCES "*.cpp")
    endif()
    add_executable(${name}_tests ${ARG_SOURCES})
    target_link_libraries(${name}_tests PRIVATE ${ARG_LINKS} zephyra_compile GTest::gmock GTest::gtest_main)
    target_compile_definitions(${name}_tests PRIVATE ZEPHYRA_SOURCE_DIR="${PROJECT_SOURCE_DIR}"
                               ZEPHYRA_BINARY_DIR="${PROJECT_BINARY_DIR}")
    target_include_directories(${name}_tests PRIVATE ${PROJECT_SOURCE_DIR})
    target_compile_options(${name}_tests PRIVATE $<$<CONFIG:RelWithDebInfo>:-O0>) # builds in half the time
    zephyra_precompile(${name}_tests tests <gmock/gmock.h> <gtest/gtest.h> <algorithm> <any> <array> <filesystem> <functional> <map> <memory> <optional> <string> <vector>)
    gtest_discover_tests(${name}_tests TEST_PREFIX "${name}." DISCOVERY_MODE PRE_TEST
                         PROPERTIES TIMEOUT 300 LABELS "${ARG_LABEL}" RESOURCE_LOCK "${ARG_LOCK}")
endfunction()
