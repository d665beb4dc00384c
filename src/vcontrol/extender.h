#pragma once
// The Search Range Extender on the Virtual Control's link: polling stops,
// HOLD, the preset goes into range J and the search starts there, polling
// starts again. Every command is followed by the given wait.

#include "search/presets.h"
#include "vcontrol/controlloop.h"

namespace kestra {

void runExtender(ControlLoop& loop, const SearchPreset& preset, double delay);

} // namespace kestra
