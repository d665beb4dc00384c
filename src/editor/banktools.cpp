#include "editor/banktools.h"

#include "core/memtable.h"
#include "core/text.h"
#include "editor/lineops.h"

#include <algorithm>
#include <fstream>
#include <utility>
#include <vector>

namespace kestra {

namespace {

constexpr const char* kCrLf = "\r\n";

using Line = std::array<std::string, kCellColumns>;

// One character in lower case, for the letters of Windows-1252: ASCII, the
// accented capitals 0xC0..0xDE (not the multiplication sign 0xD7) and the four
// capitals of the 0x80 row.
char lowerChar(char ch)
{
    const auto c = static_cast<unsigned char>(ch);
    if (c >= 'A' && c <= 'Z') return static_cast<char>(c + 32);
    if (c >= 0xC0 && c <= 0xDE && c != 0xD7) return static_cast<char>(c + 32);
    switch (c) {
    case 0x8A: return static_cast<char>(0x9A);  // S caron
    case 0x8C: return static_cast<char>(0x9C);  // OE
    case 0x8E: return static_cast<char>(0x9E);  // Z caron
    case 0x9F: return static_cast<char>(0xFF);  // Y diaeresis
    default: return ch;
    }
}

std::string lower(std::string_view text)
{
    std::string out(text);
    std::transform(out.begin(), out.end(), out.begin(), lowerChar);
    return out;
}

// Position of needle in text in any case; npos when absent or needle is empty.
std::size_t findAnyCase(std::string_view text, std::string_view needle)
{
    if (needle.empty()) return std::string::npos;
    return lower(text).find(lower(needle));
}

bool isChannel(const Line& line) { return Val(line[col::freq]) != 0; }

// The PL/DPL code as a number: "None" and "0" are both no tone, and the older
// "12L" form counts as the code it stands for.
double toneValue(const std::string& code) { return Val(repairToneCode(code)); }

} // namespace

int BankTools::firstBank(Scope scope) const
{
    return scope == Scope::AllBanks ? 0 : table_.doc().currentBank;
}

int BankTools::lastBank(Scope scope) const
{
    return scope == Scope::AllBanks ? kChannelBanks - 1 : table_.doc().currentBank;
}

// ---- sort ----

bool BankTools::sortConfirmed(int bank)
{
    if (bank < 0 || bank >= kChannelBanks) return true;
    const std::string& type = table_.doc().trunkset[bank].trunktype;
    // Edacs Wide always; Edacs Narrow only while option6 is off.
    const bool edacs = type == "6" || (type == "7" && table_.settings().option6 == 0);
    if (!edacs) return true;
    const auto& rows = table_.doc().memdata[bank];
    const bool trunked = std::any_of(rows.begin() + 1, rows.begin() + 1 + kChannelRows,
                                     [](const Line& line) { return line[col::trunk] == "1"; });
    if (!trunked) return true;
    const std::string question = std::string("WARNING:") + kCrLf + "This bank contains an EDACS trunk system!" +
                                 kCrLf + "Sorting this bank can cause problems." + kCrLf + kCrLf +
                                 "Do you want to sort this bank anyway?";
    return table_.dialogs().message(question, {}, Buttons::YesNo, Icon::Exclamation) == Answer::Yes;
}

void BankTools::sort(bool descending)
{
    const GridSelection& s = table_.grid().selection();
    int top = std::clamp(s.top(), 1, kChannelRows);
    int bottom = std::clamp(s.bottom(), 1, kChannelRows);
    if (top == bottom) {
        top = 1;
        bottom = kChannelRows;
    }
    lineOps_.saveundo();
    const int bank = table_.doc().currentBank;
    if (bank < 0 || bank > kDummyBank) return;
    if (!sortConfirmed(bank)) return;

    auto& rows = table_.doc().memdata[bank];
    std::vector<Line> channels;
    for (int r = top; r <= bottom; ++r)
        if (isChannel(rows[r])) channels.push_back(std::move(rows[r]));
    std::stable_sort(channels.begin(), channels.end(), [descending](const Line& a, const Line& b) {
        const double fa = Val(a[col::freq]), fb = Val(b[col::freq]);
        return descending ? fa > fb : fa < fb;
    });
    int r = top;
    for (Line& line : channels) rows[r++] = std::move(line);
    // The empty channels end the range as blank rows.
    for (; r <= bottom; ++r) {
        rows[r].fill("");
        rows[r][col::freq] = "Empty";
    }
    table_.fillgrid();
    table_.markDirty();
}

// ---- duplicates ----

void BankTools::findDuplicates(Scope scope, bool withSubtone)
{
    if (!table_.createbank()) return;
    std::ofstream report(table_.folder().file(kDuplicateFile), std::ios::binary | std::ios::trunc);

    const Document& doc = table_.doc();
    std::vector<std::pair<int, int>> channels;
    for (int b = firstBank(scope); b <= lastBank(scope); ++b)
        for (int r = 1; r <= kChannelRows; ++r)
            if (isChannel(doc.memdata[b][r])) channels.emplace_back(b, r);

    for (std::size_t i = 0; i < channels.size(); ++i) {
        const Line& first = doc.memdata[channels[i].first][channels[i].second];
        for (std::size_t j = i + 1; j < channels.size(); ++j) {
            const Line& second = doc.memdata[channels[j].first][channels[j].second];
            if (first[col::freq] != second[col::freq]) continue;
            if (withSubtone && toneValue(first[col::tone]) != toneValue(second[col::tone])) continue;
            const std::string text = "Duplicate Channel Found: " +
                                     numText(channelNumber(channels[i].first, channels[i].second)) + " and " +
                                     numText(channelNumber(channels[j].first, channels[j].second)) + " / " +
                                     "Frequency: " + first[col::freq];
            report << text << kCrLf;
            report.flush();
            if (table_.dialogs().message(text, {}, Buttons::OkCancel) == Answer::Cancel) return;
        }
    }
}

void BankTools::removeDuplicates()
{
    if (!table_.createbank()) return;
    lineOps_.saveundo(table_.doc().currentBank);
    auto& rows = table_.doc().memdata[table_.doc().currentBank];
    bool changed = false;
    for (int r = 1; r <= kChannelRows; ++r) {
        if (!isChannel(rows[r])) continue;
        for (int later = r + 1; later <= kChannelRows; ++later) {
            if (isChannel(rows[later]) && rows[later][col::freq] == rows[r][col::freq]) {
                rows[later][col::freq].clear();
                changed = true;
            }
        }
    }
    table_.fillgrid();
    if (changed) table_.markDirty();
}

// ---- find and replace ----

bool BankTools::findNext(const std::string& text, Scope scope, Field field)
{
    if (text.empty() || !table_.createbank()) return false;
    const int first = firstBank(scope), last = lastBank(scope);
    const int count = (last - first + 1) * kChannelRows;
    // Positions run through the scope's rows in bank order; the search begins
    // behind the last hit and comes round to it again at the end.
    int start = 0;
    if (hitBank_ >= first && hitBank_ <= last) start = (hitBank_ - first) * kChannelRows + hitRow_;
    const int column = field == Field::Comments ? col::comment : col::freq;
    const Document& doc = table_.doc();
    for (int k = 0; k < count; ++k) {
        const int position = (start + k) % count;
        const int bank = first + position / kChannelRows;
        const int row = position % kChannelRows + 1;
        const Line& line = doc.memdata[bank][row];
        if (!isChannel(line) || findAnyCase(line[column], text) == std::string::npos) continue;

        hitBank_ = bank;
        hitRow_ = row;
        if (bank != doc.currentBank) table_.changeBank(bank);
        Grid& grid = table_.grid();
        grid.setSelection({row, 1, row, grid.cols() - 1});
        table_.dialogs().message("Channel #" + numText(channelNumber(bank, row)) + kCrLf + "in bank " +
                                 numText(bank + 1) + kCrLf + "contains this data.");
        return true;
    }
    return false;
}

int BankTools::replaceTags(const std::string& what, const std::string& with, Scope scope)
{
    if (what.empty() || !table_.createbank()) return 0;
    int changed = 0;
    std::array<bool, kDummyBank + 1> touched{};
    for (int b = firstBank(scope); b <= lastBank(scope); ++b) {
        for (int r = 1; r <= kChannelRows; ++r) {
            Line& line = table_.doc().memdata[b][r];
            if (!isChannel(line)) continue;
            std::string& tag = line[col::tag];
            const std::size_t at = findAnyCase(tag, what);
            if (at == std::string::npos) continue;
            std::string result = tag.substr(0, at) + withoutQuotes(with) + tag.substr(at + what.size());
            if (result.size() > kTagLength) result.resize(kTagLength);
            if (result == tag) continue;
            // The bank's undo copy is taken before its first tag changes.
            if (!touched[b]) lineOps_.saveundo(b);
            touched[b] = true;
            tag = std::move(result);
            ++changed;
        }
    }
    table_.fillgrid();
    if (changed > 0) table_.markDirty();
    return changed;
}

} // namespace kestra
