#pragma once
// A serial port as the transfer code uses it: a port number, a settings text
// such as "19200,n,8,1", open and close, a receive threshold, the buffered
// input taken whole, output, and a receive event. Implementations: a real
// device (QSerialPort), the in-process virtual scanner, and test doubles.

#include <functional>
#include <string>

namespace kestra {

// What the user is told when a serial device is there but may not be opened:
// on Linux the devices belong to the group "dialout".
inline constexpr const char* kNoPermissionMessage =
    "You may not open the serial device: your user is not in the group \"dialout\".\r\n"
    "Add it with the command\r\n\r\n    sudo usermod -aG dialout $USER\r\n\r\n"
    "then log out and log in again.";

class SerialPort {
public:
    enum class OpenResult {
        Ok,
        InUse,        // held by another program, or the device is unavailable
        NoSuchPort,   // the number is bound to nothing
        BadSettings,  // the settings text names no speed the port has
        NoPermission, // the device is there but this user may not open it
    };

    virtual ~SerialPort() = default;

    virtual void setCommPort(int port) = 0;
    virtual int commPort() const = 0;
    virtual void setSettings(const std::string& settings) = 0;  // "baud,n,8,1"
    virtual std::string settings() const = 0;

    virtual OpenResult open() = 0;
    virtual void close() = 0;
    virtual bool isOpen() const = 0;

    // The receive event fires while the threshold is 1 or more and text has
    // arrived; 0 keeps it quiet (the text is buffered all the same).
    virtual void setRThreshold(int threshold) = 0;
    virtual int rThreshold() const = 0;

    // All text received so far; the buffer is emptied.
    virtual std::string input() = 0;
    virtual std::size_t inBufferCount() const = 0;
    virtual void output(const std::string& text) = 0;

    // Called on the program's one thread when text arrives (see setRThreshold).
    virtual void setOnReceive(std::function<void()> handler) = 0;
};

// The baud rate of a settings text ("19200,n,8,1" gives 19200), 0 when none.
inline int baudOf(const std::string& settings)
{
    int baud = 0;
    for (char c : settings) {
        if (c < '0' || c > '9') break;
        baud = baud * 10 + (c - '0');
        if (baud > 10'000'000) return 0;
    }
    return baud;
}

} // namespace kestra
