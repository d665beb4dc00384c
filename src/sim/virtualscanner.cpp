#include "sim/virtualscanner.h"

#include "sim/replytext.h"

#include <algorithm>
#include <cstdio>
#include <optional>

namespace kestra::sim {

namespace {

bool startsWith(std::string_view text, std::string_view prefix) { return text.substr(0, prefix.size()) == prefix; }

// "A".."J" as 0..9.
std::optional<int> letterIndex(char c)
{
    if (c < 'A' || c > 'J') return std::nullopt;
    return c - 'A';
}
char letter(int index) { return static_cast<char>('A' + index); }

// A channel as three digits, "000" being channel 1000.
std::optional<int> channelOf(std::string_view text)
{
    if (text.size() != 3 || !allDigits(text)) return std::nullopt;
    const int n = digitsValue(text);
    return n == 0 ? 1000 : n;
}
// Text the scanner takes into a tag: no control characters.
bool printable(std::string_view text)
{
    return std::none_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7f; });
}

std::string activeLetters(const std::array<bool, 10>& active)
{
    std::string letters;
    for (int i = 0; i < 10; ++i)
        if (active[i]) letters += letter(i);
    return letters;
}

// "ABC" as ten flags; nothing for an empty text, a letter past "J" or a blank.
std::optional<std::array<bool, 10>> flagsOfLetters(std::string_view letters)
{
    if (letters.empty()) return std::nullopt;
    std::array<bool, 10> flags{};
    for (char c : letters) {
        const auto i = letterIndex(c);
        if (!i) return std::nullopt;
        flags[*i] = true;
    }
    return flags;
}

} // namespace

VirtualScanner::VirtualScanner(Model model, int baud) : memory_(model), menu_(memory_)
{
    if (!setBaudRate(baud)) memory_.baud = 19200;
}

bool VirtualScanner::setBaudRate(int baud)
{
    const auto& rates = baudRates(memory_.model);
    if (std::find(rates.begin(), rates.end(), baud) == rates.end()) return false;
    memory_.baud = baud;
    return true;
}

// ---- framing -------------------------------------------------------------------

std::string VirtualScanner::receive(std::string_view bytes)
{
    std::string out;
    for (char c : bytes) {
        if (c == '\n') continue;
        if (c == '\r') {
            out += overrun_ ? std::string("ORER\r") : command(partial_);
            partial_.clear();
            overrun_ = false;
            continue;
        }
        if (partial_.size() >= kLineLimit)
            overrun_ = true;
        else
            partial_ += c;
    }
    return out;
}

std::string VirtualScanner::command(std::string_view line)
{
    while (!line.empty() && (line.back() == '\r' || line.back() == '\n')) line.remove_suffix(1);
    const Mode before = mode_;
    std::string answer = dispatch(line);
    afterCommand(before);
    return answer;
}

// ---- commands ------------------------------------------------------------------

std::string VirtualScanner::channelLine(int number) const
{
    const Channel& ch = memory_.channel(number);
    char tone[8];
    std::snprintf(tone, sizeof tone, "%03d", ch.tone);
    return "C" + channel3(number) + " F" + freq8(ch.freq) + " T" + flagLetter(ch.trunk) + " D" +
           flagLetter(ch.delay != 0) + " L" + flagLetter(ch.lockout) + " A" + flagLetter(ch.atten) + " R" +
           flagLetter(ch.record) + " N" + tone;
}

std::string VirtualScanner::dispatch(std::string_view line)
{
    if (line.empty()) return kErr;
    const ModelInfo& info = modelInfo(memory_.model);

    if (line == "SI") return reply(std::string("SI ") + info.name + ",0000000000," + info.firmware);
    if (line == "VR") return reply(info.version);
    if (line == "IDF" || line == "IDN" || line == "CDF" || line == "CDN" || line == "QUF" || line == "QUN") return kOk;
    if (line == "AC") {
        memory_.factoryReset();
        menu_.close();
        mode_ = Mode::Scan;
        channel_ = 1;
        range_ = 0;
        trunkBank_ = 0;
        entry_.clear();
        resume();
        return kOk;
    }
    if (line == "MD") return reply("MD" + modeNumber());
    if (line == "SQ") return reply(reception_.squelchOpen ? "+" : "-");
    if (line == "SG") {
        char buffer[32];
        std::snprintf(buffer, sizeof buffer, "S%03d F", std::clamp(reception_.signal, 0, 255));
        return reply(buffer + freq8(tunedFrequency()));
    }
    if (line == "AT") return reply(std::string("AT") + flagLetter(searching() ? searchAtten_ : current().atten));
    if (line == "LON" || line == "LOF") {
        current().lockout = line == "LON";
        return kOk;
    }
    if (line == "ATN" || line == "ATF") {
        (searching() ? searchAtten_ : current().atten) = line == "ATN";
        return kOk;
    }
    if (line == "ARN" || line == "ARF") {
        current().record = line == "ARN";
        return kOk;
    }

    // "MA" alone stops on the channel the scanner is on and answers it, the
    // way clients that follow the scanner ask where it is.
    if (startsWith(line, "MA")) {
        const auto n = line == "MA" ? std::optional<int>(channel_) : channelOf(line.substr(2));
        if (!n) return kErr;
        channel_ = *n;
        mode_ = Mode::Manual;
        menu_.close();
        entry_.clear();
        return reply(channelLine(*n));
    }
    if (startsWith(line, "PM")) return channelProgram(line.substr(2));
    if (startsWith(line, "ST") && (line.size() == 2 || line[2] == ' ')) return stepCommand(line.substr(2));
    if (startsWith(line, "RM") && (line.size() == 2 || line[2] == ' ')) return modeCommand(line.substr(2));
    if (startsWith(line, "DL")) return delayCommand(line);
    if (startsWith(line, "BA")) return beepCommand(line);
    if (startsWith(line, "TA ")) return tagCommand(line.substr(3));
    if (startsWith(line, "CS")) return subtoneCommand(line.substr(2));
    if (startsWith(line, "PC ")) return priorityCommand(line.substr(3));
    if (startsWith(line, "SB") || startsWith(line, "CB") || startsWith(line, "IS")) return activeCommand(line);
    // "TB b" names the bank's trunk system ("OFF" for a conventional bank);
    // "TB" alone answers for the bank on the display.
    const auto trunkReply = [&](int b) {
        const TrunkBank& t = memory_.trunk[b];
        return reply(std::string("TB ") + letter(b) + " " + (t.on ? trunkWord(t.kind) : "OFF"));
    };
    if (line == "TB") return trunkReply(displayBank());
    if (startsWith(line, "TB ") && line.size() == 4) {
        const auto b = letterIndex(line[3]);
        return b ? trunkReply(*b) : kNg;
    }
    if ((startsWith(line, "TBN ") || startsWith(line, "TBF ")) && line.size() == 5) {
        const auto b = letterIndex(line[4]);
        if (!b) return kNg;
        memory_.trunk[*b].on = line[2] == 'N';
        return kOk;
    }
    if (startsWith(line, "TR ")) return trunkTypeCommand(line.substr(3));
    if (startsWith(line, "TC")) return controlChannelCommand(line);
    if (startsWith(line, "TG ")) return trunkIdCommand(line.substr(3));
    if (startsWith(line, "FB ")) return fleetCommand(line.substr(3));
    if (startsWith(line, "LL") || startsWith(line, "LU")) return limitCommand(line);
    if (startsWith(line, "LCD")) return lcdCommand(line.substr(3));
    if (startsWith(line, "KEY")) return keyCommand(line.substr(3));
    if (startsWith(line, "FP ")) return fipsCommand(line.substr(3));
    if (startsWith(line, "RF")) return frequencyCommand(line.substr(2));
    return kErr;
}

// "PM" nnn reads like "MA" without selecting; "PM" nnn, a blank or "T", and
// eight digits program the channel (zeros clear it) and make it current.
// A programmed frequency takes the band's own mode and step.
std::string VirtualScanner::channelProgram(std::string_view args)
{
    const auto n = channelOf(args.substr(0, 3));
    if (!n) return kErr;
    if (args.size() == 3) return reply(channelLine(*n));
    if (args.size() != 12 || (args[3] != ' ' && args[3] != 'T')) return kErr;
    const auto f = parseFreq8(args.substr(4));
    if (!f) return kErr;
    Channel& ch = memory_.channel(*n);
    if (*f == 0) {
        ch = Channel{};
    } else {
        if (!inCoverage(*f)) return kNg;
        if (ch.empty()) ch.lockout = false;
        ch.freq = *f;
        ch.trunk = args[3] == 'T';
        if (const auto band = bandDefault(*f)) {
            ch.mode = band->mode;
            ch.step = band->step;
        }
    }
    channel_ = *n;
    return kOk;
}

std::string VirtualScanner::stepCommand(std::string_view args)
{
    if (args.empty()) return reply(std::string("ST ") + stepWord(searching() ? memory_.search[range_].step : current().step));
    const auto step = stepFromWord(args.substr(1));
    if (!step) return kNg;
    if (searching()) {
        const auto& steps = searchSteps(memory_.model);
        if (std::find(steps.begin(), steps.end(), *step) == steps.end()) return kNg;
        memory_.search[range_].step = *step;
    } else {
        if (!channelStepAllowed(memory_.model, *step)) return kNg;
        current().step = *step;
    }
    return kOk;
}

std::string VirtualScanner::modeCommand(std::string_view args)
{
    if (args.empty()) return reply(std::string("RM ") + modulationWord(searching() ? memory_.search[range_].mode : current().mode));
    const auto mode = modulationFromWord(args.substr(1));
    if (!mode) return kNg;
    if (searching()) {
        memory_.search[range_].mode = *mode;
    } else {
        if (*mode == Modulation::Auto) return kNg;
        current().mode = *mode;
    }
    return kOk;
}

std::string VirtualScanner::delayCommand(std::string_view line)
{
    if (line == "DL") {
        const int delay = current().delay;
        // The setting follows "DLN" without a blank: the reader takes the two
        // characters behind the third one ("DLN-10" reads "-1").
        return reply(delay == 0 ? std::string("DLF") : std::string("DLN") + delayWord(delay));
    }
    if (line == "DLF") {
        current().delay = 0;
        return kOk;
    }
    if (!startsWith(line, "DLN ")) return kErr;
    const auto code = delayFromWord(line.substr(4));
    if (!code) return kNg;
    // The BC2xx family knows one delay, two seconds.
    current().delay = longDelays(memory_.model) ? *code : 2;
    return kOk;
}

std::string VirtualScanner::beepCommand(std::string_view line)
{
    // "BA C nnn", "BAN C nnn", "BAF C nnn", "BA I b ld", "BAN I b ld", "BAF I b ld"
    std::string_view rest = line.substr(2);
    std::optional<bool> set;
    if (!rest.empty() && (rest[0] == 'N' || rest[0] == 'F')) {
        set = rest[0] == 'N';
        rest.remove_prefix(1);
    }
    if (startsWith(rest, " C ")) {
        const auto n = channelOf(rest.substr(3));
        if (!n || rest.size() != 6) return kErr;
        Channel& ch = memory_.channel(*n);
        if (!set) return reply(std::string("BA") + flagLetter(ch.beep) + " C " + channel3(*n));
        ch.beep = *set;
        return kOk;
    }
    if (startsWith(rest, " I ") && rest.size() == 7 && rest[4] == ' ' && rest[6] >= '0' && rest[6] <= '9') {
        const auto b = letterIndex(rest[3]);
        const auto l = letterIndex(rest[5]);
        if (!b || !l) return kNg;
        IdSlot& slot = memory_.ids[*b][*l].idSlots[static_cast<std::size_t>(rest[6] - '0')];
        if (!set) return reply(std::string("BA") + flagLetter(slot.beep) + " I " + std::string(rest.substr(3)));
        if (slot.empty()) return kNg;
        slot.beep = *set;
        return kOk;
    }
    return kErr;
}

std::string VirtualScanner::tagCommand(std::string_view args)
{
    // args: "C nnn[ text]", "B b[ text]", "S b[ text]", "L b l[ text]", "I b ld[ text]"
    if (args.size() < 3 || args[1] != ' ') return kErr;
    const char kind = args[0];
    std::size_t keyLength;
    switch (kind) {
    case 'C': keyLength = 5; break;
    case 'B': case 'S': keyLength = 3; break;
    case 'L': keyLength = 5; break;
    case 'I': keyLength = 6; break;
    default: return kErr;
    }
    if (args.size() < keyLength) return kErr;
    const std::string_view key = args.substr(0, keyLength);
    std::optional<std::string_view> text;
    if (args.size() > keyLength) {
        if (args[keyLength] != ' ') return kErr;
        text = args.substr(keyLength + 1);
        if (!printable(*text)) return kNg;
    }
    const auto answer = [&](const std::string& tag) { return reply("TA " + std::string(key) + " " + tag); };

    std::string* tag = nullptr;
    switch (kind) {
    case 'C': {
        const auto n = channelOf(key.substr(2));
        if (!n) return kErr;
        tag = &memory_.channel(*n).tag;
        break;
    }
    case 'B':
    case 'S': {
        const auto b = letterIndex(key[2]);
        if (!b) return kNg;
        tag = kind == 'B' ? &memory_.bankTags[*b] : &memory_.search[*b].tag;
        break;
    }
    case 'L': {
        if (key[3] != ' ') return kErr;
        const auto b = letterIndex(key[2]);
        if (!b) return kNg;
        if (key[4] == '0' && !text) return kOk;  // opens the reading of the list tags
        const auto l = letterIndex(key[4]);
        if (!l) return kNg;
        tag = &memory_.ids[*b][*l].tag;
        break;
    }
    case 'I': {
        if (key[3] != ' ' || key[5] < '0' || key[5] > '9') return kErr;
        const auto b = letterIndex(key[2]);
        const auto l = letterIndex(key[4]);
        if (!b || !l) return kNg;
        IdSlot& slot = memory_.ids[*b][*l].idSlots[static_cast<std::size_t>(key[5] - '0')];
        if (slot.empty()) {
            if (text) return kNg;
            return answer("--");  // a slot without an ID has no tag
        }
        tag = &slot.tag;
        break;
    }
    }
    if (!text) return answer(*tag);
    *tag = scannerTag(*text);
    return kOk;
}

std::string VirtualScanner::subtoneCommand(std::string_view args)
{
    Channel& ch = current();
    if (args.empty()) {
        // Four places: the code, or for a locked-out tone the base code and "L".
        char buffer[16];
        if (ch.tone >= 150)
            std::snprintf(buffer, sizeof buffer, "CS%03dL", ch.tone - 149);
        else
            std::snprintf(buffer, sizeof buffer, "CS%04d", ch.tone);
        return reply(buffer);
    }
    const bool locked = args[0] == 'L';
    if (locked) args.remove_prefix(1);
    if (args.size() != 3 || !allDigits(args)) return kErr;
    const int code = digitsValue(args);
    if (locked) {
        if (code < 1 || code > 142) return kNg;
        ch.tone = code + 149;
    } else {
        if (code > 142) return kNg;
        ch.tone = code;
    }
    return kOk;
}

std::string VirtualScanner::priorityCommand(std::string_view args)
{
    // "b" reads; "b" and the channel, with or without a blank, sets.
    if (args.empty()) return kErr;
    const auto b = letterIndex(args[0]);
    if (!b) return kNg;
    std::string_view number = args.substr(1);
    if (number.empty()) return reply(std::string("PC ") + args[0] + channel3(memory_.priority[*b]));
    if (number[0] == ' ') number.remove_prefix(1);
    if (!allDigits(number) || number.size() > 4) return kErr;
    int n = digitsValue(number);
    if (n == 0) n = 1000;
    if (n < *b * 100 + 1 || n > *b * 100 + 100) return kNg;
    memory_.priority[*b] = n;
    return kOk;
}

// "SB" search ranges, "CB" scan banks, "IS" ID lists of the bank on the
// display: the letters of those taking part; with letters, exactly those take
// part. In a search the bank keys choose ranges: "CB" with letters then sets
// the ranges that search, and a search whose range left the list goes on in
// the first one that is in it.
std::string VirtualScanner::activeCommand(std::string_view line)
{
    const std::string_view name = line.substr(0, 2);
    auto& lists = memory_.ids[displayBank()];
    std::array<bool, 10> present{};
    if (name == "SB") present = memory_.searchRanges;
    else if (name == "CB") present = memory_.scanBanks;
    else for (int l = 0; l < kLists; ++l) present[l] = lists[l].active;
    if (line.size() == 2) return reply(std::string(name) + " " + activeLetters(present));
    if (line[2] != ' ') return kErr;
    const auto flags = flagsOfLetters(line.substr(3));
    if (!flags) return kNg;
    const bool ranges = name == "SB" || (name == "CB" && searching());
    if (ranges) memory_.searchRanges = *flags;
    else if (name == "CB") memory_.scanBanks = *flags;
    else for (int l = 0; l < kLists; ++l) lists[l].active = (*flags)[l];
    if (ranges && searching() && !memory_.searchRanges[range_]) startSearch();
    return kOk;
}

// "TR b t", or for Type 2 UHF and VHF "TR b t ffffffff ssss ooo n": the type,
// and Base Config n (1..3) with its frequency, step (kHz without the point)
// and offset; a zero frequency empties that Base Config.
std::string VirtualScanner::trunkTypeCommand(std::string_view args)
{
    if (args.size() < 3 || args[1] != ' ') return kErr;
    const auto b = letterIndex(args[0]);
    if (!b) return kNg;
    std::vector<std::string_view> parts;
    std::string_view rest = args.substr(2);
    while (!rest.empty()) {
        const auto blank = rest.find(' ');
        parts.push_back(rest.substr(0, blank));
        if (blank == std::string_view::npos) break;
        rest.remove_prefix(blank + 1);
    }
    if (parts.empty() || parts[0].size() != 1 || !allDigits(parts[0])) return kErr;
    const int type = parts[0][0] - '0';
    if (type < 1 || type > 9) return kNg;
    TrunkBank& t = memory_.trunk[*b];
    const auto kind = static_cast<TrunkKind>(type);
    if (parts.size() == 1) {
        t.on = true;
        t.kind = kind;
        return kOk;
    }
    // The closing digit names the Base Config; the fill line the channel
    // send uses when a bank's type must change ("TR b 4 04160000 0125 381")
    // has none and goes to the first.
    if (parts.size() == 4) parts.push_back("1");
    if (parts.size() != 5 || parts[1].size() != 8 || parts[2].size() != 4 || parts[3].size() != 3 ||
        parts[4].size() != 1 || !allDigits(parts[1]) || !allDigits(parts[2]) || !allDigits(parts[3]) ||
        !allDigits(parts[4]))
        return kErr;
    if (!hasBaseConfigs(kind)) return kNg;
    const int slot = parts[4][0] - '1';
    if (slot < 0 || slot > 2) return kNg;
    const Freq f = *parseFreq8(parts[1]);
    if (f != 0 && !inCoverage(f)) return kNg;
    t.on = true;
    t.kind = kind;
    t.base[static_cast<std::size_t>(slot)] = f == 0 ? BaseConfig{} : BaseConfig{f, digitsValue(parts[2]), digitsValue(parts[3])};
    return kOk;
}

// "TC b" reads; "TCF b" off; "TCN b" on, with " P1" to " P4" the plan.
std::string VirtualScanner::controlChannelCommand(std::string_view line)
{
    const auto bankAt = [&](std::size_t pos) -> std::optional<int> {
        if (line.size() <= pos) return std::nullopt;
        return letterIndex(line[pos]);
    };
    if (startsWith(line, "TC ") && line.size() == 4) {
        const auto b = bankAt(3);
        if (!b) return kNg;
        const TrunkBank& t = memory_.trunk[*b];
        const std::string head = std::string("TC") + (t.controlChannel == 0 ? "F " : "N ") + line[3];
        const bool plans = t.kind == TrunkKind::Type1 || t.kind == TrunkKind::Type2_800;
        if (t.controlChannel != 0 && plans) return reply(head + " P" + std::to_string(t.controlChannel));
        return reply(head);
    }
    if (startsWith(line, "TCF ") && line.size() == 5) {
        const auto b = bankAt(4);
        if (!b) return kNg;
        memory_.trunk[*b].controlChannel = 0;
        return kOk;
    }
    if (startsWith(line, "TCN ") && (line.size() == 5 || line.size() == 8)) {
        const auto b = bankAt(4);
        if (!b) return kNg;
        int plan = 1;
        if (line.size() == 8) {
            if (line[5] != ' ' || line[6] != 'P') return kErr;
            plan = line[7] - '0';
            if (plan < 1 || plan > 4) return kNg;
        }
        memory_.trunk[*b].controlChannel = plan;
        return kOk;
    }
    return kErr;
}

// "TG b ld" reads a slot ("------" when empty); "TG b ld id" sets it, an ID of
// "------" empties it; "TG b Q0" opens the reading of the lists.
std::string VirtualScanner::trunkIdCommand(std::string_view args)
{
    if (args.size() < 4 || args[1] != ' ') return kErr;
    const auto b = letterIndex(args[0]);
    if (!b) return kNg;
    if (args.substr(2) == "Q0") return kOk;
    if (args[3] < '0' || args[3] > '9') return kErr;
    const auto l = letterIndex(args[2]);
    if (!l) return kNg;
    IdSlot& slot = memory_.ids[*b][*l].idSlots[static_cast<std::size_t>(args[3] - '0')];
    if (args.size() == 4) {
        std::string id = slot.empty() ? std::string("------") : slot.id;
        id.resize(std::max<std::size_t>(id.size(), 6), ' ');
        return reply("TG " + std::string(args.substr(0, 4)) + " " + id);
    }
    if (args[4] != ' ') return kErr;
    const std::string_view id = args.substr(5);
    if (id == "------") {
        slot = IdSlot{};
        return kOk;
    }
    if (id.empty() || id.size() > 7 || id.find(' ') != std::string_view::npos || !printable(id)) return kNg;
    slot.id = std::string(id);
    return kOk;
}

// "FB b n" reads block n (0..7) of the Type 1 fleetmap: "FB b n cc". "FB b"
// and codes, two digits each, set the blocks from the first; a last code of
// 12, 13 or 14 fills the rest of the map.
std::string VirtualScanner::fleetCommand(std::string_view args)
{
    if (args.size() < 3 || args[1] != ' ') return kErr;
    const auto b = letterIndex(args[0]);
    if (!b) return kNg;
    TrunkBank& t = memory_.trunk[*b];
    std::string_view rest = args.substr(2);
    if (rest.size() == 1) {
        if (rest[0] < '0' || rest[0] > '7') return kNg;
        char code[4];
        std::snprintf(code, sizeof code, "%02d", t.fleet[static_cast<std::size_t>(rest[0] - '0')]);
        return reply("FB " + std::string(args.substr(0, 3)) + " " + code);
    }
    std::vector<int> codes;
    while (!rest.empty()) {
        const auto blank = rest.find(' ');
        const std::string_view code = rest.substr(0, blank);
        if (code.size() != 2 || !allDigits(code)) return kErr;
        codes.push_back(digitsValue(code));
        if (blank == std::string_view::npos) break;
        rest.remove_prefix(blank + 1);
    }
    if (codes.size() > 8 || std::any_of(codes.begin(), codes.end(), [](int c) { return c > 14; })) return kNg;
    for (std::size_t n = 0; n < codes.size(); ++n) t.fleet[n] = codes[n];
    const int last = codes.back();
    if (last >= 12)
        for (std::size_t n = codes.size(); n < 8; ++n) t.fleet[n] = last;
    return kOk;
}

// "LL b" reads the lower limit of range b ("LL" ffffffff " " b); "LL" ffffffff
// " " b sets it. "LU" the same for the upper limit.
std::string VirtualScanner::limitCommand(std::string_view line)
{
    const bool lower = line[1] == 'L';
    std::string_view rest = line.substr(2);
    if (rest.size() == 2 && rest[0] == ' ') {
        const auto r = letterIndex(rest[1]);
        if (!r) return kNg;
        const SearchRange& range = memory_.search[*r];
        return reply(std::string(line.substr(0, 2)) + freq8(lower ? range.lower : range.upper) + " " + rest[1]);
    }
    if (rest.size() != 10 || rest[8] != ' ') return kErr;
    const auto f = parseFreq8(rest.substr(0, 8));
    if (!f) return kErr;
    const auto r = letterIndex(rest[9]);
    if (!r) return kNg;
    if (*f != 0 && !inCoverage(*f)) return kNg;
    (lower ? memory_.search[*r].lower : memory_.search[*r].upper) = *f;
    return kOk;
}

// "FP nn" reads FIPS slot nn (1..15, "0n" or "n"); "FP nn dddddd" stores a code.
std::string VirtualScanner::fipsCommand(std::string_view args)
{
    const auto blank = args.find(' ');
    const std::string_view slotText = args.substr(0, blank);
    if (slotText.empty() || slotText.size() > 2 || !allDigits(slotText)) return kErr;
    const int slot = digitsValue(slotText);
    if (slot < 1 || slot > kFipsSlots) return kNg;
    std::string& code = memory_.fips[static_cast<std::size_t>(slot - 1)];
    if (blank == std::string_view::npos)
        return reply("FP " + twoDigits(slot) + " " + (code.empty() ? std::string("000000") : code));
    const std::string_view value = args.substr(blank + 1);
    if (value.size() != 6 || !allDigits(value)) return kNg;
    code = value == "000000" ? std::string() : std::string(value);
    return kOk;
}

// "RF" reads the frequency the receiver is on; "RF" ffffffff retunes: in
// manual mode it becomes the current channel's frequency, in a search the
// search goes there.
std::string VirtualScanner::frequencyCommand(std::string_view args)
{
    if (args.empty()) return reply("RF" + freq8(tunedFrequency()));
    const auto f = parseFreq8(args);
    if (!f) return kErr;
    if (!inCoverage(*f)) return kNg;
    if (mode_ == Mode::Manual && !menu_.isOpen()) {
        Channel& ch = current();
        if (ch.empty()) ch.lockout = false;
        ch.freq = *f;
        return kOk;
    }
    if (searching() && !menu_.isOpen()) {
        searchHz_ = static_cast<long long>(*f) * 100;
        return kOk;
    }
    return kNg;
}

} // namespace kestra::sim
