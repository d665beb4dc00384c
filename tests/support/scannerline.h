#pragma once
// A window's own engine on an in-process virtual scanner in virtual time,
// every command line the scanner received kept in `sent`.

#include "link/exchange.h"
#include "platform/fake/scripteddialogs.h"
#include "platform/fake/virtualscheduler.h"
#include "sim/virtualport.h"
#include "sim/virtualscanner.h"

#include <memory>
#include <string>
#include <vector>

namespace kestra::test {

struct ScannerLine {
    VirtualScheduler scheduler;
    ScriptedDialogs dialogs;
    Settings settings;
    sim::VirtualScanner scanner;
    std::vector<std::string> sent;
    std::shared_ptr<VirtualDevice> device = std::make_shared<VirtualDevice>();
    VirtualPort port{scheduler, device};
    ExchangeEngine engine{port, scheduler, dialogs, settings, 1, 19200, ExchangeEngine::Caption::ReadData};

    explicit ScannerLine(Model model) : scanner(model, 19200)
    {
        device->respond = [this](std::string_view bytes) {
            sent.emplace_back(bytes.substr(0, bytes.find('\r')));
            return scanner.receive(bytes);
        };
        device->baud = [this] { return scanner.baudRate(); };
    }
};

} // namespace kestra::test
