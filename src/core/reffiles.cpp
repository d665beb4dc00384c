#include "reffiles.h"

#include "listreader.h"
#include "memfile.h"
#include "text.h"

#include <algorithm>

namespace kestra {

namespace {
constexpr const char* kCrLf = "\r\n";

std::string fileText(const std::filesystem::path& path, bool& found)
{
    std::string bytes;
    found = readFileBytes(path, bytes);
    return bytes;
}
} // namespace

void readNames(Document& doc, const std::filesystem::path& folder)
{
    bool found = false;
    const std::string text = fileText(folder / "names.dat", found);
    if (!found) return;
    ListReader in(text);
    for (int b = 0; b <= kDummyBank; ++b) {
        // A bank tag is kept as long as a channel's tag: a longer line (a
        // damaged file can hold megabytes) is cut while it is read.
        auto line = in.line(kTagLength);
        if (!line) break;
        std::replace(line->begin(), line->end(), ',', ';');
        doc.banktags[b] = *line;
    }
}

std::string writeNames(const Document& doc, const std::filesystem::path& folder)
{
    std::string out;
    for (int b = 0; b <= kDummyBank; ++b) out += doc.banktags[b] + kCrLf;
    return writeFileAtomic(folder / "names.dat", out);
}

void readTrunkTypes(Document& doc, const std::filesystem::path& folder)
{
    bool found = false;
    const std::string text = fileText(folder / "ttype.dat", found);
    if (!found) return;
    ListReader in(text);
    for (int b = 0; b < 10; ++b) {
        auto field = in.field();
        if (!field) break;
        doc.trunkset[b].trunktype = Val(*field) == 0 ? std::string("0") : *field;
    }
}

std::string writeTrunkTypes(const Document& doc, const std::filesystem::path& folder)
{
    std::string out;
    for (int b = 0; b < 10; ++b) out += (doc.trunkset[b].trunktype.empty() ? std::string("0") : doc.trunkset[b].trunktype) + kCrLf;
    return writeFileAtomic(folder / "ttype.dat", out);
}

bool readBandplan(Document& doc, const std::filesystem::path& folder)
{
    bool found = false;
    const std::string text = fileText(folder / "bandplan.dat", found);
    if (!found) return false;
    ListReader in(text);
    for (int row = 0; row < 50; ++row) {
        auto line = in.line();
        if (!line) break;
        const std::size_t fr = InStr(*line, "FR"), md = InStr(*line, "MD"), st = InStr(*line, "ST");
        if (fr == 0 || md == 0 || st == 0) continue;  // the line uses up its row all the same
        auto& cells = doc.memdata[kBandplanBank][row];
        cells[1] = md > fr + 3 ? Mid(*line, fr + 2, md - fr - 3) : std::string();
        cells[2] = Mid(*line, md + 2, 1);
        cells[3] = Mid(*line, st + 2, 1);
    }
    return true;
}

std::optional<WindowPlace> readWindowPlace(const std::filesystem::path& folder)
{
    bool found = false;
    const std::string text = fileText(folder / "window.dat", found);
    if (!found) return std::nullopt;
    ListReader in(text);
    int values[5] = {};
    for (int& v : values) {
        auto line = in.line();
        if (!line) return std::nullopt;
        v = static_cast<int>(std::clamp<long long>(IntVal(*line), -1'000'000, 1'000'000));
    }
    return WindowPlace{values[0], values[1], values[2], values[3], values[4]};
}

std::string writeWindowPlace(const WindowPlace& p, const std::filesystem::path& folder)
{
    std::string out;
    for (int v : {p.left, p.top, p.width, p.height, p.state}) out += std::to_string(v) + kCrLf;
    return writeFileAtomic(folder / "window.dat", out);
}

std::string columnWidthFile(int bc785d) { return bc785d == 1 ? "tabw785.ini" : "tabw250.ini"; }

std::optional<std::vector<int>> readColumnWidths(int bc785d, const std::filesystem::path& folder)
{
    bool found = false;
    const std::string text = fileText(folder / columnWidthFile(bc785d), found);
    if (!found) return std::nullopt;
    ListReader in(text);
    std::vector<int> widths;
    for (int c = 0; c < gridDataColumns(bc785d); ++c) {
        auto line = in.line();
        if (!line) return std::nullopt;
        widths.push_back(static_cast<int>(std::clamp<long long>(IntVal(*line), 0, 100'000)));
    }
    return widths;
}

std::string writeColumnWidths(int bc785d, const std::vector<int>& widths, const std::filesystem::path& folder)
{
    std::string out;
    for (int w : widths) out += std::to_string(w) + kCrLf;
    return writeFileAtomic(folder / columnWidthFile(bc785d), out);
}

} // namespace kestra
