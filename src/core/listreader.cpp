#include "listreader.h"

#include <algorithm>

namespace kestra {

void ListReader::skipLineEnd()
{
    if (pos_ < text_.size() && text_[pos_] == '\r') ++pos_;
    if (pos_ < text_.size() && text_[pos_] == '\n') ++pos_;
}

std::optional<std::string> ListReader::field()
{
    if (atEnd()) return std::nullopt;
    const std::size_t n = text_.size();
    while (pos_ < n && (text_[pos_] == ' ' || text_[pos_] == '\t')) ++pos_;
    std::string value;
    if (pos_ < n && text_[pos_] == '"') {
        const std::size_t start = ++pos_;
        const std::size_t close = text_.find('"', start);
        const std::size_t end = close == std::string_view::npos ? n : close;
        value.assign(text_.substr(start, end - start));
        pos_ = close == std::string_view::npos ? n : close + 1;
        // Pass over anything up to the delimiter.
        while (pos_ < n && text_[pos_] != ',' && text_[pos_] != '\r' && text_[pos_] != '\n') ++pos_;
    } else {
        const std::size_t start = pos_;
        while (pos_ < n && text_[pos_] != ',' && text_[pos_] != '\r' && text_[pos_] != '\n') ++pos_;
        std::size_t end = pos_;
        while (end > start && (text_[end - 1] == ' ' || text_[end - 1] == '\t')) --end;
        value.assign(text_.substr(start, end - start));
    }
    if (pos_ < n && text_[pos_] == ',')
        ++pos_;
    else
        skipLineEnd();
    return value;
}

std::optional<std::string> ListReader::line(std::size_t maxLength)
{
    if (atEnd()) return std::nullopt;
    const std::size_t start = pos_;
    const std::size_t end = text_.find_first_of("\r\n", start);
    pos_ = end == std::string_view::npos ? text_.size() : end;
    std::string value(text_.substr(start, std::min(pos_ - start, maxLength)));
    skipLineEnd();
    return value;
}

} // namespace kestra
