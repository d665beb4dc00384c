#include "sim/virtualscanner.h"

#include "sim/replytext.h"

#include <algorithm>
#include <cstdio>

// The scanner's state as its keys, knob and display see it: scanning and
// search, the keys of the KEY command, the menus and manual entry, and the
// LCD lines.

namespace kestra::sim {

namespace {

// The frequency on the display: nine places, the MHz right-aligned.
std::string displayFreq(Freq f)
{
    char buffer[24];
    std::snprintf(buffer, sizeof buffer, "%4u.%04u", static_cast<unsigned>(f / 10000), static_cast<unsigned>(f % 10000));
    return buffer;
}

std::string displayMode(Modulation m)
{
    char buffer[8];
    std::snprintf(buffer, sizeof buffer, "%3s", m == Modulation::Auto ? "AUT" : modulationWord(m));
    return buffer;
}

// The channel number in the four places of the display: " 015", "1000".
std::string displayChannel(int n)
{
    return n >= 1000 ? std::string("1000") : " " + channel3(n);
}

} // namespace

// ---- state -----------------------------------------------------------------------

bool VirtualScanner::searching() const
{
    return mode_ == Mode::Search || mode_ == Mode::SearchHold;
}

bool VirtualScanner::trunkMode() const
{
    return mode_ == Mode::IdSearch || mode_ == Mode::IdSearchHold || mode_ == Mode::IdScan || mode_ == Mode::IdScanHold;
}

int VirtualScanner::displayBank() const { return trunkMode() ? trunkBank_ : bankOf(channel_); }

Freq VirtualScanner::tunedFrequency() const
{
    if (searching()) return static_cast<Freq>(searchHz_ / 100);
    if (trunkMode() && voiceFreq_ != 0) return voiceFreq_;  // the call the ID modes stopped on
    return current().freq;
}

std::string VirtualScanner::modeNumber() const
{
    if (menu_.isOpen()) return "22";
    switch (mode_) {
    case Mode::Scan: return "00";
    case Mode::Manual: return "01";
    case Mode::Search: return "02";
    case Mode::SearchHold: return "03";
    case Mode::Service: return "04";
    case Mode::ServiceHold: return "05";
    default: break;
    }
    const TrunkKind kind = memory_.trunk[trunkBank_].kind;
    const int base = isMotorola(kind) ? 10 : isEdacs(kind) ? 14 : 18;
    const int offset = mode_ == Mode::IdSearch ? 0 : mode_ == Mode::IdSearchHold ? 1 : mode_ == Mode::IdScan ? 2 : 3;
    return twoDigits(base + offset);
}

void VirtualScanner::scanTo(int channel) { channel_ = std::clamp(channel, 1, kChannels); }
void VirtualScanner::searchTo(Freq f) { searchHz_ = static_cast<long long>(f) * 100; }

void VirtualScanner::startSearch()
{
    mode_ = Mode::Search;
    const auto usable = [&](int r) { return memory_.searchRanges[r] && memory_.search[r].lower != 0; };
    if (!usable(range_))
        for (int r = 0; r < kRanges; ++r)
            if (usable(r)) {
                range_ = r;
                break;
            }
    const SearchRange& range = memory_.search[range_];
    const long long lower = static_cast<long long>(range.lower) * 100, upper = static_cast<long long>(range.upper) * 100;
    if (searchHz_ < std::min(lower, upper) || searchHz_ > std::max(lower, upper)) searchHz_ = lower;
}

void VirtualScanner::stepSearch(int direction)
{
    const SearchRange& range = memory_.search[range_];
    const long long step = searchStepHz();
    const long long lower = static_cast<long long>(std::min(range.lower, range.upper)) * 100;
    const long long upper = static_cast<long long>(std::max(range.lower, range.upper)) * 100;
    searchHz_ += direction * step;
    if (searchHz_ > upper) searchHz_ = lower;
    if (searchHz_ < lower) searchHz_ = upper;
}

// ---- keys ------------------------------------------------------------------------

std::string VirtualScanner::keyCommand(std::string_view args)
{
    // "nn", "nnH", or "02 d".
    if (args.size() < 2 || !allDigits(args.substr(0, 2))) return kErr;
    const int key = digitsValue(args.substr(0, 2));
    if (key > 16) return kErr;
    std::string_view rest = args.substr(2);
    if (key == 2) {
        if (rest.size() != 2 || rest[0] != ' ' || rest[1] < '0' || rest[1] > '9') return kErr;
        return pressKey(2, false, rest[1] - '0');
    }
    if (rest.empty()) return pressKey(key, false, 0);
    if (rest == "H") return pressKey(key, true, 0);
    return kErr;
}

std::string VirtualScanner::pressKey(int key, bool hold, int digit)
{
    const bool afterPoint = lastKeyPoint_;
    lastKeyPoint_ = key == 3 && !hold;
    if (menu_.isOpen()) {
        menuKey(key, hold, digit);
        return kOk;
    }
    if (mode_ == Mode::Manual && (key == 2 || key == 3 || key == 4) && !hold) {
        manualKey(key, digit, afterPoint);
        return kOk;
    }
    entry_.clear();  // any other key drops a half-keyed entry
    switch (key) {
    case 0:  // RESUME: out of a hold, on from what the scan or search stopped on; SCAN from manual
        if (mode_ == Mode::SearchHold) mode_ = Mode::Search;
        else if (mode_ == Mode::ServiceHold) mode_ = Mode::Service;
        else if (mode_ == Mode::IdScanHold) mode_ = Mode::IdScan;
        else if (mode_ == Mode::IdSearchHold) mode_ = Mode::IdSearch;
        else if (mode_ == Mode::Manual) mode_ = Mode::Scan;
        else if (phase_ != Phase::Moving) resume();
        break;
    case 1:  // SCAN, ID SCAN in a trunk mode
        if (!hold) {
            const Mode scan = trunkMode() ? Mode::IdScan : Mode::Scan;
            if (mode_ == scan && phase_ != Phase::Moving) resume();
            mode_ = scan;
            entry_.clear();
        }
        break;
    case 2:  // a digit switches a bank, range or list in or out
        if (mode_ == Mode::Scan || searching() || mode_ == Mode::IdScan || mode_ == Mode::IdScanHold) {
            const int index = (digit + 9) % 10;
            if (mode_ == Mode::Scan) {
                auto& flags = memory_.scanBanks;
                if (!flags[index] || std::count(flags.begin(), flags.end(), true) > 1) flags[index] = !flags[index];
            } else if (searching()) {
                auto& flags = memory_.searchRanges;
                if (!flags[index] || std::count(flags.begin(), flags.end(), true) > 1) flags[index] = !flags[index];
            } else {
                auto& list = memory_.ids[trunkBank_][index];
                list.active = !list.active;
            }
        }
        break;
    case 5:
        if (!hold) priority_ = !priority_;
        break;
    case 6:  // LOCK OUT
        if (!hold && (mode_ == Mode::Manual || mode_ == Mode::Scan) && !current().empty())
            current().lockout = !current().lockout;
        break;
    case 7:
        if (hold) {
            // UP on the search controls; CH/FREQ on the UBC3300.
            if (switches().ubc33 == 0 && mode_ == Mode::SearchHold) stepSearch(+1);
            break;
        }
        // HOLD
        if (mode_ == Mode::Scan) mode_ = Mode::Manual;
        else if (mode_ == Mode::Search) mode_ = Mode::SearchHold;
        else if (mode_ == Mode::SearchHold) mode_ = Mode::Search;
        else if (mode_ == Mode::Service) mode_ = Mode::ServiceHold;
        else if (mode_ == Mode::ServiceHold) mode_ = Mode::Service;
        else if (mode_ == Mode::IdScan) mode_ = Mode::IdScanHold;
        else if (mode_ == Mode::IdScanHold) mode_ = Mode::IdScan;
        else if (mode_ == Mode::IdSearch) mode_ = Mode::IdSearchHold;
        else if (mode_ == Mode::IdSearchHold) mode_ = Mode::IdSearch;
        break;
    case 8:
        if (hold && mode_ == Mode::SearchHold) stepSearch(-1);
        break;
    case 9:
        if (hold) {
            entry_.clear();
            menu_.open(Menu::Start::SearchRanges);
        } else if (trunkMode()) {
            mode_ = Mode::IdSearch;
        } else {
            startSearch();
        }
        break;
    case 10:
        if (!hold) mode_ = Mode::Service;
        break;
    case 11:
        entry_.clear();
        menu_.open(Menu::Start::Top);
        break;
    case 12:
        if (hold) muted_ = !muted_;
        break;
    case 13:
        if (hold) {
            if (mode_ == Mode::Manual) current().trunk = !current().trunk;
        } else if (trunkMode()) {
            mode_ = Mode::Scan;
        } else if (memory_.trunk[bankOf(channel_)].on) {
            trunkBank_ = bankOf(channel_);
            mode_ = Mode::IdScan;
        }
        break;
    case 15:
    case 16: {
        // The knob: the next channel or search step by hand; in a scan or
        // search it turns the direction and moves on from a stop.
        const int direction = key == 15 ? 1 : -1;
        if (mode_ == Mode::Manual) {
            channel_ = (channel_ - 1 + direction + kChannels) % kChannels + 1;
            entry_.clear();
        } else if (mode_ == Mode::SearchHold) {
            stepSearch(direction);
        } else if (mode_ == Mode::Scan || mode_ == Mode::Search) {
            direction_ = direction;
            if (phase_ != Phase::Moving) resume();
        }
        break;
    }
    default:
        break;  // LIGHT, TRANSFER, CH/FREQ: nothing the memory or the modes show
    }
    return kOk;
}

void VirtualScanner::menuKey(int key, bool hold, int digit)
{
    const bool bc7 = switches().bc785d == 1;
    if (hold) return;
    if (key == (bc7 ? 9 : 7)) {
        menu_.close();
    } else if (key == 1) {
        menu_.close();
        mode_ = trunkMode() ? Mode::IdScan : Mode::Scan;
    } else if (key == 11) {
        menu_.press(MenuKey::Back);
    } else if (key == 2) {
        menu_.press(MenuKey::Digit, digit);
    } else if (key == 3) {
        menu_.press(MenuKey::Point);
    } else if (key == 4) {
        menu_.press(MenuKey::Enter);
    } else if ((bc7 && key == 7) || key == 15) {
        menu_.press(MenuKey::Up);
    } else if ((bc7 && key == 8) || key == 16) {
        menu_.press(MenuKey::Down);
    }
}

// Manual mode: digits and the point make a frequency ("155.125") or a channel
// number ("102"); E takes it. A frequency goes into the current channel with
// the channel's own step and mode. The point pressed twice in a row clears
// the entry (CLR); a second point elsewhere in the entry is ignored.
void VirtualScanner::manualKey(int key, int digit, bool afterPoint)
{
    const auto point = entry_.find('.');
    if (key == 2) {
        const std::size_t digits = point == std::string::npos ? entry_.size() : entry_.size() - point - 1;
        if (digits < 4) entry_ += static_cast<char>('0' + digit);
    } else if (key == 3) {
        if (afterPoint)
            entry_.clear();
        else if (point == std::string::npos)
            entry_ += '.';
    } else if (key == 4) {
        enterFrequencyOrChannel();
    }
}

void VirtualScanner::enterFrequencyOrChannel()
{
    const std::string entry = entry_;
    entry_.clear();
    if (entry.empty()) return;
    const auto point = entry.find('.');
    if (point == std::string::npos) {
        const int n = digitsValue(entry);
        if (n >= 1 && n <= kChannels) channel_ = n;
        return;
    }
    std::string fraction = entry.substr(point + 1);
    fraction.resize(4, '0');
    const Freq f = static_cast<Freq>(digitsValue(entry.substr(0, point)) * 10000 + digitsValue(fraction));
    if (!inCoverage(f)) return;
    Channel& ch = current();
    if (ch.empty()) ch.lockout = false;
    ch.freq = f;
}

// ---- display -------------------------------------------------------------------

Screen VirtualScanner::channelScreen(bool stopped) const
{
    Screen s;
    s.attr.fill(std::string(16, ' '));
    const Channel& ch = current();
    const TrunkBank& bank = memory_.trunk[bankOf(channel_)];
    const char type = ch.trunk && bank.on ? trunkLetter(bank.kind) : 'C';
    std::string line1 = stopped ? "SCAN +   " : priority_ ? "P        " : "         ";
    line1 += type;
    line1 += displayChannel(channel_);
    line1 += !ch.empty() && ch.lockout ? "Lo" : "  ";
    s.text[0] = line1;
    if (stopped) s.attr[0] = "####            ";
    if (!entry_.empty()) {
        s.text[1] = lcdText(std::string(entry_.size() < 9 ? 9 - entry_.size() : 0, ' ') + entry_);
    } else if (ch.empty()) {
        s.text[1] = lcdText("   ----");
    } else {
        s.text[1] = lcdText(displayFreq(ch.freq) + " " + displayMode(ch.mode));
    }
    s.text[2] = lcdText(ch.tag);
    s.text[3] = lcdText(memory_.bankTags[bankOf(channel_)]);
    showSubtone(s);
    return s;
}

// A subtone heard with the transmission takes line 3, the found value
// inverted: "  CTCSS 123.0" or "  DCS   023".
void VirtualScanner::showSubtone(Screen& s) const
{
    if (!reception_.squelchOpen) return;
    const std::string& value = reception_.ctcss.empty() ? reception_.dcs : reception_.ctcss;
    if (value.empty()) return;
    const std::string word = reception_.ctcss.empty() ? "DCS  " : "CTCSS";
    const std::string marks(reception_.ctcss.empty() ? 3 : 5, '#');
    s.text[2] = lcdText("  " + word + " " + value);
    s.attr[2] = lcdText("  " + marks + std::string(word.size() - marks.size() + 1, ' ') + std::string(value.size(), '#'));
}

// The forms of the display:
//   scanning          "     +   C 015"   "  SCAN"             "Bank  1--------0" (the bank's digit inverted)
//   scan stopped      "SCAN +   C 020"   " 167.3500  FM"      tag, bank tag ("SCAN" inverted)
//   manual            "         C 102"   " 156.1000 NFM"      tag, bank tag
//   searching         "SRCH +"           frequency and mode   "Range 03", range tag
//   search stopped    "     + SRCH"      frequency and mode   "Range 03", range tag ("SRCH" inverted)
//   search hold       "HOLD"             frequency and mode   "Range 03", range tag
//   ID scan, search   "ID SCAN  M", "ID SRCH  M", "  SCAN" or "  SEARCH", "List  1234567890", bank tag
//   ID scan stopped   " M1-2 012345"     (system letter, list and slot, the ID in columns 7 to 12)
//   ID search stopped "M ID:012345", LTR "L ID:101123" (the ID from column 6)
//   either, no call   "M ID:-----", LTR "L ID:--"
// with the call's frequency and mode on line 2, the ID's tag on line 3 and the
// bank's tag on line 4.
Screen VirtualScanner::modeScreen() const
{
    if (mode_ == Mode::Manual) return channelScreen(false);
    const bool stopped = phase_ != Phase::Moving || reception_.squelchOpen;
    if (mode_ == Mode::Scan && stopped) return channelScreen(true);
    if (trunkMode()) return trunkScreen();

    Screen s;
    s.attr.fill(std::string(16, ' '));
    s.text.fill(std::string(16, ' '));
    switch (mode_) {
    case Mode::Scan: {
        s.text[0] = lcdText("     +   C" + displayChannel(channel_));
        s.text[1] = lcdText("  SCAN");
        std::string banks = "Bank  ";
        for (int b = 0; b < kBanks; ++b) banks += memory_.scanBanks[b] ? static_cast<char>('0' + (b + 1) % 10) : '-';
        s.text[2] = banks;
        s.attr[2][static_cast<std::size_t>(6 + bankOf(channel_))] = '#';
        break;
    }
    case Mode::Search:
    case Mode::SearchHold: {
        const SearchRange& range = memory_.search[range_];
        const Freq f = static_cast<Freq>(searchHz_ / 100);
        Modulation m = range.mode;
        if (m == Modulation::Auto) {
            const auto band = bandDefault(f);
            if (band) m = band->mode;
        }
        if (mode_ == Mode::SearchHold) {
            s.text[0] = lcdText("HOLD");
        } else if (stopped) {
            s.text[0] = lcdText("     + SRCH");
            s.attr[0] = "      ####      ";
        } else {
            s.text[0] = lcdText("SRCH +");
        }
        s.text[1] = lcdText(displayFreq(f) + " " + displayMode(m));
        s.text[2] = lcdText("Range " + twoDigits(range_ + 1));
        s.text[3] = lcdText(range.tag);
        showSubtone(s);
        break;
    }
    default:  // the service search
        s.text[0] = lcdText(mode_ == Mode::Service ? "SRVC +" : "HOLD");
        s.text[2] = lcdText("SERVICE SEARCH");
        break;
    }
    return s;
}

Screen VirtualScanner::trunkScreen() const
{
    Screen s;
    s.attr.fill(std::string(16, ' '));
    s.text.fill(std::string(16, ' '));
    const TrunkKind kind = memory_.trunk[trunkBank_].kind;
    const char type = trunkLetter(kind);
    const bool ltr = kind == TrunkKind::Ltr;
    s.text[3] = lcdText(memory_.bankTags[trunkBank_]);
    const bool moving = (mode_ == Mode::IdScan || mode_ == Mode::IdSearch) && phase_ == Phase::Moving;
    if (moving) {
        s.text[0] = lcdText(std::string(mode_ == Mode::IdScan ? "ID SCAN  " : "ID SRCH  ") + type);
        s.text[1] = lcdText(mode_ == Mode::IdScan ? "  SCAN" : "  SEARCH");
        std::string lists = "List  ";
        for (int l = 0; l < kLists; ++l)
            lists += memory_.ids[trunkBank_][l].active ? static_cast<char>('0' + (l + 1) % 10) : '-';
        s.text[2] = lists;
        return s;
    }
    if (heldId_.empty()) {
        s.text[0] = lcdText(std::string(1, type) + (ltr ? " ID:--" : " ID:-----"));
        return s;
    }
    const bool scan = mode_ == Mode::IdScan || mode_ == Mode::IdScanHold;
    if (scan && heldList_ >= 0) {
        std::string id = heldId_.substr(0, 6);
        id.resize(6, ' ');
        s.text[0] = lcdText(std::string(" ") + type + static_cast<char>('0' + (heldList_ + 1) % 10) + "-" +
                            static_cast<char>('0' + heldSlot_) + " " + id);
    } else {
        s.text[0] = lcdText(std::string(1, type) + " ID:" + heldId_);
    }
    if (voiceFreq_ != 0) s.text[1] = lcdText(displayFreq(voiceFreq_) + " " + displayMode(voiceMode_));
    if (heldList_ >= 0)
        s.text[2] = lcdText(memory_.ids[trunkBank_][heldList_].idSlots[static_cast<std::size_t>(heldSlot_)].tag);
    return s;
}

Screen VirtualScanner::display() const
{
    if (menu_.isOpen()) return menu_.screen();
    Screen s = modeScreen();
    if (muted_) s.text[3] = lcdText("MUTE ON");
    return s;
}

std::string VirtualScanner::lcdReply(int line) const
{
    const Screen s = display();
    return "LCD" + std::to_string(line) + " [" + s.text[static_cast<std::size_t>(line - 1)] + "][" +
           s.attr[static_cast<std::size_t>(line - 1)] + "]\r";
}

std::string VirtualScanner::lcdCommand(std::string_view args) const
{
    if (args.empty()) return lcdReply(1) + lcdReply(2) + lcdReply(3) + lcdReply(4);
    if (args.size() == 1 && args[0] >= '1' && args[0] <= '4') return lcdReply(args[0] - '0');
    if (args == " LINE1") {
        // The selected entry of a menu list marked with "~"; else the top line.
        const Screen s = display();
        if (s.selected) return reply("LCD LINE1 [~" + lcdText(*s.selected) + "]");
        return reply("LCD LINE1 [" + s.text[0] + "]");
    }
    return kErr;
}

} // namespace kestra::sim
