// dressTextField: the window's look for a field in which a text is typed.
#pragma once

#include <juce_gui_basics/juce_gui_basics.h>

namespace zephyra {

/// Its colours; letters are set by who places it. Message thread.
void dressTextField(juce::TextEditor& field);

} // namespace zephyra
