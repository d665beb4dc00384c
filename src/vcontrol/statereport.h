#pragma once
// The scanner's state in one line, as `kestractl monitor` prints it on each
// change: mode, bank/channel, frequency in MHz with four decimals, the tag on
// the display, the trunk ID, signal and squelch. Fields are separated by a
// blank; the tag stands in double quotes, since it may hold blanks; a field
// with nothing to show is "-". While the scanner moves only the mode and the
// trunk ID count, since the place changes at every poll.
//
//   00 1/020 167.3500 "AMK OSL CH 2" - S182 SQ+
//   00 -/- - "" - S- SQ-

#include "vcontrol/displaystate.h"

#include <string>

namespace kestra {

// pollfast: 1 while the scanner moves.
std::string stateReport(const DisplayState& state, int pollfast);

} // namespace kestra
