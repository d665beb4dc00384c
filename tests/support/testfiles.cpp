#include "support/testfiles.h"

#include <atomic>
#include <fstream>
#include <map>
#include <random>
#include <sstream>
#include <unistd.h>

namespace kestra::test {

TempDir::TempDir()
{
    static std::atomic<int> counter{0};
    std::random_device rd;
    path_ = std::filesystem::temp_directory_path() /
            ("kestra-test-" + std::to_string(::getpid()) + "-" + std::to_string(counter++) + "-" +
             std::to_string(rd() % 100000));
    std::filesystem::create_directories(path_);
}

TempDir::~TempDir()
{
    std::error_code ec;
    // Make read-only folders of a test removable again.
    std::filesystem::permissions(path_, std::filesystem::perms::owner_all, std::filesystem::perm_options::add, ec);
    std::filesystem::remove_all(path_, ec);
}

std::string readBytes(const std::filesystem::path& path)
{
    std::ifstream in(path, std::ios::binary);
    std::ostringstream s;
    s << in.rdbuf();
    return s.str();
}

void writeBytes(const std::filesystem::path& path, std::string_view bytes)
{
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

std::vector<std::string> crlfLines(std::string_view text)
{
    std::vector<std::string> lines;
    std::size_t start = 0;
    while (start < text.size()) {
        const auto end = text.find("\r\n", start);
        if (end == std::string_view::npos) {
            lines.emplace_back(text.substr(start));
            break;
        }
        lines.emplace_back(text.substr(start, end - start));
        start = end + 2;
    }
    return lines;
}

std::string joinCrlf(const std::vector<std::string>& lines)
{
    std::string out;
    for (const auto& l : lines) out += l + "\r\n";
    return out;
}

std::string channelLine(int number, const std::vector<std::string>& cells, const std::string& comment)
{
    std::string line = std::to_string(number);
    for (std::size_t c = 0; c < 12; ++c) line += ",\"" + (c < cells.size() ? cells[c] : std::string(" ")) + "\"";
    return line + ",\"" + comment + "\"";
}

std::string HandMadeMem::text() const
{
    std::map<int, std::string> byNumber(channels.begin(), channels.end());
    std::vector<std::string> lines{header};
    for (int n = 1; n <= 1000; ++n) {
        auto it = byNumber.find(n);
        lines.push_back(it != byNumber.end() ? it->second : channelLine(n, {"0"}));
    }
    lines.push_back(" ");
    for (int i = 0; i < 12; ++i) lines.push_back("#$BT" + std::to_string(i) + " " + bankTags[i]);
    for (int i = 0; i < 10; ++i) lines.push_back("SR" + std::to_string(i) + " ,\"\",\"\",\"\",\"\",\"\"");
    for (int i = 0; i < 1000; ++i) lines.push_back("TD" + std::to_string(i) + " ,\"\",\"\",\"\",\"\",\"\"");
    const std::string ten = ",\"\",\"\",\"\",\"\",\"\",\"\",\"\",\"\",\"\",\"\"";
    for (int i = 0; i < 10; ++i) lines.push_back("TID" + std::to_string(i) + " " + ten);
    for (int i = 0; i < 10; ++i) lines.push_back("TSI" + std::to_string(i) + " " + ten);
    for (int i = 0; i < 10; ++i) lines.push_back("#$TT" + std::to_string(i) + " 0");
    for (int i = 0; i < 30; ++i) lines.push_back("#$TBS" + std::to_string(i / 3) + ",\"\",\"\",\"\",\"\",\"\",\"\",\"\",\"\"");
    for (int i = 0; i < 10; ++i) lines.push_back("#$SD" + std::to_string(i) + ten);
    lines.push_back("#$LKM,\"0\",\"0\",\"0\",\"0\",\"0\",\"0\",\"0\",\"0\",\"0\",\"0\"");
    lines.push_back("#$LKS,\"0\",\"0\",\"0\",\"0\",\"0\",\"0\",\"0\",\"0\",\"0\",\"0\"");
    if (withFips) {
        std::string fips = "FIPS";
        for (int i = 0; i < 16; ++i) fips += ",\"\"";
        lines.push_back(fips);
        for (int i = 0; i < 10; ++i) lines.push_back("PRCH" + std::to_string(i) + " " + std::to_string(i * 100 + 1));
    }
    return joinCrlf(lines);
}

} // namespace kestra::test
