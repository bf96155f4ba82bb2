# Mends JUCE 7.0.5's VST3 wrapper: its buffers have the announced block's length, and a longer block
# is written behind their end. A copy of the wrapper takes the place of JUCE's: its buffers have room
# for any length that hosts are known to send, and grow for a longer one.

set(wrapper_folder ${zephyra_juce_modules}/juce_audio_plugin_client)
set(mended_folder ${CMAKE_CURRENT_BINARY_DIR}/juce_mended)
file(READ ${wrapper_folder}/VST3/juce_VST3_Wrapper.cpp wrapper)
foreach(change
    "bufferMapper.prepare (bufferSize)|bufferMapper.prepare (mappedFrames = jmax (bufferSize, 8192))"
    "ClientRemappedBuffer<FloatType> remappedBuffer|if (data.numSamples > mappedFrames) bufferMapper.prepare (mappedFrames = (int) data.numSamples); ClientRemappedBuffer<FloatType> remappedBuffer"
    "ClientBufferMapper bufferMapper@|ClientBufferMapper bufferMapper@ int mappedFrames = 0@")
    string(REPLACE "@" ";" change "${change}")
    string(REGEX MATCH "^([^|]*)[|](.*)$" found "${change}")
    set(mended "${wrapper}")
    string(REPLACE "${CMAKE_MATCH_1}" "${CMAKE_MATCH_2}" mended "${wrapper}")
    if(mended STREQUAL wrapper)
        message(FATAL_ERROR "JUCE's VST3 wrapper is another than 7.0.5's: ${CMAKE_MATCH_1} is not in it")
    endif()
    set(wrapper "${mended}")
endforeach()
file(CONFIGURE OUTPUT ${mended_folder}/VST3/juce_VST3_Wrapper.cpp CONTENT "${wrapper}" @ONLY)
configure_file(${wrapper_folder}/juce_audio_plugin_client_VST3.cpp
               ${mended_folder}/juce_audio_plugin_client_VST3.cpp COPYONLY)
set_source_files_properties(${mended_folder}/juce_audio_plugin_client_VST3.cpp
    PROPERTIES COMPILE_OPTIONS "-w;-I${wrapper_folder}/VST3;-I${wrapper_folder}")

get_target_property(sources juce_audio_plugin_client_VST3 INTERFACE_SOURCES)
list(TRANSFORM sources REPLACE "^.*/juce_audio_plugin_client_VST3\\.cpp$"
     ${mended_folder}/juce_audio_plugin_client_VST3.cpp)
set_target_properties(juce_audio_plugin_client_VST3 PROPERTIES INTERFACE_SOURCES "${sources}")
