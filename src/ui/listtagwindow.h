#pragma once
// The window listtags: the tags of the ten scan lists of one bank, in boxes
// of a fixed-pitch font so that the alignment can be judged. "Ok" writes the
// boxes into trunklisttags; "Clear All", "Default", "Left" and "Center" work
// on the boxes; "Default All Banks" writes the default tags of every list of
// every bank into the store at once and shows this bank's again.

#include "core/document.h"

#include <QDialog>

#include <array>

class QLineEdit;
class QPushButton;

namespace kestra {

class ListTagWindow : public QDialog {
    Q_OBJECT
public:
    ListTagWindow(Document& doc, int bank, QWidget* parent = nullptr);

    QLineEdit* box(int list) const { return boxes_.at(list); }   // list 0..9
    QPushButton* button(const char* name) const;
    QPushButton* okButton() const { return ok_; }
    QPushButton* cancelButton() const { return cancel_; }

    void accept() override;

private:
    void showStored();

    Document& doc_;
    int bank_;
    std::array<QLineEdit*, 10> boxes_{};
    QPushButton* ok_ = nullptr;
    QPushButton* cancel_ = nullptr;
};

} // namespace kestra
