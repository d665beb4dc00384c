#include "link/trunkidlink.h"

#include "link/vocabulary.h"

#include "core/text.h"

namespace kestra {

namespace {

constexpr const char* kOpenListTags = "TA L A 0";
constexpr const char* kOpenIds = "TG A Q0";
constexpr const char* kListTagsFirst = "TA L A A";
constexpr const char* kListTagsLast = "TA L J J";
constexpr const char* kIdsFirst = "TG A A1";
constexpr const char* kIdsLast = "TG J J9";

char listLetter(int list) { return static_cast<char>('A' + list); }

// The slots of a list in the order the scanner numbers them: 1..9, then 0,
// the tenth.
constexpr int kSlotOrder[kIdsPerList] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 0};

// The text behind `key` up to the carriage return that ends its line, or
// nothing when the key is not there.
std::optional<std::string> textBehind(const std::string& rx, const std::string& key)
{
    const auto at = rx.find(key);
    if (at == std::string::npos) return std::nullopt;
    const auto from = at + key.size();
    const auto end = rx.find('\r', from);
    return rx.substr(from, end == std::string::npos ? std::string::npos : end - from);
}

bool hasReply(const std::string& got) { return got.find('\r') != std::string::npos; }

// An ID the send clears rather than writes: none, or the dashes of an empty one.
bool emptyId(const std::string& id) { return id.empty() || id[0] == '-'; }

// Whether a bank of this trunk type has an ID list in the scanner's menu and
// on the wire: Edacs SCT (9) has none, a bank without a trunk system (0) none
// at all. The menu walk of a record flag must not run on them: its digits
// would pick the bank's other settings.
bool keepsIdList(int trunktype) { return trunktype != 0 && trunktype != 9; }

} // namespace

TrunkIdLink::TrunkIdLink(ExchangeEngine& engine, Document& doc, const Settings& settings, std::filesystem::path folder)
    : engine_(engine), doc_(doc), settings_(settings), folder_(std::move(folder))
{
    watchdog_ = makeTimer(engine_.scheduler(), ExchangeEngine::kWatchdogMs, true, [this] { burstWatchdog(); });
}

TrunkIdLink::~TrunkIdLink() = default;

std::vector<int> TrunkIdLink::idBanks() const
{
    std::vector<int> banks;
    for (int b : banks_)
        if (keepsIdList(bankTrunkType(doc_, b))) banks.push_back(b);
    return banks;
}

bool TrunkIdLink::recordsMove() const { return settings_.textra == 1 && doc_.model.bc785d == 1; }

MenuWalk TrunkIdLink::walk()
{
    return MenuWalk(engine_.port(), [this](double seconds) { return engine_.wait(seconds); }, doc_.model.bc785d,
                    engine_.commdelay());
}

std::vector<std::string> TrunkIdLink::recordKeys(int bank, int list, int digit) const
{
    // MENU, 2 TRUNK, 2 BANK SETUP, the bank, 3 ID LIST, "list.slot" E, 3 RECORD.
    return {wire::exitKey(doc_.model.bc785d), MenuWalk::menuKey(), wire::digitKey(2), wire::digitKey(2),
            MenuWalk::numberKey(bank + 1), wire::digitKey(3), MenuWalk::numberKey(list + 1), wire::key(3),
            wire::digitKey(digit), wire::key(4), wire::digitKey(3)};
}

// ---- the read ---------------------------------------------------------------------

void TrunkIdLink::read(const std::vector<int>& banks, std::function<void(bool ok)> done)
{
    banks_.clear();
    for (int b : banks)
        if (b >= 0 && b < kIdLists) banks_.push_back(b);
    done_ = std::move(done);
    engine_.hooks.idListTags = [this] { listTagStep(); };
    engine_.hooks.ids = [this] { idStep(); };
    engine_.hooks.idTags = [this] { slotData(); };
    readidtags();
}

void TrunkIdLink::finish(bool ok)
{
    if (phase_ == Phase::Idle) return;
    phase_ = Phase::Idle;
    watchdog_->setEnabled(false);
    engine_.port().setRThreshold(0);
    engine_.commstate = 0;
    auto done = std::move(done_);
    done_ = {};
    if (done) done(ok);
}

void TrunkIdLink::sendRequest()
{
    engine_.sendline(requests_[next_++]);
    watchdog_->setEnabled(true);
}

// No reply within the watchdog's second: the request goes out again, up to
// five times in a row.
void TrunkIdLink::burstWatchdog()
{
    if (phase_ == Phase::Idle) return;
    if (engine_.stopflag == 1) {
        finish(false);
        return;
    }
    if (++retries_ > kBurstRetries) {
        engine_.status.text3 = phase_ == Phase::ListTags ? "ID list tag time-out!" : "ID read time-out!";
        finish(false);
        return;
    }
    engine_.status.text3 = "ID list read retry: " + std::to_string(retries_);
    --next_;
    sendRequest();
}

void TrunkIdLink::readidtags()
{
    phase_ = Phase::ListTags;
    engine_.status.text3 = "Reading ID list tags";
    SerialPort& port = engine_.port();
    if (!port.isOpen() && !engine_.openport()) {
        finish(false);
        return;
    }
    port.setRThreshold(0);
    port.input();
    engine_.rxdata.clear();
    requests_ = {kOpenListTags};
    for (int b = 0; b < kIdLists; ++b)
        for (int l = 0; l < kIdLists; ++l) requests_.push_back(wire::readListTag(b, listLetter(l)));
    next_ = 0;
    steps_ = 0;
    retries_ = 0;
    engine_.commstate = 35;
    port.setRThreshold(1);
    sendRequest();
}

// Timer11: one delay after each reply, the next list.
void TrunkIdLink::listTagStep()
{
    if (phase_ != Phase::ListTags) return;
    watchdog_->setEnabled(false);
    if (engine_.stopflag == 1) {
        finish(false);
        return;
    }
    retries_ = 0;
    engine_.status.text3 = "Read ID list tags/ " + std::to_string(++steps_);
    const bool ends = contains(engine_.rxdata, kListTagsFirst) && contains(engine_.rxdata, kListTagsLast);
    if (!ends && next_ < requests_.size()) {
        sendRequest();
        return;
    }
    engine_.status.text3 = "ID tags read Ok";
    trunkread = true;
    filterlisttags();
    readids();
}

void TrunkIdLink::filterlisttags()
{
    engine_.status.text3 = "Filter ID list tag";
    for (int b = 0; b < kIdLists; ++b)
        for (int l = 0; l < kIdLists; ++l) {
            std::string& cell = doc_.trunklisttags[b][l];
            const auto tag = textBehind(engine_.rxdata, wire::readListTag(b, listLetter(l)) + " ");
            if (tag && !tag->empty())
                cell = *tag;
            else if (cell.empty())
                cell.assign(1, '-');
        }
}

void TrunkIdLink::readids()
{
    phase_ = Phase::Ids;
    engine_.status.text3 = "Reading id's";
    SerialPort& port = engine_.port();
    port.setRThreshold(0);
    port.input();
    for (int i = 0; i < 2; ++i) {
        engine_.sendline(kOpenIds);
        if (!engine_.wait(engine_.commdelay())) {
            finish(false);
            return;
        }
    }
    port.input();
    engine_.rxdata.clear();
    // Each list from its slot 0 to 9, so that the last reply is the end
    // marker "TG J J9" when bank 10 is asked.
    requests_.clear();
    for (int b : idBanks())
        for (int l = 0; l < kIdLists; ++l)
            for (int d = 0; d < kIdsPerList; ++d) requests_.push_back(wire::readTrunkId(b, listLetter(l), d));
    if (requests_.empty()) {
        readiddata();
        return;
    }
    next_ = 0;
    steps_ = 0;
    retries_ = 0;
    engine_.commstate = 36;
    port.setRThreshold(1);
    sendRequest();
}

// Timer12: one delay after each reply, the next slot.
void TrunkIdLink::idStep()
{
    if (phase_ != Phase::Ids) return;
    watchdog_->setEnabled(false);
    if (engine_.stopflag == 1) {
        finish(false);
        return;
    }
    retries_ = 0;
    engine_.status.text3 = "Read ID list / " + std::to_string(++steps_);
    const bool ends = contains(engine_.rxdata, kIdsFirst) && contains(engine_.rxdata, kIdsLast);
    if (!ends && next_ < requests_.size()) {
        sendRequest();
        return;
    }
    engine_.status.text3 = "ID read Ok";
    trunkread = true;
    filterids();
    readiddata();
}

void TrunkIdLink::filterids()
{
    engine_.status.text3 = "Filter ID";
    for (int b = 0; b < kIdLists; ++b)
        for (int l = 0; l < kIdLists; ++l)
            for (int d = 0; d < kIdsPerList; ++d) {
                auto id = textBehind(engine_.rxdata, wire::readTrunkId(b, listLetter(l), d) + " ");
                if (!id) continue;
                *id = rtrim(*id);
                doc_.trunkids[b][idStoreRow(l, d)][idcol::id] = *id == "------" ? "" : *id;
            }
}

void TrunkIdLink::readiddata()
{
    phase_ = Phase::SlotData;
    engine_.status.text3 = "Reading list tags";
    SerialPort& port = engine_.port();
    port.input();
    engine_.rxdata.clear();
    requests_ = {kOpenIds};
    next_ = 0;
    retries_ = 0;
    engine_.commstate = 37;
    port.setRThreshold(1);
    sendRequest();
}

// Timer13: the scanner has answered; tags, beep alerts and record flags go
// slot by slot, with the receive event off.
void TrunkIdLink::slotData()
{
    if (phase_ != Phase::SlotData) return;
    watchdog_->setEnabled(false);
    SerialPort& port = engine_.port();
    port.setRThreshold(0);
    if (engine_.stopflag == 1) {
        finish(false);
        return;
    }
    struct Slot {
        int bank, list, digit;
        TrunkIdEntry& row;
    };
    std::vector<Slot> slots;
    for (int b : idBanks())
        for (int l = 0; l < kIdLists; ++l)
            for (int d : kSlotOrder) {
                TrunkIdEntry& row = doc_.trunkids[b][idStoreRow(l, d)];
                if (!trim(row[idcol::id]).empty()) slots.push_back({b, l, d, row});
            }

    engine_.rxdata.clear();
    port.input();
    int count = 0;
    for (const Slot& s : slots) {
        engine_.sendline(wire::readIdTag(s.bank, listLetter(s.list), s.digit));
        if (!engine_.wait(settings_.delay1 / 1000.0)) return finish(false);
        engine_.rxdata += engine_.collect(1);
        engine_.status.text3 = "Read ID tags / " + std::to_string(++count);
    }
    filteridtags();

    count = 0;
    for (const Slot& s : slots) {
        port.input();
        engine_.sendline(wire::readIdBeep(s.bank, listLetter(s.list), s.digit));
        if (!engine_.wait(engine_.commdelay())) return finish(false);
        const std::string got = engine_.collect(1);
        engine_.status.text3 = "Read ID beep alert / " + std::to_string(++count);
        if (hasReply(got)) s.row[idcol::beep].assign(1, contains(got, "BAN") ? '1' : '0');
    }

    if (recordsMove()) {
        MenuWalk menu = walk();
        count = 0;
        for (const Slot& s : slots) {
            const std::string display = menu.readAfter(recordKeys(s.bank, s.list, s.digit), MenuWalk::All);
            if (engine_.stopflag == 1) return finish(false);
            engine_.status.text3 = "Read ID record / " + std::to_string(++count);
            if (MenuWalk::shows(display, wire::menu::kOff))
                s.row[idcol::record].assign(1, '0');
            else if (MenuWalk::shows(display, wire::menu::kOn))
                s.row[idcol::record].assign(1, '1');
        }
    }
    finish(true);
}

void TrunkIdLink::filteridtags()
{
    engine_.status.text3 = "Filter ID Tags";
    for (int b : idBanks())
        for (int l = 0; l < kIdLists; ++l)
            for (int d = 0; d < kIdsPerList; ++d) {
                const auto tag = textBehind(engine_.rxdata, wire::readIdTag(b, listLetter(l), d) + " ");
                if (!tag) continue;
                doc_.trunkids[b][idStoreRow(l, d)][idcol::tag] = tag->rfind("--", 0) == 0 ? "" : *tag;
            }
}

// ---- the send ---------------------------------------------------------------------

std::string TrunkIdLink::exchange(const std::string& line)
{
    engine_.port().input();
    engine_.sendline(line);
    return engine_.collect(1, kReplyLimitMs);
}

void TrunkIdLink::trace(const std::string& line)
{
    if (trace_.is_open()) trace_ << line << "\r\n";
}

bool TrunkIdLink::send(const std::vector<int>& banks, const std::array<int, 10>& scannerTypes)
{
    SerialPort& port = engine_.port();
    port.setRThreshold(0);
    engine_.sendline(wire::selectChannel(1));
    if (!engine_.wait(engine_.commdelay())) return false;
    port.input();

    trace_.open(folder_ / "TRUNCK.TXT", std::ios::binary | std::ios::app);
    struct CloseTrace {
        std::ofstream& file;
        ~CloseTrace() { file.close(); }
    } closeTrace{trace_};

    engine_.status.text3 = "Sending List Tags";
    for (int b : banks)
        for (int l = 0; l < kIdLists; ++l) {
            engine_.sendline(wire::setListTag(b, listLetter(l), doc_.trunklisttags[b][l]));
            if (!engine_.wait(engine_.commdelay())) return false;
            port.input();
        }
    engine_.status.text3 = "Done - Sending List Tags";

    int count = 0;
    for (int b : banks) {
        const int ttype = bankTrunkType(doc_, b);
        if (ttype != scannerTypes[b]) {
            engine_.status.text3 = "setting trunktype required.. please wait..";
            if (const auto typeLine = wire::trunkTypeLine(b, ttype)) exchange(*typeLine);
        }
        exchange(wire::readTrunkId(b, 'A', 0));
        if (engine_.stopflag == 1) return false;
        for (int l = 0; l < kIdLists; ++l)
            for (int d : kSlotOrder) {
                if (engine_.stopflag == 1) return false;
                if (!sendSlot(b, l, d, ++count)) return false;
            }
    }
    return engine_.stopflag == 0;
}

// One slot: its ID (or "------" to clear it), tag, beep alert, and the record
// flag where it moves. False once STOP was pressed.
bool TrunkIdLink::sendSlot(int bank, int list, int digit, int count)
{
    const TrunkIdEntry& row = doc_.trunkids[bank][idStoreRow(list, digit)];
    const char l = listLetter(list);
    const std::string id = trim(row[idcol::id]);
    engine_.status.text3 = "Sending trunkdata " + std::to_string(count);
    const auto traced = [this](const std::string& reply, const char* timeoutWord) {
        if (!hasReply(reply))
            trace(timeoutWord);
        else if (contains(reply, "OK"))
            trace("OK");
        else if (contains(reply, "ERR"))
            trace("ERR");
    };

    if (emptyId(id)) {
        if (settings_.delid == 0) return true;
        const std::string line = wire::setTrunkId(bank, l, digit, "------");
        traced(exchange(line), "timeout");
        trace("DATA id: " + line);
        trace("Delete ID: " + std::string(1, wire::bankLetter(bank)) + " " + l + std::to_string(digit));
        return engine_.stopflag == 0;
    }

    const std::string idLine = wire::setTrunkId(bank, l, digit, id);
    traced(exchange(idLine), "timeout");
    trace("DATA id: " + idLine);
    if (engine_.stopflag == 1) return false;

    const std::string tagLine = wire::setIdTag(bank, l, digit, row[idcol::tag]);
    traced(exchange(tagLine), "timeout1");
    trace("DATA tag: " + tagLine);
    if (engine_.stopflag == 1) return false;

    exchange(wire::setIdBeep(bank, l, digit, row[idcol::beep] == "1"));
    if (engine_.stopflag == 1) return false;

    if (recordsMove() && keepsIdList(bankTrunkType(doc_, bank))) {
        MenuWalk menu = walk();
        std::vector<std::string> keys = recordKeys(bank, list, digit);
        keys.push_back(wire::digitKey(row[idcol::record] == "1" ? 1 : 2));
        keys.push_back(menu.exitKey());
        if (!menu.press(keys)) return false;
    }
    return engine_.stopflag == 0;
}

} // namespace kestra
