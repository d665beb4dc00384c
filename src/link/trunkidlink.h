#pragma once
// The trunk ID lists ("Trunk Id's" of Read Data and Send Data): the list
// tags, the IDs, and per slot its tag, beep alert and (on the BC7xx family,
// when asked for) record flag. The read asks for the list tags and the IDs
// in bursts, each reply bringing the next request one delay later, and sorts
// the collected text out by key; tags, alerts and record flags go slot by
// slot, for the slots that hold an ID. The send writes slot by slot and keeps
// a trace of each step in TRUNCK.TXT.

#include "link/exchange.h"

#include "core/document.h"
#include "core/settings.h"

#include <filesystem>
#include <functional>
#include <vector>

namespace kestra {

class TrunkIdLink {
public:
    TrunkIdLink(ExchangeEngine& engine, Document& doc, const Settings& settings, std::filesystem::path folder);
    ~TrunkIdLink();

    // The read of the banks (0..9) of the selection: list tags, IDs, then
    // tags, beep alerts and record flags. It runs on the engine's receive
    // event and step timers; `done` is called once at its end, with false
    // when a time-out, STOP or a lost port ended it (what was collected is
    // then not filtered into the document).
    void read(const std::vector<int>& banks, std::function<void(bool ok)> done);
    // The send: list tags, then per bank its trunk type when the scanner's
    // differs, and each slot. False when STOP cut it short.
    // scannerTypes: the trunk types the scanner reported (ttyper).
    bool send(const std::vector<int>& banks, const std::array<int, 10>& scannerTypes);

    // trunkread: IDs or tags were read Ok.
    bool trunkread = false;

private:
    ExchangeEngine& engine_;
    Document& doc_;
    const Settings& settings_;
    std::filesystem::path folder_;
};

} // namespace kestra
