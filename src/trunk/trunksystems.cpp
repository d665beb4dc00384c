#include "trunk/trunksystems.h"

namespace kestra {

void resetTrunkSystems(Document& doc)
{
    for (int bank = 0; bank < kChannelBanks; ++bank) doc.trunkset[bank].trunktype.assign(1, '0');
}

} // namespace kestra
