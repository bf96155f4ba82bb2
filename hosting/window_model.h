// WindowModel: the files and answers that a player gives an instance in its window.
#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace zephyra {

class PluginInstance;
class QuickPresetsManager;
struct Alert;

/// An alert as far as a line with buttons shows it.
struct ShownAlert {
    std::string title, message;
    std::vector<std::string> buttons;
    std::optional<std::string> typed; ///< what stands in its text field; none without a field

    bool operator==(const ShownAlert&) const = default;
};

/// What is shown of one.
ShownAlert shownAlert(const Alert& alert);

/// HOST; plugin must outlive it.
class WindowModel {
public:
    explicit WindowModel(PluginInstance& plugin) : plugin_(plugin) {}

    /// Presses a button of the alert that was shown; nothing happens when another one is current by
    /// now, or there is no such button.
    void answer(const ShownAlert& shown, std::size_t button, const std::string& typed = {});

    /// Plays a sound file, or copies a bank into the player's folder and chooses its first preset,
    /// which undo takes back; what goes wrong becomes an alert.
    void load(const std::filesystem::path& file);
    /// Plays file in place of what is missing.
    void locate(const std::filesystem::path& file);
    /// Chooses the bank that load() brought in, once it is there, and its first preset, once that
    /// is read; a window calls it with every frame. Waits for nobody: while another thread is MAIN,
    /// nothing happens.
    void followImport();
    /// Answers the system's request for a file, if it still stands.
    void pickFile(const std::filesystem::path& file);
    void dismissFile();

private:
    void chooseNewBank(QuickPresetsManager& store);
    void chooseItsFirstPreset(QuickPresetsManager& store);

    PluginInstance& plugin_;
    std::optional<std::vector<std::string>> banksBefore_; // an import; to find the new one
    std::string newBank_;                                 // whose first preset is awaited
};

} // namespace zephyra
