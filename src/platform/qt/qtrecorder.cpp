#include "platform/qt/qtrecorder.h"

#include <QAudioFormat>
#include <QAudioSource>
#include <QIODevice>
#include <QMediaDevices>

namespace kestra {

namespace {

QAudioFormat toQt(const AudioFormat& format)
{
    QAudioFormat q;
    q.setSampleRate(format.sampleRate);
    q.setChannelCount(format.channels);
    q.setSampleFormat(format.bitsPerSample == 8 ? QAudioFormat::UInt8 : QAudioFormat::Int16);
    return q;
}

std::string nameOf(const QAudioDevice& device)
{
    return device.description().toStdString();
}

}  // namespace

QtRecorder::QtRecorder() = default;

QtRecorder::~QtRecorder()
{
    close();
}

std::vector<std::string> QtRecorder::devices() const
{
    std::vector<std::string> names;
    const QAudioDevice preferred = QMediaDevices::defaultAudioInput();
    if (!preferred.isNull()) names.push_back(nameOf(preferred));
    for (const QAudioDevice& device : QMediaDevices::audioInputs())
        if (device != preferred) names.push_back(nameOf(device));
    return names;
}

bool QtRecorder::hasDevice() const
{
    return !QMediaDevices::audioInputs().isEmpty();
}

bool QtRecorder::open(const std::string& name)
{
    close();
    if (name.empty()) {
        device_ = QMediaDevices::defaultAudioInput();
    } else {
        for (const QAudioDevice& device : QMediaDevices::audioInputs())
            if (nameOf(device) == name) {
                device_ = device;
                break;
            }
    }
    return !device_.isNull();
}

bool QtRecorder::supports(const AudioFormat& format) const
{
    return !device_.isNull() && (format.bitsPerSample == 8 || format.bitsPerSample == 16) &&
           device_.isFormatSupported(toQt(format));
}

bool QtRecorder::start(const AudioFormat& format, Sink sink)
{
    if (source_) stop();
    if (!supports(format)) return false;
    source_ = std::make_unique<QAudioSource>(device_, toQt(format));
    sink_ = std::move(sink);
    io_ = source_->start();
    if (!io_ || source_->error() != QAudio::NoError) {
        source_.reset();
        io_ = nullptr;
        sink_ = nullptr;
        return false;
    }
    QObject::connect(io_, &QIODevice::readyRead, io_, [this] { drain(); });
    return true;
}

void QtRecorder::drain()
{
    if (!io_) return;
    const QByteArray bytes = io_->readAll();
    if (!bytes.isEmpty() && sink_) sink_(bytes.constData(), static_cast<std::size_t>(bytes.size()));
}

bool QtRecorder::stop()
{
    if (!source_) return false;
    drain();
    const bool ok = source_->error() == QAudio::NoError;
    if (io_) io_->disconnect();
    source_->stop();
    source_.reset();
    io_ = nullptr;
    sink_ = nullptr;
    return ok;
}

void QtRecorder::close()
{
    if (source_) stop();
    device_ = QAudioDevice();
}

}  // namespace kestra
