#pragma once
// kestractl convert: what a user does who opens a file in the main window and
// saves it under another name, without a window.

#include "core/cellcodes.h"
#include "platform/dialogs.h"
#include "platform/profilestore.h"

#include <optional>
#include <string>

namespace kestra {

struct ConvertRequest {
    std::string in;
    std::string out;
    std::optional<Model> model;  // without it the per-user store decides
    std::string folder;          // the program's folder (setup.ini and the rest)
};

// The kind of file a name and its first bytes show: a KESTRA MEM file, a
// LORVEN MEM file or the foreign CSV layout.
enum class MemKind { Kestra, Lorven, Special };
MemKind memKindOf(const std::string& path, std::string_view firstBytes);

// Runs the conversion. Messages go to dialogs (the headless caller prints
// them). Returns true when OUT was written.
bool convertMem(const ConvertRequest& request, Dialogs& dialogs, ProfileStore& profile);

} // namespace kestra

#include "core/grid.h"
#include "core/memtable.h"
#include "platform/appfolder.h"
#include "platform/fake/virtualscheduler.h"

namespace kestra {

// The main window's routines without a window, for the headless commands:
// the settings of a folder read as at start-up, the model of the per-user
// store, and the state Form Load leaves.
struct HeadlessTable {
    HeadlessTable(const std::string& folderPath, Dialogs& dialogs, ProfileStore& profile);
    Document doc;
    Settings settings;
    Grid grid;
    VirtualScheduler scheduler;
    AppFolder folder;
    MemTable table;
};

} // namespace kestra
