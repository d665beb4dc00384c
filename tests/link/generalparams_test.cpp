// The general parameters, FIPS codes and reset on the virtual scanner, for
// both families' menus and exit keys.

#include "link/generalparams.h"

#include "support/scannerline.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace kestra {
namespace {

TEST(GeneralParams, ReadSendFipsAndResetAgreeWithTheScanner)
{
    for (Model model : {Model::BC250D, Model::BC796D, Model::UBC3300}) {
        SCOPED_TRACE(sim::modelInfo(model).name);
        test::ScannerLine line(model);
        sim::VirtualScanner& scanner = line.scanner;
        std::vector<std::string>& sent = line.sent;
        ExchangeEngine& engine = line.engine;
        const int bc785d = ModelSwitches::of(model).bc785d;
        engine.openForm(bc785d);
        GeneralParams params(engine, bc785d);

        sim::GeneralParameters& general = scanner.memory().general;
        general = {1, 1, true, false, true, true, 2, 1, 1};
        scanner.memory().fips[0] = "012345";
        scanner.memory().fips[11] = "999001";
        int steps = 0;
        ASSERT_TRUE(params.read([&](int step) { steps = step; }));
        EXPECT_EQ(steps, 11);
        // The APCO card's entry is on the x96 models only: elsewhere the walk finds nothing.
        const bool x96 = ModelSwitches::of(model).x96 == 1;
        EXPECT_EQ(params.values, (std::array<int, kGeneralOptions>{1, 1, 0, 1, 0, 0, 2, x96 ? 1 : -1, 1}));
        EXPECT_EQ(params.fips[0], "012345");
        EXPECT_EQ(params.fips[11], "999001");
        EXPECT_EQ(params.fips[1], "") << "000000 shows blank";
        EXPECT_NE(std::find(sent.begin(), sent.end(), "FP 09"), sent.end());
        EXPECT_NE(std::find(sent.begin(), sent.end(), "FP 10"), sent.end()) << "from ten without the zero";
        EXPECT_TRUE(scanner.display().text[0].find("SYSTEM OPTION") == std::string::npos) << "the walks left the menu";

        // Choices back the other way; the option never read stays as it is.
        params.values = {0, 0, 1, 0, 1, 1, 0, 0, -1};
        std::array<std::string, 16> codes{};
        codes[3] = "123456";
        codes[12] = "654321";
        ASSERT_TRUE(params.send(codes));
        EXPECT_EQ(general.dimmerLight, 0);
        EXPECT_EQ(general.dimmerTime, 0);
        EXPECT_FALSE(general.screenMask);
        EXPECT_TRUE(general.keyBeep);
        EXPECT_FALSE(general.enterLock);
        EXPECT_FALSE(general.dataSkip);
        EXPECT_EQ(general.sqMode, 0);
        EXPECT_EQ(general.apcoCard, x96 ? 0 : 1);
        EXPECT_EQ(general.clone, 1);
        EXPECT_EQ(scanner.memory().fips[2], "123456");  // box and slot 3
        EXPECT_EQ(scanner.memory().fips[11], "654321");
        EXPECT_EQ(scanner.memory().fips[0], "") << "a code not stored goes as 000000";

        // Store: the boxes into fipscodes and the scanner.
        params.showFips(codes);
        params.fips[14] = "777777";
        ASSERT_TRUE(params.storeFips(codes));
        EXPECT_EQ(codes[15], "777777");
        EXPECT_EQ(codes[1], "000000");
        EXPECT_EQ(scanner.memory().fips[14], "777777");

        // Reset: only "RESET", and only when the user says yes.
        scanner.memory().channel(5).freq = 1550000;
        const std::size_t before = sent.size();
        EXPECT_FALSE(params.reset("reset", [] { return true; }));
        EXPECT_FALSE(params.reset("RESET", [] { return false; }));
        EXPECT_EQ(sent.size(), before);
        EXPECT_TRUE(params.reset("RESET", [] { return true; }));
        EXPECT_EQ(sent.back(), "AC");
        EXPECT_TRUE(scanner.memory().channel(5).empty());
    }
}

} // namespace
} // namespace kestra
