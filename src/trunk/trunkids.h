#pragma once
// The rules of the trunk ID lists (trunkids): the ID normalisers of each
// trunk system's syntax, the row mapping between the editing rows and the
// store, the keys an ID or a tag accepts, and the 16-character tag forms.
// Every other part that reads or writes an ID goes through these.

#include "core/document.h"

#include <string>
#include <string_view>

namespace kestra {

// The five fields of an ID row (idcol) and the list sizes live with the
// store in core/document.h, where the transfers reach them too.
inline constexpr int kIdRows = kIdLists * kIdsPerList;   // editing rows 1..100, store rows 0..99


// ---- normalisers ----------------------------------------------------------
// Each takes the typed text and returns the stored form. No ID is refused:
// text that makes no sense becomes "0" or is emptied.

// Motorola Type 1 (type 2): "i" ICALLs padded to six characters; a value
// above 65536 gives "0". The limit is one above Type 2's, and kept so.
std::string normtype1(std::string_view text);
// Motorola Type 2 (types 1, 3, 4, 5): six digits, an ICALL marked by the "7".
std::string normtype2(std::string_view text);
// EDACS (types 6, 7): AFS "AA-FFS" with agency, fleet and subfleet clamped,
// or a decimal ID 1..2047, or an "i" ICALL up to 16383.
std::string normedacs(std::string_view text);
// LT (type 8): "AHHUUU", area, home repeater and user clamped in order.
std::string normlt(std::string_view text);

// The normaliser of a trunk type; types without one (0, 9) return the text.
std::string normaliseId(int trunktype, std::string_view text);

// An ID as a check over a list leaves it: trimmed, every character of code
// 128 or above a blank, trimmed again, and when anything is left, normalised.
std::string checkedId(int trunktype, std::string_view text);

// ---- what the window shows for a type ---------------------------------------
// "Motorola Type 2", "Motorola Type 1", "Edacs", "LT"; null for types that
// change nothing (0 and unknown codes).
const char* trunkKindLabel(int trunktype);
// The format hint of the ID box; null where the kind is null.
const char* idFormatHint(int trunktype);
// "Bank 3 - Fire - Mot." (" - Edacs", " - LT"; nothing for a bank without trunking).
std::string bankListCaption(const Document& doc, int bank);

// ---- keys ---------------------------------------------------------------------
inline constexpr char kBackspace = 8;
// A key typed into an ID: control characters below 26, digits, ".", "i", "I",
// and "-" where the type writes it (2, 6, 7).
bool idKeyAccepted(int trunktype, char key);
// A key typed into an ID tag: 32..126 but the double quote and the comma,
// which the MEM file's quoting cannot carry.
bool tagKeyAccepted(char key);
inline constexpr std::size_t kIdCellLength = 8;   // keys beyond this are dropped

// ---- rows -----------------------------------------------------------------------
// Editing rows 1..100 show list and position; within a list of ten the store
// keeps the tenth first: editing row 10(j+1) is store row 10j.
int storeRowOf(int editRow);
int editRowOf(int storeRow);
// "1-1" ... "10-10".
std::string idRowLabel(int editRow);
// The scan list (0..9) of a store row: store row 10j is list j's tenth ID.
inline int listOfStoreRow(int storeRow) { return storeRow / kIdsPerList; }

// ---- tags ----------------------------------------------------------------------
inline constexpr std::size_t kIdTagLength = 16;
// Cut to 16 and trimmed ("Align Left", "Left").
std::string leftTag(std::string_view tag);
// Cut to 16, trimmed, then centred in 16 with the half rounded to even.
std::string centerTag(std::string_view tag);
// The tag as the store takes it: cut to 16, each double quote a blank.
std::string storedIdTag(std::string_view tag);

} // namespace kestra
