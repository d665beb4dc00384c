#pragma once
// The scanner's line for the commands that talk to it (read, send, general):
// a port number of the binding, a device path, or "sim:MODEL" for the
// built-in virtual scanner in virtual time; and running the clock until a
// run is done.

#include "core/setupfile.h"
#include "platform/scheduler.h"
#include "platform/serialport.h"
#include "sim/programports.h"

#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>

namespace kestra::ctl {

struct ScannerLine {
    std::unique_ptr<Scheduler> scheduler;
    std::unique_ptr<ProgramPorts> ports;  // none for a device path
    std::unique_ptr<SerialPort> port;     // none when it could not be had
    ComSettings com;                      // com250.ini, with the port and speed in use
};

// portText "" takes the port of com250.ini. A problem with the words is put
// in usageProblem (the caller answers with the usage); a missing port leaves
// port empty after its message on stderr.
ScannerLine openScannerLine(const std::string& portText, const std::filesystem::path& folder, const ModelSwitches& model,
                            std::string& usageProblem);

// Runs the line's clock (virtual time for the built-in scanner) until done
// or the time is up; returns done().
bool runUntil(Scheduler& scheduler, const std::function<bool()>& done, double seconds);

// The progress of a run on stderr: a bar with the channel and the time left,
// redrawn in place. Shown only when stderr is a terminal and --quiet is not
// given, so that scripts and logs get no carriage-return noise.
class ProgressBar {
public:
    ProgressBar();
    ~ProgressBar() { finish(); }
    void show(int percent, const std::string& channel);
    // Ends the bar's line, once anything was drawn.
    void finish();

private:
    bool enabled_ = false;
    bool drawn_ = false;
    int percent_ = -1;
    std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
    std::chrono::steady_clock::time_point last_{};
};

} // namespace kestra::ctl
