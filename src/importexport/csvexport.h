#pragma once
// File > Export CSV Data: one table of the document as comma separated text
// for a spreadsheet, decoded to the texts the user reads (never stored codes).
// One-way: nothing reads this form back.

#include "core/document.h"

#include <string>

namespace kestra {

enum class CsvExportKind {
    CurrentBank = 0,   // "Export Current Bank"
    AllBanks = 1,      // "Export All Memory Banks"
    Search = 2,        // "Export Search/Edge Data"
    Bandplan = 3,      // the bandplan held at the Dummy bank's rows
    IdsCurrentBank = 4,// "Export Trunk Id's (current bank)"
    IdsAllBanks = 5,   // "Export Trunk Id's (all banks)"
};

// The whole file: the header line and the rows, each line ended by CR LF.
// `bank` is the bank of the two current-bank kinds (0..9; the Dummy bank 10
// for the channel rows).
std::string csvExportText(const Document& doc, CsvExportKind kind, int bank);

// The name the file is written under: ".CSV" appended when it has no CSV extension.
std::string csvExportName(const std::string& chosen);

} // namespace kestra
