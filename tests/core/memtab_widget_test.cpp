// The main window memtab, its grid model and the splash window info, driven
// as a user drives them: menus, toolbar buttons, tab clicks and typing into
// the grid, with the message boxes and file choosers answered by script.

#include "core/gridmodel.h"
#include "core/info.h"
#include "core/memtab.h"
#include "core/memtable.h"

#include "support/mainwindowrig.h"

#include <QDialog>
#include <QKeyEvent>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QProgressBar>
#include <QSignalSpy>
#include <QTabBar>
#include <QTableView>
#include <QTest>
#include <QTimer>
#include <QToolBar>

#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <memory>
#include <set>

namespace kestra {
namespace {

using test::channelLine;

QString qs(const char* utf8) { return QString::fromUtf8(utf8); }

// A channel line with valid codes: frequency, tag, then all switches off,
// no delay, no tone, FM, 5 kHz steps.
std::string plainChannel(int number, const std::string& freq, const std::string& tag)
{
    return channelLine(number, {freq, tag, "0", "0", "0", "0", "0", "0", "0", "0", "0", "0"});
}

class MemtabTest : public ::testing::Test, protected test::MainWindowRig {
protected:
    void SetUp() override
    {
        Options options;
        options.beforeWindow = [this] { prepare(); };
        start(options);
    }

    // Settings and files of the program's folder before Form Load.
    virtual void prepare() {}

    QAction* entry(const char* name) { return window->action(name); }

    // A MEM file in the temporary folder with a few channels and bank tags.
    std::string writeMem(const std::string& name)
    {
        test::HandMadeMem mem;
        mem.header = "KESTRA MEM V1.02 - made by the test";
        mem.channels = {{5, plainChannel(5, "146.0000", "Old tag")},
                        {205, plainChannel(205, "155.1000", "Fire")},
                        {301, plainChannel(301, "460.2500", "Police")}};
        mem.bankTags = {"North", "South", "Fire dept", "Bank: 4", "Bank: 5", "Bank: 6",
                        "Bank: 7", "Bank: 8", "Bank: 9", "Bank: 10", "Dummy", "Search"};
        const std::string path = dir.file(name);
        test::writeBytes(path, mem.text());
        return path;
    }

    // File > Open with the chooser answering path.
    void openThroughMenu(const std::string& path)
    {
        dialogs.files.push_back(path);
        entry("tabopen")->trigger();
    }

    void clickTab(int index)
    {
        QTabBar* tabs = window->tabbed1();
        QTest::mouseClick(tabs, Qt::LeftButton, {}, tabs->tabRect(index).center());
    }

    // Opens the cell's text box with Enter, types text over what it holds and,
    // when enter is set, closes it with Enter.
    void typeIntoCell(int row, int col, const QString& text, bool enter = true)
    {
        QTableView* view = window->memtabel();
        const QModelIndex at = window->gridModel()->indexOfCell(row, col);
        view->setCurrentIndex(at);
        QTest::keyClick(view, Qt::Key_Return);
        QLineEdit* editor = openEditor();
        ASSERT_NE(editor, nullptr);
        editor->selectAll();
        for (const QChar ch : text) {
            if (ch.unicode() < 128) {
                QTest::keyClick(editor, char(ch.unicode()));
            } else {   // typed through a keyboard layout: the key event carries the text
                QKeyEvent press(QEvent::KeyPress, Qt::Key_unknown, Qt::NoModifier, QString(ch));
                QKeyEvent release(QEvent::KeyRelease, Qt::Key_unknown, Qt::NoModifier, QString(ch));
                QApplication::sendEvent(editor, &press);
                QApplication::sendEvent(editor, &release);
            }
        }
        if (enter) QTest::keyClick(editor, Qt::Key_Return);
    }

    // The cell's text box on the grid, if one is open.
    QLineEdit* openEditor() const
    {
        for (QLineEdit* editor : window->memtabel()->viewport()->findChildren<QLineEdit*>())
            if (editor->isVisible()) return editor;
        return nullptr;
    }

    QString channelHeader(int row) const
    {
        return window->gridModel()->headerData(row - 1, Qt::Vertical).toString();
    }
};

// ---- Files, tabs and editing ---------------------------------------------------------

TEST_F(MemtabTest, OpenedFileShowsInGridAndTabsAndStatusBar)
{
    const std::string path = writeMem("scanner.mem");
    openThroughMenu(path);

    ASSERT_EQ(dialogs.asked.size(), 1u);
    EXPECT_EQ(dialogs.asked[0].kind, ScriptedDialogs::ChooserKind::Open);
    EXPECT_EQ(window->windowTitle().toStdString(), "Kestra Console for Uniden UBC3300 - [ " + path + " ]");
    EXPECT_EQ(window->filePanel()->text().toStdString(), path);
    EXPECT_EQ(window->tabbed1()->tabText(0), "1: North");
    EXPECT_EQ(window->tabbed1()->tabText(2), "3: Fire dept");
    EXPECT_EQ(window->tabbed1()->tabText(10), "Dummy");
    EXPECT_EQ(window->frameLabel()->text(), "North");

    EXPECT_EQ(shown(5, 1), "0146.0000");
    EXPECT_EQ(shown(5, 2), "Old tag");
    EXPECT_EQ(shown(5, 3), "Off");
    EXPECT_EQ(shown(5, 9), "FM");
    EXPECT_EQ(shown(6, 1), "");   // an empty channel shows blank throughout
    EXPECT_EQ(shown(6, 9), "");
    EXPECT_EQ(channelHeader(1), "1");
    EXPECT_EQ(channelHeader(100), "100");

    clickTab(2);
    EXPECT_EQ(doc.currentBank, 2);
    EXPECT_EQ(window->frameLabel()->text(), "Fire dept");
    EXPECT_EQ(channelHeader(1), "201");
    EXPECT_EQ(shown(5, 1), "0155.1000");
    EXPECT_EQ(shown(5, 2), "Fire");
    EXPECT_TRUE(window->actionArray("bk0")[2]->isChecked());
    EXPECT_FALSE(window->actionArray("bk0")[0]->isChecked());
    EXPECT_EQ(window->channelPanel()->text(), " Channel 201");

    // The current cell moves: the channel panel follows it.
    window->memtabel()->setCurrentIndex(window->gridModel()->indexOfCell(7, 2));
    EXPECT_EQ(grid.selection().row, 7);
    EXPECT_EQ(window->channelPanel()->text(), " Channel 207");

    // The View menu's bank entries select the tab, the Dummy entry included.
    window->actionArray("bk0")[3]->trigger();
    EXPECT_EQ(window->tabbed1()->currentIndex(), 3);
    EXPECT_EQ(shown(1, 1), "0460.2500");
    window->actionArray("bk0")[10]->trigger();
    EXPECT_EQ(window->tabbed1()->currentIndex(), 10);
    EXPECT_EQ(doc.currentBank, 10);
    EXPECT_EQ(window->frameLabel()->text(), "Dummy");
    EXPECT_EQ(channelHeader(1), "1001");
    EXPECT_TRUE(window->actionArray("bk0")[10]->isChecked());
    EXPECT_FALSE(doc.dirty);
}

TEST_F(MemtabTest, EditedCellIsSavedAsTheOnlyChangedLine)
{
    const std::string path = writeMem("edit.mem");

    // A copy of the document that went through the same banks without the edit.
    openThroughMenu(path);
    clickTab(1);
    clickTab(0);
    const std::string baseline = dir.file("baseline.mem");
    dialogs.files.push_back(baseline);
    entry("tabsaveas")->trigger();
    ASSERT_TRUE(std::filesystem::exists(baseline));

    openThroughMenu(path);
    ASSERT_EQ(doc.fnaam, path);
    typeIntoCell(5, 1, "146.52");
    typeIntoCell(5, 2, qs("Caf\xc3\xa9 5"));   // é is one byte in the file
    EXPECT_TRUE(doc.dirty);
    EXPECT_EQ(grid.text(5, 2), "Caf\xe9 5");
    clickTab(1);
    clickTab(0);
    EXPECT_EQ(shown(5, 1), "0146.5200");   // normalised on its way through the store
    EXPECT_EQ(shown(5, 2), qs("Caf\xc3\xa9 5"));

    entry("savenu")->trigger();
    EXPECT_FALSE(doc.dirty);
    EXPECT_TRUE(dialogs.shown.empty());

    const auto before = test::crlfLines(test::readBytes(baseline));
    const auto after = test::crlfLines(test::readBytes(path));
    ASSERT_EQ(before.size(), after.size());
    std::vector<std::size_t> changed;
    for (std::size_t i = 0; i < after.size(); ++i)
        if (before[i] != after[i]) changed.push_back(i);
    ASSERT_EQ(changed.size(), 1u);
    EXPECT_EQ(after[changed[0]],
              "5,\"0146.5200\",\"Caf\xe9 5\",\"0\",\"0\",\"0\",\"0\",\"0\",\"None\",\"0\",\"0\",\"0\",\"0\",\" \"");
    EXPECT_EQ(before[changed[0]].substr(0, 25), "5,\"0146.0000\",\"Old tag\",\"");
}

TEST_F(MemtabTest, OpenEditorIsClosedIntoTheGridByATabChange)
{
    typeIntoCell(3, 2, "Half typed", /*enter=*/false);
    EXPECT_EQ(grid.text(3, 2), "");   // still in the editor
    window->actionArray("bk0")[1]->trigger();
    EXPECT_EQ(doc.currentBank, 1);
    EXPECT_EQ(openEditor(), nullptr);
    EXPECT_TRUE(doc.dirty);
    EXPECT_EQ(doc.cell(0, 3, col::tag), "Half typed");
    window->actionArray("bk0")[0]->trigger();
    EXPECT_EQ(shown(3, 2), "");   // a row without a frequency shows blank
}

TEST_F(MemtabTest, CaptionFollowsFileNameAndModel)
{
    EXPECT_EQ(window->windowTitle(), "Kestra Console for Uniden UBC3300 - [ Untitled ]");
    EXPECT_EQ(entry("men_ar5")->text(), "&UBC3300");
    EXPECT_EQ(window->gridModel()->columnCount(), 10);

    table->setModel(ModelSwitches::of(Model::BC785D));
    EXPECT_EQ(window->windowTitle(), "Kestra Console for Uniden BC785D - [ Untitled ]");
    EXPECT_EQ(entry("men_ar5")->text(), "&BC785D");
    ASSERT_EQ(window->gridModel()->columnCount(), 11);
    EXPECT_EQ(window->gridModel()->headerData(4, Qt::Horizontal).toString(), "Record");
    EXPECT_EQ(window->gridModel()->headerData(10, Qt::Horizontal).toString(), "Step");

    typeIntoCell(1, 1, "162.4");
    dialogs.files.push_back(dir.file("weather"));
    entry("tabsaveas")->trigger();
    const std::string saved = dir.file("weather") + ".mem";
    EXPECT_TRUE(std::filesystem::exists(saved));
    EXPECT_EQ(window->windowTitle().toStdString(), "Kestra Console for Uniden BC785D - [ " + saved + " ]");
    EXPECT_EQ(window->filePanel()->text().toStdString(), saved);

    entry("menunew")->trigger();
    EXPECT_EQ(window->windowTitle(), "Kestra Console for Uniden BC785D - [ Untitled ]");
    EXPECT_EQ(shown(1, 1), "");
}

// ---- Exit ----------------------------------------------------------------------------------

TEST_F(MemtabTest, ExitWithUnsavedDataAsksAndCancelKeepsTheWindow)
{
    typeIntoCell(1, 1, "151.625");
    ASSERT_TRUE(doc.dirty);

    dialogs.answers = {Answer::Ok, Answer::Cancel};
    EXPECT_FALSE(window->close());
    EXPECT_TRUE(window->isVisible());
    ASSERT_EQ(dialogs.shown.size(), 2u);
    EXPECT_EQ(dialogs.shown[0].text, "Exit KESTRA?");
    EXPECT_EQ(dialogs.shown[0].title, "Exit");
    EXPECT_EQ(dialogs.shown[0].buttons, Buttons::OkCancel);
    EXPECT_EQ(dialogs.shown[1].text, "Save data?");
    EXPECT_EQ(dialogs.shown[1].title, "Warning");
    EXPECT_EQ(dialogs.shown[1].buttons, Buttons::YesNoCancel);
    EXPECT_TRUE(doc.dirty);
    EXPECT_FALSE(std::filesystem::exists(dir.file("lastused.sav")));

    // Cancel at the first question asks nothing more.
    dialogs.shown.clear();
    dialogs.answers = {Answer::Cancel};
    entry("exit_tab")->trigger();
    EXPECT_TRUE(window->isVisible());
    EXPECT_EQ(dialogs.shown.size(), 1u);

    // No closes without saving; the rescue copy is written all the same.
    dialogs.shown.clear();
    dialogs.answers = {Answer::Ok, Answer::No};
    QAction* endProgram = window->toolbar1()->actions().front();
    QTest::mouseClick(window->toolbar1()->widgetForAction(endProgram), Qt::LeftButton);
    EXPECT_FALSE(window->isVisible());
    EXPECT_EQ(dialogs.shown.size(), 2u);
    const std::string rescue = test::readBytes(dir.file("lastused.sav"));
    EXPECT_NE(rescue.find("\r\n1,\"0151.6250\","), std::string::npos);
    EXPECT_EQ(profile.get("model", "ubc33", "?"), "1");
}

TEST_F(MemtabTest, ExitWithoutTheFirstQuestionSavesOnYes)
{
    settings.option4 = 1;
    const std::string path = writeMem("exit.mem");
    openThroughMenu(path);
    typeIntoCell(2, 1, "453.1");
    dialogs.answers = {Answer::Yes};
    EXPECT_TRUE(window->close());
    ASSERT_EQ(dialogs.shown.size(), 1u);
    EXPECT_EQ(dialogs.shown[0].text, "Save data?");
    EXPECT_NE(test::readBytes(path).find("\r\n2,\"0453.1000\","), std::string::npos);
}

TEST_F(MemtabTest, CleanDocumentExitsWithoutTheSaveQuestion)
{
    settings.option4 = 1;
    EXPECT_TRUE(window->close());
    EXPECT_TRUE(dialogs.shown.empty());
    EXPECT_TRUE(std::filesystem::exists(dir.file("lastused.sav")));
}

// ---- Window place and column widths -----------------------------------------------------------

class MemtabPlaceTest : public MemtabTest {
protected:
    void prepare() override
    {
        settings.window = 1;
        settings.tabwidth = 1;
        settings.option4 = 1;
        test::writeBytes(dir.path() / "window.dat", "1500\r\n1200\r\n9000\r\n6000\r\n0\r\n");
        test::writeBytes(dir.path() / "tabw250.ini",
                         "1800\r\n2700\r\n900\r\n1200\r\n1200\r\n1200\r\n1200\r\n1350\r\n900\r\n900\r\n");
        test::writeBytes(dir.path() / "tabw785.ini", "1500\r\n3000\r\n750\r\n750\r\n750\r\n750\r\n750\r\n"
                                                     "750\r\n750\r\n750\r\n600\r\n");
    }
};

TEST_F(MemtabPlaceTest, PlaceAndColumnWidthsComeFromTheirFilesAndGoBackAtExit)
{
    EXPECT_EQ(window->size(), QSize(600, 400));
    EXPECT_EQ(window->memtabel()->columnWidth(0), 120);
    EXPECT_EQ(window->memtabel()->columnWidth(1), 180);
    EXPECT_EQ(window->memtabel()->columnWidth(9), 60);

    // Another family of scanners takes the widths kept for its layout.
    table->setModel(ModelSwitches::of(Model::BC796D));
    ASSERT_EQ(window->gridModel()->columnCount(), 11);
    EXPECT_EQ(window->memtabel()->columnWidth(1), 200);
    EXPECT_EQ(window->memtabel()->columnWidth(10), 40);

    window->memtabel()->setColumnWidth(2, 77);
    window->resize(640, 420);
    EXPECT_TRUE(window->close());
    EXPECT_EQ(test::crlfLines(test::readBytes(dir.path() / "tabw785.ini")),
              (std::vector<std::string>{"1500", "3000", "1155", "750", "750", "750", "750", "750", "750", "750",
                                        "600"}));
    const auto place = test::crlfLines(test::readBytes(dir.path() / "window.dat"));
    ASSERT_EQ(place.size(), 5u);
    EXPECT_EQ(place[2], "9600");
    EXPECT_EQ(place[3], "6300");
    EXPECT_EQ(place[4], "0");
}

TEST_F(MemtabTest, WithoutTheSettingsNoPlaceIsKeptButWidthsAre)
{
    settings.option4 = 1;
    EXPECT_TRUE(window->close());
    EXPECT_FALSE(std::filesystem::exists(dir.path() / "window.dat"));
    EXPECT_EQ(test::crlfLines(test::readBytes(dir.path() / "tabw250.ini")).size(), 10u);
}

// ---- Bank Empty Status -----------------------------------------------------------------------

TEST_F(MemtabTest, BankEmptyStatusListsTheBanksWithoutChannels)
{
    openThroughMenu(writeMem("status.mem"));
    window->actionArray("bk0")[4]->trigger();
    typeIntoCell(50, 1, "851.0125");   // in the grid only, not yet in the store

    entry("emptystatus")->trigger();
    auto* dialog = window->findChild<QDialog*>("emptystatus");
    ASSERT_NE(dialog, nullptr);
    EXPECT_TRUE(dialog->isVisible());
    EXPECT_EQ(dialog->windowTitle(), "Bank Empty Status");
    auto* list = dialog->findChild<QListWidget*>("List1");
    ASSERT_NE(list, nullptr);
    QStringList lines;
    for (int i = 0; i < list->count(); ++i) lines << list->item(i)->text();
    EXPECT_EQ(lines, (QStringList{"Bank Empty Status:", "------------------", "Bank 2: Empty", "Bank 6: Empty",
                                  "Bank 7: Empty", "Bank 8: Empty", "Bank 9: Empty", "Bank 10: Empty",
                                  "Bank Dummy: Empty"}));
    dialog->accept();
}

// ---- Menus, toolbars, bars and pop-up ---------------------------------------------------------

struct MenuEntry {
    const char* menu;
    const char* name;
    const char* caption;
};

// Every control of the menus with its caption, menu by menu, in order.
const MenuEntry kMenuTree[] = {
    {"file_tab", "menunew", "&New"}, {"file_tab", "tabopen", "&Open"}, {"file_tab", "openspecial", "Open special"},
    {"file_tab", "savenu", "&Save"}, {"file_tab", "tabsaveas", "Save &As"}, {"file_tab", "mnuimp2", "&Import"},
    {"mnuimp2", "impicf", "Import &ICF File"}, {"mnuimp2", "impadv", "Import ICF File &Advanced..."},
    {"mnuimp2", "imp_ic2", "Frequencies from MEM File..."},
    {"mnuimp2", "imp_trtags", "Trunk ID's and Tags from MEM file"},
    {"mnuimp2", "imp_trset", "Trunk Settings from MEM file"},
    {"mnuimp2", "impsrc1", "Search Range Data from MEM file"},
    {"file_tab", "open_780file", "Open LORVEN mem file"}, {"file_tab", "expcsv", "&Export CSV Data"},
    {"file_tab", "menuprint", "&Print..."}, {"file_tab", "setup_print", "Setup Printer Layout"},
    {"file_tab", "filenaam", "No old Files"}, {"file_tab", "imp_csv", "&Advanced Data Import"},
    {"file_tab", "catch", "Web Frequency &Catcher"}, {"file_tab", "backrest", "&Backup and Restore"},
    {"file_tab", "exit_tab", "E&xit"},
    {"tab_edit", "tabundo", "&Undo"}, {"tab_edit", "tab_cut", "Cu&t"}, {"tab_edit", "tab_copy", "&Copy"},
    {"tab_edit", "tab_paste", "&Paste"}, {"tab_edit", "tab_delete", "&Delete                              Del"},
    {"tab_edit", "cut_line", "Cut Line(s)"}, {"tab_edit", "copy_line", "Copy Line(s)"},
    {"tab_edit", "paste_line", "Paste Line(s)"}, {"tab_edit", "paste_special", "Paste Line Special"},
    {"tab_edit", "copy_channhels", "Copy/Move/Swap Memory &Channels"},
    {"tab_edit", "swapbanks", "Copy/Move/Swap Memory &Banks"}, {"tab_edit", "edit_shiftup", "Shift Channel Up"},
    {"tab_edit", "edit_shiftdown", "Shift Channel Down"}, {"tab_edit", "tabselect", "Select &All"},
    {"tab_edit", "menufind", "&Find..."}, {"tab_edit", "menu_repl", "Replace"},
    {"tab_edit", "menucreate", "C&lear Current Bank"},
    {"viewmenu", "bk0", "Bank 1"}, {"viewmenu", "mnu_toolb", "Toolbar"}, {"viewmenu", "nu_hbar", "Helpbar"},
    {"viewmenu", "restable", "Reset Table Width"},
    {"memtab_edit", "memtab_delline", "&Clear Selected Lines          Shift Del"},
    {"memtab_edit", "memtab_inslin", "&Insert Empty Line"},
    {"memtab_edit", "memtab_remlines", "Remove &All Empty Lines"},
    {"memtab_edit", "memtab_shiftup", "&Remove Selected Lines  "},
    {"memtab_edit", "remove_pass", "Clear All &Lockout Channels"},
    {"memtab_edit", "rempskip", "Clear All &Pskip Channels"}, {"memtab_edit", "menu_fd", "&Fill Down"},
    {"memtab_edit", "menu_fs", "Fill Series"}, {"memtab_edit", "emptystatus", "Show Bank Empty Status"},
    {"memtab_edit", "memdupli", "Find &Duplicate Channels"}, {"memdupli", "fd_curbank", "in Current Bank"},
    {"memdupli", "fd_allbanks", "in All Banks"}, {"memdupli", "find_duplisub", "Including Subtone"},
    {"memtab_edit", "remove_dupli", "Remove D&uplicate Channels"},
    {"memtab_edit", "memtab_sort", "&Sort by Frequency "}, {"memtab_sort", "sort_up", "&Ascending OLD"},
    {"memtab_sort", "sort_down", "&Descending OLD"}, {"memtab_sort", "sort_allb", "&Ascending"},
    {"memtab_sort", "sort_rangedown", "&Descending"}, {"memtab_edit", "tabeasy", "&Easy Fill"},
    {"memtab_edit", "checktab", "Check &Data In Table"},
    {"memtab_edit", "runband", "Check Table using &Bandplan"}, {"runband", "runband1", "Current Bank"},
    {"runband", "runband2", "All Banks"}, {"memtab_edit", "tag_ption", "Table Tags Options"},
    {"tag_ption", "center_tags", "Center Memory Tags"}, {"tag_ption", "rem_space", "Remove Leading Spaces"},
    {"men_ar5", "menread", "&Read Data From Scanner"}, {"men_ar5", "memsend", "&Send Data To Scanner"},
    {"men_ar5", "vc", "&Virtual Control"}, {"men_ar5", "ditun", "Direct Tune"},
    {"men_ar5", "mnu_prioch", "Priority Channels"}, {"men_ar5", "other82", "&Other Options"},
    {"men_ar5", "setdelay", "&Easy program"}, {"men_ar5", "debugs", "Send Data Debug"},
    {"men_ar5", "comset", "Rs232 &Communication and Scanner Model Setup"},
    {"menu_trunk", "mnu_idlist", "&ID List"}, {"menu_trunk", "trunkset", "&System Settings"},
    {"srcmenu1", "redit", "&Range Editor"}, {"srcmenu1", "sextender", "Search Range &Extender"},
    {"srcmenu1", "srclockout", "&Lockout Frequencies"},
    {"setupdt", "preset_step", "Preset &Offset Settings"}, {"setupdt", "tbtags", "&Bank Tags"},
    {"setupdt", "set_search", "&Active Banks"}, {"setupdt", "setdef", "Setup &Default Data"},
    {"setupdt", "soft_options", "&Software Options"},
    {"menu_help", "help_edit", "&Contents"}, {"menu_help", "srchelp", "&Search For Help On.."},
    {"menu_help", "open_manaul", "Read User Manual"}, {"menu_help", "shortkey", "&Keyboard Shortcuts"},
    {"menu_help", "hpabout", "&About"},
    {"tabpop", "popedit", "Edit"}, {"popedit", "popcut", "Cut "}, {"popedit", "popcopy", "Copy"},
    {"popedit", "tabpaste", "Paste"}, {"popedit", "pop_delete", "Delete"}, {"popedit", "popcline", "Cut Line"},
    {"popedit", "popcopyline", "Copy Line"}, {"popedit", "poppasteline", "Paste Line"},
    {"popedit", "popdel", "Clear Selected Lines"}, {"popedit", "popinster", "Insert Line"},
    {"popedit", "popshift", "Remove Selected Lines"}, {"popedit", "pop_shiftup", "Shift Channel Up"},
    {"popedit", "pop_shiftdown", "Shift Channel Down"}, {"popedit", "easypopup", "Easy Fill"},
    {"popedit", "popfill", "Fill Down"},
};

// The entries that work in this version; every other entry is there, disabled.
const std::set<std::string> kWorkingEntries = {"menunew", "tabopen", "openspecial", "savenu", "tabsaveas",
                                               "open_780file", "exit_tab", "bk0", "mnu_toolb", "nu_hbar",
                                               "emptystatus", "backrest", "hpabout", "popedit", "restable", "setdef",
                                               "soft_options", "checktab", "runband1", "runband2", "shortkey",
                                               "comset", "menread", "memsend", "tabundo", "tab_cut",
                                               "tab_copy", "tab_paste", "tab_delete", "cut_line", "copy_line",
                                               "paste_line", "edit_shiftup", "edit_shiftdown", "memtab_delline",
                                               "memtab_inslin", "memtab_remlines", "memtab_shiftup", "remove_pass",
                                               "menu_fd", "menu_fs", "tabeasy", "easypopup", "menucreate",
                                               "copy_channhels", "swapbanks", "tabselect", "paste_special",
                                               "center_tags", "rem_space", "popcut", "popcopy", "tabpaste",
                                               "pop_delete", "popcline", "popcopyline", "poppasteline", "popdel",
                                               "popinster", "popshift", "pop_shiftup", "pop_shiftdown", "popfill",
                                               "sort_allb", "sort_rangedown", "sort_up", "sort_down", "fd_curbank",
                                               "fd_allbanks", "find_duplisub", "remove_dupli", "menufind", "menu_repl"};

TEST_F(MemtabTest, MenuTreeHasEveryControlWithItsCaption)
{
    QStringList top;
    for (QAction* a : window->menuBar()->actions()) top << a->objectName() + "=" + a->text();
    EXPECT_EQ(top, (QStringList{"file_tab=&File", "tab_edit=&Edit", "viewmenu=&View", "memtab_edit=&Options",
                                "men_ar5=&UBC3300", "menu_trunk=&Trunk", "srcmenu1=Sea&rch", "setupdt=&Setup",
                                "menu_help=&Help"}));
    EXPECT_EQ(window->tabpop()->title(), "Popup");

    std::map<std::string, int> position;   // the entries of each menu must come in table order
    for (const MenuEntry& e : kMenuTree) {
        SCOPED_TRACE(e.name);
        QMenu* menu = window->findChild<QMenu*>(e.menu);
        ASSERT_NE(menu, nullptr);
        QAction* found = nullptr;
        int index = 0, at = 0;
        for (QAction* a : menu->actions()) {
            if (a->isSeparator()) continue;
            if (a->objectName() == e.name && !found) {
                found = a;
                at = index;
            }
            ++index;
        }
        ASSERT_NE(found, nullptr);
        EXPECT_EQ(found->text().toStdString(), e.caption);
        EXPECT_GE(at, position[e.menu]);
        position[e.menu] = at;
        const bool working = kWorkingEntries.count(e.name) > 0;
        if (!found->menu()) {
            EXPECT_EQ(found->isEnabled(), working);
        }
    }

    QStringList banks;
    for (QAction* a : window->actionArray("bk0")) banks << a->text();
    EXPECT_EQ(banks, (QStringList{"Bank 1", "Bank 2", "Bank 3", "Bank 4", "Bank 5", "Bank 6", "Bank 7", "Bank 8",
                                  "Bank 9", "Bank 10", "Dummy", "Search / Edge"}));
    EXPECT_FALSE(window->actionArray("bk0")[11]->isEnabled());   // no tab of its own
    EXPECT_EQ(window->actionArray("filenaam").size(), 4u);
}

TEST_F(MemtabTest, ToolbarsHaveTheirTipsInOrderAndCallTheMenuHandlers)
{
    auto tips = [](QToolBar* bar) {
        QStringList list;
        for (QAction* a : bar->actions()) {
            EXPECT_EQ(a->statusTip(), a->toolTip());
            EXPECT_FALSE(a->icon().isNull());
            list << a->toolTip();
        }
        return list;
    };
    EXPECT_EQ(tips(window->toolbar1()),
              (QStringList{"End program", "Open a file from disk", "Save a file", "Undo", "Cut", "Copy", "Paste",
                           "Copy/Move/Swap channels", "Copy/Move/Swap Banks", "Clear selected lines",
                           "Insert empty line", "Remove empty lines", "Remove lines and shift up",
                           "Clear selected area", "Fill Down", "Fill Series", "Fill line with default data",
                           "Search Range Editor", "Read data from scanner", "Send data to scanner"}));
    EXPECT_EQ(tips(window->toolbar2()),
              (QStringList{"Print option", "Advanced Data Import", "WebCatcher", "Direct Tune", "Cut Line(s)",
                           "Copy Line(s)", "Paste Line(s)", "Clear sheet", "Center memory tags", "Sort Ascending",
                           "Sort Decending", "Find Duplicates", "Remove Duplicates", "EasyFill", "Find",
                           "Check data is valid", "Virtual Control Panel", "Setup bank tags", "Software setup",
                           "Shift Channel Down", "Shift Channel up"}));

    // Each button carries the key of its menu handler and is usable exactly when that entry is.
    for (QToolBar* bar : {window->toolbar1(), window->toolbar2()})
        for (QAction* button : bar->actions()) {
            const std::string key = button->property("key").toString().toStdString();
            SCOPED_TRACE(key);
            QAction* menuEntry = window->action(key);
            EXPECT_EQ(button->isEnabled(), menuEntry != nullptr && menuEntry->isEnabled());
        }
    EXPECT_EQ(window->toolbar1()->actions()[2]->property("key").toString(), "savenu");
    EXPECT_EQ(window->toolbar2()->actions()[19]->property("key").toString(), "edit_shiftdown");

    // "Open a file from disk" runs File > Open.
    const std::string path = writeMem("toolbar.mem");
    dialogs.files.push_back(path);
    QAction* open = window->toolbar1()->actions()[1];
    QTest::mouseClick(window->toolbar1()->widgetForAction(open), Qt::LeftButton);
    EXPECT_EQ(doc.fnaam, path);

    // A button follows its entry when the entry is switched off and on later.
    QAction* undoButton = window->toolbar1()->actions()[3];
    EXPECT_TRUE(undoButton->isEnabled());
    entry("tabundo")->setEnabled(false);
    EXPECT_FALSE(undoButton->isEnabled());
    entry("tabundo")->setEnabled(true);
    EXPECT_TRUE(undoButton->isEnabled());
}

TEST_F(MemtabTest, ViewTogglesBarsAndRightClickOpensThePopupMenu)
{
    ASSERT_TRUE(window->toolbar1()->isVisible());
    EXPECT_TRUE(entry("mnu_toolb")->isChecked());
    entry("mnu_toolb")->trigger();
    EXPECT_FALSE(window->toolbar1()->isVisible());
    EXPECT_FALSE(window->toolbar2()->isVisible());
    EXPECT_EQ(settings.toolbar, 0);

    auto* help = window->helpbar()->findChild<QLabel*>();
    ASSERT_NE(help, nullptr);
    EXPECT_EQ(help->text(), "Use right mouse button click in grid to show the popup menu");
    ASSERT_TRUE(window->helpbar()->isVisible());
    entry("nu_hbar")->trigger();
    EXPECT_FALSE(window->helpbar()->isVisible());
    EXPECT_EQ(settings.helpbar, 0);
    entry("nu_hbar")->trigger();
    EXPECT_TRUE(window->helpbar()->isVisible());
    EXPECT_EQ(settings.helpbar, 1);

    QMenu* popedit = window->findChild<QMenu*>("popedit");
    ASSERT_NE(popedit, nullptr);
    QTableView* view = window->memtabel();
    const QRect cell = view->visualRect(window->gridModel()->indexOfCell(2, 2));
    QContextMenuEvent rightClick(QContextMenuEvent::Mouse, cell.center(), view->viewport()->mapToGlobal(cell.center()));
    QApplication::sendEvent(view->viewport(), &rightClick);
    EXPECT_TRUE(QTest::qWaitFor([popedit] { return popedit->isVisible(); }, 2000));
    popedit->hide();
}

TEST_F(MemtabTest, AboutBoxShowsTheApplicationTitle)
{
    entry("hpabout")->trigger();
    ASSERT_EQ(dialogs.shown.size(), 1u);
    EXPECT_EQ(dialogs.shown[0].text.rfind(kApplicationTitle, 0), 0u);
}

// ---- The grid model ------------------------------------------------------------------------

class GridModelTest : public ::testing::Test {
protected:
    GridModelTest() : grid(101, 11), model(grid, settings)
    {
        grid.setText(0, 1, "Freq. (MHz)");
        grid.setText(0, 2, "Tag");
        for (int r = 1; r <= 100; ++r) grid.setText(r, 0, std::to_string(200 + r));
        model.reload();
        view.setModel(&model);
        model.bindSelection(view.selectionModel());
    }

    Settings settings;
    Grid grid;
    GridModel model;
    QTableView view;
};

TEST_F(GridModelTest, ShowsGridTextsAndHeadersInItsOwnCoordinates)
{
    EXPECT_EQ(model.rowCount(), 100);
    EXPECT_EQ(model.columnCount(), 10);
    EXPECT_EQ(model.headerData(0, Qt::Horizontal).toString(), "Freq. (MHz)");
    EXPECT_EQ(model.headerData(1, Qt::Horizontal).toString(), "Tag");
    EXPECT_EQ(model.headerData(0, Qt::Vertical).toString(), "201");
    EXPECT_EQ(model.headerData(99, Qt::Vertical).toString(), "300");

    grid.setText(100, 10, "Auto");
    grid.setText(1, 2, "Stra\xdf" "e \x80");   // ß and the euro sign of the code page
    EXPECT_EQ(model.data(model.index(99, 9)).toString(), "Auto");
    EXPECT_EQ(model.data(model.index(0, 1)).toString(), qs("Stra\xc3\x9f" "e \xe2\x82\xac"));

    const auto alignment = [this] {
        return Qt::Alignment(model.data(model.index(0, 0), Qt::TextAlignmentRole).toInt()) & Qt::AlignHorizontal_Mask;
    };
    settings.align = 0;
    EXPECT_EQ(alignment(), Qt::AlignLeft);
    settings.align = 1;
    EXPECT_EQ(alignment(), Qt::AlignHCenter);
    settings.align = 2;
    EXPECT_EQ(alignment(), Qt::AlignRight);

    grid.resize(101, 12);
    EXPECT_EQ(model.columnCount(), 11);
}

TEST_F(GridModelTest, UserEditsWriteTheGridInTheCodePageAndReportOnce)
{
    std::vector<std::pair<int, int>> edits;
    model.onEdited = [&edits](int row, int col) { edits.emplace_back(row, col); };

    EXPECT_TRUE(model.setData(model.index(4, 1), qs("K\xc3\xbc" "che \xe2\x82\xac \xe2\x98\x83")));
    EXPECT_EQ(grid.text(5, 2), "K\xfc" "che \x80 ?");   // a character the code page lacks becomes "?"
    EXPECT_TRUE(model.setData(model.index(4, 1), qs("K\xc3\xbc" "che \xe2\x82\xac ?")));   // the same text again
    ASSERT_EQ(edits.size(), 1u);
    EXPECT_EQ(edits[0], std::make_pair(5, 2));
    EXPECT_FALSE(model.flags(model.index(0, 0)) & Qt::ItemIsEditable);   // no editor of the view's own
}

TEST_F(GridModelTest, HiddenGridIsSilentAndRepaintsWhenShown)
{
    QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
    QSignalSpy reset(&model, &QAbstractItemModel::modelReset);
    QSignalSpy shownSpy(&model, &GridModel::gridShownChanged);

    grid.setText(3, 3, "On");
    EXPECT_EQ(changed.count(), 1);
    EXPECT_EQ(changed.front().at(0).value<QModelIndex>(), model.index(2, 2));

    grid.hide();
    changed.clear();
    for (int r = 1; r <= 100; ++r) grid.setText(r, 1, "0146.0000");
    EXPECT_EQ(changed.count(), 0);
    grid.show();
    EXPECT_EQ(reset.count(), 0);   // same shape: the texts are repainted, widths and scroll stay
    ASSERT_EQ(changed.count(), 1);
    EXPECT_EQ(changed.front().at(0).value<QModelIndex>(), model.index(0, 0));
    EXPECT_EQ(changed.front().at(1).value<QModelIndex>(), model.index(99, 9));
    ASSERT_EQ(shownSpy.count(), 2);
    EXPECT_FALSE(shownSpy.at(0).at(0).toBool());
    EXPECT_TRUE(shownSpy.at(1).at(0).toBool());
}

TEST_F(GridModelTest, SelectionIsTheSameInGridAndView)
{
    grid.setSelection({7, 3, 4, 5});   // current cell 7,3, other corner 4,5
    EXPECT_EQ(view.currentIndex(), model.index(6, 2));
    const QModelIndexList selected = view.selectionModel()->selectedIndexes();
    EXPECT_EQ(selected.size(), 4 * 3);
    EXPECT_TRUE(view.selectionModel()->isSelected(model.index(3, 4)));
    EXPECT_FALSE(view.selectionModel()->isSelected(model.index(7, 2)));

    // A click and a shift-click in the view give a rectangle with the current cell in a corner.
    view.setSelectionMode(QAbstractItemView::ContiguousSelection);
    view.selectionModel()->setCurrentIndex(model.index(9, 0), QItemSelectionModel::ClearAndSelect);
    EXPECT_EQ(grid.selection(), (GridSelection{10, 1, 10, 1}));
    view.selectionModel()->select(QItemSelection(model.index(9, 0), model.index(19, 3)),
                                  QItemSelectionModel::ClearAndSelect);
    EXPECT_EQ(grid.selection(), (GridSelection{10, 1, 20, 4}));
    view.selectionModel()->setCurrentIndex(model.index(19, 3), QItemSelectionModel::NoUpdate);
    EXPECT_EQ(grid.selection(), (GridSelection{20, 4, 10, 1}));

    // The grid's fixed row and column cannot be selected in the view: clamp to the data cells.
    grid.select(0, 0);
    EXPECT_EQ(view.currentIndex(), model.index(0, 0));
}

// ---- The splash window -------------------------------------------------------------------------

TEST(InfoSplash, GrowsToFullHeightThenFillsDefaultsAndShowsTheMainWindow)
{
    Document doc;
    int shownMain = 0;
    Info info(doc, [&shownMain] { ++shownMain; });
    EXPECT_EQ(info.findChild<QLabel*>("Label1")->text(), "Kestra Console");
    EXPECT_EQ(info.findChild<QLabel*>("Label2")->text(), "for Uniden BC2xxD/7xxD/ UBC3300");
    EXPECT_EQ(info.timer1()->interval(), 25);
    EXPECT_TRUE(info.timer1()->isActive());
    EXPECT_FALSE(info.timer2()->isActive());
    info.show();
    const int startHeight = info.height();
    EXPECT_LT(startHeight, Info::pixels(Info::kFullTwips));

    ASSERT_TRUE(QTest::qWaitFor([&info] { return info.timer2()->isActive(); }, 3000));
    EXPECT_EQ(info.height(), Info::pixels(1300));
    EXPECT_FALSE(info.timer1()->isActive());
    EXPECT_EQ(shownMain, 0);
    EXPECT_EQ(doc.cell(0, 1, col::freq), "");

    ASSERT_TRUE(QTest::qWaitFor([&shownMain] { return shownMain > 0; }, 3000));
    EXPECT_EQ(shownMain, 1);
    EXPECT_FALSE(info.isVisible());
    for (int bank : {0, 9})
        for (int row : {0, 101}) {
            EXPECT_EQ(doc.cell(bank, row, col::freq), "0000.0000");
            EXPECT_EQ(doc.cell(bank, row, col::tag), "         ");
            EXPECT_EQ(doc.cell(bank, row, col::recordHidden), "0");
            EXPECT_EQ(doc.cell(bank, row, col::step), "         ");
        }
    EXPECT_EQ(doc.cell(kDummyBank, 1, col::freq), "");   // banks 0..9 only
}

} // namespace
} // namespace kestra
