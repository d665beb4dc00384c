#include "setupfile.h"

#include "inifile.h"
#include "memfile.h"
#include "text.h"

#include <algorithm>

namespace kestra {

bool knowsFastBaud(const ModelSwitches& model) { return model.x96 == 1 && model.ubc33 == 0; }

int allowedBaud(int baud, const ModelSwitches& model)
{
    if (model.ubc33 == 1 && baud > 19200) return 19200;
    if (model.x96 == 0 && baud >= 19201) return 19200;
    return baud;
}

ModelSwitches storedModel(const ProfileStore& profile)
{
    ModelSwitches m;
    m.bc785d = static_cast<int>(IntVal(profile.get("model", "bc785d", "0")));
    m.x96 = static_cast<int>(IntVal(profile.get("model", "x96", "0")));
    m.ubc33 = static_cast<int>(IntVal(profile.get("model", "ubc33", "1")));
    m.normalise();
    return m;
}

const std::vector<SettingKey>& settingKeys()
{
    using S = Settings;
    static const std::vector<SettingKey> keys = {
        {"setup", "ffont", &S::ffont, true},         {"setup", "model", &S::model, false},
        {"setup", "9khz", &S::khz9, true},           {"setup", "smart", &S::smart, true},
        {"setup", "round", &S::round, true},         {"setup", "zero", &S::zero, true},
        {"setup", "bandplan", &S::bandplan, false},  {"setup", "savenames", &S::savenames, true},
        {"setup", "cleartag", &S::cleartag, true},   {"setup", "window", &S::window, true},
        {"setup", "toolbar", &S::toolbar, true},     {"setup", "helpbar", &S::helpbar, true},
        {"setup", "synctagsr", &S::synctagsr, true}, {"setup", "synctagst", &S::synctagst, true},
        {"setup", "remtags", &S::remtags, true},     {"setup", "copytags", &S::copytags, true},
        {"setup", "shiftdir", &S::shiftdir, true},   {"setup", "confirm", &S::confirm, true},
        {"setup", "delid", &S::delid, true},         {"setup", "textra", &S::textra, true},
        {"setup", "loadlast", &S::loadlast, true},   {"setup", "tabwidth", &S::tabwidth, true},
        {"setup", "linkbank", &S::linkbank, true},   {"setup", "option1", &S::option1, true},
        {"setup", "option2", &S::option2, true},     {"setup", "option3", &S::option3, true},
        {"setup", "option4", &S::option4, true},     {"setup", "option5", &S::option5, true},
        {"setup", "option6", &S::option6, true},     {"setup", "option7", &S::option7, true},
        {"setup", "option8", &S::option8, true},     {"setup", "option9", &S::option9, true},
        {"setup", "option10", &S::option10, true},   {"setup", "option11", &S::option11, true},
        {"setup", "option12", &S::option12, true},   {"setup", "vcstat", &S::vcstat, true},
        {"setup", "align", &S::align, false},        {"setup", "expert", &S::expert, true},
        {"setup", "delay1", &S::delay1, false},      {"setup", "delay2", &S::delay2, false},
        {"setup", "delay3", &S::delay3, false},      {"setup", "delay4", &S::delay4, false},
        {"setup", "backupdelay", &S::backupdelay, false}, {"setup", "backena", &S::backena, true},
        {"setup", "findoptie0", &S::findoptie0, true}, {"setup", "findoptie1", &S::findoptie1, true},
        {"setup", "findoptie2", &S::findoptie2, true}, {"setup", "qview", &S::qview, true},
        {"setup", "vstart", &S::vstart, true},       {"setup", "vpos", &S::vpos, true},
        {"setup", "infob", &S::infob, true},         {"setup", "vcm", &S::vcm, true},
        {"setup", "enc1", &S::enc1, true},           {"setup", "enc2", &S::enc2, true},
        {"setup", "enc3", &S::enc3, true},           {"setup", "enc4", &S::enc4, true},
        {"setup", "verifyread", &S::verifyread, true},
        {"cputune", "val2", &S::val2, false},        {"cputune", "val3", &S::val3, false},
    };
    return keys;
}

ComSettings readCom250(const std::filesystem::path& folder)
{
    const IniFile ini = IniFile::load(folder / "com250.ini");
    ComSettings com;
    com.port = Val16(ini.get("com", "port", "1"));
    com.baud = static_cast<int>(std::clamp<long long>(IntVal(ini.get("com", "baud", "19200")), 0, 1000000));
    com.usbc = Val16(ini.get("com", "usbc", "0"));
    return com;
}

void readSetup(Settings& settings, const std::filesystem::path& folder, int usbc)
{
    const IniFile ini = IniFile::load(folder / "setup.ini");
    const Settings defaults;
    for (const SettingKey& key : settingKeys()) {
        if (std::string_view(key.name) == "val3") continue;  // not read at start-up
        settings.*key.member = Val16(ini.get(key.section, key.name, std::to_string(defaults.*key.member)));
    }
    settings.remtrunk = Val16(ini.get("setup", "remtrunk", "1"));

    settings.khz9 = 0;  // only the Software Options window turns it on, for one run
    settings.delay1 = std::clamp(settings.delay1, 25, 1000);
    settings.delay2 = std::clamp(settings.delay2, 100, 1000);
    settings.delay3 = std::clamp(settings.delay3, 200, 1000);
    settings.delay4 = std::clamp(settings.delay4, 50, 1000);
    settings.backupdelay = std::clamp(settings.backupdelay, 1, 99);
    if (settings.val2 < 100 || settings.val2 > 1000) settings.val2 = 200;
    if (usbc == 1) {
        settings.delay1 = 200;
        settings.delay2 = 200;
        settings.delay3 = 400;
    }
}

std::string setupText(const Settings& settings)
{
    std::string out;
    std::string section;
    for (const SettingKey& key : settingKeys()) {
        if (section != key.section) {
            section = key.section;
            out += "[" + section + "]\r\n";
        }
        int value = settings.*key.member;
        if (key.flag)
            value = value == 1 ? 1 : 0;
        else if (key.member == &Settings::bandplan && value < 0)
            value = 0;
        out += std::string(key.name) + "=" + std::to_string(value) + "\r\n";
    }
    return out;
}

std::string writeSetup(const Settings& settings, const std::filesystem::path& folder)
{
    return writeFileAtomic(folder / "setup.ini", setupText(settings));
}

} // namespace kestra
