// CommandFacts: what pages about the program tell of one command, and what its words may be.
#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace zephyra {

/// What a shell can offer for a word.
enum class WordKind {
    nothing, ///< numbers, new names
    file,
    folder,
    bank,
    preset,
    control,      ///< a control's name, then "="
    movedControl, ///< a control's name, then ":"
    choice        ///< one of a few
};

struct OptionFacts {
    std::vector<std::string> names = {}; ///< "-o", "--output"
    std::string value = {};              ///< "OUT"; empty for a flag
    std::string help = {};
    std::string group = {}; ///< "Sound"
    WordKind kind = WordKind::nothing;
    std::vector<std::string> choices = {};
    bool valueMayLack = false; ///< the option may stand alone
};

struct WordFacts {
    std::string name = {}; ///< "BANK"
    std::string help = {};
    WordKind kind = {};
    bool repeats = {};
};

struct CommandFacts {
    std::string name = {}; ///< "preset show"; empty for the program itself
    std::string help = {};
    std::string usage = {}; ///< "zephyra preset show [OPTIONS] BANK PRESET"
    std::string footer = {};
    std::vector<std::string> commands = {}; ///< what may follow the name
    std::vector<OptionFacts> options = {};  ///< without --help
    std::vector<WordFacts> words = {};      ///< in their order
};

/// The program, then every command, a group before its own. MAIN.
std::vector<CommandFacts> commandFacts(const CLI::App& app);

/// The names of the controls that --set takes, each as one word for a shell: without blanks. MAIN.
std::vector<std::string> controlNames();

} // namespace zephyra
