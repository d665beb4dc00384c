// The search windows on the real QSerialPort, against `kestractl sim` on a
// pseudo-terminal: the range editor's send and read with the scanner's MEM
// dump; and the Search Range Extender with the presets of a SEARCH.TXT with
// odd lines in its grid, one double click, the commands as the scanner logged
// them, and the scanner searching in the loaded range.

#include "sim/simprocess.h"

#include "platform/fake/scripteddialogs.h"
#include "platform/qt/qtscheduler.h"
#include "platform/qt/qtserialport.h"
#include "core/memfile.h"
#include "ui/searcheventswindow.h"
#include "ui/searchextenderwindow.h"
#include "ui/widgets/extendergrid.h"

#include "support/testfiles.h"

#include <QCoreApplication>
#include <QComboBox>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include <gtest/gtest.h>

#include <sstream>

namespace kestra {
namespace {

using test::readBytes;

// Three lines of heading, then rows of six fields among a row without a
// start, a row whose start is 0, lower-case modes, a row cut short after its
// mode and a blank line: a short row takes its missing fields from the lines
// below it (a blank line is one empty field), so the rows behind it are out
// of step and start with text that is not a frequency.
std::string searchFile()
{
    const auto row = [](const std::string& start, const std::string& tag) {
        return "\"" + start + "\",\"0401.0000\",\"FM\",\"25\",\"" + tag + "\",\"\"\r\n";
    };
    std::string text = "KESTRA search ranges\r\n\r\nstart,end,mode,step,tag,spare\r\n";
    text += "\"0453.0000\",\"0454.0000\",\"NFM\",\"12.5\",\"Utility\",\"\"\r\n";
    text += row("", "No start");
    text += row("0", "Zero start");
    text += "\"0144.0000\",\"0146.0000\",\"nfm\",\"6.25\",\"Ham 2m\",\"\"\r\n";
    for (int i = 0; i < 190; ++i) text += row("0400.0000", "R" + std::to_string(i));
    text += "\"0470.0000\",\"0471.0000\",\"FM\"\r\n\r\n";
    for (int i = 0; i < 20; ++i) text += row("0480.0000", "After" + std::to_string(i));
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

    // 200 rows are read; those whose start is not above 0 get no row.
    ExtenderGrid* grid = window.grid();
    ASSERT_EQ(grid->rowCount(), 193);
    EXPECT_EQ(grid->item(0, 5)->text(), "Utility");
    EXPECT_EQ(grid->item(1, 5)->text(), "Ham 2m");
    EXPECT_EQ(grid->item(1, 3)->text(), "nfm");
    EXPECT_EQ(grid->item(1, 4)->text(), "25");     // "6.25": the later test for "25" wins
    EXPECT_EQ(grid->item(191, 5)->text(), "R189");
    EXPECT_EQ(grid->item(192, 0)->text(), "193");
    EXPECT_EQ(grid->item(192, 1)->text(), "0470.0000");
    EXPECT_EQ(grid->item(192, 4)->text(), "");       // the blank line
    EXPECT_EQ(grid->item(192, 5)->text(), "0480.0000");

    const auto doubleClick = [grid](int row) {
        grid->scrollToItem(grid->item(row, 1));
        const QRect cell = grid->visualItemRect(grid->item(row, 1));
        QTest::mouseClick(grid->viewport(), Qt::LeftButton, {}, cell.center());
        QTest::mouseDClick(grid->viewport(), Qt::LeftButton, {}, cell.center());
    };
    runFor(200);
    const std::size_t before = readBytes(dir.path() / "sim.log").size();
    doubleClick(192);   // no step: no ST
    doubleClick(1);
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
        "KEY01", "LL04700000 J", "LU04710000 J", "TA S J 0480.0000", "KEY01", "KEY09", "CB J", "RM FM",
        "KEY01", "LL01440000 J", "LU01460000 J", "TA S J Ham 2m", "KEY01", "KEY09", "CB J", "RM nfm", "ST 25K",
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

TEST(SearchEventsOnTheLine, RangesSentAreInTheScannersDumpAndReadBackEqual)
{
    test::TempDir dir;
    test::SimProcess sim({"--model", "BC796D", "--dump", dir.file("dump.mem")}, dir.file("err.txt"));
    ASSERT_FALSE(sim.device().empty()) << readBytes(dir.path() / "err.txt");

    Document doc;
    doc.model = ModelSwitches::of(Model::BC796D);
    doc.srcdata[0] = {"600", "1000", "4", "2", "Gaps"};          // NFM, 6.25 kHz
    doc.srcdata[9] = {"0851.0125", "0869", "1", "7", "Trunk"};   // AM, 50 kHz
    Settings settings;
    settings.delay1 = 25;
    ScriptedDialogs dialogs;
    QtScheduler scheduler;
    SearchEventsWindow window({doc, settings, dialogs, scheduler, {}},
                              {std::make_unique<QtSerialPort>(sim.device()), 1, 19200});
    window.show();
    QTest::mouseClick(window.button("Command5"), Qt::LeftButton);
    ASSERT_TRUE(dialogs.shown.empty()) << dialogs.shown[0].text;
    EXPECT_EQ(window.startBox(0)->text(), "512");
    EXPECT_EQ(window.endBox(0)->text(), "956");

    QTest::mouseClick(window.button("Command6"), Qt::LeftButton);
    QTest::mouseClick(window.button("Command3"), Qt::LeftButton);
    QTest::mouseClick(window.button("Command1"), Qt::LeftButton);
    window.close();   // the port goes with the window
    const SearchRangeData read = doc.srcdata;
    EXPECT_EQ(read[0][0], "0512.0000");
    EXPECT_EQ(read[0][1], "0956.0000");
    EXPECT_EQ(read[0][2], "4");
    EXPECT_EQ(read[0][3], "2");
    EXPECT_EQ(read[0][4], "Gaps");
    EXPECT_EQ(read[9][0], "0851.0125");
    EXPECT_EQ(read[9][1], "0869.0000");
    EXPECT_EQ(read[9][2], "1");
    EXPECT_EQ(read[9][3], "7");
    EXPECT_EQ(read[9][4], "Trunk");

    ASSERT_EQ(sim.stop(), 0);
    Document dumped;
    ASSERT_EQ(readMem(dumped, readBytes(dir.path() / "dump.mem"), 0).status, MemLoadStatus::Loaded);
    for (int r : {0, 9})
        for (int f = 0; f < 5; ++f) EXPECT_EQ(dumped.srcdata[r][f], read[r][f]) << r << "," << f;
}

} // namespace
} // namespace kestra
