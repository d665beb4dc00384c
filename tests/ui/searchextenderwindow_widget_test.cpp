// The Search Range Extender sextend on the real QSerialPort, against
// `kestractl sim` on a pseudo-terminal: the presets of a SEARCH.TXT with odd
// lines in its grid, one double click, the commands as the scanner logged
// them, and the scanner searching in the loaded range.

#include "sim/simprocess.h"

#include "platform/fake/scripteddialogs.h"
#include "platform/qt/qtscheduler.h"
#include "platform/qt/qtserialport.h"
#include "ui/searchextenderwindow.h"
#include "ui/widgets/extendergrid.h"

#include "support/testfiles.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTest>

#include <gtest/gtest.h>

#include <sstream>

namespace kestra {
namespace {

using test::readBytes;

// Three lines of heading, then 200 rows of six fields among a blank line, a
// row without a start, a row whose start is 0, lower-case modes and steps
// the step command does not know.
std::string searchFile()
{
    std::string text = "KESTRA search ranges\r\n\r\nstart,end,mode,step,tag,spare\r\n";
    text += "\"0453.0000\",\"0454.0000\",\"NFM\",\"12.5\",\"Utility\",\"\"\r\n";
    text += "\r\n";
    text += "\"\",\"0160.0000\",\"FM\",\"5\",\"No start\",\"\"\r\n";
    text += "\"0\",\"0160.0000\",\"FM\",\"5\",\"Zero start\",\"\"\r\n";
    text += "\"0144.0000\",\"0146.0000\",\"nfm\",\"6.25\",\"Ham 2m\",\"\"\r\n";
    for (int i = 0; i < 200; ++i) text += "\"0400.0000\",\"0401.0000\",\"FM\",\"25\",\"R" + std::to_string(i) + "\",\"\"\r\n";
    return text;
}

void runFor(int ms)
{
    QElapsedTimer clock;
    clock.start();
    while (clock.elapsed() < ms) QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
}

TEST(SearchExtenderOnTheLine, ADoubleClickLoadsRangeJAndTheScannerSearchesThere)
{
    test::TempDir dir;
    test::writeBytes(dir.path() / "SEARCH.TXT", searchFile());
    test::SimProcess sim({"--model", "BC785D", "--log", dir.file("sim.log")}, dir.file("err.txt"));
    ASSERT_FALSE(sim.device().empty()) << readBytes(dir.path() / "err.txt");

    Settings settings;
    settings.delay1 = 50;
    ScriptedDialogs dialogs;
    QtScheduler scheduler;
    SearchExtenderWindow window({settings, dialogs, scheduler, readSearchPresets(dir.path())},
                                {std::make_unique<QtSerialPort>(sim.device()), 1, 19200});
    window.show();
    ASSERT_TRUE(dialogs.shown.empty()) << dialogs.shown[0].text;
    EXPECT_EQ(window.windowTitle(), "Search Range Extender");

    // 200 rows are read; the two without a start above 0 get no row.
    ExtenderGrid* grid = window.grid();
    ASSERT_EQ(grid->rowCount(), 198);
    EXPECT_EQ(grid->item(0, 5)->text(), "Utility");
    EXPECT_EQ(grid->item(1, 5)->text(), "Ham 2m");
    EXPECT_EQ(grid->item(1, 3)->text(), "nfm");
    EXPECT_EQ(grid->item(197, 0)->text(), "198");
    EXPECT_EQ(grid->item(197, 5)->text(), "R195");

    const auto doubleClick = [grid](int row) {
        const QRect cell = grid->visualItemRect(grid->item(row, 1));
        QTest::mouseClick(grid->viewport(), Qt::LeftButton, {}, cell.center());
        QTest::mouseDClick(grid->viewport(), Qt::LeftButton, {}, cell.center());
    };
    runFor(200);
    const std::size_t before = readBytes(dir.path() / "sim.log").size();
    doubleClick(1);   // a step ST does not know: no ST
    doubleClick(0);
    runFor(1500);
    ASSERT_EQ(sim.stop(), 0);

    const std::string log = readBytes(dir.path() / "sim.log");
    std::istringstream lines(log.substr(before));
    std::vector<std::string> commands;
    std::vector<std::string> shown;
    for (std::string line; std::getline(lines, line);) {
        if (const auto at = line.find(" < "); at != std::string::npos) commands.push_back(line.substr(at + 3));
        if (const auto at = line.find(" SHOW "); at != std::string::npos) shown.push_back(line.substr(at + 6));
    }
    const std::vector<std::string> expected = {
        "KEY01", "LL01440000 J", "LU01460000 J", "TA S J Ham 2m", "KEY01", "KEY09", "CB J", "RM nfm",
        "KEY01", "LL04530000 J", "LU04540000 J", "TA S J Utility", "KEY01", "KEY09", "CB J", "RM NFM", "ST 12.5K",
    };
    EXPECT_EQ(commands, expected) << log.substr(before);

    // The scanner searches range 10 between its new limits.
    ASSERT_FALSE(shown.empty());
    const std::string& last = shown.back();
    EXPECT_NE(last.find("SRCH"), std::string::npos) << last;
    EXPECT_NE(last.find(" 453."), std::string::npos) << last;
    EXPECT_NE(last.find("Range 10"), std::string::npos) << last;
}

} // namespace
} // namespace kestra
