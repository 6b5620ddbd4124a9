#pragma once

#include "ports/Audio.h"
#include "ports/Defaults.h"
#include "ports/Dispatch.h"
#include "ports/Files.h"
#include "ports/LoginItems.h"
#include "ports/Notifications.h"
#include "ports/Processes.h"
#include "ports/Screens.h"
#include "ports/Surfaces.h"
#include "ports/SystemLog.h"
#include "ports/Trust.h"
#include "ports/WindowAccess.h"
#include "ports/Workspace.h"

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
