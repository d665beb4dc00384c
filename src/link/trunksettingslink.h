#pragma once
// The trunk settings of a bank ("Trunk Bank Settings" of Read Data and Send
// Data): the type, the control channel, the bank's menu items (delay, record,
// activity ID, I-call, status bit or emergency alert, end code or ID format),
// the Base Configs of the Type 2 UHF and VHF banks, and the Type 1 fleetmap.
// Most of it has no remote command: the menu items go through the bank's
// trunk menu (MENU 2 2 bank), each family at its own positions. Synchronous:
// receive events are off while it runs.

#include "link/exchange.h"

#include "core/document.h"

#include <vector>

namespace kestra {

class TrunkSettingsLink {
public:
    TrunkSettingsLink(ExchangeEngine& engine, Document& doc);

    // The banks (0..9) of the selection, one after the other; the status line
    // tells the bank and the step. False when STOP or a lost port cut the run
    // short: the bank under way is then not reported as done.
    bool read(const std::vector<int>& banks);
    bool send(const std::vector<int>& banks);

    // The Base Configs of a Type 2 UHF or VHF bank, by walking its menu.
    bool readbase(int bank);
    // The Type 1 fleetmap by "FB": the eight codes and the preset they match
    // (field 7; 0, Custom, when none).
    bool readfleet(int bank);
    bool sendfleet(int bank);

private:
    ExchangeEngine& engine_;
    Document& doc_;
};

} // namespace kestra
