#pragma once
// Operations on the trunk systems of the ten memory banks (trunkset) that do
// not belong to the trunk configuration window.

#include "core/document.h"

namespace kestra {

// "Reset Trunk systems": every memory bank (0..9) becomes a bank without a
// trunk system, type "0". Fields, blocks, ID lists and channels stay as they
// are, so a bank set back to its type finds its parameters again.
void resetTrunkSystems(Document& doc);

} // namespace kestra
