#pragma once
// The one crossing between the program's Windows-1252 text and Qt's strings.
// Windows convert at their edge with these, and nowhere else.

#include "platform/cp1252.h"

#include <QString>

#include <string>

namespace kestra {

inline QString toQt(const std::string& cp1252) { return QString::fromStdString(utf8FromCp1252(cp1252)); }
inline std::string fromQt(const QString& text) { return cp1252FromUtf8(text.toStdString()); }

} // namespace kestra
