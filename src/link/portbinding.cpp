#include "portbinding.h"

#include "core/inifile.h"
#include "core/memfile.h"
#include "core/text.h"

#include <algorithm>

namespace kestra {

PortBinding PortBinding::load(const std::filesystem::path& folder)
{
    PortBinding b;
    std::string bytes;
    if (!readFileBytes(folder / "ports.ini", bytes)) {
        b.targets[1] = kVirtual;
        return b;
    }
    const IniFile ini = IniFile::parse(bytes);
    for (int port = 1; port <= 19; ++port)
        if (auto target = ini.get("ports", std::to_string(port)); target && !target->empty()) b.targets[port] = *target;
    return b;
}

std::string PortBinding::text() const
{
    std::string out = "[ports]\r\n";
    for (const auto& [port, target] : targets)
        if (port >= 1 && port <= 19 && !target.empty()) out += std::to_string(port) + "=" + target + "\r\n";
    return out;
}

std::string PortBinding::save(const std::filesystem::path& folder) const { return writeFileAtomic(folder / "ports.ini", text()); }

std::string PortBinding::target(int port) const
{
    const auto it = targets.find(port);
    return it == targets.end() ? std::string() : it->second;
}

void PortBinding::bind(int port, std::string target)
{
    if (port < 1 || port > 19) return;
    if (target.empty())
        targets.erase(port);
    else
        targets[port] = std::move(target);
}

std::vector<std::string> serialDevices(const std::filesystem::path& dir)
{
    std::vector<std::string> found;
    std::error_code ec;
    for (const auto& entry : std::filesystem::directory_iterator(dir, ec)) {
        const std::string name = entry.path().filename().string();
        for (const char* prefix : {"ttyUSB", "ttyACM", "ttyS", "rfcomm"})
            if (name.rfind(prefix, 0) == 0 && name.size() > std::string_view(prefix).size()) {
                found.push_back(entry.path().string());
                break;
            }
    }
    std::sort(found.begin(), found.end());
    return found;
}

std::vector<SerialDeviceChoice> serialDeviceChoices(const std::filesystem::path& dir)
{
    namespace fs = std::filesystem;
    std::vector<SerialDeviceChoice> choices;
    std::error_code ec;
    const fs::path byId = dir / "serial" / "by-id";
    for (const auto& entry : fs::directory_iterator(byId, ec)) {
        if (!entry.is_symlink(ec)) continue;
        fs::path target = fs::read_symlink(entry.path(), ec);
        if (ec) continue;
        if (target.is_relative()) target = byId / target;
        target = target.lexically_normal();
        if (!fs::exists(target, ec)) continue;   // a link left behind by a device that went away
        choices.push_back({entry.path().string(), target.string()});
    }
    std::sort(choices.begin(), choices.end(), [](const auto& a, const auto& b) { return a.path < b.path; });
    for (const std::string& device : serialDevices(dir)) {
        const bool named = std::any_of(choices.begin(), choices.end(), [&](const auto& c) { return c.device == device; });
        if (!named) choices.push_back({device, device});
    }
    return choices;
}

} // namespace kestra
