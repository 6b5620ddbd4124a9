#pragma once

#include "platform/Audio.h"
#include "platform/Defaults.h"
#include "platform/Dispatch.h"
#include "platform/Files.h"
#include "platform/LoginItems.h"
#include "platform/Notifications.h"
#include "platform/Processes.h"
#include "platform/Screens.h"
#include "platform/Surfaces.h"
#include "platform/SystemLog.h"
#include "platform/Trust.h"
#include "platform/WindowAccess.h"
#include "platform/Workspace.h"

namespace tarnwick {

// Everything the core may ask of the machine it runs on.
struct Platform {
    Dispatch& dispatch;
    Screens& screens;
    Notifications& notifications;
    Defaults& defaults;
    LoginItems& login;
    Trust& trust;
    Audio& audio;
    SystemLog& log;
    WindowAccess& windows;
    Files& files;
    Processes& processes;
    Workspace& workspace;
    Surfaces& surfaces;
};

} // namespace tarnwick
