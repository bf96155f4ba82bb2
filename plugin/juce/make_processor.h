// makeEffect and makeInstrument: the processors of the two plug-ins, without JUCE's headers, so
// that what is compiled once a plug-in is short.
#pragma once

namespace juce {
class AudioProcessor;
}

namespace zephyra {

// The caller owns it. Any thread; throws std::bad_alloc.
juce::AudioProcessor* makeEffect();
juce::AudioProcessor* makeInstrument();

} // namespace zephyra
