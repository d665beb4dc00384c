// The Virtual Control window lcd2, opened from the main window on the built-in
// virtual scanner in virtual time: how it takes the place of the editor and
// gives it back, the keys and the knob on the wire, the panel following what
// the scanner shows, and a transmission in the history, the log and a WAV file.

// The scanner's headers come before Qt's: Qt's keyword macros would otherwise
// reach into them.
#include "sim/traffic.h"
#include "sim/virtualscanner.h"

#include "ui/transferwindow.h"
#include "ui/virtualcontrolwindow.h"
#include "ui/widgets/extendergrid.h"
#include "ui/widgets/lcdpanel.h"
#include "ui/widgets/panelkey.h"
#include "ui/widgets/tuningknob.h"

#include "platform/fake/fakerecorder.h"

#include "support/mainwindowrig.h"

#include <QComboBox>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QTableWidget>
#include <QTest>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <set>
#include <string>
#include <vector>

#include <unistd.h>

namespace kestra {
namespace {

class VirtualControlTest : public ::testing::Test, public test::MainWindowRig {
protected:
    // The program as a user starts it, with a BC796D on com1.
    void startWith(const std::function<void(Settings&)>& configure = {})
    {
        Options options = Options::connected();
        options.beforeWindow = [this, configure] {
            doc.model = ModelSwitches::of(Model::BC796D);
            if (configure) configure(settings);
        };
        start(options);
    }

    sim::VirtualScanner& scanner() { return ports->virtualScanner(Model::BC796D); }

    // The toolbar button "vc"; every command the window's link writes is kept.
    VirtualControlWindow* open()
    {
        QAction* button = toolbarButton("vc");
        if (!button || !button->isEnabled()) {
            ADD_FAILURE() << "no usable toolbar button vc";
            return nullptr;
        }
        button->trigger();
        VirtualControlWindow* vc = window->virtualControl();
        if (vc) vc->loop().onSend = [this](const std::string& command) { sent.push_back(command); };
        return vc;
    }

    // Lets the link run for ms of virtual time.
    void run(int ms)
    {
        scheduler.advance(ms);
        QCoreApplication::processEvents();
    }

    // What was written besides the polls.
    std::vector<std::string> keysSent() const
    {
        static const std::set<std::string> polls = {"LCD\r", "ST\r", "SQ\r", "SG\r", "MD\r", "RM\r",
                                                    "AT\r",  "IS\r", "SB\r", "CB\r", "TB\r"};
        std::vector<std::string> keys;
        for (const std::string& c : sent)
            if (!polls.count(c)) keys.push_back(c);
        return keys;
    }

    // Bank 1 scanning, with channel 20 on 167.3500 on the air from the
    // first second for eight seconds.
    void airOnChannel20()
    {
        sim::VirtualScanner& radio = scanner();
        sim::Channel& channel = radio.memory().channel(20);
        channel.freq = 1673500;
        channel.tag = "AMK OSL CH 2";
        channel.lockout = false;
        radio.memory().scanBanks[0] = true;
        std::string error;
        const auto air = sim::parseTrafficScript("1000,8000,ch=20\n", error);
        ASSERT_TRUE(air) << error;
        radio.setTraffic(sim::Traffic::scripted(*air));
    }

    std::vector<std::string> sent;
};

TEST_F(VirtualControlTest, TakesThePlaceOfTheEditorKeepsItsSizeAndGivesThePortBack)
{
    // The user's own display font, out of bounds in the per-user store.
    test::writeBytes(dir.path() / "vfo.ini", "KESTRA-VFO ini data v1.01\r\n[color]\r\ncustom= 1\r\n");
    profile.set("VirtualControl", "Fontname", "Ari");
    profile.set("VirtualControl", "Fontsize", "30");
    startWith();
    VirtualControlWindow* vc = open();
    ASSERT_NE(vc, nullptr);
    EXPECT_EQ(vc->objectName(), "lcd2");
    EXPECT_EQ(vc->windowTitle(), "KESTRA - Virtual Control");
    EXPECT_TRUE(vc->isVisible());
    EXPECT_FALSE(window->isVisible());
    EXPECT_TRUE(table->vcrunning);
    QStringList tabs;
    for (int i = 0; i < vc->sstab1()->count(); ++i) tabs << vc->sstab1()->tabText(i);
    EXPECT_EQ(tabs, QStringList({"Keyboard", "History", "Src Extender", "Log Setup", "Audio Setup", "Audio Rec.",
                                 "Font", "Misc."}));

    EXPECT_EQ(vc->findChild<QComboBox*>("fontname")->currentText(), "Terminal");
    EXPECT_EQ(vc->findChild<QComboBox*>("fontsize")->currentText(), "24");

    // The resting scanner scans: the display and the status line follow the polls.
    run(3000);
    EXPECT_TRUE(vc->lcd()->text(1).contains("SCANNING")) << vc->lcd()->text(1).toStdString();
    EXPECT_EQ(vc->label22()->text(), "Scan Mode");
    EXPECT_NE(test::readBytes(dir.path() / "version.ini").find("BC796D"), std::string::npos);

    // Smaller than its size, it snaps back.
    const QSize least(9300 / 15, 8700 / 15);
    vc->resize(100, 100);
    EXPECT_EQ(vc->size(), least);
    vc->resize(900, 700);
    EXPECT_EQ(vc->size(), QSize(least.width(), 700));

    vc->close();
    EXPECT_TRUE(window->isVisible());
    EXPECT_FALSE(table->vcrunning);
    EXPECT_EQ(fileLines("vfo.ini").at(0), "KESTRA-VFO ini data v1.01");
    EXPECT_EQ(profile.get("VirtualControl", "Fontsize", ""), "24");
    // Nothing more goes to the scanner once the window is closed.
    const std::size_t written = sent.size();
    run(2000);
    EXPECT_EQ(sent.size(), written);
}

TEST_F(VirtualControlTest, BesideTheEditorThePortActionsRefuseUntilItCloses)
{
    startWith([](Settings& s) { s.vcm = 1; });
    VirtualControlWindow* vc = open();
    ASSERT_NE(vc, nullptr);
    EXPECT_TRUE(window->isVisible());
    EXPECT_TRUE(table->vcrunning);
    for (const char* entry : {"menread", "memsend", "comset"}) trigger(entry);
    EXPECT_EQ(messages(), std::vector<std::string>(3, MemTable::kVcRunning));

    vc->close();
    EXPECT_TRUE(window->isVisible());
    // The port is free again: Read Data opens its window.
    whileOpen<TransferWindow>("menread", [](TransferWindow* transfer) { transfer->reject(); });
    EXPECT_EQ(messages().size(), 3u);
}

TEST_F(VirtualControlTest, KeysTuningAndActiveListsGoToTheScanner)
{
    startWith();
    VirtualControlWindow* vc = open();
    ASSERT_NE(vc, nullptr);
    run(1000);
    sent.clear();

    QTest::mouseClick(vc->keyA(6), Qt::LeftButton);   // RESUME
    QTest::mouseClick(vc->keyB(5), Qt::LeftButton);   // 5
    // Right button on Lock Out: the hold at the press, the key at the click.
    QTest::mouseClick(vc->keyA(10), Qt::RightButton);
    QTest::mousePress(vc->keyC(1), Qt::RightButton);  // PRI held
    QTest::mouseRelease(vc->keyC(1), Qt::RightButton);
    QTest::mousePress(vc->keyC(8), Qt::LeftButton);   // V UP
    EXPECT_EQ(vc->keyC(8)->label()->palette().color(QPalette::WindowText), QColor(Qt::white));
    QTest::mouseRelease(vc->keyC(8), Qt::LeftButton);
    EXPECT_EQ(keysSent(), (std::vector<std::string>{"KEY00\r", "KEY02 5\r", "KEY06H\r", "KEY06\r", "KEY05H\r",
                                                    "KEY15\r"}));

    // Direct tune: letters stay out of the box, Enter tunes channel 999.
    sent.clear();
    vc->text19()->clear();
    QTest::keyClicks(vc->text19(), "1x46.52");
    EXPECT_EQ(vc->text19()->text(), "146.52");
    QTest::keyClick(vc->text19(), Qt::Key_Return);
    EXPECT_EQ(vc->text19()->text(), "0146.5200");
    EXPECT_EQ(keysSent(), (std::vector<std::string>{"MA999\r", "RF01465200\r"}));
    run(5000);
    EXPECT_TRUE(vc->lcd()->text(1).contains("146.5200")) << vc->lcd()->text(1).toStdString();

    // At rest the long cycle reads the active lists into the Misc. tab; a
    // double click sends the changed list and the scanner takes it.
    const std::array<bool, 10> scanBanks = scanner().memory().scanBanks;
    for (int i = 0; i < 10; ++i) EXPECT_EQ(vc->linkb1(110 + i)->on(), scanBanks[i]) << i;
    sent.clear();
    QTest::mouseDClick(vc->linkb1(111), Qt::LeftButton);
    run(4000);
    EXPECT_EQ(scanner().memory().scanBanks[1], !scanBanks[1]);
    EXPECT_EQ(vc->linkb1(111)->on(), !scanBanks[1]);
    ASSERT_FALSE(keysSent().empty());
    EXPECT_EQ(keysSent().front().substr(0, 3), "CB ");
    // The trunk lists only change colour.
    sent.clear();
    QTest::mouseDClick(vc->linkb1(5), Qt::LeftButton);
    EXPECT_TRUE(vc->linkb1(5)->on());
    EXPECT_TRUE(keysSent().empty());
}

TEST_F(VirtualControlTest, TheHeldKnobTurnsTenStepsASecondAndStopsOnRelease)
{
    startWith();
    VirtualControlWindow* vc = open();
    ASSERT_NE(vc, nullptr);
    run(500);
    sent.clear();
    const auto count = [this](const char* key) {
        const auto keys = keysSent();
        return std::count(keys.begin(), keys.end(), std::string(key));
    };

    QTest::mousePress(vc->knob(), Qt::LeftButton);
    run(2000);
    QTest::mouseRelease(vc->knob(), Qt::LeftButton);
    EXPECT_LE(count("KEY16\r"), 20);
    EXPECT_GE(count("KEY16\r"), 19);
    EXPECT_EQ(count("KEY15\r"), 0);
    EXPECT_NE(vc->knob()->angle(), 0);
    run(1000);
    EXPECT_LE(count("KEY16\r"), 20);

    QTest::mousePress(vc->knob(), Qt::RightButton);
    run(500);
    QTest::mouseRelease(vc->knob(), Qt::RightButton);
    EXPECT_EQ(count("KEY15\r"), 5);
}

// Where the screenshots go: $TEST_OUTPUT_DIR, else a folder of the build's Testing/.
std::filesystem::path screenshotFolder()
{
    if (const char* dir = std::getenv("TEST_OUTPUT_DIR"); dir && *dir) return dir;
    return KESTRA_TEST_OUTPUT_DIR;
}

TEST_F(VirtualControlTest, ThePanelMirrorsATransmissionAndTheStatusWindowStandsInForIt)
{
    startWith();
    // The scanner scans bank 1, where channel 20 comes on the air a second
    // after it starts, for eight seconds.
    airOnChannel20();

    VirtualControlWindow* vc = open();
    ASSERT_NE(vc, nullptr);
    run(4000);
    LcdPanel* lcd = vc->lcd();
    EXPECT_TRUE(lcd->text(0).startsWith("SCAN +")) << lcd->text(0).toStdString();
    EXPECT_TRUE(lcd->text(1).contains("167.3500")) << lcd->text(1).toStdString();
    EXPECT_EQ(lcd->text(2).trimmed(), "AMK OSL CH 2");
    // The scanner marks "SCAN" inverted.
    for (int i = 0; i < 16; ++i) EXPECT_EQ(lcd->cell(0, i).inverted, i < 4) << i;
    EXPECT_FALSE(vc->busyIndicator()->isHidden());
    EXPECT_GT(vc->meter()->barsShown(), 0);
    EXPECT_EQ(vc->label22()->text(), "Scan Mode");

    const std::filesystem::path folder = screenshotFolder();
    std::filesystem::create_directories(folder);
    const std::filesystem::path shot = folder / "virtualcontrol.png";
    ASSERT_TRUE(vc->grab().save(QString::fromStdString(shot.string())));
    std::cout << "screenshot: " << shot.string() << std::endl;

    // Minimised with vcstat, the status window mirrors the display; a click
    // on it brings the panel back, and its place goes to vfo.ini.
    table->settings().vcstat = 1;
    vc->setWindowState(Qt::WindowMinimized);
    StatusWindow* states2 = vc->states2();
    ASSERT_NE(states2, nullptr);
    EXPECT_TRUE(states2->isVisible());
    EXPECT_TRUE(states2->line(1).contains("167.3500"));
    EXPECT_TRUE(states2->busy());
    states2->move(40, 50);
    QTest::mouseClick(states2->label(2), Qt::LeftButton);
    EXPECT_FALSE(vc->isMinimized());
    EXPECT_FALSE(states2->isVisible());

    // Auto Resume after a second of an open squelch.
    sent.clear();
    vc->combo1()->setCurrentIndex(0);
    vc->check2()->setChecked(true);
    run(2500);
    EXPECT_GT(std::count(sent.begin(), sent.end(), "KEY00\r"), 0);

    // The transmission ends: the scanner scans on and Busy goes.
    run(6000);
    EXPECT_TRUE(lcd->text(1).contains("SCANNING")) << lcd->text(1).toStdString();
    EXPECT_TRUE(vc->busyIndicator()->isHidden());

    vc->close();
    const auto lines = fileLines("vfo.ini");
    EXPECT_EQ(lines.at(2), "left=600");
    EXPECT_EQ(lines.at(3), "top=750");
}

TEST_F(VirtualControlTest, ATransmissionGoesOnTopOfTheHistoryIntoTheLogAndIntoOneWavFile)
{
    startWith();
    FakeRecorder recorder(scheduler);
    window->setRecorder(&recorder);
    airOnChannel20();

    VirtualControlWindow* vc = open();
    ASSERT_NE(vc, nullptr);
    vc->check3()->setChecked(true);
    QTest::mouseClick(vc->command4(), Qt::LeftButton);
    run(4000);
    EXPECT_EQ(vc->label27()->text(), "Recording");

    // The transmission ends at nine seconds; after the post busy delay the
    // recording is saved. The scanner scans on without a new hit.
    run(8000);
    EXPECT_TRUE(vc->label27()->text().isEmpty());
    QTableWidget* grid = vc->loggrid();
    ASSERT_NE(grid->item(0, 3), nullptr);
    EXPECT_TRUE(grid->item(0, 3)->text().contains("167.3500")) << grid->item(0, 3)->text().toStdString();
    EXPECT_EQ(grid->item(0, 0)->text().trimmed(), "SCAN");
    EXPECT_EQ(grid->item(1, 3), nullptr);

    // Beside the line: how long it was on the air (logged at the first tick
    // that saw Busy, until the transmission ended at 9 s) and its recording.
    ASSERT_NE(grid->item(0, HitLog::kColumns), nullptr);
    const double onAir = grid->item(0, HitLog::kColumns)->text().section(' ', 0, 0).toDouble();
    EXPECT_GT(onAir, 6.0);
    EXPECT_LT(onAir, 8.5);
    ASSERT_NE(grid->item(0, HitLog::kColumns + 1), nullptr);
    EXPECT_FALSE(grid->item(0, HitLog::kColumns + 1)->text().isEmpty());
    QTableWidget* activity = vc->activityGrid();
    ASSERT_EQ(activity->rowCount(), 1);
    EXPECT_EQ(activity->item(0, 1)->text(), "167.3500");
    EXPECT_EQ(activity->item(0, 4)->text(), "1");
    EXPECT_EQ(activity->item(0, 5)->text(), grid->item(0, HitLog::kColumns)->text());
    // The recording plays from its row, or the user hears why not.
    EXPECT_FALSE(vc->playButton()->isEnabled());
    grid->setCurrentCell(0, 0);
    ASSERT_TRUE(vc->playButton()->isEnabled());
    const std::size_t before = messages().size();
    QTest::mouseClick(vc->playButton(), Qt::LeftButton);
    const bool played = !vc->playing().empty();
    EXPECT_EQ(messages().size(), before + (played ? 0 : 1));
    const std::string playing = vc->playing();

    vc->close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    const auto log = fileLines("log.csv");
    ASSERT_EQ(log.size(), 2u);
    EXPECT_EQ(log[0], "KESTRA,Halvorn, Lowland");
    EXPECT_EQ(log[1].rfind("SCAN , ", 0), 0u) << log[1];
    EXPECT_NE(log[1].find("167.3500"), std::string::npos) << log[1];

    std::vector<std::filesystem::path> wavs;
    for (const auto& entry : std::filesystem::directory_iterator(dir.path() / "audio")) wavs.push_back(entry.path());
    ASSERT_EQ(wavs.size(), 1u);
    const std::string name = wavs[0].filename().string();
    EXPECT_EQ(name.rfind("audio_", 0), 0u) << name;
    EXPECT_NE(name.find("167.3500"), std::string::npos) << name;
    EXPECT_EQ(wavs[0].extension(), ".wav");
    EXPECT_GT(std::filesystem::file_size(wavs[0]), 44u);
    if (!playing.empty()) {
        EXPECT_EQ(playing, wavs[0].string());
    }
}

// 10,000 hits through Timer8's judgement into the real window (history grid,
// Activity table, log file): the history stays at 100 rows, each hit costs
// the same at the end as at the start, and the process does not grow. The
// figures go to the test's output.
TEST_F(VirtualControlTest, TenThousandHitsKeepTheHistoryAtAHundredRowsAtASteadyCostAndSize)
{
    startWith();
    VirtualControlWindow* vc = open();
    ASSERT_NE(vc, nullptr);
    vc->check3()->setChecked(true);
    HitLog& hits = vc->hitLog();
    DisplayState s;
    s.trunkmode = 0;
    s.opclass = 1;
    const auto residentKb = [] {
        long pages = 0, resident = 0;
        std::ifstream("/proc/self/statm") >> pages >> resident;
        return resident * (::sysconf(_SC_PAGESIZE) / 1024);
    };
    const auto cpuMs = [] {
        timespec t{};
        ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &t);
        return t.tv_sec * 1000.0 + t.tv_nsec / 1e6;
    };
    // Two ticks a hit, as Timer8 sees a transmission and its end: 200 channels
    // of a busy county, each heard fifty times.
    const auto feed = [&](int from, int to) {
        const double start = cpuMs();
        for (int n = from; n < to; ++n) {
            const int channel = n % 200 + 1;
            s.channeltext = " " + std::string(channel < 10 ? "00" : channel < 100 ? "0" : "") + std::to_string(channel);
            s.freqtext = " " + std::to_string(450 + channel % 100) + "." + std::to_string(1000 + channel).substr(1) + "0";
            s.lcdline[1] = s.freqtext + "  FM   ";
            s.busyshown = true;
            hits.tick(s);
            s.busyshown = false;
            hits.tick(s);
        }
        QCoreApplication::processEvents();
        return (cpuMs() - start) / (to - from);
    };
    const double firstMs = feed(0, 1000);
    const long firstKb = residentKb();
    feed(1000, 9000);
    const double lastMs = feed(9000, 10000);
    const long lastKb = residentKb();
    std::printf("10,000 hits: %.3f ms a hit for the first 1,000, %.3f ms for the last; resident %ld kB after 1,000, "
                "%ld kB after 10,000\n",
                firstMs, lastMs, firstKb, lastKb);

    EXPECT_EQ(vc->loggrid()->rowCount(), HitLog::kRows);
    EXPECT_EQ(hits.activity.rows().size(), static_cast<std::size_t>(ActivityLog::kRows));
    EXPECT_EQ(vc->activityGrid()->rowCount(), 200);
    EXPECT_EQ(vc->activityGrid()->item(0, 4)->text(), "50");
    // At Timer8's most, two hits a second, 2% of a core is 10 ms a hit.
    EXPECT_LT(lastMs, 10.0);
    EXPECT_LT(lastMs, 3 * firstMs + 0.5) << "a hit grows dearer as hits pile up";
    EXPECT_LT(lastKb - firstKb, 4096) << "the window grows with the hits";
    vc->close();
    EXPECT_EQ(fileLines("log.csv").size(), 10001u);
}

TEST_F(VirtualControlTest, TheSrcExtenderTabLoadsRangeJBetweenPollsAndTheScannerSearchesIt)
{
    startWith();
    test::writeBytes(dir.path() / "SEARCH.TXT", "presets\r\n\r\nstart,end,mode,step,tag,x\r\n"
                                                "\"0453.0000\",\"0454.0000\",\"NFM\",\"12.5\",\"Utility\",\"\"\r\n");
    VirtualControlWindow* vc = open();
    ASSERT_NE(vc, nullptr);
    run(1000);
    auto* grid = vc->findChild<ExtenderGrid*>("sgrid");
    ASSERT_NE(grid, nullptr);
    ASSERT_EQ(grid->rowCount(), 1);
    vc->sstab1()->setCurrentIndex(2);
    EXPECT_EQ(vc->sstab1()->tabText(2), "Src Extender");
    sent.clear();
    QCoreApplication::processEvents();
    const QRect cell = grid->visualItemRect(grid->item(0, 1));
    QTest::mouseClick(grid->viewport(), Qt::LeftButton, {}, cell.center());
    QTest::mouseDClick(grid->viewport(), Qt::LeftButton, {}, cell.center());
    EXPECT_EQ(keysSent(), (std::vector<std::string>{"KEY07\r", "LL04530000 J\r", "LU04540000 J\r", "TA S J Utility\r",
                                                    "KEY01\r", "KEY09\r", "CB J\r", "RM NFM\r", "ST 12.5K\r"}));
    run(3000);
    // Polling goes on, and the panel shows the search in range 10.
    EXPECT_EQ(sent.back(), "LCD\r");
    EXPECT_EQ(scanner().memory().search[9].tag, "Utility");
    EXPECT_TRUE(vc->lcd()->text(1).contains("453.")) << vc->lcd()->text(1).toStdString();
}

} // namespace
} // namespace kestra
