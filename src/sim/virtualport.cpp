#include "virtualport.h"

#include "core/text.h"

#include <algorithm>

namespace kestra {

std::optional<LineFaults> LineFaults::parse(std::string_view text)
{
    LineFaults f;
    std::size_t pos = 0;
    while (pos < text.size()) {
        std::size_t end = text.find(',', pos);
        if (end == std::string_view::npos) end = text.size();
        const std::string_view item = text.substr(pos, end - pos);
        pos = end + 1;
        if (item.empty()) continue;
        const auto eq = item.find('=');
        if (eq == std::string_view::npos) return std::nullopt;
        const std::string_view key = item.substr(0, eq);
        const std::string value(item.substr(eq + 1));
        if (value.empty() || value.find_first_not_of("0123456789.") != std::string::npos) return std::nullopt;
        const double v = Val(value);
        if (key == "drop" || key == "split" || key == "garble" || key == "stray") {
            if (v > 1) return std::nullopt;
            (key == "drop" ? f.drop : key == "split" ? f.split : key == "garble" ? f.garble : f.stray) = v;
        } else if (key == "delay") {
            f.delayMs = static_cast<int>(std::min(v, 60000.0));
        } else if (key == "seed") {
            f.seed = static_cast<unsigned>(std::min(v, 4e9));
        } else {
            return std::nullopt;
        }
    }
    return f;
}

VirtualPort::VirtualPort(Scheduler& scheduler, std::shared_ptr<VirtualDevice> device)
    : scheduler_(scheduler), device_(std::move(device)), random_(device_ ? device_->faults.seed : 1)
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
    random_.seed(device_->faults.seed);
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

std::string VirtualPort::garbled(std::string_view bytes)
{
    std::string out(bytes);
    for (char& c : out) c = static_cast<char>((static_cast<unsigned char>(c) * 7 + 0x5b + random_() % 3) & 0xff);
    return out;
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

    std::string reply = device_->respond(mismatch ? garbled(text) : std::string_view(text));
    if (reply.empty()) return;
    if (mismatch) reply = garbled(reply);

    const LineFaults& f = device_->faults;
    std::uniform_real_distribution<double> chance(0, 1);
    if (f.drop > 0 && chance(random_) < f.drop) return;
    if (f.garble > 0)
        for (char& c : reply)
            if (c != '\r' && chance(random_) < f.garble) c = static_cast<char>(' ' + random_() % 94);
    std::int64_t start = arrival + static_cast<std::int64_t>(device_->latencyMs) * 1000;
    if (f.delayMs > 0) start += static_cast<std::int64_t>(random_() % (static_cast<unsigned>(f.delayMs) + 1)) * 1000;
    start = std::max(start, replyFreeUs_);

    std::vector<std::string> pieces{reply};
    if (f.split > 0 && reply.size() > 1 && chance(random_) < f.split) {
        pieces.clear();
        const std::size_t cut1 = 1 + random_() % (reply.size() - 1);
        pieces.push_back(reply.substr(0, cut1));
        std::string rest = reply.substr(cut1);
        if (rest.size() > 1 && random_() % 2) {
            const std::size_t cut2 = 1 + random_() % (rest.size() - 1);
            pieces.push_back(rest.substr(0, cut2));
            rest = rest.substr(cut2);
        }
        pieces.push_back(rest);
    }
    std::int64_t t = start;
    for (std::size_t i = 0; i < pieces.size(); ++i) {
        t += charUs * static_cast<std::int64_t>(pieces[i].size());
        if (i > 0) t += static_cast<std::int64_t>(1 + random_() % 40) * 1000;  // a pause between pieces
        deliver(t, pieces[i]);
    }
    replyFreeUs_ = t;
    if (f.stray > 0 && chance(random_) < f.stray) {
        replyFreeUs_ = t + charUs;
        deliver(replyFreeUs_, std::string(1, static_cast<char>('!' + random_() % 90)));
    }
}

} // namespace kestra
