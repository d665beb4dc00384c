#include "virtualport.h"

#include <algorithm>

namespace kestra {

VirtualPort::VirtualPort(Scheduler& scheduler, std::shared_ptr<VirtualDevice> device)
    : scheduler_(scheduler), device_(std::move(device))
{
    notify_ = scheduler_.createTimer();
    notify_->setSingleShot(true);
    notify_->setHandler([this] {
        pull();
        arm();
        // Like a real port's receive event: raised while received text waits
        // in the buffer, not for text that a reader already took.
        if (open_ && rThreshold_ >= 1 && !buffer_.empty() && onReceive_) onReceive_();
    });
}

VirtualPort::~VirtualPort() { close(); }

SerialPort::OpenResult VirtualPort::open()
{
    if (open_) return OpenResult::Ok;
    if (!device_ || !device_->respond) return OpenResult::NoSuchPort;
    if (baudOf(settings_) <= 0) return OpenResult::BadSettings;
    if (device_->held) return OpenResult::InUse;
    device_->held = true;
    open_ = true;
    // The line's faults go on from where they were when the port is opened
    // again: a reopen after a lost reply must not lose the same reply again.
    if (!lineMade_) {
        line_ = FaultyLine(device_->faults);
        lineMade_ = true;
    }
    return OpenResult::Ok;
}

void VirtualPort::close()
{
    if (!open_) return;
    open_ = false;
    device_->held = false;
    inFlight_.clear();
    buffer_.clear();
    notify_->setEnabled(false);
}

void VirtualPort::setRThreshold(int threshold)
{
    rThreshold_ = threshold;
    if (threshold < 1 || !open_) return;
    pull();
    if (!buffer_.empty()) {
        notify_->setInterval(1);
        notify_->setEnabled(true);
    }
}

void VirtualPort::pull() const
{
    const std::int64_t now = scheduler_.now() * 1000;
    while (!inFlight_.empty() && inFlight_.front().atUs <= now) {
        buffer_ += inFlight_.front().bytes;
        inFlight_.pop_front();
    }
}

std::string VirtualPort::input()
{
    pull();
    std::string text;
    text.swap(buffer_);
    return text;
}

std::size_t VirtualPort::inBufferCount() const
{
    pull();
    return buffer_.size();
}

void VirtualPort::arm()
{
    if (inFlight_.empty()) {
        notify_->setEnabled(false);
        return;
    }
    const std::int64_t waitUs = inFlight_.front().atUs - nowUs();
    notify_->setInterval(static_cast<int>(std::max<std::int64_t>(1, (waitUs + 999) / 1000)));
    notify_->setEnabled(true);
}

void VirtualPort::deliver(std::int64_t atUs, std::string bytes)
{
    auto it = std::upper_bound(inFlight_.begin(), inFlight_.end(), atUs,
                               [](std::int64_t t, const Piece& p) { return t < p.atUs; });
    inFlight_.insert(it, Piece{atUs, std::move(bytes)});
    arm();
}

void VirtualPort::output(const std::string& text)
{
    if (!open_ || text.empty()) return;
    const int portBaud = baudOf(settings_);
    const int deviceBaud = device_->baud ? device_->baud() : portBaud;
    const bool mismatch = portBaud != deviceBaud;
    const std::int64_t charUs = 10'000'000 / std::max(portBaud, 1);

    const std::int64_t sendStart = std::max(nowUs(), lineFreeUs_);
    const std::int64_t arrival = sendStart + charUs * static_cast<std::int64_t>(text.size());
    lineFreeUs_ = arrival;

    std::string reply = device_->respond(mismatch ? line_.atWrongSpeed(text) : text);
    if (reply.empty()) return;
    // The reply goes out at the speed the scanner has now: the key that
    // stores a new speed is answered at the new one.
    if (device_->baud && portBaud != device_->baud()) reply = line_.atWrongSpeed(reply);

    const CarriedReply carried = line_.carry(std::move(reply));
    if (carried.lost()) return;
    const std::int64_t start =
        std::max(arrival + static_cast<std::int64_t>(device_->latencyMs) * 1000 + carried.lateUs, replyFreeUs_);
    for (TimedBytes& piece : carried.timed(start, charUs)) {
        replyFreeUs_ = piece.atUs;
        deliver(piece.atUs, std::move(piece.bytes));
    }
}

} // namespace kestra
