#include "core/memtable.h"
#include "core/text.h"
#include "platform/fake/memoryprofilestore.h"
#include "platform/fake/scripteddialogs.h"
#include "platform/fake/virtualscheduler.h"
#include "support/tablerig.h"
#include "support/testfiles.h"

#include <gtest/gtest.h>

using namespace kestra;
using kestra::test::channelLine;
using kestra::test::crlfLines;
using kestra::test::HandMadeMem;
using kestra::test::readBytes;
using kestra::test::TempDir;
using kestra::test::writeBytes;

namespace {

// The main window's routines with a grid and no window, on a fresh folder.
struct Table : test::TableRig {
    using TableRig::TableRig;

    // Types a text into a grid cell as the user would, by header.
    void type(int row, const std::string& header, const std::string& text)
    {
        for (int c = 1; c < grid.cols(); ++c)
            if (grid.text(0, c) == header) {
                grid.setText(row, c, text);
                doc.dirty = true;
                return;
            }
        FAIL() << "no column " << header;
    }
    std::string& store(int row, int column) { return doc.memdata[doc.currentBank][row][column]; }
};

std::string file(const Table& t, const std::string& name) { return t.dir.file(name); }

} // namespace

// ---- createbank and convertcell ----

TEST(Createbank, NormalisesFrequenciesAndCapsThemAt1300)
{
    Table t;
    t.type(1, "Freq. (MHz)", "1300.0000");
    t.type(2, "Freq. (MHz)", "1300.9");
    t.type(3, "Freq. (MHz)", "1301");
    t.type(4, "Freq. (MHz)", "155.1");
    t.type(5, "Freq. (MHz)", "");
    ASSERT_TRUE(t.table.createbank());
    EXPECT_EQ(t.store(1, col::freq), "1300.0000");
    EXPECT_EQ(t.store(2, col::freq), "1300.9000");
    EXPECT_EQ(t.store(3, col::freq), "1300");
    EXPECT_EQ(t.store(4, col::freq), "0155.1000");
    EXPECT_EQ(Val(t.store(5, col::freq)), 0);
    t.settings.zero = 1;
    t.table.fillgrid();
    EXPECT_EQ(t.shown(4, "Freq. (MHz)"), "155.1000");
    t.table.createbank();
    EXPECT_EQ(t.store(4, col::freq), "155.1000");
}

TEST(Createbank, TurnsGridTextsIntoCodesOnlyForChannelsWithAFrequency)
{
    Table t(Model::BC796D);
    t.type(1, "Freq. (MHz)", "146.52");
    t.type(1, "Trunk", "On");
    t.type(1, "Record", "On");
    t.type(1, "Delay Time", "-5");
    t.type(1, "Beep Alert", "Off");
    t.type(1, "PL/DPL", "023-");
    t.type(1, "Lock Out", "On");
    t.type(1, "Attenuator", "Off");
    t.type(1, "Mode", "NFM");
    t.type(1, "Step", "6.25");
    t.type(2, "Trunk", "On");  // no frequency: the grid text stays as it is
    t.type(2, "Mode", "AM");
    t.type(3, "Freq. (MHz)", "155");
    t.type(3, "Mode", "weird");  // unknown texts are kept
    ASSERT_TRUE(t.table.createbank());
    const std::vector<std::string> codes{"0146.5200", "", "1", "1", "6", "", "0", "188", "1", "0", "3", "8"};
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
    EXPECT_EQ(t.shown(3, "Mode"), "");  // shown blank
    EXPECT_EQ(t.shown(1, "Delay Time"), "-5");
    EXPECT_EQ(t.shown(1, "PL/DPL"), "023-");
    EXPECT_EQ(t.shown(2, "Trunk"), "");  // an empty channel shows nothing at all
}

TEST(Createbank, The6point25StepNeedsAnX96Model)
{
    Table t(Model::BC785D);
    t.type(1, "Freq. (MHz)", "155.0062");
    t.type(1, "Step", "6.25");
    t.table.createbank();
    EXPECT_EQ(t.store(1, col::step), "0");
}

TEST(Createbank, CutsCommentsToFortyCharacters)
{
    Table t;
    t.type(1, "Freq. (MHz)", "155");
    t.store(1, col::comment) = std::string(45, 'c');
    t.table.createbank();
    EXPECT_EQ(t.store(1, col::comment), std::string(40, 'c'));
}

TEST(Createbank, RefusesABankOutOfRange)
{
    Table t;
    t.doc.currentBank = 11;
    t.store(1, col::freq) = "untouched";
    EXPECT_FALSE(t.table.createbank());
    EXPECT_EQ(t.messages(), std::vector<std::string>{"Create error, click tabs and try again."});
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
    EXPECT_EQ(t.shown(1, "PL/DPL"), "100.0-");
    EXPECT_EQ(t.store(1, col::tone), "161");
}

TEST(Convertcell, AnEmptyChannelIsBlankWhateverItsFrequencyText)
{
    Table t;
    for (int r = 1; r <= 3; ++r) {
        t.store(r, col::trunk) = "1";
        t.store(r, col::tag) = "ghost";
    }
    t.store(1, col::freq) = "Empty";
    t.store(2, col::freq) = "0000.0000";
    t.store(3, col::freq) = "";
    t.table.fillgrid();
    for (int r = 1; r <= 3; ++r) {
        EXPECT_EQ(t.shown(r, "Tag"), "");
        EXPECT_EQ(t.shown(r, "Trunk"), "");
    }
    // The text "Empty" survives only until the grid is read back.
    t.table.createbank();
    EXPECT_NE(t.store(1, col::freq), "Empty");
    EXPECT_EQ(Val(t.store(1, col::freq)), 0);
}

TEST(ModelChange, TheShortDelayListCollapsesTheCodesOnlyWhenTheGridIsReadBack)
{
    Table t(Model::BC785D);
    t.store(1, col::freq) = "0146.5200";
    t.store(1, col::delay) = "5";
    t.table.fillgrid();
    EXPECT_EQ(t.shown(1, "Delay Time"), "-2");
    t.table.setModel(ModelSwitches::of(Model::BC250D));
    EXPECT_EQ(t.grid.cols(), 11);
    EXPECT_EQ(t.grid.text(0, 5), "Beep Alert");
    EXPECT_EQ(t.shown(1, "Delay Time"), "2");
    EXPECT_EQ(t.store(1, col::delay), "5");
    t.table.changeBank(1);
    t.table.changeBank(0);
    EXPECT_EQ(t.store(1, col::delay), "2");
    EXPECT_EQ(t.table.caption(), "Kestra Console for Uniden BC250D - [ Untitled ]");
}

// ---- tabs ----

TEST(Tabs, ChangingBankKeepsEditsAndNumbersTheChannels)
{
    Table t;
    t.type(7, "Freq. (MHz)", "462.5625");
    t.type(7, "Tag", "FRS 1");
    t.table.changeBank(3);
    EXPECT_EQ(t.doc.currentBank, 3);
    EXPECT_EQ(t.grid.text(1, 0), "301");
    EXPECT_EQ(t.grid.text(100, 0), "400");
    EXPECT_EQ(t.shown(7, "Tag"), "");
    EXPECT_EQ(t.doc.memdata[0][7][col::tag], "FRS 1");
    EXPECT_TRUE(t.grid.shown());
    EXPECT_EQ(t.grid.selection(), (GridSelection{1, 1, 1, 1}));
    t.table.changeBank(42);
    EXPECT_EQ(t.doc.currentBank, kDummyBank);
    EXPECT_EQ(t.grid.text(1, 0), "1001");
    EXPECT_EQ(t.table.frameLabel(), "Dummy");
    t.table.changeBank(0);
    EXPECT_EQ(t.shown(7, "Freq. (MHz)"), "0462.5625");
    EXPECT_EQ(t.shown(7, "Tag"), "FRS 1");
    EXPECT_EQ(t.table.tabCaption(0), "1: Bank: 1");
    EXPECT_EQ(t.table.tabCaption(9), "10: Bank: 10");
    EXPECT_EQ(t.table.tabCaption(10), "Dummy");
}

TEST(EasyTags, FollowTheOptionAndStopGrowingAtTheirLimits)
{
    Table t;
    t.settings.option9 = 1;
    for (int r = 1; r <= 100; ++r) {
        t.type(r, "Freq. (MHz)", "150");
        t.type(r, "Tag", r % 2 ? " Tag " + std::to_string(r) : std::string(" "));
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
    EXPECT_EQ(lines[2], "Bank 1: Empty");
    EXPECT_EQ(lines[4], "Bank 4: Empty");
    EXPECT_EQ(lines[10], "Bank 10: Empty");
}

// ---- the File menu ----

TEST(FileMenu, OpenAsksAboutADirtyDocumentAndTakesOnlyMemNames)
{
    Table t;
    HandMadeMem mem;
    mem.channels = {{105, channelLine(105, {"0851.1625", "Fire", "1", "0", "0", "0", "0", "0", "0", "0", "0", "0"})}};
    mem.bankTags[1] = "Fire dept";
    writeBytes(file(t, "a.mem"), mem.text());
    writeBytes(file(t, "a.txt"), mem.text());
    t.type(1, "Freq. (MHz)", "155");

    t.dialogs.answers = {Answer::Cancel};
    t.table.fileOpen();
    EXPECT_TRUE(t.dialogs.asked.empty());
    ASSERT_EQ(t.dialogs.shown.size(), 1u);
    EXPECT_EQ(t.dialogs.shown[0].text, "This will clear your table.\r\nIf not saved, data is lost!\r\nSave data?");
    EXPECT_EQ(t.dialogs.shown[0].title, "Warning");
    EXPECT_EQ(t.dialogs.shown[0].buttons, Buttons::YesNoCancel);

    t.dialogs.answers = {Answer::No};
    t.dialogs.files = {file(t, "a.txt")};
    t.table.fileOpen();
    EXPECT_EQ(t.doc.fnaam, "Untitled");  // dropped without a word
    EXPECT_EQ(t.dialogs.shown.size(), 2u);
    EXPECT_EQ(t.dialogs.asked.back().choice.filter, "KESTRA Data Files|*.mem|All Files|*.*");

    t.dialogs.answers = {Answer::No};
    t.dialogs.files = {file(t, "a.mem")};
    t.table.fileOpen();
    EXPECT_EQ(t.doc.fnaam, file(t, "a.mem"));
    EXPECT_EQ(t.table.caption(), "Kestra Console for Uniden BC250D - [ " + file(t, "a.mem") + " ]");
    EXPECT_TRUE(t.doc.dirty);  // a load does not clear the flag
    EXPECT_EQ(t.table.tabCaption(1), "2: Fire dept");
    t.table.changeBank(1);
    EXPECT_EQ(t.shown(5, "Freq. (MHz)"), "0851.1625");
    EXPECT_EQ(t.shown(5, "Trunk"), "On");
    EXPECT_EQ(t.table.opendir, t.dir.path().string());
}

TEST(FileMenu, AnIncompatibleFileLeavesEverything)
{
    Table t;
    writeBytes(file(t, "bad.mem"), "Not a mem file\r\n1,2,3\r\n");
    t.type(1, "Freq. (MHz)", "155");
    t.table.createbank();
    ASSERT_FALSE(t.table.loadmem(file(t, "bad.mem")));
    EXPECT_EQ(t.messages(), std::vector<std::string>{"File is not compatible with this version."});
    EXPECT_EQ(t.store(1, col::freq), "0155.0000");
    EXPECT_EQ(t.doc.fnaam, "Untitled");
    EXPECT_TRUE(t.doc.dirty);
}

TEST(FileMenu, AShortFileIsNamedUntitledAndShowsWhatWasRead)
{
    Table t;
    HandMadeMem mem;
    mem.channels = {{3, channelLine(3, {"0155.5000", "Kept"})}};
    auto lines = crlfLines(mem.text());
    lines.resize(400);
    writeBytes(file(t, "short.mem"), kestra::test::joinCrlf(lines));
    EXPECT_FALSE(t.table.loadmem(file(t, "short.mem")));
    EXPECT_EQ(t.messages(), std::vector<std::string>{"Not a valid file! Line: 3 / 100 / 0 Error: 62"});
    EXPECT_EQ(t.doc.fnaam, "Untitled");
    EXPECT_EQ(t.shown(3, "Tag"), "Kept");
}

TEST(FileMenu, NewClearsAfterItsQuestionAndResetsTagsWhenAsked)
{
    Table t;
    t.type(1, "Freq. (MHz)", "155");
    t.doc.banktags[0] = "Police";
    t.dialogs.answers = {Answer::No};
    t.table.fileNew();
    EXPECT_EQ(t.dialogs.shown.size(), 1u);
    EXPECT_FALSE(t.doc.dirty);
    EXPECT_EQ(t.store(1, col::freq), "0");
    EXPECT_EQ(t.store(1, col::tag), " ");
    EXPECT_EQ(t.shown(1, "Freq. (MHz)"), "");
    EXPECT_EQ(t.doc.banktags[0], "Police");
    t.settings.cleartag = 1;
    t.table.fileNew();  // clean now: no question
    EXPECT_EQ(t.dialogs.shown.size(), 1u);
    EXPECT_EQ(t.doc.banktags[0], "Bank 1");
    EXPECT_EQ(t.doc.banktags[10], "Dummy");
}

TEST(FileMenu, YesSavesFirstAndASaveAsCancelStopsTheNew)
{
    Table t;
    t.type(1, "Freq. (MHz)", "155");
    t.dialogs.answers = {Answer::Yes};
    t.dialogs.files = {std::nullopt};  // the user cancels Save As
    t.table.fileNew();
    EXPECT_EQ(t.store(1, col::freq), "0155.0000");  // nothing was cleared
    EXPECT_EQ(t.doc.fnaam, "Untitled");

    t.dialogs.answers = {Answer::Yes};
    t.dialogs.files = {file(t, "first")};
    t.table.fileNew();
    EXPECT_EQ(crlfLines(readBytes(file(t, "first.mem")))[1].substr(0, 13), "1,\"0155.0000\"");
    EXPECT_EQ(t.store(1, col::freq), "0");
}

TEST(FileMenu, SaveAsAddsTheExtensionAndSaveWritesToTheSameName)
{
    Table t;
    t.type(2, "Freq. (MHz)", "146.52");
    t.dialogs.files = {file(t, "mine")};
    ASSERT_TRUE(t.table.fileSave());  // Untitled: Save becomes Save As
    EXPECT_EQ(t.dialogs.asked.back().choice.filter, "KESTRA data files|*.mem");
    EXPECT_EQ(t.doc.fnaam, file(t, "mine.mem"));
    EXPECT_FALSE(t.doc.dirty);
    t.type(3, "Freq. (MHz)", "146.55");
    ASSERT_TRUE(t.table.fileSave());
    EXPECT_EQ(t.dialogs.asked.size(), 1u);
    EXPECT_EQ(crlfLines(readBytes(file(t, "mine.mem")))[3].substr(0, 13), "3,\"0146.5500\"");
    t.dialogs.files = {file(t, "UPPER.MEM")};
    ASSERT_TRUE(t.table.fileSaveAs());
    EXPECT_TRUE(std::filesystem::exists(file(t, "UPPER.MEM")));
    int ranSaveCheck = 0;
    t.table.saveCheck = [&] { ++ranSaveCheck; };
    t.table.fileSave();
    EXPECT_EQ(ranSaveCheck, 1);
}

TEST(FileMenu, AFailedSaveTellsTheUserAndKeepsTheOldFile)
{
    Table t;
    t.type(1, "Freq. (MHz)", "155");
    t.dialogs.files = {file(t, "keep.mem")};
    ASSERT_TRUE(t.table.fileSave());
    const std::string before = readBytes(file(t, "keep.mem"));
    // Block the temporary file the save writes first.
    std::filesystem::create_directory(file(t, "keep.mem") + ".kestra-tmp-" + std::to_string(::getpid()));
    t.type(1, "Freq. (MHz)", "156");
    EXPECT_FALSE(t.table.fileSave());
    EXPECT_EQ(readBytes(file(t, "keep.mem")), before);
    EXPECT_TRUE(t.doc.dirty);
    ASSERT_FALSE(t.dialogs.shown.empty());
    EXPECT_NE(t.dialogs.shown.back().text.find("could not be written"), std::string::npos);
    // A folder that does not exist.
    EXPECT_FALSE(t.table.savemem(file(t, "no/such/folder/x.mem")));
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

TEST(Exit, CancelKeepsTheDocumentButTheModelIsAlreadyStored)
{
    Table t(Model::BC785D);
    t.type(1, "Freq. (MHz)", "155");
    t.dialogs.answers = {Answer::Cancel};
    EXPECT_FALSE(t.table.exitRequested());
    EXPECT_EQ(t.dialogs.shown[0].text, "Exit KESTRA?");
    EXPECT_EQ(t.dialogs.shown[0].title, "Exit");
    EXPECT_EQ(t.dialogs.shown[0].buttons, Buttons::OkCancel);
    EXPECT_TRUE(t.doc.dirty);
    EXPECT_EQ(t.profile.get("model", "bc785d", ""), "1");
    EXPECT_FALSE(std::filesystem::exists(file(t, "lastused.sav")));

    t.dialogs.answers = {Answer::Ok, Answer::Cancel};
    EXPECT_FALSE(t.table.exitRequested());
    EXPECT_EQ(t.dialogs.shown.back().text, "Save data?");
    EXPECT_EQ(t.dialogs.shown.back().title, "Warning");
}

TEST(Exit, SkippingTheFirstQuestionNeverSkipsTheSecondAndTheWorkIsRescued)
{
    Table t;
    t.settings.option4 = 1;
    t.settings.loadlast = 1;
    t.type(1, "Freq. (MHz)", "155");
    t.dialogs.answers = {Answer::No};
    EXPECT_TRUE(t.table.exitRequested());
    ASSERT_EQ(t.dialogs.shown.size(), 1u);
    EXPECT_EQ(t.dialogs.shown[0].text, "Save data?");
    const auto rescued = crlfLines(readBytes(file(t, "lastused.sav")));
    ASSERT_EQ(rescued.size(), 2107u);
    EXPECT_EQ(rescued[1].substr(0, 13), "1,\"0155.0000\"");
    EXPECT_FALSE(std::filesystem::exists(file(t, "lastfile.ini")));  // an Untitled document is not remembered
}

TEST(Exit, TheLastFileIsRememberedAndLoadedAtTheNextStart)
{
    TempDir shared;
    std::string saved;
    {
        Table t;
        t.settings.loadlast = 1;
        t.settings.option4 = 1;
        t.type(4, "Tag", "x");
        t.type(4, "Freq. (MHz)", "160.2");
        saved = file(t, "last.mem");
        t.dialogs.files = {saved};
        ASSERT_TRUE(t.table.fileSave());
        ASSERT_TRUE(t.table.exitRequested());
        EXPECT_EQ(readBytes(file(t, "lastfile.ini")), saved + "\r\n");
        std::filesystem::copy(file(t, "lastfile.ini"), shared.file("lastfile.ini"));
        std::filesystem::copy(saved, shared.file("last.mem"));
        saved = shared.file("last.mem");
        writeBytes(shared.file("lastfile.ini"), saved + "\r\n");
    }
    Document doc;
    Settings settings;
    settings.loadlast = 1;
    Grid grid;
    ScriptedDialogs dialogs;
    MemoryProfileStore profile;
    VirtualScheduler scheduler;
    MemTable table(doc, settings, grid, {dialogs, profile, scheduler, AppFolder(shared.path())});
    table.formLoad();
    EXPECT_EQ(doc.fnaam, "Untitled");
    scheduler.advance(199);
    EXPECT_EQ(doc.fnaam, "Untitled");
    scheduler.advance(1);
    EXPECT_EQ(doc.fnaam, saved);
    EXPECT_EQ(grid.text(4, 2), "x");

    // The file is gone at the next start: one message, and loadlast is off.
    std::filesystem::remove(saved);
    table.formLoad();
    scheduler.advance(1000);
    ASSERT_EQ(dialogs.shown.size(), 1u);
    EXPECT_EQ(dialogs.shown[0].text, "Not a valid file! Line: 0 / 0 / 0 Error: 53");
    EXPECT_EQ(settings.loadlast, 0);
    table.formLoad();
    scheduler.advance(1000);
    EXPECT_EQ(dialogs.shown.size(), 1u);
}

TEST(StartAndExit, TheFilesOfTheFolderAreReadAtStartAndWrittenAtUnload)
{
    Table t;
    writeBytes(file(t, "names.dat"), "Air, local\r\nFire\r\n");
    writeBytes(file(t, "ttype.dat"), "1\r\n0\r\n3\r\n");
    writeBytes(file(t, "setup.ini"), "[setup]\r\nbandplan=2\r\noption4=1\r\n");
    t.table.readSettingsFiles();
    EXPECT_EQ(t.settings.option4, 1);
    t.table.formLoad();
    EXPECT_EQ(t.doc.banktags[0], "Air; local");
    EXPECT_EQ(t.doc.banktags[2], "Bank: 3");
    EXPECT_EQ(t.doc.trunkset[2].trunktype, "3");
    EXPECT_EQ(t.messages(), std::vector<std::string>{"Custum Bandplan bandplan.dat not found in working directory!"});
    EXPECT_EQ(t.settings.bandplan, 0);
    EXPECT_EQ(t.table.tabCaption(0), "1: Air; local");

    t.doc.banktags[1] = "Marine";
    t.settings.option9 = 7;
    t.table.unload();
    EXPECT_EQ(crlfLines(readBytes(file(t, "names.dat")))[1], "Marine");
    EXPECT_NE(readBytes(file(t, "setup.ini")).find("\r\noption9=0\r\n"), std::string::npos);
    EXPECT_NE(readBytes(file(t, "setup.ini")).find("\r\nbandplan=0\r\n"), std::string::npos);
    EXPECT_EQ(crlfLines(readBytes(file(t, "ttype.dat")))[2], "3");

    // Without remtags the tags of names.dat stay unread.
    t.settings.remtags = 0;
    t.table.formLoad();
    EXPECT_EQ(t.doc.banktags[0], "Bank: 1");
}

TEST(StartAndExit, ThePortSettingsAreKeptWithTheSpeedTheModelCanDo)
{
    Table t;
    writeBytes(file(t, "com250.ini"), "[com]\r\nport=12\r\nbaud=57600\r\nusbc=1\r\n");
    t.profile.set("model", "bc785d", "1");
    t.profile.set("model", "x96", "1");
    t.profile.set("model", "ubc33", "0");
    t.table.readProfile();
    t.table.readSettingsFiles();
    EXPECT_EQ(t.table.com.port, 12);
    EXPECT_EQ(t.table.com.baud, 57600);   // the BC796D has the fast speeds
    EXPECT_EQ(t.table.com.usbc, 1);
    EXPECT_EQ(t.settings.delay1, 200);

    // Neither the UBC3300 nor a model without x96 starts above 19200.
    for (const char* model : {"ubc", "bc785d"}) {
        SCOPED_TRACE(model);
        t.profile.set("model", "ubc33", std::string(model) == "ubc" ? "1" : "0");
        t.profile.set("model", "x96", std::string(model) == "ubc" ? "1" : "0");
        t.table.readProfile();
        t.table.readSettingsFiles();
        EXPECT_EQ(t.table.com.baud, 19200);
    }
}
