#pragma once
// The window icfpart2, "Import data from ICF files": the eight banks of an
// Icom radio's ICF file in a viewer, and Apply, Import All banks, Import Edge
// Data and Percon Clean to bring them into the channel store.

#include "importexport/icf.h"

#include <QDialog>

#include <array>
#include <memory>

class QPushButton;
class QRadioButton;
class QTableWidget;

namespace kestra {

class MemTable;

class IcfImportWindow : public QDialog {
    Q_OBJECT
public:
    // Asks for the file first. Nothing when the user cancels, the name is not
    // an ICF name, or the file cannot be decoded ("Not a valid file!").
    static std::unique_ptr<IcfImportWindow> open(MemTable& table, QWidget* parent = nullptr);

    IcfImportWindow(MemTable& table, IcfData data, QWidget* parent = nullptr);

    QTableWidget* viewer() const { return viewer_; }
    QRadioButton* source(int bank) const { return source_[static_cast<std::size_t>(bank)]; }
    QRadioButton* destination(int bank) const { return destination_[static_cast<std::size_t>(bank)]; }
    QPushButton* applyButton() const { return apply_; }
    QPushButton* button(const char* objectName) const;
    const IcfData& data() const { return data_; }

    void accept() override;

private:
    void fillViewer();
    void apply();
    void importAll();
    void importEdge();
    void cleanDuplicates();

    MemTable& table_;
    IcfData data_;
    QTableWidget* viewer_ = nullptr;
    std::array<QRadioButton*, kIcfBanks> source_{};
    std::array<QRadioButton*, 11> destination_{};
    QPushButton* apply_ = nullptr;
};

} // namespace kestra
