#pragma once
// Port numbers 1 to 19 keep their meaning on Linux by a binding: each number
// names a device ("/dev/ttyUSB0", a pseudo-terminal) or the built-in virtual
// scanner. The binding lives in ports.ini beside com250.ini. On a fresh
// install port 1 is the virtual scanner, so everything works before any
// hardware is attached.

#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace kestra {

struct PortBinding {
    static constexpr const char* kVirtual = "virtual";
    std::map<int, std::string> targets;  // port number -> device path or kVirtual

    // The binding of folder; without a file, port 1 is the virtual scanner.
    static PortBinding load(const std::filesystem::path& folder);
    std::string save(const std::filesystem::path& folder) const;
    std::string text() const;

    // What a port number is bound to, "" when nothing.
    std::string target(int port) const;
    bool isVirtual(int port) const { return target(port) == kVirtual; }
    void bind(int port, std::string target);
};

// The serial devices this machine has (ttyS that answer, ttyUSB, ttyACM,
// rfcomm), sorted; dir is the device folder ("/dev").
std::vector<std::string> serialDevices(const std::filesystem::path& dir = "/dev");

// A device as the port setup offers it: the stable name under
// dir/serial/by-id (which survives re-plugging a USB cable) when there is
// one, else the kernel's name; `device` is always the kernel's name.
struct SerialDeviceChoice {
    std::string path;
    std::string device;
};

// The by-id names first (sorted), then the devices that have none.
std::vector<SerialDeviceChoice> serialDeviceChoices(const std::filesystem::path& dir = "/dev");

} // namespace kestra
