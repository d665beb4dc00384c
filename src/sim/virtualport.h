#pragma once
// A serial port with a virtual scanner at the other end of the cable, inside
// the program: what goes out reaches the scanner after its wire time (ten bits
// a character at the baud rate), the scanner answers after its latency, and
// the answer comes back over the wire the same way. A port opened at another
// speed than the scanner's sees garbage both ways, as on a real line. Faults
// can lose, split, garble, delay or trail a reply, deterministically.

#include "platform/scheduler.h"
#include "platform/serialport.h"
#include "sim/linefaults.h"

#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace kestra {

// The far end of the cable: takes the bytes that arrived, gives the bytes it
// sends back, and runs at one speed. One port at a time may hold it.
struct VirtualDevice {
    std::function<std::string(std::string_view received)> respond;
    std::function<int()> baud;   // the scanner's present speed
    int latencyMs = 5;
    LineFaults faults;
    bool held = false;
};

class VirtualPort : public SerialPort {
public:
    VirtualPort(Scheduler& scheduler, std::shared_ptr<VirtualDevice> device);
    ~VirtualPort() override;

    void setCommPort(int port) override { port_ = port; }
    int commPort() const override { return port_; }
    void setSettings(const std::string& settings) override { settings_ = settings; }
    std::string settings() const override { return settings_; }

    OpenResult open() override;
    void close() override;
    bool isOpen() const override { return open_; }

    // Raising the threshold while text waits in the buffer raises the receive
    // event soon after, as a real port keeps raising it while text waits.
    void setRThreshold(int threshold) override;
    int rThreshold() const override { return rThreshold_; }

    std::string input() override;
    std::size_t inBufferCount() const override;
    void output(const std::string& text) override;
    void setOnReceive(std::function<void()> handler) override { onReceive_ = std::move(handler); }

private:
    struct Piece {
        std::int64_t atUs;
        std::string bytes;
    };
    void pull() const;
    void arm();
    void deliver(std::int64_t atUs, std::string bytes);
    std::int64_t nowUs() const { return scheduler_.now() * 1000; }

    Scheduler& scheduler_;
    std::shared_ptr<VirtualDevice> device_;
    std::unique_ptr<Timer> notify_;
    std::function<void()> onReceive_;
    mutable std::deque<Piece> inFlight_;
    mutable std::string buffer_;
    std::int64_t lineFreeUs_ = 0;  // when the wire to the scanner is free again
    std::int64_t replyFreeUs_ = 0; // when the wire back is free again
    FaultyLine line_;
    bool lineMade_ = false;
    std::string settings_ = "19200,n,8,1";
    int port_ = 1;
    int rThreshold_ = 0;
    bool open_ = false;
};

} // namespace kestra
