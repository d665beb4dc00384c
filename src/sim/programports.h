#pragma once
// The ports of the running program: port numbers 1..19 by their binding, a
// real device (opened by the program's own device opener: QSerialPort in
// kestra and kestractl), or the built-in virtual scanner, whose memory and
// speed are kept in the program's folder from one run to the next.

// The scanner's own headers stay out of this one, so that the windows can
// include it beside Qt's (which takes "slots" for a word of its own).

#include "link/portbinding.h"
#include "link/portsetup.h"

#include "platform/scheduler.h"

#include <filesystem>
#include <functional>
#include <map>
#include <memory>

namespace kestra {

struct VirtualDevice;
namespace sim {
class VirtualScanner;
}

class ProgramPorts {
public:
    // A port object for a device name ("/dev/ttyUSB0"), not yet open.
    using DeviceOpener = std::function<std::unique_ptr<SerialPort>(const std::string& device)>;

    ProgramPorts(Scheduler& scheduler, std::filesystem::path folder, DeviceOpener openDevice);
    ~ProgramPorts();

    PortBinding binding;
    std::string saveBinding() const { return binding.save(folder_); }

    // The built-in scanner, as the given model (its memory is loaded from
    // the program's folder the first time, and kept when the model changes).
    // It lives on the program's clock from the first time it is asked for;
    // traffic set on it counts from the moment it is set.
    sim::VirtualScanner& virtualScanner(Model model);
    // Writes the virtual scanner's memory and speed to the program's folder.
    void saveVirtualScanner();

    // A port object for a port number, not yet open; nothing when the number
    // is bound to nothing.
    std::unique_ptr<SerialPort> port(int number, Model model);
    PortFactory factory(Model model);
    Scheduler& scheduler() { return scheduler_; }

    // Another scanner on the cable of a port number, in place of what the
    // number is bound to (a bench of several scanners; nothing undoes it but
    // attaching nothing).
    void attach(int number, std::shared_ptr<VirtualDevice> device);

    static constexpr const char* kMemoryFile = "virtualscanner.mem";
    // What the MEM file does not hold: the speed chosen in the scanner's menu.
    static constexpr const char* kSettingsFile = "virtualscanner.ini";

private:
    Scheduler& scheduler_;
    std::filesystem::path folder_;
    DeviceOpener openDevice_;
    std::unique_ptr<sim::VirtualScanner> scanner_;
    std::shared_ptr<VirtualDevice> device_;
    std::map<int, std::shared_ptr<VirtualDevice>> attached_;
};

} // namespace kestra
