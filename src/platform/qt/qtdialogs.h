#pragma once
// Message boxes and file choosers of the desktop program. Texts arrive in
// Windows-1252 and are shown as Unicode; file names pass as native paths.

#include "platform/dialogs.h"

#include <QPointer>
#include <QString>
#include <QWidget>

namespace kestra {

class QtDialogs : public Dialogs {
public:
    explicit QtDialogs(QWidget* parent = nullptr) : parent_(parent) {}

    // The window the boxes and choosers belong to (none: application-modal).
    void setParentWidget(QWidget* parent) { parent_ = parent; }
    QWidget* parentWidget() const { return parent_; }

    Answer message(const std::string& text, const std::string& title = {}, Buttons buttons = Buttons::Ok,
                   Icon icon = Icon::None) override;
    void beep() override;
    std::optional<std::string> openFile(const FileChoice& choice) override;
    std::optional<std::string> saveFile(const FileChoice& choice) override;
    std::optional<std::string> chooseFolder(const std::string& prompt, const std::string& start) override;

private:
    QPointer<QWidget> parent_;
};

// The chooser filter "Description|pattern|Description|pattern" (Windows-1252)
// in the form QFileDialog takes: "Description (pattern);;Description (pattern)".
// Patterns separated by ";" are listed with blanks, "*.*" becomes "*", and
// each pattern is offered in lower and upper case as well, since the files
// that scanner owners bring along often have upper-case names.
QString qtFileFilter(const std::string& filter);

} // namespace kestra
