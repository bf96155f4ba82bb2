// occupyStandardStreams: keeps files from being taken for standard input, output or error.
#pragma once

namespace zephyra {

/// Of the three, what was closed by whoever started the program stays useless, but its number is
/// taken: else the next file that is opened would have it, and get what is printed. Before any file
/// is opened. MAIN.
void occupyStandardStreams();

} // namespace zephyra
