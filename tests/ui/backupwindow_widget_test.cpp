// The automatic backup on the running main window, in virtual time, and the
// window "Backup and Restore" that lists the backups, writes one at once and
// restores one.

#include "sim/virtualscanner.h"

#include "ui/transferwindow.h"
#include "ui/backupwindow.h"
#include "editor/freqrules.h"

#include "support/mainwindowrig.h"

#include <QListWidget>
#include <QComboBox>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>

#include <gtest/gtest.h>

#include <filesystem>

namespace kestra {
namespace {

// The files in the backup folder below a backup folder.
std::size_t backupsIn(const std::filesystem::path& backdir)
{
    std::size_t n = 0;
    std::error_code ignored;
    for (const auto& entry : std::filesystem::directory_iterator(backdir / "backup", ignored)) n += entry.is_regular_file();
    return n;
}

struct BackupWindowTest : test::ModelWindowTest<Model::BC250D> {
    void SetUp() override
    {
        ModelWindowTest::SetUp();
        table->backdir = dir.path().string();
    }
    std::size_t backupCount() const { return backupsIn(dir.path()); }
};

TEST_F(BackupWindowTest, TheRunningWindowWritesABackupEveryMinuteAndLeavesTheDocumentUnsaved)
{
    settings.backena = 1;
    settings.backupdelay = 1;
    typeInto(1, col::freq, "155");
    ASSERT_TRUE(doc.dirty);
    const std::string name = doc.fnaam;
    scheduler.advance(60000);
    EXPECT_EQ(backupCount(), 1u);
    // A backup is a copy: the document keeps its name and stays unsaved, so
    // leaving the program still asks to save it ("Save data?").
    EXPECT_TRUE(doc.dirty);
    EXPECT_EQ(doc.fnaam, name);
}

struct BackupDuringReadTest : ::testing::Test, test::MainWindowRig {
    void SetUp() override
    {
        start(Options::connected());
        table->backdir = dir.path().string();
    }
    sim::VirtualScanner& scanner() { return ports->virtualScanner(doc.model.model()); }
    std::size_t backupCount() const { return backupsIn(dir.path()); }
};

TEST_F(BackupDuringReadTest, ABackupWaitsWhileReadDataFillsTheStore)
{
    // A read of a whole bank takes minutes: the backup must not carry the
    // grid (still the old bank) over what the read has put in the store.
    settings.backena = 1;
    settings.backupdelay = 1;
    for (int r = 1; r <= 100; ++r) scanner().memory().channel(r).freq = 1500000 + 125 * r;
    ASSERT_TRUE(ifOpened<TransferWindow>("menread", [&](TransferWindow* w) {
        scheduler.runUntil([w] { return w->readPipeline()->opened(); }, 60'000);
        QTest::mouseClick(w->option3D2(1), Qt::LeftButton);
        w->combo1()->setCurrentIndex(0);
        QTest::mouseClick(w->command1(), Qt::LeftButton);
        ASSERT_TRUE(scheduler.runUntil([w] { return !w->isVisible(); }, 3600'000));
        EXPECT_GT(scheduler.now(), 120'000);  // the read spanned several minutes
        EXPECT_EQ(backupCount(), 0u);
    }));
    for (int r = 1; r <= 100; ++r) ASSERT_EQ(freqUnits(doc.memdata[0][r][col::freq]), 1500000 + 125 * r) << r;
    scheduler.advance(60000);
    EXPECT_EQ(backupCount(), 1u);  // written in the first minute after
}

TEST_F(BackupWindowTest, BackupNowAndRestoreBringBackTheSavedChannels)
{
    typeInto(1, col::freq, "155");
    whileOpen<BackupWindow>("backrest", [&](BackupWindow* w) {
        EXPECT_EQ(w->list()->count(), 0);
        EXPECT_FALSE(w->restoreButton()->isEnabled());
        w->backupNowButton()->click();
        ASSERT_EQ(w->list()->count(), 1);
        EXPECT_TRUE(w->restoreButton()->isEnabled());
        w->reject();
    });
    ASSERT_EQ(backupCount(), 1u);

    typeInto(2, col::freq, "460");
    ASSERT_TRUE(doc.dirty);
    dialogs.answers = {Answer::No};   // "Save data?": the edit is dropped
    whileOpen<BackupWindow>("backrest", [&](BackupWindow* w) {
        ASSERT_EQ(w->list()->count(), 1);
        w->restoreButton()->click();
        EXPECT_TRUE(w->restored());
    });
    EXPECT_EQ(cell(1, col::freq), "0155.0000");
    EXPECT_EQ(cell(2, col::freq), "");
    EXPECT_NE(window->windowTitle().indexOf("membackup.mem"), -1);
}

} // namespace
} // namespace kestra
