#pragma once
// The automatic backup of the main window: a minute counter driven by Timer3
// that writes the whole document as a new MEM file in backdir/backup every
// backupdelay minutes. Also the start-up look at the recent-file keys.

#include "platform/profilestore.h"
#include "platform/scheduler.h"

#include <array>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace kestra {

class MemTable;

// A moment of the wall clock, as the file name shows it.
struct DateTime {
    int year = 2000, month = 1, day = 1;
    int hour = 0, minute = 0, second = 0;
};

// The local time now.
DateTime localNow();

// "<date>_<time> membackup.mem" with the date as "2026-11-21" and the time as
// "11:05:33", then every ":", "/" and "\" made "_":
// "2026-11-21_11_05_33 membackup.mem".
std::string backupFileName(const DateTime& when);

class Backup {
public:
    static constexpr int kTickMs = 60000;
    using Clock = std::function<DateTime()>;

    // Starts Timer3 on the table's scheduler. The clock names the files.
    explicit Backup(MemTable& table, Clock clock = localNow);
    ~Backup();
    Backup(const Backup&) = delete;
    Backup& operator=(const Backup&) = delete;

    // Minutes counted since the last backup (or the start).
    std::int16_t counter() const { return counter_; }

    // One tick of Timer3.
    void tick();

    // The folder the backups go to: backdir + "/backup".
    std::filesystem::path folder() const;

    // "Backup Now" of the Backup and Restore window: the document written as
    // a backup at once, whatever backena says. Returns "" when written, else
    // what went wrong; the minute count starts again either way.
    std::string backupNow();

    // The MEM files of the folder, the newest first.
    std::vector<std::filesystem::path> backups() const;

private:
    std::string write();

    MemTable& table_;
    Clock clock_;
    std::int16_t counter_ = 0;
    std::unique_ptr<Timer> timer3_;
};

// The four recent-file keys "RecentFile1".."RecentFile4" of the per-user
// store. An entry is in use unless its first 8 characters are "Not Used" (a
// missing key reads as "Not Used"). The File menu shows the ones in use, the
// newest first; with none in use its single entry reads "No old Files".
inline constexpr const char* kRecentSection = "recent";
inline constexpr const char* kNoOldFiles = "No old Files";

struct RecentFile {
    std::string name;
    bool used = false;
};

std::array<RecentFile, 4> readRecentFiles(const ProfileStore& profile);

// Puts `name` first in the list: an entry with the same name moves up, the
// oldest falls off when all four are in use.
void addRecentFile(ProfileStore& profile, const std::string& name);

} // namespace kestra
