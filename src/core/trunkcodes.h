#pragma once
// The codes of the trunk store (trunkset) that every reader of it shares: the
// trunk type codes, and the fleetmap's size codes with the sixteen presets.

#include <array>

namespace kestra {

// The trunk type codes: positions in the Trunk Type list. Code 1 is Type 2 at
// 800 MHz and code 2 is Type 1; every reader of trunktype compares with these.
namespace trunktype {
enum Code : int {
    Unknown = 0,
    Type2_800 = 1,
    Type1 = 2,
    Type2_900 = 3,
    Type2_UHF = 4,
    Type2_VHF = 5,
    EdacsWide = 6,
    EdacsNarrow = 7,
    LT = 8,
    EdacsSCT = 9,
};
} // namespace trunktype
inline constexpr int kTrunkTypeCount = 10;

// The sixteen fleetmap presets: eight block size codes each (preset n at n - 1).
const std::array<std::array<int, 8>, 16>& fleetmapPresets();

// Whether size code `code` in block `block` (0..7) takes every block after it:
// 14 fills the whole map, 13 takes four blocks and 12 two, so 13 from block 4
// on and 12 in the last pair reach the map's end.
bool fleetBlockFillsRest(int block, int code);

} // namespace kestra
