#pragma once
// A real serial device (or a pseudo-terminal) through QSerialPort, as the
// transfer code sees a port.

#include "platform/serialport.h"

#include <QObject>
#include <QSerialPort>

#include <memory>
#include <string>

namespace kestra {

class QtSerialPort : public QObject, public SerialPort {
    Q_OBJECT
public:
    // `device` is the path of the device ("/dev/ttyUSB0", a pseudo-terminal).
    explicit QtSerialPort(std::string device, QObject* parent = nullptr);
    ~QtSerialPort() override;

    // The device opener of the running programs: a device name to a QtSerialPort.
    static std::unique_ptr<SerialPort> openDevice(const std::string& device)
    {
        return std::make_unique<QtSerialPort>(device);
    }

    void setCommPort(int port) override { port_ = port; }
    int commPort() const override { return port_; }
    void setSettings(const std::string& settings) override { settings_ = settings; }
    std::string settings() const override { return settings_; }

    OpenResult open() override;
    void close() override;
    bool isOpen() const override { return serial_.isOpen(); }

    // Raising the threshold while text waits raises the receive event soon
    // after, as it does for text that arrives while it is on.
    void setRThreshold(int threshold) override;
    int rThreshold() const override { return rThreshold_; }

    std::string input() override;
    std::size_t inBufferCount() const override;
    void output(const std::string& text) override;
    void setOnReceive(std::function<void()> handler) override { onReceive_ = std::move(handler); }

    const std::string& device() const { return device_; }

private:
    void pull();
    void readyRead();
    // The receive event, from the event loop, for text that waits while the
    // threshold is on and nobody is told of it yet.
    void notifyLater();

    std::string device_;
    QSerialPort serial_;
    std::string buffer_;
    std::function<void()> onReceive_;
    std::string settings_ = "19200,n,8,1";
    int port_ = 1;
    int rThreshold_ = 0;
    bool pulling_ = false;
    bool notifyPosted_ = false;
};

} // namespace kestra
