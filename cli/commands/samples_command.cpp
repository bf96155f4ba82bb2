#include "cli/commands/commands.h"

#include "cli/commands/import_run.h"
#include "cli/terminal/json_text.h"
#include "cli/terminal/text_table.h"
#include "library/quick_sample_manager.h"
#include "platform/files/file_name.h"
#include "platform/files/folder_entries.h"
#include "platform/instance.h"
#include "platform/sound/sound_file.h"
#include "platform/text/message_text.h"
#include "platform/text/odd_bytes.h"
#include "platform/text/text_numbers.h"

#include <algorithm>
#include <filesystem>
#include <functional>
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
    return textOfJson(json);
}

std::string plainText(const std::vector<ListedSample>& samples) {
    TextTable table;
    for (const ListedSample& sample : samples) {
        if (!sample.info) {
            table.addRow({typedFromBytes(sample.name), sample.section, sample.info.message()});
            continue;
        }
        const SoundFileInfo& info = sample.info.value();
        table.addRow({typedFromBytes(sample.name), sample.section, lengthText(info),
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

Failure nameIsTaken(const std::string& name) {
    return {"a sample " + inQuotes(name) +
            " is there already; choose another name with --as, or add --yes to replace it"};
}

Failure noSuchName(const std::string& name) {
    return {"no sample can be called " + inQuotes(name) +
            "; a name is UTF-8 of at most 255 bytes, without / and control characters, and neither "
            "\".\" nor \"..\"; choose another with --as"};
}

/// Without the extension, which the copy gets in any case.
std::string stemTyped(const fs::path& file, std::string_view typed) {
    typed = trimmed(typed);
    const std::string extension = file.extension().string();
    if (!extension.empty() && typed.ends_with(extension)) typed.remove_suffix(extension.size());
    return std::string(typed);
}

/// One file on its way into the shared folder.
class SampleImport {
public:
    SampleImport(const Folders& folders, const SampleImportRequest& request,
                 std::function<bool(double share)> progress)
        : request_(request) {
        instance_.folders = folders;
        import_.setProgress(std::move(progress));
    }

    /// The name of the copy.
    Result<std::string> run(const fs::path& file) {
        const auto name = request_.name ? import_.nameAs(file, stemTyped(file, *request_.name))
                                        : import_.nameOf(file);
        if (!import_.takes(file)) return Failure{shownFile(file) + ": " + name.message()};
        if (!name) return noSuchName(request_.name.value_or(file.filename().string()));
        {
            const RunLoop::Scope main(instance_.runLoop);
            import_.copyDocument(file, name.value(),
                                 request_.yes ? IfTaken::replace : IfTaken::ask);
        }
        settle(instance_, import_);
        const Alert* const alert = instance_.alerts.current();
        if (!alert) return name;
        return alert->textField ? nameIsTaken(name.value()) : Failure{alert->message};
    }

private:
    using IfTaken = DocumentImport::IfTaken;

    const SampleImportRequest& request_;
    Instance instance_;
    DocumentImport import_{instance_, soundFiles(), [] {}};
};

/// What stands for the words of a request: a folder for the sound files in it.
struct NamedSamples {
    std::vector<std::string> files;
    std::vector<std::string> notes; // on what was left out
    bool hasFolder = false;
};

/// ": 1 file was left out".
std::string leftOut(std::size_t count, const char* one, const char* many) {
    return ": " + std::to_string(count) + " " + (count == 1 ? one : many) + " left out";
}

/// Hidden files and folders are nobody's samples, and not counted.
Result<NamedSamples> namedSamples(const std::vector<std::string>& words) {
    NamedSamples named;
    for (const std::string& word : words) {
        std::error_code error;
        if (!fs::is_directory(word, error)) {
            named.files.push_back(word);
            continue;
        }
        named.hasFolder = true;
        const std::size_t before = named.files.size();
        std::size_t others = 0, folders = 0;
        for (const std::string& name : folderEntries(word)) {
            const fs::path file = fs::path(word) / name;
            if (name.starts_with('.')) continue;
            if (fs::is_directory(file, error))
                ++folders;
            else if (std::ranges::count(QuickSampleManager::kExtensions, extensionOf(name)) > 0)
                named.files.push_back(file.string());
            else
                ++others;
        }
        if (named.files.size() == before)
            return Failure{shownFile(word) + " holds no sample; name a folder of sound files"};
        if (others > 0)
            named.notes.push_back(shownFile(word) + leftOut(others, "file that is no sample was",
                                                            "files that are no samples were"));
        if (folders > 0)
            named.notes.push_back(shownFile(word) +
                                  leftOut(folders, "folder in it was", "folders in it were") +
                                  "; name such a folder itself to import what it holds");
    }
    return named;
}

} // namespace

ExitCode runSamples(const CommandContext& context, const SamplesRequest& request) {
    const std::vector<ListedSample> samples = listedSamples(context.folders);
    return printOut(request.json ? jsonText(samples) : plainText(samples));
}

ExitCode runSampleImport(const CommandContext& context, const SampleImportRequest& request) {
    const auto named = namedSamples(request.files);
    if (!named) return endWith(ExitCode::failure, named.message());
    const auto& [files, notes, hasFolder] = named.value();
    if (request.name && (files.size() > 1 || hasFolder))
        return endWith(ExitCode::wrongUsage, "--as names one sample; import one file with it");
    const Folders& folders = context.folders;
    if (const auto ready = readySharedFolder(folders); !ready)
        return endWith(ExitCode::failure, ready.message());
    for (const std::string& note : notes) endWith(ExitCode::success, note);
    return importAll(files, [&](const std::string& file, const auto& progress) {
        const auto imported = SampleImport(folders, request, progress).run(file);
        return imported ? Result(onOneLine(imported.value()) + " is there\n") : imported;
    });
}

} // namespace zephyra
