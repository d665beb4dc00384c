#pragma once
// The twin windows i2cpart ("Import frequency data from MEM files") and
// trcpart ("Import trunk data from MEM files"): another MEM file's banks in a
// viewer, and Apply, Import All banks and Import Edge Data to bring its
// channel banks or trunk ID lists into the document.

#include "importexport/memimport.h"

#include <QDialog>

#include <array>
#include <memory>

class QPushButton;
class QRadioButton;
class QTableWidget;

namespace kestra {

class MemTable;

class MemImportWindow : public QDialog {
    Q_OBJECT
public:
    // Asks for the file first; nothing when the user cancels, the name is no
    // MEM name, or the file is refused (the message shown).
    static std::unique_ptr<MemImportWindow> open(MemImportKind kind, MemTable& table, QWidget* parent = nullptr);

    MemImportWindow(MemImportKind kind, MemTable& table, MemSource source, QWidget* parent = nullptr);

    QTableWidget* viewer() const { return viewer_; }
    QRadioButton* source(int bank) const { return source_[static_cast<std::size_t>(bank)]; }
    QRadioButton* destination(int bank) const { return destination_[static_cast<std::size_t>(bank)]; }
    QPushButton* applyButton() const { return apply_; }
    QPushButton* namesButton() const { return names_; }
    QPushButton* button(const char* objectName) const;

    void accept() override;

private:
    // False when the run asked to stay (no destination, or No to the question).
    bool apply();
    void toggleNames();

    MemImportKind kind_;
    MemTable& table_;
    MemSource source_data_;
    QTableWidget* viewer_ = nullptr;
    std::array<QRadioButton*, 10> source_{};
    std::array<QRadioButton*, 10> destination_{};
    QPushButton* apply_ = nullptr;
    QPushButton* names_ = nullptr;
};

} // namespace kestra
