#pragma once
// A capture device on the scheduler's clock, for the tests and for kestractl:
// it "hears" a fixed tone (a 500 Hz triangle wave), so every sample is known
// in advance, and delivers what the elapsed time is worth every 100 ms, as a
// sound card hands over its buffers. The sample count is always
// floor(elapsed ms * rate / 1000), so nothing drifts over a long recording.

#include "platform/recorder.h"
#include "platform/scheduler.h"

#include <cstdint>
#include <memory>

namespace kestra {

class FakeRecorder : public Recorder {
public:
    static constexpr int kBufferMs = 100;

    // names: the devices the machine has; none means no sound card.
    FakeRecorder(Scheduler& scheduler, std::vector<std::string> names = {"Line In"});
    ~FakeRecorder() override;

    std::vector<std::string> devices() const override { return names_; }
    bool hasDevice() const override { return !names_.empty(); }
    bool open(const std::string& name) override;
    bool isOpen() const override { return open_; }
    bool supports(const AudioFormat& format) const override;
    bool start(const AudioFormat& format, Sink sink) override;
    bool stop() override;
    bool capturing() const override { return capturing_; }
    void close() override;

    // The value of frame n of the tone, as it is written in format.
    static int sampleValue(const AudioFormat& format, std::int64_t frame);

    // Faults: the device disappears (start and stop fail from then on).
    void unplug() { unplugged_ = true; }
    std::int64_t framesDelivered() const { return delivered_; }

private:
    void deliver();

    Scheduler& scheduler_;
    std::vector<std::string> names_;
    bool open_ = false;
    bool capturing_ = false;
    bool unplugged_ = false;
    AudioFormat format_;
    Sink sink_;
    std::int64_t startMs_ = 0;
    std::int64_t delivered_ = 0;
    std::unique_ptr<Timer> buffer_;
};

} // namespace kestra
