#include "csvexport.h"

#include "core/cellcodes.h"
#include "core/text.h"

namespace kestra {

namespace {

constexpr const char* kEol = "\r\n";

// A code "0".."n-1" as the text of the table, "" for anything else.
std::string fromTable(const std::string& code, std::initializer_list<const char*> texts)
{
    if (code.size() != 1 || code[0] < '0' || code[0] > '9') return {};
    const std::size_t v = static_cast<std::size_t>(code[0] - '0');
    return v < texts.size() ? std::string(*(texts.begin() + v)) : std::string();
}

std::string cleanTag(std::string tag)
{
    for (char& c : tag)
        if (c == ',' || c == ';') c = ' ';
    return tag;
}

void bankRows(const Document& doc, int bank, std::string& out)
{
    const int bc785d = doc.model.bc785d;
    for (int row = 1; row <= kChannelRows; ++row) {
        const auto& line = doc.memdata[bank][row];
        if (Val(line[col::freq]) == 0) {
            out += "Empty,,,,,,,,,,,";
            out += kEol;
            continue;
        }
        // Models without a Record column keep the flag in the hidden column.
        const std::string& record = bc785d == 1 ? line[col::record] : line[col::recordHidden];
        const std::string tone = repairToneCode(line[col::tone]);
        out += numText(bank + 1) + ',' + numText(channelNumber(bank, row)) + ',' + line[col::freq] + ',' +
               cleanTag(line[col::tag]) + ',' + onOffText(line[col::trunk]) + ',' + delayText(line[col::delay], 1) +
               ',' + onOffText(record) + ',' + onOffText(line[col::beep]) + ',' + toneText(tone) + ',' +
               onOffText(line[col::lockout]) + ',' + onOffText(line[col::atten]) + ',' +
               fromTable(line[col::mode], {"FM", "WFM", "AM", "NFM", "Auto"}) + ',' + stepText(line[col::step]);
        out += kEol;
    }
}

void searchRows(const Document& doc, std::string& out)
{
    for (const auto& range : doc.srcdata) {
        if (Val(range[0]) == 0) {
            out += "Empty,,,,";
        } else {
            out += range[0] + ',' + range[1] + ',' + range[4] + ',' +
                   fromTable(range[2], {"-", "AM", "FM", "WFM", "NFM", "Auto"}) + ',' +
                   fromTable(range[3], {"-", "5", "7.5", "10", "12.5", "25", "50", "100", "Auto"});
        }
        out += kEol;
    }
}

// The bandplan rows kept at the Dummy bank: frequency, mode, step, duplex and
// offset in columns 1 to 5, the comment beside them.
void bandplanRows(const Document& doc, std::string& out)
{
    for (int row = 1; row <= kChannelRows; ++row) {
        const auto& line = doc.memdata[kDummyBank][row];
        if (Val(line[1]) == 0) {
            out += "Empty,,,,,";
        } else {
            out += line[1] + ',' + fromTable(line[2], {"FM", "WFM", "AM"}) + ',' +
                   fromTable(line[3], {"5.0", "6.25", "10.0", "12.5", "15.0", "20.0", "25.0", "30.0", "50.0", "100.0"}) +
                   ',' + fromTable(line[4], {"Off", "", "Dup-", "Dup+"}) + ',' + line[5] + ',' + line[col::comment];
        }
        out += kEol;
    }
}

// Store rows 1..100 as they stand, numbered by list and position of the
// row number itself (so store row 0 is not written and row 100 is empty).
void idRows(const Document& doc, int bank, std::string& out)
{
    static const TrunkIdEntry kEmpty{};
    for (int i = 1; i <= 100; ++i) {
        const TrunkIdEntry& entry = i < 100 ? doc.trunkids[bank][i] : kEmpty;
        out += numText((i - 1) / 10 + 1) + '_' + numText((i - 1) % 10 + 1) + ',' + entry[0] + ',' + entry[1];
        out += kEol;
    }
}

constexpr const char* kBankHeader =
    "Bank,Channel,Frequency,Tag,Trunk,Delay Time,Record,Beep Alert,PL/DPL,Lockout,Attenuator,Mode,Step";

} // namespace

std::string csvExportText(const Document& doc, CsvExportKind kind, int bank)
{
    std::string out;
    switch (kind) {
    case CsvExportKind::CurrentBank:
        out = std::string(kBankHeader) + kEol;
        bankRows(doc, bank < 0 || bank > kDummyBank ? 0 : bank, out);
        break;
    case CsvExportKind::AllBanks:
        out = std::string(kBankHeader) + kEol;
        for (int b = 0; b < kChannelBanks; ++b) bankRows(doc, b, out);
        break;
    case CsvExportKind::Search:
        out = std::string("Start,End,Tag,Mode,Step") + kEol;
        searchRows(doc, out);
        break;
    case CsvExportKind::Bandplan:
        out = std::string("Frequency,Mode,Step,Duplex,Offset,Comments") + kEol;
        bandplanRows(doc, out);
        break;
    case CsvExportKind::IdsCurrentBank:
        out = std::string("Index,ID,Tag") + kEol;
        idRows(doc, bank < 0 || bank >= kChannelBanks ? 0 : bank, out);
        break;
    case CsvExportKind::IdsAllBanks:
        out = std::string("Index,ID,Tag") + kEol;
        for (int b = 0; b < kChannelBanks; ++b) idRows(doc, b, out);
        break;
    }
    return out;
}

std::string csvExportName(const std::string& chosen)
{
    if (contains(chosen, ".CSV") || contains(chosen, ".csv")) return chosen;
    return chosen + ".CSV";
}

} // namespace kestra
