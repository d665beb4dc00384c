#include "vocabulary.h"

#include "core/text.h"

#include <cstdio>

namespace kestra::wire {

char bankLetter(int bank) { return static_cast<char>('A' + bank); }

std::string channel3(int chanid)
{
    char buffer[8];
    std::snprintf(buffer, sizeof buffer, "%03d", ((chanid % 1000) + 1000) % 1000);
    return buffer;
}

std::string freq8(std::string_view mhzText)
{
    std::string padded = padfreq(mhzText, 8, 5);
    padded.erase(4, 1);  // the decimal point
    return padded;
}

std::optional<std::string> behind(std::string_view reply, std::string_view marker, std::size_t offset,
                                  std::size_t length)
{
    const std::size_t pos = InStr(reply, marker);
    if (pos == 0) return std::nullopt;
    return Mid(reply, pos + offset, length);
}

// ---- channel commands ----

std::string selectChannel(int chanid) { return "MA" + channel3(chanid); }

std::string programFrequency(int chanid, bool trunk, std::string_view mhz)
{
    return "PM" + channel3(chanid) + (trunk ? "T" : " ") + freq8(mhz);
}

std::string clearChannel(int chanid) { return "PM" + channel3(chanid) + " 00000000"; }

std::optional<std::string> setStep(std::string_view stepGridText)
{
    static constexpr std::pair<const char*, const char*> steps[] = {
        {"5.0", "5K"},   {"6.25", "6.25K"}, {"7.5", "7.5K"},   {"10.0", "10K"}, {"12.5", "12.5K"},
        {"20.0", "20K"}, {"25.0", "25K"},   {"50.0", "50K"},   {"100.0", "100K"}, {"Auto", "AUTO"}};
    for (const auto& [text, wire] : steps)
        if (stepGridText == text) return std::string("ST ") + wire;
    return std::nullopt;
}

std::optional<std::string> setMode(std::string_view modeGridText)
{
    for (const char* m : {"FM", "WFM", "AM", "NFM"})
        if (modeGridText == m) return std::string("RM ") + m;
    return std::nullopt;
}

std::optional<std::string> setDelay(std::string_view delayCode)
{
    static constexpr const char* delays[8] = {"DLF", "DLN +1", "DLN +2", "DLN +4", "DLN +-", "DLN -2", "DLN -5", "DLN -10"};
    if (delayCode.size() != 1 || delayCode[0] < '0' || delayCode[0] > '7') return std::nullopt;
    return delays[delayCode[0] - '0'];
}

std::string readBeep(int chanid) { return "BA C " + channel3(chanid); }
std::string setBeep(int chanid, bool on) { return std::string(on ? "BAN C " : "BAF C ") + channel3(chanid); }
std::string readTag(int chanid) { return "TA C " + channel3(chanid); }
std::string setTag(int chanid, std::string_view text) { return "TA C " + channel3(chanid) + " " + std::string(text); }

std::string setSubtone(int code)
{
    char buffer[16];
    if (code < 150)
        std::snprintf(buffer, sizeof buffer, "CS%03d", code < 0 ? 0 : code % 1000);
    else
        std::snprintf(buffer, sizeof buffer, "CSL%03d", (code - 149) % 1000);
    return buffer;
}

std::string setLockout(bool on) { return on ? "LON" : "LOF"; }
std::string setAttenuator(bool on) { return on ? "ATN" : "ATF"; }
std::string setRecord(bool on) { return on ? "ARN" : "ARF"; }
std::string readPriority(int bank) { return std::string("PC ") + bankLetter(bank); }
std::string setPriority(int bank, int chanid) { return readPriority(bank) + std::to_string(chanid); }
std::string readBankTag(int bank) { return std::string("TA B ") + bankLetter(bank); }
std::string setBankTag(int bank, std::string_view text) { return readBankTag(bank) + " " + std::string(text); }
std::string activeScanBanks(std::string_view letters) { return "CB " + std::string(letters); }
std::string activeSearchRanges(std::string_view letters) { return "SB " + std::string(letters); }

// ---- trunk commands ----

namespace {
std::string bankList(const char* prefix, int bank, char list) { return prefix + std::string(1, bankLetter(bank)) + " " + list; }
std::string bankSlot(const char* prefix, int bank, char list, int slot)
{
    return bankList(prefix, bank, list) + std::to_string(slot % 10);
}
} // namespace

std::string trunkBank(int bank) { return std::string("TBN ") + bankLetter(bank); }
std::string readTrunkType(int bank) { return std::string("TB ") + bankLetter(bank); }
std::string setTrunkType(int bank, std::string_view codeAndBlock)
{
    return std::string("TR ") + bankLetter(bank) + " " + std::string(codeAndBlock);
}
std::string readTrunkChannelOption(int bank) { return std::string("TC ") + bankLetter(bank); }
std::string readListTag(int bank, char list) { return bankList("TA L ", bank, list); }
std::string setListTag(int bank, char list, std::string_view text) { return readListTag(bank, list) + " " + std::string(text); }
std::string readTrunkId(int bank, char list, int slot) { return bankSlot("TG ", bank, list, slot); }
std::string setTrunkId(int bank, char list, int slot, std::string_view id)
{
    return readTrunkId(bank, list, slot) + " " + std::string(id);
}
std::string readIdTag(int bank, char list, int slot) { return bankSlot("TA I ", bank, list, slot); }
std::string setIdTag(int bank, char list, int slot, std::string_view text)
{
    return readIdTag(bank, list, slot) + " " + std::string(text);
}
std::string readIdBeep(int bank, char list, int slot) { return bankSlot("BA I ", bank, list, slot); }
std::string setIdBeep(int bank, char list, int slot, bool on) { return bankSlot(on ? "BAN I " : "BAF I ", bank, list, slot); }

int scannerTrunkType(int programType)
{
    switch (programType) {
    case 1: return 2;
    case 2: return 1;
    case 8: return 9;
    case 9: return 8;
    default: return programType;
    }
}

std::optional<std::string> trunkTypeLine(int bank, int programType)
{
    switch (programType) {
    case 4: return setTrunkType(bank, "4 04160000 0125 381");
    case 5: return setTrunkType(bank, "5 01360000 0125 381");
    default:
        if (programType < 1 || programType > 9) return std::nullopt;
        return setTrunkType(bank, std::to_string(scannerTrunkType(programType)));
    }
}

// ---- search commands ----

std::string readLowerLimit(int range) { return std::string("LL ") + bankLetter(range); }
std::string setLowerLimit(int range, std::string_view mhz) { return "LL" + freq8(mhz) + " " + bankLetter(range); }
std::string readUpperLimit(int range) { return std::string("LU ") + bankLetter(range); }
std::string setUpperLimit(int range, std::string_view mhz) { return "LU" + freq8(mhz) + " " + bankLetter(range); }
std::string readSearchTag(int range) { return std::string("TA S ") + bankLetter(range); }
std::string setSearchTag(int range, std::string_view text) { return readSearchTag(range) + " " + std::string(text); }

// ---- system commands ----

std::string readDisplayLine(int line) { return line >= 1 && line <= 4 ? "LCD" + std::to_string(line) : "LCD"; }

std::string key(int number, bool hold)
{
    char buffer[16];
    std::snprintf(buffer, sizeof buffer, "KEY%02d%s", number % 100, hold ? "H" : "");
    return buffer;
}

std::string digitKey(int digit) { return "KEY02 " + std::to_string(digit % 10); }
int exitKeyNumber(int bc785d) { return bc785d == 1 ? 9 : 7; }
std::string exitKey(int bc785d) { return key(exitKeyNumber(bc785d)); }
std::string fipsCode(std::string_view code) { return "FP " + std::string(code); }

std::optional<Model> modelOfReply(std::string_view reply)
{
    // UBC3300 first: no other name is part of it, but be plain about the order.
    for (Model m : {Model::UBC3300, Model::BC250D, Model::BC296D, Model::BC785D, Model::BC796D})
        if (contains(reply, modelName(m))) return m;
    return std::nullopt;
}

// ---- reply decoders ----

ChannelReply decodeChannel(std::string_view reply, int chanid)
{
    ChannelReply r;
    std::size_t start = InStr(reply, "C" + channel3(chanid));
    if (start == 0) start = 1;
    auto at = [&](std::string_view marker, std::size_t length) -> std::optional<std::string> {
        const std::size_t pos = InStr(reply, marker, start);
        if (pos == 0) return std::nullopt;
        return Mid(reply, pos + 2, length);
    };
    auto flag = [&](std::string_view marker) -> std::optional<char> {
        auto text = at(marker, 1);
        if (!text || text->empty()) return std::nullopt;
        return (*text)[0];
    };
    r.freq8 = at(" F", 8);
    r.trunk = flag(" T");
    r.delay = flag(" D");
    r.lockout = flag(" L");
    r.atten = flag(" A");
    r.record = flag(" R");
    r.tone = at(" N", 3);
    return r;
}

std::optional<std::string> decodeStep(std::string_view reply)
{
    if (InStr(reply, "ST") == 0) return std::nullopt;
    if (contains(reply, "AUTO")) return "AUTO";
    if (contains(reply, "100K")) return "100K";
    if (contains(reply, "10K")) return "10K";
    auto two = behind(reply, "ST", 3, 2);
    for (const char* known : {"5K", "6.", "7.", "12", "20", "25", "50"})
        if (two == known) return two;
    return std::nullopt;
}

std::optional<std::string> decodeMode(std::string_view reply) { return behind(reply, "RM ", 3, 2); }

std::optional<std::string> decodeDelay(std::string_view reply)
{
    auto off = behind(reply, "DL", 2, 1);
    if (!off) return std::nullopt;
    if (*off == "F") return "F";
    return behind(reply, "DL", 3, 2);
}

std::optional<char> decodeBeep(std::string_view reply)
{
    auto c = behind(reply, "BA", 2, 1);
    if (!c || c->empty()) return std::nullopt;
    return (*c)[0];
}

std::optional<std::string> decodeTag(std::string_view reply)
{
    const std::size_t pos = InStr(reply, "TA C ");
    if (pos == 0) return std::nullopt;
    std::string_view rest = reply;
    const std::size_t lastCr = rest.rfind('\r');
    if (lastCr != std::string_view::npos && lastCr + 1 >= pos + 9) rest = rest.substr(0, lastCr);
    return Mid(rest, pos + 9);
}

std::optional<std::string> decodeSubtone(std::string_view reply) { return behind(reply, "CS", 2, 4); }

std::optional<int> decodePriority(std::string_view reply, int bank)
{
    const std::string head = readPriority(bank);
    if (reply.substr(0, head.size()) != head) return std::nullopt;
    const std::string digits = Mid(reply, 5, 3);
    if (digits.size() != 3 || digits.find_first_not_of("0123456789") != std::string::npos) return std::nullopt;
    return std::stoi(digits);
}

std::optional<std::string> decodeBankTag(std::string_view reply, int bank)
{
    const std::string marker = readBankTag(bank) + " ";
    const std::size_t pos = InStr(reply, marker);
    if (pos == 0) return std::nullopt;
    std::string_view rest = reply.substr(pos - 1 + marker.size());
    const auto cr = rest.find('\r');
    if (cr != std::string_view::npos) rest = rest.substr(0, cr);
    return rtrim(rest);
}

// ---- reply checks ----

std::optional<std::string_view> singleLine(std::string_view rx)
{
    if (rx.empty() || rx.back() != '\r') return std::nullopt;
    rx.remove_suffix(1);
    if (rx.find('\r') != std::string_view::npos) return std::nullopt;
    return rx;
}

namespace {
bool digits(std::string_view text, std::size_t count)
{
    return text.size() == count && text.find_first_not_of("0123456789") == std::string_view::npos;
}

bool oneOf(std::string_view text, std::initializer_list<std::string_view> words)
{
    for (std::string_view w : words)
        if (text == w) return true;
    return false;
}

// "C001 F01306250 TF DN LF AF RF N000": every field in its place.
bool channelLineOk(std::string_view line, int chanid)
{
    if (line.size() != 34 || line.substr(0, 4) != "C" + channel3(chanid) || line.substr(4, 2) != " F" ||
        !digits(line.substr(6, 8), 8))
        return false;
    for (std::size_t i = 0; i < 5; ++i) {
        const std::string_view flag = line.substr(14 + 3 * i, 3);
        if (flag[0] != ' ' || flag[1] != "TDLAR"[i] || (flag[2] != 'N' && flag[2] != 'F')) return false;
    }
    return line.substr(29, 2) == " N" && digits(line.substr(31), 3);
}
} // namespace

bool wellFormedChannelReply(int step, std::string_view rx, int chanid)
{
    const auto line = singleLine(rx);
    if (!line) return false;
    const std::string_view l = *line;
    switch (step) {
    case 1: return channelLineOk(l, chanid);
    case 2: return oneOf(l, {"RM FM", "RM NFM", "RM WFM", "RM AM", "RM AUTO"});
    case 3: return oneOf(l, {"DLF", "DLN+1", "DLN+2", "DLN+4", "DLN+-", "DLN-2", "DLN-5", "DLN-10"});
    case 4: return (l.substr(0, 3) == "BAN" || l.substr(0, 3) == "BAF") && l.substr(3) == " C " + channel3(chanid);
    case 5:
        return oneOf(l, {"ST 5K", "ST 6.25K", "ST 7.5K", "ST 10K", "ST 12.5K", "ST 20K", "ST 25K", "ST 50K", "ST 100K",
                         "ST AUTO"});
    case 6: {
        const std::string head = readTag(chanid);
        if (l.substr(0, head.size()) != head) return false;
        const std::string_view rest = l.substr(head.size());
        return rest.empty() || (rest[0] == ' ' && rest.size() <= 17);
    }
    case 7:
        return l.size() == 6 && l.substr(0, 2) == "CS" &&
               (digits(l.substr(2), 4) || (digits(l.substr(2, 3), 3) && l[5] == 'L'));
    default: return false;
    }
}

SetReply classifySetReply(std::string_view rx)
{
    if (rx.empty() || rx.back() != '\r') return SetReply::Malformed;
    SetReply verdict = SetReply::Ok;
    std::size_t pos = 0;
    while (pos < rx.size()) {
        const std::size_t cr = rx.find('\r', pos);
        const std::string_view line = rx.substr(pos, cr - pos);
        pos = cr + 1;
        if (line == "NG" || line == "ERR")
            verdict = SetReply::Refused;
        else if (line != "OK")
            return SetReply::Malformed;
    }
    return verdict;
}

// ---- menu lines ----

namespace menu {
const std::vector<std::string> kModes = {"[1:AM            ][*****", "[2:FM            ][*****",
                                         "[3:WFM           ][*****", "[4:NFM           ][*****",
                                         "[5:AUTO          ][*****"};
const std::vector<std::string> kSteps = {
    "[0:AUTO          ][*****", "[1:5KHz          ][*****", "[2:6.25KHz       ][*****", "[2:7.5KHz        ][*****",
    "[3:7.5KHz        ][*****", "[3:10KHz         ][*****", "[4:10KHz         ][*****", "[4:12.5KHz       ][*****",
    "[5:12.5KHz       ][*****", "[5:25KHz         ][*****", "[6:20KHz         ][*****", "[6:25KHz         ][*****",
    "[6:50KHz         ][*****", "[7:25KHz         ][*****", "[7:50KHz         ][*****", "[7:100KHz        ][*****",
    "[8:50KHz         ][*****", "[8:100KHz        ][*****", "[8:AUTO          ][*****", "[9:100KHz        ][*****",
    "[9:AUTO          ][*****"};
const std::vector<std::string> kDelays = {"[1:NONE          ][*****", "[2:1 SECOND      ][*****",
                                          "[3:2 SECONDS     ][*****", "[4:4 SECONDS     ][*****",
                                          "[5:INFINITE      ][*****", "[6:-2 SECONDS    ][*****",
                                          "[7:-5 SECONDS    ][*****", "[8:-10 SECONDS   ][*****"};
const std::vector<std::string> kGeneral = {
    "[ 1:15SECONDS    ][*****", "[ 2:INFINITE     ][*****", "[ 1:CSQ          ][*****", "[ 2:TONE SQ      ][*****",
    "[ 3:TONE SEARCH  ][*****", "[ 1:ENABLE       ][*****", "[ 2:DISABLE      ][*****", "[ 1:HIGH         ][*****",
    "[ 2:MEDIUM       ][*****", "[MASTER          ][*****", "[SLAVE           ][*****"};
} // namespace menu

} // namespace kestra::wire
