// The main window memtab, its grid model and the splash window info, driven
// as a user drives them: menus, toolbar buttons, tab clicks and typing into
// the grid, with the message boxes and file choosers answered by script.

#include "ui/widgets/gridmodel.h"
#include "ui/splashwindow.h"

#include "support/mainwindowrig.h"

#include <QDialog>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QSignalSpy>
#include <QTabBar>
#include <QTableView>
#include <QTest>
#include <QToolBar>

#include <gtest/gtest.h>

#include <filesystem>
#include <tuple>

namespace kestra {
namespace {

QString qs(const char* utf8) { return QString::fromUtf8(utf8); }

class MainWindowTest : public ::testing::Test, protected test::MainWindowRig {
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

    // A MEM file in the temporary folder with a few channels (all switches
    // off, no delay, no tone, FM, 5 kHz steps) and bank tags.
    std::string writeMem(const std::string& name)
    {
        test::HandMadeMem mem;
        mem.header = "KESTRA MEM V1.02 - made by the test";
        for (auto [number, freq, tag] : {std::tuple{5, "146.0000", "Old tag"}, {205, "155.1000", "Fire"},
                                         {301, "460.2500", "Police"}})
            mem.channels.emplace_back(number, test::channelLine(number, {freq, tag, "0", "0", "0", "0", "0", "0",
                                                                         "0", "0", "0", "0"}));
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

    // Opens the cell's text box with Enter, types text over what it holds and,
    // when enter is set, closes it with Enter.
    void typeIntoCell(int row, int col, const QString& text, bool enter = true)
    {
        QTableView* view = window->memtabel();
        const QModelIndex at = window->gridModel()->indexOfCell(row, col);
        view->setCurrentIndex(at);
        QTest::keyClick(view, Qt::Key_Return);
        QLineEdit* editor = window->text1();
        ASSERT_TRUE(editor->isVisible());
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

    QString channelHeader(int row) const
    {
        return window->gridModel()->headerData(row - 1, Qt::Vertical).toString();
    }
};

TEST_F(MainWindowTest, OpenedFileShowsInGridAndTabsAndStatusBar)
{
    const std::string path = writeMem("scanner.mem");
    openThroughMenu(path);

    ASSERT_EQ(dialogs.asked.size(), 1u);
    EXPECT_EQ(dialogs.asked[0].kind, ScriptedDialogs::ChooserKind::Open);
    EXPECT_EQ(window->windowTitle().toStdString(), "Kestra Console for Uniden UBC3300 - [ " + path + " ]");
    EXPECT_EQ(window->filePanel()->text().toStdString(), path);
    for (auto [tab, text] : {std::pair{0, "1: North"}, {2, "3: Fire dept"}, {10, "Dummy"}})
        EXPECT_EQ(window->tabbed1()->tabText(tab), text);
    EXPECT_EQ(window->frameLabel()->text(), "North");

    // A channel shows its codes as texts; an empty one shows blank throughout.
    for (auto [col, text] : {std::pair{1, "0146.0000"}, {2, "Old tag"}, {3, "Off"}, {9, "FM"}})
        EXPECT_EQ(shown(5, col), text);
    EXPECT_EQ(shown(6, 1), "");
    EXPECT_EQ(shown(6, 9), "");
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

TEST_F(MainWindowTest, EditedCellIsSavedAsTheOnlyChangedLine)
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

TEST_F(MainWindowTest, OpenEditorIsClosedIntoTheGridByATabChange)
{
    typeIntoCell(3, 2, "Half typed", /*enter=*/false);
    EXPECT_EQ(grid.text(3, 2), "");   // still in the editor
    window->actionArray("bk0")[1]->trigger();
    EXPECT_EQ(doc.currentBank, 1);
    EXPECT_FALSE(window->text1()->isVisible());
    EXPECT_TRUE(doc.dirty);
    EXPECT_EQ(doc.cell(0, 3, col::tag), "Half typed");
    window->actionArray("bk0")[0]->trigger();
    EXPECT_EQ(shown(3, 2), "");   // a row without a frequency shows blank
}

TEST_F(MainWindowTest, CaptionFollowsTheSavedFileAndNew)
{
    typeIntoCell(1, 1, "162.4");
    dialogs.files.push_back(dir.file("weather"));
    entry("tabsaveas")->trigger();
    const std::string saved = dir.file("weather") + ".mem";
    EXPECT_TRUE(std::filesystem::exists(saved));
    EXPECT_EQ(window->windowTitle().toStdString(), "Kestra Console for Uniden UBC3300 - [ " + saved + " ]");
    EXPECT_EQ(window->filePanel()->text().toStdString(), saved);

    entry("menunew")->trigger();
    EXPECT_EQ(window->windowTitle(), "Kestra Console for Uniden UBC3300 - [ Untitled ]");
    EXPECT_EQ(shown(1, 1), "");
}

TEST_F(MainWindowTest, ExitWithUnsavedDataAsksAndCancelKeepsTheWindow)
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

TEST_F(MainWindowTest, ExitWithoutTheFirstQuestionSavesOnYes)
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

TEST_F(MainWindowTest, CleanDocumentExitsWithoutAQuestionAndKeepsWidthsButNoPlace)
{
    settings.option4 = 1;
    EXPECT_TRUE(window->close());
    EXPECT_TRUE(dialogs.shown.empty());
    EXPECT_TRUE(std::filesystem::exists(dir.file("lastused.sav")));
    // window and tabwidth are off: no place is kept, the widths are written all the same.
    EXPECT_FALSE(std::filesystem::exists(dir.path() / "window.dat"));
    EXPECT_EQ(fileLines("tabw250.ini").size(), 10u);
}

class MainWindowPlaceTest : public MainWindowTest {
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

TEST_F(MainWindowPlaceTest, PlaceAndColumnWidthsComeFromTheirFilesAndGoBackAtExit)
{
    EXPECT_EQ(window->size(), QSize(600, 400));
    EXPECT_EQ(window->memtabel()->columnWidth(0), 120);
    EXPECT_EQ(window->memtabel()->columnWidth(1), 180);
    EXPECT_EQ(window->memtabel()->columnWidth(9), 60);

    // Another family of scanners takes the widths kept for its layout.
    table->setModel(ModelSwitches::of(Model::BC796D));
    ASSERT_EQ(window->gridModel()->columnCount(), 11);
    EXPECT_EQ(window->memtabel()->columnWidth(1), 200);
    // The last column takes the rest of the grid's width, at least its kept 40.
    EXPECT_GE(window->memtabel()->columnWidth(10), 40);

    window->memtabel()->setColumnWidth(2, 77);
    window->resize(640, 420);
    const int last = window->memtabel()->columnWidth(10);
    EXPECT_TRUE(window->close());
    EXPECT_EQ(fileLines("tabw785.ini"), (std::vector<std::string>{"1500", "3000", "1155", "750", "750", "750",
                                                                 "750", "750", "750", "750",
                                                                 std::to_string(last * 15)}));
    const auto place = fileLines("window.dat");
    ASSERT_EQ(place.size(), 5u);
    EXPECT_EQ(place[2], "9600");
    EXPECT_EQ(place[3], "6300");
    EXPECT_EQ(place[4], "0");
}

TEST_F(MainWindowTest, BankEmptyStatusListsTheBanksWithoutChannels)
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

TEST_F(MainWindowTest, MenuBarHasItsMenusAndTheBankEntriesOfTheTabs)
{
    QStringList top;
    for (QAction* a : window->menuBar()->actions()) top << a->objectName() + "=" + a->text();
    EXPECT_EQ(top, (QStringList{"file_tab=&File", "tab_edit=&Edit", "viewmenu=&View", "memtab_edit=&Options",
                                "men_ar5=&UBC3300", "menu_trunk=&Trunk", "srcmenu1=Sea&rch", "setupdt=&Setup",
                                "menu_help=&Help"}));
    EXPECT_EQ(window->tabpop()->title(), "Popup");

    QStringList banks;
    for (QAction* a : window->actionArray("bk0")) banks << a->text();
    EXPECT_EQ(banks, (QStringList{"Bank 1", "Bank 2", "Bank 3", "Bank 4", "Bank 5", "Bank 6", "Bank 7", "Bank 8",
                                  "Bank 9", "Bank 10", "Dummy", "Search / Edge"}));
    EXPECT_FALSE(window->actionArray("bk0")[11]->isEnabled());   // no tab of its own
    EXPECT_EQ(window->actionArray("filenaam").size(), 4u);
}

TEST_F(MainWindowTest, ToolbarButtonsHaveTipsAndIconsAndFollowTheirMenuEntries)
{
    EXPECT_EQ(window->toolbar1()->actions().size(), 20);
    EXPECT_EQ(window->toolbar2()->actions().size(), 21);
    // Each button carries the key of its menu handler and is usable exactly when that entry is.
    for (QToolBar* bar : {window->toolbar1(), window->toolbar2()})
        for (QAction* button : bar->actions()) {
            const std::string key = button->property("key").toString().toStdString();
            SCOPED_TRACE(key);
            EXPECT_FALSE(button->toolTip().isEmpty());
            EXPECT_EQ(button->statusTip(), button->toolTip());
            EXPECT_FALSE(button->icon().isNull());
            QAction* menuEntry = window->action(key);
            EXPECT_EQ(button->isEnabled(), menuEntry != nullptr && menuEntry->isEnabled());
        }

    // "Open a file from disk" runs File > Open.
    const std::string path = writeMem("toolbar.mem");
    dialogs.files.push_back(path);
    QTest::mouseClick(window->toolbar1()->widgetForAction(toolbarButton("tabopen")), Qt::LeftButton);
    EXPECT_EQ(doc.fnaam, path);

    // A button follows its entry when the entry is switched off and on later.
    QAction* undoButton = toolbarButton("tabundo");
    EXPECT_TRUE(undoButton->isEnabled());
    entry("tabundo")->setEnabled(false);
    EXPECT_FALSE(undoButton->isEnabled());
    entry("tabundo")->setEnabled(true);
    EXPECT_TRUE(undoButton->isEnabled());
}

TEST_F(MainWindowTest, ViewTogglesBarsAndRightClickOpensThePopupMenu)
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

TEST_F(MainWindowTest, AboutBoxShowsTheApplicationTitle)
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
    for (auto [align, expected] : {std::pair{0, Qt::AlignLeft}, {1, Qt::AlignHCenter}, {2, Qt::AlignRight}}) {
        settings.align = align;
        EXPECT_EQ(alignment(), expected);
    }

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
    SplashWindow info(doc, [&shownMain] { ++shownMain; });
    EXPECT_EQ(info.findChild<QLabel*>("Label1")->text(), "Kestra Console");
    EXPECT_EQ(info.findChild<QLabel*>("Label2")->text(), "for Uniden BC2xxD/7xxD/ UBC3300");
    EXPECT_TRUE(info.timer1()->isActive());
    EXPECT_FALSE(info.timer2()->isActive());
    info.show();
    const int startHeight = info.height();
    EXPECT_LT(startHeight, SplashWindow::pixels(SplashWindow::kFullTwips));

    ASSERT_TRUE(QTest::qWaitFor([&info] { return info.timer2()->isActive(); }, 3000));
    EXPECT_EQ(info.height(), SplashWindow::pixels(1300));
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
