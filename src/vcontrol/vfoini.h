#pragma once
// vfo.ini: the Virtual Control's settings in the program's folder, plain
// text, rewritten whole when the window closes. Its first line
// ("KESTRA-VFO ini data v1.01") is not read. "speed" and "speed2" are read
// and then set to 25, whatever the file says. Options 1..13 are carried
// through the file; 12 is retryforever of the control loop.

#include <array>
#include <filesystem>
#include <string>

namespace kestra {

struct VfoIni {
    // [statuswindow]: the place of the status window states2, in units (15 to
    // a pixel); custom: placed by hand (0 or 1).
    int statusLeft = 0;
    int statusTop = 0;
    int statusCustom = 0;
    // [setup]
    std::array<int, 5> color{};
    int speed = 25;
    int speed2 = 25;
    int keyboard = 0;
    std::array<int, 4> centertune{};
    // [offset], kept as text
    std::string offsetStart, offsetEnd, offsetShift;
    // [pos]: the window's place in units
    std::string left, top, height;
    int ontop = 0;
    // [log]
    std::string filename = kLogName;  // load() puts the folder in front
    std::string audiopath = "c:\\";
    // [color]
    int custom = 0;
    // [options] option1..option13
    std::array<int, 13> option{};

    bool retryforever() const { return option[11] != 0; }

    static constexpr const char* kFileName = "vfo.ini";
    static constexpr const char* kLogName = "log.csv";
    static constexpr const char* kFirstLine = "KESTRA-VFO ini data v1.01";

    static VfoIni load(const std::filesystem::path& folder);
    std::string text() const;
    // "" on success, else what went wrong.
    std::string save(const std::filesystem::path& folder) const;
};

} // namespace kestra
