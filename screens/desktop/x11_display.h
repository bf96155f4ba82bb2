// x11: what a window needs of the X server besides what JUCE does.
#pragma once

#include <string>

struct _XDisplay;

namespace zephyra::x11 {

/// Sends what was painted. JUCE waits for the server's word that it has the last picture before it
/// paints the next one, but leaves its own requests in the buffer: without this every second frame
/// is lost. Nothing without a display. Message thread.
void flush();

/// Whether events wait that came in together with an answer of the server. JUCE looks only when
/// more come in, so that a click or an uncovered window might wait for the next one. Message
/// thread.
bool hasUnread();
/// Handles them. Message thread, and not while something is painted or handled.
void readEvents();

/// Where the pointer is in window, JUCE learns where that stands on the screen. It keeps one place
/// for all windows that stand in hosts', and is not told when a host's moves, nor of the pointer
/// while another program drags: what that drops would miss the window. width, height: its size in
/// pixels. Message thread, some times a second.
void findUnderPointer(void* window, int width, int height);

/// Frees the table of colours that JUCE makes for each window and keeps until it ends; where each
/// pixel is its colour, nothing is looked up in it. window: a native handle, or null. Message
/// thread.
void freeColourmap(void* window);

/// From now on errors on JUCE's own connection are dropped, since a host may destroy the window
/// around ours before it closes ours; those of other connections go to who was told before. Without
/// it the first of them ends the host. Until JUCE closes that connection: again after JUCE was
/// started anew. Message thread.
void dropOwnErrors();
/// Adds another connection of ours to those; false when there are too many of them. Message thread.
bool dropErrorsOf(_XDisplay* display);
/// It is closed. Message thread.
void forgetErrorsOf(_XDisplay* display);
/// The display's name by which JUCE has opened it; empty without one. Message thread.
std::string displayName();

} // namespace zephyra::x11
