#pragma once
// The scanner's general parameters (its menu 3, "SYSTEM OPTION"), the FIPS
// codes and the reset of the whole scanner, as the window bc780set reads and
// sets them: every exchange waits its delay and goes on, on a port of its own.
//
// An option is read by walking the menu to its list (KEY11, then its digits)
// and taking the display from line 1 on, where the option's present value
// stands inverted; it is set by the same walk and the digit of the value.

#include "link/exchange.h"
#include "link/menuwalk.h"

#include <array>
#include <functional>
#include <string>
#include <vector>

namespace kestra {

struct GeneralOption {
    const char* label;                 // "Dimmer Light:"
    std::vector<int> digits;           // the menu digits after KEY11: {3, 1, 1}
    std::vector<const char*> choices;  // the window's list
    std::vector<const char*> shown;    // each choice's line in the display, inverted
};
inline constexpr int kGeneralOptions = 9;
const std::array<GeneralOption, kGeneralOptions>& generalOptions();

inline constexpr int kFipsBoxes = 15;

class GeneralParams {
public:
    // bc785d: the family, whose exit key ends each walk.
    GeneralParams(ExchangeEngine& engine, int bc785d);

    // The list index of each option; -1 where nothing is known.
    std::array<int, kGeneralOptions> values;
    // The boxes of the FIPS codes: six digits, "" for none. Box n shows
    // fipscodes[n].
    std::array<std::string, kFipsBoxes> fips;

    // "Read from scanner": the nine options, then the codes; progress counts
    // the 11 steps. False when STOP or a lost port cut it short.
    bool read(const std::function<void(int step)>& progress = {});
    // "Send to scanner": each option that has a value, the exit key, then
    // the codes as stored (fipscodes 1..15; "000000" for none).
    bool send(const std::array<std::string, 16>& fipscodes);
    bool readFips();
    // "Store": the boxes into fipscodes (1..15; "000000" for a blank box)
    // and, when the port is open, into the scanner.
    bool storeFips(std::array<std::string, 16>& fipscodes);
    // The boxes from fipscodes, "000000" shown blank.
    void showFips(const std::array<std::string, 16>& fipscodes);

    // "Reset": only with exactly "RESET" typed; confirm asks the user. True
    // when "AC" went out.
    static constexpr const char* kResetWord = "RESET";
    static constexpr const char* kResetWarning =
        "WARNING: This option will clear the ENTIRE memory contents of your scanner! Are you sure you want to continue?";
    bool reset(const std::string& typed, const std::function<bool()>& confirm);

    // The display from "LCD1 [" on after a walk to an option ("" when none came).
    std::string readgen(const GeneralOption& option);
    bool setgen(const GeneralOption& option, int valueDigit);

    static std::string fipsKey(int n);  // "FP 01" .. "FP 15"

private:
    bool key(const std::string& command);
    MenuWalk walker();
    static std::vector<std::string> walk(const GeneralOption& option);

    ExchangeEngine& engine_;
    int bc785d_;
};

} // namespace kestra
