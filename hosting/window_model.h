// WindowModel: what a window shows of an instance, and what a player does in it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace zephyra {

class PluginInstance;
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

/// Rows to choose from.
struct ShownList {
    std::vector<std::string> rows;
    std::optional<std::size_t> chosen;

    bool operator==(const ShownList&) const = default;
};

/// One moment. Plain data.
struct WindowContents {
    std::string sound;             ///< path of the file that plays; empty for none
    bool isLive = false;           ///< grains are cut from the input, whatever file there is
    bool isCaptured = false;       ///< or from what LIVE heard until it went off
    std::string missing;           ///< path of a state's sound that was not found; empty for none
    std::optional<double> loading; ///< share of a file that is being read, 0..1
    std::optional<ShownAlert> alert;
    bool asksForFile = false; ///< a picker is to be shown, for pickFile or dismissFile
    ShownList banks, presets; ///< the player's and the factory's; the chosen bank's presets

    bool operator==(const WindowContents&) const = default;
};

/// A window asks for contents() some times a second and draws what changed. HOST; plugin must
/// outlive it.
class WindowModel {
public:
    explicit WindowModel(PluginInstance& plugin) : plugin_(plugin) {}

    WindowContents contents();

    /// Presses a button of the alert that was shown; nothing happens when another one is current by
    /// now, or there is no such button.
    void answer(const ShownAlert& shown, std::size_t button, const std::string& typed = {});

    /// Plays a sound file, or copies a bank into the player's folder and chooses it there; what
    /// goes wrong becomes an alert.
    void load(const std::filesystem::path& file);
    /// Plays file in place of what is missing.
    void locate(const std::filesystem::path& file);
    /// Chooses the bank that load() brought in, once it is there; a window calls it with every
    /// frame.
    void followImport();
    /// Answers the picker that contents() asked for, if it still stands.
    void pickFile(const std::filesystem::path& file);
    void dismissFile();

    void chooseBank(std::size_t row); ///< rows that are not there are ignored
    /// Loads it.
    void choosePreset(std::size_t row);

private:
    void chooseRow(int table, std::size_t row);

    PluginInstance& plugin_;
    std::optional<std::vector<std::string>> banksBefore_; // an import; to find the new one
};

} // namespace zephyra
