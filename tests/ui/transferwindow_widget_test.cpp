// The transfer window arcomm8 as "Read Data", on a virtual scanner in virtual
// time: what it shows when it opens, its options, a run from the click to the
// window closing, STOP, and a scanner that does not answer; then Read Data from
// the main window, through the window into the grid.

// The scanner's headers come before Qt's: Qt's keyword macros would otherwise
// reach into them.
#include "sim/documentmapping.h"
#include "sim/virtualport.h"
#include "sim/virtualscanner.h"

#include "ui/transferwindow.h"
#include "core/text.h"

#include "support/mainwindowrig.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QTabBar>
#include <QStatusBar>
#include <QTest>

#include <gtest/gtest.h>

#include <functional>
#include <memory>

namespace kestra {
namespace {

// A scanner holding channels in banks 1 and 2, with tags of its own.
void fillScanner(sim::VirtualScanner& scanner)
{
    Document source;
    source.clearstores();
    source.model = ModelSwitches::of(scanner.model());
    test::putChannel(source, 0, 1, "0146.5200", "Calling");
    test::putChannel(source, 1, 1, "0155.1000", "Fire dispatch");
    test::putChannel(source, 1, 2, "0155.2250", "Fire \"tac\"");
    test::putChannel(source, 1, 40, "0460.2500", "Police");
    sim::fillFromDocument(scanner.memory(), source);
    for (int b = 0; b < 10; ++b) scanner.memory().bankTags[b] = "";
    scanner.memory().bankTags[0] = "Home";
    scanner.memory().bankTags[1] = "Fire, EMS";
    scanner.memory().priority[1] = 140;
}

class TransferWindowTest : public ::testing::Test {
protected:
    test::TempDir dir;
    VirtualScheduler scheduler;
    ScriptedDialogs dialogs;
    Settings settings;
    Document doc;
    std::unique_ptr<sim::VirtualScanner> scanner;
    std::shared_ptr<VirtualDevice> device = std::make_shared<VirtualDevice>();
    std::unique_ptr<TransferWindow> window;

    // A scanner of the model at the speed; the document starts with the
    // model given (which need not be the scanner's).
    void attach(Model model, int baud = 19200, Model docModel = Model::BC785D)
    {
        scanner = std::make_unique<sim::VirtualScanner>(model, baud);
        device->respond = [this](std::string_view b) { return scanner->receive(b); };
        device->baud = [this] { return scanner->baudRate(); };
        doc.clearstores();
        doc.model = ModelSwitches::of(docModel);
    }

    // Opens the window on a port to the scanner; showing it runs its load.
    void open(int baud = 19200, bool unbound = false)
    {
        TransferWindow::Link link;
        if (!unbound) link.port = std::make_unique<VirtualPort>(scheduler, device);
        link.comport = 1;
        link.baud = baud;
        window = std::make_unique<TransferWindow>(TransferWindow::Caption::ReadData,
                                           TransferWindow::Services{doc, settings, dialogs, scheduler, dir.path()},
                                           std::move(link));
        window->show();
    }

    // Lets the opening reads run to their end.
    void openingDone()
    {
        scheduler.runUntil([this] { return window->engine().status.text3 == "Trunk type read Ok"; }, 60'000);
        window->refreshStatus();
    }

    void click(QAbstractButton* button) { QTest::mouseClick(button, Qt::LeftButton); }

    // Runs virtual time until the run has ended one way or the other.
    bool runToEnd()
    {
        return scheduler.runUntil([this] { return window->runFinished() || window->engine().stopflag == 1; },
                                  3600'000);
    }
};

TEST_F(TransferWindowTest, OpeningWakesTheScannerKeepsTheModelWordAndShowsTheBankTags)
{
    attach(Model::BC785D, 19200, Model::BC250D);
    fillScanner(*scanner);
    open();
    EXPECT_EQ(window->windowTitle(), "Read Data");
    // The frame names the scanner that answered, whatever the document's model.
    EXPECT_TRUE(contains(window->modelWord(), "BC785D")) << window->modelWord();
    EXPECT_EQ(window->frame3D2()->title(), "Communication BC785D");
    EXPECT_EQ(test::readBytes(dir.path() / "version.ini"), window->modelWord());

    // Before the tags are in, the lines carry the channels and the bank only.
    EXPECT_EQ(window->combo1()->count(), 10);
    EXPECT_EQ(window->combo1()->itemText(1), "101 - 200 / 2");
    EXPECT_EQ(window->combo1()->currentIndex(), -1);
    openingDone();
    EXPECT_EQ(window->combo1()->itemText(0), "1 - 100 / 1 / Home");
    EXPECT_EQ(window->combo1()->itemText(1), "101 - 200 / 2 / Fire; EMS");
    EXPECT_EQ(window->combo1()->itemText(9), "901 - 1000 / 10 / _");
    EXPECT_EQ(window->text3()->text(), "Trunk type read Ok");
    EXPECT_TRUE(dialogs.shown.empty());
}

TEST_F(TransferWindowTest, TheFrameNamesTheScannerThatAnswersElseTheDocumentsModel)
{
    for (const bool answers : {true, false}) {
        attach(answers ? Model::UBC3300 : Model::BC785D, 19200, answers ? Model::BC785D : Model::BC296D);
        if (!answers) device->respond = [](std::string_view) { return std::string(); };
        open();
        EXPECT_EQ(window->frame3D2()->title(), answers ? "Communication UBC3300" : "Communication BC296D") << answers;
    }
}

TEST_F(TransferWindowTest, TheDelaySliderShowsAtFastSpeedsAndSetsTheStepDelay)
{
    attach(Model::BC785D, 9600);
    open(9600);
    for (QWidget* w : {static_cast<QWidget*>(window->label6()), static_cast<QWidget*>(window->text6()),
                       static_cast<QWidget*>(window->hscroll1()), static_cast<QWidget*>(window->command10())})
        EXPECT_FALSE(w->isVisible()) << w->objectName().toStdString();

    attach(Model::BC785D, 19200);
    settings.delay1 = 10;   // below the floor: the window loads with 25
    open(19200);
    ASSERT_TRUE(window->hscroll1()->isVisible());
    EXPECT_TRUE(window->label6()->isVisible());
    EXPECT_EQ(window->hscroll1()->minimum(), 25);
    EXPECT_EQ(window->hscroll1()->maximum(), 1000);
    EXPECT_EQ(window->hscroll1()->value(), 25);
    EXPECT_EQ(window->text6()->text(), "25");

    // Below 100 the field shows the warning colour.
    const QColor red(255, 0, 0), green(0, 255, 0);
    EXPECT_EQ(window->text6()->palette().color(QPalette::Base), red);
    for (auto [value, colour] : {std::pair{250, green}, {99, red}, {100, green}}) {
        window->hscroll1()->setValue(value);
        EXPECT_EQ(settings.delay1, value);
        EXPECT_EQ(window->engine().stepDelay(), value);
        EXPECT_EQ(window->text6()->text(), QString::number(value));
        EXPECT_EQ(window->text6()->palette().color(QPalette::Base), colour) << value;
    }

    window->hscroll1()->setValue(600);
    click(window->command10());
    EXPECT_EQ(settings.delay1, 100);
    EXPECT_EQ(window->hscroll1()->value(), 100);
    EXPECT_EQ(window->text6()->text(), "100");
}

TEST_F(TransferWindowTest, ARangeReadsFrequenciesOnlyAndTheBankOptionsGiveTheOtherKindsBack)
{
    attach(Model::BC785D);
    open();
    const char* kinds[] = {"Frequencies", "Trunk Id's", "Search Events", "Trunk Bank Settings"};
    for (int i = 0; i < 4; ++i) EXPECT_EQ(window->check3D3(i)->text(), kinds[i]);

    for (int i = 1; i < 4; ++i) window->check3D3(i)->setChecked(true);
    window->check3D3(0)->setChecked(false);
    click(window->option3D2(2));
    EXPECT_TRUE(window->check3D3(0)->isChecked());
    EXPECT_TRUE(window->check3D3(0)->isEnabled());
    for (int i = 1; i < 4; ++i) {
        EXPECT_FALSE(window->check3D3(i)->isChecked()) << i;
        EXPECT_FALSE(window->check3D3(i)->isEnabled()) << i;
    }
    // "All" with a range: Frequencies and Search Events only.
    click(window->command22());
    for (int i = 0; i < 4; ++i) EXPECT_EQ(window->check3D3(i)->isChecked(), i % 2 == 0) << i;

    for (int option : {0, 1}) {
        click(window->option3D2(2));
        click(window->option3D2(option));
        for (int i = 1; i < 4; ++i) EXPECT_TRUE(window->check3D3(i)->isEnabled()) << option << " " << i;
        click(window->command22());
        for (int i = 0; i < 4; ++i) EXPECT_TRUE(window->check3D3(i)->isChecked()) << option << " " << i;
    }
}

TEST_F(TransferWindowTest, TheRangeFieldsTakeDigitsMinusAndPointOnly)
{
    attach(Model::BC785D);
    open();
    QLineEdit* start = window->text10(0);
    start->setFocus();
    QTest::keyClicks(start, "1a2 -.x3");
    EXPECT_EQ(start->text(), "12-.3");
    QTest::keyClick(start, Qt::Key_Backspace);
    EXPECT_EQ(start->text(), "12-.");
}

TEST_F(TransferWindowTest, StopOrClosingTheWindowEndsTheRunAndKeepsWhatWasRead)
{
    for (const bool byClosing : {false, true}) {
        SCOPED_TRACE(byClosing ? "closed" : "STOP");
        attach(Model::BC785D);
        fillScanner(*scanner);
        open();
        openingDone();
        ASSERT_TRUE(device->held);
        click(window->option3D2(0));
        click(window->command1());
        ASSERT_TRUE(window->runStarted());
        scheduler.runUntil([this] { return window->engine().chanid >= 120; }, 3600'000);
        if (byClosing) {
            window->reject();
            EXPECT_FALSE(device->held);   // the port is let go at once
        } else {
            click(window->command3d1());
            EXPECT_TRUE(window->engine().port().isOpen());
            EXPECT_TRUE(window->command1()->isEnabled());
            EXPECT_TRUE(window->frame3D6()->isEnabled());
            EXPECT_TRUE(window->isVisible());
        }
        EXPECT_EQ(window->engine().stopflag, 1);
        EXPECT_FALSE(window->runFinished());

        // Nothing more is read however long the window stays.
        const int at = window->engine().chanid;
        scheduler.advance(60'000);
        EXPECT_EQ(window->engine().chanid, at);
        EXPECT_EQ(device->held, !byClosing);
        EXPECT_EQ(doc.memdata[0][1][col::freq], "0146.5200");
        EXPECT_EQ(doc.memdata[1][1][col::freq], "0155.1000");
        EXPECT_EQ(doc.memdata[1][40][col::freq], "Empty");   // cleared, not reached
        EXPECT_TRUE(dialogs.shown.empty());
        window.reset();
    }
}

TEST_F(TransferWindowTest, AScannerThatDoesNotAnswerIsNotDetected)
{
    attach(Model::BC785D);
    device->respond = [](std::string_view) { return std::string(); };
    open();
    openingDone();
    dialogs.shown.clear();
    click(window->option3D2(0));
    click(window->command1());
    ASSERT_EQ(dialogs.shown.size(), 1u);
    EXPECT_EQ(dialogs.shown[0].text, "No scanner detected at comport. Check baudrate/comport/scanner is in remote mode");
    EXPECT_EQ(dialogs.shown[0].icon, Icon::Critical);
    EXPECT_FALSE(window->runStarted());
    EXPECT_TRUE(window->command1()->isEnabled());
    EXPECT_TRUE(window->isVisible());
}

TEST_F(TransferWindowTest, APortBoundToNothingIsToldAtLoadAndTheWindowStays)
{
    attach(Model::BC785D);
    open(19200, true);
    ASSERT_FALSE(dialogs.shown.empty());
    EXPECT_EQ(dialogs.shown[0].text, "The selected comport is already in use or not available in your system!");
    EXPECT_TRUE(window->isVisible());
}

// Read Data from the main window: the guard, the question of an unsaved
// document, and the read through the window into the grid.
class ReadDataMenuTest : public ::testing::Test, protected test::MainWindowRig {
protected:
    void SetUp() override
    {
        Options options = Options::connected();
        options.beforeWindow = [this] { fillScanner(ports->virtualScanner(doc.model.model())); };
        start(options);
    }

    // Runs body on the Read Data window once it is up (its load has run by
    // then); false when no window opened.
    bool whileOpen(const std::function<void(TransferWindow*)>& body) { return ifOpened<TransferWindow>("menread", body); }
};

TEST_F(ReadDataMenuTest, ReadingBankTwoThroughTheWindowFillsTheGridAndTheTabs)
{
    settings.synctagsr = 1;
    // Bank 2 is on show with a channel the scanner does not have.
    doc.memdata[1][50][col::freq] = "0853.0000";
    doc.memdata[1][50][col::tag] = "Stale";
    clickTab(1);
    ASSERT_EQ(doc.currentBank, 1);
    ASSERT_EQ(shown(50, 2), "Stale");
    doc.memdata[0][1][col::tag] = "Not read";   // another bank stays
    ASSERT_TRUE(window->action("menread")->isEnabled());
    bool closedByItself = false;
    ASSERT_TRUE(whileOpen([&](TransferWindow* w) {
        EXPECT_EQ(w->windowTitle(), "Read Data");
        scheduler.runUntil([w] { return w->readPipeline()->opened(); }, 60'000);
        w->refreshStatus();
        EXPECT_EQ(w->combo1()->itemText(1), "101 - 200 / 2 / Fire; EMS");
        QTest::mouseClick(w->option3D2(1), Qt::LeftButton);
        w->combo1()->setCurrentIndex(1);
        QTest::mouseClick(w->command1(), Qt::LeftButton);
        EXPECT_FALSE(w->command1()->isEnabled());
        EXPECT_FALSE(w->frame3D6()->isEnabled());

        // Half way the status fields follow the channel.
        scheduler.runUntil([w] { return w->engine().chanid >= 150; }, 3600'000);
        w->refreshStatus();
        EXPECT_EQ(w->text4()->text(), "150");
        EXPECT_GT(w->panel3d1()->value(), 40);
        EXPECT_LT(w->panel3d1()->value(), 60);

        scheduler.runUntil([w] { return !w->isVisible(); }, 3600'000);
        closedByItself = !w->isVisible() && w->runFinished() && w->result() == QDialog::Accepted;
    }));
    EXPECT_TRUE(closedByItself);
    EXPECT_TRUE(dialogs.shown.empty()) << dialogs.shown.front().text;
    EXPECT_EQ(window->statusBar()->currentMessage(), "Read Data finished; 0 retries.");
    EXPECT_TRUE(doc.dirty);
    EXPECT_EQ(doc.memdata[0][1][col::tag], "Not read");
    EXPECT_EQ(doc.priochan[1], 140);
    EXPECT_TRUE(std::filesystem::exists(dir.path() / "rxdat.txt"));

    // The tags as read, an empty one as " " (as kestractl stores it).
    EXPECT_EQ(doc.banktags[1], "Fire; EMS");
    EXPECT_EQ(doc.banktags[2], " ");
    EXPECT_EQ(window->tabbed1()->tabText(1), "2: Fire; EMS");
    EXPECT_EQ(window->tabbed1()->tabText(0), "1: Home");

    EXPECT_EQ(shown(1, 1), "0155.1000");
    EXPECT_EQ(shown(1, 2), "Fire dispatch");
    EXPECT_EQ(shown(2, 2), "Fire  tac ");
    EXPECT_EQ(shown(40, 1), "0460.2500");
    EXPECT_EQ(shown(40, 2), "Police");
    EXPECT_EQ(shown(3, 1), "");
    EXPECT_EQ(shown(50, 1), "");   // cleared before the read
    EXPECT_EQ(shown(50, 2), "");
}

TEST_F(ReadDataMenuTest, TagsStayWhenTheSettingIsOffOrNoRunFinished)
{
    const std::string before = doc.banktags[1];
    settings.synctagsr = 0;
    ASSERT_TRUE(whileOpen([&](TransferWindow* w) {
        scheduler.runUntil([w] { return w->readPipeline()->opened(); }, 60'000);
        QTest::mouseClick(w->option3D2(2), Qt::LeftButton);
        w->text10(0)->setText("101");
        w->text10(1)->setText("102");
        QTest::mouseClick(w->command1(), Qt::LeftButton);
        scheduler.runUntil([w] { return !w->isVisible(); }, 3600'000);
    }));
    EXPECT_EQ(doc.banktags[1], before);
    EXPECT_EQ(doc.memdata[1][1][col::freq], "0155.1000");
    EXPECT_TRUE(doc.dirty);

    // Opened and closed again without a read: the tags read stay out and the
    // document is not marked.
    settings.synctagsr = 1;
    doc.dirty = false;
    ASSERT_TRUE(whileOpen([&](TransferWindow* w) {
        scheduler.runUntil([w] { return w->readPipeline()->opened(); }, 60'000);
    }));
    EXPECT_EQ(doc.banktags[1], before);
    EXPECT_FALSE(doc.dirty);
}

TEST_F(ReadDataMenuTest, AnUnsavedDocumentIsAskedAboutFirst)
{
    doc.dirty = true;
    dialogs.answers = {Answer::Cancel};
    EXPECT_FALSE(whileOpen([](TransferWindow*) {}));
    ASSERT_EQ(dialogs.shown.size(), 1u);
    EXPECT_EQ(dialogs.shown[0].text, "This will clear your table.\r\nIf not saved, data is lost!\r\nSave data?");
    EXPECT_EQ(dialogs.shown[0].buttons, Buttons::YesNoCancel);

    dialogs.answers = {Answer::No};
    EXPECT_TRUE(whileOpen([](TransferWindow*) {}));
}

} // namespace
} // namespace kestra
