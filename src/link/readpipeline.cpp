#include "readpipeline.h"

#include "portsetup.h"
#include "searchlink.h"
#include "trunksettingslink.h"
#include "vocabulary.h"

#include "core/text.h"

#include <algorithm>

namespace kestra {

namespace {
// The commands of a channel: "MA" and steps 2 to 7.
std::string stepCommand(int step, int chanid)
{
    switch (step) {
    case 1: return wire::selectChannel(chanid);
    case 2: return wire::kReadMode;
    case 3: return wire::kReadDelay;
    case 4: return wire::readBeep(chanid);
    case 5: return wire::kReadStep;
    case 6: return wire::readTag(chanid);
    default: return wire::kReadSubtone;
    }
}
} // namespace

ReadPipeline::ReadPipeline(ExchangeEngine& engine, Document& doc, Dialogs& dialogs, Scheduler& scheduler,
                           std::filesystem::path folder)
    : opening_(engine, doc, dialogs, true), onebankread(doc.onebankread), engine_(engine), doc_(doc), dialogs_(dialogs), scheduler_(scheduler),
      folder_(std::move(folder))
{
    auto& h = engine_.hooks;
    h.readStep = [this](int index) { step(index); };
    h.finishChannel = [this](int state) {
        if (!replyTaken(state)) return false;
        decode(state);
        return true;
    };
    h.runOver = [this] { chainAfterChannels(); };
    h.endOfRun = [this] { endOfRun(); };
    h.log = [this](const std::string& line) { log(line); };
    h.stopping = [this] { rxdat_.close(); };
}

ReadPipeline::~ReadPipeline() { engine_.hooks = {}; }

void ReadPipeline::log(const std::string& line)
{
    if (rxdat_.is_open()) rxdat_ << line << "\r\n";
}

std::vector<std::string> ReadPipeline::combo1Lines() const
{
    std::vector<std::string> lines;
    for (int b = 0; b < 10; ++b) {
        std::string line = std::to_string(b * 100 + 1) + " - " + std::to_string(b * 100 + 100) + " / " + std::to_string(b + 1);
        if (tagsread) line += " / " + tags[b];
        lines.push_back(line);
    }
    return lines;
}

void ReadPipeline::open() { opening_.start(); }

void ReadPipeline::applyTags(Document& doc) const
{
    if (!tagsread) return;
    for (int b = 0; b < 10; ++b) doc.banktags[b] = tags[b] == "_" ? " " : tags[b];
}

// ---- the click ----

bool ReadPipeline::readData(const Options& options)
{
    options_ = options;
    opening_.cancel();
    engine_.stopflag = 0;
    engine_.retries = engine_.refusals = 0;
    troubles.clear();
    verify_ = engine_.settings().verifyread == 1;
    ModelCheck check;
    {
        const ExchangeEngine::Busy busy(engine_);
        check = modelcheck(engine_.port(), scheduler_, doc_.model);
    }
    if (engine_.stopflag == 1) return false;
    if (!check.scannerfound) {
        dialogs_.message(noScannerMessage(CheckedTransfer::Read), {}, Buttons::Ok, Icon::Critical);
        return false;
    }
    doc_.model = check.model;
    if (options.frequencies) {
        if (options.scope == Scope::None) {
            dialogs_.message("Please select All Banks or Single Bank.");
            return false;
        }
        if (options.scope == Scope::SingleBank && (options.bank < 0 || options.bank > 9)) {
            dialogs_.message("Please select which bank you want to download.");
            return false;
        }
        startChannels();
        return true;
    }
    if (options.trunkIds || options.trunkSettings) {
        // The trunk data is read by bank: the banks must be chosen.
        if (options.scope == Scope::None) {
            dialogs_.message("Please select All Banks or Single Bank.");
            return false;
        }
        if (options.scope == Scope::SingleBank && (options.bank < 0 || options.bank > 9)) {
            dialogs_.message("Please select which bank you want to download.");
            return false;
        }
    }
    if (options.trunkIds || options.trunkSettings || options.searchEvents) {
        chainAfterChannels();
        return true;
    }
    dialogs_.message("Please select which data you want to download.");
    return false;
}

void ReadPipeline::startChannels()
{
    SerialPort& port = engine_.port();
    switch (options_.scope) {
    case Scope::AllBanks:
        engine_.startchan = 0;
        engine_.endchan = 1000;
        engine_.progstart = 0;
        engine_.progend = 999;
        onebankread = 0;
        if (!options_.merge)
            for (int b = 0; b < 10; ++b) doc_.emptyChannels(b);
        break;
    case Scope::SingleBank: {
        const int i = options_.bank;
        engine_.startchan = i * 100;
        engine_.endchan = i * 100 + 100;
        engine_.progstart = i * 100;
        engine_.progend = i * 100 + 99;
        onebankread = 1;
        engine_.status.text3 = "Reading priority channel";
        port.setRThreshold(0);
        readPriority(i);
        if (engine_.stopflag == 1) return;
        if (!options_.merge) doc_.emptyChannels(i);
        break;
    }
    case Scope::ChannelRange: {
        onebankread = 0;
        auto limit = [](const std::string& text) { return static_cast<int>(std::clamp<long long>(IntVal(text), 1, 1000)); };
        engine_.startchan = limit(options_.rangeStart);
        // The range reads one channel past its end, but none past 1000.
        engine_.endchan = std::min(limit(options_.rangeEnd) + 1, 1000);
        engine_.progstart = 0;
        engine_.progend = 999;
        break;
    }
    case Scope::None: return;
    }
    if (engine_.startchan > engine_.endchan) std::swap(engine_.startchan, engine_.endchan);

    engine_.retrycount = 0;
    copy_ = {};
    port.input();
    engine_.rxdata.clear();
    engine_.commstate = 1;
    engine_.chanid = engine_.startchan;
    rxdat_.close();
    rxdat_.open(folder_ / "rxdat.txt", std::ios::binary | std::ios::trunc);
    port.setRThreshold(1);
    engine_.sendSelect();
}

bool ReadPipeline::replyTaken(int state)
{
    const std::string& rx = engine_.rxdata;
    const int chanid = engine_.chanid;
    const bool formed = wire::wellFormedChannelReply(state, rx, chanid);
    const bool sameAsk = copy_.state == state && copy_.chanid == chanid;
    if (formed && (!verify_ || (sameAsk && copy_.reply == rx))) {
        copy_ = {};
        return true;
    }
    if (!sameAsk) copy_ = {state, chanid, {}, 0};
    if (formed && copy_.reply.empty()) {
        // The first copy of a reply that a second must confirm.
        copy_.reply = rx;
    } else {
        // A reply garbled on the line, or two copies that differ: the same
        // question again. A few of those are the noise of a poor line; past
        // them each one more is a try of the channel (the tenth ends the run).
        log((formed ? "replies disagree " : "garbled reply ") + std::to_string(state) + " " + std::to_string(chanid) + " " + rx);
        if (formed) copy_.reply = rx;
        if (++copy_.asked > kFreeAsks) {
            if (!engine_.countRetry()) return false;
        } else {
            ++engine_.retries;
        }
    }
    engine_.rxdata.clear();
    engine_.sendWatched(stepCommand(state, chanid));
    return false;
}

void ReadPipeline::step(int index)
{
    engine_.status.text3 = engine_.rxdata;
    if (!replyTaken(engine_.commstate)) return;
    decode(engine_.commstate);
    engine_.rxdata.clear();
    const int next = engine_.commstate == 88 ? 7 : index + 2;
    engine_.commstate = next;
    engine_.sendWatched(stepCommand(next, engine_.chanid));
    engine_.status.text5 = std::to_string(engine_.commstate);
}

void ReadPipeline::decode(int state)
{
    if (state > 20) state -= 20;
    const int bk = engine_.bk();
    const int ka = engine_.ka();
    const std::string& rx = engine_.rxdata;
    log("FD:" + std::to_string(state) + " " + std::to_string(bk) + " " + std::to_string(ka) + " " + rx);
    auto& line = doc_.memdata[bk][ka];
    auto flag = [](std::optional<char> f, std::string& cell) {
        if (f == 'F') cell = "0";
        if (f == 'N') cell = "1";
    };
    switch (state) {
    case 1: {
        const std::string marker = "C" + engine_.status.text4;
        if (!contains(rx, marker)) {
            log("channelmarker not found " + engine_.status.text4);
            return;
        }
        log(engine_.status.text4 + "channelmarker found ");
        const wire::ChannelReply r = wire::decodeChannel(rx, engine_.chanid);
        if (r.freq8 && r.freq8->size() == 8) {
            line[col::freq] = r.freq8->substr(0, 4) + "." + r.freq8->substr(4, 4);
            if (line[col::freq] == "0000.0000") engine_.commstate = 88;
        }
        flag(r.trunk, line[col::trunk]);
        flag(r.delay, line[col::record]);
        flag(r.lockout, line[col::lockout]);
        flag(r.atten, line[col::atten]);
        flag(r.record, line[doc_.model.bc785d == 1 ? col::record : col::recordHidden]);
        if (r.tone && !r.tone->empty()) flag((*r.tone)[0], line[col::trunk]);
        break;
    }
    case 2:
        if (auto m = wire::decodeMode(rx)) {
            static constexpr std::pair<const char*, const char*> modes[] = {{"FM", "0"}, {"WF", "1"}, {"AM", "2"}, {"NF", "3"}};
            for (const auto& [word, code] : modes)
                if (*m == word) line[col::mode] = code;
        }
        break;
    case 3:
        if (auto d = wire::decodeDelay(rx)) {
            static constexpr std::pair<const char*, const char*> delays[] = {
                {"F", "0"}, {"+1", "1"}, {"+2", "2"}, {"+4", "3"}, {"+-", "4"}, {"-2", "5"}, {"-5", "6"}, {"-1", "7"}};
            for (const auto& [word, code] : delays)
                if (*d == word) line[col::delay] = code;
        }
        break;
    case 4:
        flag(wire::decodeBeep(rx), line[col::beep]);
        break;
    case 5:
        if (auto s = wire::decodeStep(rx)) {
            static constexpr std::pair<const char*, const char*> steps[] = {{"5K", "0"}, {"7.", "1"},   {"10K", "2"},
                                                                            {"12", "3"}, {"25", "4"},   {"50", "5"},
                                                                            {"100K", "6"}, {"6.", "8"}, {"20", "9"},
                                                                            {"AUTO", "7"}};
            for (const auto& [word, code] : steps)
                if (*s == word) line[col::step] = code;
        }
        break;
    case 6:
        if (auto tag = wire::decodeTag(rx)) {
            std::replace(tag->begin(), tag->end(), '"', ' ');
            line[col::tag] = *tag;
        }
        break;
    case 7:
        if (auto tone = wire::decodeSubtone(rx)) line[col::tone] = *tone;
        break;
    default: break;
    }
}

std::vector<int> ReadPipeline::Options::banks() const
{
    std::vector<int> list;
    switch (scope) {
    case Scope::SingleBank:
        if (bank >= 0 && bank <= 9) list.push_back(bank);
        break;
    case Scope::ChannelRange: {
        const long long first = std::clamp(IntVal(rangeStart), 1LL, 1000LL), last = std::clamp(IntVal(rangeEnd), 1LL, 1000LL);
        for (long long b = (first - 1) / 100; b <= (last - 1) / 100; ++b) list.push_back(static_cast<int>(b));
        break;
    }
    default:
        for (int b = 0; b < 10; ++b) list.push_back(b);
    }
    return list;
}

void ReadPipeline::chainAfterChannels()
{
    if (options_.trunkIds) {
        idLink_ = std::make_unique<TrunkIdLink>(engine_, doc_, engine_.settings(), folder_);
        idLink_->read(options_.banks(), [this](bool ok) {
            // A read that failed has said why on the status line; the other
            // kinds still follow.
            if (!ok && engine_.stopflag == 0) troubles.push_back("The trunk ID lists were not read: " + engine_.status.text3);
            afterIds();
        });
        return;
    }
    afterIds();
}

void ReadPipeline::afterIds()
{
    const auto banks = options_.banks();
    if (engine_.stopflag == 0 && options_.trunkSettings) {
        TrunkSettingsLink link(engine_, doc_);
        if (!link.read(banks) && engine_.stopflag == 0) troubles.push_back(engine_.status.text3);
    }
    if (engine_.stopflag == 0 && options_.searchEvents) readSearchData(engine_, doc_.srcdata, doc_.model);
    if (options_.trunkIds || options_.trunkSettings) doc_.onebanktrunk = options_.scope == Scope::AllBanks ? 0 : 1;
    if (engine_.stopflag == 0) engine_.endRun();
}

void ReadPipeline::readPriority(int bank)
{
    // Without verification the first reply is taken; with it, a value that
    // came twice (a digit changed on the line still reads as a priority
    // channel), out of a few tries.
    SerialPort& port = engine_.port();
    std::vector<int> seen;
    for (int tries = 0; tries < (verify_ ? 8 : 1); ++tries) {
        port.input();
        engine_.sendline(wire::readPriority(bank));
        if (!engine_.wait(0.1)) return;
        const auto prio = wire::decodePriority(port.input(), bank);
        if (prio && (!verify_ || std::find(seen.begin(), seen.end(), *prio) != seen.end())) {
            doc_.priochan[bank] = static_cast<std::int16_t>(*prio);
            return;
        }
        if (prio) seen.push_back(*prio);
        if (tries > 0) ++engine_.retries;
    }
    troubles.push_back(std::string("The priority channel of bank ") + std::to_string(bank + 1) + " could not be read.");
}

void ReadPipeline::endOfRun()
{
    rxdat_.close();
    SerialPort& port = engine_.port();
    port.setRThreshold(0);
    port.input();
    if (options_.frequencies) {
        engine_.status.text3 = "Reading Prio Channels";
        for (int b = 0; b < 10 && engine_.stopflag == 0; ++b) readPriority(b);
        if (engine_.stopflag == 1) return;
    }
    finished = true;
    if (onFinished) onFinished();
}

} // namespace kestra
