// Advanced Data Import and the WebCatcher through their real windows, opened
// from the File menu of the main window: a file and the clipboard harvested,
// items moved by buttons and double clicks, the start channel typed, and the
// choice written into a bank the grid then shows.

#include "ui/advancedimportwindow.h"
#include "ui/csvexportwindow.h"

#include "support/mainwindowrig.h"

#include <QClipboard>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QTabBar>
#include <QTest>
#include <QToolButton>

#include <gtest/gtest.h>

namespace kestra {
namespace {

using test::putChannel;
using test::writeBytes;

struct AdvancedImportWindowTest : test::ModelWindowTest<Model::BC785D> {
    static void click(QAbstractButton* button) { QTest::mouseClick(button, Qt::LeftButton); }
    static QStringList texts(QListWidget* list)
    {
        QStringList items;
        for (int i = 0; i < list->count(); ++i) items << list->item(i)->text();
        return items;
    }
};

TEST_F(AdvancedImportWindowTest, FileHarvestChosenAndWrittenIntoABankFromAStartChannel)
{
    writeBytes(dir.file("page.htm"), "<tr><td>155.4750</td><td>2024-05-12</td></tr>\n<td><b>460.0250</b></td>"
                                      "<td>call 555-1234</td>\n146.52;146.520,3.5 Rev.2 0.0\n");
    table->changeBank(2);
    putChannel(doc, 3, 9, "0162.5500", "Weather");
    whileOpen<AdvancedImportWindow>("imp_csv", [&](AdvancedImportWindow* w) {
        EXPECT_EQ(w->objectName(), "csvfile");
        EXPECT_EQ(w->bankList()->currentText(), "3");
        dialogs.files = {dir.file("page.htm")};
        click(w->button("fromfile"));
        EXPECT_EQ(texts(w->list1()), QStringList({"155.4750", "460.0250", "146.52", "146.520", "3.5"}));
        EXPECT_EQ(w->count1()->text(), "5");

        // A single move without a selection is refused; with one it goes over.
        click(w->button("oneright"));
        EXPECT_EQ(messages().back(), "Select an item from the left list.");
        w->list1()->setCurrentRow(1);
        click(w->button("oneright"));
        const QPoint first = w->list1()->visualItemRect(w->list1()->item(0)).center();
        QTest::mouseClick(w->list1()->viewport(), Qt::LeftButton, {}, first);
        QTest::mouseDClick(w->list1()->viewport(), Qt::LeftButton, {}, first);
        EXPECT_EQ(texts(w->list2()), QStringList({"460.0250", "155.4750"}));
        EXPECT_EQ(w->count2()->text(), "2");
        EXPECT_EQ(w->count1()->text(), "3");

        // Bank 4 from channel 8: letters are dropped from the box, the spin wraps.
        w->bankList()->setCurrentIndex(3);
        w->startBox()->clear();
        QTest::keyClicks(w->startBox(), "x8,");
        EXPECT_EQ(w->startBox()->text(), "8");
        EXPECT_EQ(w->absoluteLabel()->text(), "308");
        click(w->findChild<QToolButton*>("spinup"));
        click(w->findChild<QToolButton*>("spindown"));
        click(w->button("totable"));
    });
    EXPECT_EQ(doc.memdata[3][8][col::freq], "460.0250");
    EXPECT_EQ(doc.memdata[3][9][col::freq], "155.4750");
    EXPECT_EQ(doc.memdata[3][9][col::tag], "Weather");
    EXPECT_TRUE(doc.isEmpty(3, 10));
    EXPECT_TRUE(doc.dirty);
    clickTab(3);
    EXPECT_EQ(cell(8, col::freq), "0460.0250");
}

TEST_F(AdvancedImportWindowTest, WebCatcherImportsTheClipboardAndTheChoiceGoesBackToIt)
{
    QApplication::clipboard()->setText("Dispatch 154.4300 MHz\tTac 154.2800\r\nLast 453.0500");
    whileOpen<WebCatcherWindow>("catch", [&](WebCatcherWindow* info) {
        EXPECT_EQ(info->windowTitle(), "Webcatcher Info:");
        click(info->importButton());
        AdvancedImportWindow* w = info->importWindow();
        ASSERT_NE(w, nullptr);
        EXPECT_TRUE(w->isVisible());
        EXPECT_EQ(texts(w->list1()), QStringList({"154.4300", "154.2800", "453.0500"}));
        click(w->button("toclipboard"));
        EXPECT_EQ(messages().back(), "You did not select any frequencies.");
        click(w->button("hundred"));
        EXPECT_EQ(w->list1()->count(), 0);
        click(w->button("toclipboard"));
        EXPECT_EQ(QApplication::clipboard()->text(), "154.4300\r\n154.2800\r\n453.0500");
        // An empty choice asks before it closes; No keeps the window.
        click(w->button("allleft"));
        dialogs.answers = {Answer::No};
        click(w->button("totable"));
        EXPECT_TRUE(w->isVisible());
        EXPECT_EQ(dialogs.shown.back().title, "?");
        click(w->button("close"));
        click(info->findChild<QPushButton*>("close"));
    });
    EXPECT_FALSE(doc.dirty);
}

TEST_F(AdvancedImportWindowTest, CsvExportWindowWritesTheBankOnViewUnderACsvName)
{
    putChannel(doc, 1, 2, "0155.4750", "Sheriff;North");
    table->changeBank(1);
    whileOpen<CsvExportWindow>("expcsv", [&](CsvExportWindow* w) {
        EXPECT_TRUE(w->option(CsvExportKind::CurrentBank)->isChecked());
        dialogs.files = {dir.file("bank2")};
        click(w->findChild<QPushButton*>("ok"));
    });
    const std::vector<std::string> lines = fileLines("bank2.CSV");
    ASSERT_EQ(lines.size(), 101u);
    EXPECT_EQ(lines[1], "Empty,,,,,,,,,,,");
    EXPECT_EQ(lines[2], "2,102,0155.4750,Sheriff North,Off,None,Off,Off,None,Off,Off,FM,5.0");
}

TEST_F(AdvancedImportWindowTest, ChirpEntriesWriteTheBanksAndReadThemIntoTheBankOnView)
{
    typeInto(1, col::freq, "155.475");
    typeInto(1, col::tag, "Sheriff");
    dialogs.files = {dir.file("list")};
    trigger("expchirp");
    const std::vector<std::string> lines = fileLines("list.csv");
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_TRUE(lines[1].starts_with("0,Sheriff,155.475000,")) << lines[1];

    writeBytes(dir.file("more.csv"), "Frequency,Name,Mode\r\n162.550,Weather,FM\r\n700.0,Gap,FM\r\n");
    table->changeBank(4);
    dialogs.files = {dir.file("more.csv")};
    trigger("impchirp");
    EXPECT_EQ(messages().back(), "1 channel taken, 1 line refused.\r\nLine 3: 700.0 MHz is outside the scanner's coverage");
    EXPECT_EQ(cell(1, col::freq), "0162.5500");
    EXPECT_EQ(cell(1, col::tag), "Weather");
    EXPECT_EQ(cell(2, col::freq), "");
}

} // namespace
} // namespace kestra
