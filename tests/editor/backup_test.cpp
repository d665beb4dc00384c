#include "editor/backup.h"
#include "platform/fake/memoryprofilestore.h"
#include "support/tablerig.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

using namespace kestra;
using kestra::test::crlfLines;
using kestra::test::readBytes;
using kestra::test::writeBytes;

namespace {

namespace fs = std::filesystem;

// A table after Form Load with its backup, on virtual time. The clock of the
// file names follows the virtual clock, so that every minute has its own name.
struct Rig : test::TableRig {
    std::unique_ptr<Backup> backup;

    explicit Rig(int delay = 1)
    {
        settings.backupdelay = delay;
        settings.backena = 1;
        table.backdir = dir.path().string();
        backup = std::make_unique<Backup>(table, [this] {
            const std::int64_t s = scheduler.now() / 1000;
            return DateTime{2026, 11, 21, static_cast<int>(s / 3600 % 24), static_cast<int>(s / 60 % 60),
                            static_cast<int>(s % 60)};
        });
    }
    void minutes(int n) { scheduler.advance(static_cast<std::int64_t>(n) * Backup::kTickMs); }
    std::vector<fs::path> backups() const
    {
        std::vector<fs::path> files;
        if (fs::is_directory(dir.path() / "backup"))
            for (const auto& e : fs::directory_iterator(dir.path() / "backup")) files.push_back(e.path());
        std::sort(files.begin(), files.end());
        return files;
    }
};

} // namespace

TEST(BackupName, DateAndTimeWithSeparatorsMadeUnderscores)
{
    EXPECT_EQ(backupFileName({2026, 11, 21, 11, 5, 33}), "2026-11-21_11_05_33 membackup.mem");
    EXPECT_EQ(backupFileName({2027, 1, 2, 0, 0, 0}), "2027-01-02_00_00_00 membackup.mem");
}

TEST(Backup, DelayOneWritesAFullMemFileAtEveryTick)
{
    Rig r(1);
    r.minutes(1);
    ASSERT_EQ(r.backups().size(), 1u);
    EXPECT_EQ(r.backups()[0].filename().string(), "2026-11-21_00_01_00 membackup.mem");
    const auto lines = crlfLines(readBytes(r.backups()[0]));
    ASSERT_EQ(lines.size(), 2107u);
    EXPECT_EQ(lines[0], kMemHeader);
    r.minutes(2);
    EXPECT_EQ(r.backups().size(), 3u);
    EXPECT_EQ(r.backup->counter(), 0);
    EXPECT_TRUE(r.dialogs.shown.empty());
}

TEST(Backup, WritesWhatTheGridHoldsAndLeavesTheDocumentUnsaved)
{
    Rig r(2);
    r.put(1, col::freq, "155.1");
    r.doc.dirty = true;
    r.minutes(1);
    EXPECT_TRUE(r.backups().empty());
    EXPECT_EQ(r.backup->counter(), 1);
    EXPECT_TRUE(r.doc.dirty);
    // The folder is made on the first counted minute, before any backup.
    EXPECT_TRUE(fs::is_directory(r.dir.path() / "backup"));
    r.minutes(1);
    ASSERT_EQ(r.backups().size(), 1u);
    EXPECT_TRUE(r.doc.dirty);  // a copy: Exit still asks "Save data?"
    EXPECT_NE(readBytes(r.backups()[0]).find("155.1"), std::string::npos);
}

TEST(Backup, VirtualControlOrTheSwitchOffPauseTheCountWhichGoesOnAfter)
{
    for (const bool virtualControl : {true, false}) {
        SCOPED_TRACE(virtualControl ? "virtual control" : "switched off");
        Rig r(3);
        r.minutes(2);
        if (virtualControl)
            r.table.vcrunning = true;
        else
            r.settings.backena = 0;
        r.minutes(5);
        EXPECT_EQ(r.backup->counter(), 2);
        EXPECT_TRUE(r.backups().empty());
        r.table.vcrunning = false;
        r.settings.backena = 1;
        r.minutes(1);
        EXPECT_EQ(r.backups().size(), 1u);
        EXPECT_EQ(r.backup->counter(), 0);
    }
}

TEST(Backup, FolderThatCannotBeMadeIsSilentAndResetsTheCount)
{
    Rig r(2);
    writeBytes(r.dir.path() / "blocker", "a file, not a folder");
    r.table.backdir = (r.dir.path() / "blocker").string();
    r.doc.dirty = true;
    r.minutes(2);
    EXPECT_EQ(r.backup->counter(), 0);
    EXPECT_TRUE(r.dialogs.shown.empty());
    EXPECT_TRUE(r.doc.dirty);
    // The next round starts from nothing and writes once the folder can be made.
    r.table.backdir = r.dir.path().string();
    r.minutes(1);
    EXPECT_TRUE(r.backups().empty());
    r.minutes(1);
    EXPECT_EQ(r.backups().size(), 1u);
}

TEST(Backup, AnExistingFolderIsUsedAsItIs)
{
    Rig r(1);
    fs::create_directory(r.dir.path() / "backup");
    writeBytes(r.dir.path() / "backup" / "old.mem", "old");
    r.minutes(1);
    EXPECT_EQ(r.backups().size(), 2u);
    EXPECT_EQ(readBytes(r.dir.path() / "backup" / "old.mem"), "old");
}

TEST(RecentFiles, InUseUnlessTheFirstEightCharactersSayNotUsed)
{
    MemoryProfileStore profile;
    profile.set(kRecentSection, "RecentFile1", "/home/u/scan.mem");
    profile.set(kRecentSection, "RecentFile2", "Not Used yet");
    profile.set(kRecentSection, "RecentFile3", "Not Use");
    const auto entries = readRecentFiles(profile);
    EXPECT_TRUE(entries[0].used);
    EXPECT_EQ(entries[0].name, "/home/u/scan.mem");
    EXPECT_FALSE(entries[1].used);
    EXPECT_TRUE(entries[2].used);
    EXPECT_FALSE(entries[3].used);   // a missing key
}
