// ScreenSettingsStore: what a player chose of windows, remembered among the user's defaults.
#pragma once

#include "platform/user_defaults.h"
#include "screens/model/screen_context.h"

namespace zephyra {

/// One dictionary under "Screen". One thread at a time.
class ScreenSettingsStore {
public:
    /// defaults outlives this.
    explicit ScreenSettingsStore(UserDefaults& defaults) : defaults_(defaults) {}

    /// A value that is missing, of the wrong type or out of its range falls back to its default,
    /// alone.
    ScreenSettings read() const;
    /// Writes what differs from known, which a window read or chose last: what another window chose
    /// meanwhile stays, of another program, too, and so does what a newer one keeps beside it.
    void write(const ScreenSettings& settings, const ScreenSettings& known);

private:
    UserDefaults& defaults_;
};

} // namespace zephyra
