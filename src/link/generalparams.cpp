#include "link/generalparams.h"

#include "core/text.h"
#include "link/vocabulary.h"

namespace kestra {

namespace {

constexpr const char* kOn[] = {"[1:ON            ][*****", "[2:OFF           ][*****"};

} // namespace

const std::array<GeneralOption, kGeneralOptions>& generalOptions()
{
    static const std::array<GeneralOption, kGeneralOptions> options = {{
        {"Dimmer Light:", {3, 1, 1}, {"High", "Medium"}, {"[ 1:HIGH         ][*****", "[ 2:MEDIUM       ][*****"}},
        {"Dimmer Time:", {3, 1, 2}, {"15 sec.", "Infinite"}, {"[ 1:15SECONDS    ][*****", "[ 2:INFINITE     ][*****"}},
        {"Screen Mask:", {3, 2}, {"on", "off"}, {kOn[0], kOn[1]}},
        {"Key Beep:", {3, 3}, {"on", "off"}, {kOn[0], kOn[1]}},
        {"Enter Lock:", {3, 4}, {"on", "off"}, {kOn[0], kOn[1]}},
        {"Data Skip:", {3, 7}, {"on", "off"}, {kOn[0], kOn[1]}},
        {"SQ Mode:", {3, 8}, {"CSQ", "Tone SQ", "Search"},
         {"[ 1:CSQ          ][*****", "[ 2:TONE SQ      ][*****", "[ 3:TONE SEARCH  ][*****"}},
        {"Apco Digital Card:", {3, 0}, {"Enable", "Disable"}, {"[ 1:ENABLE       ][*****", "[ 2:DISABLE      ][*****"}},
        {"Clone:", {3, 6}, {"MASTER", "SLAVE"}, {"[MASTER          ][*****", "[SLAVE           ][*****"}},
    }};
    return options;
}

GeneralParams::GeneralParams(ExchangeEngine& engine, int bc785d) : engine_(engine), bc785d_(bc785d)
{
    values.fill(-1);
}

std::string GeneralParams::fipsKey(int n) { return n < 10 ? "FP 0" + std::to_string(n) : "FP " + std::to_string(n); }

// Every key is followed by the delay of the baud rate; its "OK" is left to
// be dropped before the display is asked for.
bool GeneralParams::key(const std::string& command) { return walker().press({command}); }

MenuWalk GeneralParams::walker()
{
    return MenuWalk(engine_.port(), [this](double s) { return engine_.wait(s); }, bc785d_, engine_.commdelay());
}

// The walk to an option's list: the first channel (out of any mode), MENU
// and the option's digits.
std::vector<std::string> GeneralParams::walk(const GeneralOption& option)
{
    std::vector<std::string> keys = {wire::selectChannel(1), MenuWalk::menuKey()};
    for (int digit : option.digits) keys.push_back(wire::digitKey(digit));
    return keys;
}

std::string GeneralParams::readgen(const GeneralOption& option)
{
    return walker().readAfter(walk(option), MenuWalk::All);
}

bool GeneralParams::setgen(const GeneralOption& option, int valueDigit)
{
    auto keys = walk(option);
    keys.push_back(wire::digitKey(valueDigit));
    keys.push_back(wire::exitKey(bc785d_));
    return walker().press(keys);
}

bool GeneralParams::read(const std::function<void(int step)>& progress)
{
    const auto& options = generalOptions();
    for (int i = 0; i < kGeneralOptions; ++i) {
        if (progress) progress(i + 1);
        const std::string line = readgen(options[i]);
        if (engine_.stopflag) return false;
        // The value is the choice whose padded line stands in the display
        // with the inverse mark ("[1:ON            ][*****"); none found
        // leaves the list as it was.
        for (std::size_t v = 0; v < options[i].shown.size(); ++v)
            if (line.find(options[i].shown[v]) != std::string::npos) {
                values[i] = static_cast<int>(v);
                break;
            }
    }
    if (progress) progress(kGeneralOptions + 1);
    const bool ok = readFips();
    if (progress) progress(kGeneralOptions + 2);
    return ok;
}

bool GeneralParams::send(const std::array<std::string, 16>& fipscodes)
{
    const auto& options = generalOptions();
    for (int i = 0; i < kGeneralOptions; ++i) {
        // A list the user never set (nothing read, nothing chosen) is not sent:
        // its digit would pick nothing or another entry.
        if (values[i] < 0) continue;
        if (!setgen(options[i], values[i] + 1)) return false;
    }
    if (!key(wire::exitKey(bc785d_))) return false;
    for (int n = 1; n <= kFipsBoxes; ++n) {
        const std::string code = trim(fipscodes[static_cast<std::size_t>(n)]);
        if (!key(fipsKey(n) + " " + (code.empty() ? std::string("000000") : code))) return false;
    }
    return true;
}

bool GeneralParams::readFips()
{
    for (int n = 1; n <= kFipsBoxes; ++n) {
        engine_.port().input();
        const std::string command = fipsKey(n);
        engine_.sendline(command);
        if (!engine_.wait(engine_.commdelay())) return false;
        const std::string reply = engine_.collect(1);
        const auto at = reply.find(command + " ");
        if (at == std::string::npos) continue;
        const std::string code = reply.substr(at + command.size() + 1, 6);
        fips[n - 1] = code == "000000" ? std::string() : code;
    }
    return true;
}

void GeneralParams::showFips(const std::array<std::string, 16>& fipscodes)
{
    for (int n = 1; n <= kFipsBoxes; ++n) {
        const std::string code = trim(fipscodes[static_cast<std::size_t>(n)]);
        fips[n - 1] = code == "000000" ? std::string() : code;
    }
}

bool GeneralParams::storeFips(std::array<std::string, 16>& fipscodes)
{
    for (int n = 1; n <= kFipsBoxes; ++n)
        fipscodes[static_cast<std::size_t>(n)] = fips[n - 1].empty() ? std::string("000000") : fips[n - 1];
    if (!engine_.portOpened) return true;  // kept in the document; the scanner gets them with the next send
    for (int n = 1; n <= kFipsBoxes; ++n)
        if (!key(fipsKey(n) + " " + fipscodes[static_cast<std::size_t>(n)])) return false;
    return true;
}

bool GeneralParams::reset(const std::string& typed, const std::function<bool()>& confirm)
{
    if (typed != kResetWord) return false;
    if (confirm && !confirm()) return false;
    engine_.sendline(wire::kFactoryReset);
    engine_.wait(engine_.commdelay());
    return true;
}

} // namespace kestra
