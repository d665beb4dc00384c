#pragma once
// Helpers of the tests: temporary folders, file bytes, and MEM files made by hand.

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace kestra::test {

// A fresh folder below the system's temporary folder, removed at destruction.
class TempDir {
public:
    TempDir();
    ~TempDir();
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;
    const std::filesystem::path& path() const { return path_; }
    std::string file(const std::string& name) const { return (path_ / name).string(); }

private:
    std::filesystem::path path_;
};

std::string readBytes(const std::filesystem::path& path);
void writeBytes(const std::filesystem::path& path, std::string_view bytes);

// The lines of a text split at CR LF (the last, empty piece after the final
// line end is dropped).
std::vector<std::string> crlfLines(std::string_view text);
// Lines joined with CR LF after each.
std::string joinCrlf(const std::vector<std::string>& lines);

// A channel line of a MEM file: N,"c1",...,"c12","comment".
std::string channelLine(int number, const std::vector<std::string>& cells, const std::string& comment = " ");

// A MEM file made line by line as the format has it, version given by header.
// Channels not in `channels` are written as an empty line of a fresh document.
// When withTail is false the file ends after the TSI section (as a V1.00 file
// of that version might not), when withFips is false the FIPS and PRCH lines
// are left out (as a V1.00 file has them).
struct HandMadeMem {
    std::string header = "KESTRA MEM V1.02 - hand made";
    std::vector<std::pair<int, std::string>> channels;  // channel number -> whole line
    std::vector<std::string> bankTags = std::vector<std::string>(12, "None");
    bool withFips = true;
    std::string text() const;
};

} // namespace kestra::test
