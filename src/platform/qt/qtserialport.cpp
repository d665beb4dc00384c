#include "platform/qt/qtserialport.h"

#include <QFileInfo>

#include <cerrno>

#include <unistd.h>

namespace kestra {

QtSerialPort::QtSerialPort(std::string device, QObject* parent) : QObject(parent), device_(std::move(device))
{
    connect(&serial_, &QSerialPort::readyRead, this, &QtSerialPort::readyRead);
}

QtSerialPort::~QtSerialPort() { close(); }

SerialPort::OpenResult QtSerialPort::open()
{
    if (serial_.isOpen()) return OpenResult::Ok;
    const int baud = baudOf(settings_);
    if (baud <= 0) return OpenResult::BadSettings;
    const QString device = QString::fromStdString(device_);
    // A device that is not there is told as such before the port's lock file
    // is tried: another program probing the same name must not make it "in use".
    if (device.startsWith('/') && !QFileInfo::exists(device)) return OpenResult::NoSuchPort;
    // A device of the group "dialout" the user is not in: said as such, since
    // QSerialPort's own error does not tell it from a lock held by another program.
    if (device.startsWith('/') && ::access(device_.c_str(), R_OK | W_OK) != 0 && errno == EACCES)
        return OpenResult::NoPermission;
    serial_.setPortName(device);
    if (!serial_.open(QIODevice::ReadWrite)) {
        const auto error = serial_.error();
        serial_.clearError();
        return error == QSerialPort::DeviceNotFoundError ? OpenResult::NoSuchPort : OpenResult::InUse;
    }
    serial_.setBaudRate(baud);
    serial_.setDataBits(QSerialPort::Data8);
    serial_.setParity(QSerialPort::NoParity);
    serial_.setStopBits(QSerialPort::OneStop);
    serial_.setFlowControl(QSerialPort::NoFlowControl);
    buffer_.clear();
    return OpenResult::Ok;
}

void QtSerialPort::close()
{
    if (serial_.isOpen()) serial_.close();
    buffer_.clear();
}

void QtSerialPort::pull()
{
    if (!serial_.isOpen()) return;
    // Take what the device has without waiting and without raising the
    // receive event from in here.
    pulling_ = true;
    serial_.waitForReadyRead(0);
    const QByteArray bytes = serial_.readAll();
    pulling_ = false;
    buffer_.append(bytes.constData(), static_cast<std::size_t>(bytes.size()));
    // What came in here raised no event of its own.
    if (!bytes.isEmpty() && rThreshold_ >= 1) notifyLater();
}

void QtSerialPort::readyRead()
{
    if (pulling_) return;
    const QByteArray bytes = serial_.readAll();
    buffer_.append(bytes.constData(), static_cast<std::size_t>(bytes.size()));
    if (rThreshold_ >= 1 && !buffer_.empty() && onReceive_) onReceive_();
}

void QtSerialPort::setRThreshold(int threshold)
{
    rThreshold_ = threshold;
    if (threshold < 1 || !serial_.isOpen()) return;
    // Text that came while the threshold was 0 raised no event then; the
    // device says nothing more of it, so the event is raised here.
    pull();
    if (!buffer_.empty()) notifyLater();
}

void QtSerialPort::notifyLater()
{
    if (notifyPosted_) return;
    notifyPosted_ = true;
    QMetaObject::invokeMethod(
        this,
        [this] {
            notifyPosted_ = false;
            pull();
            if (serial_.isOpen() && rThreshold_ >= 1 && !buffer_.empty() && onReceive_) onReceive_();
        },
        Qt::QueuedConnection);
}

std::string QtSerialPort::input()
{
    pull();
    std::string text;
    text.swap(buffer_);
    return text;
}

std::size_t QtSerialPort::inBufferCount() const
{
    const_cast<QtSerialPort*>(this)->pull();
    return buffer_.size();
}

void QtSerialPort::output(const std::string& text)
{
    if (!serial_.isOpen()) return;
    serial_.write(text.data(), static_cast<qint64>(text.size()));
    serial_.flush();
}

} // namespace kestra
