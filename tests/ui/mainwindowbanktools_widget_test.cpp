// The bulk tools on the real main window: sorting through the Options menu,
// the EDACS question, and the windows find and vervang.

#include "ui/findwindow.h"
#include "ui/replacewindow.h"

#include "support/mainwindowrig.h"

#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTabBar>
#include <QTest>

#include <gtest/gtest.h>

namespace kestra {
namespace {

using BankToolsWindowTest = test::ModelWindowTest<Model::BC250D>;

TEST_F(BankToolsWindowTest, SortOfOneSelectedRowSortsTheWholeBank)
{
    typeInto(1, col::freq, "460");
    typeInto(1, col::tag, "Water");
    typeInto(3, col::freq, "155");
    typeInto(3, col::tag, "Fire");
    typeInto(7, col::freq, "162");
    select(7, col::tag);
    QTest::keyClicks(view(), "Ambu");   // an open edit is taken in before the sort
    doc.dirty = false;

    trigger("sort_allb");
    EXPECT_EQ(cell(1, col::freq), "0155.0000");
    EXPECT_EQ(cell(1, col::tag), "Fire");
    EXPECT_EQ(cell(2, col::freq), "0162.0000");
    EXPECT_EQ(cell(2, col::tag), "Ambu");
    EXPECT_EQ(cell(3, col::tag), "Water");
    EXPECT_EQ(cell(7, col::freq), "");
    EXPECT_TRUE(doc.dirty);
    EXPECT_TRUE(messages().empty());

    trigger("sort_rangedown");
    EXPECT_EQ(cell(1, col::tag), "Water");
    EXPECT_EQ(cell(3, col::tag), "Fire");

    trigger("tabundo");   // back to the bank before the last sort
    EXPECT_EQ(cell(1, col::tag), "Fire");
    EXPECT_EQ(cell(3, col::tag), "Water");
}

TEST_F(BankToolsWindowTest, AnEdacsBankAsksBeforeASort)
{
    doc.trunkset[0].trunktype = "6";
    typeInto(1, col::freq, "866");
    typeInto(2, col::freq, "851");
    select(1, col::trunk);
    QTest::keyClick(view(), Qt::Key_Space);
    ASSERT_EQ(cell(1, col::trunk), "On");

    dialogs.answers = {Answer::No};
    trigger("sort_allb");
    ASSERT_EQ(messages().size(), 1u);
    EXPECT_EQ(messages()[0].rfind("WARNING:\r\nThis bank contains an EDACS trunk system!", 0), 0u);
    EXPECT_EQ(cell(1, col::freq), "0866.0000");

    dialogs.answers = {Answer::Yes};
    trigger("sort_up");
    EXPECT_EQ(messages().size(), 2u);
    EXPECT_EQ(cell(1, col::freq), "0851.0000");
    EXPECT_EQ(cell(2, col::trunk), "On");
}

TEST_F(BankToolsWindowTest, FindShowsEachHitInItsBankAndKeepsTheChoices)
{
    typeInto(5, col::freq, "155.1");
    doc.memdata[3][8][col::freq] = "0155.1250";
    doc.memdata[3][8][col::tone] = "0";

    whileOpen<FindWindow>("menufind", [&](FindWindow* dialog) {
        EXPECT_EQ(dialog->windowTitle(), "Find Data");
        EXPECT_TRUE(dialog->option3D1(0)->isChecked());   // All Banks
        EXPECT_TRUE(dialog->option3D2(0)->isChecked());   // Frequency
        QTest::keyClicks(dialog->text1(), "155.1");
        QTest::mouseClick(dialog->findButton(), Qt::LeftButton);
        ASSERT_EQ(messages().size(), 1u);
        EXPECT_EQ(messages().back(), "Channel #5\r\nin bank 1\r\ncontains this data.");
        EXPECT_EQ(grid.selection().row, 5);

        QTest::mouseClick(dialog->findButton(), Qt::LeftButton);
        EXPECT_EQ(messages().back(), "Channel #308\r\nin bank 4\r\ncontains this data.");
        EXPECT_EQ(window->tabbed1()->currentIndex(), 3);
        EXPECT_EQ(grid.selection().row, 8);
        EXPECT_EQ(cell(8, col::freq), "0155.1250");

        dialog->option3D1(1)->click();
        dialog->option3D2(1)->click();
        QTest::mouseClick(dialog->closeButton(), Qt::LeftButton);
    });
    EXPECT_EQ(settings.findoptie0, 1);
    EXPECT_EQ(settings.findoptie1, 1);

    // The window opens again with the kept choices.
    whileOpen<FindWindow>("menufind", [](FindWindow* dialog) {
        EXPECT_TRUE(dialog->option3D1(1)->isChecked());
        EXPECT_TRUE(dialog->option3D2(1)->isChecked());
        dialog->reject();
    });
}

TEST_F(BankToolsWindowTest, ReplaceChangesTheTagsOfTheChosenScope)
{
    typeInto(1, col::freq, "155");
    typeInto(1, col::tag, "Fire North");
    doc.memdata[2][4][col::freq] = "0460.0000";
    doc.memdata[2][4][col::tag] = "north gate";
    doc.dirty = false;

    whileOpen<ReplaceWindow>("menu_repl", [&](ReplaceWindow* dialog) {
        EXPECT_EQ(dialog->windowTitle(), "Replace Text Tag:");
        QTest::keyClicks(dialog->text1(), "NORTH");
        QTest::keyClicks(dialog->text2(), "South");
        dialog->option3D1(1)->click();   // Current Bank
        QTest::mouseClick(dialog->applyButton(), Qt::LeftButton);
        EXPECT_EQ(cell(1, col::tag), "Fire South");
        EXPECT_EQ(doc.memdata[2][4][col::tag], "north gate");
        QTest::mouseClick(dialog->closeButton(), Qt::LeftButton);
    });
    EXPECT_EQ(settings.findoptie2, 1);
    EXPECT_TRUE(doc.dirty);
    EXPECT_TRUE(messages().empty());
}

} // namespace
} // namespace kestra
