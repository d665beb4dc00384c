// The trunk settings of the banks to the virtual scanner and back, on every
// model: what the scanner hears for one bank, a round trip of every trunk
// type, and walks that meet a menu other than the one they expect.

#include "link/trunksettingslink.h"

#include "core/trunkcodes.h"
#include "sim/documentmapping.h"
#include "support/scannerline.h"

#include <gtest/gtest.h>

#include <initializer_list>

namespace kestra {
namespace {

constexpr Model kModels[] = {Model::BC250D, Model::BC296D, Model::UBC3300, Model::BC785D, Model::BC796D};

struct Rig {
    test::ScannerLine line;
    Document doc;
    explicit Rig(Model model) : line(model)
    {
        doc.model = ModelSwitches::of(model);
        line.engine.openForm(doc.model.bc785d);
        line.sent.clear();
    }
    int bc785d() const { return doc.model.bc785d; }
    std::vector<std::string> sentSince(std::size_t from) const
    {
        return {line.sent.begin() + static_cast<std::ptrdiff_t>(from), line.sent.end()};
    }
};

void setBank(Document& doc, int bank, int type, std::initializer_list<std::pair<int, const char*>> fields)
{
    TrunkSystem& t = doc.trunkset[static_cast<std::size_t>(bank)];
    t = TrunkSystem{};
    t.trunktype = std::to_string(type);
    for (const auto& [field, value] : fields) t.trunkfields[static_cast<std::size_t>(field)] = value;
}

// The walk to one item of bank `bankKey` ("KEY02 3"): exit, MENU 2 2, the
// bank, the item's keys, the look at line 2, then what follows.
std::vector<std::string> itemWalk(const std::string& exit, const std::string& bankKey,
                                  std::initializer_list<std::string> itemKeys, std::initializer_list<std::string> then)
{
    std::vector<std::string> keys = {exit, "KEY11", "KEY02 2", "KEY02 2", bankKey};
    keys.insert(keys.end(), itemKeys);
    keys.insert(keys.end(), then);
    return keys;
}

void append(std::vector<std::string>& to, const std::vector<std::string>& more) { to.insert(to.end(), more.begin(), more.end()); }

TEST(TrunkSettingsLink, OneBankGoesOutAndComesBackInTheOrderOfItsSteps)
{
    // BC2xx: bank 3 of Type 1 with fleetmap Preset 3, whose 12 in block 6 ends the FB line.
    {
        Rig rig(Model::BC250D);
        setBank(rig.doc, 2, trunktype::Type1,
                {{0, "2"}, {1, "1"}, {2, "0"}, {4, "2"}, {5, "2"}, {7, "3"}, {8, "1"}});
        rig.doc.trunkset[2].trunkblocks[0] = {"4", "4", "4", "4", "4", "4", "12", "12"};
        TrunkSettingsLink link(rig.line.engine, rig.doc);
        ASSERT_TRUE(link.send({2}));
        std::vector<std::string> expected = {"KEY07", "TBN C", "TR C 1", "TBNC", "FB C 04 04 04 04 04 04 12"};
        for (const auto& [digit, value] : {std::pair{"4", "1"}, {"7", "1"}, {"8", "3"}, {"9", "1"}, {"0", "2"}})
            append(expected, itemWalk("KEY07", "KEY02 3", {std::string("KEY02 ") + digit, "LCD2"},
                                      {std::string("KEY02 ") + value, "KEY07"}));
        append(expected, {"TCN C P2", "KEY07"});
        EXPECT_EQ(rig.line.sent, expected);
        EXPECT_EQ(rig.doc.trunkset[2].trunkblocks[0][0], "04") << "a one-digit code is kept with its zero";
        EXPECT_EQ(rig.line.scanner.memory().trunk[2].fleet, fleetmapPresets()[2]);

        Document empty;
        empty.model = rig.doc.model;
        empty.trunkset[2].trunktype = "2";
        TrunkSettingsLink back(rig.line.engine, empty);
        const std::size_t from = rig.line.sent.size();
        ASSERT_TRUE(back.read({2}));
        expected = {"TBN C", "TC C"};
        for (const auto& [digit, line] : {std::pair{"9", "LCD3"}, {"0", "LCD3"}, {"7", "LCD3"}, {"8", ""}, {"4", "LCD3"}}) {
            if (*line)
                append(expected, itemWalk("KEY07", "KEY02 3", {std::string("KEY02 ") + digit, "LCD2"}, {line, "KEY07"}));
            else
                append(expected, itemWalk("KEY07", "KEY02 3", {std::string("KEY02 ") + digit, "LCD"}, {"KEY07"}));
        }
        for (int n = 0; n < 8; ++n) expected.push_back("FB C " + std::to_string(n));
        expected.push_back("KEY07");
        EXPECT_EQ(rig.sentSince(from), expected);
        EXPECT_EQ(empty.trunkset[2], rig.doc.trunkset[2]);
    }
    // BC7xx: bank 10 of Type 2 UHF with two Base Configs and an empty third.
    {
        Rig rig(Model::BC796D);
        setBank(rig.doc, 9, trunktype::Type2_UHF, {{1, "0"}, {2, "1"}, {4, "1"}, {5, "5"}, {6, "1"}, {8, "0"}});
        auto& blocks = rig.doc.trunkset[9].trunkblocks;
        blocks[0] = {"406.125", "012.5", "380"};
        blocks[1] = {"0410.0000", "25", "400"};
        TrunkSettingsLink link(rig.line.engine, rig.doc);
        ASSERT_TRUE(link.send({9}));
        std::vector<std::string> expected = {"MA001", "KEY09", "TBN J", "TR J 4 04061250 0125 380 1",
                                             "TR J 4 04100000 0250 400 2", "TR J 4 00000000 0000 000 3"};
        for (const auto& [digit, value] : {std::pair{"4", "6"}, {"5", "1"}, {"8", "2"}, {"9", "1"}, {"0", "2"}})
            append(expected, itemWalk("KEY09", "KEY02 0", {std::string("KEY02 ") + digit, "LCD2"},
                                      {std::string("KEY02 ") + value, "KEY09"}));
        append(expected, itemWalk("KEY09", "KEY02 0", {"KEY07", "KEY04", "LCD2"}, {"KEY02 1", "KEY09"}));
        expected.push_back("KEY09");
        EXPECT_EQ(rig.line.sent, expected);
        EXPECT_EQ(blocks[0][0], "0406.1250") << "the padded frequency goes back into the store";
        EXPECT_EQ(blocks[2][0], "0000.0000");
        const sim::TrunkBank& t = rig.line.scanner.memory().trunk[9];
        EXPECT_EQ(t.kind, sim::TrunkKind::Type2_Uhf);
        EXPECT_EQ(t.delay, 5);
        EXPECT_TRUE(t.endCodeDetect && t.record && t.icall == 1 && !t.activityId && !t.statusBit);

        Document empty;
        empty.model = rig.doc.model;
        empty.trunkset[9].trunktype = "4";
        TrunkSettingsLink back(rig.line.engine, empty);
        const std::size_t from = rig.line.sent.size();
        ASSERT_TRUE(back.read({9}));
        expected = {"TBN J"};
        append(expected, itemWalk("KEY09", "KEY02 0", {"KEY02 0", "LCD2"}, {"LCD3", "KEY09"}));
        append(expected, itemWalk("KEY09", "KEY02 0", {"KEY07", "KEY04", "LCD2"}, {"LCD3", "KEY09"}));
        append(expected, itemWalk("KEY09", "KEY02 0", {"KEY02 8", "LCD2"}, {"LCD3", "KEY09"}));
        append(expected, itemWalk("KEY09", "KEY02 0", {"KEY02 9", "LCD"}, {"KEY09"}));
        append(expected, itemWalk("KEY09", "KEY02 0", {"KEY02 4", "LCD"}, {"KEY09"}));
        append(expected, itemWalk("KEY09", "KEY02 0", {"KEY02 5", "LCD2"}, {"LCD3", "KEY09"}));
        std::vector<std::string> base = {"KEY09", "KEY11", "KEY02 2", "KEY02 2", "KEY02 0"};
        for (int value = 0; value < 7; ++value) append(base, {"KEY04", "LCD2"});
        append(base, {"KEY09", "KEY09", "KEY01"});
        append(expected, base);
        EXPECT_EQ(rig.sentSince(from), expected);
        blocks[1][1] = "025.0";  // the step comes back in the form the scanner shows it
        EXPECT_EQ(empty.trunkset[9], rig.doc.trunkset[9]);
    }
}

// A bank of every type, each setting away from what an empty scanner holds.
Document everyType(ModelSwitches model)
{
    Document doc;
    doc.model = model;
    const bool bc7 = model.bc785d == 1;
    const char* delay = bc7 ? "3" : "2";
    setBank(doc, 0, trunktype::Unknown, {});
    setBank(doc, 1, trunktype::Type2_800, {{0, "4"}, {1, "1"}, {2, "1"}, {4, "1"}, {5, delay}, {6, "1"}, {8, "1"}});
    setBank(doc, 2, trunktype::Type1, {{0, "0"}, {1, "0"}, {2, "1"}, {4, "2"}, {5, "0"}, {6, "0"}, {7, "0"}, {8, "1"}});
    doc.trunkset[2].trunkblocks[0] = {"3", "10", "4", "4", "13", "13", "13", "13"};
    setBank(doc, 3, trunktype::Type2_900, {{0, "1"}, {1, "1"}, {2, "0"}, {4, "0"}, {5, delay}, {6, "1"}, {8, "0"}});
    setBank(doc, 4, trunktype::Type2_UHF, {{1, "1"}, {2, "1"}, {4, "2"}, {5, "0"}, {6, "0"}, {8, "1"}});
    doc.trunkset[4].trunkblocks[0] = {"0451.0250", "006.2", "380"};
    doc.trunkset[4].trunkblocks[1] = {"0", "", ""};
    doc.trunkset[4].trunkblocks[2] = {"0460.5000", "025.0", "758"};
    setBank(doc, 5, trunktype::Type2_VHF, {{1, "0"}, {2, "1"}, {4, "1"}, {5, delay}, {6, "1"}, {8, "1"}});
    doc.trunkset[5].trunkblocks[0] = {"0155.5000", "012.5", "400"};
    // EDACS: the BC2xx family reads an on Delay as "1", and sends only "0" and "2".
    const char* edacsDelay = bc7 ? "7" : "1";
    setBank(doc, 6, trunktype::EdacsWide, {{1, "1"}, {4, "2"}, {5, edacsDelay}, {6, "1"}, {8, "1"}, {9, "1"}});
    setBank(doc, 7, trunktype::EdacsNarrow, {{1, "0"}, {4, "1"}, {5, "0"}, {6, "0"}, {8, "0"}, {9, "1"}});
    setBank(doc, 8, trunktype::LT, {{5, bc7 ? "6" : "2"}, {6, "1"}, {8, "1"}});
    setBank(doc, 9, trunktype::EdacsSCT, {{1, "1"}, {4, "1"}, {5, "0"}, {6, "1"}, {8, "1"}, {9, "0"}});
    if (!bc7)
        for (auto& t : doc.trunkset) t.trunkfields[6].clear();  // no Record item on this family
    return doc;
}

TEST(TrunkSettingsLink, EveryTypeRoundTripsOnEveryModel)
{
    const std::vector<int> all = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9};
    for (Model model : kModels) {
        SCOPED_TRACE(sim::modelInfo(model).name);
        Rig rig(model);
        const bool bc7 = rig.bc785d() == 1;
        rig.doc = everyType(rig.doc.model);
        TrunkSettingsLink link(rig.line.engine, rig.doc);
        ASSERT_TRUE(link.send(all)) << rig.line.engine.status.text3;
        EXPECT_EQ(link.repairs(), 0);

        const auto& memory = rig.line.scanner.memory();
        EXPECT_FALSE(memory.trunk[0].on) << "a bank of type Unknown gets nothing";
        EXPECT_EQ(memory.trunk[2].kind, sim::TrunkKind::Type1);
        EXPECT_EQ(memory.trunk[8].kind, sim::TrunkKind::Ltr);
        EXPECT_EQ(memory.trunk[9].kind, sim::TrunkKind::EdacsSct);
        EXPECT_EQ(memory.trunk[1].controlChannel, 4);
        EXPECT_EQ(memory.trunk[2].fleet, (std::array<int, 8>{3, 10, 4, 4, 13, 13, 13, 13}));
        EXPECT_TRUE(memory.trunk[4].base[1].empty());
        EXPECT_EQ(memory.trunk[4].base[2].offset, 758);
        const auto words = [&] {
            std::string all;
            for (const auto& s : rig.line.sent) all += s + "|";
            return all;
        }();
        EXPECT_NE(words.find("FB C 03 10 04 04 13|"), std::string::npos) << "the 13 of block 4 fills the rest";
        EXPECT_EQ(words.find("TBN A"), std::string::npos);

        // Read into a document that knows only the types (the opening reads' part).
        Document back;
        back.model = rig.doc.model;
        for (int b = 0; b < 10; ++b) back.trunkset[b].trunktype = rig.doc.trunkset[b].trunktype;
        // An EDACS Delay the scanner has on: "1" on the BC2xx family, the list's index on the BC7xx.
        rig.line.scanner.memory().trunk[7].delay = 2;
        TrunkSettingsLink reader(rig.line.engine, back);
        ASSERT_TRUE(reader.read(all)) << rig.line.engine.status.text3;
        EXPECT_EQ(rig.line.engine.status.text3, "Reading fleetmap: 3");

        Document expected = rig.doc;
        expected.trunkset[7].trunkfields[5] = bc7 ? "2" : "1";
        if (!bc7) {
            // The EDACS Delay read as "1" has no row in the send: the scanner kept its off.
            EXPECT_EQ(memory.trunk[6].delay, 0);
            expected.trunkset[6].trunkfields[5] = "0";
        }
        // Base Config 2 of the UHF bank: its zero frequency is all the scanner tells.
        EXPECT_EQ(rig.doc.trunkset[4].trunkblocks[1][0], "0000.0000");
        for (int b = 0; b < 10; ++b) {
            SCOPED_TRACE(b);
            EXPECT_EQ(back.trunkset[b], expected.trunkset[b]);
        }
        EXPECT_EQ(back.trunkset[2].trunkfields[7], "0") << "a map no preset has stays Custom";
    }
}

TEST(TrunkSettingsLink, AWalkThatMeetsAnotherItemFindsItOrLeavesTheBank)
{
    for (Model model : {Model::BC296D, Model::BC785D}) {
        SCOPED_TRACE(sim::modelInfo(model).name);
        const std::vector<int> all = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9};
        Rig plain(model), moved(model);
        moved.line.scanner.setBankMenuShift(1);
        plain.doc = moved.doc = everyType(plain.doc.model);
        TrunkSettingsLink plainLink(plain.line.engine, plain.doc), movedLink(moved.line.engine, moved.doc);
        ASSERT_TRUE(plainLink.send(all));
        // Every digit of the moved menu opens the item one place off; each
        // walk finds its item by name and the scanner ends as the true one.
        ASSERT_TRUE(movedLink.send(all)) << moved.line.engine.status.text3;
        EXPECT_GT(movedLink.repairs(), 30);
        for (int b = 0; b < 10; ++b) {
            const auto& got = moved.line.scanner.memory().trunk[b];
            const auto& want = plain.line.scanner.memory().trunk[b];
            EXPECT_TRUE(got.on == want.on && got.kind == want.kind && got.delay == want.delay &&
                        got.record == want.record && got.activityId == want.activityId && got.icall == want.icall &&
                        got.statusBit == want.statusBit && got.emergencyAlt == want.emergencyAlt &&
                        got.endCodeDetect == want.endCodeDetect && got.idFormat == want.idFormat)
                << "bank " << b + 1;
        }
        Document back;
        back.model = moved.doc.model;
        for (int b = 0; b < 10; ++b) back.trunkset[b].trunktype = moved.doc.trunkset[b].trunktype;
        TrunkSettingsLink reader(moved.line.engine, back);
        ASSERT_TRUE(reader.read(all)) << moved.line.engine.status.text3;
        Document straight;
        straight.model = plain.doc.model;
        for (int b = 0; b < 10; ++b) straight.trunkset[b].trunktype = plain.doc.trunkset[b].trunktype;
        TrunkSettingsLink plainReader(plain.line.engine, straight);
        ASSERT_TRUE(plainReader.read(all));
        for (int b = 0; b < 10; ++b) EXPECT_EQ(back.trunkset[b], straight.trunkset[b]) << "bank " << b + 1;

        // A bank whose menu lacks an item: the scanner refused the Base
        // Configs of a frequency it cannot tune, so bank 5 stayed EDACS and
        // has no STATUS BIT. It is named, not reported done; bank 6 still goes.
        Rig rig(model);
        rig.line.scanner.memory().trunk[4] = sim::TrunkBank{true, sim::TrunkKind::EdacsWide};
        setBank(rig.doc, 4, trunktype::Type2_UHF, {{1, "1"}, {2, "1"}, {4, "1"}, {5, "0"}, {8, "1"}});
        rig.doc.trunkset[4].trunkblocks[0] = {"0600.0000", "012.5", "380"};
        rig.doc.trunkset[4].trunkblocks[1][0] = rig.doc.trunkset[4].trunkblocks[2][0] = "0600.0000";
        setBank(rig.doc, 5, trunktype::LT, {{5, "0"}, {8, "1"}});
        TrunkSettingsLink link(rig.line.engine, rig.doc);
        EXPECT_FALSE(link.send({4, 5}));
        EXPECT_EQ(link.failedBanks(), std::vector<int>{4});
        EXPECT_EQ(rig.line.engine.status.text3,
                  "Trunk settings of bank 5 not written completely: the scanner's menu did not show STATUS BIT");
        EXPECT_TRUE(rig.line.scanner.memory().trunk[5].activityId) << "the next bank is written";
        EXPECT_FALSE(rig.line.scanner.inMenu());

        // The same mismatch on a read stores nothing of that bank.
        Document stale;
        stale.model = rig.doc.model;
        setBank(stale, 4, trunktype::Type2_UHF, {{1, "x"}, {2, "x"}, {4, "x"}, {5, "x"}, {8, "x"}});
        const TrunkSystem before = stale.trunkset[4];
        TrunkSettingsLink reader2(rig.line.engine, stale);
        EXPECT_FALSE(reader2.read({4}));
        EXPECT_EQ(stale.trunkset[4], before);
        EXPECT_EQ(reader2.failedBanks(), std::vector<int>{4});
    }
}

} // namespace
} // namespace kestra
