#include "link/portsetup.h"

#include "platform/fake/virtualscheduler.h"
#include "sim/virtualport.h"
#include "support/testfiles.h"

#include <gtest/gtest.h>

#include <map>
#include <tuple>

using namespace kestra;

namespace {

// A device on a port that answers "SI" at its own speed.
std::shared_ptr<VirtualDevice> scannerAt(int baud, const std::string& model)
{
    auto device = std::make_shared<VirtualDevice>();
    auto partial = std::make_shared<std::string>();
    device->respond = [partial, model](std::string_view bytes) {
        std::string reply;
        for (char c : bytes) {
            if (c == '\n') continue;
            if (c != '\r') {
                *partial += c;
                continue;
            }
            reply += *partial == "SI" ? "SI " + model + ",0000000000,104\r" : std::string("ERR\r");
            partial->clear();
        }
        return reply;
    };
    device->baud = [baud] { return baud; };
    return device;
}

struct Bench {
    VirtualScheduler scheduler;
    std::map<int, std::shared_ptr<VirtualDevice>> devices;
    PortFactory factory = [this](int n) -> std::unique_ptr<SerialPort> {
        auto it = devices.find(n);
        if (it == devices.end()) return nullptr;
        return std::make_unique<VirtualPort>(scheduler, it->second);
    };
};

} // namespace

TEST(Autodetect, TheLastPortAndSpeedThatAnswerWin)
{
    Bench b;
    b.devices[2] = scannerAt(4800, "BC296D");
    b.devices[5] = scannerAt(19200, "BC250D");
    b.devices[7] = scannerAt(9600, "nothing here");
    const DetectResult r = autodetect(b.factory, b.scheduler, ModelSwitches::of(Model::UBC3300), 19200);
    ASSERT_TRUE(r.found);
    EXPECT_EQ(std::tie(r.port, r.baud, r.model), std::make_tuple(5, 19200, 0));
    EXPECT_EQ(r.switches, ModelSwitches::of(Model::BC250D));
    ASSERT_EQ(r.messages.size(), 2u);
    EXPECT_EQ(r.messages[1], kDetected);
    // Five speeds on three ports, two "SI" each, 0.2 s after each.
    EXPECT_NEAR(static_cast<double>(b.scheduler.now()), 3 * 5 * 400, 200);
}

TEST(Autodetect, FastSpeedsFindOnlyTheX96Models)
{
    Bench b;
    b.devices[1] = scannerAt(38400, "BC250D");
    DetectResult r = autodetect(b.factory, b.scheduler, ModelSwitches::of(Model::BC250D), 9600);
    EXPECT_FALSE(r.found);
    ASSERT_EQ(r.messages.size(), 4u);
    EXPECT_EQ(r.messages[2], kNotDetected);
    EXPECT_EQ(r.messages[3], "For best performance, use 19200 baudrate setting.");

    b.devices[1] = scannerAt(57600, "BC796D");
    r = autodetect(b.factory, b.scheduler, ModelSwitches::of(Model::BC250D), 19200);
    ASSERT_TRUE(r.found);
    EXPECT_EQ(r.baud, 57600);
    EXPECT_EQ(r.switches, ModelSwitches::of(Model::BC796D));

    b.devices[1] = scannerAt(9600, "UBC3300");
    r = autodetect(b.factory, b.scheduler, ModelSwitches::of(Model::BC796D), 19200);
    ASSERT_TRUE(r.found);
    EXPECT_EQ(r.model, 4);
    EXPECT_EQ(r.switches, (ModelSwitches{0, 0, 1}));  // x96 is put right by a later OK
}

TEST(Autodetect, APortInUseIsPassedOver)
{
    Bench b;
    b.devices[3] = scannerAt(19200, "BC785D");
    b.devices[3]->held = true;
    EXPECT_FALSE(autodetect(b.factory, b.scheduler, ModelSwitches::of(Model::BC785D), 19200).found);
}

TEST(PortSetup, OkKeepsSpeedsTheModelCanDo)
{
    SetupResult r = applySetup({0, 3, 4, true});
    EXPECT_EQ(r.message, "BC250/785 only supports 4800/9600/19200 baud, setting changed to 19200");
    EXPECT_EQ(std::tie(r.com.baud, r.com.usbc), std::make_tuple(19200, 1));
    EXPECT_EQ(r.model, ModelSwitches::of(Model::BC250D));
    r = applySetup({4, 1, 3, false});
    EXPECT_EQ(r.message, "UBC3300 only supports 4800/9600/19200 baud, setting changed to 19200");
    EXPECT_EQ(r.model, (ModelSwitches{0, 1, 1}));
    r = applySetup({3, 1, 4, false});
    EXPECT_EQ(r.message, "");
    EXPECT_EQ(r.com.baud, 57600);
    const std::pair<const char*, int> ports[] = {{"25", 19}, {"0", 1}, {"twelve", 1}, {"12", 12}};
    for (const auto& [typed, port] : ports) EXPECT_EQ(clampOtherPort(typed), port) << typed;
    EXPECT_EQ(com250Text({12, 9600, 1}), "[com]\r\nport=12\r\nbaud=9600\r\nusbc=1\r\n");
    kestra::test::TempDir dir;
    ASSERT_EQ(writeCom250({4, 4800, 0}, dir.path()), "");
    const ComSettings back = readCom250(dir.path());
    EXPECT_EQ(std::tie(back.port, back.baud), std::make_tuple(4, 4800));
}

TEST(PortSetup, StartUpRules)
{
    EXPECT_EQ(comportMessage(1), "");
    EXPECT_EQ(comportMessage(20), "The comport setting in the communication .ini file is wrong. Value is set at: 20. "
                                  "Value must be between 1 and 19. Please run the commmunication setup program.");
    EXPECT_EQ(allowedBaud(57600, ModelSwitches::of(Model::BC785D)), 19200);
    EXPECT_EQ(allowedBaud(38400, ModelSwitches::of(Model::UBC3300)), 19200);
    EXPECT_EQ(allowedBaud(38400, ModelSwitches::of(Model::BC296D)), 38400);
    EXPECT_EQ(allowedBaud(4800, ModelSwitches::of(Model::BC250D)), 4800);
}

TEST(ModelCheck, TheModelOnTheCableOverrulesTheChoice)
{
    VirtualScheduler scheduler;
    for (const auto& [name, expected] : std::vector<std::pair<std::string, ModelSwitches>>{
             {"BC796D", {1, 1, 0}}, {"BC250D", {0, 0, 0}}, {"UBC3300", {0, 1, 1}}, {"BC296D", {0, 1, 0}}}) {
        VirtualPort port(scheduler, scannerAt(19200, name));
        port.open();
        const ModelCheck c = modelcheck(port, scheduler, ModelSwitches::of(Model::BC785D));
        EXPECT_TRUE(c.scannerfound) << name;
        EXPECT_EQ(c.model, expected) << name;
    }
    VirtualPort silent(scheduler, scannerAt(4800, "BC250D"));  // the wrong speed: garbage
    silent.open();
    const ModelCheck none = modelcheck(silent, scheduler, ModelSwitches::of(Model::BC785D));
    EXPECT_FALSE(none.scannerfound);
    EXPECT_EQ(noScannerMessage(CheckedTransfer::Send),
              "No scanner detected at comport. Check baudrate/comport/scanner is in remote mode.");
}
