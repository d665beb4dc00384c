#include "sendpipeline.h"

#include "portsetup.h"
#include "searchlink.h"
#include "trunkidlink.h"
#include "trunksettingslink.h"
#include "vocabulary.h"

#include "core/bandplan.h"
#include "core/cellcodes.h"
#include "core/text.h"

#include <algorithm>

namespace kestra {

SendPipeline::SendPipeline(ExchangeEngine& engine, Document& doc, Settings& settings, Dialogs& dialogs,
                           Scheduler& scheduler, std::filesystem::path folder)
    : opening_(engine, doc, dialogs, false), engine_(engine), doc_(doc), settings_(settings), dialogs_(dialogs),
      scheduler_(scheduler), folder_(std::move(folder))
{
    auto& h = engine_.hooks;
    h.sendStep = [this](int index) { step(index); };
    h.senddata = [this] { senddata(); };
    h.endOfRun = [this] { endOfRun(); };
    h.log = [this](const std::string& text) { log(text); };
    h.stopping = [this] { txlog_.close(); };
}

SendPipeline::~SendPipeline() { engine_.hooks = {}; }

void SendPipeline::log(const std::string& text)
{
    if (txlog_.is_open()) txlog_ << text << "\r\n";
}

bool SendPipeline::bankHasData(int bank) const
{
    for (int r = 1; r <= kChannelRows; ++r)
        if (!doc_.isEmpty(bank, r)) return true;
    return false;
}

std::vector<std::string> SendPipeline::combo1Lines() const
{
    std::vector<std::string> lines;
    for (int b = 0; b < 10; ++b) {
        std::string line = std::to_string(b * 100 + 1) + " - " + std::to_string(b * 100 + 100) + " / " + std::to_string(b + 1);
        if (!bankHasData(b)) line += "  -  EMPTY";
        if (tagsread) line += " / " + tags[b];
        lines.push_back(line);
    }
    return lines;
}

void SendPipeline::open()
{
    for (int b = 0; b < 10; ++b) {
        tyes[b] = 0;
        for (int r = 1; r <= kChannelRows; ++r)
            if (doc_.memdata[b][r][col::trunk] == "1") tyes[b] = 1;
    }
    opening_.start();
}

std::optional<std::string> SendPipeline::txdOf(const std::string& freq)
{
    if (!(Val(freq) > 0)) return std::string("00000000");
    // The stored text may lack its leading zeros (the grid's form when they
    // are hidden): the wire form is made from the padded text.
    const std::string padded = padfreq(trim(freq), 8, 5);
    if (padded.size() != 9 || padded[4] != '.') return std::nullopt;
    std::string txd = padded.substr(0, 4) + padded.substr(5);
    if (txd.find_first_not_of("0123456789") != std::string::npos) return std::nullopt;
    return txd;
}

std::optional<std::string> SendPipeline::txdChecked(const std::string& errorText)
{
    const std::string& freq = line()[col::freq];
    if (auto txd = txdOf(freq)) return txd;
    log(errorText + freq + " bk:" + std::to_string(engine_.bk()) + " ka:" + std::to_string(engine_.ka()));
    // Never sent as an empty channel: that would erase what the scanner has.
    dialogs_.message("Channel " + std::to_string(engine_.chanid) + ": the frequency \"" + freq +
                     "\" cannot be sent. The upload has stopped.");
    engine_.stopxfer();
    return std::nullopt;
}

std::vector<std::string> SendPipeline::frequencyKeys(const std::string& txd)
{
    std::vector<std::string> keys;
    auto digit = [&](int pos) { keys.push_back(wire::digitKey(txd[pos - 1] - '0')); };
    for (int pos = 1; pos <= 4; ++pos) {
        if (pos == 1 && txd[0] == '0') continue;
        if (pos == 2 && txd.substr(0, 2) == "00") continue;
        digit(pos);
    }
    keys.push_back(wire::key(3));
    for (int pos = 5; pos <= 8; ++pos) {
        if (txd.substr(pos - 1, 9 - pos) == std::string(9 - pos, '0')) continue;
        digit(pos);
    }
    keys.push_back(wire::key(4));
    keys.push_back(wire::key(4));
    return keys;
}

// ---- the click ----

bool SendPipeline::sendData(const Options& options)
{
    options_ = options;
    opening_.cancel();
    engine_.stopflag = 0;
    engine_.retries = engine_.refusals = 0;
    troubles.clear();
    SerialPort& port = engine_.port();
    ModelCheck check;
    {
        const ExchangeEngine::Busy busy(engine_);
        check = modelcheck(port, scheduler_, doc_.model);
    }
    if (engine_.stopflag == 1) return false;
    if (!check.scannerfound) {
        dialogs_.message(noScannerMessage(CheckedTransfer::Send), {}, Buttons::Ok, Icon::Critical);
        return false;
    }
    doc_.model = check.model;
    if (settings_.linkbank == 1) {
        port.setRThreshold(0);
        // The scanner takes each list whole: "CB" the memory banks that scan,
        // "SB" the search ranges that search. An empty list it refuses, so
        // none is sent.
        std::string scan, search;
        for (int b = 0; b < 10; ++b) {
            if (doc_.banklockm[b] == 1) scan += wire::bankLetter(b);
            if (doc_.banklocks[b] == 1) search += wire::bankLetter(b);
        }
        if (!scan.empty()) engine_.sendline(wire::activeScanBanks(scan));
        if (!search.empty()) engine_.sendline(wire::activeSearchRanges(search));
        if (!engine_.wait(0.5)) return false;
        engine_.rxdata = port.input();
    }
    if (!options.frequencies) {
        if ((options.trunkSettings || options.trunkIds) && options.scope == Scope::SingleBank &&
            (options.bank < 0 || options.bank > 9)) {
            dialogs_.message("Please select which bank you want to upload.");
            return false;
        }
        if (options.trunkSettings || options.trunkIds || options.searchEvents) {
            chainAfterChannels();
            return true;
        }
        dialogs_.message("Please select which data you want to upload.");
        return false;
    }

    switch (options.scope) {
    case Scope::None: dialogs_.message("Please select All Banks or Single Bank."); return false;
    case Scope::SingleBank:
        if (options.bank < 0 || options.bank > 9) {
            dialogs_.message("Please select which bank you want to upload.");
            return false;
        }
        if (!bankHasData(options.bank)) {
            dialogs_.message("There is nothing to send!");
            return false;
        }
        engine_.startchan = options.bank * 100;
        engine_.endchan = options.bank * 100 + 100;
        engine_.progstart = options.bank * 100;
        engine_.progend = options.bank * 100 + 99;
        break;
    case Scope::AllBanks:
        engine_.startchan = 0;
        engine_.endchan = 1000;
        engine_.progstart = 0;
        engine_.progend = 999;
        break;
    case Scope::ChannelRange: {
        auto limit = [](const std::string& text) { return static_cast<int>(std::clamp<long long>(IntVal(text), 1, 1000)); };
        engine_.startchan = limit(options.rangeStart) - 1;
        engine_.endchan = limit(options.rangeEnd);
        engine_.progstart = 0;
        engine_.progend = 999;
        if (engine_.startchan > engine_.endchan) std::swap(engine_.startchan, engine_.endchan);
        break;
    }
    }

    const std::string crlf = wire::kCrLf;
    if (settings_.expert != 1 &&
        dialogs_.message("Please confirm data upload." + crlf + "Channels: " + std::to_string(engine_.startchan) + " / " +
                             std::to_string(engine_.endchan) + crlf + "Are you sure?",
                         {}, Buttons::YesNo, Icon::Question) != Answer::Yes)
        return false;
    if (options.scope == Scope::AllBanks && doc_.onebankread == 1) {
        dialogs_.beep();
        if (dialogs_.message("WARNING: Please re-confirm data upload." + crlf +
                                 "You previously downloaded 1 bank and now you want to upload all banks." + crlf +
                                 "All remaining channels will be cleared!" + crlf + "Are you sure?",
                             {}, Buttons::YesNo, Icon::Exclamation) != Answer::Yes)
            return false;
        doc_.onebankread = 0;
    }

    if (!port.isOpen()) engine_.openport();
    engine_.commstate = 20;
    engine_.retrycount = 0;
    engine_.rxdata.clear();
    engine_.chanid = engine_.startchan;
    freqbykey = settings_.khz9 == 1;
    port.setRThreshold(0);
    engine_.sendline(wire::key(7));
    if (!engine_.wait(engine_.commdelay())) return true;
    engine_.sendline(wire::key(7));
    if (!engine_.wait(engine_.commdelay())) return true;
    port.input();
    txlog_.close();
    txlog_.open(folder_ / "txlog.txt", std::ios::binary | std::ios::trunc);
    senddata();
    return true;
}

void SendPipeline::senddata()
{
    engine_.commstate = 20;
    ++engine_.chanid;
    SerialPort& port = engine_.port();
    port.setRThreshold(0);
    if (engine_.chanid > engine_.endchan) {
        chainAfterChannels();
        return;
    }
    const int bk = engine_.bk();
    const int ka = engine_.ka();
    const bool firstOfBank = (engine_.chanid - 1) % 100 == 0;
    const int ttype = static_cast<int>(IntVal(doc_.trunkset[bk].trunktype));
    int unanswered = 0;  // replies to take before the channel's "PM"
    if (firstOfBank && tyes[bk] == 1 && ttype != ttyper[bk] && settings_.option8 == 0) {
        engine_.status.text3 = "setting trunktype required.. please wait..";
        port.setRThreshold(0);
        if (const auto typeLine = wire::trunkTypeLine(bk, ttype)) {
            engine_.sendline(*typeLine);
            ++unanswered;
        }
        if (!engine_.wait(0.1)) return;
    }
    if (firstOfBank) {
        engine_.sendline(wire::selectChannel(engine_.chanid));
        ++unanswered;
        if (!engine_.wait(engine_.commdelay())) return;
        // The replies of the trunk type and the selection, all of them: a
        // late one would be taken for the reply of the "PM". A refused trunk
        // type is a setting the scanner did not take.
        const std::string replies = engine_.collect(unanswered);
        if (engine_.stopflag == 1) return;
        if (contains(replies, "NG\r") || contains(replies, "ERR\r")) {
            ++engine_.refusals;
            log("Refused: trunktype or MA chanid:" + std::to_string(engine_.chanid));
        }
    }
    const auto txd = txdChecked("Error: NOT_8 senddata txd:");
    if (!txd) return;
    if (*txd == "00000000") engine_.commstate = 30;
    std::string command = "PM" + wire::channel3(engine_.chanid) + (line()[col::trunk] == "1" ? "T" : " ") + *txd;
    std::string logged = command.substr(0, 5) + " " + *txd;
    if (engine_.chanid == 1000) logged[5] = 't';
    log(logged + " ts:" + " chanid:" + std::to_string(engine_.chanid) + " bank:" + std::to_string(bk) + " ch:" +
        std::to_string(ka) + " tyes:" + std::to_string(tyes[bk]) + " ttype:" + std::to_string(ttype) + " ttyper:" +
        std::to_string(ttyper[bk]));
    if (!engine_.wait(engine_.commdelay())) return;
    engine_.status.text3 = command;
    engine_.status.text4 = wire::channel3(engine_.chanid);
    engine_.setProgressChannel(engine_.chanid);
    engine_.sendWatched(command);
    port.setRThreshold(1);
}

void SendPipeline::step(int index)
{
    auto& l = line();
    engine_.commstate = 21 + index;
    auto send = [&](const std::optional<std::string>& text, const std::string& cell) {
        if (text)
            engine_.sendWatched(*text);
        else
            skipStep(index, cell);
    };
    auto sendAlways = [this](const std::string& text) { engine_.sendWatched(text); };
    switch (index) {
    case 0: send(wire::setStep(stepText(l[col::step])), l[col::step]); break;
    case 1: frequencyStep(); break;
    case 2: sendAlways(wire::setLockout(l[col::lockout] == "1")); break;
    case 3: sendAlways(wire::setAttenuator(l[col::atten] == "1")); break;
    case 4: sendAlways(wire::setRecord(l[doc_.model.bc785d == 1 ? col::record : col::recordHidden] == "1")); break;
    case 5: send(wire::setDelay(l[col::delay]), l[col::delay]); break;
    case 6: {
        // Two lines in one step: the second reply arrives in the next step.
        const bool beep = l[col::beep] == "1";
        const int n = engine_.chanid;
        const std::string digits = n < 1000 ? wire::channel3(n) : std::to_string(n);
        engine_.sendWatched(std::string(beep && n < 1000 ? "BAN C " : "BAF C ") + digits);
        engine_.sendline(beep && n == 1000 ? "BAN C 000" : "BAF C 000");
        break;
    }
    case 7: sendAlways(wire::setTag(engine_.chanid, l[col::tag])); break;
    case 8: {
        const std::string mode = modeText(l[col::mode]);
        send(mode.empty() ? std::nullopt : wire::setMode(mode), l[col::mode]);
        break;
    }
    case 9:
        // Every code goes: under 150 as it is, from 150 as "L" and the code less 149.
        sendAlways(wire::setSubtone(static_cast<int>(std::clamp<long long>(IntVal(repairToneCode(l[col::tone])), 0, 1148))));
        break;
    default: break;
    }
}

void SendPipeline::skipStep(int index, const std::string& cell)
{
    // Nothing went out, so nothing is awaited: the next step at once. (The
    // last step, the subtone, sends every code and is never left out.)
    log("Error: step " + std::to_string(index) + " left out, value:" + cell + " bk:" + std::to_string(engine_.bk()) +
        " ka:" + std::to_string(engine_.ka()));
    step(index + 1);
}

void SendPipeline::frequencyStep()
{
    engine_.commstate = 22;
    const auto checked = txdChecked("Error: NOT_8 timer 4 txd:");
    if (!checked) return;
    const std::string& txd = *checked;
    auto& l = line();
    if (settings_.option2 == 1) {
        freqbykey = true;
        const double mhz = Val(l[col::freq]);
        if (mhz > 0) {
            const auto band = findBand(builtinPlan(1), mhz);
            if (band && band->step == l[col::step]) freqbykey = false;
        }
    }
    if (!freqbykey) {
        engine_.sendWatched("PM" + wire::channel3(engine_.chanid) + (l[col::trunk] == "1" ? "T" : " ") + txd);
        return;
    }
    SerialPort& port = engine_.port();
    port.setRThreshold(0);
    const std::vector<std::string> keys = frequencyKeys(txd);
    for (const std::string& key : keys) {
        if (!engine_.wait(engine_.commdelay())) return;
        engine_.sendline(key);
    }
    // The replies of the keys so far are taken here: only the reply of the
    // last key may move the upload on.
    if (!engine_.wait(engine_.commdelay())) return;
    engine_.collect(static_cast<int>(keys.size()));
    if (engine_.stopflag == 1) return;
    engine_.sendWatched(wire::key(14));
    port.setRThreshold(1);
}

void SendPipeline::chainAfterChannels()
{
    const auto banks = options_.banks();
    // A kind that could not be sent whole has said so; the next ones still go,
    // unless STOP ended the run.
    if (options_.trunkSettings) {
        TrunkSettingsLink link(engine_, doc_);
        if (!link.send(banks) && engine_.stopflag == 0) troubles.push_back(engine_.status.text3);
        if (engine_.stopflag) return;
        // The banks written now have their own type and Base Configs in the
        // scanner: the ID send must not set the type again with the fill
        // values of the channel send.
        for (int b : banks)
            if (std::find(link.failedBanks().begin(), link.failedBanks().end(), b) == link.failedBanks().end())
                ttyper[b] = static_cast<int>(IntVal(doc_.trunkset[b].trunktype));
    }
    if (options_.trunkIds) {
        // All banks over a read of one: the IDs of the others would be cleared.
        if (options_.scope == Scope::AllBanks && doc_.onebanktrunk == 1) {
            dialogs_.beep();
            const std::string crlf = wire::kCrLf;
            if (dialogs_.message("WARNING: Please re-confirm data upload." + crlf +
                                     "You previously downloaded trunk data from one bank and now you want to upload all banks." +
                                     crlf + "All remaining trunk id's will be cleared!" + crlf + "Are you sure?",
                                 {}, Buttons::YesNo, Icon::Exclamation) != Answer::Yes) {
                engine_.endRun();
                return;
            }
        }
        TrunkIdLink(engine_, doc_, settings_, folder_).send(banks, ttyper);
        if (engine_.stopflag) return;
    }
    if (options_.searchEvents && !sendSearchData(engine_, doc_.srcdata, doc_.model)) return;
    engine_.endRun();
}

void SendPipeline::endOfRun()
{
    txlog_.close();
    SerialPort& port = engine_.port();
    port.setRThreshold(0);
    if (settings_.synctagst == 1) {
        std::vector<int> banks;
        if (options_.scope == Scope::AllBanks)
            for (int b = 0; b < 10; ++b) banks.push_back(b);
        else if (options_.scope == Scope::SingleBank)
            banks.push_back(options_.bank);
        for (int b : banks) {
            engine_.sendline(wire::setBankTag(b, doc_.banktags[b]));
            if (!engine_.wait(engine_.commdelay())) return;
        }
        for (int b : banks) {
            engine_.sendline(wire::setPriority(b, doc_.priochan[b]));
            if (!engine_.wait(0.2)) return;
        }
    }
    port.input();
    finished = true;
    if (onFinished) onFinished();
}

// ---- Delete Bank ----

bool SendPipeline::deleteBank(const Options& options)
{
    SerialPort& port = engine_.port();
    opening_.cancel();
    engine_.stopflag = 0;
    ModelCheck check;
    {
        const ExchangeEngine::Busy busy(engine_);
        check = modelcheck(port, scheduler_, doc_.model);
    }
    if (engine_.stopflag == 1) return false;
    if (!check.scannerfound) {
        dialogs_.message(noScannerMessage(CheckedTransfer::DeleteBank), {}, Buttons::Ok, Icon::Critical);
        return false;
    }
    if (options.scope == Scope::None || options.scope == Scope::AllBanks || options.bank < 0 || options.bank > 9) {
        dialogs_.message("Please select which bank you want to delete.");
        return false;
    }
    // The hundred channels of the bank.
    engine_.startchan = options.bank * 100 + 1;
    engine_.endchan = std::min(engine_.startchan + 99, 1000);
    const std::string crlf = wire::kCrLf;
    if (settings_.expert != 1 &&
        dialogs_.message("You selected to delete all data in bank " + std::to_string(options.bank + 1) + "." + crlf +
                             "Channels: " + std::to_string(engine_.startchan) + " - " + std::to_string(engine_.endchan) +
                             crlf + "Are you sure?",
                         {}, Buttons::YesNo, Icon::Question) != Answer::Yes)
        return false;
    port.setRThreshold(0);
    for (int n = engine_.startchan; n <= engine_.endchan; ++n) {
        if (!engine_.wait(0.2)) return false;
        engine_.status.text3 = "Delete Channel " + std::to_string(n);
        engine_.status.text4 = std::to_string(n);
        engine_.sendline(wire::clearChannel(n));
    }
    port.input();
    engine_.status.text3.clear();
    engine_.startchan = 0;
    return true;
}

} // namespace kestra
