#include "plugin/standalone/document_opening.h"

#include "platform/files/folder_entries.h"
#include "platform/shared_folder_notices.h"
#include "platform/sound/sound_file.h"
#include "platform/text/odd_bytes.h"
#include "presets/bank_opening.h"
#include "presets/picked_presets.h"

namespace zephyra {

namespace {

namespace fs = std::filesystem;

Result<std::string> openAsBank(PluginInstance& instance, const fs::path& file) {
    HostedInstance& system = instance.system();
    const Folders folders = system.instance.folders; // which nobody changes any more
    BankFolder banks(folders); // of its own, because MAIN's may be in use by a WORKER
    const auto opened = openBank(banks, file);
    if (!opened) return Failure{opened.message()};
    const auto& [bank, preset] = opened.value();
    const std::string isThere = quotedBank(bank) + " is among your banks";
    {
        const RunLoop::Scope main(system.instance.runLoop);
        if (!preset.empty()) system.view.presets.loadDefaultSnapshot_snapID(bank, preset);
        system.instance.sharedFolder.post(shared_folder_notice::kBanks);
    }
    system.instance.runLoop.finishWork(); // or the preset would overtake what is opened next
    return preset.empty() ? isThere + "; it has no presets" : isThere;
}

} // namespace

Result<std::string> openDocument(PluginInstance& instance, const fs::path& file) {
    if (file.empty()) return Failure{"a file's name is empty; check what the program is given"};
    std::error_code error;
    const fs::path whole = fs::absolute(file, error); // states name it wherever they are read
    if (error) return Failure{shownFile(file) + ": " + error.message()};
    if (extensionOf(whole.filename().string()) == kBankExtension)
        return openAsBank(instance, whole);
    if (auto sound = openSoundFile(whole); !sound) return Failure{sound.message()};
    instance.loadSample(whole);
    return shownFile(whole.filename()) + " plays once it is read"; // which may still fail
}

} // namespace zephyra
