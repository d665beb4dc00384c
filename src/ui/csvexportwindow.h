#pragma once
// The window expcsvd, "Export CSV data": one table of the document to a comma
// separated file for a spreadsheet. "Ok" asks for the file and writes it.

#include "importexport/csvexport.h"

#include <QDialog>

#include <array>

class QRadioButton;

namespace kestra {

class MemTable;

class CsvExportWindow : public QDialog {
    Q_OBJECT
public:
    explicit CsvExportWindow(MemTable& table, QWidget* parent = nullptr);
    // The option of an export kind (0..5).
    QRadioButton* option(CsvExportKind kind) const { return options_[static_cast<std::size_t>(kind)]; }
    void accept() override;

private:
    MemTable& table_;
    std::array<QRadioButton*, 6> options_{};
};

} // namespace kestra
