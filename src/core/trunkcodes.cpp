#include "core/trunkcodes.h"

namespace kestra {

const std::array<std::array<int, 8>, 16>& fleetmapPresets()
{
    static const std::array<std::array<int, 8>, 16> presets = {{
        {11, 11, 11, 11, 11, 11, 11, 11},
        {4, 4, 4, 4, 4, 4, 4, 4},
        {4, 4, 4, 4, 4, 4, 12, 12},
        {12, 12, 4, 4, 4, 4, 4, 4},
        {4, 4, 12, 12, 4, 4, 4, 4},
        {3, 10, 4, 4, 12, 12, 12, 12},
        {10, 10, 11, 4, 4, 4, 4, 4},
        {1, 1, 2, 2, 3, 3, 4, 4},
        {4, 4, 0, 0, 0, 0, 0, 0},
        {0, 0, 0, 0, 0, 0, 4, 4},
        {4, 0, 0, 0, 0, 0, 0, 0},
        {0, 0, 0, 0, 0, 0, 0, 4},
        {3, 3, 11, 4, 4, 0, 0, 0},
        {4, 3, 10, 4, 4, 4, 12, 12},
        {4, 4, 4, 11, 11, 0, 12, 12},
        {3, 10, 10, 11, 0, 0, 12, 12},
    }};
    return presets;
}

bool fleetBlockFillsRest(int block, int code)
{
    const int span = code == 14 ? 8 : code == 13 ? 4 : code == 12 ? 2 : 0;
    return span > 0 && block + span >= 8;
}

} // namespace kestra
