// settleOggSerial: makes the same sound the same Ogg file.
#pragma once

#include "platform/text/four_char_code.h"

namespace zephyra {

class WrittenFile;

/// libsndfile numbers the stream in an Ogg file by the clock. Gives every page of the complete file
/// the number 1 and its checksum anew; to be called before it is closed. Returns 0, or a code when
/// the file cannot be read or written, or is none of whole pages. MAIN or WORKER.
OSStatus settleOggSerial(WrittenFile& file);

} // namespace zephyra
