#include "sim/virtualscanner.h"

#include <algorithm>
#include <tuple>

// The scanner as time passes: the clock and its ticks, what the receiver
// hears of the traffic on the air, and how scan, search and the trunk ID
// modes stop on it, hold for the delay and move on.

namespace kestra::sim {

namespace {

// What a delay code does after a transmission: wait that long before moving
// on (-1: until RESUME), or, for the negative delays, leave that long after
// stopping even while the transmission goes on.
struct Linger {
    std::int64_t afterMs = 0;
    std::int64_t leaveMs = 0;
};
Linger lingerOf(int code)
{
    switch (code) {
    case 1: return {1000, 0};
    case 2: return {2000, 0};
    case 3: return {4000, 0};
    case 4: return {-1, 0};
    case 5: return {0, 2000};
    case 6: return {0, 5000};
    case 7: return {0, 10000};
    default: return {};
    }
}

// A channel hears a transmission on its own frequency, give or take half the
// narrowest raster.
constexpr long long kChannelStepHz = 5000;

bool holdMode(Mode m)
{
    return m == Mode::SearchHold || m == Mode::ServiceHold || m == Mode::IdScanHold || m == Mode::IdSearchHold;
}

} // namespace

// ---- the clock -----------------------------------------------------------------------

void VirtualScanner::advanceTo(std::int64_t ms)
{
    if (!clock_) {
        clock_ = true;
        originMs_ = ms;
        now_ = 0;
        nextTick_ = kTickMs;
        listen();
        show();
        return;
    }
    const std::int64_t target = ms - originMs_;
    while (nextTick_ <= target) {
        if (quiet()) {
            // Nothing can change before the next command: the ticks keep their grid.
            nextTick_ = (target / kTickMs + 1) * kTickMs;
            break;
        }
        const std::int64_t ticks = (target - nextTick_) / kTickMs + 1;
        if (ticks > kLongGapTicks && !showLog && traffic_.silent() && !menu_.isOpen() && phase_ == Phase::Moving) {
            // A long time nobody asked (a program left alone for a day): with
            // nothing on the air the scan or search only moves on, so the
            // whole rounds are skipped, to the same place.
            moveOn(ticks);
            nextTick_ += ticks * kTickMs;
            now_ = nextTick_ - kTickMs;
            reception_ = {};
            show();
            break;
        }
        now_ = nextTick_;
        nextTick_ += kTickMs;
        pressScriptKeys();
        tick();
        show();
    }
    now_ = std::max(now_, target);
}

std::optional<std::int64_t> VirtualScanner::nextChangeMs() const
{
    if (!clock_ || quiet()) return std::nullopt;
    return originMs_ + nextTick_;
}

// Without traffic only a moving scan or search changes by itself.
bool VirtualScanner::quiet() const
{
    if (!traffic_.silent()) return false;
    if (menu_.isOpen()) return true;
    if (phase_ != Phase::Moving) return false;
    return mode_ != Mode::Scan && mode_ != Mode::Search;
}

void VirtualScanner::setTraffic(Traffic traffic)
{
    traffic_ = std::move(traffic);
    trafficOriginMs_ = now_;
    air_.clear();
    if (clock_) {
        listen();
        show();
    }
}

void VirtualScanner::takeAir()
{
    if (traffic_.silent())
        air_.clear();
    else
        air_ = traffic_.onAir(now_ - trafficOriginMs_, memory_);
}

// ---- hearing ---------------------------------------------------------------------------

const Transmission* VirtualScanner::strongestOnHz(long long hz, long long stepHz) const
{
    const Transmission* best = nullptr;
    for (const Transmission* t : air_) {
        const Freq f = t->frequency(memory_);
        if (f == 0) continue;
        // The nearest step takes it, and only that one.
        const long long twice = 2 * (static_cast<long long>(f) * 100 - hz);
        if (twice >= -stepHz && twice < stepHz && (!best || t->signal > best->signal)) best = t;
    }
    return best;
}

Reception VirtualScanner::receptionOnHz(long long hz, long long stepHz) const
{
    const Transmission* t = hz > 0 ? strongestOnHz(hz, stepHz) : nullptr;
    if (!t) return {};
    return Reception{true, t->signal, t->ctcss, t->dcs};
}

void VirtualScanner::pressScriptKeys()
{
    for (const std::string& key : traffic_.pressesUntil(now_ - trafficOriginMs_)) {
        const Mode before = mode_;
        keyCommand(key);
        afterCommand(before);
    }
}

int VirtualScanner::heardId(const std::string& id) const
{
    if (id.empty() || !memory_.trunk[trunkBank_].on) return 0;
    int best = 0;
    for (const Transmission* t : air_)
        if (t->kind == Transmission::Kind::Id && t->id == id && (t->bank < 0 || t->bank == trunkBank_))
            best = std::max(best, t->signal);
    return best;
}

bool VirtualScanner::catchId()
{
    if (!memory_.trunk[trunkBank_].on) return false;
    const auto& lists = memory_.ids[trunkBank_];
    for (const Transmission* t : air_) {
        if (t->kind != Transmission::Kind::Id || (t->bank >= 0 && t->bank != trunkBank_)) continue;
        // Its place in the lists, slots in the scanner's order 1..9 then 0.
        int list = -1, slot = -1;
        for (int l = 0; l < kLists && list < 0; ++l)
            for (int d = 1; d <= kSlots; ++d)
                if (lists[l].idSlots[static_cast<std::size_t>(d % kSlots)].id == t->id) {
                    list = l;
                    slot = d % kSlots;
                    break;
                }
        // The ID scan follows the IDs of its active lists; the ID search any.
        if (mode_ == Mode::IdScan && (list < 0 || !lists[list].active)) continue;
        heldId_ = t->id;
        heldList_ = list;
        heldSlot_ = slot;
        // The call goes out on one of the bank's frequencies.
        std::vector<int> voices;
        for (int c = trunkBank_ * 100 + 1; c <= trunkBank_ * 100 + 100; ++c)
            if (!memory_.channel(c).empty()) voices.push_back(c);
        voiceFreq_ = 0;
        voiceMode_ = Modulation::FM;
        if (!voices.empty()) {
            const Channel& voice = memory_.channel(voices[static_cast<std::size_t>(t->voice) % voices.size()]);
            voiceFreq_ = voice.freq;
            voiceMode_ = voice.mode;
        }
        return true;
    }
    return false;
}

bool VirtualScanner::scannable(int channel) const
{
    const Channel& ch = memory_.channel(channel);
    const int bank = bankOf(channel);
    // The frequencies of a trunk system are followed in the ID modes, not scanned.
    return !ch.empty() && !ch.lockout && memory_.scanBanks[bank] && !(ch.trunk && memory_.trunk[bank].on);
}

long long VirtualScanner::searchStepHz() const
{
    int step = stepHz(memory_.search[range_].step);
    if (step == 0) {
        const auto band = bandDefault(static_cast<Freq>(searchHz_ / 100));
        step = band ? stepHz(band->step) : 0;
        if (step == 0) step = 5000;
    }
    return step;
}

// ---- moving ----------------------------------------------------------------------------

void VirtualScanner::scanOn()
{
    for (int i = 1; i <= kChannels; ++i) {
        const int n = ((channel_ - 1 + direction_ * i) % kChannels + kChannels) % kChannels + 1;
        if (scannable(n)) {
            channel_ = n;
            return;
        }
    }
}

// One step; past the end of the range the search goes on in the next active
// range that has limits.
void VirtualScanner::searchOn()
{
    const auto usable = [&](int r) { return memory_.searchRanges[r] && memory_.search[r].lower != 0 && memory_.search[r].upper != 0; };
    if (!usable(range_)) return;
    const auto limits = [&](int r) {
        const SearchRange& range = memory_.search[r];
        return std::pair{static_cast<long long>(std::min(range.lower, range.upper)) * 100,
                         static_cast<long long>(std::max(range.lower, range.upper)) * 100};
    };
    const auto [lower, upper] = limits(range_);
    const long long next = searchHz_ + direction_ * searchStepHz();
    if (next >= lower && next <= upper) {
        searchHz_ = next;
        return;
    }
    for (int i = 1; i <= kRanges; ++i) {
        const int r = ((range_ + direction_ * i) % kRanges + kRanges) % kRanges;
        if (usable(r)) {
            range_ = r;
            break;
        }
    }
    const auto [low, high] = limits(range_);
    searchHz_ = direction_ > 0 ? low : high;
}

// As many ticks of a scan or search that hears nothing.
void VirtualScanner::moveOn(std::int64_t ticks)
{
    const auto step = [&] { mode_ == Mode::Scan ? scanOn() : searchOn(); };
    const auto state = [&] { return std::tuple{channel_, range_, searchHz_}; };
    // A state the moves come back to: a channel that is scanned, the end of
    // a range that a search starts from.
    const auto onRound = [&] {
        if (mode_ == Mode::Scan) return scannable(channel_);
        const SearchRange& r = memory_.search[range_];
        const long long from = static_cast<long long>(direction_ > 0 ? std::min(r.lower, r.upper) : std::max(r.lower, r.upper)) * 100;
        return searchHz_ == from;
    };
    while (ticks > 0 && !onRound()) {
        const auto before = state();
        step();
        --ticks;
        if (state() == before) return;  // nowhere to go
    }
    if (ticks == 0) return;
    const auto start = state();
    std::int64_t round = 0;
    do {
        step();
        --ticks;
        ++round;
    } while (ticks > 0 && state() != start);
    for (ticks %= round; ticks > 0; --ticks) step();
}

void VirtualScanner::resume()
{
    phase_ = Phase::Moving;
    heldId_.clear();
    heldList_ = heldSlot_ = -1;
    voiceFreq_ = 0;
    reception_ = {};
    if (mode_ == Mode::Scan) scanOn();
    if (mode_ == Mode::Search) searchOn();
}

// Stopped on something: stay while it is heard, linger for the delay once it
// ends, then move on.
void VirtualScanner::follow(const Reception& heard, int delayCode, std::int64_t lingerMs)
{
    const bool hears = heard.squelchOpen;
    const Linger linger = delayCode >= 0 ? lingerOf(delayCode) : Linger{lingerMs, 0};
    switch (phase_) {
    case Phase::Moving:
        if (hears) {
            phase_ = Phase::Receiving;
            stoppedAtMs_ = now_;
        } else if (mode_ == Mode::Scan) {
            scanOn();
        } else if (mode_ == Mode::Search) {
            searchOn();
        }
        break;
    case Phase::Receiving:
        if (linger.leaveMs > 0 && now_ - stoppedAtMs_ >= linger.leaveMs) {
            resume();
        } else if (!hears) {
            if (linger.afterMs == 0) {
                resume();
            } else {
                phase_ = Phase::Lingering;
                resumeAtMs_ = linger.afterMs < 0 ? -1 : now_ + linger.afterMs;
            }
        }
        break;
    case Phase::Lingering:
        if (hears) {
            phase_ = Phase::Receiving;
            stoppedAtMs_ = now_;
        } else if (resumeAtMs_ >= 0 && now_ >= resumeAtMs_) {
            resume();
        }
        break;
    }
    reception_ = phase_ == Phase::Receiving ? heard : Reception{};
}

void VirtualScanner::tick()
{
    takeAir();
    if (menu_.isOpen()) {
        reception_ = {};
        return;
    }
    switch (mode_) {
    case Mode::Scan: {
        const Reception heard = scannable(channel_) ? receptionOnHz(current().freq * 100LL, kChannelStepHz) : Reception{};
        follow(heard, current().delay, 0);
        break;
    }
    case Mode::Search: {
        follow(receptionOnHz(searchHz_, searchStepHz()), -1, kSearchDelayMs);
        break;
    }
    case Mode::IdScan:
    case Mode::IdSearch:
        if (phase_ == Phase::Moving && catchId()) {
            phase_ = Phase::Receiving;
            stoppedAtMs_ = now_;
            reception_ = {true, heardId(heldId_), {}, {}};
        } else if (phase_ != Phase::Moving) {
            const int signal = heardId(heldId_);
            follow(Reception{signal > 0, signal, {}, {}}, memory_.trunk[trunkBank_].delay, 0);
        }
        break;
    default:
        listen();
        break;
    }
}

// The reception at this moment where no stop or move hangs on it: in manual
// mode, the holds and the service search; a scan or search that moves hears
// nothing until its next tick.
void VirtualScanner::listen()
{
    takeAir();
    if (menu_.isOpen()) {
        reception_ = {};
        return;
    }
    switch (mode_) {
    case Mode::Manual: reception_ = receptionOnHz(current().freq * 100LL, kChannelStepHz); break;
    case Mode::SearchHold: reception_ = receptionOnHz(searchHz_, searchStepHz()); break;
    case Mode::IdScanHold:
    case Mode::IdSearchHold: {
        const int signal = heardId(heldId_);
        reception_ = Reception{signal > 0, signal, {}, {}};
        break;
    }
    case Mode::Service:
    case Mode::ServiceHold: reception_ = {}; break;
    default:
        if (phase_ == Phase::Moving) reception_ = {};
        break;
    }
}

// A command that took the scanner to another mode starts it afresh there,
// upwards; a hold keeps what the scanner stopped on.
void VirtualScanner::afterCommand(Mode before)
{
    if (mode_ != before && !holdMode(mode_)) {
        phase_ = Phase::Moving;
        if (!holdMode(before)) direction_ = 1;
        heldId_.clear();
        heldList_ = heldSlot_ = -1;
        voiceFreq_ = 0;
    }
    if (!clock_) return;
    listen();
    show();
}

// ---- the log of what it shows ------------------------------------------------------------

std::string VirtualScanner::showText() const
{
    const Screen s = display();
    return "SHOW " + s.text[0] + "|" + s.text[1] + "|" + s.text[2] + "|" + s.text[3] + " SQ" +
           (reception_.squelchOpen ? "+" : "-") + " SG" + std::to_string(std::clamp(reception_.signal, 0, 255));
}

void VirtualScanner::show()
{
    if (!clock_) return;
    std::string text = showText();
    if (text == lastShown_) return;
    lastShown_ = std::move(text);
    if (showLog) showLog(std::to_string(now_) + " " + lastShown_);
}

} // namespace kestra::sim
