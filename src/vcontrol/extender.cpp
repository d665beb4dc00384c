#include "extender.h"

#include "link/searchlink.h"
#include "vcontrol/keypad.h"

namespace kestra {

void runExtender(ControlLoop& loop, const SearchPreset& preset, double delay)
{
    loop.stoppolling();
    loop.lcdwait(delay);
    KeyAction action;
    action.commands.push_back({"KEY07", delay});
    for (const std::string& line : extenderCommands(preset.start, preset.end, preset.mode, preset.step, preset.tag))
        action.commands.push_back({line, delay});
    loop.run(action);
    loop.startpolling();
}

} // namespace kestra
