#pragma once
// The trunk settings of a bank ("Trunk Bank Settings" of Read Data and Send
// Data): the type, the control channel, the bank's menu items (delay, record,
// activity ID, I-call, status bit or emergency alert, end code or ID format),
// the Base Configs of the Type 2 UHF and VHF banks, and the Type 1 fleetmap.
// Most of it has no remote command: the menu items go through the bank's
// trunk menu (MENU 2 2 bank), each family at its own positions. Synchronous:
// receive events are off while it runs.

#include "link/exchange.h"
#include "link/menuwalk.h"

#include "core/document.h"

#include <string>
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

    // Every walk to a menu item checks that line 2 of the display names the
    // item before a value is taken or a value digit pressed; a menu that
    // shows another item is looked through by name. A bank whose item cannot
    // be found is left: a read stores nothing of it, a send goes on with the
    // next bank, and read or send returns false with the status line naming it.
    const std::vector<int>& failedBanks() const { return failed_; }
    const std::string& message() const { return message_; }
    // The walks that met another item than they looked for, so far.
    int repairs() const { return repairs_; }

private:
    enum class Walked { Done, Stopped, Lost };
    MenuWalk walker();
    int typeOf(int bank) const;
    void fail(int bank, const std::string& why);
    std::string failedText(const char* what) const;
    std::vector<std::string> bankMenuKeys(const MenuWalk& walk, int bank) const;
    Walked openItem(MenuWalk& walk, int bank, int placeDigit, int move, const char* name, bool wholeDisplay,
                    std::string& shown);
    std::vector<std::string> typeLines(int bank);

    ExchangeEngine& engine_;
    Document& doc_;
    std::vector<int> failed_;
    std::string message_;
    int repairs_ = 0;
};

} // namespace kestra
