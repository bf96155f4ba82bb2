# zephyra_juce_plugin(TARGET NAME CODE FORMATS format ... [what juce_add_plugin takes])
# makes a plug-in of each format the system has in plugin/FORMAT of the build tree. Only JUCE's
# wrapper of the format and plugin_entry.cpp are compiled for it, with its name and codes.
function(zephyra_juce_plugin target name code)
    juce_add_plugin(${target}
        PRODUCT_NAME ${name} PLUGIN_NAME ${name} DESCRIPTION ${PROJECT_DESCRIPTION}
        COMPANY_NAME Zephyra COMPANY_WEBSITE "" COMPANY_EMAIL ""
        BUNDLE_ID org.zephyra.${code}
        PLUGIN_MANUFACTURER_CODE Zphy PLUGIN_CODE ${code}
        NEEDS_MIDI_INPUT TRUE EDITOR_WANTS_KEYBOARD_FOCUS FALSE
        ${ARGN})
    target_sources(${target} PRIVATE plugin_entry.cpp)
    target_link_libraries(${target} PUBLIC zephyra_juce_shell)
    set_target_properties(${target} PROPERTIES
        LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/plugin)
    file(GLOB wrappers ${zephyra_juce_modules}/juce_audio_plugin_client/*.cpp
         ${zephyra_juce_modules}/juce_audio_plugin_client/*.mm)
    set_source_files_properties(${wrappers} PROPERTIES COMPILE_OPTIONS -w)
    set_property(SOURCE ${zephyra_juce_modules}/juce_audio_plugin_client/juce_audio_plugin_client_VST3.cpp
                 APPEND PROPERTY COMPILE_OPTIONS "-include;${CMAKE_CURRENT_SOURCE_DIR}/vst3_long_blocks.h")
    # A host may load two versions of it: nothing but the entry is seen. It stays loaded, since X's
    # errors go through it when others came after it.
    if(NOT APPLE)
        target_link_options(${target}_VST3 PRIVATE -Wl,-z,nodelete
            -Wl,--version-script=${CMAKE_CURRENT_SOURCE_DIR}/vst3_exports.map)
        set_target_properties(${target}_VST3 PROPERTIES
            LINK_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/vst3_exports.map)
    endif()
endfunction()
