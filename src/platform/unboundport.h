#pragma once
// A port number bound to nothing: it never opens, so a window that owns it
// shows the "in use or not available" message at load, and everything sent
// goes nowhere.

#include "platform/serialport.h"

#include <string>

namespace kestra {

class UnboundPort : public SerialPort {
public:
    void setCommPort(int port) override { port_ = port; }
    int commPort() const override { return port_; }
    void setSettings(const std::string& settings) override { settings_ = settings; }
    std::string settings() const override { return settings_; }
    OpenResult open() override { return OpenResult::NoSuchPort; }
    void close() override {}
    bool isOpen() const override { return false; }
    void setRThreshold(int threshold) override { threshold_ = threshold; }
    int rThreshold() const override { return threshold_; }
    std::string input() override { return {}; }
    std::size_t inBufferCount() const override { return 0; }
    void output(const std::string&) override {}
    void setOnReceive(std::function<void()>) override {}

private:
    int port_ = 0;
    int threshold_ = 0;
    std::string settings_;
};

} // namespace kestra
