#pragma once
// The pictures of the main window's toolbar buttons, drawn at start-up.

#include <QIcon>

#include <string>

namespace kestra {

// The picture of a toolbar button, by the key of the menu handler it calls.
QIcon pictureIcon(const std::string& key);

} // namespace kestra
