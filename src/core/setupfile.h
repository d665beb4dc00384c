#pragma once
// setup.ini and com250.ini: the settings read at start-up and setup.ini
// written whole when the main window closes.

#include "cellcodes.h"
#include "settings.h"

#include "platform/profilestore.h"

#include <filesystem>
#include <string>

namespace kestra {

// The port settings of com250.ini, section "com".
struct ComSettings {
    int port = 1;
    int baud = 19200;
    int usbc = 0;
};
ComSettings readCom250(const std::filesystem::path& folder);

// The speed cut to 19200 where the model cannot go faster: the UBC3300 and
// the models without x96 know 4800, 9600 and 19200 only.
int allowedBaud(int baud, const ModelSwitches& model);
bool knowsFastBaud(const ModelSwitches& model);

// The model switches the user last chose, kept per user in section "model"
// (bc785d 0, x96 0, ubc33 1 when nothing was kept), normalised.
ModelSwitches storedModel(const ProfileStore& profile);

// Reads every key of setup.ini in folder (defaults for what is missing), then
// applies the clamps, the reset of "9khz" and, for a USB converter, the raised
// delays.
void readSetup(Settings& settings, const std::filesystem::path& folder, int usbc);

// The whole text of setup.ini, CR LF line ends.
std::string setupText(const Settings& settings);
// Writes setup.ini into folder; "" on success, else what went wrong.
std::string writeSetup(const Settings& settings, const std::filesystem::path& folder);

} // namespace kestra
