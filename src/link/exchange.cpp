#include "exchange.h"

#include "vocabulary.h"

#include "core/text.h"

#include <algorithm>

namespace kestra {

ExchangeEngine::ExchangeEngine(SerialPort& port, Scheduler& scheduler, Dialogs& dialogs, Settings& settings,
                               int comport, int baud, Caption caption)
    : port_(port), scheduler_(scheduler), dialogs_(dialogs), settings_(settings), comport_(comport), baud_(baud),
      caption_(caption)
{
    auto single = [this](std::function<void()> handler) {
        auto t = scheduler_.createTimer();
        t->setSingleShot(true);
        t->setHandler(std::move(handler));
        return t;
    };
    timer1_ = single([this] { watchdog(); });
    timer3_ = single([this] {
        if (hooks.endOfRun) hooks.endOfRun();
    });
    for (int i = 0; i < 11; ++i) {
        timer2_[i] = single([this, i] {
            if (hooks.readStep) hooks.readStep(i);
        });
        timer4_[i] = single([this, i] {
            if (hooks.sendStep) hooks.sendStep(i);
        });
    }
    auto call = [](const std::function<void()>& f) {
        if (f) f();
    };
    timer6_ = single([this, call] { call(hooks.bankTags); });
    timer7_ = single([this, call] { call(hooks.trunkTypes); });
    timer11_ = single([this, call] { call(hooks.idListTags); });
    timer12_ = single([this, call] { call(hooks.ids); });
    timer13_ = single([this, call] { call(hooks.idTags); });
    timer14_ = single([this, call] { call(hooks.idBeeps); });
    port_.setOnReceive([this] { onReceive(); });
}

ExchangeEngine::~ExchangeEngine()
{
    port_.setOnReceive({});
    port_.setRThreshold(0);
}

int ExchangeEngine::bk() const { return std::max(0, (chanid - 1) / 100); }
int ExchangeEngine::ka() const { return std::max(0, chanid - bk() * 100); }

double ExchangeEngine::commdelay() const
{
    if (baud_ == 4800) return settings_.delay3 / 1000.0;
    if (baud_ == 9600) return settings_.delay2 / 1000.0;
    return settings_.delay1 / 1000.0;
}

void ExchangeEngine::setDelay(int ms) { settings_.delay1 = std::clamp(ms, 25, 1000); }

void ExchangeEngine::defaultDelay()
{
    if (baud_ >= 19200) setDelay(100);
}

std::string ExchangeEngine::portSettings() const { return std::to_string(baud_) + ",n,8,1"; }

bool ExchangeEngine::openport()
{
    port_.setCommPort(comport_);
    port_.setSettings(portSettings());
    if (const auto result = port_.open(); result != SerialPort::OpenResult::Ok) {
        dialogs_.message(result == SerialPort::OpenResult::NoPermission
                             ? kNoPermissionMessage
                             : "The selected comport is already in use or not available in your system!");
        return false;
    }
    return true;
}

void ExchangeEngine::reopenport()
{
    port_.setCommPort(comport_);
    port_.setSettings(portSettings());
    if (port_.isOpen()) port_.close();
    port_.close();
    port_.open();
}

void ExchangeEngine::sendline(const std::string& text) { port_.output(text + wire::kCrLf); }

std::string ExchangeEngine::finishedLine() const
{
    return std::string(caption_ == Caption::ReadData ? "Read" : "Send") + " Data finished; " + std::to_string(retries) +
           (retries == 1 ? " retry." : " retries.");
}

std::string ExchangeEngine::refusalsLine() const
{
    if (refusals == 0) return {};
    return std::to_string(refusals) + (refusals == 1 ? " command was" : " commands were") +
           " refused by the scanner (see txlog.txt).";
}

bool ExchangeEngine::wait(double seconds)
{
    {
        const Busy busy(*this);
        scheduler_.wait(seconds);
    }
    return stopflag == 0;
}

std::string ExchangeEngine::collect(int lines, int timeoutMs)
{
    std::string got = port_.input();
    const std::int64_t end = scheduler_.now() + timeoutMs;
    while (std::count(got.begin(), got.end(), '\r') < lines && scheduler_.now() < end) {
        if (!wait(0.005)) break;
        got += port_.input();
    }
    return got;
}

void ExchangeEngine::leaveBusy()
{
    if (--busy_ > 0 || !stopPending_) return;
    stopPending_ = false;
    if (hooks.stopped) hooks.stopped();
}

std::string ExchangeEngine::openForm(int bc785d)
{
    if (settings_.delay1 < 25) settings_.delay1 = 25;
    portOpened = openport();
    modelWord.clear();
    if (!portOpened) return modelWord;
    port_.input();
    rxdata.clear();
    port_.setRThreshold(0);
    for (const std::string& line : {wire::exitKey(bc785d), wire::selectChannel(1), std::string(wire::kWakeUp[0]),
                                    std::string(wire::kWakeUp[1]), std::string(wire::kWakeUp[2]), wire::selectChannel(1)}) {
        sendline(line);
        wait(commdelay());
    }
    port_.input();
    sendline(wire::kVersion);
    wait(commdelay());
    sendline(wire::kModel);
    wait(commdelay());
    modelWord = port_.input();
    rxdata.clear();
    setDelay(settings_.delay1);
    return modelWord;
}

void ExchangeEngine::enableTimer(Timer& timer, int interval)
{
    timer.setInterval(interval);
    timer.setEnabled(true);
}

void ExchangeEngine::armWatchdog() { enableTimer(*timer1_, kWatchdogMs); }

void ExchangeEngine::sendWatched(const std::string& text)
{
    armWatchdog();
    sendline(text);
}

void ExchangeEngine::sendSelect()
{
    status.text4 = wire::channel3(chanid);
    setProgressChannel(chanid);
    sendWatched(wire::selectChannel(chanid));
}

void ExchangeEngine::onReceive()
{
    status.text5 = std::to_string(commstate);
    timer1_->setEnabled(false);

    // The rest of the line is awaited right here, without yielding.
    const std::int64_t start = scheduler_.now();
    for (;;) {
        rxdata += port_.input();
        if (scheduler_.now() - start > kCrlfTimeoutMs) {
            dialogs_.message("CRLF timeout _ check baudrate / comport settings.");
            stopxfer();
            return;
        }
        if (!rxdata.empty() && rxdata.back() == '\r') break;
        scheduler_.pause(1);
    }
    if (contains(rxdata, "ERR") && (commstate < 21 || commstate >= 38)) status.text5 = "???";

    const int delay = stepDelay();
    switch (commstate) {
    case 1: case 2: case 3: case 4: case 5: case 6: enableTimer(*timer2_[commstate - 1], delay); break;
    case 7: case 11: case 12: finishChannel(); break;
    case 8: case 9: case 10: enableTimer(*timer2_[commstate - 1], delay); break;
    case 15: rxdata.clear(); break;
    case 20: case 21: case 22: case 23: case 24: case 25: case 26: case 27: case 28: case 29:
        if (!sendReplyTaken()) return;
        rxdata.clear();
        enableTimer(*timer4_[commstate - 20], delay);
        break;
    case 30:
        if (!sendReplyTaken()) return;
        if (!wait(commdelay())) return;
        rxdata.clear();
        retrycount = 0;
        if (hooks.senddata) hooks.senddata();
        break;
    case 33: enableTimer(*timer6_, delay); break;
    case 34: enableTimer(*timer7_, delay); break;
    case 35: enableTimer(*timer11_, delay); break;
    case 36: enableTimer(*timer12_, delay); break;
    case 37: enableTimer(*timer13_, 25); break;
    case 38: enableTimer(*timer14_, 500); break;
    default: break;
    }
}

bool ExchangeEngine::sendReplyTaken()
{
    switch (wire::classifySetReply(rxdata)) {
    case wire::SetReply::Ok: return true;
    case wire::SetReply::Refused:
        // Channel 1000's beep alert goes out as "BAF C 1000" first, which the
        // scanner refuses; the "BAF C 000" behind it is the one that counts.
        if (commstate == 27 && chanid == 1000 && rxdata.rfind("ERR\r", 0) == 0) return true;
        ++refusals;
        if (hooks.log) hooks.log("Refused: state " + std::to_string(commstate) + " chanid " + std::to_string(chanid) +
                                 " reply " + rxdata.substr(0, rxdata.size() - 1));
        return true;
    case wire::SetReply::Malformed: break;
    }
    if (hooks.log) hooks.log("Garbled reply: state " + std::to_string(commstate) + " chanid " + std::to_string(chanid));
    // As a lost reply: the watchdog, at once, from its own timer rather than
    // from inside the port's receive event (it closes and opens the port).
    commstate = 15;
    enableTimer(*timer1_, 1);
    return false;
}

void ExchangeEngine::finishChannel()
{
    const int state = commstate;
    status.text3 = rxdata;
    if (hooks.finishChannel && !hooks.finishChannel(state)) return;
    commstate = 1;
    rxdata.clear();
    ++chanid;
    retrycount = 0;
    if (chanid <= endchan) {
        if (hooks.log) hooks.log(std::to_string(state) + " MA" + wire::channel3(chanid));
        sendSelect();
    } else {
        port_.setRThreshold(0);
        status.progress = 0;
        if (hooks.runOver) hooks.runOver();
    }
}

void ExchangeEngine::endRun() { enableTimer(*timer3_, 1); }

bool ExchangeEngine::countRetry()
{
    ++retrycount;
    ++retries;
    if (retrycount > 2) status.text3 = "Error: retrycount: " + std::to_string(retrycount);
    status.text5 = std::to_string(retrycount);
    if (retrycount < 10) return true;
    dialogs_.message("Communication Timeout. Please check if scanner is switched on/connected/in remote mode.", "Error");
    port_.close();
    stopxfer();
    return false;
}

void ExchangeEngine::watchdog()
{
    timer1_->setEnabled(false);
    commstate = 15;
    port_.setRThreshold(0);
    if (!countRetry()) return;
    port_.close();
    port_.open();
    sendline("");
    if (!wait(0.2)) return;
    sendline("");
    if (!wait(0.2)) return;
    port_.input();
    port_.setRThreshold(1);
    // The channel shown in the status field starts again from its first
    // command. (The field shows "000" for channel 0, the first of an
    // all-bank read, and for channel 1000 alike: the number itself is taken.)
    rxdata.clear();
    if (caption_ == Caption::ReadData) {
        commstate = 1;
        sendWatched(wire::selectChannel(chanid));
    } else {
        commstate = 20;
        chanid = std::max(chanid - 1, 0);
        armWatchdog();
        if (hooks.senddata) hooks.senddata();
    }
}

void ExchangeEngine::stopxfer()
{
    stopflag = 1;
    port_.setRThreshold(0);
    if (hooks.stopping) hooks.stopping();
    retrycount = 0;
    timer1_->setEnabled(false);
    timer11_->setEnabled(false);
    timer12_->setEnabled(false);
    for (auto& t : timer2_) t->setEnabled(false);
    for (auto& t : timer4_) t->setEnabled(false);
    if (port_.isOpen()) port_.close();
    port_.open();
    // Pressed inside a wait, the code around that wait is still running: it
    // sees stopflag when the wait returns and goes no further, and only then
    // is the window given back.
    if (busy_ > 0) {
        stopPending_ = true;
        return;
    }
    if (hooks.stopped) hooks.stopped();
}

void ExchangeEngine::setProgressChannel(int channel)
{
    if (progend == progstart) return;
    status.progress = std::clamp((channel - progstart) * 100 / (progend - progstart), 0, 100);
}

} // namespace kestra
