#include "vcontrol/controlloop.h"

#include "core/memfile.h"

#include <algorithm>

namespace kestra {

namespace {

// The poll after a step, and the step it leaves: the short cycle while the
// scanner moves, the long one (three SQ among thirteen) while it rests.
struct Poll {
    const char* command;
    int next;
};

Poll shortCycle(int step)
{
    if (step == 1) return {"MD", 5};
    if (step == 5) return {"TB", 0};
    return {"LCD", 1};
}

Poll longCycle(int step)
{
    switch (step) {
    case 0: return {"LCD", 1};
    case 1: return {"ST", 2};
    case 2: return {"SQ", 10};
    case 10: return {"SG", 3};
    case 3: return {"SQ", 4};
    case 4: return {"MD", 5};
    case 5: return {"RM", 6};
    case 6: return {"SQ", 11};
    case 11: return {"AT", 7};
    case 7: return {"IS", 8};
    case 8: return {"SB", 9};
    case 9: return {"CB", 12};
    case 12: return {"TB", 0};
    default: return {"LCD", 1};
    }
}

bool contains(const std::string& text, const char* word) { return text.find(word) != std::string::npos; }

} // namespace

ControlLoop::ControlLoop(Scheduler& scheduler, Dialogs& dialogs, std::unique_ptr<SerialPort> port, LinkSettings settings)
    : scheduler_(scheduler), dialogs_(dialogs), port_(std::move(port)), settings_(settings)
{
    timer1_ = makeTimer(scheduler_, kSendMs, false, [this] { sendNext(); });
    timer10_ = makeTimer(scheduler_, kCollectMs, false, [this] { collect(); });
    timer2_ = makeTimer(scheduler_, kWatchdogMs, false, [this] { watchdog(); });
    timer3_ = makeTimer(scheduler_, kEncodedMs, false, [this] { encodedTick(); });
    timer4_ = makeTimer(scheduler_, kResumeMs, false, [this] { resumeTick(); });
    timer12_ = makeTimer(scheduler_, kSkipMs, false, [this] { skipTick(); });
    timer3_->setEnabled(true);
    timer4_->setEnabled(true);
}

ControlLoop::~ControlLoop()
{
    if (!closing_) close();
}

std::string ControlLoop::drain() { return port_ && port_->isOpen() ? port_->input() : std::string(); }

void ControlLoop::write(const std::string& command)
{
    if (!port_ || !port_->isOpen()) return;
    port_->output(command + "\r");
    if (onSend) onSend(command + "\r");
}

void ControlLoop::openPort()
{
    if (!port_) return;
    if (port_->isOpen()) port_->close();
    port_->setSettings(std::to_string(settings_.baud) + ",n,8,1");
    port_->setCommPort(settings_.port);
    if (const auto result = port_->open(); result == SerialPort::OpenResult::InUse)
        dialogs_.message(kInUse);
    else if (result == SerialPort::OpenResult::NoPermission)
        dialogs_.message(kNoPermissionMessage);
}

std::string ControlLoop::open(const std::filesystem::path& folder, ModelSwitches& model)
{
    openPort();
    if (port_) port_->setRThreshold(0);
    const double pause = settings_.delay1 / 1000.0;
    for (const char* command : {"IDF", "CDF", "QUF"}) {
        write(command);
        lcdwait(pause);
        if (closing_) return {};
    }
    drain();
    write("VR");
    lcdwait(pause);
    write("SI");
    lcdwait(pause);
    if (closing_) return {};
    std::string reply = drain();
    // The model word goes to version.ini as one line.
    // The text holds the replies to VR and SI; version.ini keeps it as one line.
    std::string line = reply;
    while (!line.empty() && (line.back() == '\r' || line.back() == '\n')) line.pop_back();
    std::replace(line.begin(), line.end(), '\r', ' ');
    std::replace(line.begin(), line.end(), '\n', ' ');
    writeFileAtomic(folder / "version.ini", line + "\r\n");

    // Each test overrides the one before, so that the last word found decides.
    if (contains(reply, "BC250D") || contains(reply, "UBC33")) model.bc785d = 0;
    if (contains(reply, "BC785D")) model.bc785d = 1;
    if (contains(reply, "BC250D") || contains(reply, "BC296D") || contains(reply, "UBC33")) model.bc785d = 0;
    if (contains(reply, "BC785D") || contains(reply, "BC796D")) model.bc785d = 1;
    if (contains(reply, "UBC33")) model.ubc33 = 1;

    startpolling();
    return reply;
}

void ControlLoop::startpolling()
{
    retries_ = 0;
    if (port_ && !port_->isOpen()) openPort();
    drain();
    if (port_) port_->setRThreshold(1);
    for (Timer* t : {timer1_.get(), timer2_.get(), timer10_.get(), timer12_.get()}) t->setEnabled(true);
}

void ControlLoop::stoppolling()
{
    // 20: a burst of direct commands that does not end well leaves HOLD able
    // to restart the link.
    retries_ = 20;
    if (port_) port_->setRThreshold(0);
    drain();
    timer1_->setEnabled(false);
    timer2_->setEnabled(false);
}

void ControlLoop::lcdwait(double seconds)
{
    seconds = Scheduler::clampWait(seconds);
    if (seconds <= 0 || closing_) return;
    ++inWait_;
    const std::int64_t end = scheduler_.now() + static_cast<std::int64_t>(seconds * 1000);
    while (!closing_) {
        const std::int64_t left = end - scheduler_.now();
        if (left <= 0) break;
        // Short slices, so that closing ends the wait at once.
        scheduler_.wait(std::min<std::int64_t>(left, 50) / 1000.0);
    }
    --inWait_;
}

void ControlLoop::sendNext()
{
    if (retries_ > kGiveUp && !settings_.retryforever) return;
    if (waitreply_) return;
    if (port_) port_->setRThreshold(0);
    drain();
    rxbuf_.clear();
    const Poll poll = pollfast_ ? shortCycle(pollstep_) : longCycle(pollstep_);
    pollstep_ = poll.next;
    write(poll.command);
    waitreply_ = 1;
    // The watchdog starts anew with each send.
    timer2_->setEnabled(false);
    timer2_->setEnabled(true);
    if (port_) port_->setRThreshold(1);
}

void ControlLoop::collect()
{
    // While the watchdog wakes the scanner and reopens the port, what comes
    // is the answer to the lone carriage return, not to a poll.
    if (!port_ || !port_->isOpen() || recovering_) return;
    rxbuf_ += port_->input();
    if (rxbuf_.empty()) return;
    if (rxbuf_.back() != '\r') return;
    // The display's reply is whole only with its fourth line.
    if (pollstep_ == 1 && !contains(rxbuf_, "LCD4")) return;
    takeReply(pollstep_);
    waitreply_ = 0;
    timer2_->setEnabled(false);
    if (pollstep_ != 2) rxbuf_.clear();
}

void ControlLoop::takeReply(int step)
{
    switch (step) {
    case 1:
        retries_ = 0;
        parselcd(state_, rxbuf_);
        pollfast_ = decidePollfast(state_);
        if (pollfast_) {
            wipeReception(state_);
            autoResume_.clear();
        }
        if (hooks.displayChanged) hooks.displayChanged();
        break;
    case 2: takeStep(state_, rxbuf_); break;
    case 3: takeSignal(state_, rxbuf_); break;
    case 4:
    case 10:
    case 11: takeSquelch(state_, rxbuf_); break;
    case 5: takeMode(state_, rxbuf_); break;
    case 6: takeModulation(state_, rxbuf_); break;
    case 7: takeAttenuator(state_, rxbuf_); break;
    case 0: takeTrunkBank(state_, rxbuf_); break;
    default: break;  // IS, SB, CB: the panel reads them from the reply
    }
    if (hooks.replyTaken) hooks.replyTaken(step, rxbuf_);
}

void ControlLoop::watchdog()
{
    if (hooks.status) hooks.status("Retry:" + std::to_string(retries_));
    if (retries_ > kGiveUp && !settings_.retryforever) return;
    waitreply_ = 1;
    if (port_) port_->setRThreshold(0);
    timer2_->setEnabled(false);
    timer1_->setEnabled(false);
    ++retries_;
    if (retries_ < kGiveUp || settings_.retryforever) {
        // Wake the scanner with a lone carriage return, then reopen the port.
        recovering_ = true;
        drain();
        if (port_ && port_->isOpen()) port_->output("\r");
        lcdwait(0.3);
        if (closing_) return;
        if (port_) port_->close();
        lcdwait(0.3);
        if (closing_) return;
        openPort();
        drain();
        recovering_ = false;
        rxbuf_.clear();
        pollstep_ = 0;
        waitreply_ = 0;
        timer1_->setEnabled(true);
        return;
    }
    dialogs_.message(kNoCommunication);
    timer1_->setEnabled(false);
    timer10_->setEnabled(false);
    if (hooks.status) hooks.status(kLostStatus);
}

void ControlLoop::send(const std::string& command) { write(command); }

void ControlLoop::run(const KeyAction& action)
{
    if (action.pausePolling) stoppolling();
    for (const KeyCommand& command : action.commands) {
        write(command.text);
        lcdwait(command.waitAfter);
        if (closing_) return;
    }
    if (action.pausePolling) startpolling();
    if (action.holdRecovery) holdRecovery();
}

void ControlLoop::holdRecovery()
{
    for (Timer* t : {timer1_.get(), timer2_.get(), timer10_.get()}) t->setEnabled(false);
    retries_ = 0;
    waitreply_ = 0;
    recovering_ = false;
    if (port_ && port_->isOpen()) port_->close();
    openPort();
    for (Timer* t : {timer1_.get(), timer2_.get(), timer10_.get()}) t->setEnabled(true);
}

void ControlLoop::close()
{
    waitreply_ = 1;
    closing_ = 1;
    if (inWait_ > 0 && hooks.closedDuringWait) hooks.closedDuringWait();
    if (port_) {
        port_->close();
        port_->setRThreshold(0);
    }
    for (Timer* t : {timer1_.get(), timer2_.get(), timer3_.get(), timer4_.get(), timer10_.get(), timer12_.get()})
        t->setEnabled(false);
}

void ControlLoop::setAutoResume(bool enabled, int seconds)
{
    autoResumeOn_ = enabled;
    autoResumeSeconds_ = seconds;
}

void ControlLoop::encodedTick()
{
    // A change of the encryption mark tries the skip at once.
    if (refreshEncoded(state_)) skipTick();
}

void ControlLoop::skipTick()
{
    if (closing_) return;
    for (int i = encryptedSkips(state_, settings_.encrypted); i > 0; --i) write("KEY00");
}

void ControlLoop::resumeTick()
{
    if (state_.modenumber == "01" || state_.modenumber == "Menu") return;
    if (autoResume_.tick(scheduler_.now() / 1000, state_, autoResumeOn_, autoResumeSeconds_))
        write("KEY00");  // as the RESUME key
}

} // namespace kestra
