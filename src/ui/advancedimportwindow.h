#pragma once
// The window csvfile, "Advanced Data Import": harvests every frequency found
// in a file or in the clipboard's text into "Frequency data found:", lets the
// user choose into "Data selected for import:", and writes the choice into a
// bank from a start channel or back to the clipboard.

#include "importexport/harvest.h"

#include <QDialog>

class QComboBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;

namespace kestra {

class MemTable;

class AdvancedImportWindow : public QDialog {
    Q_OBJECT
public:
    explicit AdvancedImportWindow(MemTable& table, QWidget* parent = nullptr);

    QListWidget* list1() const { return list1_; }
    QListWidget* list2() const { return list2_; }
    QLabel* count1() const { return count1_; }
    QLabel* count2() const { return count2_; }
    QComboBox* bankList() const { return bank_; }
    QLineEdit* startBox() const { return start_; }
    QLabel* absoluteLabel() const { return absolute_; }
    QPushButton* button(const char* objectName) const;

    // "&Import From Clipboard" (the WebCatcher's way in too).
    void importFromClipboard();
    // True once "Export To Table:" wrote into the store.
    bool wroteTable() const { return wrote_; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void importFromFile();
    void moveAll(QListWidget* from, QListWidget* to);
    void moveHundred();
    void moveOne(QListWidget* from, QListWidget* to, const char* refusal);
    void exportToTable();
    void exportToClipboard();
    void spin(int delta);
    void clampStart();
    void updateCounts();
    std::vector<std::string> chosen() const;

    MemTable& table_;
    FrequencyHarvest harvest_;
    bool wrote_ = false;
    QListWidget* list1_ = nullptr;
    QListWidget* list2_ = nullptr;
    QLabel* count1_ = nullptr;
    QLabel* count2_ = nullptr;
    QComboBox* bank_ = nullptr;
    QLineEdit* start_ = nullptr;
    QLabel* absolute_ = nullptr;
    QLineEdit* clipText_ = nullptr;
};

// The window info2, "Webcatcher Info:": tells how to bring a web page to the
// clipboard; "Press To Import" opens Advanced Data Import on it.
class WebCatcherWindow : public QDialog {
    Q_OBJECT
public:
    explicit WebCatcherWindow(MemTable& table, QWidget* parent = nullptr);
    QPushButton* importButton() const { return import_; }
    // The Advanced Data Import window it opened (nullptr before).
    AdvancedImportWindow* importWindow() const { return window_; }

private:
    MemTable& table_;
    QPushButton* import_ = nullptr;
    AdvancedImportWindow* window_ = nullptr;
};

} // namespace kestra
