#include "presets/record_check.h"

#include "cli/held_log.h"
#include "library/bank_edits.h"
#include "main_view/audio_unit_view_controller.h"
#include "presets/preset_facts.h"
#include "presets/preset_sound.h"

#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace zephyra {

namespace {

/// The key of the record's top that a log line begins with; empty for none.
std::string topKeyOf(const std::string& line, const PropertyDictionary& record) {
    const std::string path = line.substr(0, line.find(": "));
    if (record.contains(path)) return path;
    const std::string first = path.substr(0, path.find_first_of(".["));
    return record.contains(first) ? first : std::string();
}

/// "Density_0: a value ..." of the preset becomes a finding at its key.
BankFinding findingOf(const std::string& key, const std::string& line,
                      const PropertyDictionary& record) {
    if (topKeyOf(line, record).empty()) return {key, line};
    const std::size_t colon = line.find(": ");
    return {key + "." + line.substr(0, colon), line.substr(colon + 2)};
}

/// Whether the line tells how the sample's file was looked for. What was not found at all comes as
/// an alert, too.
bool isOfSampleFile(std::string_view line) {
    return line.starts_with("Warning, no file exist at path: ") ||
           line.ends_with(": the copy in the state is played") || tellsOfOtherSound(line);
}

class Checker {
public:
    Checker(const Folders& folders, SampleFiles samples, std::function<bool()> goOn)
        : folders_(folders), samples_(samples), goOn_(std::move(goOn)) {}

    std::vector<BankFinding> check(const std::string& key, const PropertyDictionary& record) {
        if (!goOn_()) return {}; // whoever asked sees it, too
        PropertyDictionary restored = record;
        const auto sample = restored.find(record_key::kSample);
        const bool wasFine = sample != restored.end() && sample->second == lastFineSample_;
        if (wasFine) restored.erase(sample); // banks play one sound many times
        std::vector<BankFinding> findings = restore(key, restored);
        if (!wasFine && sample != restored.end() && findings.empty())
            lastFineSample_ = sample->second;
        return findings;
    }

private:
    std::vector<BankFinding> restore(const std::string& key, const PropertyDictionary& record) {
        const HeldLog log; // lines of the worker that reads the sample come, too
        Instance instance;
        AudioUnitViewController controller(instance); // without folders: no bank is listed
        instance.folders = folders_;
        const std::size_t ofStart = log.lines().size();
        {
            const RunLoop::Scope main(instance.runLoop);
            controller.restoreStateProc(record);
            if (samples_ == SampleFiles::ignore) controller.sampleLoader.cancel();
        }
        instance.runLoop.waitForWork(); // a sample that the record names
        instance.runLoop.runPosted();
        std::vector<BankFinding> findings;
        const std::string sample = key + "." + record_key::kSample;
        for (const std::string& line : std::span(log.lines()).subspan(ofStart)) {
            if (topKeyOf(line, record) == kSnapshotTags) continue; // the bank's own check tells
            if (isOfSampleFile(line)) {
                if (samples_ == SampleFiles::lookFor && tellsOfOtherSound(line))
                    findings.push_back({sample, line});
                continue;
            }
            findings.push_back(findingOf(key, line, record));
        }
        while (const Alert* const alert = instance.alerts.current()) {
            if (samples_ == SampleFiles::lookFor) findings.push_back({sample, alert->message});
            if (!instance.alerts.answer(0)) break;
        }
        return findings;
    }

    Folders folders_;
    SampleFiles samples_;
    std::function<bool()> goOn_;
    PropertyValue lastFineSample_; // as long as none was met: a text, which no sample is
};

} // namespace

RecordCheck makeRecordCheck(const Folders& folders, SampleFiles samples,
                            std::function<bool()> goOn) {
    return [checker = std::make_shared<Checker>(folders, samples, std::move(goOn))](
               const std::string& key, const PropertyDictionary& record) {
        return checker->check(key, record);
    };
}

} // namespace zephyra
