#include "searchlink.h"

#include "link/menuwalk.h"
#include "link/portsetup.h"
#include "link/vocabulary.h"

#include "core/text.h"

#include <algorithm>

namespace kestra {

namespace {

constexpr int kSearchKey = 9;   // SRCH; held, it opens the search menu at the range list
constexpr int kScanKey = 1;
constexpr int kItemStep = 2, kItemMode = 3, kItemTag = 4;
// Read Data waits 0.2 s for a limit, and a little longer for a slow line;
// Send Data 0.1 s behind each limit and tag.
constexpr double kLimitWait = 0.2;
constexpr int kLimitPatienceMs = 500;
constexpr double kSearchSendWait = 0.1;

// One line of a menu list as line 3 shows it under the cursor: the digit,
// the label padded to the sixteen characters, and the opening of the mask.
std::string menuItem(int index, const std::string& label)
{
    std::string text = std::to_string(index % 10) + ":" + label;
    text.resize(16, ' ');
    return "[" + text + "][*****";
}

// Index of the first item line the reply holds, 0 when none.
int matchItem(std::string_view reply, const std::vector<std::string>& items)
{
    for (std::size_t i = 0; i < items.size(); ++i)
        if (contains(reply, items[i])) return static_cast<int>(i) + 1;
    return 0;
}

// The nine-character frequency of an LL or LU reply: four digits at the
// marker plus 2, a point, four digits at the marker plus 6.
std::optional<std::string> limitOfReply(std::string_view reply, std::string_view marker)
{
    const auto high = wire::behind(reply, marker, 2, 4);
    const auto low = wire::behind(reply, marker, 6, 4);
    if (!high || !low) return std::nullopt;
    return *high + "." + *low;
}

// The tag of a range as line 3 of its ALPHA TAG item shows it, trailing
// blanks cut; nothing when the display did not come.
std::optional<std::string> tagOfDisplay(std::string_view display)
{
    const std::size_t at = InStr(display, "LCD3 [");
    if (at == 0) return std::nullopt;
    std::string tag = Mid(display, at + 6, 16);
    while (!tag.empty() && tag.back() == ' ') tag.pop_back();
    return tag;
}

} // namespace

std::vector<std::string> searchModeItems()
{
    std::vector<std::string> items;
    int n = 1;
    for (const char* label : {"AM", "FM", "WFM", "NFM", "AUTO"}) items.push_back(menuItem(n++, label));
    return items;
}

std::vector<std::string> searchStepItems(const ModelSwitches& model)
{
    std::vector<std::string> labels = {"5KHz"};
    if (model.x96 == 1 || model.ubc33 == 1) labels.push_back("6.25KHz");
    for (const char* l : {"7.5KHz", "10KHz", "12.5KHz"}) labels.push_back(l);
    if (model.ubc33 == 1) labels.push_back("20KHz");
    for (const char* l : {"25KHz", "50KHz", "100KHz", "AUTO"}) labels.push_back(l);
    std::vector<std::string> items;
    for (std::size_t i = 0; i < labels.size(); ++i) items.push_back(menuItem(static_cast<int>(i) + 1, labels[i]));
    return items;
}

std::vector<std::string> extenderCommands(std::string_view start, std::string_view end, std::string_view mode,
                                          std::string_view step, std::string_view tag)
{
    const auto limit = [](std::string_view freq) { return Mid(freq, 1, 4) + Mid(freq, 6); };
    std::vector<std::string> lines = {
        "LL" + limit(start) + " J",
        "LU" + limit(end) + " J",
        "TA S J " + std::string(tag),
        wire::key(kScanKey),
        wire::key(kSearchKey),
        "CB J",
        "RM " + std::string(mode),
    };
    static constexpr std::pair<const char*, const char*> steps[] = {
        {"5", "ST 5K"},   {"7.5", "ST 7.5K"}, {"10", "ST 10K"},   {"12.5", "ST 12.5K"},
        {"25", "ST 25K"}, {"50", "ST 50K"},   {"100", "ST 100K"},
    };
    for (const auto& [text, command] : steps)
        if (step == text) lines.push_back(command);
    return lines;
}

SearchLink::SearchLink(SerialPort& port, Scheduler& scheduler, Dialogs& dialogs, const Settings& settings, int comport,
                       int baud)
    : port_(port), scheduler_(scheduler), dialogs_(dialogs), settings_(settings), comport_(comport), baud_(baud)
{
}

SearchLink::~SearchLink() { close(); }

bool SearchLink::open()
{
    port_.setCommPort(comport_);
    port_.setSettings(std::to_string(baud_) + ",n,8,1");
    if (const auto result = port_.open(); result != SerialPort::OpenResult::Ok) {
        dialogs_.message(result == SerialPort::OpenResult::NoPermission
                             ? kNoPermissionMessage
                             : "The selected comport is already in use or not available in your system!");
        return false;
    }
    port_.input();
    port_.setRThreshold(0);
    return true;
}

void SearchLink::close()
{
    if (port_.isOpen()) port_.close();
}

double commandDelay(const Settings& settings, int baud)
{
    if (baud == 4800) return settings.delay3 / 1000.0;
    if (baud == 9600) return settings.delay2 / 1000.0;
    return settings.delay1 / 1000.0;
}

double SearchLink::delay() const { return commandDelay(settings_, baud_); }

void SearchLink::send(const std::string& line) { port_.output(line + wire::kCrLf); }

void SearchLink::command(const std::string& line)
{
    send(line);
    scheduler_.wait(delay());
}

void SearchLink::wakeForRanges(const ModelSwitches& model)
{
    if (!isOpen()) return;
    command(wire::selectChannel(1));
    command(wire::exitKey(model.bc785d));
    for (const char* line : wire::kWakeUp) command(line);
    port_.input();
}

void SearchLink::wakeForExtender()
{
    if (!isOpen()) return;
    port_.input();
    command(wire::key(kScanKey));
    command(wire::key(kScanKey));
    for (const char* line : wire::kWakeUp) command(line);
    port_.input();
}

bool SearchLink::checkModel(Direction direction, ModelSwitches& model)
{
    const ModelCheck check = isOpen() ? modelcheck(port_, scheduler_, model) : ModelCheck{};
    if (!check.scannerfound) {
        dialogs_.message(direction == Direction::Read
                             ? "No BC250/296/785/796 scanner detected at comport. Check baudrate/comport/ scanner is in remote mode"
                             : "No scanner detected at comport. Check baudrate/comport/BC250 is in remote mode");
        return false;
    }
    model = check.model;
    return true;
}

// The walks of the search range menu, after SCAN: the Search Events window
// may find the scanner anywhere.
MenuWalk SearchLink::walk(int bc785d)
{
    return MenuWalk(port_, [this](double s) { scheduler_.wait(s); return true; }, bc785d, delay());
}

void SearchLink::menuSet(int range, int item, int value, int bc785d)
{
    command(wire::key(kScanKey));
    walk(bc785d).setbankmenu(range, item, value % 10);
}

std::string SearchLink::menuRead(int range, int item, int bc785d)
{
    command(wire::key(kScanKey));
    return walk(bc785d).readbankmenu(range, item);
}

void SearchLink::sendLimits(const SearchRangeData& ranges, const Progress& progress)
{
    for (int r = 0; r < 10; ++r) {
        if (progress) progress(r + 1);
        command(wire::setLowerLimit(r, ranges[r][0]));
        port_.input();
    }
    for (int r = 0; r < 10; ++r) {
        if (progress) progress(r + 1);
        command(wire::setUpperLimit(r, ranges[r][1]));
        port_.input();
    }
}

void SearchLink::sendRanges(const SearchRangeData& ranges, const ModelSwitches& model, const Progress& progress)
{
    port_.setRThreshold(0);
    port_.input();
    sendLimits(ranges, progress);
    for (int r = 0; r < 10; ++r) {
        if (progress) progress(r + 1);
        command(wire::setSearchTag(r, ranges[r][4]));
        port_.input();
    }
    const int steps = static_cast<int>(searchStepItems(model).size());
    for (int r = 0; r < 10; ++r) {
        if (progress) progress(r + 1);
        const long long mode = IntVal(ranges[r][2]);
        const long long step = IntVal(ranges[r][3]);
        // A range without a choice of mode and step keeps the scanner's.
        if (mode < 1 || step < 1) continue;
        if (mode <= 5) menuSet(r, kItemMode, static_cast<int>(mode), model.bc785d);
        if (step <= steps) menuSet(r, kItemStep, static_cast<int>(step), model.bc785d);
        port_.input();
    }
    sendLimits(ranges, progress);
    if (progress) progress(0);
}

void SearchLink::readRanges(SearchRangeData& ranges, const ModelSwitches& model, const Progress& progress)
{
    port_.setRThreshold(0);
    port_.input();
    for (const bool lower : {true, false}) {
        for (int r = 0; r < 10; ++r) {
            if (progress) progress(r + 1);
            send(lower ? wire::readLowerLimit(r) : wire::readUpperLimit(r));
            scheduler_.wait(delay());
            if (auto f = limitOfReply(port_.input(), lower ? "LL" : "LU")) ranges[r][lower ? 0 : 1] = *f;
        }
    }
    const auto modes = searchModeItems();
    const auto steps = searchStepItems(model);
    for (int r = 0; r < 10; ++r) {
        if (progress) progress(r + 1);
        if (auto tag = tagOfDisplay(menuRead(r, kItemTag, model.bc785d))) ranges[r][4] = *tag;
        if (const int mode = matchItem(menuRead(r, kItemMode, model.bc785d), modes)) ranges[r][2] = std::to_string(mode);
        if (const int step = matchItem(menuRead(r, kItemStep, model.bc785d), steps)) ranges[r][3] = std::to_string(step);
    }
    if (progress) progress(0);
}

// ---- the search ranges of Read Data and Send Data ----

std::vector<std::string> transferStepItems(const ModelSwitches& model)
{
    std::vector<std::string> items = searchStepItems(model);
    // The 6.25 kHz line of the BC296D and BC796D is kept two blanks too long,
    // as the program has always had it: that step reads as no change.
    if (model.x96 == 1 && model.ubc33 == 0) items[1] = wire::menu::kStep625Long;
    return items;
}

bool readSearchData(ExchangeEngine& engine, SearchRangeData& ranges, const ModelSwitches& model)
{
    SerialPort& port = engine.port();
    port.setRThreshold(0);
    port.input();
    for (const bool lower : {true, false}) {
        for (int r = 0; r < 10; ++r) {
            engine.status.progress = (lower ? 0 : 50) + r * 5;
            engine.sendline(lower ? wire::readLowerLimit(r) : wire::readUpperLimit(r));
            if (!engine.wait(kLimitWait)) return false;
            if (auto f = limitOfReply(engine.collect(1, kLimitPatienceMs), lower ? "LL" : "LU"))
                ranges[r][lower ? 0 : 1] = *f;
        }
    }
    MenuWalk walk(port, [&engine](double s) { return engine.wait(s); }, model.bc785d, engine.commdelay());
    const auto modes = searchModeItems();
    const auto steps = transferStepItems(model);
    for (int r = 0; r < 10; ++r) {
        engine.status.progress = r * 10;
        const std::string tag = walk.readbankmenu(r, kItemTag);
        const std::string mode = walk.readbankmenu(r, kItemMode);
        const std::string step = walk.readbankmenu(r, kItemStep);
        if (engine.stopflag) return false;
        if (auto t = tagOfDisplay(tag)) ranges[r][4] = *t;
        if (const int m = matchItem(mode, modes)) ranges[r][2] = std::to_string(m);
        if (const int s = matchItem(step, steps)) ranges[r][3] = std::to_string(s);
    }
    engine.status.progress = 0;
    return true;
}

bool sendSearchData(ExchangeEngine& engine, const SearchRangeData& ranges, const ModelSwitches& model)
{
    SerialPort& port = engine.port();
    port.setRThreshold(0);
    port.input();
    int phase = 0;
    const auto announce = [&] { engine.status.text3 = "Send search data " + std::to_string(++phase) + "/6"; };
    const auto each = [&](const std::function<std::string(int)>& line) {
        announce();
        for (int r = 0; r < 10; ++r) {
            engine.status.progress = r * 10;
            engine.sendline(line(r));
            if (!engine.wait(kSearchSendWait)) return false;
            port.input();
        }
        return true;
    };
    const auto lower = [&](int r) { return wire::setLowerLimit(r, ranges[r][0]); };
    const auto upper = [&](int r) { return wire::setUpperLimit(r, ranges[r][1]); };
    if (!each(lower) || !each(upper) || !each([&](int r) { return wire::setSearchTag(r, ranges[r][4]); })) return false;
    announce();
    MenuWalk walk(port, [&engine](double s) { return engine.wait(s); }, model.bc785d, engine.commdelay());
    for (int r = 0; r < 10; ++r) {
        engine.status.progress = r * 10;
        // A range that starts at 0 is not walked: its limits and tag went above.
        if (Val(ranges[r][0]) <= 0) continue;
        const long long mode = IntVal(ranges[r][2]);
        const long long step = IntVal(ranges[r][3]);
        if (mode >= 1 && !walk.setbankmenu(r, kItemMode, static_cast<int>(mode % 10))) return false;
        if (step >= 1 && !walk.setbankmenu(r, kItemStep, static_cast<int>(step % 10))) return false;
        port.input();
    }
    // The menu walks can disturb the limits in the scanner: once more.
    const bool ok = each(lower) && each(upper);
    engine.status.progress = 0;
    return ok;
}

} // namespace kestra
