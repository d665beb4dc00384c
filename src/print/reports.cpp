#include "print/reports.h"

#include "core/cellcodes.h"
#include "core/text.h"
#include "trunk/trunkids.h"

#include <array>
#include <ctime>

namespace kestra {

namespace {

constexpr const char* kTitle = "Kestra Console for Uniden BC250/296/785/796 - ";
constexpr const char* kBandplanTitle = "Kestra Console for Uniden BC250/296/785/796/UBC3300 - ";
constexpr const char* kNotice = "Printed with Kestra Console - scanner memory in a table";
constexpr const char* kFont = "Arial";
constexpr double kFontSize = 8.25;
constexpr int kMarginLeft = -800, kMarginTop = -500;
constexpr int kTrunkMarginLeft = -1000;
// The footer's line stands this far above the bottom edge of the page, in
// the coordinates of the origin (which itself lies 500 twips down).
constexpr double kFooterFromBottom = 1300;

constexpr int kBankBase = 52;
constexpr std::array<int, 9> kBankOffsets = {0, 8, 18, 27, 36, 45, 53, 59, 66};

using Line = std::vector<PrintPiece>;

// "Bank: 1" ... "Bank: 10", "Bank: Dummy".
std::string bankLabel(int bank)
{
    return bank == kDummyBank ? std::string("Bank: Dummy") : "Bank: " + std::to_string(bank + 1);
}

std::string channelMode(const std::string& code)
{
    if (code == "4") return "Auto";
    return modeText(code);
}

// The search range's mode and step as the report names them.
std::string searchMode(const std::string& code)
{
    static constexpr const char* kModes[] = {"-", "AM", "FM", "WFM", "NFM", "Auto"};
    const long long v = IntVal(code);
    return v >= 0 && v < 6 ? kModes[v] : "-";
}

std::string searchStep(const std::string& code)
{
    static constexpr const char* kSteps[] = {"5", "7.5", "10", "12.5", "25", "50", "100", "Auto"};
    const long long v = IntVal(code);
    return v >= 1 && v <= 8 ? kSteps[v - 1] : "--";
}

// The bandplan table's mode, step and duplex codes.
std::string bandMode(const std::string& code)
{
    static constexpr const char* kModes[] = {"FM", "WFM", "AM"};
    const long long v = IntVal(code);
    return trim(code).empty() || v < 0 || v > 2 ? std::string() : kModes[v];
}

std::string bandStep(const std::string& code)
{
    static constexpr const char* kSteps[] = {"5.0",  "6.25", "10.0", "12.5", "15.0",
                                             "20.0", "25.0", "30.0", "50.0", "100.0"};
    const long long v = IntVal(code);
    return trim(code).empty() || v < 0 || v > 9 ? std::string() : kSteps[v];
}

std::string bandDuplex(const std::string& code)
{
    if (trim(code).empty()) return {};
    switch (IntVal(code)) {
    case 0: return "Off";
    case 2: return "Dup-";
    case 3: return "Dup+";
    default: return {};
    }
}

class ReportWriter {
public:
    ReportWriter(Printer& printer, const ReportJob& job) : p_(printer), job_(job), total_(pageTotal(job.item)) {}

    void pageForm(int left)
    {
        p_.setFont(kFont, kFontSize);
        p_.setScaleOrigin(left, kMarginTop);
    }

    void line(Line pieces = {}) { p_.printLine(pieces); }
    void text(const std::string& t) { line({{1, t}}); }

    void title(const char* head = kTitle)
    {
        text(head + job_.date);
        line();
    }

    // The notice at the bottom of the page; channel pages carry their number.
    void footer(bool numbered)
    {
        p_.setCurrentY(p_.pageHeight() - kFooterFromBottom);
        Line pieces = {{1, kNotice}};
        if (numbered) {
            pieces.push_back({0, "   ---   Page " + std::to_string(page_) + " / " + std::to_string(total_)});
            ++page_;
        }
        line(pieces);
    }

    void bank(const Document& doc, int b)
    {
        const int recordColumn = doc.model.bc785d == 1 ? col::record : col::recordHidden;
        for (int half = 0; half < 2; ++half) {
            if (half) p_.newPage();
            bankHeads(doc, b);
            for (int row = half * 50 + 1; row <= half * 50 + 50; ++row) {
                const auto& c = doc.memdata[b][row];
                const std::string label = std::to_string(channelNumber(b, row)) + ": ";
                if (Val(c[col::freq]) == 0) {
                    line({{1, label}, {8, "Empty"}});
                } else {
                    const std::string values[9] = {
                        onOffText(c[col::trunk]),   delayText(c[col::delay], 1),
                        onOffText(c[recordColumn]), onOffText(c[col::beep]),
                        toneText(repairToneCode(c[col::tone])),
                        onOffText(c[col::lockout]), onOffText(c[col::atten]),
                        channelMode(c[col::mode]),  stepText(c[col::step])};
                    Line pieces = {{1, label}, {7, c[col::freq]}, {21, c[col::tag]}};
                    for (std::size_t i = 0; i < kBankOffsets.size(); ++i)
                        pieces.push_back({kBankBase + kBankOffsets[i], values[i]});
                    line(pieces);
                }
                if (row % 10 == 0) line();
            }
            footer(true);
        }
    }

    void bankHeads(const Document& doc, int b)
    {
        title();
        text(bankLabel(b));
        text("Bankname: " + doc.banktags[b]);
        text("Filename: " + job_.fileName);
        line();
        static constexpr const char* kHeads[] = {"Trunk", "Delay", "Record", "Beep", "PL/DPL",
                                                 "L.out", "ATT",   "Mode",   "Step"};
        Line heads = {{7, "Frequency"}, {21, "Tag"}};
        for (std::size_t i = 0; i < kBankOffsets.size(); ++i)
            heads.push_back({kBankBase + kBankOffsets[i], kHeads[i]});
        line(heads);
    }

    void search(const Document& doc)
    {
        title();
        text("Search / Edge data.");
        text("Filename: " + job_.fileName);
        line();
        line({{6, "Start"}, {22, "End"}, {38, "Mode"}, {48, "Step"}, {60, "Comments"}});
        for (int r = 0; r < 10; ++r) {
            const auto& s = doc.srcdata[r];
            const std::string label = std::to_string(r + 1) + ": ";
            if (Val(s[0]) == 0)
                line({{1, label}, {8, "Empty"}});
            else
                line({{1, label}, {6, s[0]}, {22, s[1]}, {38, searchMode(s[2])}, {48, searchStep(s[3])}, {60, s[4]}});
            if ((r + 1) % 10 == 0) line();
        }
        footer(false);
    }

    // The bandplan table is kept at the Dummy bank's index: its first fifty
    // rows, frequency, mode, step, duplex, offset and the comment.
    void bandplan(const Document& doc)
    {
        title(kBandplanTitle);
        text("Bandplan");
        line();
        line({{6, "Frequency"}, {22, "Mode"}, {32, "Step"}, {41, "Duplex"}, {51, "Offset"}, {63, "Comments"}});
        for (int i = 0; i < 50; ++i) {
            const auto& c = doc.memdata[kDummyBank][i + 1];
            const std::string label = std::to_string(i + 1) + ": ";
            if (Val(c[1]) == 0)
                line({{1, label}, {8, "Empty"}});
            else
                line({{1, label}, {6, c[1]}, {22, bandMode(c[2])}, {32, bandStep(c[3])}, {41, bandDuplex(c[4])},
                      {51, c[5]}, {63, c[col::comment]}});
            if (i % 10 == 9) line();
        }
        footer(false);
    }

    void trunkList(const Document& doc, int b)
    {
        title();
        text(bankLabel(b));
        text("Bankname: " + doc.banktags[b]);
        text("Filename: " + job_.fileName);
        line();
        line({{8, "ID"}, {22, "Tag"}, {68, "ID"}, {82, "Tag"}});
        const bool hasIds = b >= 0 && b < kChannelBanks;
        auto entry = [&](int list, int position) -> TrunkIdEntry {
            if (!hasIds) return {};
            return doc.trunkids[b][storeRowOf(list * kIdsPerList + position)];
        };
        for (int first = 0; first < kIdLists; first += 2) {
            const int second = first + 1;
            line({{1, hasIds ? doc.trunklisttags[b][first] : ""}, {60, hasIds ? doc.trunklisttags[b][second] : ""}});
            for (int pos = 1; pos <= kIdsPerList; ++pos) {
                const TrunkIdEntry a = entry(first, pos), z = entry(second, pos);
                line({{1, idRowLabel(first * kIdsPerList + pos) + ": "}, {8, a[idcol::id]}, {22, a[idcol::tag]},
                      {60, idRowLabel(second * kIdsPerList + pos) + ": "}, {68, z[idcol::id]}, {82, z[idcol::tag]}});
            }
            line();
        }
        footer(false);
    }

private:
    Printer& p_;
    const ReportJob& job_;
    int total_;
    int page_ = 1;
};

} // namespace

const char* printItemCaption(PrintItem item)
{
    switch (item) {
    case PrintItem::TrunkIds: return "Trunk ID's from active bank";
    case PrintItem::SearchData: return "Search / Edge Data";
    case PrintItem::AllBanks: return "All Memory Banks";
    case PrintItem::ActiveBank: return "Active Bank";
    case PrintItem::MemoryAndSearch: return "Memory and Search Banks";
    case PrintItem::Bandplan: return "Bandplan";
    case PrintItem::AllTrunkIds: return "All trunk ID's / Tag's";
    }
    return "";
}

int pageTotal(PrintItem item)
{
    switch (item) {
    case PrintItem::ActiveBank: return 2;
    case PrintItem::AllBanks: return 22;
    case PrintItem::MemoryAndSearch: return 12;
    default: return 0;
    }
}

PrintItem initialPrintItem(int shownBank)
{
    if (shownBank == kSearchBank) return PrintItem::SearchData;
    if (shownBank == kBandplanBank) return PrintItem::Bandplan;
    return PrintItem::ActiveBank;
}

int printReport(Printer& printer, const Document& doc, const ReportJob& job)
{
    ReportWriter w(printer, job);
    const bool trunk = job.item == PrintItem::TrunkIds || job.item == PrintItem::AllTrunkIds;
    w.pageForm(trunk ? kTrunkMarginLeft : kMarginLeft);
    switch (job.item) {
    case PrintItem::TrunkIds: w.trunkList(doc, job.bank); break;
    case PrintItem::SearchData: w.search(doc); break;
    case PrintItem::ActiveBank: w.bank(doc, job.bank); break;
    case PrintItem::AllBanks:
    case PrintItem::MemoryAndSearch:
        for (int b = 0; b <= kDummyBank && !printer.error(); ++b) {
            w.bank(doc, b);
            printer.newPage();
        }
        if (job.item == PrintItem::MemoryAndSearch) w.search(doc);
        break;
    case PrintItem::Bandplan: w.bandplan(doc); break;
    case PrintItem::AllTrunkIds:
        for (int b = 0; b < kChannelBanks && !printer.error(); ++b) {
            w.trunkList(doc, b);
            printer.newPage();
        }
        break;
    }
    printer.endDoc();
    return printer.error();
}

std::string reportDate()
{
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    char text[16];
    std::strftime(text, sizeof text, "%Y-%m-%d", &local);
    return text;
}

std::string printerFailureMessage(int error)
{
    return "Problem in printerroutine #1 Err = " + std::to_string(error);
}

int printTestPage(Printer& printer)
{
    printer.setFont(kFont, kFontSize);
    printer.setScaleOrigin(kMarginLeft, kMarginTop);
    printer.printLine({{1, "Should print in landscape mode"}});
    printer.endDoc();
    return printer.error();
}

} // namespace kestra
