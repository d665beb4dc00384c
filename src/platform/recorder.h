#pragma once
// Sound capture from the sound card's input: what the Virtual Control's
// recorder hears of the scanner's audio output. The device delivers plain PCM
// (little-endian; 8-bit samples unsigned, 16-bit signed) to a sink as it
// arrives; writing files is the caller's business.

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace kestra {

struct AudioFormat {
    int sampleRate = 11025;
    int channels = 1;
    int bitsPerSample = 16;

    int bytesPerFrame() const { return channels * bitsPerSample / 8; }  // the block alignment
    int bytesPerSecond() const { return sampleRate * bytesPerFrame(); }
    bool operator==(const AudioFormat&) const = default;
};

class Recorder {
public:
    using Sink = std::function<void(const char* data, std::size_t size)>;

    virtual ~Recorder() = default;

    // The names of the capture devices, the system's default first.
    virtual std::vector<std::string> devices() const = 0;
    // Whether any capture device exists.
    virtual bool hasDevice() const = 0;

    // Opens a capture device by name; an empty name is the default device.
    // False when there is no such device. Opening again closes the last one.
    virtual bool open(const std::string& name) = 0;
    virtual bool isOpen() const = 0;
    // Whether the open device can capture in this format.
    virtual bool supports(const AudioFormat& format) const = 0;

    // Starts capturing in format; every piece of PCM goes to sink as the
    // device delivers it. False when the device refuses (not open, format not
    // supported, device gone). A capture already running is stopped first.
    virtual bool start(const AudioFormat& format, Sink sink) = 0;
    // Hands everything captured so far to the sink, then stops. False when
    // nothing was running or the device failed meanwhile.
    virtual bool stop() = 0;
    virtual bool capturing() const = 0;

    virtual void close() = 0;
};

} // namespace kestra
