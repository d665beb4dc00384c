#include "ctl_line.h"

#include "sim/virtualscanner.h"

#include "core/text.h"
#include "platform/fake/virtualscheduler.h"
#include "platform/qt/qtscheduler.h"
#include "platform/qt/qtserialport.h"

#include <iostream>

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

} // namespace kestra::ctl
