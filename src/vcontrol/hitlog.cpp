#include "vcontrol/hitlog.h"

#include "trunk/trunkids.h"

#include "core/text.h"
#include "platform/scheduler.h"
#include "vcontrol/controlloop.h"

#include <cmath>
#include <cstdio>

namespace kestra {

namespace {

const char* const kSep = " , ";

// Characters from column `from` (counted from 1), at most `count`.
std::string columns(const std::string& text, std::size_t from, std::size_t count)
{
    return from - 1 < text.size() ? text.substr(from - 1, count) : std::string();
}

bool has(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

// The bank of a channel number as the display shows it: channel 1..100 is
// bank 1, and so on ("000", channel 1000, gives 0 here).
int bankOfChannel(const std::string& channel)
{
    return static_cast<int>(std::floor((Val(channel) - 1) / 100.0)) + 1;
}

std::string two(int n) { return (n < 10 ? "0" : "") + std::to_string(n); }

} // namespace

HitLogOptions HitLogOptions::fromIni(const VfoIni& ini)
{
    HitLogOptions o;
    o.onlyNew = ini.option[0] != 0;
    o.lockoutIdSearch = ini.option[3] != 0;
    o.lockoutSearch = ini.option[4] != 0;
    o.resumeIdSearch = ini.option[5] != 0;
    o.resumeSearch = ini.option[6] != 0;
    return o;
}

void HitLogOptions::toIni(VfoIni& ini) const
{
    ini.option[0] = onlyNew;
    ini.option[3] = lockoutIdSearch;
    ini.option[4] = lockoutSearch;
    ini.option[5] = resumeIdSearch;
    ini.option[6] = resumeSearch;
}

HitLog::HitLog(const Document& doc, Send send, Clock clock)
    : doc_(doc), send_(std::move(send)), clock_(std::move(clock))
{
    histline_[0] = {"-", "Bank", "Channel", "Frequency", "ID", "Ctcss", "Dcs", "Time", "Mode", ""};
}

HitLog::~HitLog() { setLogging(false); }

std::string HitLog::csvName(std::string name)
{
    if (std::filesystem::path(name).extension().empty()) name += ".csv";
    return name;
}

std::string* HitLog::seen(int bank) { return bank >= 1 && bank <= 10 ? &seenlist_[bank] : nullptr; }

const std::string& HitLog::seenlist(int bank) const
{
    static const std::string none;
    return bank >= 1 && bank <= 10 ? seenlist_[bank] : none;
}

// The end of a line: time, mode and date. The tone lines join time and mode
// with ", " where the others keep the full separator.
std::string HitLog::stamp(bool joinMode, const std::string& mode) const
{
    const DateTime t = clock_ ? clock_() : DateTime{};
    const std::string time = two(t.hour) + ":" + two(t.minute) + ":" + two(t.second);
    const std::string date = std::to_string(t.year) + "-" + two(t.month) + "-" + two(t.day);
    return time + (joinMode ? ", " : kSep) + mode + "," + date;
}

void HitLog::tick(DisplayState& state)
{
    if (Val(state.freqtext) > 0) {
        frequencyHit(state);
        trunkHit(state);
        toneHit(state, 1);
        toneHit(state, 2);
    }
    activity.tick(state, nowMs());
}

void HitLog::moved()
{
    text8_.clear();
    text6_.clear();
    text24_.clear();
}

std::string HitLog::channelTag(int channel) const
{
    if (channel < 1 || channel > 1000) return "";
    const std::string& tag = doc_.cell((channel - 1) / 100, (channel - 1) % 100 + 1, col::tag);
    std::string text = trim(tag);
    // A comma would split the tag into two cells of the line.
    for (char& c : text)
        if (c == ',') c = ' ';
    return text;
}

void HitLog::frequencyHit(DisplayState& s)
{
    if (!s.busyshown || s.trunkmode != 0 || s.freqtext == text25_) return;
    if (options.onlyNew) {
        const std::string* list = seen(s.curbank);
        if (list && has(*list, "*" + s.freqtext)) return;  // text25 stays: the test repeats
    }
    std::string type;
    switch (s.opclass) {
    case 0: type = "VFO"; break;
    case 1: type = "SCAN"; break;
    case 2:
        if (s.idvalid != 0) return;  // a trunk display: the ID decides
        type = "CONV";
        break;
    case 3: type = "SRC"; break;
    default: return;
    }
    std::string ctcss;
    if (s.subtonestate == 3) ctcss = ltrim(s.subtonetext);
    const bool onChannel = s.opclass <= 2;
    const std::string channel = onChannel ? s.channeltext : std::string();
    int bank = s.curbank;
    if (type != "SRC") bank = bankOfChannel(channel);
    // The channel's own tag from the document stands in the ID cell.
    const std::string tag = onChannel ? channelTag(static_cast<int>(IntVal(channel))) : std::string();
    if (options.onlyNew)
        if (std::string* list = seen(bank)) *list += "*" + s.freqtext;

    addhit(type + kSep + std::to_string(bank) + kSep + channel + kSep + s.freqtext + kSep + tag + kSep + ctcss +
           kSep + "" + kSep + stamp(false, columns(s.lcdline[1], 11, 3)));
    if (type == "SRC" && send_) {
        if (options.lockoutSearch) send_("KEY06");
        if (options.resumeSearch) send_("KEY00");
    }
    text25_ = s.freqtext;
}

void HitLog::lookupIdTag(DisplayState& s) const
{
    const std::string& mode = s.modenumber;
    const bool idSearch = mode == "10" || mode == "11" || mode == "14" || mode == "15" || mode == "18" || mode == "19";
    if (doc_.model.x96 != 0 || !idSearch || s.curbank < 1 || s.curbank > 10) return;
    const int type = static_cast<int>(IntVal(doc_.trunkset[s.curbank - 1].trunktype));
    if (type < 1 || type > 8) return;
    // The shown ID in the form the bank's lists keep it ("1234" is "001234"
    // in a Motorola Type 2 bank).
    const std::string shown = normaliseId(type, trim(s.trunkid));
    if (shown.empty()) return;
    const auto& ids = doc_.trunkids[s.curbank - 1];
    for (int row = 1; row <= 99; ++row)  // the last matching row wins
        if (has(ids[row][0], shown)) s.idtag = ids[row][1];
}

void HitLog::trunkHit(DisplayState& s)
{
    if (s.trunkbank <= 0 || s.trunkmode != 1 || s.idvalid != 1 || !s.busyshown) return;
    lookupIdTag(s);
    std::string id = trim(s.trunkid);
    if (id.size() < 5) id = std::string(5 - id.size(), '0') + id;
    s.trunkid = id;

    const std::string mode = columns(s.lcdline[1], 11, 3);
    const bool p25 = mode == "P25";
    std::string& last = p25 ? text6_ : text8_;
    if (id == last) return;
    std::string* list = seen(s.trunkbank);
    if (options.onlyNew && list && has(*list, "*" + id)) return;

    const std::string& m = s.modenumber;
    const std::string location = (m == "12" || m == "16" || m == "20") ? s.idlocation : std::string();
    std::string type = "P25";
    if (!p25) type = doc_.model.x96 != 0 && has(s.lcdline[2], "NEW") ? "ID-NEW" : "ID";

    addhit(type + kSep + std::to_string(s.trunkbank) + kSep + location + kSep + s.freqtext + kSep + id + kSep + kSep +
           kSep + stamp(false, mode));
    if (send_) {
        if (options.lockoutIdSearch) send_("KEY06");
        if (options.resumeIdSearch) send_("KEY00");
    }
    last = id;
    if (options.onlyNew && list) *list += "*" + id;
}

void HitLog::toneHit(DisplayState& s, int subtonestate)
{
    if (!s.busyshown || s.trunkmode != 0 || s.subtonestate != subtonestate) return;
    const std::string& tone = s.subtonetext;
    if (has(text24_, tone)) return;
    const std::string channel = has(s.channeltext, "k") ? std::string() : s.channeltext;
    const int bank = bankOfChannel(channel);
    const std::string item = std::string(1, kPound) + tone + s.freqtext;
    std::string* list = seen(bank);
    if (options.onlyNew && list && has(*list, item)) return;

    std::string mode = columns(s.lcdline[1], 11, 3);
    if (!has(mode, "AM") && !has(mode, "FM")) mode.clear();
    const std::string head = std::string(subtonestate == 1 ? "SUB" : "DCS") + kSep + std::to_string(bank) + kSep +
                             channel + kSep + s.freqtext + kSep + " " + kSep;
    const std::string cells = subtonestate == 1 ? tone + kSep + " " : std::string(" ") + kSep + tone;
    addhit(head + cells + kSep + stamp(true, mode));
    text24_ += "*" + tone;
    if (options.onlyNew && list) *list += item;
}

void HitLog::addhit(const std::string& line)
{
    for (int r = kRows; r >= 2; --r) histline_[r] = histline_[r - 1];
    if (logging_ && file_) {
        const std::string out = line + "\r\n";
        std::fwrite(out.data(), 1, out.size(), file_);
        std::fflush(file_);
    }
    Row row{};
    std::size_t start = 0;
    for (int c = 0; c < kColumns; ++c) {
        const std::size_t comma = line.find(',', start);
        row[c] = line.substr(start, comma == std::string::npos ? std::string::npos : comma - start);
        if (comma == std::string::npos) break;
        start = comma + 1;
    }
    histline_[1] = row;
    activity.hit(line, nowMs());
    if (onHit) onHit(line);
}

void HitLog::clear()
{
    for (int r = 1; r <= kRows; ++r) histline_[r] = Row{};
    for (std::string& list : seenlist_) list.clear();
    activity.clearRows();
}

bool HitLog::setLogging(bool on)
{
    if (file_) {
        std::fclose(file_);
        file_ = nullptr;
    }
    logging_ = on;
    if (!on) return true;
    file_ = std::fopen(std::filesystem::path(utf8FromCp1252(logname)).c_str(), "wb");
    if (!file_) return false;
    const std::string header = std::string(kLiveHeader) + "\r\n";
    std::fwrite(header.data(), 1, header.size(), file_);
    std::fflush(file_);
    return true;
}

std::string HitLog::saveHistory(const std::filesystem::path& path) const
{
    std::string text = std::string(kSavedHeader) + "\r\n";
    for (int r = 1; r <= kRows; ++r) {
        for (int c = 0; c < kColumns; ++c) text += (c ? "," : "") + histline_[r][c];
        text += "\r\n";
    }
    std::FILE* f = std::fopen(path.c_str(), "wb");
    if (!f) return "Cannot write " + path.string();
    const bool ok = std::fwrite(text.data(), 1, text.size(), f) == text.size();
    return (std::fclose(f) == 0 && ok) ? "" : "Cannot write " + path.string();
}

void HitLog::attach(Scheduler& scheduler, ControlLoop& loop)
{
    nowMs = [&scheduler] { return scheduler.now(); };
    timer8_ = makeTimer(scheduler, kTickMs, false, [this, &loop] { tick(loop.state()); });
    timer8_->setEnabled(true);
    auto before = loop.hooks.displayChanged;
    loop.hooks.displayChanged = [this, &loop, before] {
        if (loop.pollfast()) moved();
        if (before) before();
    };
}

} // namespace kestra
