#pragma once
// The scanner's menus: the tree behind MENU (search ranges, the trunk settings
// of each bank with its ID lists, the system options) and the search range
// menu behind the held SEARCH key. The tree is built from the memory each
// time it is shown, so it always offers what the bank's trunk system has, and
// a choice is written into the memory at once.
//
// Display: line 1 names the part of the menu, line 2 the item; lines 3 and 4
// show the list, the selected entry inverted ("*" in all sixteen attribute
// places). A list of two entries shows both, first on line 3; a longer list
// keeps the selected entry on line 3 with the next one below it.
//
// Keys: a digit picks the entry of that number (an option is then stored and
// the menu goes back one level); UP and DOWN move the selection, wrapping at
// the ends; E enters the selected entry (or stores the selected option);
// BACK goes up one level and leaves the menu from its top. Which scanner key
// is which menu key, and which one leaves the menu, is the scanner's business.

#include "sim/scannermemory.h"

#include <array>
#include <optional>
#include <string>
#include <vector>

namespace kestra::sim {

enum class MenuKey { Digit, Point, Enter, Up, Down, Back };

struct Screen {
    std::array<std::string, 4> text;   // sixteen characters each
    std::array<std::string, 4> attr;   // sixteen characters each, "*" inverted
    std::optional<std::string> selected;  // the selected entry of a list, as shown
};

// A line padded or cut to sixteen characters.
std::string lcdText(std::string_view text);

class Menu {
public:
    explicit Menu(ScannerMemory& memory) : mem_(memory) {}

    enum class Start { Top, SearchRanges };
    void open(Start start);
    void close() { stack_.clear(); }
    bool isOpen() const { return !stack_.empty(); }

    void press(MenuKey key, int digit = 0);

    // A fault for testing the walks: the trunk bank menu of another firmware,
    // moved by `steps` entries. Every numbered entry carries a number that
    // many higher (DELAY under 5 instead of 4) and the list starts that many
    // entries later (the entries in front go to its end), so a walk by
    // digits or by UP from the top meets another item. 0 is the true menu.
    void setBankMenuShift(int steps) { bankShift_ = steps; }
    int bankMenuShift() const { return bankShift_; }
    Screen screen() const;

private:
    enum class Node {
        // lists
        Top, RangeSelect, RangeMenu, TrunkMenu, BankSelect, TrunkBank, IdSlot, SystemOption, Light,
        // the ID slot entry of a bank: list digit, point, slot digit, E
        IdEntry,
        // values shown, E goes on
        SearchLimits, SearchTag, BaseWalk,
        // options
        TrunkDelay, TrunkRecord, ActivityId, Icall, StatusBit, EmergencyAlt, EndCode, IdFormat, ControlChannel,
        IdRecord, IdAlert, DimmerLight, DimmerTime, ScreenMask, KeyBeep, EnterLock, BaudRate, Clone, DataSkip,
        SqMode, ApcoCard, SearchStep, SearchMode,
    };
    struct Entry {
        int digit;          // -1: reached by UP and DOWN only
        std::string label;  // as shown
        Node node;
        int index = 0;      // the bank or range an entry of a select list stands for
    };
    struct Frame {
        Node node = Node::Top;
        int bank = 0, range = 0, list = 0, slot = 0;
        int cursor = 0;
        std::string entry;  // IdEntry: what has been keyed
        int walk = 0;       // BaseWalk: the value shown
    };

    static bool isList(Node node);
    static bool isOption(Node node);
    std::vector<Entry> entries(const Frame& frame) const;
    std::vector<std::string> options(const Frame& frame) const;
    int currentOption(const Frame& frame) const;
    void applyOption(const Frame& frame, int index);
    void enter(const Entry& entry);
    void back() { stack_.pop_back(); }
    std::string title(std::size_t depth) const;
    std::string name(const Frame& frame) const;
    bool longDelayList() const { return longDelays(mem_.model); }

    ScannerMemory& mem_;
    std::vector<Frame> stack_;
    int bankShift_ = 0;
};

} // namespace kestra::sim
