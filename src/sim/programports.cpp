#include "sim/programports.h"

#include "core/inifile.h"
#include "core/memfile.h"
#include "core/text.h"
#include "sim/documentmapping.h"
#include "sim/virtualport.h"
#include "sim/virtualscanner.h"

namespace kestra {

ProgramPorts::ProgramPorts(Scheduler& scheduler, std::filesystem::path folder, DeviceOpener openDevice)
    : binding(PortBinding::load(folder)), scheduler_(scheduler), folder_(std::move(folder)), openDevice_(std::move(openDevice))
{
}

ProgramPorts::~ProgramPorts() { saveVirtualScanner(); }

sim::VirtualScanner& ProgramPorts::virtualScanner(Model model)
{
    if (!scanner_ || scanner_->model() != model) {
        auto fresh = std::make_unique<sim::VirtualScanner>(model, 19200);
        std::string bytes;
        if (scanner_) {
            sim::loadMemFile(fresh->memory(), sim::memFileText(scanner_->memory()));
            fresh->setBaudRate(scanner_->baudRate());
        } else {
            if (readFileBytes(folder_ / kMemoryFile, bytes)) sim::loadMemFile(fresh->memory(), bytes);
            // A speed the model lacks (the file of another model) leaves 19200.
            const IniFile kept = IniFile::load(folder_ / kSettingsFile);
            fresh->setBaudRate(static_cast<int>(IntVal(kept.get("scanner", "baud", "19200"))));
        }
        scanner_ = std::move(fresh);
        if (!device_) device_ = std::make_shared<VirtualDevice>();
        // The scanner lives on the program's clock: it has scanned on to
        // where it is by the time a command reaches it.
        device_->respond = [this](std::string_view b) {
            scanner_->advanceTo(scheduler_.now());
            return scanner_->receive(b);
        };
        device_->baud = [this] { return scanner_->baudRate(); };
    }
    // Brought up to the present, so that what is done to it (traffic set
    // from now on) happens now.
    scanner_->advanceTo(scheduler_.now());
    return *scanner_;
}

void ProgramPorts::saveVirtualScanner()
{
    if (!scanner_) return;
    writeFileAtomic(folder_ / kMemoryFile, sim::memFileText(scanner_->memory()));
    writeFileAtomic(folder_ / kSettingsFile, "[scanner]\r\nbaud=" + std::to_string(scanner_->baudRate()) + "\r\n");
}

void ProgramPorts::attach(int number, std::shared_ptr<VirtualDevice> device)
{
    if (device)
        attached_[number] = std::move(device);
    else
        attached_.erase(number);
}

std::unique_ptr<SerialPort> ProgramPorts::port(int number, Model model)
{
    if (const auto it = attached_.find(number); it != attached_.end()) {
        auto port = std::make_unique<VirtualPort>(scheduler_, it->second);
        port->setCommPort(number);
        return port;
    }
    const std::string target = binding.target(number);
    if (target.empty()) return nullptr;
    std::unique_ptr<SerialPort> port;
    if (target == PortBinding::kVirtual) {
        virtualScanner(model);
        port = std::make_unique<VirtualPort>(scheduler_, device_);
    } else {
        port = openDevice_ ? openDevice_(target) : nullptr;
        if (!port) return nullptr;
    }
    port->setCommPort(number);
    return port;
}

PortFactory ProgramPorts::factory(Model model)
{
    return [this, model](int number) { return port(number, model); };
}

} // namespace kestra
