#include "cli/options/control_options.h"
#include "cli/options/render_options.h"

namespace zephyra {

namespace {

using Read = OptionReader::Read;

Read lfoInto(MotionRequest& motion) {
    return [&motion](const char* option, const std::string& text) -> Complaint {
        const std::string where = std::string(option) + " " + text + ": ";
        const Result<LfoRequest> lfo = parseLfo(text);
        if (!lfo) return Failure{where + lfo.message()};
        if (motion.hasLfo(lfo.value().control))
            return Failure{where + controlRange(lfo.value().control).name +
                           " has an LFO already; leave one out"};
        motion.lfos.push_back(lfo.value());
        return {};
    };
}

Read learnInto(RenderRequest& request) {
    return [&request](const char* option, const std::string& text) -> Complaint {
        const std::string typed = std::string(option) + " " + text, where = typed + ": ";
        MotionRequest& motion = request.motion;
        const Result<LearnRequest> learned = parseLearn(text);
        if (!learned) return Failure{where + learned.message()};
        const char* const name = controlRange(learned.value().control).name;
        if (motion.hasLfo(learned.value().control))
            return Failure{where + name + " has an LFO; a control follows the one or the other"};
        for (const LearnRequest& other : motion.learned)
            if (other.control == learned.value().control &&
                other.binding.trigger == learned.value().binding.trigger)
                return Failure{where + name + " learned that already; leave one out"};
        if (!request.host.midi) // which was read before
            return Failure{typed + " has no controllers to follow; add --midi FILE.mid"};
        motion.learned.push_back(learned.value());
        return {};
    };
}

Read scrubInto(MotionRequest& motion) {
    return [&motion](const char* option, const std::string& text) {
        Complaint wrong = pathInto(motion.scrub)(option, text);
        if (!wrong && motion.hasLfo(ControlId::scrubbingWave))
            wrong = Failure{std::string(option) + " " + text +
                            ": Scrubbing Wave has an LFO; the scan follows the one or the other"};
        return wrong;
    };
}

} // namespace

void declareMotionOptions(OptionReader& reader, RenderRequest& request) {
    MotionRequest& motion = request.motion;
    reader.beginGroup("Motion");
    reader.addRepeated(
        "--lfo", "CONTROL:KEY=VALUE,...",
        "An LFO on a control, or on \"Scrubbing Wave\", the scan. shape: sine, square, v, "
        "rise, fall, random, random_interp; hz: 0.016 to 24, or link: a note value at the "
        "host's tempo, mult: so many of them; min, max: fractions of the control's range; "
        "gravity: 0 jumps, 1 hardly follows; phase: 0 to 1. Default: sine, 0.25 Hz, the "
        "whole range, from where the control stands. May be given often",
        lfoInto(motion));
    reader.add(
        "--scrub", "FILE.csv",
        "Move the scan by a take, over and over: a position from 0 to 1 a line, 15 a second, with "
        "--scan-sync 15 in two beats",
        scrubInto(motion));
    reader.add("--record-scrub", "FILE.csv",
               "Keep how the scan moves, up to 120 s, as a take for --scrub",
               pathInto(motion.recordScrub));
    reader.addRepeated(
        "--learn", "SOURCE=CONTROL,...",
        "What a controller of the --midi file moves. SOURCE: cc:N, cc14:N, bend, note:N "
        "(its velocity) or pressure. Then, if need be: min, max: fractions of the control's "
        "range; curve: 0.1 to 10; channel: 1 to 16; takeover: jump (the default) or pickup; "
        "relative=yes: a bend adds to where the control stands. May be given often",
        learnInto(request));
}

} // namespace zephyra
