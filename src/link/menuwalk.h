#pragma once
// The walks through the scanner's menus, for the settings no remote command
// reaches: the program presses the keys a person would press and reads the
// display back with "LCD". Each walk starts with the exit key (so a scanner
// left in some other menu is brought back first), waits the key delay of the
// baud rate after every key, and leaves the scanner with the exit key pressed.
// Receive events are off while a walk runs; replies are taken from the port.
//
// Display lines are recognised by a substring search for the option's whole
// padded line ("[1:ON            ][*****"), or for its opening together with
// the inverse mask ("[1:ON" and "[*****"): the mask tells the chosen entry of
// a list from the one shown below it.

#include "platform/serialport.h"

#include <functional>
#include <optional>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace kestra {

class MenuWalk {
public:
    // wait: the cooperative wait, false once the run was stopped (the walk
    // then presses no further key). keydelay in seconds.
    using Wait = std::function<bool(double seconds)>;
    MenuWalk(SerialPort& port, Wait wait, int bc785d, double keydelay);

    // Which display line a read takes: 1 line 3 ("LCD3"), 2 the whole
    // display ("LCD", from "LCD1 [" on), 3 line 4 ("LCD4"), 4 line 2
    // ("LCD2", where a menu names the item on view).
    enum Line { Line3 = 1, All = 2, Line4 = 3, Line2 = 4 };

    // Menu, three digits, then UP once (move 0) or twice (move 1) to an item
    // past the numbered ones, E, and the line.
    std::string readmenu3(std::initializer_list<int> digits, int move, int line);
    bool setmenu3(std::initializer_list<int> digits, int move, int value);
    // Menu, four digits, and the line.
    std::string readmenu4(std::initializer_list<int> digits, int line);
    // Menu and five digits (the last one picks the value).
    bool setmenu5(std::initializer_list<int> digits);
    // The held SEARCH key opens the search range menu: the range (0..9; the
    // tenth is "KEY02 0"), the item's digit, then the whole display.
    std::string readbankmenu(int range, int digit);
    bool setbankmenu(int range, int digit, int value);

    // Any walk: the keys as given (each followed by the key delay), then the
    // display line, then the exit key. Text from the line's marker on, "" when
    // the marker never came.
    std::string readAfter(const std::vector<std::string>& keys, int line);
    // The keys as given, each followed by the key delay; false once stopped.
    bool press(const std::vector<std::string>& keys);
    bool exit();
    // The display line asked for now, without a key: the text from the
    // line's marker on, "" when it never came.
    std::string look(int line);

    // The sixteen characters of display line n (1..4) in a reply, without
    // the trailing blanks; nothing when the reply lacks that line.
    static std::optional<std::string> lineText(std::string_view display, int n);
    // The entry a list line shows, without its number: "4:DELAY" is "DELAY".
    static std::string entryName(std::string_view lineText);
    // Whether line 2 of the display names `item` ("DELAY", "END CODE"), as
    // it does while that item's options are on view. Asks for "LCD2" unless
    // `display` already holds line 2.
    bool onItem(std::string_view item, std::string_view display = {});
    // In a menu list: steps down the list (at most `steps` times) until the
    // selected entry, on line 3, is `item`, and enters it. False when the
    // list does not have it. The repair of a walk whose digit opened another
    // item than it should: the list is searched by name.
    bool enterEntry(std::string_view item, int steps);

    std::string upKey() const;
    std::string downKey() const;
    static std::string enterKey();

    std::string exitKey() const;
    static std::string menuKey();
    // "KEY02 d" of a bank or range number 1..10: the tenth is "KEY02 0".
    static std::string numberKey(int number);
    // Whether a display text shows the option `line`: its whole padded line,
    // or its opening (up to the first blank, or the whole text when it has
    // none) together with "[*****".
    static bool shows(std::string_view display, std::string_view line);
    static bool showsShort(std::string_view display, std::string_view opening);

    double keydelay() const { return keydelay_; }
    // The wait after an "LCD" request before the reply is read.
    static constexpr double kLcdWait = 0.1;

private:
    std::string readLine(int line);

    SerialPort& port_;
    Wait wait_;
    int bc785d_;
    double keydelay_;
};

} // namespace kestra
