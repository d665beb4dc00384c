// The trunk ID lists to the virtual scanner and back, in virtual time.

#include "link/trunkidlink.h"

#include "core/text.h"
#include "support/scannerline.h"
#include "support/testfiles.h"
#include "trunk/trunkids.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <iostream>

using namespace kestra;

namespace {

Document emptyDocument(Model model)
{
    Document doc;
    doc.clearstores();
    doc.model = ModelSwitches::of(model);
    return doc;
}

TrunkIdEntry& slot(Document& doc, int bank, int list, int digit) { return doc.trunkids[bank][list * 10 + digit]; }

struct Rig : test::ScannerLine {
    test::TempDir dir;
    explicit Rig(Model model) : ScannerLine(model) { engine.openport(); }

    bool send(Document& doc, const std::vector<int>& banks, std::array<int, 10> scannerTypes = {})
    {
        TrunkIdLink link(engine, doc, settings, dir.path());
        return link.send(banks, scannerTypes);
    }
    // The read as the Read Data chain runs it; the number of times `done` came.
    bool trunkread = false;
    int read(Document& doc, const std::vector<int>& banks, bool& ok)
    {
        TrunkIdLink link(engine, doc, settings, dir.path());
        struct Keep {
            TrunkIdLink& link;
            bool& flag;
            ~Keep() { flag = link.trunkread; }
        } keep{link, trunkread};
        int calls = 0;
        link.read(banks, [&](bool result) {
            ok = result;
            ++calls;
        });
        scheduler.runUntil([&] { return calls > 0; }, 6 * 3600 * 1000);
        scheduler.advance(5000);  // nothing more may come
        return calls;
    }
    std::string trace() const { return test::readBytes(dir.path() / "TRUNCK.TXT"); }
};

std::vector<std::string> recordWalk(const char* bank, const char* list, const char* slotKey, const char* value)
{
    return {"KEY09", "KEY11", "KEY02 2", "KEY02 2", bank, "KEY02 3", list, "KEY03", slotKey, "KEY04", "KEY02 3", value,
            "KEY09"};
}

void append(std::vector<std::string>& to, const std::vector<std::string>& more) { to.insert(to.end(), more.begin(), more.end()); }

// A document with every list of the banks full: IDs in each system's own
// syntax, tags (some empty, one the scanner's "--" form), beep alerts and
// record flags that differ from slot to slot, a few empty slots, and list
// tags with one left empty.
Document fullLists(Model model)
{
    Document doc = emptyDocument(model);
    const int types[10] = {1, 2, 6, 8, 9, 0, 4, 5, 3, 7};
    for (int b = 0; b < 10; ++b) {
        doc.trunkset[b].trunktype = std::to_string(types[b]);
        for (int l = 0; l < 10; ++l) {
            doc.trunklisttags[b][l] = (b == 2 && l == 4) ? "" : "LIST " + std::to_string(b + 1) + "-" + std::to_string(l + 1);
            for (int d = 0; d < 10; ++d) {
                const int n = l * 10 + d;
                if (n % 17 == 5) continue;  // an empty slot now and then
                char id[16];
                switch (types[b]) {
                case 2: std::snprintf(id, sizeof id, "%03d-%02d", 100 + b, n % 100); break;
                case 6: case 7: std::snprintf(id, sizeof id, "%02d-%02d%d", b, n % 16, n % 8); break;
                case 8: std::snprintf(id, sizeof id, "1%02d%03d", 1 + n % 20, n); break;
                default: std::snprintf(id, sizeof id, n % 9 == 0 ? "7%05d" : "%06d", 1000 * b + n); break;
                }
                TrunkIdEntry& row = slot(doc, b, l, d);
                row[idcol::id] = id;
                row[idcol::tag] = n % 7 == 0 ? "" : (n == 12 ? "--TWO DASHES" : "UNIT " + std::to_string(b) + "." + std::to_string(n));
                row[idcol::record] = n % 3 == 0 ? "1" : "0";
                row[idcol::beep] = n % 4 == 0 ? "1" : "0";
            }
        }
    }
    return doc;
}

} // namespace

TEST(TrunkIdLink, OneListGoesOutInTheOrderTheScannerNumbersItsSlots)
{
    Rig rig(Model::BC785D);
    rig.settings.textra = 1;
    rig.settings.delid = 1;
    Document doc = emptyDocument(Model::BC785D);
    doc.trunkset[0].trunktype = "1";
    doc.trunklisttags[0][0] = "FIRE";
    slot(doc, 0, 0, 1) = {"000123", "FIRE DISPATCH", "1", "1", ""};
    slot(doc, 0, 0, 3) = {"000456", "", "0", "0", ""};
    slot(doc, 0, 0, 0) = {"700042", "ICALL", "0", "1", ""};  // the tenth of list A
    slot(doc, 0, 0, 4) = {"----", "OLD", "1", "1", ""};      // an emptied one

    ASSERT_TRUE(rig.send(doc, {0}));

    std::vector<std::string> expected = {"MA001", "TA L A A FIRE"};
    for (char l = 'B'; l <= 'J'; ++l) expected.push_back(std::string("TA L A ") + l + " ");
    append(expected, {"TR A 2", "TG A A0", "TG A A1 000123", "TA I A A1 FIRE DISPATCH", "BAN I A A1"});
    append(expected, recordWalk("KEY02 1", "KEY02 1", "KEY02 1", "KEY02 1"));
    append(expected, {"TG A A2 ------", "TG A A3 000456", "TA I A A3 ", "BAF I A A3"});
    append(expected, recordWalk("KEY02 1", "KEY02 1", "KEY02 3", "KEY02 2"));
    for (const char* d : {"4", "5", "6", "7", "8", "9"}) expected.push_back(std::string("TG A A") + d + " ------");
    append(expected, {"TG A A0 700042", "TA I A A0 ICALL", "BAN I A A0"});
    append(expected, recordWalk("KEY02 1", "KEY02 1", "KEY02 0", "KEY02 2"));
    // Lists B to J hold nothing: each slot is cleared.
    for (char l = 'B'; l <= 'J'; ++l)
        for (const char* d : {"1", "2", "3", "4", "5", "6", "7", "8", "9", "0"})
            expected.push_back(std::string("TG A ") + l + d + " ------");
    EXPECT_EQ(rig.sent, expected);

    const auto& list = rig.scanner.memory().ids[0][0];
    EXPECT_TRUE(list.idSlots[1].record);
    EXPECT_FALSE(list.idSlots[0].record);
    EXPECT_TRUE(list.idSlots[4].empty());

    const std::string trace = rig.trace();
    EXPECT_TRUE(contains(trace, "OK\r\nDATA id: TG A A1 000123\r\nOK\r\nDATA tag: TA I A A1 FIRE DISPATCH\r\n")) << trace;
    EXPECT_TRUE(contains(trace, "OK\r\nDATA id: TG A A4 ------\r\nDelete ID: A A4\r\n")) << trace;
    EXPECT_EQ(rig.engine.status.text3, "Sending trunkdata 100");

    // With the setting off, empty slots are passed over and the scanner
    // keeps what it had in them; the record flag stays where it is without textra.
    rig.settings.delid = 0;
    rig.settings.textra = 0;
    rig.scanner.memory().ids[0][1].idSlots[1].id = "000999";
    rig.sent.clear();
    ASSERT_TRUE(rig.send(doc, {0}, {1}));
    EXPECT_EQ(std::count_if(rig.sent.begin(), rig.sent.end(), [](const std::string& s) { return contains(s, "------"); }), 0);
    EXPECT_EQ(std::count_if(rig.sent.begin(), rig.sent.end(), [](const std::string& s) { return s.rfind("KEY", 0) == 0; }), 0);
    EXPECT_EQ(std::count(rig.sent.begin(), rig.sent.end(), "TR A 2"), 0);  // the scanner's type is right already
    EXPECT_EQ(rig.scanner.memory().ids[0][1].idSlots[1].id, "000999");
}

// Banks of every trunk type sent, then read into an empty document, on each model.
TEST(TrunkIdLink, FullListsComeBackAsTheyWentSaveForWhatTheReadMakesOfThem)
{
    for (Model model : {Model::BC250D, Model::BC296D, Model::UBC3300, Model::BC785D, Model::BC796D}) {
        SCOPED_TRACE(modelName(model));
        Rig rig(model);
        rig.settings.textra = 1;
        Document sent = fullLists(model);
        const std::vector<int> all = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9};
        // Types 4 and 5 carry their Base Configs: the trunk settings have
        // given the scanner those two types already.
        std::array<int, 10> scannerTypes{};
        for (int b : {6, 7}) {
            scannerTypes[b] = b - 2;
            rig.scanner.memory().trunk[b].on = true;
            rig.scanner.memory().trunk[b].kind = static_cast<sim::TrunkKind>(b - 2);
        }
        const auto settingsBefore = rig.scanner.memory().trunk;
        const auto sendStart = rig.scheduler.now();
        ASSERT_TRUE(rig.send(sent, all, scannerTypes));
        const std::size_t sendLines = rig.sent.size();
        const auto sendMs = rig.scheduler.now() - sendStart;
        // The record walks touch nothing but the record flags of the slots.
        for (int b = 0; b < 10; ++b) {
            const auto& t = rig.scanner.memory().trunk[b];
            EXPECT_EQ(t.delay, settingsBefore[b].delay) << "bank " << b + 1;
            EXPECT_EQ(t.record, settingsBefore[b].record) << "bank " << b + 1;
            EXPECT_EQ(t.activityId, settingsBefore[b].activityId) << "bank " << b + 1;
            EXPECT_EQ(t.icall, settingsBefore[b].icall) << "bank " << b + 1;
        }

        Document got = emptyDocument(model);
        for (int b = 0; b < 10; ++b) got.trunkset[b].trunktype = sent.trunkset[b].trunktype;  // as the opening reads found them
        rig.sent.clear();
        bool ok = false;
        const auto readStart = rig.scheduler.now();
        ASSERT_EQ(rig.read(got, all, ok), 1);
        const auto readMs = rig.scheduler.now() - readStart - 5000;
        ASSERT_TRUE(ok) << rig.engine.status.text3;
        const std::size_t readLines = rig.sent.size();
        if (model == Model::BC796D)
            std::cout << "[ measured ] BC796D ID lists, record flags on: send " << sendLines << " lines in "
                      << sendMs / 1000 << " s, read " << readLines << " lines in " << readMs / 1000 << " s\n";

        Document expected = sent;
        // An empty list tag comes back as "-".
        EXPECT_EQ(got.trunklisttags[2][4], "-");
        expected.trunklisttags[2][4] = "-";
        // A tag that begins with "--" is the scanner's sign of none.
        EXPECT_EQ(slot(got, 0, 1, 2)[idcol::tag], "");
        EXPECT_EQ(slot(sent, 0, 1, 2)[idcol::tag], "--TWO DASHES");
        // Edacs SCT keeps no ID list, and a bank without a trunk system is not asked.
        EXPECT_EQ(slot(got, 4, 0, 1)[idcol::id], "");
        EXPECT_EQ(slot(got, 5, 0, 1)[idcol::id], "");
        EXPECT_FALSE(slot(sent, 4, 0, 1)[idcol::id].empty());
        for (int b : {4, 5}) expected.trunkids[b] = got.trunkids[b];
        for (int b = 0; b < 10; ++b)
            for (auto& row : expected.trunkids[b]) {
                if (row[idcol::tag].rfind("--", 0) == 0) row[idcol::tag] = "";
                // The record flag moves only on the BC7xx family.
                if (!sent.model.bc785d && b != 4 && b != 5) row[idcol::record] = "";
            }
        EXPECT_EQ(slot(got, 0, 0, 3)[idcol::record], sent.model.bc785d ? "1" : "");
        EXPECT_EQ(got.trunklisttags, expected.trunklisttags);
        for (int b = 0; b < 10; ++b) EXPECT_EQ(got.trunkids[b], expected.trunkids[b]) << "bank " << b + 1;
        EXPECT_TRUE(rig.trunkread);
        EXPECT_TRUE(rig.dialogs.shown.empty());
    }
}

TEST(TrunkIdLink, ATagReadThatGetsNoAnswerEndsWithItsMessageAndChangesNothing)
{
    Rig rig(Model::BC296D);
    Document doc = fullLists(Model::BC296D);
    const Document before = doc;
    // Bank 3's list tags never get an answer.
    auto answer = rig.device->respond;
    rig.device->respond = [answer](std::string_view bytes) {
        const std::string reply = answer(bytes);
        return bytes.rfind("TA L C ", 0) == 0 ? std::string() : reply;
    };
    bool ok = true;
    ASSERT_EQ(rig.read(doc, {0, 1, 2}, ok), 1);
    EXPECT_FALSE(ok);
    EXPECT_EQ(rig.engine.status.text3, "ID list tag time-out!");
    EXPECT_EQ(std::count(rig.sent.begin(), rig.sent.end(), "TA L C A"), 6);  // the request and five retries
    EXPECT_EQ(std::count_if(rig.sent.begin(), rig.sent.end(), [](const std::string& s) { return s.rfind("TG", 0) == 0; }), 0);
    EXPECT_EQ(doc.trunkids, before.trunkids);
    EXPECT_EQ(doc.trunklisttags, before.trunklisttags);
}

TEST(TrunkIdLink, StopEndsTheSendAtTheSlotItIsOn)
{
    Rig rig(Model::BC785D);
    Document doc = fullLists(Model::BC785D);
    // STOP is pressed while the scanner takes slot C5 of bank 1.
    std::size_t heardAtStop = 0;
    auto answer = rig.device->respond;
    rig.device->respond = [&rig, &heardAtStop, answer](std::string_view bytes) {
        const std::string reply = answer(bytes);
        if (bytes.rfind("TG A C5 ", 0) == 0)
            rig.scheduler.postAfter(1, [&rig, &heardAtStop] {
                heardAtStop = rig.sent.size();
                rig.engine.stopxfer();
            });
        return reply;
    };
    EXPECT_FALSE(rig.send(doc, {0, 1}));
    ASSERT_GT(heardAtStop, 0u);
    EXPECT_EQ(rig.sent.size(), heardAtStop);  // nothing after STOP
    EXPECT_EQ(rig.sent.back(), "TG A C5 000025");
    const auto& mem = rig.scanner.memory();
    EXPECT_EQ(mem.ids[0][2].idSlots[4].tag, "UNIT 0.24");
    EXPECT_EQ(mem.ids[0][2].idSlots[5].id, "000025");
    EXPECT_EQ(mem.ids[0][2].idSlots[5].tag, "");   // its tag never went
    EXPECT_TRUE(mem.ids[0][2].idSlots[6].empty());
    EXPECT_TRUE(mem.ids[1][0].idSlots[1].empty());
    // The trace is closed with the slot it was on.
    const std::string trace = rig.trace();
    EXPECT_TRUE(trace.ends_with("DATA id: TG A C5 000025\r\n")) << trace.substr(trace.size() - 80);
}
