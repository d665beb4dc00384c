#include "csvtable.h"

namespace kestra {

std::vector<CsvRow> parseCsv(std::string_view text)
{
    std::vector<CsvRow> rows;
    CsvRow row;
    std::string field;
    bool quoted = false;
    bool rowHasText = false;
    int line = 1;
    row.line = 1;
    auto endField = [&] {
        row.fields.push_back(std::move(field));
        field.clear();
    };
    auto endRow = [&] {
        endField();
        if (rowHasText) rows.push_back(std::move(row));
        row = CsvRow{};
        row.line = line;
        rowHasText = false;
    };
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (quoted) {
            if (c == '"') {
                if (i + 1 < text.size() && text[i + 1] == '"') {
                    field += '"';
                    ++i;
                } else {
                    quoted = false;
                }
            } else {
                if (c == '\n') ++line;
                field += c;
            }
            continue;
        }
        switch (c) {
        case '"': quoted = true; rowHasText = true; break;
        case ',': endField(); rowHasText = true; break;
        case '\r': break;
        case '\n': ++line; endRow(); break;
        default: field += c; rowHasText = true; break;
        }
    }
    if (rowHasText || !field.empty()) endRow();
    return rows;
}

std::string csvField(std::string_view text)
{
    if (text.find_first_of(",\"\r\n") == std::string_view::npos) return std::string(text);
    std::string out = "\"";
    for (char c : text) {
        if (c == '"') out += '"';
        out += c;
    }
    out += '"';
    return out;
}

} // namespace kestra
