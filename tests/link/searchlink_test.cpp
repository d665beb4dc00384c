#include "link/searchlink.h"

#include "platform/fake/scripteddialogs.h"
#include "platform/fake/virtualscheduler.h"
#include "platform/unboundport.h"

#include <gtest/gtest.h>

using namespace kestra;

TEST(SearchLink, APortThatDoesNotOpenAndAScannerThatDoesNotAnswerAreToldInTheWindowsWords)
{
    UnboundPort port;
    VirtualScheduler scheduler;
    ScriptedDialogs dialogs;
    Settings settings;
    SearchLink link(port, scheduler, dialogs, settings, 3, 9600);
    EXPECT_FALSE(link.open());
    EXPECT_EQ(port.settings(), "9600,n,8,1");
    EXPECT_DOUBLE_EQ(link.delay(), 0.2);   // delay2 at 9600
    ModelSwitches model = ModelSwitches::of(Model::BC785D);
    EXPECT_FALSE(link.checkModel(SearchLink::Direction::Read, model));
    EXPECT_FALSE(link.checkModel(SearchLink::Direction::Send, model));
    ASSERT_EQ(dialogs.shown.size(), 3u);
    EXPECT_EQ(dialogs.shown[0].text, "The selected comport is already in use or not available in your system!");
    EXPECT_EQ(dialogs.shown[1].text,
              "No BC250/296/785/796 scanner detected at comport. Check baudrate/comport/ scanner is in remote mode");
    EXPECT_EQ(dialogs.shown[2].text, "No scanner detected at comport. Check baudrate/comport/BC250 is in remote mode");
    EXPECT_EQ(model, ModelSwitches::of(Model::BC785D));
}

TEST(SearchLink, StepMenuLinesFollowTheModelsList)
{
    EXPECT_EQ(searchModeItems()[3], "[4:NFM           ][*****");
    const auto plain = searchStepItems(ModelSwitches::of(Model::BC250D));
    ASSERT_EQ(plain.size(), 8u);
    EXPECT_EQ(plain[1], "[2:7.5KHz        ][*****");
    EXPECT_EQ(plain[7], "[8:AUTO          ][*****");
    const auto x96 = searchStepItems(ModelSwitches::of(Model::BC296D));
    ASSERT_EQ(x96.size(), 9u);
    EXPECT_EQ(x96[1], "[2:6.25KHz       ][*****");
    EXPECT_EQ(x96[8], "[9:AUTO          ][*****");
    const auto ubc = searchStepItems(ModelSwitches::of(Model::UBC3300));
    ASSERT_EQ(ubc.size(), 10u);
    EXPECT_EQ(ubc[5], "[6:20KHz         ][*****");
    EXPECT_EQ(ubc[9], "[0:AUTO          ][*****");
}
