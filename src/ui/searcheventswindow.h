#pragma once
// The window sevent, "Search Events:": the ten search ranges of srcdata in a
// private copy, with their limits, mode, step and tag; presets of SEARCH.TXT
// behind "Preset>>"; and its own port for reading the ranges from the
// scanner and sending them to it. "Apply" and "Ok" copy the private copy
// into srcdata; "Cancel" leaves srcdata as it was, whatever was read.

#include "core/document.h"
#include "core/settings.h"
#include "link/searchlink.h"
#include "search/presets.h"

#include "platform/dialogs.h"
#include "platform/scheduler.h"
#include "platform/serialport.h"

#include <QDialog>

#include <array>
#include <memory>
#include <vector>

class QComboBox;
class QLineEdit;
class QProgressBar;
class QPushButton;

namespace kestra {

class SearchEventsWindow : public QDialog {
    Q_OBJECT
public:
    struct Services {
        Document& doc;
        Settings& settings;
        Dialogs& dialogs;
        Scheduler& scheduler;
        std::vector<SearchPreset> presets;   // SEARCH.TXT
    };
    struct Link {
        std::unique_ptr<SerialPort> port;   // nothing: a number bound to nothing
        int comport = 1;
        int baud = 19200;
    };

    SearchEventsWindow(Services services, Link link, QWidget* parent = nullptr);
    ~SearchEventsWindow() override;

    // Opens the port and wakes the scanner; runs by itself when the window
    // first shows.
    void formLoad();

    QLineEdit* startBox(int range) const { return rows_.at(range).start; }
    QLineEdit* endBox(int range) const { return rows_.at(range).end; }
    QLineEdit* tagBox(int range) const { return rows_.at(range).tag; }
    QComboBox* modeList(int range) const { return rows_.at(range).mode; }
    QComboBox* stepList(int range) const { return rows_.at(range).step; }
    QComboBox* presetList(int range) const { return rows_.at(range).preset; }
    QPushButton* button(const char* name) const;
    const SearchRangeData& copy() const { return copy_; }

    // Read, Send, Apply: what the buttons do.
    void readRanges();
    void sendRanges();
    void apply();

protected:
    void showEvent(QShowEvent* event) override;

private:
    struct Row {
        QLineEdit* start = nullptr;
        QLineEdit* end = nullptr;
        QComboBox* mode = nullptr;
        QComboBox* step = nullptr;
        QLineEdit* tag = nullptr;
        QComboBox* preset = nullptr;
    };
    void fillLists();
    void showCopy();
    void edited();
    void showPresets();
    void presetChosen(int range, int index);
    void setBusy(bool busy);

    Services services_;
    std::unique_ptr<SerialPort> port_;
    std::unique_ptr<SearchLink> link_;
    SearchRangeData copy_;
    std::array<Row, 10> rows_{};
    QProgressBar* progress_ = nullptr;
    bool loaded_ = false;
    bool painting_ = false;
};

} // namespace kestra
