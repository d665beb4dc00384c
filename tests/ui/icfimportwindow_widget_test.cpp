// The ICF import window icfpart2 through File > Import: a file made here from
// the format's layout is shown, a clicked bank row goes into a chosen bank
// (asking before it overrides one), and names that are no ICF file are refused.

#include "ui/icfimportwindow.h"

#include "support/mainwindowrig.h"

#include <QPushButton>
#include <QRadioButton>
#include <QTableWidget>
#include <QTest>

#include <gtest/gtest.h>

#include <cstdio>

namespace kestra {
namespace {

using test::putChannel;
using test::writeBytes;

// Bank b, channel c of the file is 1(18+b).(c * 100), named "AIR".
std::string icfFile()
{
    std::string text = "32720001\r\n#Comment=made by hand\r\n";
    for (int b = 0; b < kIcfBanks; ++b)
        for (int c = 0; c < kIcfChannels; ++c) {
            char line[64];
            std::snprintf(line, sizeof line, "00A0200%03d%04d00006000080%c414952FFFFFF\r\n", 118 + b, c * 100,
                          c == 2 ? '8' : '3');
            text += line;
        }
    return text;
}

struct IcfImportWindowTest : test::ModelWindowTest<Model::BC785D> {
    static void click(QAbstractButton* button) { QTest::mouseClick(button, Qt::LeftButton); }
};

TEST_F(IcfImportWindowTest, AClickedBankGoesIntoTheChosenBankAfterTheOverrideQuestion)
{
    writeBytes(dir.file("radio.icf"), icfFile());
    putChannel(doc, 5, 60, "0400.0000", "Kept");
    dialogs.files = {dir.file("radio.icf")};
    whileOpen<IcfImportWindow>("impadv", [&](IcfImportWindow* w) {
        EXPECT_EQ(w->objectName(), "icfpart2");
        EXPECT_EQ(w->viewer()->item(2, 3)->text(), "0120.030000");
        EXPECT_EQ(w->viewer()->verticalHeaderItem(9)->text(), "Edge End");
        EXPECT_FALSE(w->applyButton()->isEnabled());
        QTest::mouseClick(w->viewer()->viewport(), Qt::LeftButton, {},
                          w->viewer()->visualItemRect(w->viewer()->item(2, 0)).center());
        EXPECT_TRUE(w->source(2)->isChecked());
        click(w->applyButton());
        EXPECT_EQ(messages().back(), "Select destination bank.");
        click(w->destination(5));
        dialogs.answers = {Answer::No};
        click(w->applyButton());
        EXPECT_EQ(dialogs.shown.back().title, "Override?");
        EXPECT_EQ(dialogs.shown.back().text, "Bank 6 is not empty!\nDo you want to override the data in this bank?");
        EXPECT_TRUE(doc.isEmpty(5, 1));
        dialogs.answers = {Answer::Yes};
        click(w->button("ok"));
    });
    EXPECT_EQ(doc.memdata[5][1][col::freq], "0120.000000");
    EXPECT_EQ(doc.memdata[5][3][col::step], "5");
    EXPECT_EQ(doc.memdata[5][50][col::tag], "AIR   ");
    EXPECT_EQ(doc.memdata[5][60][col::tag], "Kept");
    table->changeBank(5);
    EXPECT_EQ(cell(50, col::tag), "AIR   ");

    // A cancelled chooser and a name that is no ICF file open no window.
    table->createbank();
    const auto before = doc.memdata;
    dialogs.files = {std::nullopt, dir.file("radio.txt")};
    window->action("impadv")->trigger();
    window->action("impadv")->trigger();
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    writeBytes(dir.file("short.icf"), "32720001\r\n");
    dialogs.files = {dir.file("short.icf")};
    window->action("impadv")->trigger();
    EXPECT_EQ(messages().back(), "Not a valid file!");
    EXPECT_TRUE(doc.memdata == before);
}

} // namespace
} // namespace kestra
