// The automatic backup on the running main window, in virtual time, and the
// window "Backup and Restore" that lists the backups, writes one at once and
// restores one.

#include "core/backrest.h"

#include "support/mainwindowrig.h"

#include <QListWidget>
#include <QPushButton>

#include <gtest/gtest.h>

#include <filesystem>

namespace kestra {
namespace {

struct BackupWindowTest : test::ModelWindowTest<Model::BC250D> {
    void SetUp() override
    {
        ModelWindowTest::SetUp();
        table->backdir = dir.path().string();
    }
    std::size_t backupCount() const
    {
        std::size_t n = 0;
        std::error_code ignored;
        for (const auto& entry : std::filesystem::directory_iterator(dir.path() / "backup", ignored))
            n += entry.is_regular_file();
        return n;
    }
};

TEST_F(BackupWindowTest, TheRunningWindowWritesABackupEveryMinuteAndCountsItAsASave)
{
    settings.backena = 1;
    settings.backupdelay = 1;
    typeInto(1, col::freq, "155");
    ASSERT_TRUE(doc.dirty);
    scheduler.advance(60000);
    EXPECT_EQ(backupCount(), 1u);
    EXPECT_FALSE(doc.dirty);   // a backup counts as a save
}

TEST_F(BackupWindowTest, BackupNowAndRestoreBringBackTheSavedChannels)
{
    typeInto(1, col::freq, "155");
    whileOpen<Backrest>("backrest", [&](Backrest* w) {
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
    whileOpen<Backrest>("backrest", [&](Backrest* w) {
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
