#pragma once
// Sound capture of the desktop program: QAudioSource of Qt Multimedia on the
// chosen input device, in pull mode. Whatever the device has buffered is read
// when it says so and handed on to the sink; stop() hands over the rest.

#include "platform/recorder.h"

#include <QAudioDevice>

#include <memory>

class QAudioSource;
class QIODevice;

namespace kestra {

class QtRecorder : public Recorder {
public:
    QtRecorder();
    ~QtRecorder() override;

    std::vector<std::string> devices() const override;
    bool hasDevice() const override;
    bool open(const std::string& name) override;
    bool isOpen() const override { return !device_.isNull(); }
    bool supports(const AudioFormat& format) const override;
    bool start(const AudioFormat& format, Sink sink) override;
    bool stop() override;
    bool capturing() const override { return source_ != nullptr; }
    void close() override;

private:
    void drain();

    QAudioDevice device_;
    std::unique_ptr<QAudioSource> source_;
    QIODevice* io_ = nullptr;
    Sink sink_;
};

} // namespace kestra
