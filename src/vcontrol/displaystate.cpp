#include "vcontrol/displaystate.h"

#include "core/text.h"

#include <algorithm>
#include <cmath>

namespace kestra {

namespace {

bool startsWith(std::string_view text, std::string_view prefix) { return text.substr(0, prefix.size()) == prefix; }

bool startsWithAny(std::string_view text, std::initializer_list<std::string_view> prefixes)
{
    return std::any_of(prefixes.begin(), prefixes.end(), [&](std::string_view p) { return startsWith(text, p); });
}

// Line 1 of a trunk call on a channel: " M", "PM", " E", "PE", " L" or "PL"
// (the P for a priority channel), the location with its "-" in column 4, then
// the ID.
bool trunkCallLine(std::string_view line1)
{
    return Mid(line1, 4, 1) == "-" && startsWithAny(line1, {" M", "PM", " E", "PE", " L", "PL"});
}

// The bank of a channel number in the four places of line 1: " 102" is bank 2.
long long bankOfChannelText(const std::string& channeltext)
{
    return static_cast<long long>(std::floor((Val(channeltext) - 1) / 100)) + 1;
}

} // namespace

std::string replyLine(const std::string& rxbuf)
{
    std::string text = rxbuf;
    while (!text.empty() && (text.back() == '\r' || text.back() == '\n')) text.pop_back();
    const auto cr = text.find_last_of('\r');
    if (cr != std::string::npos) text.erase(0, cr + 1);
    if (!text.empty() && text.front() == '\n') text.erase(0, 1);
    return text;
}

void parselcd(DisplayState& state, std::string& rxbuf)
{
    if (const auto p = InStr(rxbuf, "LCD1")) rxbuf = Mid(rxbuf, p, 167);

    for (int n = 0; n < 4; ++n) {
        const auto p = InStr(rxbuf, "LCD" + std::to_string(n + 1));
        if (!p) continue;
        state.lcdline[n] = Mid(rxbuf, p + 6, 16);
        state.lcdinv[n] = Mid(rxbuf, p + 24, 16) == "****************" ? 1 : 0;
        if (n < 3) state.lcdraw[n] = Mid(rxbuf, p + 6, 34);
    }
    std::string& line1 = state.lcdline[0];
    std::string& line2 = state.lcdline[1];
    const std::string& line3 = state.lcdline[2];
    const std::string& raw3 = state.lcdraw[2];

    state.channeltext = Mid(line1, 11, 4);
    state.optionOverlay = contains(line1, "SYSTEM OPTION  ");
    if (contains(line2, ".")) state.freqtext = Mid(line2, 1, 9);
    state.lamps[kLampMute] = contains(state.lcdline[3], "MUTE ON");

    state.trunkmode = 0;
    if (startsWithAny(line1, {"M ID:", "ID S", "E ID:", "L ID:"}) || trunkCallLine(line1)) state.trunkmode = 1;
    if (startsWithAny(line1, {"SCAN", "SRCH", "SRVC", "     "})) state.trunkmode = 0;

    // The active bank or search range is the one digit of the row of ten in
    // line 3 that the scanner shows inverted; the tenth place is bank 10. A
    // row without a mark gives its number in columns 7 and 8 ("Range 03").
    const bool bankRow = contains(line3, "Bank") || contains(line3, "Range");
    if (contains(raw3, "#")) {
        for (int v = 0; v < 10; ++v)
            if (Mid(raw3, static_cast<std::size_t>(25 + v), 1) == "#" && bankRow) state.curbank = v + 1;
    } else if (bankRow) {
        state.curbank = static_cast<int>(IntVal(Mid(line3, 7, 2)));
    }

    // The scanner animates its scan: the word moves through line 2 a letter at
    // a time. All its positions read as one word, and a display in motion is
    // known by it.
    if (contains(line2, " SCAN") || contains(line2, "CAN   ") || contains(line2, "     S")) line2 = "SCANNING";

    // A locked-out channel ends line 1 in "Lo"; its mark replaces the last two
    // columns (the line is then 18 characters, of which the display shows 16).
    if (line1.size() >= 2 && line1.compare(line1.size() - 2, 2, "Lo") == 0) {
        state.lamps[kLampLockOut] = true;
        line1 = Mid(line1, 1, 14) + " L/O";
    } else {
        state.lamps[kLampLockOut] = false;
    }

    // The trunk ID. The ID field is wider than the dashes the scanner shows
    // while it has no ID, so blanks round them do not make an ID.
    state.trunkid.clear();
    state.idvalid = 0;
    if (startsWith(line1, "M ID:") || startsWith(line1, "E ID:")) {
        state.trunkid = Mid(line1, 6, 6);
        state.idvalid = trim(state.trunkid) != "-----" ? 1 : 0;
    } else if (startsWith(line1, "L ID:")) {
        state.trunkid = Mid(line1, 6, 8);
        state.idvalid = trim(state.trunkid) != "--" ? 1 : 0;
    } else if (trunkCallLine(line1)) {
        state.trunkid = Mid(line1, 7, 6);
        state.idlocation = Mid(line1, 3, 3);
        state.idvalid = contains(state.trunkid, "---") ? 0 : 1;
    }

    // The channel's system letter in column 10 ("C" conventional).
    state.trunkflag = false;
    state.systemname.clear();
    const std::string system = Mid(line1, 9, 2);
    if (system == " M") state.systemname = "Motorola";
    else if (system == " E") state.systemname = "Edacs";
    else if (system == " L") state.systemname = "LTR";
    state.trunkflag = !state.systemname.empty();

    // The subtone, from the inverse marks of line 3: an inverted value is a
    // tone the scanner found, a plain " CTCSS " one it is still looking for.
    state.subtonestate = 0;
    if (contains(raw3, "CTCSS") && contains(raw3, "##### ##### ")) {
        state.subtonetext = Mid(raw3, 9, 5);
        state.subtonestate = 1;
    } else if (contains(raw3, "CTCSS") && contains(raw3, "##### #### ")) {
        state.subtonetext = Mid(raw3, 9, 4);
        state.subtonestate = 1;
    } else {
        if (contains(raw3, " CTCSS ")) state.subtonestate = 3;
        if (contains(raw3, "CTCSS")) state.subtonetext = Mid(raw3, 9, 5);
        else if (contains(raw3, "DCS")) state.subtonetext = Mid(raw3, 9, 3);
    }
    if (contains(raw3, "DCS") && contains(raw3, "###   ###")) {
        state.subtonetext = Mid(raw3, 9, 3);
        state.subtonestate = 2;
    }
}

int decidePollfast(const DisplayState& state)
{
    const std::string& line1 = state.lcdline[0];
    const std::string& line3 = state.lcdline[2];
    if (contains(state.lcdline[1], "SCANNING")) return 1;
    if (contains(line3, "SERVICE SEARCH") && startsWith(line1, "SRVC")) return 1;
    if (contains(line3, "Range ") && startsWith(line1, "SRCH")) return 1;
    if (startsWith(line1, "ID S")) return 1;
    return 0;
}

void wipeReception(DisplayState& state)
{
    state.busyshown = false;
    state.busytwin = false;
    state.trunkid.clear();
    state.idlocation.clear();
    state.idtag.clear();
    state.lamps[kLampLockOut] = false;
    state.lamps[kLampAtt] = false;
}

bool refreshEncoded(DisplayState& state)
{
    std::string encoded = Mid(state.lcdline[1], 11, 3);
    if (encoded == state.encoded) return false;
    state.encoded = std::move(encoded);
    return true;
}

void takeStep(DisplayState& state, const std::string& rxbuf)
{
    const auto p = InStr(rxbuf, "ST");
    if (!p) return;
    const auto k = InStr(rxbuf, "K", p + 3);
    if (!k) return;
    state.steptext = Mid(rxbuf, p + 3, k - (p + 3));
}

// The scanner answers "S182 F08594375": the strength 0..255 behind the "S",
// then the frequency. The number is read from behind the "S" (and a "G" or
// blanks, should a scanner echo the command), as decimal text.
void takeSignal(DisplayState& state, const std::string& rxbuf)
{
    const std::string line = replyLine(rxbuf);
    std::size_t i = 0;
    while (i < line.size() && (line[i] == 'S' || line[i] == 'G' || line[i] == ' ')) ++i;
    state.signal = static_cast<int>(std::clamp<long long>(IntVal(line.substr(i)), 0, 255));
}

void takeSquelch(DisplayState& state, const std::string& rxbuf)
{
    state.busyshown = false;
    state.busytwin = false;
    if (!contains(rxbuf, "+")) return;
    if (state.trunkmode == 0) {
        state.busyshown = true;
        state.busytwin = true;
    }
    // On a trunk ID display the squelch counts as open only while an ID is
    // shown, in the ID search and scan modes (not their holds).
    const long long mode = IntVal(state.modenumber);
    const bool idMode = mode >= 10 && mode <= 20 && mode % 2 == 0;
    if (idMode && state.idvalid == 1 && state.trunkmode == 1) state.busyshown = true;
}

void takeMode(DisplayState& state, const std::string& rxbuf)
{
    // A key's reply may stand ahead of the poll's: the mode follows "MD".
    const auto p = InStr(rxbuf, "MD");
    state.modenumber = Mid(rxbuf, p ? p + 2 : 3, 2);
    if (contains(rxbuf, "NG") || contains(rxbuf, "MD22")) state.modenumber = "Menu";
    classify(state);
}

void takeModulation(DisplayState& state, const std::string& rxbuf)
{
    if (!contains(rxbuf, "RM")) return;
    if (contains(rxbuf, "WFM")) state.modulation = "WFM";
    if (contains(rxbuf, " FM")) state.modulation = "FM";
    if (contains(rxbuf, " AM")) state.modulation = "AM";
    if (contains(rxbuf, "NFM")) state.modulation = "NFM";
}

void takeAttenuator(DisplayState& state, const std::string& rxbuf)
{
    if (contains(rxbuf, "ATN")) state.lamps[kLampAtt] = true;
    if (contains(rxbuf, "ATF")) state.lamps[kLampAtt] = false;
}

void takeTrunkBank(DisplayState& state, const std::string& rxbuf)
{
    const auto p = InStr(rxbuf, "TB");
    if (!p) return;
    if (state.trunkmode != 1) {
        state.trunkbank = 0;
        return;
    }
    const std::string letter = Mid(rxbuf, p + 3, 1);
    if (letter.size() == 1 && letter[0] >= 'A' && letter[0] <= 'J') state.trunkbank = letter[0] - 64;
}

void classify(DisplayState& state)
{
    const std::string& mode = state.modenumber;
    const int tone = state.subtonestate;
    const std::string bank = numText(bankOfChannelText(state.channeltext));
    std::string line;

    if (mode == "Menu") line = "Menu mode";
    else if (mode == "00") {
        if (tone == 0) line = "Scan Mode";
        else if (tone == 1) line = "Scan Mode - subtone detected";
        else if (tone == 3) line = "Scan Mode - searching subtone";
    } else if (mode == "01") {
        if (tone == 0) line = "Manual Mode - Bank:";
        else if (tone == 1) line = "Manual Mode - subtone detected - Bank:";
        else if (tone == 2) line = "Manual Mode - DCS tone detected - Bank:";
        else if (tone == 3) line = "Manual Mode - searching subtone - Bank:";
        if (state.systemname == "Motorola") line = "Manual Mode - Motorola Trunk Channel - Bank:";
        else if (state.systemname == "Edacs") line = "Manual Mode - Edacs Trunk Channel - Bank:";
        else if (state.systemname == "LTR") line = "Manual Mode - LTR Trunk Channel - Bank:";
        if (!line.empty()) line += bank;
    } else if (mode == "02" || mode == "03") {
        const std::string base = mode == "02" ? "Limit Search" : "Limit Search Hold";
        if (tone == 0) line = base;
        else if (tone == 1) line = base + " - subtone detected";
    } else if (mode == "04") line = "Service Search";
    else if (mode == "05") line = "Service Search Hold";
    else if (mode == "06" || mode == "07" || mode == "08") line = "--";
    else if (mode == "09") line = "VFO";
    else {
        static const char* const kTrunk[] = {"Motorola", "EDACS", "LTR"};
        static const char* const kKind[] = {"ID Search", "ID Search Hold", "ID Scan", "ID Scan Hold"};
        const long long n = IntVal(mode);
        if (mode.size() == 2 && n >= 10 && n <= 21) {
            line = std::string("Trunk - ") + kTrunk[(n - 10) / 4] + " " + kKind[(n - 10) % 4];
            if (state.trunkbank >= 1) line += " - Bank: " + numText(state.trunkbank);
        }
    }
    if (!line.empty()) state.statusline = line;

    if (mode == "00") state.opclass = 1;
    else if (mode == "01") state.opclass = 0;
    else if (mode == "02" || mode == "03" || mode == "04" || mode == "05") state.opclass = 3;
    if (Val(mode) > 5) state.opclass = 2;
}

int encryptedSkips(const DisplayState& state, const EncryptedSkip& options)
{
    if (state.encoded != "ENC") return 0;
    const std::string& mode = state.modenumber;
    return (options.idSearch && mode == "10") + (options.trunkScan && mode == "12") + (options.search && mode == "02") +
           (options.scan && mode == "00");
}

bool meterBarShown(int signal, int bar) { return signal - 31.875 * bar >= 0; }

} // namespace kestra
