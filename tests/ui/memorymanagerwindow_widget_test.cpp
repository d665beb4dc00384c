// The Memory Manager window on the real main window: a move of the selected
// lines from the Edit menu, and a swap of banks from the toolbar with Apply.

#include "ui/memorymanagerwindow.h"

#include "support/mainwindowrig.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QSpinBox>
#include <QTabBar>
#include <QTest>

#include <gtest/gtest.h>

namespace kestra {
namespace {

using MemoryManagerWindowTest = test::ModelWindowTest<Model::BC250D>;

TEST_F(MemoryManagerWindowTest, MovingTheSelectedLinesEmptiesThemAndUndoBringsThemBack)
{
    typeInto(1, col::freq, "155");
    typeInto(2, col::freq, "156");
    typeInto(3, col::freq, "157");
    typeInto(12, col::freq, "460");
    const int c = column(col::freq);
    grid.setSelection({2, c, 3, c});
    ASSERT_TRUE(toolbarButton("copy_channhels")->isEnabled());

    whileOpen<MemoryManagerWindow>("copy_channhels", [&](MemoryManagerWindow* w) {
        EXPECT_EQ(w->windowTitle(), "Memory Manager");
        EXPECT_EQ(w->fromFirst()->value(), 2);
        EXPECT_EQ(w->fromLast()->value(), 3);
        EXPECT_FALSE(w->fromBank()->isVisible());
        w->operationList()->setCurrentIndex(1);   // Move
        w->toFirst()->selectAll();
        QTest::keyClicks(w->toFirst(), "11");
        QTest::mouseClick(w->okButton(), Qt::LeftButton);
    });

    EXPECT_EQ(cell(1, col::freq), "0155.0000");
    EXPECT_EQ(cell(2, col::freq), "");
    EXPECT_EQ(cell(3, col::freq), "");
    EXPECT_EQ(cell(11, col::freq), "0156.0000");
    EXPECT_EQ(cell(12, col::freq), "0157.0000");
    EXPECT_TRUE(doc.dirty);
    EXPECT_TRUE(messages().empty());

    window->action("tabundo")->trigger();
    EXPECT_EQ(cell(2, col::freq), "0156.0000");
    EXPECT_EQ(cell(11, col::freq), "");
    EXPECT_EQ(cell(12, col::freq), "0460.0000");
}

TEST_F(MemoryManagerWindowTest, ApplySwapsBanksWithTheirTagsAndTheWindowStaysOpen)
{
    typeInto(1, col::freq, "155");
    doc.banktags[0] = "Fire";
    doc.banktags[1] = "Police";
    doc.memdata[1][1][col::freq] = "460.0000";
    window->table().changeBank(0);

    whileOpen<MemoryManagerWindow>([&] { toolbarButton("swapbanks")->trigger(); }, [&](MemoryManagerWindow* w) {
        EXPECT_EQ(w->unitList()->currentText(), "Banks");
        EXPECT_EQ(w->fromBank()->currentIndex(), 0);
        EXPECT_EQ(w->toBank()->currentIndex(), 1);
        EXPECT_FALSE(w->fromFirst()->isVisible());
        w->operationList()->setCurrentIndex(2);   // Swap
        w->copyTags()->setChecked(true);
        QTest::mouseClick(w->applyButton(), Qt::LeftButton);
        EXPECT_TRUE(w->isVisible());
        EXPECT_EQ(w->status()->text(), "Bank 1 swapped with Bank 2.");
        EXPECT_EQ(w->fromBank()->itemText(0), "1: Police");
        EXPECT_EQ(cell(1, col::freq), "0460.0000");
        QTest::mouseClick(w->cancelButton(), Qt::LeftButton);
    });

    EXPECT_EQ(settings.copytags, 1);
    EXPECT_EQ(window->tabbed1()->tabText(0), "1: Police");
    EXPECT_EQ(window->tabbed1()->tabText(1), "2: Fire");
    EXPECT_EQ(doc.memdata[1][1][col::freq], "0155.0000");
    EXPECT_TRUE(doc.dirty);
}

} // namespace
} // namespace kestra
