#pragma once
// The channel list layout of the CHIRP programming tool, which most radio
// owners keep their frequency lists in: written from the banks, and read into
// them with every frequency going through the editor's frequency rules.

#include "core/document.h"

#include <string>
#include <string_view>
#include <vector>

namespace kestra {

class MemTable;

inline constexpr const char* kChirpHeader =
    "Location,Name,Frequency,Duplex,Offset,Tone,rToneFreq,cToneFreq,DtcsCode,DtcsPolarity,RxDtcsCode,"
    "CrossMode,Mode,TStep,Skip,Power,Comment,URCALL,RPT1CALL,RPT2CALL,DVCODE";

// The channels of one bank (0..10; Location counts from 0 at its first
// channel), or of banks 1 to 10 with bank -1 (Location = channel - 1).
// UTF-8, CR LF line ends; empty channels are left out.
std::string chirpExportText(const Document& doc, int bank);

struct ChirpImport {
    bool readable = true;           // false: no header with a Frequency column
    int taken = 0;                  // channels written
    int refused = 0;                // lines not taken
    std::vector<std::string> notes; // "Line n: ...", for refused lines and what a taken line lost
    // "n channels taken, m lines refused." and the notes, one a line.
    std::string report() const;
};

// Reads a CHIRP file's text into the document through the main window's
// routines. The header may hold any of the columns, in any order; a line
// goes to channel (first channel of firstBank) + Location, or, without a
// Location column, behind the line before. The document is marked changed
// when a channel was taken; the bank on view is the one it was.
ChirpImport chirpImport(MemTable& table, std::string_view bytes, int firstBank);

} // namespace kestra
