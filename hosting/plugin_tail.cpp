#include "hosting/plugin_tail.h"

#include "effects/echo_tail.h"
#include "effects/stereo_echo.h"

#include <algorithm>

namespace zephyra {

namespace echo = delay_stereo_forward;

PluginTail::PluginTail(HostedInstance& instance) : instance_(instance) {
    RunLoop& loop = instance.instance.runLoop;
    const RunLoop::Scope main(loop);
    source_ = loop.addSource([this] { fadeOut_ = instance_.view.fadeOutTime(); });
}

PluginTail::~PluginTail() {
    RunLoop& loop = instance_.instance.runLoop;
    const RunLoop::Scope main(loop);
    loop.cancel(source_);
}

double PluginTail::seconds() const ZEPHYRA_NONBLOCKING {
    return grainSeconds() + echoSeconds();
}

double PluginTail::grainSeconds() const ZEPHYRA_NONBLOCKING {
    MOK_SCRUB_GRANULATOR& stream = instance_.stream();
    const double grain = stream.engine().longestGrain();
    const waveform_data& live = stream.waveForm().data();
    if (live.isLiveEnabled && stream.engine().isCutFrom(live.mSample.load()))
        return static_cast<double>(WaveForm::kLiveFrames) / sampleRate_ + grain;
    return fadeOut_ + std::min(grain, MOK_SCRUB_GRANULATOR::getDelayedStopTime());
}

double PluginTail::echoSeconds() const ZEPHYRA_NONBLOCKING {
    const mokGranulatorSF& engine = instance_.stream().engine();
    if (!engine.echoOn) return 0.0;
    const CommonState* const module = engine.echoModule();
    const auto side = [module](echo::Parameter time, echo::Parameter gain) {
        return EchoSide{echo::getparameter(module, time), echo::getparameter(module, gain)};
    };
    return echoTail(side(echo::kTimeL, echo::kFeedbackL), side(echo::kTimeR, echo::kFeedbackR),
                    sampleRate_);
}

} // namespace zephyra
