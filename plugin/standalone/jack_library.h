// JackLibrary: libjack, found when the program runs.
#pragma once

#include <jack/jack.h>
#include <jack/midiport.h>

namespace zephyra {

// Every function of libjack that is called.
// clang-format off
#define ZEPHYRA_JACK_FUNCTIONS(X)                                                                  \
    X(client_open) X(client_close) X(activate) X(deactivate) X(get_sample_rate)                    \
    X(get_buffer_size) X(port_register) X(port_name) X(port_get_buffer) X(port_connected)          \
    X(get_ports) X(connect) X(free) X(on_info_shutdown) X(set_process_callback)                    \
    X(set_sample_rate_callback) X(set_xrun_callback) X(set_error_function)                         \
    X(set_info_function) X(transport_query) X(midi_get_event_count) X(midi_event_get)
// clang-format on

/// The functions by their names without "jack_"; PipeWire brings a library of the same name. Not
/// linked, so that the program starts where there is no JACK at all.
struct JackLibrary {
#define ZEPHYRA_JACK_MEMBER(name) decltype(&::jack_##name) name = nullptr;
    ZEPHYRA_JACK_FUNCTIONS(ZEPHYRA_JACK_MEMBER)
#undef ZEPHYRA_JACK_MEMBER

    /// Loaded at the first call, and quiet: it prints nothing. Null where there is none, or not the
    /// whole of it. MAIN.
    static const JackLibrary* find();
};

} // namespace zephyra
