// The transfer window on a real serial port: QSerialPort on the pseudo-
// terminal of a running kestractl sim, the program's own clock and event loop.

#include "ui/transferwindow.h"
#include "core/memfile.h"
#include "platform/fake/scripteddialogs.h"
#include "platform/qt/qtscheduler.h"
#include "platform/qt/qtserialport.h"
#include "sim/simprocess.h"
#include "support/mainwindowrig.h"
#include "support/testfiles.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

namespace kestra {
namespace {

// The program's clock, with a hand on the button: the Nth wait of the run
// (counted once armed) has STOP clicked while it waits.
class StopInsideWait : public Scheduler {
public:
    std::int64_t now() const override { return clock.now(); }
    std::unique_ptr<Timer> createTimer() override { return clock.createTimer(); }
    void processEvents() override { clock.processEvents(); }
    void pause(int ms) override { clock.pause(ms); }
    void wait(double seconds) override
    {
        if (armed && --waitsLeft == 0) {
            armed = false;
            QTimer::singleShot(0, [this] {
                QTest::mouseClick(stop, Qt::LeftButton);
                clickedInside = true;
                startButtonAfterClick = start->isEnabled();
            });
        }
        clock.wait(seconds);
        if (clickedInside && !waitEnded) waitEnded = true;
    }

    QtScheduler clock;
    bool armed = false;
    int waitsLeft = 0;
    QPushButton* stop = nullptr;
    QPushButton* start = nullptr;
    bool clickedInside = false;
    bool startButtonAfterClick = true;
    bool waitEnded = false;
};

// Runs the window's event loop until done() holds, at most ms.
bool until(const std::function<bool()>& done, int ms)
{
    QElapsedTimer t;
    t.start();
    while (!done() && t.elapsed() < ms) QTest::qWait(10);
    return done();
}

TEST(RealPortWindow, StopPressedInsideAWaitEndsTheSendThereAndGivesTheWindowBackAfter)
{
    test::TempDir dir;
    Document doc;
    doc.clearstores();
    doc.model = ModelSwitches::of(Model::BC796D);
    for (int r = 1; r <= 100; ++r) test::putChannel(doc, 0, r, "0460.2500", "Channel");
    test::SimProcess sim({"--model", "BC796D", "--log", dir.file("sim.log")});
    ASSERT_FALSE(sim.device().empty());

    Settings settings;
    settings.delay1 = 25;
    settings.expert = 1;
    ScriptedDialogs dialogs;
    StopInsideWait scheduler;
    TransferWindow::Link link{std::make_unique<QtSerialPort>(sim.device()), 1, 19200};
    TransferWindow window(TransferWindow::Caption::SendData, TransferWindow::Services{doc, settings, dialogs, scheduler, dir.path()},
                   std::move(link));
    window.show();
    ASSERT_TRUE(until([&] { return window.sendPipeline()->opened(); }, 20'000));
    EXPECT_TRUE(window.sendPipeline()->tagsread);

    QTest::mouseClick(window.option3D2(0), Qt::LeftButton);
    scheduler.stop = window.command3d1();
    scheduler.start = window.command5();
    scheduler.waitsLeft = 40;  // well into the channels: the waits before each "PM", the keys of a frequency
    scheduler.armed = true;
    QTest::mouseClick(window.command5(), Qt::LeftButton);
    ASSERT_TRUE(until([&] { return scheduler.waitEnded; }, 60'000));

    // STOP ran while the send waited; Send Data came back only once that
    // wait had returned and the send had gone no further.
    EXPECT_EQ(window.engine().stopflag, 1);
    EXPECT_FALSE(scheduler.startButtonAfterClick);
    ASSERT_TRUE(until([&] { return window.command5()->isEnabled(); }, 2'000));
    const int at = window.engine().chanid;
    const std::string txlog = test::readBytes(dir.file("txlog.txt"));
    const std::string log = test::readBytes(dir.file("sim.log"));
    QTest::qWait(1500);
    EXPECT_EQ(window.engine().chanid, at);
    EXPECT_FALSE(window.runFinished());
    EXPECT_EQ(test::readBytes(dir.file("sim.log")), log) << "the scanner was sent more after STOP";
    EXPECT_EQ(test::readBytes(dir.file("txlog.txt")), txlog);
    EXPECT_NE(txlog.find("PM001"), std::string::npos);  // txlog.txt was written and closed
    EXPECT_LT(at, 100);
    EXPECT_TRUE(dialogs.shown.empty());
}

// Read Data with only Search Events and Trunk Bank Settings ticked, for one
// bank chosen from the list: the ranges and that bank's trunk settings come
// from the scanner's menus into the document, the channels stay as they were.
TEST(RealPortWindow, SearchRangesAndOneBanksTrunkSettingsComeFromTheMenus)
{
    test::TempDir dir;
    Document inScanner;
    inScanner.clearstores();
    for (int r = 0; r < 10; ++r)
        inScanner.srcdata[r] = {"0" + std::to_string(406 + r) + ".0000", "0" + std::to_string(407 + r) + ".5000",
                                std::to_string(1 + r % 5), std::to_string(1 + r % 8), "Range " + std::to_string(r + 1)};
    TrunkSystem& edacs = inScanner.trunkset[2];
    edacs.trunktype = "6";
    edacs.trunkfields = {"0", "1", "0", "0", "2", "3", "1", "0", "1", "1"};
    test::writeBytes(dir.path() / "scanner.mem", memText(inScanner, Settings{}));
    test::SimProcess sim({"--model", "BC785D", "--load", dir.file("scanner.mem")});
    ASSERT_FALSE(sim.device().empty());

    Document doc;
    doc.clearstores();
    doc.model = ModelSwitches::of(Model::BC785D);
    test::putChannel(doc, 2, 1, "0460.2500", "Kept");
    doc.trunkset[2].trunktype = "6";
    Settings settings;
    settings.delay1 = 25;
    ScriptedDialogs dialogs;
    QtScheduler scheduler;
    TransferWindow::Link link{std::make_unique<QtSerialPort>(sim.device()), 1, 19200};
    TransferWindow window(TransferWindow::Caption::ReadData, TransferWindow::Services{doc, settings, dialogs, scheduler, dir.path()},
                          std::move(link));
    window.show();
    ASSERT_TRUE(until([&] { return window.readPipeline()->opened(); }, 20'000));

    QTest::mouseClick(window.option3D2(1), Qt::LeftButton);
    window.combo1()->setFocus();
    // No bank is chosen at first: the third Down is bank 3.
    for (int i = 0; i < 3; ++i) QTest::keyClick(window.combo1(), Qt::Key_Down);
    ASSERT_EQ(window.combo1()->currentIndex(), 2);
    if (window.check3D3(0)->isChecked()) QTest::mouseClick(window.check3D3(0), Qt::LeftButton);
    QTest::mouseClick(window.check3D3(2), Qt::LeftButton);
    QTest::mouseClick(window.check3D3(3), Qt::LeftButton);
    QTest::mouseClick(window.command1(), Qt::LeftButton);
    ASSERT_TRUE(until([&] { return window.runFinished(); }, 120'000)) << window.text3()->text().toStdString();

    for (int r = 0; r < 10; ++r)
        for (int f = 0; f < 5; ++f) EXPECT_EQ(doc.srcdata[r][f], inScanner.srcdata[r][f]) << r << " " << f;
    // An EDACS bank's items: ID format, I-call, delay, record, activity ID, emergency alert.
    for (int f : {1, 4, 5, 6, 8, 9}) EXPECT_EQ(doc.trunkset[2].trunkfields[f], edacs.trunkfields[f]) << f;
    EXPECT_EQ(doc.memdata[2][1][col::tag], "Kept");
    EXPECT_TRUE(dialogs.shown.empty());
}

} // namespace
} // namespace kestra
