#pragma once
// The port and the model: com250.ini, the rules that keep port and speed to
// what the models can do, the Rs232 setup's OK, the autodetect over every
// port and speed, and the quiet model check before a transfer.

#include "core/cellcodes.h"
#include "core/settings.h"
#include "core/setupfile.h"
#include "platform/dialogs.h"
#include "platform/scheduler.h"
#include "platform/serialport.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace kestra {

inline constexpr int kMaxComPort = 19;
inline constexpr int kBaudRates[5] = {4800, 9600, 19200, 38400, 57600};

// com250.ini written from scratch: "[com]", "port=", "baud=", "usbc=".
std::string com250Text(const ComSettings& com);
std::string writeCom250(const ComSettings& com, const std::filesystem::path& folder);

// The start-up message for a port out of 1..19 (empty when the port is good;
// the program goes on either way).
std::string comportMessage(int port);

// The model options of the setup window, in their order: BC250D, BC785D,
// BC296D, BC796D, UBC3300.
Model modelOfOption(int option);
int optionOfModel(Model model);

// OK of the setup window: what is stored, and the message about a speed the
// model cannot do ("" when none).
struct SetupChoice {
    int modelOption = 0;     // 0..4
    int port = 1;            // com1..com8 or the "other:" number
    int baudIndex = 2;       // 0..4 in kBaudRates
    bool usb = false;
};
struct SetupResult {
    ModelSwitches model;
    ComSettings com;
    std::string message;
};
SetupResult applySetup(const SetupChoice& choice);
// "other:": the typed number held to 1..19.
int clampOtherPort(std::string_view typed);

// A port object for a port number: the binding decides what is behind it.
using PortFactory = std::function<std::unique_ptr<SerialPort>(int port)>;

// The autodetect: every available port at every speed, "SI" twice, the words
// of each model; the last port and speed that answer win.
struct DetectResult {
    bool found = false;
    int port = 0;
    int baud = 0;
    int model = -1;            // 0 BC250D, 1 BC785D, 2 BC296D, 3 BC796D, 4 UBC3300
    ModelSwitches switches;    // the flags the window takes from the model number
    std::string lastReply;
    std::vector<std::string> messages;  // what the window shows, in order
};
DetectResult autodetect(const PortFactory& ports, Scheduler& scheduler, const ModelSwitches& current, int currentBaud);
// The advice the autodetect starts with (its first message).
inline constexpr const char* kDetectAdvice =
    "Autodetect: make sure your scanner is connected and switched ON.\r\nVerify scanner remote mode is enabled:\r\n"
    "Select MENU _ 3 _ 5 and check a baudrate speed is selected.";
inline constexpr const char* kDetected = "KESTRA has succesfully detected your scanner!";
inline constexpr const char* kNotDetected =
    "KESTRA has not detected your scanner, please check scanner is switched ON and connected. Also make sure scanner is in remote mode.";

// The quiet model check before Read Data, Send Data and Delete Bank.
struct ModelCheck {
    bool scannerfound = false;
    ModelSwitches model;   // the model on the cable, when found
};
ModelCheck modelcheck(SerialPort& port, Scheduler& scheduler, const ModelSwitches& current);
enum class CheckedTransfer { Read, Send, DeleteBank };
std::string noScannerMessage(CheckedTransfer transfer);

} // namespace kestra
