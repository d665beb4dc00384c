#include "ctl_line.h"

#include "sim/virtualscanner.h"

#include "core/text.h"
#include "platform/fake/virtualscheduler.h"
#include "platform/qt/qtscheduler.h"
#include "platform/qt/qtserialport.h"

#include "kestractl.h"

#include <algorithm>
#include <cstdio>
#include <iostream>

#include <unistd.h>

namespace kestra::ctl {

ScannerLine openScannerLine(const std::string& portText, const std::filesystem::path& folder, const ModelSwitches& model,
                            std::string& usageProblem)
{
    ScannerLine line;
    line.com = readCom250(folder);
    if (portText.rfind("sim:", 0) == 0) {
        const auto simModel = modelFromName(portText.substr(4));
        if (!simModel) {
            usageProblem = "unknown model in " + portText;
            return line;
        }
        line.scheduler = std::make_unique<VirtualScheduler>();
        line.ports = std::make_unique<ProgramPorts>(*line.scheduler, folder, &QtSerialPort::openDevice);
        line.ports->binding.bind(1, PortBinding::kVirtual);
        line.ports->virtualScanner(*simModel).setBaudRate(19200);
        line.com.baud = 19200;
        line.port = line.ports->port(1, *simModel);
    } else {
        line.scheduler = std::make_unique<QtScheduler>();
        const bool number = !portText.empty() && portText.find_first_not_of("0123456789") == std::string::npos;
        if (portText.empty() || number) {
            line.ports = std::make_unique<ProgramPorts>(*line.scheduler, folder, &QtSerialPort::openDevice);
            const int n = portText.empty() ? line.com.port : static_cast<int>(IntVal(portText));
            line.port = line.ports->port(n, model.model());
            line.com.port = n;
        } else {
            line.port = std::make_unique<QtSerialPort>(portText);
        }
    }
    if (!line.port) std::cerr << "The selected comport is already in use or not available in your system!\n";
    line.com.baud = allowedBaud(line.com.baud, model);
    return line;
}

bool runUntil(Scheduler& scheduler, const std::function<bool()>& done, double seconds)
{
    if (auto* virtualTime = dynamic_cast<VirtualScheduler*>(&scheduler))
        return virtualTime->runUntil(done, static_cast<std::int64_t>(seconds * 1000));
    const std::int64_t end = scheduler.now() + static_cast<std::int64_t>(seconds * 1000);
    while (!done() && scheduler.now() < end) scheduler.wait(0.05);
    return done();
}

ProgressBar::ProgressBar() : enabled_(!quiet && ::isatty(STDERR_FILENO) == 1) {}

void ProgressBar::show(int percent, const std::string& channel)
{
    if (!enabled_ || percent == percent_) return;
    const auto now = std::chrono::steady_clock::now();
    // At most ten pictures a second; the last one always.
    if (percent < 100 && drawn_ && now - last_ < std::chrono::milliseconds(100)) return;
    percent_ = percent;
    last_ = now;
    const int clamped = std::clamp(percent, 0, 100);
    constexpr int kWidth = 30;
    const int filled = clamped * kWidth / 100;
    std::string line = "\r[" + std::string(static_cast<std::size_t>(filled), '#') +
                       std::string(static_cast<std::size_t>(kWidth - filled), '-') + "] " +
                       std::to_string(clamped) + "%  channel " + channel;
    const double elapsed = std::chrono::duration<double>(now - start_).count();
    if (clamped > 0 && clamped < 100) {
        const int left = static_cast<int>(elapsed * (100 - clamped) / clamped + 0.5);
        char text[32];
        std::snprintf(text, sizeof text, "  %d:%02d left", left / 60, left % 60);
        line += text;
    }
    std::cerr << line << "\x1b[K" << std::flush;   // the rest of the older, longer line erased
    drawn_ = true;
}

void ProgressBar::finish()
{
    if (!drawn_) return;
    std::cerr << '\n' << std::flush;
    drawn_ = false;
}

} // namespace kestra::ctl
