#pragma once
// The small files of the program's folder that carry things from one run to
// the next: the bank tags (names.dat), the trunk types (ttype.dat), the custom
// bandplan (bandplan.dat), the place of the main window (window.dat) and the
// widths of the grid columns (tabw250.ini, tabw785.ini).

#include "document.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace kestra {

// names.dat: one line per bank tag, banks 0..10; a "," read back becomes ";".
// Missing lines leave their tags.
void readNames(Document& doc, const std::filesystem::path& folder);
std::string writeNames(const Document& doc, const std::filesystem::path& folder);

// ttype.dat: one field per bank with its trunk system type; a type of value 0 reads as "0".
void readTrunkTypes(Document& doc, const std::filesystem::path& folder);
std::string writeTrunkTypes(const Document& doc, const std::filesystem::path& folder);

// bandplan.dat into bank 12: up to 50 lines with "FR", "MD" and "ST" marks.
// False when the file is missing.
bool readBandplan(Document& doc, const std::filesystem::path& folder);
inline constexpr const char* kBandplanMissing = "Custum Bandplan bandplan.dat not found in working directory!";

// window.dat: left, top, width, height and state of the main window.
struct WindowPlace {
    int left = 0, top = 0, width = 0, height = 0, state = 0;
};
std::optional<WindowPlace> readWindowPlace(const std::filesystem::path& folder);
std::string writeWindowPlace(const WindowPlace& place, const std::filesystem::path& folder);

// tabw250.ini (bc785d 0, ten widths) or tabw785.ini (bc785d 1, eleven): one width
// per data column. Nothing when the file is missing or holds too few numbers.
std::string columnWidthFile(int bc785d);
std::optional<std::vector<int>> readColumnWidths(int bc785d, const std::filesystem::path& folder);
std::string writeColumnWidths(int bc785d, const std::vector<int>& widths, const std::filesystem::path& folder);

} // namespace kestra
