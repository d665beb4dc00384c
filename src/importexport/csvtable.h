#pragma once
// Comma separated text as rows of fields: double quotes around a field keep
// its commas and line ends, a doubled quote inside stands for one. Lines end
// with CR LF or LF.

#include <string>
#include <string_view>
#include <vector>

namespace kestra {

struct CsvRow {
    int line = 0;                     // the line of the file the row starts on, from 1
    std::vector<std::string> fields;
};

std::vector<CsvRow> parseCsv(std::string_view text);

// A field as it goes into a line: quoted when it holds a comma, a quote or a line end.
std::string csvField(std::string_view text);

} // namespace kestra
