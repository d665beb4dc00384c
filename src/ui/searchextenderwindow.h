#pragma once
// The window sextend, "Search Range Extender": the presets of SEARCH.TXT in
// a grid, any of which a double click loads into the scanner's tenth search
// range and searches there; and the search keys of the scanner. It owns a
// port of its own while it is open.

#include "core/settings.h"
#include "link/searchlink.h"
#include "search/presets.h"

#include "platform/dialogs.h"
#include "platform/scheduler.h"
#include "platform/serialport.h"

#include <QDialog>

#include <memory>
#include <vector>

class QPushButton;

namespace kestra {

class ExtenderGrid;

class SearchExtenderWindow : public QDialog {
    Q_OBJECT
public:
    struct Services {
        Settings& settings;
        Dialogs& dialogs;
        Scheduler& scheduler;
        std::vector<SearchPreset> presets;   // SEARCH.TXT as read when the window opens
    };
    struct Link {
        std::unique_ptr<SerialPort> port;
        int comport = 1;
        int baud = 19200;
    };

    SearchExtenderWindow(Services services, Link link, QWidget* parent = nullptr);
    ~SearchExtenderWindow() override;

    // Opens the port and wakes the scanner; runs by itself when the window first shows.
    void formLoad();

    ExtenderGrid* grid() const { return grid_; }
    QPushButton* button(const char* name) const;

    // What a double click on a row does.
    void choose(const SearchPreset& preset);

protected:
    void showEvent(QShowEvent* event) override;

private:
    Services services_;
    std::unique_ptr<SerialPort> port_;
    std::unique_ptr<SearchLink> link_;
    ExtenderGrid* grid_ = nullptr;
    bool loaded_ = false;
};

} // namespace kestra
