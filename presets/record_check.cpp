#include "presets/record_check.h"

#include "controls/state_keys.h"
#include "library/bank_edits.h"
#include "main_view/audio_unit_view_controller.h"

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace zephyra {

namespace {

/// Whether path leads to a value of the record: messages may name others, as a control's.
bool isPathOf(const PropertyDictionary& record, const std::string& path) {
    return record.contains(path) || record.contains(path.substr(0, path.find_first_of(".[")));
}

/// What a preset's restoring brought to light, with whole paths.
class Findings {
public:
    Findings(std::string key, const PropertyDictionary& record)
        : key_(std::move(key)), record_(record) {}

    void add(const StateFinding& finding) {
        if (finding.path == kSnapshotTags) return; // the bank's own check tells
        if (isPathOf(record_, finding.path))
            all_.push_back({key_ + "." + finding.path, finding.text});
        else
            all_.push_back({key_, lineOf(finding)});
    }
    /// Of the whole preset; empty for nothing.
    void add(std::string_view text) {
        if (!text.empty()) all_.push_back({key_, std::string(text)});
    }
    /// Of its sample.
    void addOfSample(const std::string& text) {
        if (!text.empty()) all_.push_back({key_ + "." + ofStream(state_key::kSample), text});
    }
    std::vector<BankFinding> take() { return std::move(all_); }

private:
    std::string key_;
    const PropertyDictionary& record_;
    std::vector<BankFinding> all_;
};

class Checker {
public:
    Checker(const Folders& folders, SampleFiles samples, std::function<bool()> goOn)
        : folders_(folders), samples_(samples), goOn_(std::move(goOn)) {}

    std::vector<BankFinding> check(const std::string& key, const PropertyDictionary& record) {
        if (!goOn_()) return {}; // whoever asked sees it, too
        PropertyDictionary restored = record;
        const auto sample = restored.find(ofStream(state_key::kSample));
        const bool wasFine = sample != restored.end() && sample->second == lastFineSample_;
        if (wasFine) restored.erase(sample); // banks play one sound many times
        std::vector<BankFinding> findings = restore(key, restored);
        if (!wasFine && sample != restored.end() && findings.empty())
            lastFineSample_ = sample->second;
        return findings;
    }

private:
    std::vector<BankFinding> restore(const std::string& key, const PropertyDictionary& record) {
        Instance instance;
        instance.fileFacts = files_;
        AudioUnitViewController controller(instance); // without folders: no bank is listed
        instance.folders = folders_;
        RestoreReport report;
        controller.setReportTaker([&report](const RestoreReport& whole) { report = whole; });
        {
            const RunLoop::Scope main(instance.runLoop);
            controller.restoreStateProc(record);
            if (samples_ == SampleFiles::ignore) controller.sampleLoader.cancel();
        }
        instance.runLoop.finishWork(); // a sample that the record names
        return findingsOf(key, record, report);
    }

    std::vector<BankFinding> findingsOf(const std::string& key, const PropertyDictionary& record,
                                        const RestoreReport& report) const {
        Findings findings(key, record);
        for (const StateFinding& finding : report.findings) findings.add(finding);
        if (report.selection) findings.add(QuickPresetsManager::whatIsMissing(*report.selection));
        for (const StateFinding& finding : report.sample.findings) findings.add(finding);
        if (samples_ == SampleFiles::lookFor) findings.addOfSample(otherSoundLine(report.sample));
        findings.add(report.sample.notEmbedded);
        if (samples_ == SampleFiles::lookFor) findings.addOfSample(report.sample.problem);
        return findings.take();
    }

    Folders folders_;
    SampleFiles samples_;
    std::function<bool()> goOn_;
    std::shared_ptr<FileFacts> files_ = std::make_shared<FileFacts>();
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
