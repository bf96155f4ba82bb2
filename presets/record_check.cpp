#include "presets/record_check.h"

#include "controls/state_keys.h"
#include "library/bank_edits.h"
#include "main_view/audio_unit_view_controller.h"

#include <algorithm>
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

    void add(const StateFinding& finding, bool isElsewhere = false) {
        if (finding.path == kSnapshotTags) return; // the bank's own check tells
        if (isPathOf(record_, finding.path))
            all_.push_back({key_ + "." + finding.path, finding.text, false, isElsewhere});
        else
            all_.push_back({key_, lineOf(finding), false, isElsewhere});
    }
    /// Of the whole preset; empty for nothing.
    void add(std::string_view text) {
        if (!text.empty()) all_.push_back({key_, std::string(text)});
    }
    /// Of what became of its sample.
    void add(const SampleReport& sample) {
        for (const StateFinding& finding : sample.findings) add(finding, true);
        addOfSample(otherSoundLine(sample));
        if (!sample.notEmbedded.empty()) all_.push_back({key_, sample.notEmbedded, false, true});
        addOfSample(sample.problem);
    }
    std::vector<BankFinding> take() { return std::move(all_); }

private:
    void addOfSample(const std::string& text) {
        if (text.empty()) return;
        all_.push_back({key_ + "." + ofStream(state_key::kSample), text, false, true});
    }

    std::string key_;
    const PropertyDictionary& record_;
    std::vector<BankFinding> all_;
};

/// Whether the sample that a record names was found as the record says, and could be taken.
bool isSampleFine(const RestoreReport& report) {
    const SampleReport& sample = report.sample;
    if (sample.end != SampleEnd::taken || sample.isOtherSound || !sample.notEmbedded.empty())
        return false;
    return std::ranges::none_of(report.findings, [](const StateFinding& finding) {
        return finding.path.starts_with(ofStream(state_key::kSample));
    });
}

class Checker {
public:
    explicit Checker(const Folders& folders) : folders_(folders) {}

    std::vector<BankFinding> check(const std::string& key, const PropertyDictionary& record) {
        const auto sample = record.find(ofStream(state_key::kSample));
        if (sample == record.end() || !isKnownToBeFine(sample->second))
            return findingsOf(key, record, restored(record));
        PropertyDictionary rest = record;
        rest.erase(sample->first);
        return findingsOf(key, rest, restored(rest));
    }

private:
    bool isKnownToBeFine(const PropertyValue& sample) const {
        return std::ranges::find(fineSamples_, sample) != fineSamples_.end();
    }

    RestoreReport restored(const PropertyDictionary& record) {
        Instance instance;
        instance.fileFacts = files_;
        AudioUnitViewController controller(instance); // without folders: no bank is listed
        instance.folders = folders_;
        RestoreReport report;
        controller.setReportTaker([&report](const RestoreReport& whole) { report = whole; });
        {
            const RunLoop::Scope main(instance.runLoop);
            controller.restoreStateProc(record);
        }
        instance.runLoop.finishWork(); // a sample that the record names
        if (isSampleFine(report)) fineSamples_.push_back(record.at(ofStream(state_key::kSample)));
        return report;
    }

    static std::vector<BankFinding> findingsOf(const std::string& key,
                                               const PropertyDictionary& record,
                                               const RestoreReport& report) {
        Findings findings(key, record);
        for (const StateFinding& finding : report.findings) findings.add(finding);
        if (report.selection) findings.add(QuickPresetsManager::whatIsMissing(*report.selection));
        findings.add(report.sample);
        return findings.take();
    }

    Folders folders_;
    std::shared_ptr<FileFacts> files_ = std::make_shared<FileFacts>();
    std::vector<PropertyValue> fineSamples_; // banks play one sound many times
};

} // namespace

RecordCheck makeRecordCheck(const Folders& folders) {
    return [checker = std::make_shared<Checker>(folders)](const std::string& key,
                                                          const PropertyDictionary& record) {
        return checker->check(key, record);
    };
}

} // namespace zephyra
