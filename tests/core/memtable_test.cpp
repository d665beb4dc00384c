#include "core/memtable.h"
#include "core/text.h"
#include "support/tablerig.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <thread>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace kestra;
using namespace kestra::test;
using Texts = std::vector<std::string>;

namespace {

// The main window's routines with a grid and no window, on a fresh folder.
struct Table : TableRig {
    using TableRig::TableRig;

    // Types a text into a grid cell as the user would.
    void type(int row, int storeColumn, const std::string& text)
    {
        put(row, storeColumn, text);
        doc.dirty = true;
    }
    std::string& store(int row, int column) { return doc.memdata[doc.currentBank][row][column]; }
    std::string file(const std::string& name) const { return dir.file(name); }
};

} // namespace

// ---- createbank and convertcell ----

TEST(Createbank, NormalisesFrequenciesAndCapsThemAt1300)
{
    Table t;
    const char* typed[] = {"1300.0000", "1300.9", "1301", "155.1", ""};
    for (int r = 1; r <= 5; ++r) t.type(r, col::freq, typed[r - 1]);
    ASSERT_TRUE(t.table.createbank());
    EXPECT_EQ(t.stored(col::freq, 1, 4), (Texts{"1300.0000", "1300.9000", "1300", "0155.1000"}));
    EXPECT_EQ(Val(t.store(5, col::freq)), 0);
    t.settings.zero = 1;
    t.table.fillgrid();
    EXPECT_EQ(t.cell(4, col::freq), "155.1000");
    t.table.createbank();
    EXPECT_EQ(t.store(4, col::freq), "155.1000");
}

TEST(Createbank, TurnsGridTextsIntoCodesOnlyForChannelsWithAFrequency)
{
    Table t(Model::BC796D);
    const std::pair<int, const char*> typed[] = {{col::freq, "146.52"}, {col::trunk, "On"},   {col::record, "On"},
                                                 {col::delay, "-5"},    {col::beep, "Off"},   {col::tone, "023-"},
                                                 {col::lockout, "On"},  {col::atten, "Off"},  {col::mode, "NFM"},
                                                 {col::step, "6.25"}};
    for (const auto& [column, text] : typed) t.type(1, column, text);
    t.type(2, col::trunk, "On");  // no frequency: the grid text stays as it is
    t.type(2, col::mode, "AM");
    t.type(3, col::freq, "155");
    t.type(3, col::mode, "weird");  // unknown texts are kept
    ASSERT_TRUE(t.table.createbank());
    const Texts codes{"0146.5200", "", "1", "1", "6", "", "0", "188", "1", "0", "3", "8"};
    for (int c = 1; c <= 12; ++c) {
        if (c != col::tag && c != col::recordHidden) {
            EXPECT_EQ(t.store(1, c), codes[c - 1]) << c;
        }
    }
    EXPECT_EQ(t.store(2, col::trunk), "On");
    EXPECT_EQ(t.store(2, col::mode), "AM");
    EXPECT_EQ(t.store(3, col::mode), "weird");
    EXPECT_EQ(t.store(3, col::tone), "0");  // an empty PL/DPL cell is None
    EXPECT_EQ(t.store(3, col::trunk), "0");
    t.table.fillgrid();
    EXPECT_EQ(t.cell(3, col::mode), "");  // shown blank
    EXPECT_EQ(t.cell(1, col::delay), "-5");
    EXPECT_EQ(t.cell(1, col::tone), "023-");
    EXPECT_EQ(t.cell(2, col::trunk), "");  // an empty channel shows nothing at all
}

TEST(Createbank, The6point25StepNeedsAnX96ModelAndCommentsAreCutToForty)
{
    Table t(Model::BC785D);
    t.type(1, col::freq, "155.0062");
    t.type(1, col::step, "6.25");
    t.store(1, col::comment) = std::string(45, 'c');
    t.table.createbank();
    EXPECT_EQ(t.store(1, col::step), "0");
    EXPECT_EQ(t.store(1, col::comment), std::string(40, 'c'));
}

TEST(Createbank, RefusesABankOutOfRange)
{
    Table t;
    t.doc.currentBank = 11;
    t.store(1, col::freq) = "untouched";
    EXPECT_FALSE(t.table.createbank());
    EXPECT_EQ(t.messages(), Texts{"Create error, click tabs and try again."});
    EXPECT_EQ(t.dialogs.beeps, 1);
    EXPECT_EQ(t.store(1, col::freq), "untouched");
    t.table.convertcell(col::freq, 1, 1);
    EXPECT_EQ(t.dialogs.shown.back().text, "convert error");
    EXPECT_EQ(t.dialogs.beeps, 2);
}

TEST(Convertcell, RepairsTheOlderToneFormAndWritesItBack)
{
    Table t;
    t.store(1, col::freq) = "0146.5200";
    t.store(1, col::tone) = "12L";
    t.table.fillgrid();
    EXPECT_EQ(t.cell(1, col::tone), "100.0-");
    EXPECT_EQ(t.store(1, col::tone), "161");
}

TEST(Convertcell, AnEmptyChannelIsBlankWhateverItsFrequencyText)
{
    Table t;
    const char* freqs[] = {"Empty", "0000.0000", ""};
    for (int r = 1; r <= 3; ++r) {
        t.store(r, col::freq) = freqs[r - 1];
        t.store(r, col::trunk) = "1";
        t.store(r, col::tag) = "ghost";
    }
    t.table.fillgrid();
    EXPECT_EQ(t.cells(col::tag, 1, 3), Texts(3, ""));
    EXPECT_EQ(t.cells(col::trunk, 1, 3), Texts(3, ""));
    // The text "Empty" survives only until the grid is read back.
    t.table.createbank();
    EXPECT_NE(t.store(1, col::freq), "Empty");
    EXPECT_EQ(Val(t.store(1, col::freq)), 0);
}

TEST(ModelChange, StoredCodesStayUntilTheGridIsReadBackUnderTheNewLayout)
{
    const Model models[] = {Model::BC250D, Model::BC785D, Model::BC296D, Model::BC796D, Model::UBC3300};
    for (Model from : models)
        for (Model to : models) {
            if (from == to) continue;
            const std::string pair = std::string(modelName(from)) + " -> " + modelName(to);
            Table t(from);
            // Rows 1..10: every delay and step code, and a beep code no layout knows.
            for (int r = 1; r <= 10; ++r) {
                t.store(r, col::freq) = "0146.5200";
                t.store(r, col::delay) = std::to_string((r - 1) % 8);
                t.store(r, col::step) = std::to_string(r - 1);
                t.store(r, col::beep) = "7";
            }
            t.table.fillgrid();
            // Typed but not yet read back: the edit is carried over.
            t.put(11, col::freq, "155");
            t.put(11, col::tag, "typed");
            t.put(1, col::mode, "AM");
            const auto before = t.doc.memdata[0];

            t.table.setModel(ModelSwitches::of(to));
            const int bc785d = t.doc.model.bc785d;
            EXPECT_EQ(t.grid.cols(), gridDataColumns(bc785d) + 1) << pair;
            for (int r = 1; r <= 10; ++r) {
                for (int c : {col::delay, col::step, col::beep, col::record, col::tone})
                    EXPECT_EQ(t.store(r, c), before[r][c]) << pair << " row " << r << " column " << c;
                EXPECT_EQ(t.cell(r, col::delay), delayText(before[r][col::delay], bc785d)) << pair << " row " << r;
            }
            EXPECT_EQ(t.store(1, col::mode), "2") << pair;
            EXPECT_EQ(t.store(11, col::freq), "0155.0000") << pair;
            EXPECT_EQ(t.store(11, col::tag), "typed") << pair;

            // Read back under the new layout: each delay takes the code the new layout gives its text.
            t.table.createbank();
            for (int r = 1; r <= 10; ++r) {
                const std::string shown = delayText(before[r][col::delay], bc785d);
                EXPECT_EQ(t.store(r, col::delay), delayCode(shown, bc785d).value()) << pair << " row " << r;
            }
            EXPECT_EQ(t.table.caption(), std::string("Kestra Console for Uniden ") + modelName(to) + " - [ Untitled ]");
        }
}

// ---- tabs ----

TEST(Tabs, ABankOutOfRangeIsTheDummyBankAndEveryChangeStartsAtTheFirstCell)
{
    Table t;
    t.type(7, col::tag, "FRS 1");
    t.table.changeBank(3);
    EXPECT_EQ(t.grid.text(100, 0), "400");
    EXPECT_EQ(t.doc.memdata[0][7][col::tag], "FRS 1");
    EXPECT_TRUE(t.grid.shown());
    EXPECT_EQ(t.grid.selection(), (GridSelection{1, 1, 1, 1}));
    t.table.changeBank(42);
    EXPECT_EQ(t.doc.currentBank, kDummyBank);
    EXPECT_EQ(t.table.frameLabel(), "Dummy");
    EXPECT_EQ(t.table.tabCaption(0), "1: Bank: 1");
    EXPECT_EQ(t.table.tabCaption(9), "10: Bank: 10");
}

TEST(EasyTags, FollowTheOptionAndStopGrowingAtTheirLimits)
{
    Table t;
    t.settings.option9 = 1;
    for (int r = 1; r <= 100; ++r) {
        t.type(r, col::freq, "150");
        t.type(r, col::tag, r % 2 ? " Tag " + std::to_string(r) : std::string(" "));
    }
    t.table.createbank();
    EXPECT_EQ(t.doc.banktaglist[0].size(), 50u);
    EXPECT_EQ(t.doc.banktaglist[0][0], "Tag 1");  // leading blanks cut
    for (int i = 0; i < 1200; ++i) t.doc.addeasytag("T" + std::to_string(i), 1, 1);
    EXPECT_EQ(t.doc.easytags.size(), 1000u);
    EXPECT_EQ(t.doc.banktaglist[1].size(), 100u);
    t.doc.addeasytag("unseen", 2, 0);
    EXPECT_TRUE(t.doc.banktaglist[2].empty());
    EXPECT_TRUE(t.messages().empty());
}

TEST(BankEmptyStatus, ListsTheBanksWithoutChannels)
{
    Table t;
    t.doc.clearstores();
    t.doc.memdata[2][100][col::freq] = "0155.0000";
    t.doc.memdata[kDummyBank][5][col::freq] = "0155.0000";
    const auto lines = t.table.bankEmptyStatus();
    ASSERT_EQ(lines.size(), 11u);
    EXPECT_EQ(lines[0], "Bank Empty Status:");
    EXPECT_EQ(lines[1].find_first_not_of('-'), std::string::npos);
    EXPECT_EQ(Texts(lines.begin() + 2, lines.begin() + 5), (Texts{"Bank 1: Empty", "Bank 2: Empty", "Bank 4: Empty"}));
    EXPECT_EQ(lines[10], "Bank 10: Empty");
}

// ---- the File menu ----

TEST(FileMenu, OpenAsksAboutADirtyDocumentAndTakesOnlyMemNames)
{
    Table t;
    HandMadeMem mem;
    mem.channels = {{105, channelLine(105, {"0851.1625", "Fire", "1", "0", "0", "0", "0", "0", "0", "0", "0", "0"})}};
    mem.bankTags[1] = "Fire dept";
    writeBytes(t.file("a.mem"), mem.text());
    writeBytes(t.file("a.txt"), mem.text());
    t.type(1, col::freq, "155");

    t.dialogs.answers = {Answer::Cancel};
    t.table.fileOpen();
    EXPECT_TRUE(t.dialogs.asked.empty());
    ASSERT_EQ(t.messages(), Texts{"This will clear your table.\r\nIf not saved, data is lost!\r\nSave data?"});
    EXPECT_EQ(t.dialogs.shown[0].title, "Warning");
    EXPECT_EQ(t.dialogs.shown[0].buttons, Buttons::YesNoCancel);

    t.dialogs.answers = {Answer::No};
    t.dialogs.files = {t.file("a.txt")};
    t.table.fileOpen();
    EXPECT_EQ(t.doc.fnaam, "Untitled");  // dropped without a word
    EXPECT_EQ(t.dialogs.shown.size(), 2u);
    EXPECT_EQ(t.dialogs.asked.back().choice.filter, "KESTRA Data Files|*.mem|All Files|*.*");

    t.dialogs.answers = {Answer::No};
    t.dialogs.files = {t.file("a.mem")};
    t.table.fileOpen();
    EXPECT_EQ(t.doc.fnaam, t.file("a.mem"));
    EXPECT_EQ(t.table.caption(), "Kestra Console for Uniden BC250D - [ " + t.file("a.mem") + " ]");
    EXPECT_TRUE(t.doc.dirty);  // a load does not clear the flag
    EXPECT_EQ(t.table.tabCaption(1), "2: Fire dept");
    t.table.changeBank(1);
    EXPECT_EQ(t.cell(5, col::freq), "0851.1625");
    EXPECT_EQ(t.cell(5, col::trunk), "On");
    EXPECT_EQ(t.table.opendir, t.dir.path().string());
}

TEST(FileMenu, AnIncompatibleOrShortFileLeavesTheName)
{
    Table t;
    writeBytes(t.file("bad.mem"), "Not a mem file\r\n1,2,3\r\n");
    t.type(1, col::freq, "155");
    t.table.createbank();
    ASSERT_FALSE(t.table.loadmem(t.file("bad.mem")));
    EXPECT_EQ(t.messages(), Texts{"File is not compatible with this version."});
    EXPECT_EQ(t.store(1, col::freq), "0155.0000");
    EXPECT_EQ(t.doc.fnaam, "Untitled");
    EXPECT_TRUE(t.doc.dirty);

    // A short file shows what was read.
    HandMadeMem mem;
    mem.channels = {{3, channelLine(3, {"0155.5000", "Kept"})}};
    auto lines = crlfLines(mem.text());
    lines.resize(400);
    writeBytes(t.file("short.mem"), joinCrlf(lines));
    EXPECT_FALSE(t.table.loadmem(t.file("short.mem")));
    EXPECT_EQ(t.dialogs.shown.back().text, "Not a valid file! Line: 3 / 100 / 0 Error: 62");
    EXPECT_EQ(t.doc.fnaam, "Untitled");
    EXPECT_EQ(t.cell(3, col::tag), "Kept");
}

TEST(FileMenu, EveryOpenAndNewForgetsThatTheLastReadCoveredOneBank)
{
    Table t;
    writeBytes(t.file("a.mem"), HandMadeMem{}.text());
    HandMadeMem lorven;
    lorven.header = "LORVEN 780 MEM V1.02";
    writeBytes(t.file("l.mem"), lorven.text());
    writeBytes(t.file("s.csv"), "x\r\n");
    writeBytes(t.file("bad.mem"), "hello\r\n");
    const std::function<void()> opens[] = {
        [&] { t.dialogs.files = {t.file("a.mem")}; t.table.fileOpen(); },
        [&] { t.dialogs.files = {t.file("l.mem")}; t.table.fileOpenLorven(); },
        [&] { t.dialogs.files = {t.file("s.csv")}; t.table.fileOpenSpecial(); },
        [&] { t.table.fileNew(); },
    };
    for (std::size_t i = 0; i < std::size(opens); ++i) {
        t.doc.onebankread = 1;
        t.doc.dirty = false;
        opens[i]();
        EXPECT_EQ(t.doc.onebankread, 0) << i;
    }
    // A file refused by its header leaves the document, the mark included.
    t.doc.onebankread = 1;
    t.dialogs.files = {t.file("bad.mem")};
    t.table.fileOpen();
    EXPECT_EQ(t.doc.onebankread, 1);
}

TEST(FileMenu, OpenLorvenOnAWrongFileLeavesTheDocumentAsItWas)
{
    Table t;
    t.type(1, col::freq, "155");
    t.type(1, col::tag, "Mine");
    t.dialogs.files = {t.file("old.mem")};
    ASSERT_TRUE(t.table.fileSave());
    const std::string saved = readBytes(t.file("old.mem"));
    t.doc.easytags = {"Mine"};
    writeBytes(t.file("kestra.mem"), HandMadeMem{}.text());
    HandMadeMem noVersion;
    noVersion.header = "LORVEN 780 MEM V9.99";
    writeBytes(t.file("noversion.mem"), noVersion.text());

    const std::pair<const char*, const char*> wrong[] = {
        {"kestra.mem", "This is not an LORVEN file! For KESTRA mem files select FILE _ OPEN"},
        {"noversion.mem", "File is not compatible."}};
    for (const auto& [name, message] : wrong) {
        t.type(2, col::tag, "typed");  // not yet read into the store
        t.dialogs.answers = {Answer::No};
        t.dialogs.files = {t.file(name)};
        t.table.fileOpenLorven();
        EXPECT_EQ(t.dialogs.shown.back().text, message);
        EXPECT_EQ(t.doc.fnaam, t.file("old.mem")) << name;
        EXPECT_TRUE(t.doc.dirty) << name;
        EXPECT_EQ(t.store(1, col::tag), "Mine") << name;
        EXPECT_EQ(t.cell(1, col::tag), "Mine") << name;
        EXPECT_EQ(t.cell(2, col::tag), "typed") << name;
        EXPECT_EQ(t.doc.easytags, Texts{"Mine"}) << name;
    }
    t.grid.setText(2, t.gridCol(col::tag), "");
    ASSERT_TRUE(t.table.fileSave());
    EXPECT_TRUE(readBytes(t.file("old.mem")) == saved);
}

TEST(FileMenu, NamesThatAreNotRegularFilesAreRefusedWithoutWaiting)
{
    Table t;
    const std::string pipe = t.file("pipe.mem"), csvPipe = t.file("pipe.csv"), folder = t.file("folder.mem");
    for (const std::string& name : {pipe, csvPipe, t.file("lastfile.ini")}) ASSERT_EQ(::mkfifo(name.c_str(), 0600), 0);
    std::filesystem::create_directory(folder);
    // Runs a step that must not wait for a writer. Should it wait all the
    // same, a writer comes and goes so that the test ends, and fails.
    auto inTime = [&](const std::function<void()>& step) {
        std::atomic<bool> done = false;
        std::thread runner([&] { step(); done = true; });
        for (int i = 0; i < 300 && !done; ++i) std::this_thread::sleep_for(std::chrono::milliseconds(10));
        const bool quick = done;
        while (!done) {
            for (const std::string& name : {pipe, csvPipe, t.file("lastfile.ini")}) {
                const int fd = ::open(name.c_str(), O_WRONLY | O_NONBLOCK);
                if (fd >= 0) ::close(fd);
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
        runner.join();
        return quick;
    };

    // A lastfile.ini that is a FIFO is passed over at start.
    t.settings.loadlast = 1;
    EXPECT_TRUE(inTime([&] { t.table.formLoad(); t.scheduler.advance(1000); }));
    EXPECT_TRUE(t.messages().empty());

    std::filesystem::remove(t.file("lastfile.ini"));
    writeBytes(t.file("lastfile.ini"), pipe + "\r\n");
    t.doc.fnaam = t.file("mine.mem");
    EXPECT_TRUE(inTime([&] { t.table.formLoad(); t.scheduler.advance(1000); }));
    EXPECT_EQ(t.messages(), Texts{"The file " + pipe + " is not a regular file; it was not opened."});
    EXPECT_EQ(t.settings.loadlast, 0);  // and the next start does not try again
    EXPECT_EQ(t.doc.fnaam, "Untitled");

    const std::pair<std::string, std::function<void()>> opens[] = {
        {pipe, [&] { t.table.fileOpen(); }},
        {pipe, [&] { t.table.fileOpenLorven(); }},
        {csvPipe, [&] { t.table.fileOpenSpecial(); }},
        {folder, [&] { t.table.fileOpen(); }},
    };
    for (const auto& [name, open] : opens) {
        t.type(1, col::tag, "kept");
        t.table.createbank();
        t.doc.dirty = false;
        t.dialogs.files = {name};
        EXPECT_TRUE(inTime(open)) << name;
        EXPECT_EQ(t.dialogs.shown.back().text, "The file " + name + " is not a regular file; it was not opened.");
        EXPECT_EQ(t.store(1, col::tag), "kept") << name;
    }
}

TEST(FileMenu, NewClearsAfterItsQuestionSavesOnYesAndResetsTagsWhenAsked)
{
    Table t;
    t.type(1, col::freq, "155");
    t.doc.banktags[0] = "Police";
    t.dialogs.answers = {Answer::No};
    t.table.fileNew();
    EXPECT_EQ(t.dialogs.shown.size(), 1u);
    EXPECT_FALSE(t.doc.dirty);
    EXPECT_EQ(t.store(1, col::freq), "0");
    EXPECT_EQ(t.store(1, col::tag), " ");
    EXPECT_EQ(t.cell(1, col::freq), "");
    EXPECT_EQ(t.doc.banktags[0], "Police");
    t.settings.cleartag = 1;
    t.table.fileNew();  // clean now: no question
    EXPECT_EQ(t.dialogs.shown.size(), 1u);
    EXPECT_EQ(t.doc.banktags[0], "Bank 1");
    EXPECT_EQ(t.doc.banktags[10], "Dummy");

    // Yes saves first, and a Save As cancelled stops the New.
    t.type(1, col::freq, "155");
    t.dialogs.answers = {Answer::Yes};
    t.dialogs.files = {std::nullopt};  // the user cancels Save As
    t.table.fileNew();
    EXPECT_EQ(t.store(1, col::freq), "0155.0000");  // nothing was cleared
    EXPECT_EQ(t.doc.fnaam, "Untitled");

    t.dialogs.answers = {Answer::Yes};
    t.dialogs.files = {t.file("first")};
    t.table.fileNew();
    EXPECT_EQ(crlfLines(readBytes(t.file("first.mem")))[1].substr(0, 13), "1,\"0155.0000\"");
    EXPECT_EQ(t.store(1, col::freq), "0");
}

TEST(FileMenu, SaveAsAddsTheExtensionAndSaveWritesToTheSameName)
{
    Table t;
    t.type(2, col::freq, "146.52");
    t.dialogs.files = {t.file("mine")};
    ASSERT_TRUE(t.table.fileSave());  // Untitled: Save becomes Save As
    EXPECT_EQ(t.dialogs.asked.back().choice.filter, "KESTRA data files|*.mem");
    EXPECT_EQ(t.doc.fnaam, t.file("mine.mem"));
    EXPECT_FALSE(t.doc.dirty);
    t.type(3, col::freq, "146.55");
    ASSERT_TRUE(t.table.fileSave());
    EXPECT_EQ(t.dialogs.asked.size(), 1u);
    EXPECT_EQ(crlfLines(readBytes(t.file("mine.mem")))[3].substr(0, 13), "3,\"0146.5500\"");
    t.dialogs.files = {t.file("UPPER.MEM")};
    ASSERT_TRUE(t.table.fileSaveAs());
    EXPECT_TRUE(std::filesystem::exists(t.file("UPPER.MEM")));
    int ranSaveCheck = 0;
    t.table.saveCheck = [&] { ++ranSaveCheck; };
    t.table.fileSave();
    EXPECT_EQ(ranSaveCheck, 1);
}

TEST(FileMenu, AFailedSaveTellsTheUserAndKeepsTheOldFile)
{
    Table t;
    t.type(1, col::freq, "155");
    t.dialogs.files = {t.file("keep.mem")};
    ASSERT_TRUE(t.table.fileSave());
    const std::string before = readBytes(t.file("keep.mem"));
    // Block the temporary file the save writes first.
    std::filesystem::create_directory(t.file("keep.mem") + ".kestra-tmp-" + std::to_string(::getpid()));
    t.type(1, col::freq, "156");
    EXPECT_FALSE(t.table.fileSave());
    EXPECT_EQ(readBytes(t.file("keep.mem")), before);
    EXPECT_TRUE(t.doc.dirty);
    ASSERT_FALSE(t.dialogs.shown.empty());
    EXPECT_NE(t.dialogs.shown.back().text.find("could not be written"), std::string::npos);
    EXPECT_FALSE(t.table.savemem(t.file("no/such/folder/x.mem")));
}

TEST(FileMenu, SaveWritesThroughALinkKeepsTheModeAndAsksBeforeReplacingAReadOnlyFile)
{
    namespace fs = std::filesystem;
    Table t;
    const std::string real = t.file("real.mem"), link = t.file("link.mem");
    writeBytes(real, "old");
    fs::permissions(real, fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read);
    fs::create_symlink("real.mem", link);
    // Left behind by a save that was killed: a process that has ended, and one that runs (this one).
    const pid_t ended = ::fork();
    if (ended == 0) ::_exit(0);
    ASSERT_GT(ended, 0);
    ::waitpid(ended, nullptr, 0);
    const std::string stale = t.file("real.mem.kestra-tmp-" + std::to_string(ended));
    const std::string live = t.file("other.mem.kestra-tmp-" + std::to_string(::getppid()));
    writeBytes(stale, "half");
    writeBytes(live, "being written");

    t.type(1, col::freq, "155");
    t.dialogs.files = {link};
    ASSERT_TRUE(t.table.fileSave());
    EXPECT_TRUE(fs::is_symlink(link));
    EXPECT_EQ(crlfLines(readBytes(real)).size(), 2107u);
    EXPECT_EQ(fs::status(real).permissions() & fs::perms::all, fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read);
    EXPECT_FALSE(fs::exists(stale));
    EXPECT_TRUE(fs::exists(live));

    // Read-only: the window asks; No writes nothing, Yes replaces the file and keeps its mode.
    fs::permissions(real, fs::perms::owner_read | fs::perms::group_read);
    const std::string before = readBytes(real);
    t.type(1, col::freq, "156");
    t.dialogs.answers = {Answer::No};
    EXPECT_FALSE(t.table.fileSave());
    EXPECT_EQ(t.messages(), Texts{"The file " + link + " is read-only. Replace it anyway?"});
    EXPECT_EQ(t.dialogs.shown.back().buttons, Buttons::YesNo);
    EXPECT_TRUE(readBytes(real) == before);
    EXPECT_TRUE(t.doc.dirty);
    t.dialogs.answers = {Answer::Yes};
    ASSERT_TRUE(t.table.fileSave());
    EXPECT_EQ(crlfLines(readBytes(real))[1].substr(0, 13), "1,\"0156.0000\"");
    EXPECT_TRUE(fs::is_symlink(link));
    EXPECT_EQ(fs::status(real).permissions() & fs::perms::all, fs::perms::owner_read | fs::perms::group_read);
    EXPECT_FALSE(t.doc.dirty);
}

// ---- start and exit ----

TEST(Profile, FoldersAndModelComeFromThePerUserStore)
{
    Table t;
    t.profile.set("folders", "opendir", "/home/me/memsx");
    t.profile.set("model", "bc785d", "7");
    t.profile.set("model", "x96", "1");
    t.profile.set("model", "ubc33", "0");
    t.table.readProfile();
    EXPECT_EQ(t.table.opendir, "/home/me/mems");
    EXPECT_EQ(t.table.savedir, t.dir.path().string());  // "unknownx" means the program's folder
    EXPECT_EQ(t.doc.model, (ModelSwitches{1, 1, 0}));
    EXPECT_EQ(t.table.modelName(), "BC796D");
    t.profile.set("model", "ubc33", "1");
    t.table.readProfile();
    EXPECT_EQ(t.table.modelName(), "UBC3300");
    t.table.unload();
    EXPECT_EQ(t.profile.get("folders", "opendir", ""), "/home/me/memsx");
}

TEST(Exit, CancelKeepsTheDocumentAndSkippingTheFirstQuestionNeverSkipsTheSecond)
{
    Table t(Model::BC785D);
    t.type(1, col::freq, "155");
    t.dialogs.answers = {Answer::Cancel};
    EXPECT_FALSE(t.table.exitRequested());
    EXPECT_EQ(t.messages(), Texts{"Exit KESTRA?"});
    EXPECT_TRUE(t.doc.dirty);
    EXPECT_EQ(t.profile.get("model", "bc785d", ""), "1");  // the model is stored all the same
    EXPECT_FALSE(std::filesystem::exists(t.file("lastused.sav")));
    t.dialogs.answers = {Answer::Ok, Answer::Cancel};
    EXPECT_FALSE(t.table.exitRequested());
    EXPECT_EQ(t.dialogs.shown.back().text, "Save data?");
    // Yes, and then no file chosen: the program stays, and says why.
    t.dialogs.answers = {Answer::Ok, Answer::Yes};
    t.dialogs.files = {""};
    EXPECT_FALSE(t.table.exitRequested());
    EXPECT_EQ(t.dialogs.shown.back().text, "Nothing was saved, so KESTRA stays open.");
    EXPECT_TRUE(t.doc.dirty);

    // Without the first question, No ends the program and the work is rescued.
    t.settings.option4 = 1;
    t.settings.loadlast = 1;
    t.dialogs.shown.clear();
    t.dialogs.answers = {Answer::No};
    EXPECT_TRUE(t.table.exitRequested());
    EXPECT_EQ(t.messages(), Texts{"Save data?"});
    const auto rescued = crlfLines(readBytes(t.file("lastused.sav")));
    ASSERT_EQ(rescued.size(), 2107u);
    EXPECT_EQ(rescued[1].substr(0, 13), "1,\"0155.0000\"");
    EXPECT_FALSE(std::filesystem::exists(t.file("lastfile.ini")));  // an Untitled document is not remembered
}

TEST(Exit, TheLastFileIsRememberedAndLoadedAtTheNextStart)
{
    Table t;
    t.settings.loadlast = 1;
    t.settings.option4 = 1;
    t.type(4, col::tag, "x");
    t.type(4, col::freq, "160.2");
    const std::string saved = t.file("last.mem");
    t.dialogs.files = {saved};
    ASSERT_TRUE(t.table.fileSave());
    ASSERT_TRUE(t.table.exitRequested());
    EXPECT_EQ(readBytes(t.file("lastfile.ini")), saved + "\r\n");

    Table next;  // the next start, in a folder with the same remembered name
    std::filesystem::copy(t.file("lastfile.ini"), next.file("lastfile.ini"));
    next.settings.loadlast = 1;
    next.table.formLoad();
    next.scheduler.advance(199);
    EXPECT_EQ(next.doc.fnaam, "Untitled");
    next.scheduler.advance(1);
    EXPECT_EQ(next.doc.fnaam, saved);
    EXPECT_EQ(next.cell(4, col::tag), "x");

    // The file is gone at the next start: one message, and loadlast is off.
    std::filesystem::remove(saved);
    next.table.formLoad();
    next.scheduler.advance(1000);
    EXPECT_EQ(next.messages(), Texts{"Not a valid file! Line: 0 / 0 / 0 Error: 53"});
    EXPECT_EQ(next.settings.loadlast, 0);
    next.table.formLoad();
    next.scheduler.advance(1000);
    EXPECT_EQ(next.dialogs.shown.size(), 1u);
}

TEST(StartAndExit, TheFilesOfTheFolderAreReadAtStartAndWrittenAtUnload)
{
    Table t;
    writeBytes(t.file("names.dat"), "Air, local\r\nFire\r\n");
    writeBytes(t.file("ttype.dat"), "1\r\n0\r\n3\r\n");
    writeBytes(t.file("setup.ini"), "[setup]\r\nbandplan=2\r\noption4=1\r\n");
    t.table.readSettingsFiles();
    EXPECT_EQ(t.settings.option4, 1);
    t.table.formLoad();
    EXPECT_EQ(t.doc.banktags[0], "Air; local");
    EXPECT_EQ(t.doc.banktags[2], "Bank: 3");
    EXPECT_EQ(t.doc.trunkset[2].trunktype, "3");
    EXPECT_EQ(t.messages(), Texts{"Custum Bandplan bandplan.dat not found in working directory!"});
    EXPECT_EQ(t.settings.bandplan, 0);
    EXPECT_EQ(t.table.tabCaption(0), "1: Air; local");

    t.doc.banktags[1] = "Marine";
    t.settings.option9 = 7;
    t.table.unload();
    EXPECT_EQ(crlfLines(readBytes(t.file("names.dat")))[1], "Marine");
    const std::string setup = readBytes(t.file("setup.ini"));
    EXPECT_NE(setup.find("\r\noption9=0\r\n"), std::string::npos);
    EXPECT_NE(setup.find("\r\nbandplan=0\r\n"), std::string::npos);
    EXPECT_EQ(crlfLines(readBytes(t.file("ttype.dat")))[2], "3");

    // Without remtags the tags of names.dat stay unread.
    t.settings.remtags = 0;
    t.table.formLoad();
    EXPECT_EQ(t.doc.banktags[0], "Bank: 1");
}

TEST(StartAndExit, ThePortSettingsAreKeptWithTheSpeedTheModelCanDo)
{
    Table t;
    writeBytes(t.file("com250.ini"), "[com]\r\nport=12\r\nbaud=57600\r\nusbc=1\r\n");
    t.profile.set("model", "bc785d", "1");
    t.profile.set("model", "x96", "1");
    t.profile.set("model", "ubc33", "0");
    t.table.readProfile();
    t.table.readSettingsFiles();
    EXPECT_EQ(t.table.com.port, 12);
    EXPECT_EQ(t.table.com.baud, 57600);  // the BC796D has the fast speeds
    EXPECT_EQ(t.table.com.usbc, 1);
    EXPECT_EQ(t.settings.delay1, 200);

    // Neither the UBC3300 (both switches on) nor a model without x96 starts above 19200.
    for (const char* on : {"1", "0"}) {
        t.profile.set("model", "ubc33", on);
        t.profile.set("model", "x96", on);
        t.table.readProfile();
        t.table.readSettingsFiles();
        EXPECT_EQ(t.table.com.baud, 19200) << on;
    }
}
