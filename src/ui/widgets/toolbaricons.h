#pragma once
// The pictures of the program: the toolbar buttons' (the desktop's icon theme
// where it has one of the same meaning, else the program's own SVG files) and
// the program's icon for its windows.

#include <QIcon>

#include <string>

namespace kestra {

// The picture of a toolbar button, by the key of the menu handler it calls;
// a null icon for a key without one.
QIcon pictureIcon(const std::string& key);

// The program's icon (the SVG the desktop entry uses too).
QIcon programIcon();

} // namespace kestra
