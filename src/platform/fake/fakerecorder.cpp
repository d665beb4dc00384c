#include "platform/fake/fakerecorder.h"

#include <algorithm>

namespace kestra {

namespace {
constexpr int kToneHz = 500;
}

FakeRecorder::FakeRecorder(Scheduler& scheduler, std::vector<std::string> names)
    : scheduler_(scheduler), names_(std::move(names))
{
    buffer_ = makeTimer(scheduler_, kBufferMs, false, [this] { deliver(); });
}

FakeRecorder::~FakeRecorder() = default;

bool FakeRecorder::open(const std::string& name)
{
    close();
    if (names_.empty() || unplugged_) return false;
    if (!name.empty() && std::find(names_.begin(), names_.end(), name) == names_.end()) return false;
    open_ = true;
    return true;
}

bool FakeRecorder::supports(const AudioFormat& format) const
{
    return open_ && !unplugged_ && format.sampleRate >= 1000 && format.sampleRate <= 48000 &&
           (format.channels == 1 || format.channels == 2) &&
           (format.bitsPerSample == 8 || format.bitsPerSample == 16);
}

int FakeRecorder::sampleValue(const AudioFormat& format, std::int64_t frame)
{
    // Triangle: phase 0..rate-1 over one period, rising then falling.
    const std::int64_t phase = (frame * kToneHz) % format.sampleRate;
    const double x = static_cast<double>(phase) / format.sampleRate;  // 0..1
    const double tri = x < 0.5 ? 4 * x - 1 : 3 - 4 * x;               // -1..1
    if (format.bitsPerSample == 8) return 128 + static_cast<int>(tri * 64);
    return static_cast<int>(tri * 8000);
}

bool FakeRecorder::start(const AudioFormat& format, Sink sink)
{
    if (capturing_) stop();
    if (!supports(format)) return false;
    format_ = format;
    sink_ = std::move(sink);
    startMs_ = scheduler_.now();
    delivered_ = 0;
    capturing_ = true;
    buffer_->setEnabled(true);
    return true;
}

void FakeRecorder::deliver()
{
    if (!capturing_ || unplugged_) return;
    const std::int64_t due = (scheduler_.now() - startMs_) * format_.sampleRate / 1000;
    std::string bytes;
    for (; delivered_ < due; ++delivered_) {
        const int v = sampleValue(format_, delivered_);
        for (int c = 0; c < format_.channels; ++c) {
            if (format_.bitsPerSample == 8) {
                bytes.push_back(static_cast<char>(v));
            } else {
                bytes.push_back(static_cast<char>(v & 0xff));
                bytes.push_back(static_cast<char>((v >> 8) & 0xff));
            }
        }
    }
    if (!bytes.empty() && sink_) sink_(bytes.data(), bytes.size());
}

bool FakeRecorder::stop()
{
    if (!capturing_) return false;
    deliver();
    capturing_ = false;
    buffer_->setEnabled(false);
    sink_ = nullptr;
    return !unplugged_;
}

void FakeRecorder::close()
{
    if (capturing_) stop();
    open_ = false;
}

} // namespace kestra
