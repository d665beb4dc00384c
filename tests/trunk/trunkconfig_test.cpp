// The trunk configuration's rules: a bank through loadsettings and
// savesettings, the coercions of fleetmaps and Base Configs, Clear This Bank
// and the All buttons.

#include "trunk/trunkconfig.h"

#include <gtest/gtest.h>

namespace kestra {
namespace {

using Blocks = std::array<std::string, 8>;

TrunkSystem bankOfType(int type)
{
    TrunkSystem system;
    system.trunktype = std::to_string(type);
    return system;
}

TEST(TrunkSettings, FleetmapCodesAreNormalisedInTheirOrder)
{
    struct Case {
        Blocks typed, saved;
    };
    const Case cases[] = {
        // 14 in block 0 fills the map.
        {{"14", "3", "5", "", "", "", "", ""}, {"14", "14", "14", "14", "14", "14", "14", "14"}},
        // 12 pairs up from even blocks only; 13 takes four blocks from block 4.
        // 99 is cut to 14 last, so in block 0 it does not fill the map.
        {{"99", "12", "12", "3", "13", "1", "0", "99"}, {"14", "12", "12", "12", "13", "13", "13", "13"}},
        // 13 in block 2 stays alone; pairs are made before anything is cut to 14.
        {{"12", "5", "13", "0", "12", "7", "1", "99"}, {"12", "12", "13", "0", "12", "12", "1", "14"}},
    };
    for (const Case& c : cases) {
        TrunkSystem system = bankOfType(trunktype::Type1);
        TrunkForm form = loadsettings(system, 1);
        EXPECT_EQ(form.fleetmap, kFleetmapNone);
        form.fleetmap = kFleetmapCustom;
        form.fleetBlocks = c.typed;
        savesettings(system, form);
        EXPECT_EQ(system.trunkblocks[0], c.saved);
        EXPECT_EQ(form.fleetBlocks, c.saved);   // the boxes show what was stored
        EXPECT_EQ(system.trunkfields[7], "0");
    }

    // A preset writes its codes; loading the bank again finds it.
    TrunkSystem system = bankOfType(trunktype::Type1);
    TrunkForm form = loadsettings(system, 1);
    chooseFleetmap(form, 6);
    savesettings(system, form);
    EXPECT_EQ(system.trunkfields[7], "6");
    EXPECT_EQ(system.trunkblocks[0], (Blocks{"3", "10", "4", "4", "12", "12", "12", "12"}));
    EXPECT_EQ(loadsettings(system, 1).fleetmap, 6);
}

TEST(TrunkSettings, BaseConfigsArePulledIntoTheBandWithStepAndOffsetFilledIn)
{
    TrunkSystem vhf = bankOfType(trunktype::Type2_VHF);
    TrunkForm form = loadsettings(vhf, 1);
    form.baseConfigs = {{{"100", "", ""}, {"0", "25", "500"}, {"150", "12.5", "400"}}};
    savesettings(vhf, form);
    // Below the band, filled in; no frequency, no step or offset; no config 3 without config 2.
    EXPECT_EQ(vhf.trunkblocks[0], (Blocks{"0136.0000", "012.5", "380", "", "", "", "", ""}));
    EXPECT_EQ(vhf.trunkblocks[1], (Blocks{"0", "", "", "", "", "", "", ""}));
    EXPECT_EQ(vhf.trunkblocks[2], (Blocks{"", "", "", "", "", "", "", ""}));
    EXPECT_EQ(form.baseConfigs[0], (BaseConfigBoxes{"0136.0000", "012.5", "380"}));

    TrunkSystem uhf = bankOfType(trunktype::Type2_UHF);
    form = loadsettings(uhf, 1);
    form.baseConfigs = {{{"600", "150", "900"}, {"451.5", "25", "12"}, {"406", "-3", "600"}}};
    savesettings(uhf, form);
    EXPECT_EQ(uhf.trunkblocks[0][0], "0512.0000");
    EXPECT_EQ(uhf.trunkblocks[0][1], "100.0");
    EXPECT_EQ(uhf.trunkblocks[0][2], "758");
    EXPECT_EQ(uhf.trunkblocks[1][0], "0451.5000");
    EXPECT_EQ(uhf.trunkblocks[1][1], "025.0");
    EXPECT_EQ(uhf.trunkblocks[1][2], "380");
    // A negative step is left as typed; with it the offset is not filled in, only kept in range.
    EXPECT_EQ(uhf.trunkblocks[2][1], "-3");
    EXPECT_EQ(uhf.trunkblocks[2][2], "600");

    // What was stored comes back unchanged through another load and save.
    const TrunkSystem stored = uhf;
    form = loadsettings(uhf, 1);
    savesettings(uhf, form);
    EXPECT_EQ(uhf, stored);
}

TEST(TrunkSettings, EachTypeLoadsAndSavesItsOwnFields)
{
    // Type 2 at 900 MHz: a stored 5 ticks Control Channel Only and is saved as 1.
    TrunkSystem t900 = bankOfType(trunktype::Type2_900);
    t900.trunkfields = {"5", "1", "1", "kept", "2", "3", "1", "17", "1", "1"};
    TrunkForm form = loadsettings(t900, 1);
    EXPECT_TRUE(form.controlChannelOnly);
    EXPECT_EQ(form.controlChannel, -1);
    EXPECT_EQ(form.icall, 2);
    EXPECT_EQ(form.delay, 3);
    savesettings(t900, form);
    EXPECT_EQ(t900.trunkfields, (std::array<std::string, 10>{"1", "1", "1", "kept", "2", "3", "1", "17", "1", "1"}));
    // The saved group's lists are left without selection.
    EXPECT_EQ(form.delay, -1);
    EXPECT_EQ(form.icall, -1);

    // Type 2 at 800 MHz: the list's plan is field 0; a value outside a list saves as -1.
    TrunkSystem t800 = bankOfType(trunktype::Type2_800);
    t800.trunkfields = {"3", "0", "7", "", "1", "", "0", "", "0", ""};
    form = loadsettings(t800, 1);
    EXPECT_EQ(form.controlChannel, 3);
    EXPECT_EQ(form.endCode, -1);
    form.controlChannelOnly = true;   // hidden on this type: no say
    savesettings(t800, form);
    EXPECT_EQ(t800.trunkfields[0], "3");
    EXPECT_EQ(t800.trunkfields[2], "-1");
    EXPECT_EQ(t800.trunkfields[5], "-1");
    EXPECT_EQ(t800.trunkfields[7], "17");

    // On the BC250D family a long-list delay is the one non-zero entry, in the store too.
    TrunkSystem edacs = bankOfType(trunktype::EdacsWide);
    edacs.trunkfields = {"x", "1", "x", "x", "0", "5", "0", "x", "1", "1"};
    form = loadsettings(edacs, 0);
    EXPECT_EQ(edacs.trunkfields[5], "1");
    EXPECT_EQ(form.delay, 1);
    EXPECT_EQ(form.idFormat, 1);
    EXPECT_TRUE(form.emergencyAlt);
    form.idFormat = -1;   // no choice keeps the ID format
    form.emergencyAlt = false;
    savesettings(edacs, form);
    EXPECT_EQ(edacs.trunkfields, (std::array<std::string, 10>{"x", "1", "x", "x", "0", "1", "0", "x", "1", "0"}));

    // LT keeps to delay, record and activity ID; types 0 and 9 store nothing.
    TrunkSystem lt = bankOfType(trunktype::LT);
    form = TrunkForm{};
    form.delay = 2;
    form.icall = 1;
    form.record = true;
    savesettings(lt, form);
    EXPECT_EQ(lt.trunkfields, (std::array<std::string, 10>{"", "", "", "", "", "2", "1", "", "0", ""}));
    for (int type : {trunktype::Unknown, trunktype::EdacsSCT}) {
        TrunkSystem none = bankOfType(type);
        const TrunkSystem before = none;
        savesettings(none, form);
        EXPECT_EQ(none, before);
    }
}

TEST(TrunkSettings, ClearThisBankKeepsTypeActivityIdAndEmergencyAlt)
{
    TrunkSystem system = bankOfType(trunktype::EdacsNarrow);
    for (int n = 0; n < 10; ++n) system.trunkfields[n] = std::to_string(n % 2);
    for (auto& slot : system.trunkblocks) slot.fill("4");
    clearTrunkBank(system);
    EXPECT_EQ(system.trunktype, "7");
    EXPECT_EQ(system.trunkfields, (std::array<std::string, 10>{"", "", "", "", "", "", "", "", "0", "1"}));
    for (const auto& slot : system.trunkblocks) EXPECT_EQ(slot, Blocks{});
}

TEST(TrunkSettings, AllButtonsReachTheBanksOfTheirKind)
{
    std::array<TrunkSystem, kChannelBanks> banks;
    const int types[kChannelBanks] = {1, 2, 3, 3, 6, 7, 8, 0, 4, 9};
    for (int b = 0; b < kChannelBanks; ++b) {
        banks[b] = bankOfType(types[b]);
        banks[b].trunkfields.fill("x");
    }
    TrunkForm form;
    form.delay = 4;
    form.controlChannel = 2;
    form.controlChannelOnly = true;
    form.idFormat = 1;

    applyToAllBanks(banks, AllButton::Delay, trunktype::LT, form);
    applyToAllBanks(banks, AllButton::IdFormat, trunktype::EdacsWide, form);
    // From a Type 1 bank the list counts, for Type 1 and Type 2 800 banks only.
    applyToAllBanks(banks, AllButton::ControlChannel, trunktype::Type1, form);
    for (int b = 0; b < kChannelBanks; ++b) {
        SCOPED_TRACE(b);
        const auto& f = banks[b].trunkfields;
        EXPECT_EQ(f[5], "4");
        EXPECT_EQ(f[1], types[b] == 6 || types[b] == 7 ? "1" : "x");
        EXPECT_EQ(f[0], types[b] == 1 || types[b] == 2 ? "2" : "x");
    }
    // From a Type 2 900 bank the box counts, for its own kind only.
    applyToAllBanks(banks, AllButton::ControlChannel, trunktype::Type2_900, form);
    EXPECT_EQ(banks[2].trunkfields[0], "1");
    EXPECT_EQ(banks[3].trunkfields[0], "1");
    EXPECT_EQ(banks[0].trunkfields[0], "2");
}

} // namespace
} // namespace kestra
