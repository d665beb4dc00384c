#include "memfile.h"

#include "listreader.h"
#include "text.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <optional>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace kestra {

namespace {

constexpr const char* kCrLf = "\r\n";

// `,"a","b",...,"z"`: a leading comma, each field quoted. The format has no
// escape, so a double quote inside a field would end it early and shift every
// later field of the file: it is written as an apostrophe.
void appendField(std::string& out, std::string_view field)
{
    out += ",\"";
    out += withoutQuotes(field);
    out += '"';
}

template <typename Range>
void appendQuoted(std::string& out, const Range& fields)
{
    for (const auto& f : fields) appendField(out, f);
}

} // namespace

std::string memText(const Document& doc, const Settings& settings)
{
    std::string out;
    out.reserve(400 * 1024);
    auto endLine = [&out] { out += kCrLf; };

    out += kMemHeader;
    endLine();

    for (int b = 0; b < kChannelBanks; ++b)
        for (int r = 1; r <= kChannelRows; ++r) {
            const auto& line = doc.memdata[b][r];
            out += std::to_string(channelNumber(b, r));
            for (int c = 1; c < kCellColumns; ++c) appendField(out, line[c]);
            endLine();
        }

    out += ' ';
    endLine();

    for (int n = 0; n < 12; ++n) {
        out += "#$BT" + std::to_string(n) + ' ' + (settings.savenames == 1 ? withoutQuotes(doc.banktags[n]) : std::string("None"));
        endLine();
    }
    // The search lines of bank 11 hold empty fields: nothing fills those cells
    // any more and no reader takes them back, but their ten lines keep every
    // later section at its place. (New and Open leave different sentinels in
    // bank 11; writing them would make a saved file change on every reload.)
    for (int n = 0; n < 10; ++n) {
        out += "SR" + std::to_string(n) + " ,\"\",\"\",\"\",\"\",\"\"";
        endLine();
    }
    for (int b = 0; b < 10; ++b)
        for (int i = 0; i < 100; ++i) {
            out += "TD" + std::to_string(b * 100 + i) + ' ';
            appendQuoted(out, doc.trunkids[b][i]);
            endLine();
        }
    for (int b = 0; b < 10; ++b) {
        out += "TID" + std::to_string(b) + ' ';
        appendQuoted(out, doc.trunklisttags[b]);
        endLine();
    }
    for (int b = 0; b < 10; ++b) {
        out += "TSI" + std::to_string(b) + ' ';
        appendQuoted(out, doc.trunkset[b].trunkfields);
        endLine();
    }
    for (int b = 0; b < 10; ++b) {
        out += "#$TT" + std::to_string(b) + ' ' + withoutQuotes(doc.trunkset[b].trunktype);
        endLine();
    }
    for (int b = 0; b < 10; ++b)
        for (int k = 0; k < 3; ++k) {
            out += "#$TBS" + std::to_string(b);
            appendQuoted(out, doc.trunkset[b].trunkblocks[k]);
            endLine();
        }
    for (int n = 0; n < 10; ++n) {
        out += "#$SD" + std::to_string(n);
        appendQuoted(out, doc.srcdata[n]);
        endLine();
    }
    auto numbers = [](const auto& values) {
        std::array<std::string, 10> texts;
        for (std::size_t i = 0; i < texts.size(); ++i) texts[i] = std::to_string(values[i]);
        return texts;
    };
    out += "#$LKM";
    appendQuoted(out, numbers(doc.banklockm));
    endLine();
    out += "#$LKS";
    appendQuoted(out, numbers(doc.banklocks));
    endLine();
    out += "FIPS";
    appendQuoted(out, doc.fipscodes);
    endLine();
    for (int b = 0; b < 10; ++b) {
        out += "PRCH" + std::to_string(b) + ' ' + std::to_string(doc.priochan[b]);
        endLine();
    }
    return out;
}

std::filesystem::path memSavePath(const std::string& path)
{
    if (path.size() == 4 && path.front() == '.') return "bc250" + path;
    return path;
}

namespace {

constexpr std::string_view kTempMark = ".kestra-tmp-";

// The file a name stands for: symbolic links followed to the first name that
// is not a link (which need not exist yet). Nothing for a loop of links.
std::optional<std::filesystem::path> linkTarget(std::filesystem::path path)
{
    for (int hops = 0; hops < 40; ++hops) {
        std::error_code ec;
        if (!std::filesystem::is_symlink(path, ec)) return path;
        const std::filesystem::path next = std::filesystem::read_symlink(path, ec);
        if (ec) return std::nullopt;
        path = next.is_absolute() ? next : path.parent_path() / next;
    }
    return std::nullopt;
}

// Removes the temporary files in a folder that a save of this program left
// behind when it was killed: "NAME.kestra-tmp-PID" whose process has ended.
void removeStaleTempFiles(const std::filesystem::path& folder)
{
    std::error_code ec;
    std::filesystem::directory_iterator it(folder.empty() ? std::filesystem::path(".") : folder, ec);
    if (ec) return;
    const pid_t self = ::getpid();
    for (const auto& entry : it) {
        const std::string name = entry.path().filename().string();
        const std::size_t mark = name.rfind(kTempMark);
        if (mark == std::string::npos || mark == 0) continue;
        const std::string_view digits = std::string_view(name).substr(mark + kTempMark.size());
        if (digits.empty() || digits.size() > 9 || digits.find_first_not_of("0123456789") != std::string_view::npos)
            continue;
        const pid_t pid = static_cast<pid_t>(std::stol(std::string(digits)));
        std::error_code typeError;
        if (pid <= 0 || pid == self || !entry.is_regular_file(typeError) || entry.is_symlink(typeError)) continue;
        if (::kill(pid, 0) == 0 || errno != ESRCH) continue;  // still running, or not ours to judge
        std::error_code ignore;
        std::filesystem::remove(entry.path(), ignore);
    }
}

bool readOnlyMode(const std::filesystem::path& path, const struct stat& info)
{
    return (info.st_mode & 0222) == 0 || ::access(path.c_str(), W_OK) != 0;
}

} // namespace

bool isReadOnlyFile(const std::filesystem::path& path)
{
    struct stat info {};
    return ::stat(path.c_str(), &info) == 0 && S_ISREG(info.st_mode) && readOnlyMode(path, info);
}

std::string writeFileAtomic(const std::filesystem::path& path, std::string_view bytes, bool replaceReadOnly)
{
    const std::optional<std::filesystem::path> found = linkTarget(path);
    if (!found) return "too many symbolic links";
    const std::filesystem::path& target = *found;

    struct stat old {};
    const bool exists = ::stat(target.c_str(), &old) == 0;
    if (exists && !S_ISREG(old.st_mode)) return "not a regular file";
    if (exists && !replaceReadOnly && readOnlyMode(target, old)) return "the file is read-only";

    removeStaleTempFiles(target.parent_path());

    std::filesystem::path temp = target;
    temp += std::string(kTempMark) + std::to_string(::getpid());
    const int fd = ::open(temp.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_NOFOLLOW | O_CLOEXEC, 0666);
    if (fd < 0) return "cannot create " + temp.string();
    auto fail = [&](const std::string& what) {
        ::close(fd);
        std::error_code ignore;
        std::filesystem::remove(temp, ignore);
        return what + " " + temp.string();
    };
    for (std::size_t done = 0; done < bytes.size();) {
        const ssize_t put = ::write(fd, bytes.data() + done, bytes.size() - done);
        if (put < 0 && errno == EINTR) continue;
        if (put <= 0) return fail("cannot write");
        done += static_cast<std::size_t>(put);
    }
    if (exists) {
        // The replacement takes the place of the old file in every way the
        // system lets us: its owner and group first (that may clear set-id
        // bits), then its mode.
        if (::fchown(fd, old.st_uid, old.st_gid) != 0) {
            // Not allowed (another user's file): the new file is ours, with the old mode.
        }
        if (::fchmod(fd, old.st_mode & 07777) != 0) return fail("cannot set the mode of");
    }
    if (::close(fd) != 0) {
        std::error_code ignore;
        std::filesystem::remove(temp, ignore);
        return "cannot write " + temp.string();
    }
    std::error_code ec;
    std::filesystem::rename(temp, target, ec);
    if (ec) {
        std::error_code ignore;
        std::filesystem::remove(temp, ignore);
        return ec.message();
    }
    return {};
}

bool readFileBytes(const std::filesystem::path& path, std::string& bytes)
{
    bytes.clear();
    // Looked at before it is opened, so that no device is opened at all (a
    // serial port would see its lines change), and again once open, in case
    // the name was replaced in between. The open itself does not wait for a
    // FIFO's writer.
    struct stat info {};
    if (::stat(path.c_str(), &info) != 0 || !S_ISREG(info.st_mode)) return false;
    const int fd = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (fd < 0) return false;
    if (::fstat(fd, &info) != 0 || !S_ISREG(info.st_mode)) {
        ::close(fd);
        return false;
    }
    char buffer[64 * 1024];
    while (bytes.size() < kMaxReadBytes) {
        const ssize_t got = ::read(fd, buffer, std::min(sizeof buffer, kMaxReadBytes - bytes.size()));
        if (got < 0 && errno == EINTR) continue;
        if (got <= 0) break;
        bytes.append(buffer, static_cast<std::size_t>(got));
    }
    ::close(fd);
    return true;
}

bool notRegularFile(const std::filesystem::path& path)
{
    struct stat info {};
    return ::stat(path.c_str(), &info) == 0 && !S_ISREG(info.st_mode);
}

std::string notRegularMessage(const std::filesystem::path& path)
{
    return "The file " + cp1252FromUtf8(path.string()) + " is not a regular file; it was not opened.";
}

std::string MemLoadResult::message() const
{
    switch (status) {
    case MemLoadStatus::Loaded: return {};
    case MemLoadStatus::NotCompatible: return "File is not compatible with this version.";
    case MemLoadStatus::NotLorven: return "This is not an LORVEN file! For KESTRA mem files select FILE _ OPEN";
    case MemLoadStatus::LorvenNoVersion: return "File is not compatible.";
    case MemLoadStatus::Invalid:
        return "Not a valid file! Line: " + std::to_string(bank) + " / " + std::to_string(row) + " / " +
               std::to_string(column) + " Error: " + std::to_string(error);
    }
    return {};
}

namespace {

// The reading of one file: the reader and the loop values that a failure reports.
// A read past the end of the file is error 62.
class Loader {
public:
    Loader(Document& doc, std::string_view bytes) : doc_(doc), in_(bytes) {}

    Document& doc_;
    ListReader in_;
    MemLoadResult result;
    bool failed = false;

    // A field that must be there: past the end the load fails at (bank, row, column).
    bool need(std::string& target, int bank, int row, int column)
    {
        if (failed) return false;
        auto value = in_.field();
        if (!value) {
            result = {MemLoadStatus::Invalid, bank, row, column, 62, result.version};
            failed = true;
            return false;
        }
        target = std::move(*value);
        return true;
    }
    bool need(int bank, int row, int column)
    {
        std::string dropped;
        return need(dropped, bank, row, column);
    }

    // A field or line that may be missing: the target keeps its value.
    bool maybe(std::string& target)
    {
        auto value = in_.field();
        if (!value) return false;
        target = std::move(*value);
        return true;
    }
    bool maybe()
    {
        std::string dropped;
        return maybe(dropped);
    }
    std::optional<std::string> maybeLine() { return in_.line(); }

    // Channel rows 1..rows of banks 0..9, the comment when withComment.
    bool channels(int rows, bool withComment, int option9)
    {
        for (int b = 0; b < kChannelBanks; ++b)
            for (int r = 1; r <= rows; ++r) {
                auto& line = doc_.memdata[b][r];
                for (int c = 0; c <= 12; ++c) {
                    if (!need(line[c], b, r, c)) return false;
                    if (c == col::tag) doc_.addeasytag(line[c], b, option9);
                }
                if (withComment && !need(line[col::comment], b, r, col::comment)) return false;
            }
        return true;
    }

    // The blank line and the twelve bank tag lines. Missing lines leave the tags.
    void bankTags()
    {
        maybe();
        for (int i = 0; i < 12; ++i) {
            auto line = maybeLine();
            if (!line || !contains(*line, "#$BT")) continue;
            if (i < 10 && line->size() > 5) doc_.banktags[i] = Mid(*line, 7);
            if (i > 9 && line->size() > 6) doc_.banktags[i] = Mid(*line, 8);
        }
    }

    void skipLines(int count)
    {
        for (int i = 0; i < count; ++i) maybeLine();
    }

    // A keyed line of a given number of fields per bank: key, then the fields.
    template <typename Fields>
    bool keyed(int bank, int row, Fields& fields, std::size_t count)
    {
        if (!need(bank, row, 0)) return false;
        for (std::size_t f = 0; f < count; ++f)
            if (!need(fields[f], bank, row, static_cast<int>(f) + 1)) return false;
        return true;
    }

    bool trunkIds()
    {
        for (int b = 0; b < 10; ++b)
            for (int i = 0; i < 100; ++i)
                if (!keyed(b, i, doc_.trunkids[b][i], 5)) return false;
        for (int b = 0; b < 10; ++b)
            if (!keyed(b, 0, doc_.trunklisttags[b], 10)) return false;
        return true;
    }

    bool trunkFields()
    {
        for (int b = 0; b < 10; ++b)
            if (!keyed(b, 0, doc_.trunkset[b].trunkfields, 10)) return false;
        return true;
    }

    void trunkTypes()
    {
        for (int b = 0; b < 10; ++b) {
            auto line = maybeLine();
            if (line && contains(*line, "#$TT")) doc_.trunkset[b].trunktype = Mid(*line, 7);
        }
    }

    // Each bank's three blocks: key, then `fields` values (the rest stay).
    // Past the end of the file this section ends quietly.
    bool trunkBlocks(std::size_t fields)
    {
        for (int b = 0; b < 10; ++b)
            for (int k = 0; k < 3; ++k) {
                if (!maybe()) return false;
                for (std::size_t f = 0; f < fields; ++f)
                    if (!maybe(doc_.trunkset[b].trunkblocks[k][f])) return false;
            }
        return true;
    }

    bool searchRanges()
    {
        for (int i = 0; i < 10; ++i) {
            if (!maybe()) return false;
            for (int c = 0; c < 5; ++c)
                if (!maybe(doc_.srcdata[i][c])) return false;
            for (int c = 5; c < 10; ++c)
                if (!maybe()) return false;
        }
        return true;
    }

    bool lockouts(std::array<std::int16_t, 10>& values)
    {
        if (!maybe()) return false;
        for (auto& v : values) {
            std::string text;
            if (!maybe(text)) return false;
            v = static_cast<std::int16_t>(Val16(text));
        }
        return true;
    }
};

} // namespace

MemLoadResult readMem(Document& doc, std::string_view bytes, int option9)
{
    Loader load(doc, bytes);
    const std::string first = load.in_.field().value_or("");
    int version = 0;
    if (contains(first, "KESTRA MEM V1.00"))
        version = 1;
    else if (contains(first, "KESTRA MEM V1.01") || contains(first, "KESTRA MEM V1.02"))
        version = 2;
    if (version == 0) return {MemLoadStatus::NotCompatible};
    load.result.version = version;

    doc.clearForLoad();
    if (!load.channels(kChannelRows, true, option9)) return load.result;
    load.bankTags();
    load.skipLines(10);  // the search lines of bank 11 are not read back
    if (!load.trunkIds() || !load.trunkFields()) return load.result;

    // From here on a short file ends quietly with what was read.
    load.trunkTypes();
    if (!load.trunkBlocks(8) || !load.searchRanges()) return load.result;
    if (!load.lockouts(doc.banklockm) || !load.lockouts(doc.banklocks)) return load.result;
    if (version == 2) {
        if (!load.maybe()) return load.result;
        for (auto& code : doc.fipscodes)
            if (!load.maybe(code)) return load.result;
        for (int i = 0; i < 10; ++i) {
            std::string key;
            if (!load.maybe(key)) break;
            const std::size_t pos = InStr(key, "H" + std::to_string(i));
            if (pos == 0) continue;
            const std::size_t len = key.size();
            const std::size_t keep = len > pos + 1 ? len - pos - 1 : 0;
            doc.priochan[i] = static_cast<std::int16_t>(Val16(key.substr(len - keep)));
        }
    }
    return load.result;
}

MemLoadResult read780(Document& doc, std::string_view bytes, int option9)
{
    (void)option9;  // LORVEN files do not feed the Easy Tag lists
    Loader load(doc, bytes);
    const std::string first = load.in_.field().value_or("");
    if (!contains(first, "780")) return {MemLoadStatus::NotLorven};
    int version = 0;
    static constexpr std::pair<const char*, int> kVersions[] = {
        {"V1.00", 1}, {"V1.01", 2}, {"V1.02", 2}, {"V1.03", 3},
        {"V1.04", 4}, {"V1.05", 5}, {"V1.06", 6}, {"V1.07", 7}};
    for (const auto& [mark, number] : kVersions)
        if (contains(first, mark) && number > version) version = number;
    if (version == 0) return {MemLoadStatus::LorvenNoVersion};
    load.result.version = version;

    // Only a file known by its header empties the stores.
    doc.clearForLoad();

    doc.clearbank(doc.currentBank);
    if (!load.channels(50, version == 7, 0)) return load.result;
    if (version < 2) return load.result;
    load.bankTags();
    if (version < 3) return load.result;
    load.skipLines(10);
    if (!load.trunkIds()) return load.result;
    if (version < 4) return load.result;
    if (!load.trunkFields()) return load.result;
    load.trunkTypes();
    if (!load.trunkBlocks(version == 4 ? 3 : 8)) return load.result;
    if (version < 6) return load.result;
    if (!load.searchRanges()) return load.result;
    if (version < 7) return load.result;
    if (!load.lockouts(doc.banklockm)) return load.result;
    load.lockouts(doc.banklocks);
    return load.result;
}

MemLoadResult readSpecial(Document& doc, std::string_view bytes, int option9)
{
    doc.clearForLoad();
    Loader load(doc, bytes);
    load.skipLines(2);
    for (int b = 0; b < kChannelBanks; ++b) {
        load.maybeLine();
        for (int r = 1; r <= 50; ++r) {
            auto& line = doc.memdata[b][r];
            load.maybe();
            load.maybe();
            load.maybe(line[col::tag]);
            doc.addeasytag(line[col::tag], b, option9);
            load.maybe(line[col::freq]);
            load.maybe();
        }
    }
    // The ID entries go to the flat list of IDs, bank after bank; from entry
    // 101 on every further entry lands on entry 101.
    int index = 0;
    for (int e = 0; e < 149; ++e) {
        auto& entry = doc.trunkids[index / 100][index % 100];
        load.maybe();
        load.maybe();
        load.maybe();
        load.maybe(entry[1]);
        load.maybe(entry[0]);
        if (Val(entry[0]) == 0) entry[0].clear();
        if (index < 101) ++index;
    }
    return load.result;
}

} // namespace kestra
