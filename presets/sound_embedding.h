// SoundEmbedding: puts the sounds that presets play into the presets, for another machine.
#pragma once

#include "platform/files/folders.h"
#include "platform/lists/property_list.h"
#include "platform/sound/file_facts.h"
#include "platform/text/result.h"

#include <cstddef>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace zephyra {

/// For the presets of one bank, one after another. MAIN.
class SoundEmbedding {
public:
    static constexpr double kMostSeconds = 600.0; ///< of one sound
    /// Of all together, so that the bank can be read again: every preset has a sound of its own.
    static constexpr std::size_t kMostBytes = std::size_t{72} << 20;

    /// Once goOn answers false, reading ends.
    SoundEmbedding(Folders folders, std::function<bool()> goOn)
        : folders_(std::move(folders)), goOn_(std::move(goOn)) {}

    /// Adds "Audio" to the record's sample, unless it names none, carries its sound already, or one
    /// that every machine has; one that is damaged is replaced. Without its sound the record stays
    /// as it is. name is the preset's, for notes.
    void embed(PropertyDictionary& record, const std::string& name);

    /// What could not be embedded, and why, a line each.
    const std::vector<std::string>& notes() const { return notes_; }

private:
    /// What was made of one sample.
    struct Made {
        PropertyDictionary sample;
        PropertyDictionary audio; ///< empty when there is nothing to embed
        std::string problem;      ///< why not; empty where it need not be
    };
    const Made& make(const PropertyDictionary& sample);

    Result<PropertyDictionary> audioOf(const PropertyDictionary& sample);

    Folders folders_;
    std::function<bool()> goOn_;
    FileFacts files_;
    std::vector<Made> made_; // banks play one sound many times
    std::size_t bytes_ = 0;
    std::vector<std::string> notes_;
};

} // namespace zephyra
