// The "Trunk Id's:" window on the real main window: IDs typed through key
// events, sorting and its undo, the clipboard, a list copied to another bank
// in "Edit Trunk ID's", and the whole way there and back by keyboard.

#include "ui/edittrunkidwindow.h"
#include "ui/listtagwindow.h"
#include "ui/trunktagreplacewindow.h"
#include "ui/trunkidwindow.h"
#include "ui/widgets/gridmodel.h"

#include "support/mainwindowrig.h"
#include "trunk/trunkids.h"

#include <QCheckBox>
#include <QClipboard>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QPushButton>
#include <QRadioButton>
#include <QTabBar>
#include <QTableView>
#include <QTest>

#include <gtest/gtest.h>

namespace kestra {
namespace {

struct TrunkIdWindowTest : test::ModelWindowTest<Model::BC796D> {
    // A grid cell of the ID window as its model shows it.
    static QString shownId(TrunkIdWindow* w, int row, int col = TrunkIdSheet::kIdCol)
    {
        return w->gridModel()->data(w->gridModel()->indexOfCell(row, col)).toString();
    }
    static void selectCell(TrunkIdWindow* w, int row, int col = TrunkIdSheet::kIdCol)
    {
        w->grid()->setCurrentIndex(w->gridModel()->indexOfCell(row, col));
    }
    static void typeId(TrunkIdWindow* w, const char* keys)
    {
        QTest::keyClicks(w->grid(), keys);
        QTest::keyClick(w->grid(), Qt::Key_Return);
    }
    // A window system makes a new window the active one; the offscreen platform leaves that to us.
    static void activate(QWidget* w)
    {
        w->activateWindow();
        for (int i = 0; i < 100 && QApplication::activeWindow() != w; ++i) QTest::qWait(10);
        ASSERT_EQ(QApplication::activeWindow(), w);
    }
    // Opens the ID window from the Trunk menu and runs act on it.
    void inIdWindow(const std::function<void(TrunkIdWindow*)>& act) { whileOpen<TrunkIdWindow>("mnu_idlist", act); }
};

// Runs a click that opens a modal window of type W over another, and acts on it.
template <class W>
void overWindow(QPushButton* opener, const std::function<void(W*)>& act)
{
    bool ran = false;
    QTimer::singleShot(0, opener, [&] {
        auto* dialog = qobject_cast<W*>(QApplication::activeModalWidget());
        ASSERT_NE(dialog, nullptr);
        ran = true;
        act(dialog);
        if (dialog->isVisible()) dialog->reject();
    });
    QTest::mouseClick(opener, Qt::LeftButton);
    EXPECT_TRUE(ran);
}

TEST_F(TrunkIdWindowTest, EdacsIdsTypedInAfsAreCheckedAndStoredThroughTheRowMapping)
{
    doc.trunkset[1].trunktype = "6";
    doc.trunklisttags[1][0] = "Fire";
    window->table().changeBank(1);
    doc.dirty = false;

    inIdWindow([&](TrunkIdWindow* w) {
        EXPECT_EQ(w->tabs()->currentIndex(), 1);
        EXPECT_EQ(w->kindLabel()->text(), "Edacs");
        EXPECT_TRUE(w->hintLabel()->text().startsWith("AFS: AA-FFS"));
        EXPECT_EQ(shownId(w, 1, TrunkIdSheet::kListTagCol), "Fire");
        typeId(w, "1-23");
        typeId(w, "16x-16");   // a letter is dropped
        EXPECT_EQ(shownId(w, 1), "01-15");
        EXPECT_EQ(shownId(w, 2), "15-15");
        EXPECT_EQ(w->grid()->currentIndex().row() + 1, 3);

        // The tenth of the first list, its tag and Record by the boxes beside the grid.
        selectCell(w, 10);
        EXPECT_EQ(w->idBox()->text(), "");
        QTest::keyClicks(w->idBox(), "i5");
        QTest::keyClick(w->idBox(), Qt::Key_Return);
        EXPECT_EQ(shownId(w, 10), "i00005");
        selectCell(w, 10);
        QTest::keyClicks(w->tagBox(), "Dispatch, \"Main\"");
        QTest::keyClick(w->tagBox(), Qt::Key_Return);
        selectCell(w, 10);
        EXPECT_EQ(w->idBox()->text(), "i00005");
        QTest::keyClick(w->recordBox(), Qt::Key_Space);
        EXPECT_EQ(shownId(w, 10, TrunkIdSheet::kRecordCol), "On");
        QTest::mouseClick(w->okButton(), Qt::LeftButton);
    });

    EXPECT_EQ(doc.trunkids[1][1][idcol::id], "01-15");
    EXPECT_EQ(doc.trunkids[1][2][idcol::id], "15-15");
    EXPECT_EQ(doc.trunkids[1][0], (TrunkIdEntry{"i00005", "Dispatch Main", "1", "", ""}));
    EXPECT_EQ(doc.trunkids[1][10][idcol::id], "");
    EXPECT_TRUE(doc.dirty);
}

TEST_F(TrunkIdWindowTest, SortsPutEmptiesLastAndUndoRestoresTheList)
{
    doc.trunkset[0].trunktype = "1";
    const char* ids[] = {"000300", "", "000020", "", "000100"};
    for (int r = 1; r <= 5; ++r) doc.trunkids[0][storeRowOf(r)] = {ids[r - 1], "t" + std::to_string(r), "0", "0", ""};
    const auto before = doc.trunkids;

    inIdWindow([&](TrunkIdWindow* w) {
        QTest::mouseClick(w->button("sortidup"), Qt::LeftButton);
        QStringList shown;
        for (int r = 1; r <= 6; ++r) shown << shownId(w, r);
        EXPECT_EQ(shown, QStringList({"000020", "000100", "000300", "", "", ""}));
        EXPECT_EQ(shownId(w, 4, TrunkIdSheet::kTagCol), "t2");
        QTest::mouseClick(w->button("sortiddown"), Qt::LeftButton);
        EXPECT_EQ(shownId(w, 1), "000300");
        QTest::mouseClick(w->button("undosort"), Qt::LeftButton);
        EXPECT_EQ(shownId(w, 1), "000020");
        QTest::mouseClick(w->button("undosort"), Qt::LeftButton);
        EXPECT_EQ(shownId(w, 1), "000020");   // one sort back only
        QTest::mouseClick(w->cancelButton(), Qt::LeftButton);
    });
    EXPECT_EQ(doc.trunkids, before);
}

TEST_F(TrunkIdWindowTest, TwelveLinesPastedIntoTheLastListFillItsTenAndNoMore)
{
    doc.trunkset[0].trunktype = "8";
    QString lines;
    for (int i = 1; i <= 12; ++i) lines += QString("%1\tUser %1\r\n").arg(i);
    QGuiApplication::clipboard()->setText(lines);

    inIdWindow([&](TrunkIdWindow* w) {
        selectCell(w, 91);
        QTest::keyClick(w->grid(), Qt::Key_V, Qt::ControlModifier);
        EXPECT_EQ(shownId(w, 91), "1");
        EXPECT_EQ(shownId(w, 100, TrunkIdSheet::kTagCol), "User 10");
        EXPECT_EQ(w->grid()->selectionModel()->selectedIndexes().size(), 20);
        // Copy gives the block back as the clipboard holds it, without the last line end.
        QTest::keyClick(w->grid(), Qt::Key_C, Qt::ControlModifier);
        EXPECT_TRUE(QGuiApplication::clipboard()->text().endsWith("10\tUser 10"));
        QTest::mouseClick(w->okButton(), Qt::LeftButton);
    });
    // The IDs are checked at Ok: the LT form.
    EXPECT_EQ(doc.trunkids[0][91][idcol::id], "001001");
    EXPECT_EQ(doc.trunkids[0][90], (TrunkIdEntry{"001010", "User 10", "", "", ""}));   // row 100 is store row 90
    EXPECT_EQ(doc.trunkids[0][89][idcol::id], "");
    EXPECT_EQ(doc.trunkids[0][0][idcol::id], "");
}

TEST_F(TrunkIdWindowTest, AListCopiedToAnotherBankInEditTrunkIds)
{
    doc.trunkset[0].trunktype = "1";
    doc.trunkset[3].trunktype = "1";
    doc.trunklisttags[0][0] = "County";
    inIdWindow([&](TrunkIdWindow* w) {
        // Typed, not yet committed: the window hands its sheet over first.
        for (int r = 1; r <= 10; ++r) {
            selectCell(w, r);
            typeId(w, std::to_string(r * 11).c_str());
        }
        overWindow<EditTrunkIdWindow>(w->button("Command3"), [&](EditTrunkIdWindow* e) {
            EXPECT_EQ(e->fromList()->count(), 100);
            QTest::mouseClick(e->unitButton(IdUnit::Lists), Qt::LeftButton);
            QTest::mouseClick(e->scopeButton(IdScope::AllBanks), Qt::LeftButton);
            ASSERT_EQ(e->fromList()->count(), 100);
            EXPECT_EQ(e->fromList()->item(0)->text(), "Bank 1 - 1: County");
            e->fromList()->setCurrentRow(0);
            e->toList()->setCurrentRow(32);   // bank 4, list 3
            QTest::mouseClick(e->applyButton(), Qt::LeftButton);
            EXPECT_EQ(e->toList()->item(32)->text(), "Bank 4 - 3: County");
            QTest::mouseClick(e->okButton(), Qt::LeftButton);
        });
        w->tabs()->setCurrentIndex(3);
        EXPECT_EQ(shownId(w, 21), "000011");
        EXPECT_EQ(shownId(w, 30), "000110");
        EXPECT_EQ(shownId(w, 30, TrunkIdSheet::kListTagCol), "County");
        QTest::mouseClick(w->okButton(), Qt::LeftButton);
    });
    EXPECT_EQ(doc.trunkids[3][21][idcol::id], "000011");
    EXPECT_EQ(doc.trunkids[3][20][idcol::id], "000110");
    EXPECT_EQ(doc.trunklisttags[3][2], "County");
    EXPECT_EQ(doc.trunkids[0][0][idcol::id], "000110");
}

TEST_F(TrunkIdWindowTest, ListTagsAndTagReplaceWorkOnWhatTheWindowHandsOver)
{
    doc.trunkids[2][1][idcol::tag] = "aaa";
    window->table().changeBank(2);
    inIdWindow([&](TrunkIdWindow* w) {
        selectCell(w, 2, TrunkIdSheet::kTagCol);
        QTest::keyClicks(w->grid(), "Ambulance");
        overWindow<ListTagWindow>(w->button("Command5"), [&](ListTagWindow* l) {
            QTest::mouseClick(l->button("defaults"), Qt::LeftButton);
            EXPECT_EQ(l->box(6)->text(), "Bank 3 List 7");
            l->box(0)->clear();
            QTest::keyClicks(l->box(0), "Fire, Rescue");
            QTest::mouseClick(l->button("center"), Qt::LeftButton);
            EXPECT_EQ(l->box(0)->text(), "  Fire Rescue");
            QTest::mouseClick(l->okButton(), Qt::LeftButton);
        });
        EXPECT_EQ(shownId(w, 2, TrunkIdSheet::kTagCol), "Ambulance");
        EXPECT_EQ(shownId(w, 1, TrunkIdSheet::kListTagCol), "  Fire Rescue");
        EXPECT_EQ(shownId(w, 70, TrunkIdSheet::kListTagCol), "  Bank 3 List 7");   // centred with the rest

        overWindow<TrunkTagReplaceWindow>(w->button("Command6"), [&](TrunkTagReplaceWindow* r) {
            QTest::keyClicks(r->findBox(), "a");
            QTest::keyClicks(r->replaceBox(), "b");
            QTest::mouseClick(r->applyButton(), Qt::LeftButton);
            QTest::mouseClick(r->closeButton(), Qt::LeftButton);
        });
        EXPECT_EQ(shownId(w, 1, TrunkIdSheet::kTagCol), "baa");
        EXPECT_EQ(shownId(w, 2, TrunkIdSheet::kTagCol), "Ambulbnce");
        // Cancel: the tags of the lists too are as they were.
        QTest::mouseClick(w->cancelButton(), Qt::LeftButton);
    });
    EXPECT_EQ(doc.trunkids[2][1][idcol::tag], "aaa");
    EXPECT_EQ(doc.trunklisttags[2][0], "");
}

TEST_F(TrunkIdWindowTest, ReachedAndLeftByKeyboardAlone)
{
    doc.trunkset[0].trunktype = "1";
    // Alt+T opens the Trunk menu, I its ID List entry; the grid has the focus.
    auto openByKeys = [&](const std::function<void(TrunkIdWindow*)>& act) {
        activate(window.get());
        whileOpen<TrunkIdWindow>(
            [&] {
                QTest::keyClick(window.get(), Qt::Key_T, Qt::AltModifier);
                QMenu* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
                ASSERT_NE(menu, nullptr);
                EXPECT_EQ(menu->objectName(), "menu_trunk");
                QTest::keyClick(menu, Qt::Key_I);
            },
            act);
    };

    openByKeys([&](TrunkIdWindow* w) {
        activate(w);
        ASSERT_EQ(QApplication::focusWidget(), w->grid());
        QTest::keyClicks(QApplication::focusWidget(), "42");
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
        // Tab walks the row, then leaves the grid for the boxes and on to Ok.
        QWidget* last = nullptr;
        for (int i = 0; i < 12 && QApplication::focusWidget() != w->okButton(); ++i) {
            last = QApplication::focusWidget();
            QTest::keyClick(last, Qt::Key_Tab);
        }
        ASSERT_EQ(QApplication::focusWidget(), w->okButton());
        EXPECT_EQ(last, w->beepBox());
        QTest::keyClick(w->okButton(), Qt::Key_Return);
    });
    EXPECT_EQ(doc.trunkids[0][1][idcol::id], "000042");

    openByKeys([&](TrunkIdWindow* w) {
        activate(w);
        EXPECT_EQ(shownId(w, 1), "000042");
        QTest::keyClicks(QApplication::focusWidget(), "7");
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
    });
    EXPECT_EQ(doc.trunkids[0][1][idcol::id], "000042");
}

} // namespace
} // namespace kestra
