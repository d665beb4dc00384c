// kestractl convert, run as the program it is.

#include "importexport/convert.h"
#include "core/memfile.h"
#include "editor/freqrules.h"
#include "support/kestractl.h"
#include "support/tablerig.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <random>

using namespace kestra;
using namespace kestra::test;

namespace {

// kestractl convert of a file of the folder into another, with further arguments.
CtlRun convert(const TempDir& dir, const std::string& in, const std::string& out, const std::string& more = "")
{
    return runKestractl(dir, "convert '" + dir.file(in) + "' '" + dir.file(out) + "'" + more);
}
std::string inFolder(const TempDir& dir) { return " --dir '" + dir.path().string() + "'"; }

// A document made and saved through the main window's routines, on a model.
std::string savedByTheProgram(const TempDir& dir, Model model, const std::string& name)
{
    TableRig t(model);
    installTableCheck(t.table);
    const int cols = t.grid.cols();
    for (int bank : {0, 4, 9}) {
        t.table.changeBank(bank);
        for (int r = 1; r <= 100; r += 3) {
            t.grid.setText(r, 1, std::to_string(118 + r) + "." + std::to_string(r * 125 % 10000));
            t.grid.setText(r, 2, "Ch " + std::to_string(r) + ", x");  // a comma is safe inside the quotes
            for (int c = 3; c < cols; ++c) {
                const std::string header = t.grid.text(0, c);
                if (header == "Delay Time") t.grid.setText(r, c, delayText(std::to_string(r % 8), t.doc.model.bc785d));
                else if (header == "PL/DPL") t.grid.setText(r, c, toneText(std::to_string(r % 292)));
                else if (header == "Mode") t.grid.setText(r, c, modeText(std::to_string(r % 4)));
                else if (header == "Step") t.grid.setText(r, c, stepText(std::to_string(r % 10)));
                else t.grid.setText(r, c, r % 2 ? "On" : "Off");
            }
        }
    }
    t.doc.banktags[4] = "Marine";
    t.table.changeBank(0);
    const std::string path = dir.file(name);
    t.dialogs.files = {path};
    EXPECT_TRUE(t.table.fileSave());
    return path;
}

} // namespace

TEST(KestractlConvert, ReproducesAFileThisProgramSavedOnBothLayouts)
{
    for (Model model : {Model::BC250D, Model::BC796D}) {
        TempDir dir;
        const std::string in = savedByTheProgram(dir, model, "in.mem");
        const CtlRun run = convert(dir, "in.mem", "out.mem", std::string(" --model ") + modelName(model) + inFolder(dir));
        EXPECT_EQ(run.status, 0) << run.err;
        EXPECT_EQ(readBytes(dir.file("out.mem")), readBytes(in)) << modelName(model);
    }
}

TEST(KestractlConvert, TheModelDecidesTheDelaysOfBankOne)
{
    TempDir dir;
    const std::string in = savedByTheProgram(dir, Model::BC796D, "in.mem");
    // Without --model the per-user store decides; an empty store means the UBC3300 (BC250D layout).
    const CtlRun run = convert(dir, "in.mem", "out", inFolder(dir));
    ASSERT_EQ(run.status, 0) << run.err;
    const auto before = crlfLines(readBytes(in));
    const auto after = crlfLines(readBytes(dir.file("out.mem")));  // Save As adds ".mem"
    ASSERT_EQ(after.size(), 2107u);
    // Channel 4 has the delay "Inf." (code 4): the BC250D knows only "None" and
    // "2", in the grid of bank 1 and in the table check of every bank.
    EXPECT_EQ(before[4], channelLine(4, {"0122.5000", "Ch 4, x", "0", "0", "4", "0", "0", "4", "0", "0", "0", "4"}, ""));
    EXPECT_EQ(after[4], channelLine(4, {"0122.5000", "Ch 4, x", "0", "0", "2", "0", "0", "4", "0", "0", "0", "4"}, ""));
    EXPECT_EQ(after[404], channelLine(404, {"0122.5000", "Ch 4, x", "0", "0", "2", "0", "0", "4", "0", "0", "0", "4"}, ""));
}

TEST(KestractlConvert, RefusedFilesGiveTheMessageAndStatusOne)
{
    TempDir dir;
    writeBytes(dir.file("bad.mem"), "hello\r\n");
    CtlRun run = convert(dir, "bad.mem", "out.mem", inFolder(dir));
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.err, "File is not compatible with this version.\n");
    EXPECT_FALSE(std::filesystem::exists(dir.file("out.mem")));

    HandMadeMem lorven;
    lorven.header = "LORVEN 780 MEM";
    writeBytes(dir.file("l.mem"), lorven.text());
    run = convert(dir, "l.mem", "out.mem");
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.err, "File is not compatible.\n");

    // A FIFO or a folder is refused at once, where reading a FIFO would wait for a writer.
    ASSERT_EQ(::mkfifo(dir.file("pipe.mem").c_str(), 0600), 0);
    run = runKestractl(dir, "convert '" + dir.file("pipe.mem") + "' '" + dir.file("out.mem") + "'", 20);
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.err, "The file " + dir.file("pipe.mem") + " is not a regular file; it was not opened.\n");
    std::filesystem::create_directory(dir.file("folder.mem"));
    run = convert(dir, "folder.mem", "out.mem");
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.err, "The file " + dir.file("folder.mem") + " is not a regular file; it was not opened.\n");
    EXPECT_FALSE(std::filesystem::exists(dir.file("out.mem")));

    // A read-only OUT is not replaced.
    const std::string in = savedByTheProgram(dir, Model::BC250D, "in.mem");
    writeBytes(dir.file("locked.mem"), "keep");
    std::filesystem::permissions(dir.file("locked.mem"), std::filesystem::perms::owner_read);
    run = convert(dir, "in.mem", "locked.mem", inFolder(dir));
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.err, "The file " + dir.file("locked.mem") + " is read-only; it was not replaced.\n");
    EXPECT_TRUE(readBytes(dir.file("locked.mem")) == "keep");

    run = convert(dir, "missing.mem", "out.mem");
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.err, "Not a valid file! Line: 0 / 0 / 0 Error: 53\n");

    EXPECT_EQ(runKestractl(dir, "convert only-one").status, 2);
    run = runKestractl(dir, "convert a b --model BC999");
    EXPECT_EQ(run.status, 2);
    EXPECT_NE(run.err.find("unknown model"), std::string::npos);
}

TEST(KestractlConvert, OpensLorvenAndSpecialFilesByTheirKind)
{
    EXPECT_EQ(memKindOf("x.mem", "LORVEN 780 MEM V1.04\r\n"), MemKind::Lorven);
    EXPECT_EQ(memKindOf("x.mem", "KESTRA MEM V1.02 780 channels\r\n"), MemKind::Kestra);
    EXPECT_EQ(memKindOf("x.CSV", "anything"), MemKind::Special);
    EXPECT_EQ(memKindOf("x.mem", ""), MemKind::Kestra);
}

TEST(KestractlConvert, TheSettingsOfTheFolderApply)
{
    TempDir dir;
    savedByTheProgram(dir, Model::BC250D, "in.mem");
    writeBytes(dir.file("setup.ini"), "[setup]\r\nsavenames=0\r\nzero=1\r\n");
    const CtlRun run = convert(dir, "in.mem", "out.mem", " --model BC250D" + inFolder(dir));
    ASSERT_EQ(run.status, 0) << run.err;
    const auto lines = crlfLines(readBytes(dir.file("out.mem")));
    for (int i = 0; i < 12; ++i) EXPECT_EQ(lines[1002 + i], "#$BT" + std::to_string(i) + " None");
    // Hidden leading zeros are a matter of the grid: the check before the save
    // writes every frequency whole.
    EXPECT_EQ(lines[1].substr(0, 12), "1,\"0119.1250");
}

namespace {

// Text a MEM field can carry: any single-byte character but the double
// quote and the line ends, at lengths 0..max.
std::string randomField(std::mt19937& rng, std::size_t max)
{
    static const std::string pool = [] {
        std::string p;
        for (int c = 32; c < 256; ++c)
            if (c != '"' && c != 127) p += static_cast<char>(c);
        return p;
    }();
    std::uniform_int_distribution<std::size_t> length(0, max), pick(0, pool.size() - 1);
    std::string text(length(rng), ' ');
    for (char& c : text) c = pool[pick(rng)];
    return text;
}

} // namespace

TEST(KestractlConvert, KeepsEveryTrunkFieldAndIdOfRandomContents)
{
    for (unsigned seed : {1u, 7u, 2026u}) {
        SCOPED_TRACE(seed);
        std::mt19937 rng(seed);
        TempDir dir;
        TableRig t(Model::BC796D);
        installTableCheck(t.table);
        for (int b = 0; b < kChannelBanks; ++b) {
            TrunkSystem& system = t.doc.trunkset[b];
            system.trunktype = randomField(rng, 3);
            for (std::string& field : system.trunkfields) field = randomField(rng, 6);
            for (auto& slot : system.trunkblocks)
                for (std::string& item : slot) item = randomField(rng, 10);
            for (TrunkIdEntry& entry : t.doc.trunkids[b])
                for (std::string& field : entry) field = randomField(rng, 16);
            for (std::string& tag : t.doc.trunklisttags[b]) tag = randomField(rng, 16);
        }
        t.dialogs.files = {dir.file("in.mem")};
        ASSERT_TRUE(t.table.fileSave());

        const CtlRun run = convert(dir, "in.mem", "out.mem", " --model BC796D" + inFolder(dir));
        ASSERT_EQ(run.status, 0) << run.err;
        Document back;
        ASSERT_EQ(readMem(back, readBytes(dir.file("out.mem")), 0).status, MemLoadStatus::Loaded);
        for (int b = 0; b < kChannelBanks; ++b) {
            SCOPED_TRACE(b);
            EXPECT_EQ(back.trunkset[b].trunktype, t.doc.trunkset[b].trunktype);
            EXPECT_EQ(back.trunkset[b].trunkfields, t.doc.trunkset[b].trunkfields);
            EXPECT_EQ(back.trunkset[b].trunkblocks, t.doc.trunkset[b].trunkblocks);
            EXPECT_EQ(back.trunkids[b], t.doc.trunkids[b]);
            EXPECT_EQ(back.trunklisttags[b], t.doc.trunklisttags[b]);
        }
    }
}
