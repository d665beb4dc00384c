#pragma once
// The scanner link of the search windows. The Search Events window and the
// Search Range Extender each own a port of their own; this opens it, wakes
// the scanner, checks the model, and moves the ten search ranges both ways:
// limits and tags by their commands, mode and step by a walk through the
// scanner's search menu (held SRCH, the range's digit, the item's digit).
// Everything here is synchronous: receive events stay off, each command is
// followed by the delay of the baud rate, and replies are read whole.

#include "link/exchange.h"
#include "link/menuwalk.h"

#include "core/cellcodes.h"
#include "core/settings.h"

#include "platform/dialogs.h"
#include "platform/scheduler.h"
#include "platform/serialport.h"

#include <array>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace kestra {

// srcdata: per range start, end, mode index, step index, tag (and spare fields).
using SearchRangeData = std::array<std::array<std::string, 10>, 10>;

class SearchLink {
public:
    SearchLink(SerialPort& port, Scheduler& scheduler, Dialogs& dialogs, const Settings& settings, int comport, int baud);
    ~SearchLink();

    // Opens the port; "The selected comport is already in use or not
    // available in your system!" when it cannot.
    bool open();
    void close();
    bool isOpen() const { return port_.isOpen(); }

    // The wake-up of the Search Events window: MA001, the exit key, IDF, CDF, QUF.
    void wakeForRanges(const ModelSwitches& model);
    // The wake-up of the Search Range Extender: KEY01 twice, IDF, CDF, QUF.
    void wakeForExtender();

    // The model check before a read or a send; updates model when a scanner
    // answers, shows the window's message when none does.
    enum class Direction { Read, Send };
    bool checkModel(Direction direction, ModelSwitches& model);

    using Progress = std::function<void(int tens)>;   // 0..10; 0 at the end
    // The five passes of a send: lower limits, upper limits, tags, mode and
    // step by menu, and the limits once more (the menu walk disturbs them).
    void sendRanges(const SearchRangeData& ranges, const ModelSwitches& model, const Progress& progress = {});
    // Lower and upper limits by LL/LU, then tag, mode and step from the menu.
    // A reply without its marker leaves the field as it was.
    void readRanges(SearchRangeData& ranges, const ModelSwitches& model, const Progress& progress = {});

    // One command and the delay behind it.
    void command(const std::string& line);
    // The wait of the baud rate (delay1, delay2 or delay3), in seconds.
    double delay() const;

private:
    void send(const std::string& line);
    std::string menuRead(int range, int item, int bc785d);
    MenuWalk walk(int bc785d);
    void menuSet(int range, int item, int value, int bc785d);
    void sendLimits(const SearchRangeData& ranges, const Progress& progress);

    SerialPort& port_;
    Scheduler& scheduler_;
    Dialogs& dialogs_;
    const Settings& settings_;
    int comport_;
    int baud_;
};

// The wait behind a command at a baud rate: delay3 at 4800, delay2 at 9600,
// delay1 above, in seconds.
double commandDelay(const Settings& settings, int baud);

// The item lines of the search menu's mode and step lists, as line 3 of the
// display shows the chosen one ("[1:AM            ][*****"); index 1 is
// the first line, the step lines by the model's list.
std::vector<std::string> searchModeItems();
std::vector<std::string> searchStepItems(const ModelSwitches& model);

// The commands that load one preset into range J and search it there, after
// the first key of the window or tab: LL, LU, TA S J, KEY01, KEY09, CB J, RM
// with the mode text as it stands, and ST when the step is one the command
// knows.
std::vector<std::string> extenderCommands(std::string_view start, std::string_view end, std::string_view mode,
                                          std::string_view step, std::string_view tag);

// The search ranges of Read Data and Send Data ("Search Events"), on the
// transfer window's port: limits by LL/LU, tag, mode and step by the search
// menu (without the window's SCAN first). The step lines of the read are
// those of the model's list, with the BC296D/BC796D 6.25 kHz line that never
// matches. The send goes in six announced phases, the limits twice. False
// when STOP cut the run short.
std::vector<std::string> transferStepItems(const ModelSwitches& model);
bool readSearchData(ExchangeEngine& engine, SearchRangeData& ranges, const ModelSwitches& model);
bool sendSearchData(ExchangeEngine& engine, const SearchRangeData& ranges, const ModelSwitches& model);

} // namespace kestra
