#include "vcontrol/statereport.h"

#include "core/text.h"

namespace kestra {

namespace {

std::string orDash(const std::string& text) { return text.empty() ? "-" : text; }

// " 167.3500" or "1296.0000" as "167.3500"; anything else as it stands.
std::string megahertz(const std::string& freqtext)
{
    const std::string f = trim(freqtext);
    const auto point = f.find('.');
    if (point == std::string::npos || point == 0) return orDash(f);
    std::string decimals = f.substr(point + 1);
    decimals.resize(4, '0');
    return f.substr(0, point) + "." + decimals;
}

} // namespace

std::string stateReport(const DisplayState& state, int pollfast)
{
    std::string line = orDash(state.modenumber);
    // Moving, the scanner shows where it passes, a new place at every poll:
    // only the mode and the trunk ID count then.
    if (pollfast) return line + " -/- - \"\" " + orDash(trim(state.trunkid)) + " S- SQ-";
    const std::string channel = trim(state.channeltext);
    line += " " + (state.curbank > 0 ? std::to_string(state.curbank) : std::string("-")) + "/" + orDash(channel);
    line += " " + megahertz(state.freqtext);
    line += " \"" + trim(state.lcdline[2]) + "\"";
    line += " " + orDash(trim(state.trunkid));
    line += " S" + std::to_string(state.signal);
    line += state.busyshown ? " SQ+" : " SQ-";
    return line;
}

} // namespace kestra
