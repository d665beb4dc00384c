#pragma once
// The printed reports of the "Let's Print..." window: a bank, all banks,
// the search ranges, the bandplan and the trunk ID lists. Each is a text
// table laid out by tab positions in one small font with a fixed page form:
// the title with the date, the report's identification lines, the column
// heads, the rows, and a footer at the bottom of every page. The reports
// read the document as it is and write straight to the printer.

#include "core/document.h"
#include "platform/printer.h"

#include <string>

namespace kestra {

// The choices of the window, by their index there.
enum class PrintItem {
    TrunkIds = 0,         // "Trunk ID's from active bank"
    SearchData = 1,       // "Search / Edge Data"
    AllBanks = 2,         // "All Memory Banks"
    ActiveBank = 3,       // "Active Bank"
    MemoryAndSearch = 4,  // "Memory and Search Banks"
    Bandplan = 5,         // "Bandplan"
    AllTrunkIds = 6,      // "All trunk ID's / Tag's"
};
inline constexpr int kPrintItems = 7;

const char* printItemCaption(PrintItem item);
// The page total the channel pages show: 2, 22 or 12; 0 where no page
// numbers are printed. The 12 of "Memory and Search Banks" is a fixed number,
// not the real count.
int pageTotal(PrintItem item);
// The choice the window starts on for the bank on screen (0..10 a memory
// bank, 11 the search table, 12 the bandplan).
PrintItem initialPrintItem(int shownBank);

struct ReportJob {
    PrintItem item = PrintItem::ActiveBank;
    int bank = 0;            // the current bank, for the reports of one bank
    std::string date;        // the date of the title line
    std::string fileName;    // the open MEM file, Windows-1252
};

// Prints the report and ends the document. Returns 0, or the printer's
// failure number when it failed on the way (what was printed stays printed).
int printReport(Printer& printer, const Document& doc, const ReportJob& job);

// Today's date as the title line shows it: "2026-11-23".
std::string reportDate();

// "Problem in printerroutine #1 Err = 482".
std::string printerFailureMessage(int error);

// The page of the window's setup buttons: "Should print in landscape mode".
int printTestPage(Printer& printer);

} // namespace kestra
