#pragma once
// The program's folder of the desktop program: the per-user application data
// folder.

#include "platform/appfolder.h"

namespace kestra {

// QStandardPaths::AppDataLocation, created when missing. An organisation name
// or application name that the program has not set becomes "HalvornKESTRA" or
// "kestra", so that the desktop program and kestractl (AppFolder::standard())
// share one folder.
AppFolder defaultAppFolder();

} // namespace kestra
