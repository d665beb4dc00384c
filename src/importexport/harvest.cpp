#include "harvest.h"

#include "core/document.h"
#include "core/memfile.h"
#include "core/text.h"

#include <algorithm>

namespace kestra {

namespace {

bool isDigit(char c) { return c >= '0' && c <= '9'; }

// The characters that end a token. "<" is none: a tag's start stays with the
// token before it and is cut as junk behind the number.
bool isSeparator(char c)
{
    switch (c) {
    case ',': case '-': case '>': case ';': case '\n': case '\r': case ' ': case '\t': return true;
    default: return false;
    }
}

} // namespace

std::string harvestToken(std::string_view t)
{
    const std::size_t dot = t.find('.');
    if (dot == std::string_view::npos || dot == 0 || dot + 1 >= t.size()) return {};
    if (!isDigit(t[dot - 1]) || !isDigit(t[dot + 1])) return {};
    std::size_t left = 0, right = 0;
    for (std::size_t i = 0; i < dot; ++i) left += !isDigit(t[i]);
    for (std::size_t i = dot + 1; i < t.size(); ++i) right += !isDigit(t[i]);
    // Junk is presumed to stand at the ends: it is cut there, by count.
    if (left + right >= t.size()) return {};
    std::string_view kept = t.substr(left, t.size() - left - right);
    kept = kept.substr(0, FrequencyHarvest::kItemLength);
    if (!(Val(kept) > 0)) return {};
    return std::string(kept);
}

void FrequencyHarvest::clear()
{
    items_.clear();
    known_.clear();
}

void FrequencyHarvest::addfrequency(std::string_view token)
{
    std::string text = harvestToken(token);
    if (text.empty() || known_.count(text)) return;
    known_.insert(text);
    items_.push_back(std::move(text));
}

void FrequencyHarvest::scantext(std::string_view text)
{
    if (items_.size() >= kFull) return;
    if (onProgress) onProgress();
    std::size_t start = 0;
    bool dotSeen = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (c == '.') {
            dotSeen = true;
        } else if (isSeparator(c)) {
            if (dotSeen) addfrequency(text.substr(start, i - start));
            start = i + 1;
            dotSeen = false;
        }
    }
    if (start < text.size()) addfrequency(text.substr(start));
    if (onProgress) onProgress();
}

bool FrequencyHarvest::scanfile(const std::filesystem::path& path)
{
    std::string bytes;
    if (!readFileBytes(path, bytes)) return false;
    std::size_t start = 0;
    while (start < bytes.size() && items_.size() < kFull) {
        std::size_t end = bytes.find('\n', start);
        if (end == std::string::npos) end = bytes.size();
        std::string_view line(bytes.data() + start, end - start);
        if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
        scantext(line);
        start = end + 1;
    }
    return true;
}

int exportToTable(Document& doc, const std::vector<std::string>& items, int bank, int start)
{
    const int count = static_cast<int>(std::min<std::size_t>(items.size(), 100));
    if (start < 1) start = 1;
    if (bank < 0 || bank > kDummyBank) return 0;
    doc.dirty = true;
    int written = 0;
    for (int i = 0; i < count; ++i) {
        const int row = start + i;
        if (row >= kRows) continue;
        doc.memdata[bank][row][col::freq] = items[static_cast<std::size_t>(i)];
        ++written;
    }
    return written;
}

std::string clipboardText(const std::vector<std::string>& items)
{
    std::string text;
    for (std::size_t i = 0; i < items.size(); ++i) {
        if (i > 0) text += "\r\n";
        text += items[i];
    }
    return text;
}

} // namespace kestra
