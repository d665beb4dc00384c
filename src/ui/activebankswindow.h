#pragma once
// The dialog ACTBANK, "Active Banks:": which memory banks take part in a scan
// (banklockm) and which search ranges take part in a search (banklocks), as
// two rows of ten boxes. "Ok" stores both rows; "Cancel" stores nothing. Send
// Data gives them to the scanner when "Upload Active Bank settings" is on.

#include "core/document.h"

#include <QDialog>

#include <array>

class QCheckBox;
class QPushButton;

namespace kestra {

class ActiveBanksWindow : public QDialog {
    Q_OBJECT
public:
    explicit ActiveBanksWindow(Document& doc, QWidget* parent = nullptr);

    // Check1 by index: 0..9 the scan banks, 10..19 the search ranges.
    QCheckBox* box(int index) const { return boxes_.at(index); }
    QPushButton* button(const char* name) const;

    void accept() override;

private:
    Document& doc_;
    std::array<QCheckBox*, 20> boxes_{};
};

} // namespace kestra
