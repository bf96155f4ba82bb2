// CommandTable: the commands of the program on its command line.
#pragma once

#include "cli/commands/commands.h"

#include <functional>
#include <memory>
#include <vector>

namespace CLI {
class App;
}

namespace zephyra {

/// Declared once, and filled while the command line is parsed. MAIN.
class CommandTable {
public:
    /// app must outlive this, and be parsed while this lives.
    explicit CommandTable(CLI::App& app);
    CommandTable(const CommandTable&) = delete;
    CommandTable& operator=(const CommandTable&) = delete;

    /// What is wrong with the options of the command that was named.
    Complaint complaint() const;
    /// Runs it; one must have been named.
    ExitCode run(const CommandContext& context) const;

private:
    struct Row {
        const CLI::App* named;
        std::function<ExitCode(const CommandContext&)> command;
        std::function<Complaint()> complaint = {}; ///< empty: the parser finds all that is wrong
    };
    const Row* named() const;

    void declareRender(CLI::App& app);
    void declareFacts(CLI::App& app);
    void declareBanks(CLI::App& app);
    void declarePreset(CLI::App& app);
    void declarePresetFiles(CLI::App& preset);
    void declarePresetChanges(CLI::App& preset);
    void declareSamples(CLI::App& app);
    void declareFolders(CLI::App& app);

    /// What command gets when it is the named one.
    template <typename Request>
    Request& add(const CLI::App& named,
                 ExitCode (*command)(const CommandContext&, const Request&)) {
        const auto request = std::make_shared<Request>();
        rows_.push_back({&named, [command, request](const CommandContext& context) {
                             return command(context, *request);
                         }});
        return *request;
    }

    std::vector<Row> rows_;
};

} // namespace zephyra
