#include "portsetup.h"

#include "vocabulary.h"

#include "core/memfile.h"
#include "core/text.h"

#include <algorithm>

namespace kestra {

std::string com250Text(const ComSettings& com)
{
    return "[com]\r\nport=" + std::to_string(com.port) + "\r\nbaud=" + std::to_string(com.baud) +
           "\r\nusbc=" + std::to_string(com.usbc == 1 ? 1 : 0) + "\r\n";
}

std::string writeCom250(const ComSettings& com, const std::filesystem::path& folder)
{
    return writeFileAtomic(folder / "com250.ini", com250Text(com));
}

std::string comportMessage(int port)
{
    if (port >= 1 && port <= kMaxComPort) return {};
    return "The comport setting in the communication .ini file is wrong. Value is set at: " + std::to_string(port) +
           ". Value must be between 1 and 19. Please run the commmunication setup program.";
}

Model modelOfOption(int option)
{
    static constexpr Model models[5] = {Model::BC250D, Model::BC785D, Model::BC296D, Model::BC796D, Model::UBC3300};
    return models[std::clamp(option, 0, 4)];
}

int optionOfModel(Model model)
{
    for (int i = 0; i < 5; ++i)
        if (modelOfOption(i) == model) return i;
    return 0;
}

int clampOtherPort(std::string_view typed) { return static_cast<int>(std::clamp<long long>(IntVal(typed), 1, kMaxComPort)); }

SetupResult applySetup(const SetupChoice& choice)
{
    SetupResult r;
    r.model = ModelSwitches::of(modelOfOption(choice.modelOption));
    r.com.baud = kBaudRates[std::clamp(choice.baudIndex, 0, 4)];
    if (r.model.x96 == 0 && r.com.baud >= 19201) {
        r.message = "BC250/785 only supports 4800/9600/19200 baud, setting changed to 19200";
        r.com.baud = 19200;
    } else if (r.model.ubc33 == 1 && r.com.baud >= 19201) {
        r.message = "UBC3300 only supports 4800/9600/19200 baud, setting changed to 19200";
        r.com.baud = 19200;
    }
    r.com.port = std::clamp(choice.port, 1, kMaxComPort);
    r.com.usbc = choice.usb ? 1 : 0;
    return r;
}

namespace {
// The words of each model in a reply to "SI", and the speeds it is tried at.
struct ModelWords {
    const char* first;
    const char* second;
    bool fast;  // tried at 38400 and 57600 too
};
constexpr ModelWords kWords[5] = {
    {"BC", "250", false}, {"BC", "785", false}, {"BC", "296", true}, {"BC", "796", true}, {"UBC", "3300", false}};
} // namespace

DetectResult autodetect(const PortFactory& ports, Scheduler& scheduler, const ModelSwitches& current, int currentBaud)
{
    DetectResult r;
    r.switches = current;
    r.baud = currentBaud;
    r.messages.push_back(kDetectAdvice);
    std::vector<int> available;
    for (int n = 1; n <= kMaxComPort; ++n) {
        auto port = ports(n);
        if (!port) continue;
        port->setCommPort(n);
        port->setSettings("9600,n,8,1");
        if (port->open() == SerialPort::OpenResult::Ok) available.push_back(n);
        port->close();
    }
    for (int n : available) {
        auto port = ports(n);
        if (!port) continue;
        for (int baud : kBaudRates) {
            port->setCommPort(n);
            port->setSettings(std::to_string(baud) + ",n,8,1");
            if (port->open() != SerialPort::OpenResult::Ok) continue;
            port->setRThreshold(0);
            port->input();
            port->output(std::string(wire::kModel) + wire::kCrLf);
            scheduler.wait(0.2);
            port->output(std::string(wire::kModel) + wire::kCrLf);
            scheduler.wait(0.2);
            const std::string reply = port->input();
            r.lastReply = reply;
            for (int m = 0; m < 5; ++m) {
                const ModelWords& w = kWords[m];
                if (baud > 19200 && !w.fast) continue;
                if (contains(reply, w.first) && contains(reply, w.second)) {
                    r.found = true;
                    r.port = n;
                    r.baud = baud;
                    r.model = m;
                }
            }
            port->close();
        }
    }
    if (r.found && r.model < 5) {
        r.messages.push_back(kDetected);
        switch (r.model) {
        case 0: r.switches = {0, 0, 0}; break;
        case 1: r.switches = {1, 0, 0}; break;
        case 2: r.switches = {0, 1, 0}; break;
        case 3: r.switches = {1, 1, 0}; break;
        default: r.switches = {0, 0, 1}; break;  // a later OK puts x96 right
        }
    } else {
        r.messages.push_back(r.lastReply);
        r.messages.push_back(kNotDetected);
    }
    if (r.baud != 19200 && r.switches.x96 == 0) r.messages.push_back("For best performance, use 19200 baudrate setting.");
    return r;
}

ModelCheck modelcheck(SerialPort& port, Scheduler& scheduler, const ModelSwitches& current)
{
    ModelCheck c;
    c.model = current;
    port.setRThreshold(0);
    port.input();
    port.output(std::string(wire::kModel) + wire::kCrLf);
    scheduler.wait(0.3);
    port.output(std::string(wire::kModel) + wire::kCrLf);
    scheduler.wait(0.3);
    const std::string rx = port.input();
    for (const char* name : {"UBC3300", "BC250D", "BC785D", "BC796D", "BC296D"})
        if (contains(rx, name)) c.scannerfound = true;
    const bool ubc = contains(rx, "UBC3300");
    if (ubc || contains(rx, "BC250D") || contains(rx, "BC296D")) c.model.bc785d = 0;
    if (contains(rx, "BC785D") || contains(rx, "BC796D")) c.model.bc785d = 1;
    if (ubc || contains(rx, "BC250D") || contains(rx, "BC785D")) c.model.x96 = 0;
    if (contains(rx, "BC296D") || contains(rx, "BC796D")) c.model.x96 = 1;
    if (ubc) {
        c.model = {0, 1, 1};
        c.scannerfound = true;
    } else {
        c.model.ubc33 = 0;
    }
    return c;
}

std::string noScannerMessage(CheckedTransfer transfer)
{
    switch (transfer) {
    case CheckedTransfer::Read: return "No scanner detected at comport. Check baudrate/comport/scanner is in remote mode";
    case CheckedTransfer::Send: return "No scanner detected at comport. Check baudrate/comport/scanner is in remote mode.";
    case CheckedTransfer::DeleteBank: return "No scanner detected at comport. Check baudrate/comport is in remote mode";
    }
    return {};
}

} // namespace kestra
