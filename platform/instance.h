// Instance: what the platform gives to one instance of the system.
#pragma once

#include "platform/accelerometer.h"
#include "platform/alert.h"
#include "platform/audio_unit/audio_session.h"
#include "platform/clock.h"
#include "platform/document_center.h"
#include "platform/files/folders.h"
#include "platform/notification_center.h"
#include "platform/random_source.h"
#include "platform/shared_folder_notices.h"
#include "platform/sound/file_facts.h"
#include "platform/text/log.h"
#include "platform/threads/run_loop.h"
#include "platform/threads/state_order.h"
#include "platform/user_defaults.h"

#include <memory>

namespace zephyra {

/// Two instances in one process share nothing of this but the notices of sharedFolder and, where
/// they are given the same ones, fileFacts. Made first and destroyed last, by whoever drives the
/// system: the command line tool, a plug-in, a test. The members' own threads hold.
struct Instance {
    Log log; // first: whatever ends later than the rest may still report
    RandomSource random;
    Clock clock;
    RunLoop runLoop;
    StateOrder states; ///< of sessions and presets that were asked for
    NotificationCenter notifications;
    AudioSession session;
    AlertCenter alerts;
    DocumentCenter documents;
    UserDefaults defaults;
    Folders folders;
    /// Never null; another one's may take its place before anything is built on it.
    std::shared_ptr<FileFacts> fileFacts = std::make_shared<FileFacts>();
    Accelerometer accelerometer;
    SharedFolderNotices sharedFolder{runLoop, notifications};
};

} // namespace zephyra
