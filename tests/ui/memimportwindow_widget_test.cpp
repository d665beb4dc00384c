// Import from another MEM file through the windows i2cpart and trcpart, from
// File > Import: the other file's banks in the viewer, the Names/Default
// captions, Apply with its question, and files that are refused.

#include "ui/memimportwindow.h"

#include "core/memfile.h"
#include "support/mainwindowrig.h"

#include <QPushButton>
#include <QRadioButton>
#include <QTableWidget>
#include <QTest>

#include <gtest/gtest.h>

namespace kestra {
namespace {

using test::putChannel;
using test::writeBytes;

struct MemImportWindowTest : test::ModelWindowTest<Model::BC785D> {
    static void click(QAbstractButton* button) { QTest::mouseClick(button, Qt::LeftButton); }
    void clickRow(MemImportWindow* w, int row)
    {
        QTest::mouseClick(w->viewer()->viewport(), Qt::LeftButton, {},
                          w->viewer()->visualItemRect(w->viewer()->item(row, 0)).center());
    }
    // Another file: bank 3 with a channel and a name, bank 3's IDs.
    std::string otherFile()
    {
        Document other;
        other.clearstores();
        putChannel(other, 2, 1, "0155.4750", "Other");
        other.banktags[2] = "Marine";
        other.trunkids[2][1] = {"500", "First", "0", "1", ""};
        const std::string path = dir.file("other.mem");
        writeBytes(path, memText(other, settings));
        return path;
    }
};

TEST_F(MemImportWindowTest, FrequenciesOfAClickedBankGoIntoTheChosenOneAfterTheQuestion)
{
    putChannel(doc, 4, 50, "0400.0000", "Mine");
    dialogs.files = {otherFile()};
    whileOpen<MemImportWindow>("imp_ic2", [&](MemImportWindow* w) {
        EXPECT_EQ(w->objectName(), "i2cpart");
        EXPECT_EQ(w->viewer()->item(2, 0)->text(), "0155.4750");
        click(w->namesButton());
        EXPECT_EQ(w->source(2)->text(), "Marine");
        EXPECT_EQ(w->namesButton()->text(), "Default");
        click(w->namesButton());
        EXPECT_EQ(w->source(2)->text(), "Bank 3");
        clickRow(w, 2);
        EXPECT_TRUE(w->applyButton()->isEnabled());
        // Ok without a destination stays open.
        click(w->button("ok"));
        EXPECT_EQ(messages().back(), "Select destination bank.");
        EXPECT_TRUE(w->isVisible());
        click(w->destination(4));
        dialogs.answers = {Answer::No};
        click(w->applyButton());
        EXPECT_EQ(dialogs.shown.back().title, "Override?");
        EXPECT_NE(doc.memdata[4][1][col::tag], "Other");
        dialogs.answers = {Answer::Yes};
        click(w->button("ok"));
    });
    EXPECT_EQ(doc.memdata[4][1][col::tag], "Other");
    EXPECT_TRUE(doc.isEmpty(4, 50));
    EXPECT_TRUE(doc.dirty);
    table->changeBank(4);
    EXPECT_EQ(cell(1, col::tag), "Other");
}

TEST_F(MemImportWindowTest, TrunkIdsOfAllBanksAndRefusedFiles)
{
    dialogs.files = {otherFile()};
    whileOpen<MemImportWindow>("imp_trtags", [&](MemImportWindow* w) {
        EXPECT_EQ(w->objectName(), "trcpart");
        EXPECT_EQ(w->viewer()->item(2, 1)->text(), "500");
        click(w->button("importall"));
        click(w->button("cancel"));
    });
    EXPECT_EQ(doc.trunkids[2][1][1], "First");

    table->createbank();
    const auto before = doc.memdata;
    writeBytes(dir.file("new.mem"), "\"KESTRA MEM V1.03\"\r\n");
    dialogs.files = {std::nullopt, dir.file("list.txt"), dir.file("new.mem")};
    for (int i = 0; i < 3; ++i) window->action("imp_ic2")->trigger();
    EXPECT_EQ(messages().back(), "File is not compatible.");
    EXPECT_TRUE(doc.memdata == before);
}

} // namespace
} // namespace kestra
