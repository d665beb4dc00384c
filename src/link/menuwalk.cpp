#include "link/menuwalk.h"

#include "link/vocabulary.h"

#include <algorithm>

namespace kestra {

namespace {

constexpr const char* kMask = "[*****";
constexpr int kUpKey = 7;
constexpr int kEnterKey = 4;
constexpr int kSearchKey = 9;
// How long a display reply may take to come whole after the first wait: at
// 4800 baud the four lines of "LCD" need a quarter of a second.
constexpr double kLcdPatience = 1.0;
constexpr double kPoll = 0.005;

std::vector<std::string> digitKeys(std::initializer_list<int> digits)
{
    std::vector<std::string> keys;
    for (int d : digits) keys.push_back(wire::digitKey(d));
    return keys;
}

} // namespace

MenuWalk::MenuWalk(SerialPort& port, Wait wait, int bc785d, double keydelay)
    : port_(port), wait_(std::move(wait)), bc785d_(bc785d), keydelay_(keydelay)
{
}

std::string MenuWalk::exitKey() const { return wire::exitKey(bc785d_); }
std::string MenuWalk::menuKey() { return wire::key(11); }
std::string MenuWalk::numberKey(int number) { return wire::digitKey(number % 10); }

bool MenuWalk::showsShort(std::string_view display, std::string_view opening)
{
    return display.find(opening) != std::string_view::npos && display.find(kMask) != std::string_view::npos;
}

bool MenuWalk::shows(std::string_view display, std::string_view line)
{
    return display.find(line) != std::string_view::npos;
}

bool MenuWalk::press(const std::vector<std::string>& keys)
{
    for (const std::string& key : keys) {
        port_.output(key + wire::kCrLf);
        if (!wait_(keydelay_)) return false;
    }
    return true;
}

bool MenuWalk::exit() { return press({exitKey()}); }

std::string MenuWalk::readLine(int line)
{
    const char* request = line == Line3 ? "LCD3" : line == Line4 ? "LCD4" : line == Line2 ? "LCD2" : "LCD";
    const std::string marker = line == Line3 ? "LCD3 [" : line == Line4 ? "LCD4 [" : line == Line2 ? "LCD2 [" : "LCD1 [";
    port_.input();  // the keys' "OK"s
    port_.output(std::string(request) + wire::kCrLf);
    if (!wait_(kLcdWait)) return "";
    std::string got = port_.input();
    // The whole display is four lines; one line is one. A slow line gets a
    // little longer before what came is taken.
    const auto lines = static_cast<std::ptrdiff_t>(line == All ? 4 : 1);
    for (double waited = 0; std::count(got.begin(), got.end(), '\r') < lines && waited < kLcdPatience;
         waited += kPoll) {
        if (!wait_(kPoll)) break;
        got += port_.input();
    }
    const auto at = got.find(marker);
    return at == std::string::npos ? std::string() : got.substr(at);
}

std::string MenuWalk::look(int line) { return readLine(line); }

std::optional<std::string> MenuWalk::lineText(std::string_view display, int n)
{
    const std::string marker = "LCD" + std::to_string(n) + " [";
    const auto at = display.find(marker);
    if (at == std::string_view::npos || display.size() < at + marker.size() + 16) return std::nullopt;
    std::string text(display.substr(at + marker.size(), 16));
    while (!text.empty() && text.back() == ' ') text.pop_back();
    return text;
}

std::string MenuWalk::entryName(std::string_view lineText)
{
    const auto first = lineText.find_first_not_of(' ');
    if (first == std::string_view::npos) return "";
    std::string_view name = lineText.substr(first);
    if (name.size() >= 2 && name[0] >= '0' && name[0] <= '9' && name[1] == ':') name.remove_prefix(2);
    return std::string(name);
}

bool MenuWalk::onItem(std::string_view item, std::string_view display)
{
    std::optional<std::string> named = lineText(display, 2);
    if (!named) named = lineText(look(Line2), 2);
    return named && *named == item;
}

bool MenuWalk::enterEntry(std::string_view item, int steps)
{
    for (int n = 0; n <= steps; ++n) {
        const auto selected = lineText(look(Line3), 3);
        if (selected && entryName(*selected) == item) return press({enterKey()});
        if (n < steps && !press({downKey()})) return false;
    }
    return false;
}

std::string MenuWalk::upKey() const { return wire::key(bc785d_ == 1 ? kUpKey : 15); }
std::string MenuWalk::downKey() const { return wire::key(bc785d_ == 1 ? 8 : 16); }
std::string MenuWalk::enterKey() { return wire::key(kEnterKey); }

std::string MenuWalk::readAfter(const std::vector<std::string>& keys, int line)
{
    if (!press(keys)) return "";
    std::string text = readLine(line);
    exit();
    return text;
}

std::string MenuWalk::readmenu3(std::initializer_list<int> digits, int move, int line)
{
    std::vector<std::string> keys = {exitKey(), menuKey()};
    for (auto& k : digitKeys(digits)) keys.push_back(k);
    keys.push_back(wire::key(kUpKey));
    if (move == 1) keys.push_back(wire::key(kUpKey));
    keys.push_back(wire::key(kEnterKey));
    return readAfter(keys, line);
}

bool MenuWalk::setmenu3(std::initializer_list<int> digits, int move, int value)
{
    if (!wait_(keydelay_)) return false;
    std::vector<std::string> keys = {exitKey(), menuKey()};
    for (auto& k : digitKeys(digits)) keys.push_back(k);
    keys.push_back(wire::key(kUpKey));
    if (move == 1) keys.push_back(wire::key(kUpKey));
    keys.push_back(wire::key(kEnterKey));
    keys.push_back(wire::digitKey(value));
    keys.push_back(exitKey());
    return press(keys);
}

std::string MenuWalk::readmenu4(std::initializer_list<int> digits, int line)
{
    std::vector<std::string> keys = {exitKey(), menuKey()};
    for (auto& k : digitKeys(digits)) keys.push_back(k);
    return readAfter(keys, line);
}

bool MenuWalk::setmenu5(std::initializer_list<int> digits)
{
    if (!wait_(keydelay_)) return false;
    std::vector<std::string> keys = {exitKey(), menuKey()};
    for (auto& k : digitKeys(digits)) keys.push_back(k);
    keys.push_back(exitKey());
    return press(keys);
}

std::string MenuWalk::readbankmenu(int range, int digit)
{
    return readAfter({exitKey(), wire::key(kSearchKey, true), numberKey(range + 1), wire::digitKey(digit)}, All);
}

bool MenuWalk::setbankmenu(int range, int digit, int value)
{
    return press({exitKey(), wire::key(kSearchKey, true), numberKey(range + 1), wire::digitKey(digit),
                  wire::digitKey(value), exitKey()});
}

} // namespace kestra
