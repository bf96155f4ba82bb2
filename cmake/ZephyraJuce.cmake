# zephyra_juce: the modules of JUCE that any of our programs needs, found and compiled once. No target
# where there is no JUCE.

set(ZEPHYRA_JUCE_PATH "" CACHE PATH "Sources of JUCE 7.0.5; empty for the installed package")
if(ZEPHYRA_JUCE_PATH)
    add_subdirectory(${ZEPHYRA_JUCE_PATH} juce EXCLUDE_FROM_ALL SYSTEM)
else()
    find_package(JUCE 7.0.5 CONFIG QUIET)
    if(NOT JUCE_FOUND)
        message(STATUS "No window, no VST3 and no standalone program: JUCE 7.0.5 was not found. Install \
juce-modules-source and juce-tools, or set ZEPHYRA_JUCE_PATH to its sources.")
        return()
    endif()
endif()

add_library(zephyra_juce STATIC)
target_link_libraries(zephyra_juce PRIVATE juce::juce_audio_utils)
target_compile_definitions(zephyra_juce PRIVATE
    JUCE_WEB_BROWSER=0 JUCE_USE_CURL=0 JUCE_USE_FLAC=0 JUCE_USE_OGGVORBIS=0
    JUCE_DISPLAY_SPLASH_SCREEN=0
    JUCE_VST3_CAN_REPLACE_VST2=0 JUCE_FORCE_USE_LEGACY_PARAM_IDS=1
    JUCE_ALSA=1 JUCE_JACK=1 JUCE_PLUGINHOST_VST3=1)
# Half the optimisation builds in two thirds of the time; where JUCE computes, it stays whole.
target_compile_options(zephyra_juce PRIVATE ${zephyra_quick_to_build})
get_target_property(zephyra_juce_modules juce::juce_core INTERFACE_JUCE_MODULE_PATH)
foreach(module juce_graphics juce_audio_basics)
    set_source_files_properties(${zephyra_juce_modules}/${module}/${module}.cpp
        PROPERTIES COMPILE_OPTIONS $<$<CONFIG:Release>:-O3>)
endforeach()
# -w: what warns in JUCE is JUCE's. The linker leaves out what a program does not use of it.
target_compile_options(zephyra_juce PRIVATE -w -ffunction-sections -fdata-sections)
set_target_properties(zephyra_juce PROPERTIES
    CXX_VISIBILITY_PRESET hidden C_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON)

# Who links it sees the modules as they were compiled, and does not compile them again.
target_include_directories(zephyra_juce SYSTEM INTERFACE
    $<TARGET_PROPERTY:zephyra_juce,INCLUDE_DIRECTORIES>)
target_compile_definitions(zephyra_juce INTERFACE
    $<TARGET_PROPERTY:zephyra_juce,COMPILE_DEFINITIONS>)
if(NOT APPLE)
    target_link_libraries(zephyra_juce PUBLIC png jpeg z)
    target_link_options(zephyra_juce INTERFACE -Wl,--gc-sections)
endif()
