#pragma once
// Reading of the comma-separated text of the program's files, field by field
// and line by line, the way all of them have always been read:
// - a field starts after leading blanks; a quoted field ends at its closing
//   quote (line breaks inside the quotes belong to it) and whatever stands
//   between that quote and the next comma or line end is passed over;
// - an unquoted field ends at a comma or at the line end, trailing blanks cut;
// - a line ends at CR LF, CR or LF;
// - reading at the end of the text fails (input past end of file).

#include <optional>
#include <string>
#include <string_view>

namespace kestra {

class ListReader {
public:
    explicit ListReader(std::string_view text) : text_(text) {}

    bool atEnd() const { return pos_ >= text_.size(); }

    // One field; nothing at the end of the text.
    std::optional<std::string> field();
    // One whole line, without its line end; nothing at the end of the text.
    // Only the first maxLength characters are taken; the rest of the line is
    // passed over without being copied.
    std::optional<std::string> line(std::size_t maxLength = std::string::npos);

private:
    void skipLineEnd();
    std::string_view text_;
    std::size_t pos_ = 0;
};

} // namespace kestra
