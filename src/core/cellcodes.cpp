#include "cellcodes.h"

#include "text.h"

#include <algorithm>
#include <cctype>

namespace kestra {

// ---- Model switches -------------------------------------------------------

void ModelSwitches::normalise()
{
    bc785d = std::clamp(bc785d, 0, 1);
    x96 = std::clamp(x96, 0, 1);
    ubc33 = std::clamp(ubc33, 0, 1);
    if (ubc33 == 1) {
        bc785d = 0;
        x96 = 1;
    }
}

Model ModelSwitches::model() const
{
    if (ubc33 == 1) return Model::UBC3300;
    if (bc785d == 1) return x96 == 1 ? Model::BC796D : Model::BC785D;
    return x96 == 1 ? Model::BC296D : Model::BC250D;
}

ModelSwitches ModelSwitches::of(Model model)
{
    switch (model) {
    case Model::BC250D: return {0, 0, 0};
    case Model::BC785D: return {1, 0, 0};
    case Model::BC296D: return {0, 1, 0};
    case Model::BC796D: return {1, 1, 0};
    case Model::UBC3300: return {0, 1, 1};
    }
    return {};
}

const char* modelName(Model model)
{
    switch (model) {
    case Model::BC250D: return "BC250D";
    case Model::BC785D: return "BC785D";
    case Model::BC296D: return "BC296D";
    case Model::BC796D: return "BC796D";
    case Model::UBC3300: return "UBC3300";
    }
    return "";
}

std::optional<Model> modelFromName(std::string_view name)
{
    const std::string upper = asciiUpper(name);
    for (Model m : {Model::BC250D, Model::BC785D, Model::BC296D, Model::BC796D, Model::UBC3300})
        if (upper == modelName(m)) return m;
    return std::nullopt;
}

// ---- Grid layouts -----------------------------------------------------------

namespace {
constexpr GridColumn kLayout250[] = {
    {"Freq. (MHz)", col::freq}, {"Tag", col::tag},        {"Trunk", col::trunk},
    {"Delay Time", col::delay}, {"Beep Alert", col::beep}, {"PL/DPL", col::tone},
    {"Lock Out", col::lockout}, {"Attenuator", col::atten}, {"Mode", col::mode},
    {"Step", col::step},
};
constexpr GridColumn kLayout785[] = {
    {"Freq. (MHz)", col::freq}, {"Tag", col::tag},         {"Trunk", col::trunk},
    {"Delay Time", col::delay}, {"Record", col::record},   {"Beep Alert", col::beep},
    {"PL/DPL", col::tone},      {"Lock Out", col::lockout}, {"Attenuator", col::atten},
    {"Mode", col::mode},        {"Step", col::step},
};
} // namespace

int gridDataColumns(int bc785d) { return bc785d == 1 ? 11 : 10; }

const GridColumn& gridColumn(int bc785d, int gridCol)
{
    const int n = gridDataColumns(bc785d);
    gridCol = std::clamp(gridCol, 1, n);
    return bc785d == 1 ? kLayout785[gridCol - 1] : kLayout250[gridCol - 1];
}

int gridColumnOfStore(int bc785d, int storeColumn)
{
    for (int c = 1; c <= gridDataColumns(bc785d); ++c)
        if (gridColumn(bc785d, c).storeColumn == storeColumn) return c;
    return 0;
}

// ---- Tone tables -------------------------------------------------------------

ToneTables::ToneTables()
{
    static constexpr const char* tones[38] = {
        "67.0",  "71.9",  "74.4",  "77.0",  "79.7",  "82.5",  "85.4",  "88.5",  "91.5",  "94.8",
        "97.4",  "100.0", "103.5", "107.2", "110.9", "114.8", "118.8", "123.0", "127.3", "131.8",
        "136.5", "141.3", "146.2", "151.4", "156.7", "162.2", "167.9", "173.8", "179.9", "186.2",
        "192.8", "203.5", "210.7", "218.1", "225.7", "233.6", "241.8", "250.3"};
    static constexpr const char* codes[104] = {
        "023", "025", "026", "031", "032", "036", "043", "047", "051", "053", "054", "065", "071",
        "072", "073", "074", "114", "115", "116", "122", "125", "131", "132", "134", "143", "145",
        "152", "155", "156", "162", "165", "172", "174", "205", "212", "223", "225", "226", "243",
        "244", "245", "246", "251", "252", "255", "261", "263", "265", "266", "271", "274", "306",
        "311", "315", "325", "331", "332", "343", "346", "351", "356", "364", "365", "371", "411",
        "412", "413", "423", "431", "432", "445", "446", "452", "454", "455", "462", "464", "465",
        "466", "503", "506", "516", "523", "526", "532", "546", "565", "606", "612", "624", "627",
        "631", "632", "654", "662", "664", "703", "712", "723", "731", "732", "734", "743", "754"};
    for (int i = 1; i <= 38; ++i) {
        ctcss[i] = tones[i - 1];
        ctcss[i + 40] = ctcss[i] + "-";
    }
    for (int i = 0; i < 104; ++i) {
        dcs[i] = codes[i];
        dcs[i + 110] = dcs[i] + "-";
    }
}

const ToneTables& toneTables()
{
    static const ToneTables tables;
    return tables;
}

// ---- Cell conversions ------------------------------------------------------------

namespace {
constexpr const char* kDelay785[8] = {"None", "1", "2", "4", "Inf.", "-2", "-5", "-10"};
constexpr const char* kStep[10] = {"5.0", "7.5", "10.0", "12.5", "25.0", "50.0", "100.0", "Auto", "6.25", "20.0"};
constexpr const char* kMode[4] = {"FM", "WFM", "AM", "NFM"};

// The index of a one-digit code "0".."9" below limit, or -1.
int digitCode(std::string_view code, int limit)
{
    if (code.size() != 1 || code[0] < '0' || code[0] > '9') return -1;
    const int v = code[0] - '0';
    return v < limit ? v : -1;
}
} // namespace

std::string onOffText(std::string_view code)
{
    if (code == "0") return "Off";
    if (code == "1") return "On";
    return {};
}

std::string delayText(std::string_view code, int bc785d)
{
    const int v = digitCode(code, 8);
    if (v < 0) return {};
    if (bc785d == 1) return kDelay785[v];
    return v == 0 ? "None" : "2";
}

std::string stepText(std::string_view code)
{
    const int v = digitCode(code, 10);
    return v < 0 ? std::string() : std::string(kStep[v]);
}

std::string modeText(std::string_view code)
{
    const int v = digitCode(code, 4);
    return v < 0 ? std::string() : std::string(kMode[v]);
}

std::string toneText(std::string_view code)
{
    const long long v = IntVal(code);
    const ToneTables& t = toneTables();
    if (v == 0) return "None";
    if (v >= 1 && v <= 38) return t.ctcss[v];
    if (v >= 39 && v <= 142) return t.dcs[v - 39];
    if (v >= 150 && v <= 187) return t.ctcss[v - 109];
    if (v >= 188 && v <= 291) return t.dcs[v - 78];
    return {};
}

std::optional<std::string> onOffCode(std::string_view text)
{
    if (text == "Off") return "0";
    if (text == "On") return "1";
    return std::nullopt;
}

std::optional<std::string> delayCode(std::string_view text, int bc785d)
{
    if (bc785d == 1) {
        for (int i = 0; i < 8; ++i)
            if (text == kDelay785[i]) return std::to_string(i);
        return std::nullopt;
    }
    if (text == "None" || text == "Off") return "0";
    for (const char* t : {"On", "1", "2", "4", "Inf.", "-2", "-5", "-10"})
        if (text == t) return "2";
    return std::nullopt;
}

std::optional<std::string> stepCode(std::string_view text, int x96)
{
    for (int i = 0; i < 10; ++i)
        if (text == kStep[i]) return (i == 8 && x96 != 1) ? std::string("0") : std::to_string(i);
    return std::nullopt;
}

std::optional<std::string> modeCode(std::string_view text)
{
    for (int i = 0; i < 4; ++i)
        if (text == kMode[i]) return std::to_string(i);
    return std::nullopt;
}

std::optional<std::string> toneCode(std::string_view text)
{
    if (text.empty()) return "0";
    const ToneTables& t = toneTables();
    for (int i = 1; i <= 38; ++i)
        if (text == t.ctcss[i]) return std::to_string(i);
    for (int i = 0; i <= 103; ++i)
        if (text == t.dcs[i]) return std::to_string(i + 39);
    for (int i = 41; i <= 78; ++i)
        if (text == t.ctcss[i]) return std::to_string(i + 109);
    for (int i = 110; i <= 213; ++i)
        if (text == t.dcs[i]) return std::to_string(i + 78);
    return std::nullopt;
}

std::string repairToneCode(std::string_view code)
{
    if (!contains(code, "L")) return std::string(code);
    return numText(IntVal(code) + 149);
}

// ---- Frequency texts --------------------------------------------------------------

namespace {
// Cuts leading "0" and " ", one character a pass, as many passes as the text is long.
void stripLeadingZeros(std::string& text)
{
    std::size_t i = 0;
    while (i < text.size() && (text[i] == '0' || text[i] == ' ')) ++i;
    text.erase(0, i);
}
} // namespace

std::string padfreq(std::string_view text, int width, int dotpos)
{
    std::string t(text);
    stripLeadingZeros(t);
    if (t.find('.') == std::string::npos) t += '.';
    const int p = static_cast<int>(t.find('.')) + 1;
    if (dotpos - p > 0) t.insert(0, static_cast<std::size_t>(dotpos - p), '0');
    const int len = static_cast<int>(t.size());
    if (width - len + 1 > 0) t.append(static_cast<std::size_t>(width - len + 1), '0');
    return t.substr(0, static_cast<std::size_t>(std::max(width + 1, 0)));
}

std::string trimfreq(std::string_view text, int decimals)
{
    std::string t(text);
    if (!t.empty() && t.front() == '.') t.insert(0, "0");
    stripLeadingZeros(t);
    auto dot = t.find('.');
    if (dot == std::string::npos) {
        t += '.';
        dot = t.size() - 1;
    }
    const int have = static_cast<int>(t.size() - dot - 1);
    if (decimals - have > 0) t.append(static_cast<std::size_t>(decimals - have), '0');
    return t;
}

std::string formatFreq(std::string_view text, int zero)
{
    return zero == 1 ? trimfreq(text, 4) : padfreq(text, 8, 5);
}

} // namespace kestra
