// The Trunk Configuration window on the real main window: banks set up with
// the mouse and keys and carried through a MEM file, the window worked by
// keyboard alone, every bank through the window unchanged, and the Memory
// Manager, Clear This Bank and Cancel from inside it.

#include "ui/trunkconfigwindow.h"
#include "ui/memorymanagerwindow.h"

#include "support/mainwindowrig.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QTabBar>
#include <QTest>

#include <gtest/gtest.h>

namespace kestra {
namespace {

using TrunkConfigWindowTest = test::ModelWindowTest<Model::BC785D>;
using Fields = std::array<std::string, 10>;
using Blocks = std::array<std::string, 8>;

// A list entry chosen with the keys: Home, then Down to the entry.
void pick(QComboBox* list, int index)
{
    list->setFocus();
    QTest::keyClick(list, Qt::Key_Home);
    for (int i = 0; i < index; ++i) QTest::keyClick(list, Qt::Key_Down);
    EXPECT_EQ(list->currentIndex(), index) << list->objectName().toStdString();
}

// A click on a check box's indicator.
void tick(QCheckBox* box) { QTest::mouseClick(box, Qt::LeftButton, {}, QPoint(8, box->height() / 2)); }

void clickBankTab(TrunkConfigWindow* w, int bank)
{
    QTest::mouseClick(w->bankTabs(), Qt::LeftButton, {}, w->bankTabs()->tabRect(bank).center());
    EXPECT_EQ(w->currentBank(), bank);
}

TEST_F(TrunkConfigWindowTest, BanksSetUpWithMouseAndKeysComeBackFromTheMemFile)
{
    whileOpen<TrunkConfigWindow>("trunkset", [&](TrunkConfigWindow* w) {
        EXPECT_EQ(w->objectName(), "trunkconfig");
        EXPECT_EQ(w->windowTitle(), "Trunk Configuration");

        // Bank 3: set up as Type 1, then made Motorola Type 2 at 800 MHz with what was set kept.
        clickBankTab(w, 2);
        pick(w->trunkTypeList(), 2);
        const TrunkGroupControls& m = w->group(TrunkGroup::Motorola);
        EXPECT_TRUE(m.frame->isVisible());
        EXPECT_EQ(m.frame->title(), "Settings (T1 T2-800 T2-900):");
        EXPECT_FALSE(w->group(TrunkGroup::BaseConfig).frame->isVisible());
        pick(m.controlChannel, 2);
        tick(m.statusBit);
        pick(m.endCode, 1);
        pick(m.icall, 2);
        EXPECT_EQ(m.delay->count(), 8);
        pick(m.delay, 5);
        tick(m.record);
        tick(m.activityId);
        EXPECT_TRUE(m.fleetmap->isVisible());
        QTest::keyClick(w->trunkTypeList(), Qt::Key_Up);
        EXPECT_EQ(w->trunkTypeList()->currentText(), "Motorola Type 2 - 800 MHz");
        EXPECT_TRUE(m.controlChannel->isVisible());
        EXPECT_FALSE(m.controlChannelOnly->isVisible());
        EXPECT_FALSE(m.fleetmap->isVisible());
        EXPECT_EQ(m.delay->currentIndex(), 5);

        // Bank 4: Type 2 UHF with a Base Config typed below the band, a letter dropped.
        clickBankTab(w, 3);
        pick(w->trunkTypeList(), 4);
        const TrunkGroupControls& b = w->group(TrunkGroup::BaseConfig);
        EXPECT_TRUE(b.frame->isVisible());
        EXPECT_FALSE(m.frame->isVisible());
        QTest::keyClicks(b.baseConfigs[0][0], "40x0");
        EXPECT_EQ(b.baseConfigs[0][0]->text(), "400");
        QTest::keyClicks(b.baseConfigs[1][0], "470.125");
        QTest::keyClicks(b.baseConfigs[1][1], "25");
        QTest::keyClicks(b.baseConfigs[1][2], "9.99");
        EXPECT_EQ(b.baseConfigs[1][2]->text(), "999");

        // Bank 5: Type 1 on a preset, then one block made Custom by hand.
        clickBankTab(w, 4);
        pick(w->trunkTypeList(), 2);
        EXPECT_TRUE(m.fleetmap->isVisible());
        EXPECT_EQ(m.fleetmap->currentText(), "None");
        EXPECT_FALSE(m.customLabel->isVisible());
        pick(m.fleetmap, 3);
        EXPECT_FALSE(m.customLabel->isVisible());
        EXPECT_EQ(m.blocks[6]->text(), "12");
        pick(m.fleetmap, 0);
        QTest::mouseDClick(m.blocks[0], Qt::LeftButton);
        EXPECT_EQ(m.blocks[0]->text(), "");
        QTest::keyClicks(m.blocks[0], "1.4");
        QTest::mouseClick(w->closeButton(), Qt::LeftButton);
    });

    EXPECT_TRUE(doc.dirty);
    EXPECT_EQ(doc.trunkset[2].trunktype, "1");
    EXPECT_EQ(doc.trunkset[2].trunkfields, (Fields{"2", "1", "1", "", "2", "5", "1", "17", "1", ""}));
    EXPECT_EQ(doc.trunkset[3].trunkblocks[0], (Blocks{"0406.0000", "012.5", "380", "", "", "", "", ""}));
    EXPECT_EQ(doc.trunkset[3].trunkblocks[1], (Blocks{"0470.1250", "025.0", "758", "", "", "", "", ""}));
    EXPECT_EQ(doc.trunkset[4].trunkfields[7], "0");
    EXPECT_EQ(doc.trunkset[4].trunkblocks[0], (Blocks{"14", "14", "14", "14", "14", "14", "14", "14"}));

    const auto made = doc.trunkset;
    ASSERT_TRUE(table->savemem(dir.file("trunk.mem")));
    doc.clearstores();
    ASSERT_TRUE(table->loadmem(dir.file("trunk.mem")));
    for (int bank = 0; bank < kChannelBanks; ++bank) EXPECT_EQ(doc.trunkset[bank], made[bank]) << bank;
}

TEST_F(TrunkConfigWindowTest, TheWindowIsReachedAndWorkedByKeyboardAlone)
{
    // The window system gives the main window the keyboard (the offscreen one
    // does not by itself once a dialog has closed).
    auto activateMain = [&] {
        window->activateWindow();
        return QTest::qWaitFor([this] { return QApplication::activeWindow() == window.get(); });
    };
    auto openByKeys = [&] {
        QTest::keyClick(window.get(), Qt::Key_T, Qt::AltModifier);
        auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        ASSERT_NE(menu, nullptr);
        QTest::keyClick(menu, Qt::Key_S);
    };
    auto press = [](Qt::Key key) { QTest::keyClick(QApplication::focusWidget(), key); };

    ASSERT_TRUE(activateMain());
    whileOpen<TrunkConfigWindow>(openByKeys, [&](TrunkConfigWindow* w) {
        ASSERT_TRUE(QTest::qWaitFor([w] { return QApplication::activeWindow() == w; }));
        ASSERT_EQ(QApplication::focusWidget(), w->trunkTypeList());
        press(Qt::Key_End);   // Edacs SCT
        press(Qt::Key_Up);    // LT
        EXPECT_TRUE(w->group(TrunkGroup::Lt).frame->isVisible());
        std::vector<std::string> order;
        for (int i = 0; i < 9; ++i) {
            press(Qt::Key_Tab);
            order.push_back(QApplication::focusWidget()->objectName().toStdString());
            if (order.back() == "delay") press(Qt::Key_Down);
            if (order.back() == "record") press(Qt::Key_Space);
        }
        EXPECT_EQ(order, (std::vector<std::string>{"banktabs", "delay", "delayall", "record", "activityid", "clearbank",
                                               "copybanks", "Command1", "Command2"}));
        press(Qt::Key_Tab);   // round to the type list
        EXPECT_EQ(QApplication::focusWidget(), w->trunkTypeList());
        press(Qt::Key_Return);
    });
    EXPECT_EQ(doc.trunkset[0].trunktype, "8");
    EXPECT_EQ(doc.trunkset[0].trunkfields[5], "0");
    EXPECT_EQ(doc.trunkset[0].trunkfields[6], "1");
    EXPECT_TRUE(doc.dirty);

    // Escape drops what was done.
    const auto kept = doc.trunkset;
    ASSERT_TRUE(activateMain());
    whileOpen<TrunkConfigWindow>(openByKeys, [&](TrunkConfigWindow* w) {
        ASSERT_TRUE(QTest::qWaitFor([w] { return QApplication::activeWindow() == w; }));
        press(Qt::Key_Home);
        EXPECT_EQ(w->banks()[0].trunktype, "0");
        press(Qt::Key_Escape);
    });
    EXPECT_EQ(doc.trunkset, kept);
}

TEST_F(TrunkConfigWindowTest, EveryBankGoesThroughTheWindowUnchanged)
{
    const Blocks none{};
    const Blocks junk{"j", "j", "j", "j", "j", "j", "j", "j"};
    auto bank = [](const char* type, Fields fields, std::array<Blocks, 3> blocks) {
        return TrunkSystem{type, fields, blocks};
    };
    // Every value in the form the window stores it; fields and blocks a type
    // does not use hold anything.
    const Blocks fleet1{"4", "4", "", "", "", "", "", ""};
    const Blocks fleet2{"12", "12", "4", "4", "13", "13", "13", "13"};
    const Blocks preset3{"4", "4", "4", "4", "4", "4", "12", "12"};
    const Blocks uhf1{"0460.0000", "012.5", "380", "k", "k", "k", "k", "k"};
    const Blocks uhf2{"0470.1250", "025.0", "758", "", "", "", "", ""};
    const Blocks vhf1{"0155.0000", "100.0", "400", "", "", "", "", ""};
    const Blocks vhf2{"0", "", "", "", "", "", "", ""};
    doc.trunkset = {
        bank("1", {"2", "1", "0", "r", "1", "7", "1", "17", "0", "e"}, {fleet1, junk, junk}),
        bank("2", {"4", "0", "1", "r", "2", "0", "0", "0", "1", ""}, {fleet2, junk, none}),
        bank("3", {"1", "0", "0", "r", "0", "1", "0", "3", "0", "x"}, {preset3, none, none}),
        bank("4", {"x", "1", "1", "r", "1", "2", "1", "y", "1", "z"}, {uhf1, uhf2, none}),
        bank("5", {"", "0", "0", "r", "0", "4", "0", "", "0", ""}, {vhf1, vhf2, none}),
        bank("6", {"x", "0", "x", "r", "2", "7", "1", "x", "0", "1"}, {junk, junk, junk}),
        bank("7", {"x", "1", "x", "r", "0", "1", "0", "x", "1", "0"}, {none, none, none}),
        bank("8", {"a", "b", "c", "r", "d", "3", "0", "e", "1", "f"}, {junk, none, none}),
        bank("9", {"a", "b", "c", "r", "d", "e", "f", "g", "h", "i"}, {junk, none, none}),
        bank("0", {"a", "b", "c", "r", "d", "e", "f", "g", "h", "i"}, {junk, junk, junk}),
    };
    doc.dirty = false;
    const auto before = doc.trunkset;

    whileOpen<TrunkConfigWindow>("trunkset", [&](TrunkConfigWindow* w) {
        EXPECT_EQ(w->currentBank(), 0);
        for (int b = 1; b < kChannelBanks; ++b) clickBankTab(w, b);
        QTest::mouseClick(w->closeButton(), Qt::LeftButton);
    });

    for (int b = 0; b < kChannelBanks; ++b) EXPECT_EQ(doc.trunkset[b], before[b]) << b;
    EXPECT_FALSE(doc.dirty);
}

TEST_F(TrunkConfigWindowTest, CopyMoveSwapBanksWorksOnWhatTheWindowHasAndCancelKeepsItsWork)
{
    doc.trunkset[0] = TrunkSystem{"6", {"", "1", "", "r", "1", "3", "1", "", "1", "1"}, {}};
    doc.trunkids[0][0][0] = "1234";

    whileOpen<TrunkConfigWindow>("trunkset", [&](TrunkConfigWindow* w) {
        const TrunkGroupControls& e = w->group(TrunkGroup::Edacs);
        tick(e.emergencyAlt);   // off: goes with the copy
        QTimer::singleShot(0, w, [&] {
            auto* manager = qobject_cast<MemoryManagerWindow*>(QApplication::activeModalWidget());
            ASSERT_NE(manager, nullptr);
            EXPECT_EQ(manager->modeName(), "Memory Manager1");
            EXPECT_EQ(manager->operationList()->currentText(), "Copy");
            EXPECT_EQ(manager->partList()->currentText(), "Trunk Settings");
            EXPECT_EQ(manager->fromBank()->currentIndex(), 0);
            manager->toBank()->setCurrentIndex(2);
            QTest::mouseClick(manager->okButton(), Qt::LeftButton);
        });
        QTest::mouseClick(w->copyBanksButton(), Qt::LeftButton);
        EXPECT_EQ(doc.trunkset[2].trunkfields[9], "0");
        EXPECT_EQ(doc.trunkids[2][0][0], "1234");

        // Clear This Bank keeps Activity ID and Emergency ALT; All reaches every bank.
        tick(e.emergencyAlt);
        QTest::mouseClick(w->clearBankButton(), Qt::LeftButton);
        EXPECT_EQ(w->banks()[0].trunkfields, (Fields{"", "", "", "", "", "", "", "", "1", "0"}));
        EXPECT_FALSE(e.emergencyAlt->isChecked());
        EXPECT_TRUE(e.activityId->isChecked());
        EXPECT_EQ(e.delay->currentIndex(), -1);
        pick(e.delay, 4);
        QTest::mouseClick(e.frame->findChild<QPushButton*>("delayall"), Qt::LeftButton);
        for (const TrunkSystem& system : w->banks()) EXPECT_EQ(system.trunkfields[5], "4");
        QTest::mouseClick(w->cancelButton(), Qt::LeftButton);
    });

    // The copy was done by the Memory Manager; what came after it was cancelled.
    EXPECT_EQ(doc.trunkset[0].trunkfields, (Fields{"", "1", "", "r", "1", "3", "1", "", "1", "0"}));
    EXPECT_EQ(doc.trunkset[2], doc.trunkset[0]);
    EXPECT_EQ(doc.trunkset[5].trunkfields[5], "");
}

} // namespace
} // namespace kestra
