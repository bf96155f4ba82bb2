#include "cli/commands/commands.h"

#include "cli/terminal/text_table.h"
#include "library/quick_sample_manager.h"
#include "platform/files/folder_entries.h"
#include "platform/instance.h"
#include "platform/sound/sound_file.h"
#include "platform/text/message_text.h"
#include "platform/text/text_numbers.h"

#include <algorithm>
#include <filesystem>
#include <nlohmann/json.hpp>

namespace zephyra {

namespace fs = std::filesystem;

namespace {

using Json = nlohmann::ordered_json;

struct ListedSample {
    std::string name;
    const char* section;
    fs::path file;
    Result<SoundFileInfo> info;
};

std::vector<ListedSample> listedSamples(const Folders& folders) {
    Instance instance;
    instance.folders = folders;
    QuickSampleManager samples(instance, nullptr);
    samples.fillTableWithFilesName();
    std::vector<ListedSample> listed;
    const auto add = [&](const std::string& name, const char* section, const fs::path& folder) {
        listed.push_back(
            {name, section, folder / name, instance.fileFacts->soundInfo(folder / name)});
    };
    const auto& builtIn = samples.builtInFiles();
    const auto& shared = samples.listOfFiles();
    for (const std::string& name : builtIn) {
        const bool isCopied = std::ranges::find(shared, name) != shared.end();
        add(name, "built-in", isCopied ? instance.folders.shared : instance.folders.resources);
    }
    for (const std::string& name : shared)
        if (std::ranges::find(builtIn, name) == builtIn.end())
            add(name, "shared", instance.folders.shared);
    return listed;
}

std::string lengthText(const SoundFileInfo& info) {
    if (info.frames == 0) return "length unknown"; // the header does not tell
    return formatDuration(static_cast<double>(info.frames) / info.sampleRate);
}

std::string jsonText(const std::vector<ListedSample>& samples) {
    Json json = Json::array();
    for (const ListedSample& sample : samples) {
        Json entry = {{"name", sample.name},
                      {"file", sample.file.string()},
                      {"builtIn", std::string_view(sample.section) == "built-in"}};
        if (sample.info) {
            const SoundFileInfo& info = sample.info.value();
            entry["format"] = info.format;
            entry["channels"] = info.channels;
            entry["sampleRate"] = info.sampleRate;
            entry["seconds"] = info.frames > 0
                                   ? Json(static_cast<double>(info.frames) / info.sampleRate)
                                   : Json(nullptr);
        } else {
            entry["problem"] = sample.info.message();
        }
        json.push_back(std::move(entry));
    }
    return json.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

std::string plainText(const std::vector<ListedSample>& samples) {
    TextTable table;
    for (const ListedSample& sample : samples) {
        if (!sample.info) {
            table.addRow({sample.name, sample.section, sample.info.message()});
            continue;
        }
        const SoundFileInfo& info = sample.info.value();
        table.addRow({sample.name, sample.section, lengthText(info),
                      formatNumber(info.sampleRate) + " Hz", info.format});
    }
    return table.text();
}

// --- import ---

DocumentImport::Kind soundFiles() {
    const auto& known = QuickSampleManager::kExtensions;
    std::string list;
    for (const std::string_view extension : known)
        list.append(list.empty() ? "" : ", ").append(extension);
    return {.extensions = {known.begin(), known.end()},
            .refusal = "this is no sample; name a file whose name ends in one of " + list};
}

/// Runs what the import does behind the scenes until it waits for nothing but an answer.
void settle(Instance& instance, const DocumentImport& import) {
    do {
        instance.runLoop.waitForWork();
        instance.runLoop.runPosted();
    } while (import.isImporting());
}

Failure nameIsTaken(const fs::path& target) {
    return {"a sample " + inQuotes(target.filename().string()) +
            " is there already; choose another name with --as, or add --yes to replace it"};
}

/// What the import has to say, of a name that is taken or of the file itself.
Failure complaintOf(const Alert& alert, const fs::path& file) {
    if (alert.textField) return nameIsTaken(file);
    const bool namesFile = alert.message.find(file.filename().string()) != std::string::npos;
    return {namesFile ? alert.message : file.string() + ": " + alert.message};
}

/// Where the copy is to stand by the name that was asked for.
fs::path namedTarget(const fs::path& folder, const fs::path& file, const std::string& name) {
    const std::string extension = file.extension().string();
    return folder / (name.ends_with(extension) ? name : name + extension);
}

/// One file on its way into the shared folder.
class SampleImport {
public:
    SampleImport(const Folders& folders, const SampleImportRequest& request) : request_(request) {
        instance_.folders = folders;
    }

    /// The name of the copy.
    Result<std::string> run(const fs::path& file) {
        const fs::path target = request_.name
                                    ? namedTarget(instance_.folders.shared, file, *request_.name)
                                    : instance_.folders.shared / file.filename();
        std::error_code ignored;
        if (request_.name && !request_.yes && fs::exists(target, ignored))
            return nameIsTaken(target);
        start(file, target);
        settle(instance_, import_);
        replaceIfAsked();
        if (const Alert* const alert = instance_.alerts.current()) return complaintOf(*alert, file);
        return target.filename().string();
    }

private:
    void start(const fs::path& file, const fs::path& target) {
        const RunLoop::Scope main(instance_.runLoop);
        if (request_.name)
            import_.importAs(file, std::string(stemOf(target.filename().string())));
        else
            import_.importDocument(file);
    }

    void replaceIfAsked() {
        const Alert* const alert = instance_.alerts.current();
        if (!alert || !alert->textField || !request_.yes) return;
        const std::string name = alert->textField->placeholder; // the alert goes as it is answered
        instance_.alerts.answer("OK", name);
        settle(instance_, import_);
    }

    const SampleImportRequest& request_;
    Instance instance_;
    DocumentImport import_{instance_, soundFiles(), [] {}};
};

} // namespace

ExitCode runSamples(const CommandContext& context, const SamplesRequest& request) {
    const std::vector<ListedSample> samples = listedSamples(context.folders);
    return printOut(request.json ? jsonText(samples) : plainText(samples));
}

ExitCode runSampleImport(const CommandContext& context, const SampleImportRequest& request) {
    if (request.name && request.files.size() > 1)
        return endWith(ExitCode::wrongUsage, "--as names one sample; import one file with it");
    const Folders& folders = context.folders;
    if (const auto ready = readySharedFolder(folders); !ready)
        return endWith(ExitCode::failure, ready.message());
    for (const std::string& file : request.files) {
        const auto imported = SampleImport(folders, request).run(file);
        if (!imported) return endWith(ExitCode::failure, imported.message());
        if (const ExitCode code = printOut(onOneLine(imported.value()) + " is there\n");
            code != ExitCode::success)
            return code;
    }
    return ExitCode::success;
}

} // namespace zephyra
