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

} // namespace kestra
