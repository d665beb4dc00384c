// Priority channels, the bank tags' update and Easy Program on the virtual
// scanner, each command followed by its delay.

#include "link/quicklink.h"

#include "support/scannerline.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace kestra {
namespace {

TEST(QuickLink, PrioritiesBankTagsAndEasyProgramReachTheScanner)
{
    test::ScannerLine line(Model::BC785D);
    sim::VirtualScanner& scanner = line.scanner;
    std::vector<std::string>& sent = line.sent;
    ExchangeEngine& engine = line.engine;
    engine.openport();
    ASSERT_TRUE(quick::wakeUp(engine, 1, false));
    EXPECT_EQ(sent, (std::vector<std::string>{"KEY09", "IDF", "CDF", "QUF"}));

    scanner.memory().priority[1] = 140;
    scanner.memory().priority[9] = 1000;
    quick::PriorityFields fields;
    ASSERT_TRUE(quick::readPriorities(engine, fields));
    EXPECT_EQ(fields[1], "140");
    EXPECT_EQ(fields[9], "000");
    // 0, empty and out of the bank's range become the bank's first channel.
    fields[0] = "0";
    fields[2] = "";
    fields[3] = "150";
    fields[4] = "455";
    ASSERT_TRUE(quick::sendPriorities(engine, fields));
    EXPECT_EQ((std::vector<std::string>{fields[0], fields[2], fields[3], fields[4]}),
              (std::vector<std::string>{"1", "201", "301", "455"}));
    EXPECT_EQ(scanner.memory().priority[0], 1);
    EXPECT_EQ(scanner.memory().priority[3], 301);
    EXPECT_EQ(scanner.memory().priority[4], 455);
    EXPECT_EQ(scanner.memory().priority[9], 1000) << "000 is channel 1000";
    EXPECT_NE(std::find(sent.begin(), sent.end(), "PC A001"), sent.end());

    std::array<std::string, 12> tags{};
    tags[0] = "County";
    tags[9] = "Aviation";
    ASSERT_TRUE(quick::updateBankTags(engine, tags));
    EXPECT_EQ(scanner.memory().bankTags[0], "County");
    EXPECT_EQ(scanner.memory().bankTags[9], "Aviation");

    // Easy Program over a bank boundary: flags change, frequencies stay.
    for (int c = 98; c <= 103; ++c) scanner.memory().channel(c).freq = 1550000 + c * 125;
    quick::EasyChoices choices;
    choices.delay = true;
    choices.delayIndex = 3;  // 4 sec
    choices.lockout = choices.lockoutOn = true;
    choices.atten = true;
    choices.attenOn = true;
    EXPECT_FALSE(quick::easyProgram(engine, 103, 98, choices)) << "the end under the start does nothing";
    ASSERT_TRUE(quick::easyProgram(engine, 99, 102, choices));
    for (int c = 99; c <= 102; ++c) {
        const sim::Channel& ch = scanner.memory().channel(c);
        EXPECT_EQ(ch.delay, 3) << c;
        EXPECT_TRUE(ch.lockout) << c;
        EXPECT_TRUE(ch.atten) << c;
        EXPECT_EQ(ch.freq, 1550000 + c * 125) << c;
    }
    EXPECT_FALSE(scanner.memory().channel(103).atten);
    int stopsAfter = 0;
    ASSERT_FALSE(quick::easyProgram(engine, 1, 1000, choices, [&] { return ++stopsAfter > 2; }));
    EXPECT_EQ(stopsAfter, 3) << "the closing window is noticed at the next channel";
}

} // namespace
} // namespace kestra
