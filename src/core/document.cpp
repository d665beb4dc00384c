#include "document.h"

#include "text.h"

#include <algorithm>

namespace kestra {

Document::Document()
{
    defaultPriorityChannels();
    setDefaultBankTags(true);
}

bool Document::isEmpty(int bank, int row) const { return Val(memdata[bank][row][col::freq]) == 0; }

void Document::fillSplashDefaults()
{
    for (int b = 0; b < kChannelBanks; ++b)
        for (int r = 0; r <= 101; ++r) {
            auto& line = memdata[b][r];
            line[0] = "";
            line[1] = "0000.0000";
            line[2] = std::string(9, ' ');
            for (int c = 3; c <= 6; ++c) line[c] = "0";
            for (int c = 7; c <= 12; ++c) line[c] = std::string(9, ' ');
        }
}

void Document::clearAllCells()
{
    for (auto& bank : memdata)
        for (auto& row : bank)
            for (auto& cell : row) cell.clear();
}

void Document::clearForLoad()
{
    for (int b = 0; b <= kSearchBank; ++b)
        for (int r = 0; r <= kChannelRows; ++r) {
            auto& line = memdata[b][r];
            for (auto& cell : line) cell.clear();
            line[col::freq] = "0";
        }
}

void Document::clearstores()
{
    for (int b = 0; b <= kSearchBank; ++b)
        for (int r = 1; r <= kChannelRows; ++r) {
            auto& line = memdata[b][r];
            line[col::line] = "";
            line[col::freq] = "0";
            for (int c = 2; c < kCellColumns; ++c) line[c] = " ";
        }
    for (auto& bank : trunkids)
        for (auto& entry : bank)
            for (auto& field : entry) field.clear();
    for (auto& bank : trunklisttags)
        for (auto& tag : bank) tag.clear();
    for (auto& system : trunkset) {
        system.trunktype.clear();
        for (auto& field : system.trunkfields) field.clear();
        for (auto& block : system.trunkblocks)
            for (auto& field : block) field.clear();
    }
    for (auto& row : srcdata)
        for (auto& field : row) field.clear();
    clearEasyTags();
    banklockm.fill(0);
    banklocks.fill(0);
    defaultPriorityChannels();
}

void Document::emptyChannels(int bank)
{
    if (bank < 0 || bank >= kBandplanBank) return;
    for (int r = 1; r <= kChannelRows; ++r) {
        auto& line = memdata[bank][r];
        line[col::line] = " ";
        line[col::freq] = "Empty";
        for (int c = 2; c < kCellColumns; ++c) line[c] = " ";
    }
}

void Document::clearbank(int bank)
{
    if (bank < 0 || bank >= kBandplanBank) return;
    emptyChannels(bank);
    for (auto& row : srcdata)
        for (int c = 0; c <= 4; ++c) row[c].clear();
}

void Document::defaultPriorityChannels()
{
    for (int b = 0; b < 10; ++b) priochan[b] = static_cast<std::int16_t>(b * 100 + 1);
}

void Document::setDefaultBankTags(bool withColon)
{
    for (int b = 0; b < 10; ++b) banktags[b] = (withColon ? "Bank: " : "Bank ") + std::to_string(b + 1);
    banktags[kDummyBank] = "Dummy";
    banktags[kSearchBank] = "Search";
}

void Document::addeasytag(std::string_view tag, int bank, int option9)
{
    if (option9 != 1) return;
    const std::string t = ltrim(tag);
    if (t.empty()) return;
    if (easytags.size() < static_cast<std::size_t>(kEasyTagsMax) &&
        std::find(easytags.begin(), easytags.end(), t) == easytags.end())
        easytags.push_back(t);
    if (bank < 0 || bank >= 10) return;
    auto& list = banktaglist[bank];
    if (list.size() < static_cast<std::size_t>(kBankEasyTagsMax) &&
        std::find(list.begin(), list.end(), t) == list.end())
        list.push_back(t);
}

void Document::clearEasyTags()
{
    easytags.clear();
    for (auto& list : banktaglist) list.clear();
}

std::vector<std::string> bankEmptyStatus(const Document& doc)
{
    std::vector<std::string> lines{"Bank Empty Status:", "------------------"};
    for (int b = 0; b <= kDummyBank; ++b) {
        bool empty = true;
        for (int r = 1; r <= kChannelRows && empty; ++r) empty = doc.isEmpty(b, r);
        if (empty) lines.push_back(b == kDummyBank ? "Bank Dummy: Empty" : "Bank " + std::to_string(b + 1) + ": Empty");
    }
    return lines;
}

int bankTrunkType(const Document& doc, int bank)
{
    if (bank < 0 || bank >= kChannelBanks) return 0;
    return static_cast<int>(IntVal(doc.trunkset[bank].trunktype));
}

} // namespace kestra
