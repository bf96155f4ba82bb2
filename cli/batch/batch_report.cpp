#include "cli/batch/batch_report.h"

#include "cli/terminal/json_text.h"

#include <cstdio>
#include <nlohmann/json.hpp>
#include <set>
#include <string_view>

namespace zephyra {

namespace {

using nlohmann::ordered_json;

ordered_json failureJson(const BatchJob& job) {
    ordered_json json;
    if (!job.input.empty()) json["input"] = job.input.string();
    if (job.preset) {
        json["bank"] = job.preset->bank;
        json["preset"] = job.preset->name;
        json["presetKey"] = job.preset->key;
    }
    json["error"] = job.end.message;
    return json;
}

std::string jsonOf(const std::vector<BatchJob>& jobs) {
    ordered_json all = ordered_json::array();
    for (const BatchJob& job : jobs)
        all.push_back(job.end.code == ExitCode::success
                          ? ordered_json::parse(job.end.json, nullptr, false)
                          : failureJson(job));
    return textOfJson(all);
}

std::string linesOf(const std::vector<BatchJob>& jobs) {
    std::string lines;
    for (const BatchJob& job : jobs) lines += job.end.line;
    return lines;
}

} // namespace

ExitCode reportBatch(const std::vector<BatchJob>& jobs, const RenderOptions& options) {
    ExitCode code = ExitCode::success;
    std::set<std::string_view> told; // of a file that many renders read, once
    for (const BatchJob& job : jobs) {
        if (!options.quiet)
            for (const std::string& notice : job.end.notices)
                if (told.insert(notice).second)
                    std::fprintf(stderr, "zephyra: %s\n", notice.c_str());
        if (job.end.code != ExitCode::success)
            code = endWith(ExitCode::failure, job.name + ": " + job.end.message);
    }
    ExitCode printed = ExitCode::success;
    if (options.json)
        printed = printOut(jsonOf(jobs));
    else if (!options.quiet)
        printed = printOut(linesOf(jobs));
    return printed == ExitCode::success ? code : printed;
}

} // namespace zephyra
