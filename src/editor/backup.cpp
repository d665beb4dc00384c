#include "backup.h"

#include "core/memfile.h"
#include "core/memtable.h"
#include "core/text.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <system_error>

namespace kestra {

DateTime localNow()
{
    const std::time_t now = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
    std::tm local{};
    localtime_r(&now, &local);
    return {local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour, local.tm_min, local.tm_sec};
}

std::string backupFileName(const DateTime& when)
{
    char date[32], time[32];
    std::snprintf(date, sizeof date, "%04d-%02d-%02d", when.year, when.month, when.day);
    std::snprintf(time, sizeof time, "%02d:%02d:%02d", when.hour, when.minute, when.second);
    std::string name = std::string(date) + "_" + time + " membackup.mem";
    for (char& c : name)
        if (c == ':' || c == '/' || c == '\\') c = '_';
    return name;
}

Backup::Backup(MemTable& table, Clock clock) : table_(table), clock_(std::move(clock))
{
    timer3_ = makeTimer(table_.scheduler(), kTickMs, false, [this] { tick(); });
    timer3_->setEnabled(true);
}

Backup::~Backup() = default;

std::filesystem::path Backup::folder() const { return std::filesystem::path(table_.backdir) / "backup"; }

void Backup::tick()
{
    if (table_.settings().backena == 0 || table_.vcrunning) return;
    ++counter_;
    // One level, as a folder command makes it; when it cannot be made the
    // write below fails and that is all.
    std::error_code ignored;
    std::filesystem::create_directory(folder(), ignored);
    if (counter_ < table_.settings().backupdelay) return;
    // While another window is open the grid may not show what the store
    // holds (a read is filling it): the backup waits for the first minute
    // after that window has gone.
    if (table_.windowOpen()) return;
    // No message on failure: a backup that cannot be written waits for the
    // next round.
    write();
}

std::string Backup::write()
{
    counter_ = 0;
    table_.createbank();
    const std::string error =
        writeFileAtomic(folder() / backupFileName(clock_()), memText(table_.doc(), table_.settings()));
    // A backup is a copy: the document stays unsaved until the user saves it.
    return error;
}

std::string Backup::backupNow()
{
    std::error_code ignored;
    std::filesystem::create_directories(folder(), ignored);
    return write();
}

std::vector<std::filesystem::path> Backup::backups() const
{
    std::vector<std::pair<std::filesystem::file_time_type, std::filesystem::path>> found;
    std::error_code error;
    for (std::filesystem::directory_iterator it(folder(), error), end; !error && it != end; it.increment(error)) {
        const std::filesystem::path& path = it->path();
        const std::string extension = asciiLower(path.extension().string());
        std::error_code ignored;
        if (extension == ".mem" && it->is_regular_file(ignored)) found.emplace_back(it->last_write_time(ignored), path);
    }
    // Newest first; files of the same moment by name, which holds date and time.
    std::sort(found.begin(), found.end(), [](const auto& a, const auto& b) {
        return a.first != b.first ? a.first > b.first : a.second.filename() > b.second.filename();
    });
    std::vector<std::filesystem::path> paths;
    for (auto& entry : found) paths.push_back(std::move(entry.second));
    return paths;
}

std::array<RecentFile, 4> readRecentFiles(const ProfileStore& profile)
{
    std::array<RecentFile, 4> entries;
    for (int i = 0; i < 4; ++i) {
        auto& entry = entries[static_cast<std::size_t>(i)];
        entry.name = profile.get(kRecentSection, "RecentFile" + std::to_string(i + 1), "Not Used");
        entry.used = entry.name.substr(0, 8) != "Not Used";
    }
    return entries;
}

void addRecentFile(ProfileStore& profile, const std::string& name)
{
    std::vector<std::string> names{name};
    for (const RecentFile& entry : readRecentFiles(profile))
        if (entry.used && entry.name != name) names.push_back(entry.name);
    names.resize(4, "Not Used");
    for (int i = 0; i < 4; ++i)
        profile.set(kRecentSection, "RecentFile" + std::to_string(i + 1), names[static_cast<std::size_t>(i)]);
}

} // namespace kestra
