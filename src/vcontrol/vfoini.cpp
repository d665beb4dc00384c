#include "vcontrol/vfoini.h"

#include "core/inifile.h"
#include "core/memfile.h"
#include "core/text.h"

namespace kestra {

namespace {

int int16Of(const std::string& text)
{
    const long v = IntVal(text);
    return static_cast<int>(static_cast<short>(v));
}

} // namespace

VfoIni VfoIni::load(const std::filesystem::path& folder)
{
    VfoIni v;
    // The log file lives in the program's folder unless the file names another.
    v.filename = cp1252FromUtf8((folder / kLogName).string());
    std::string bytes;
    if (!readFileBytes(folder / kFileName, bytes)) return v;
    // The first line is the file's title, not a part of any section.
    const auto firstEnd = bytes.find('\n');
    const IniFile ini = IniFile::parse(firstEnd == std::string::npos ? std::string() : bytes.substr(firstEnd + 1));
    const auto number = [&ini](const char* section, const std::string& key, int fallback) {
        const auto value = ini.get(section, key);
        return value ? int16Of(*value) : fallback;
    };

    v.statusLeft = number("statuswindow", "left", 0);
    v.statusTop = number("statuswindow", "top", 0);
    v.statusCustom = number("statuswindow", "custom", 0);
    if (v.statusCustom != 0 && v.statusCustom != 1) v.statusCustom = 0;
    for (int i = 0; i < 5; ++i) v.color[i] = number("setup", "color" + std::to_string(i + 1), 0);
    // Read, then set to 25 whatever the file says.
    v.speed = 25;
    v.speed2 = 25;
    v.keyboard = number("setup", "keyboard", 0);
    for (int i = 0; i < 4; ++i) v.centertune[i] = number("setup", "centertune" + std::to_string(i + 1), 0);
    v.offsetStart = ini.get("offset", "start", "");
    v.offsetEnd = ini.get("offset", "end", "");
    v.offsetShift = ini.get("offset", "shift", "");
    v.left = ini.get("pos", "left", "");
    v.top = ini.get("pos", "top", "");
    v.height = ini.get("pos", "height", "");
    v.ontop = number("pos", "ontop", 0);
    v.filename = ini.get("log", "filename", v.filename);
    v.audiopath = ini.get("log", "audiopath", "c:\\");
    v.custom = number("color", "custom", 0);
    for (int i = 0; i < 13; ++i) v.option[i] = number("options", "option" + std::to_string(i + 1), 0);
    return v;
}

std::string VfoIni::text() const
{
    std::string t;
    const auto line = [&t](const std::string& s) { t += s + "\r\n"; };
    line(kFirstLine);
    line("[statuswindow]");
    line("left=" + std::to_string(statusLeft));
    line("top=" + std::to_string(statusTop));
    line("custom=" + std::to_string(statusCustom));
    line("[setup]");
    for (int i = 0; i < 5; ++i) line("color" + std::to_string(i + 1) + "=" + std::to_string(color[i]));
    line("speed=" + std::to_string(speed));
    line("speed2=" + std::to_string(speed2));
    line("keyboard=" + std::to_string(keyboard));
    for (int i = 0; i < 4; ++i) line("centertune" + std::to_string(i + 1) + "=" + std::to_string(centertune[i]));
    line("[offset]");
    line("start=" + offsetStart);
    line("end=" + offsetEnd);
    line("shift=" + offsetShift);
    line("[pos]");
    line("left=" + left);
    line("top=" + top);
    line("height=" + height);
    line("ontop=" + std::to_string(ontop));
    line("[log]");
    line("filename = " + filename);
    line("audiopath = " + audiopath);
    line("[color]");
    line("custom= " + std::to_string(custom));
    line("[options]");
    for (int i = 0; i < 13; ++i) {
        const std::string key = "option" + std::to_string(i + 1);
        line(key + (i < 9 ? " = " : "= ") + std::to_string(option[i]));
    }
    return t;
}

std::string VfoIni::save(const std::filesystem::path& folder) const { return writeFileAtomic(folder / kFileName, text()); }

} // namespace kestra
