// audio_struct: the audio unit's record of parameter values and render state.
#pragma once

#include "platform/sound/audio_buffer_list.h"
#include "platform/threads/relaxed.h"
#include "platform/threads/state_order.h"

namespace zephyra {

class LFO_WIDGETS_MAPPING;

/// One per audio unit. The values, a field for each parameter of stream/control_table.inl, in
/// linear units (a Boolean one is 0 or 1), are stored and read on any thread; the render state is
/// RENDER's own unless said otherwise.
struct audio_struct {
// clang-format off
#define CONTROL(id, name, values, saved, moved, held, handler, parameter) parameter
#define PARAMETER(unit, field, property, action) OrderedValue field;
#define NO_PARAMETER
#include "stream/control_table.inl"
    // clang-format on

    double lastTempoValue = -1.0;         ///< host tempo seen last; -1 makes the first one count
    Relaxed<bool> lastWasPlaying = false; ///< the host's transport moved in the cycle before
    bool hasBeenRewinded = false; ///< the beat position was at or before 0 since the last rewind
    bool hasBeenSynced = false;   ///< the present downbeat was told already
    float m_a = 0.9992f;          ///< smoothing pole of the two gains
    float m_b = 0.0008f;          ///< 1 - m_a
    float m_z_dry_wet = 0.0f;     ///< smoothed wet gain
    float m_z_dry_wet_inv = 0.0f; ///< smoothed dry gain
    Relaxed<float> _inputDryWet = 0.0f;         ///< target wet gain; MAIN sets it
    Relaxed<float> _inputDryWetInv = 0.0f;      ///< target dry gain; MAIN sets it
    AudioBufferList* lastInputBuffer = nullptr; ///< the dry signal, 2 channels of 4096 frames
    Relaxed<LFO_WIDGETS_MAPPING*> lfoInRefCon = nullptr; ///< for the tick hook; MAIN sets it
    double CURRENT_SAMPLING_RATE = 0.0;                  ///< Hz of the output bus; MAIN
    double CURRENT_BUFFER_FRAME = 0.0;                   ///< frames of the device's buffer; MAIN
};

} // namespace zephyra
