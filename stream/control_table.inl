// The table of controls, one row each: what a control is stands here and nowhere else.
// clang-format off
//
// Whoever needs columns defines CONTROL and the words of those columns, then includes this file, which
// takes all of them away again:
//
//   CONTROL(id, name, values,
//           saved, moved, held, handler,
//           parameter)
//
// id         Its entry in ControlId, whose number is the row's place. Rows with a parameter come first:
//            their places are the addresses that hosts save automation under, and stay.
// name       As people read and type it.
// values     Displayed ones, those that people read and type.
//              RANGE(minimum, maximum, default, unit)
//              CURVE(minimum, maximum, default, unit, stepness): finer towards the minimum, by the
//                power of stepness
//              COUNT(minimum, maximum, default): whole numbers
//              SWITCH(default): 0 is off, anything else on
//              CHOICE(last, default): a position in a list of names, from 0; a knob's are note values
// saved      What the control's channel begins with: the key of states and the start of a host's
//            identifier; the stream's suffix follows.
//              KEPT(channel): by the stream's state, a switch as a Boolean, else the linear value
//              ELSEWHERE(channel): under that key, but not by the stream or not as that
//              NOT_KEPT
// moved      By modulation.
//              MOVED(group, place): its colour group, and its place in the list, which is the order of
//                the records in saved states; a new one takes the next number
//              NOT_MOVED
// held       Who holds the value.
//              KNOB(type, member), TOGGLE(member), BUTTON(member): StreamControls
//              OWN_KNOB(type, member): OwnKnobs, the view controller
//              NO_CONTROL
// handler    Of MOK_SCRUB_GRANULATOR, called when somebody moves the control.
//              HANDS_OVER(handler): hands the value to the engine, also when a stream is made
//              RUNS(handler): does more than that
//              PRESSED(handler, message): does what the button says
//              NO_HANDLER
// parameter  What hosts see.
//              PARAMETER(unit, field of audio_struct, property of HostParameters, action): the action
//                carries the value to the parameter, with "_down" and "_up" touch and release; empty
//                for none
//              NO_PARAMETER

CONTROL(scrubbingWave, "Scrubbing Wave", RANGE(0.0f, 1.0f, 0.0f, ""),
        NOT_KEPT, MOVED(scan, 0), NO_CONTROL, NO_HANDLER,
        PARAMETER(phase, scrubValue, _scrubParameter, ""))
CONTROL(amplitude, "Amplitude", RANGE(0.0f, 1.0f, 0.5f, ""),
        KEPT("Volume"), MOVED(level, 9), KNOB(MOK_KNOB, _volume), HANDS_OVER(ui_setAmplitude),
        PARAMETER(percent, volumeValue, _volume_Parameter, "AAUv3_Parameter_volume_from_DSP"))
CONTROL(pan, "Pan", RANGE(-1.0f, 1.0f, 0.0f, ""),
        KEPT("Pan"), MOVED(level, 10), KNOB(MOK_KNOB, _pan), HANDS_OVER(ui_setPan),
        PARAMETER(pan, panValue, _pan_Parameter, "AUv3_Parameter_pan_from_DSP"))
CONTROL(dryWet, "Dry/Wet", RANGE(0.0f, 100.0f, 50.0f, "%"),
        ELSEWHERE("InputDryWet"), MOVED(level, 27), OWN_KNOB(MOK_KNOB, _inputDryWetKnob), NO_HANDLER,
        PARAMETER(percent, drywetValue, _drywetParameter, "AUv3_Parameter_drywet_from_DSP"))
CONTROL(width, "Width", RANGE(0.0f, 1.0f, 0.25f, ""),
        KEPT("Width"), MOVED(level, 11), KNOB(MOK_KNOB, _width), HANDS_OVER(ui_setWidth),
        PARAMETER(percent, widthValue, _width_Parameter, "AUv3_Parameter_width_from_DSP"))
CONTROL(density, "Density", CURVE(0.5f, 400.0f, 50.0f, "Hz", 3.0f),
        KEPT("Density"), MOVED(grains, 3), KNOB(MokKnobHZ, _density), HANDS_OVER(ui_setDensity),
        PARAMETER(hertz, densityValue, _density_Parameter, "AUv3_Parameter_density_from_DSP"))
CONTROL(rndDensity, "Rnd Density", RANGE(0.0f, 1.0f, 0.5f, ""),
        KEPT("Rnd_Density"), MOVED(grains, 4), KNOB(MOK_KNOB, _rnd_density), HANDS_OVER(ui_setRndDensity),
        PARAMETER(percent, rnd_densityValue, _rnd_density_Parameter, "AUv3_Parameter_rnd_density_from_DSP"))
CONTROL(length, "Length", CURVE(5.0f, 2000.0f, 85.0f, "ms", 3.0f),
        KEPT("Length"), MOVED(grains, 5), KNOB(MOK_KNOB_EXP, _length), HANDS_OVER(ui_setLength),
        PARAMETER(milliseconds, lengthValue, _length_Parameter, "AUv3_Parameter_length_from_DSP"))
CONTROL(rndLength, "Rnd Length", RANGE(0.0f, 1.0f, 0.5f, ""),
        KEPT("Rnd_Length"), MOVED(grains, 6), KNOB(MOK_KNOB, _rnd_len), HANDS_OVER(ui_setRndLength),
        PARAMETER(percent, rnd_lenValue, _rnd_len_Parameter, "AUv3_Parameter_rnd_len_from_DSP"))
CONTROL(pitch, "Pitch", RANGE(-24.0f, 24.0f, 0.0f, "semitones"),
        KEPT("Pitch"), MOVED(pitch, 7), KNOB(MOK_KNOB, _pitch), HANDS_OVER(ui_setPitch),
        PARAMETER(relativeSemiTones, pitchValue, _pitch_Parameter, "AUv3_Parameter_pitch_from_DSP"))
CONTROL(rndPitch, "Rnd Pitch", RANGE(0.0f, 24.0f, 0.0f, "semitones"),
        KEPT("Rnd_Pitch"), MOVED(pitch, 8), KNOB(MOK_KNOB, _rnd_pitch), HANDS_OVER(ui_setRndPitch),
        PARAMETER(relativeSemiTones, rnd_pitchValue, _rnd_pitch_Parameter, "AUv3_Parameter_rnd_pitch_from_DSP"))
CONTROL(scanning, "Scanning", RANGE(-4.0f, 4.0f, 1.0f, "x"),
        KEPT("Scanning"), MOVED(scan, 1), KNOB(MOK_KNOB, _scanning), HANDS_OVER(ui_setSpeed),
        PARAMETER(rate, scanningValue, _scanning_Parameter, "AUv3_Parameter_scanning_from_DSP"))
CONTROL(jittering, "Jittering", CURVE(0.0f, 1000.0f, 5.0f, "ms", 4.0f),
        KEPT("Jittering"), MOVED(scan, 2), KNOB(MOK_KNOB_EXP, _jitter), HANDS_OVER(ui_setJittering),
        PARAMETER(milliseconds, jitterValue, _jitter_Parameter, "AUv3_Parameter_jitter_from_DSP"))
CONTROL(echoSwitch, "Echo Switch", SWITCH(0.0f),
        KEPT("EchoSwitch"), MOVED(echo, 13), TOGGLE(_echoSwitch), HANDS_OVER(enableEcho),
        PARAMETER(boolean, echoSwitchValue, _echoSwitch_Parameter, "AUv3_Parameter_echoSwitch_from_DSP"))
CONTROL(leftDelay, "Left Delay", RANGE(0.001f, 4.5f, 0.3f, "s"),
        KEPT("EchoLeftDelay"), MOVED(echo, 14), KNOB(MokKnobTime, _echoDelayLeft), HANDS_OVER(setEchoDelayLeft),
        PARAMETER(seconds, echoDelayLeftValue, _echoDelayLeft_Parameter, "AUv3_Parameter_echoDelayLeft_from_DSP"))
CONTROL(rightDelay, "Right Delay", RANGE(0.001f, 4.5f, 0.25f, "s"),
        KEPT("EchoRightDelay"), MOVED(echo, 15), KNOB(MokKnobTime, _echoDelayRight), HANDS_OVER(setEchoDelayRight),
        PARAMETER(seconds, echoDelayRightValue, _echoDelayRight_Parameter, "AUv3_Parameter_echoDelayRight_from_DSP"))
CONTROL(leftGain, "Left Gain", RANGE(0.0f, 0.98f, 0.341f, ""),
        KEPT("EchoLeftGain"), MOVED(echo, 16), KNOB(MOK_KNOB, _echoGainLeft), HANDS_OVER(setEchoGainLeft),
        PARAMETER(percent, echoGainLeftValue, _echoGainLeft_Parameter, "AUv3_Parameter_echoGainLeft_from_DSP"))
CONTROL(rightGain, "Right Gain", RANGE(0.0f, 0.98f, 0.231f, ""),
        KEPT("EchoRightGain"), MOVED(echo, 17), KNOB(MOK_KNOB, _echoGainRight), HANDS_OVER(setEchoGainRight),
        PARAMETER(percent, echoGainRightValue, _echoGainRight_Parameter, "AUv3_Parameter_echoGainRight_from_DSP"))
CONTROL(ringModulationSwitch, "Ring Modulation Switch", SWITCH(0.0f),
        KEPT("RMSwitch"), MOVED(ring, 21), TOGGLE(_rmSwitch), HANDS_OVER(enableRM),
        PARAMETER(boolean, rmSwitchValue, _rmSwitch_Parameter, "AUv3_Parameter_rmSwitch_from_DSP"))
CONTROL(ringModulationFrequency, "Ring Modulation Frequency", CURVE(0.1f, 8000.0f, 220.0f, "Hz", 4.0f),
        KEPT("RMFrequency"), MOVED(ring, 22), KNOB(MokKnobHZ, _rmFrequency), HANDS_OVER(setRmFrequency),
        PARAMETER(hertz, rmFrequencyValue, _rmFrequency_Parameter, "AUv3_Parameter_rmFrequency_from_DSP"))
CONTROL(ringModulationAmount, "Ring Modulation Amount", RANGE(0.0f, 1.0f, 0.5f, ""),
        KEPT("RMAmount"), MOVED(ring, 23), KNOB(MOK_KNOB, _rmAmount), HANDS_OVER(setRmAmount),
        PARAMETER(percent, rmAmountValue, _rmAmount_Parameter, "AUv3_Parameter_rmAmount_from_DSP"))
CONTROL(playStop, "Play Stop", SWITCH(0.0f),
        NOT_KEPT, MOVED(transport, 30), BUTTON(_playToggle), PRESSED(ui_playStop, "ui_playStop:"),
        PARAMETER(boolean, playStopValue, _playStop_Parameter, "AUv3_Parameter_playToggle_from_DSP"))
// On, the scan stands, and so does live sound.
CONTROL(freeze, "Freeze", SWITCH(0.0f),
        KEPT("Freeze"), MOVED(transport, 32), BUTTON(_freeze), PRESSED(ui_freeze, "ui_freeze:"),
        PARAMETER(boolean, freezeValue, _freezeToggle_Parameter, "AUv3_Parameter_freezeToggle_from_DSP"))
// On, grains are cut from the input.
CONTROL(live, "LIVE", SWITCH(0.0f),
        KEPT("LIVE"), MOVED(transport, 33), BUTTON(_enableLIVE), PRESSED(ui_enableLiveInput, "ui_enableLiveInput"),
        PARAMETER(boolean, liveValue, _enableLIVE_Parameter, "AUv3_Parameter_LiveToggle_from_DSP"))

CONTROL(normalize, "Normalize", RANGE(0.0f, 1.0f, 1.0f, ""),
        KEPT("Normalize"), MOVED(level, 12), KNOB(MOK_KNOB, _normalizeGain), RUNS(ui_normalizeBuffer), NO_PARAMETER)
// On, the scan follows the tempo, and the transport the host's.
CONTROL(scanSync, "Scan Sync", SWITCH(0.0f),
        KEPT("ScanSync"), MOVED(transport, 24), TOGGLE(syncSampler), RUNS(enableSamplerSync), NO_PARAMETER)
CONTROL(measures, "measures", COUNT(1.0f, 64.0f, 1.0f),
        KEPT("Mesures Sample"), MOVED(transport, 25), KNOB(MOK_KNOB, sampler_mesure), HANDS_OVER(ui_setSpeed), NO_PARAMETER)
CONTROL(quarters, "quarters", COUNT(0.0f, 16.0f, 4.0f),
        KEPT("Mesures Quarter"), MOVED(transport, 26), KNOB(MOK_KNOB, sampler_quarter), HANDS_OVER(ui_setSpeed), NO_PARAMETER)
// On, the echo times follow the tempo.
CONTROL(echoSync, "Echo Sync", SWITCH(0.0f),
        KEPT("DelaySync"), MOVED(echo, 18), TOGGLE(syncDelay), RUNS(enableDelaySync), NO_PARAMETER)
CONTROL(leftSubdivision, "Subdiv Left", CHOICE(kLastSubdivision, 7.0f),
        KEPT("DelaySubLeft"), MOVED(echo, 19), KNOB(MokKnobEnum, delay_subdivisionLeft), HANDS_OVER(setEchoDelayLeft), NO_PARAMETER)
CONTROL(rightSubdivision, "Subdiv Right", CHOICE(kLastSubdivision, 7.0f),
        KEPT("DelaySubRight"), MOVED(echo, 20), KNOB(MokKnobEnum, delay_subdivisionRight), HANDS_OVER(setEchoDelayRight), NO_PARAMETER)
CONTROL(fadeIn, "fade in", RANGE(0.0f, 10.0f, 0.05f, "s"),
        ELSEWHERE("FadeInTime"), MOVED(transport, 28), OWN_KNOB(MokKnobTime, _fadeInTime), NO_HANDLER, NO_PARAMETER)
CONTROL(fadeOut, "fade out", RANGE(0.0f, 10.0f, 0.25f, "s"),
        ELSEWHERE("FadeOutTime"), MOVED(transport, 29), OWN_KNOB(MokKnobTime, _fadeOutTime), NO_HANDLER, NO_PARAMETER)
CONTROL(envelope, "envelope", CHOICE(kLastEnvelope, kStartEnvelope),
        ELSEWHERE("Envelope"), NOT_MOVED, NO_CONTROL, NO_HANDLER, NO_PARAMETER)

#undef CONTROL
#undef RANGE
#undef CURVE
#undef COUNT
#undef SWITCH
#undef CHOICE
#undef KEPT
#undef ELSEWHERE
#undef NOT_KEPT
#undef MOVED
#undef NOT_MOVED
#undef KNOB
#undef TOGGLE
#undef BUTTON
#undef OWN_KNOB
#undef NO_CONTROL
#undef HANDS_OVER
#undef RUNS
#undef PRESSED
#undef NO_HANDLER
#undef PARAMETER
#undef NO_PARAMETER
