#pragma once
// The trunk ID lists ("Trunk Id's" of Read Data and Send Data): the list
// tags, the IDs, and per slot its tag, beep alert and (on the BC7xx family,
// when asked for) record flag. The read asks for the list tags and the IDs
// in bursts, each reply bringing the next request one delay later, and sorts
// the collected text out by key; tags, alerts and record flags go slot by
// slot, for the slots that hold an ID. The send writes slot by slot and keeps
// a trace of each step in TRUNCK.TXT.

#include "link/exchange.h"
#include "link/menuwalk.h"

#include "core/document.h"
#include "core/settings.h"

#include <array>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace kestra {

class TrunkIdLink {
public:
    TrunkIdLink(ExchangeEngine& engine, Document& doc, const Settings& settings, std::filesystem::path folder);
    ~TrunkIdLink();

    // The read of the banks (0..9) of the selection: list tags (of all
    // banks, as the scanner gives them in one run), IDs, then tags, beep
    // alerts and record flags. It runs on the engine's receive
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

    // The longest the send waits for the reply to one line.
    static constexpr int kReplyLimitMs = 1000;
    // Requests of a burst asked again for a reply that never came, before the
    // read gives up.
    static constexpr int kBurstRetries = 5;

private:
    enum class Phase { Idle, ListTags, Ids, SlotData };

    // ---- the read ----
    void readidtags();
    void listTagStep();   // Timer11
    void readids();
    void idStep();        // Timer12
    void readiddata();
    void slotData();      // Timer13: tags, beep alerts and record flags, slot by slot
    void filterlisttags();
    void filterids();
    void filteridtags();
    // The burst's next request, with the watchdog armed for its reply.
    void sendRequest();
    void burstWatchdog();
    void finish(bool ok);
    // The banks of the read whose IDs are asked: those with an ID list.
    std::vector<int> idBanks() const;

    // ---- the send ----
    // The line out, its reply awaited up to kReplyLimitMs: what came, without
    // a carriage return when the reply never came whole.
    std::string exchange(const std::string& line);
    void trace(const std::string& line);
    bool sendSlot(int bank, int list, int digit, int count);
    bool recordsMove() const;
    MenuWalk walk();
    // The keys from the exit key to a slot's RECORD option.
    std::vector<std::string> recordKeys(int bank, int list, int digit) const;

    ExchangeEngine& engine_;
    Document& doc_;
    const Settings& settings_;
    std::filesystem::path folder_;

    Phase phase_ = Phase::Idle;
    std::vector<int> banks_;
    std::function<void(bool)> done_;
    std::vector<std::string> requests_;
    std::size_t next_ = 0;      // the request the next step sends
    int steps_ = 0;             // replies taken in this burst
    int retries_ = 0;           // the present request asked again, times in a row
    std::unique_ptr<Timer> watchdog_;
    std::ofstream trace_;
};

} // namespace kestra
