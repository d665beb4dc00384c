#pragma once
// What is on the air around the virtual scanner: transmissions on its
// channels, on frequencies a search passes, and on the talkgroups of its
// trunk banks. Either a script (one transmission a line) or random activity
// drawn from a seed, which repeats exactly for the same seed and the same
// memory. Times are milliseconds since the traffic began.
//
// Script lines: START_MS,DURATION_MS,WHAT[,TONE] with WHAT one of
//   ch=N       channel N (1..1000): whatever that channel is programmed to
//   f=MHZ      a frequency, e.g. f=155.4750
//   id=ID      a talkgroup or unit ID in the form its trunk bank keeps it
// and TONE the subtone the transmitter sends with it, ctcss=HZ (a tone of
// the scanner's table, e.g. ctcss=123.0) or dcs=CODE (e.g. dcs=023).
// A line START_MS,0,keys=K;K;... is the owner at the scanner's front panel:
// at START_MS the keys K are pressed one after another, each written as the
// KEY command names it ("07" HOLD, "02 5" the digit 5, "13H" TRUNK held).
// Blank lines and lines starting with "#" are skipped.

#include "sim/scannermemory.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kestra::sim {

struct Transmission {
    enum class Kind { Channel, Frequency, Id, Keys };
    std::int64_t startMs = 0;
    std::int64_t durationMs = 0;
    Kind kind = Kind::Channel;
    int channel = 0;     // Kind::Channel
    Freq freq = 0;       // Kind::Frequency
    std::string id;      // Kind::Id
    int bank = -1;       // Kind::Id: the trunk bank (0..9) it belongs to; -1 any bank that listens
    int signal = 0;      // 1..255, what SG reads while it is heard
    int voice = 0;       // Kind::Id: picks which frequency of the bank carries the call
    std::string ctcss;   // the CTCSS tone sent along ("123.0"), or
    std::string dcs;     // the DCS code sent along ("023")
    std::vector<std::string> keys;  // Kind::Keys: the KEY arguments, in order

    std::int64_t endMs() const { return startMs + durationMs; }
    bool onAirAt(std::int64_t ms) const { return ms >= startMs && ms < endMs(); }
    // The frequency it is heard on now; 0 when there is none (a channel not programmed).
    Freq frequency(const ScannerMemory& memory) const;
};

// "seed=N,busy=F": F (0..1) is the share of time something transmits.
struct Activity {
    std::uint64_t seed = 1;
    double busy = 0.25;
};
std::optional<Activity> parseActivity(std::string_view text, std::string& error);

// The lines of a script; on a bad line nothing, and error names the line
// ("line 3: ...").
std::optional<std::vector<Transmission>> parseTrafficScript(std::string_view text, std::string& error);

// A small generator of its own (splitmix64), so that a seed gives the same
// numbers on every machine and every library.
class SplitMix64 {
public:
    explicit SplitMix64(std::uint64_t seed = 0) : state_(seed) {}
    std::uint64_t next();
    // Uniform in [low, high]; low when high is below it.
    std::int64_t between(std::int64_t low, std::int64_t high);

private:
    std::uint64_t state_;
};

class Traffic {
public:
    Traffic() = default;  // nothing on the air
    static Traffic scripted(std::vector<Transmission> script);
    static Traffic random(const Activity& activity);

    bool silent() const { return !activity_ && script_.empty(); }

    // The transmissions on the air at ms, in a fixed order. Random activity
    // is drawn as time reaches it, from what the memory holds then (its
    // channels, the IDs of its trunk banks, its search ranges); ms must not
    // go back. The pointers hold until the next call.
    std::vector<const Transmission*> onAir(std::int64_t ms, const ScannerMemory& memory);
    // The key presses of the script due by ms and not yet taken, in order.
    std::vector<std::string> pressesUntil(std::int64_t ms);

private:
    void drawUntil(std::int64_t ms, const ScannerMemory& memory);
    std::optional<Transmission> draw(std::int64_t startMs, const ScannerMemory& memory);

    std::vector<Transmission> script_;  // by start time
    std::size_t pressed_ = 0;           // the key lines of the script already taken
    std::optional<Activity> activity_;
    SplitMix64 random_;
    std::optional<Transmission> drawn_;  // the last random transmission
    std::int64_t nextDrawMs_ = 0;        // when the next random one starts
};

} // namespace kestra::sim
