#include "sim/traffic.h"

#include "core/cellcodes.h"

#include <algorithm>
#include <charconv>
#include <limits>

namespace kestra::sim {

namespace {

std::string_view trimmed(std::string_view text)
{
    while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) text.remove_prefix(1);
    while (!text.empty() && (text.back() == ' ' || text.back() == '\t' || text.back() == '\r')) text.remove_suffix(1);
    return text;
}

std::optional<std::int64_t> wholeMs(std::string_view text)
{
    if (text.empty() || text.size() > 12) return std::nullopt;
    std::int64_t value = 0;
    const auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (ec != std::errc() || end != text.data() + text.size() || value < 0) return std::nullopt;
    return value;
}

// "155.4750", "155.475", "851": MHz with at most four decimals.
std::optional<Freq> megahertz(std::string_view text)
{
    const auto point = text.find('.');
    const std::string_view whole = text.substr(0, point);
    const std::string_view fraction = point == std::string_view::npos ? std::string_view() : text.substr(point + 1);
    const auto digits = [](std::string_view t) { return std::all_of(t.begin(), t.end(), [](char c) { return c >= '0' && c <= '9'; }); };
    if (whole.empty() || whole.size() > 4 || fraction.size() > 4 || !digits(whole) || !digits(fraction)) return std::nullopt;
    if (point != std::string_view::npos && fraction.empty()) return std::nullopt;
    Freq f = 0;
    for (char c : whole) f = f * 10 + static_cast<Freq>(c - '0');
    for (std::size_t i = 0; i < 4; ++i) f = f * 10 + static_cast<Freq>(i < fraction.size() ? fraction[i] - '0' : 0);
    return f;
}

// "name=value" split at the first "=".
std::pair<std::string_view, std::string_view> item(std::string_view text)
{
    const auto equals = text.find('=');
    if (equals == std::string_view::npos) return {text, {}};
    return {text.substr(0, equals), text.substr(equals + 1)};
}

// Every transmission of random activity lasts one to five seconds.
constexpr std::int64_t kShortestMs = 1000;
constexpr std::int64_t kLongestMs = 5000;
constexpr std::int64_t kMeanMs = (kShortestMs + kLongestMs) / 2;

} // namespace

Freq Transmission::frequency(const ScannerMemory& memory) const
{
    switch (kind) {
    case Kind::Channel: return channel >= 1 && channel <= kChannels ? memory.channel(channel).freq : 0;
    case Kind::Frequency: return freq;
    case Kind::Id:
    case Kind::Keys: return 0;
    }
    return 0;
}

// ---- parsing --------------------------------------------------------------------

std::optional<Activity> parseActivity(std::string_view text, std::string& error)
{
    Activity activity;
    bool seen = false;
    while (!text.empty()) {
        const auto comma = text.find(',');
        const std::string_view item = text.substr(0, comma);
        text = comma == std::string_view::npos ? std::string_view() : text.substr(comma + 1);
        const auto equals = item.find('=');
        const std::string_view name = item.substr(0, equals);
        const std::string_view value = equals == std::string_view::npos ? std::string_view() : item.substr(equals + 1);
        if (name == "seed") {
            std::uint64_t seed = 0;
            const auto [end, ec] = std::from_chars(value.data(), value.data() + value.size(), seed);
            if (value.empty() || ec != std::errc() || end != value.data() + value.size()) {
                error = "seed takes a whole number";
                return std::nullopt;
            }
            activity.seed = seed;
        } else if (name == "busy") {
            // Read by hand: the share must not depend on the locale.
            const auto f = megahertz(value);  // digits, a point, at most four decimals
            if (!f || *f > 10000) {
                error = "busy takes a share from 0 to 1, such as 0.3";
                return std::nullopt;
            }
            activity.busy = static_cast<double>(*f) / 10000.0;
        } else {
            error = "unknown item \"" + std::string(item) + "\" (seed=N,busy=F)";
            return std::nullopt;
        }
        seen = true;
    }
    if (!seen) {
        error = "give seed=N,busy=F";
        return std::nullopt;
    }
    return activity;
}

std::optional<std::vector<Transmission>> parseTrafficScript(std::string_view text, std::string& error)
{
    std::vector<Transmission> script;
    int number = 0;
    while (!text.empty()) {
        const auto newline = text.find('\n');
        const std::string_view line = trimmed(text.substr(0, newline));
        text = newline == std::string_view::npos ? std::string_view() : text.substr(newline + 1);
        ++number;
        if (line.empty() || line.front() == '#') continue;
        const auto fail = [&](const std::string& why) {
            error = "line " + std::to_string(number) + ": " + why;
            return std::nullopt;
        };
        std::vector<std::string_view> fields;
        for (std::string_view rest = line;;) {
            const auto comma = rest.find(',');
            fields.push_back(trimmed(rest.substr(0, comma)));
            if (comma == std::string_view::npos) break;
            rest = rest.substr(comma + 1);
        }
        if (fields.size() != 3 && fields.size() != 4)
            return fail("expected START_MS,DURATION_MS,WHAT[,TONE], got \"" + std::string(line) + "\"");
        Transmission t;
        const auto start = wholeMs(fields[0]);
        const auto duration = wholeMs(fields[1]);
        if (!start) return fail("the start is not a number of milliseconds");
        const auto [name, value] = item(fields[2]);
        if (!duration || (*duration == 0 && name != "keys"))
            return fail("the duration is not a number of milliseconds above 0");
        t.startMs = *start;
        t.durationMs = *duration;
        if (name == "ch") {
            const auto n = wholeMs(value);
            if (!n || *n < 1 || *n > kChannels) return fail("ch= takes a channel from 1 to 1000");
            t.kind = Transmission::Kind::Channel;
            t.channel = static_cast<int>(*n);
        } else if (name == "f") {
            const auto f = megahertz(value);
            if (!f || *f == 0) return fail("f= takes a frequency in MHz, such as f=155.4750");
            if (!inCoverage(*f)) return fail(std::string(value) + " MHz is outside what the scanner receives");
            t.kind = Transmission::Kind::Frequency;
            t.freq = *f;
        } else if (name == "id") {
            if (value.empty() || value.size() > 8 || value.find_first_of(" \t") != std::string_view::npos)
                return fail("id= takes an ID of one to eight characters without blanks");
            t.kind = Transmission::Kind::Id;
            t.id = std::string(value);
        } else if (name == "keys") {
            t.kind = Transmission::Kind::Keys;
            t.durationMs = 0;
            for (std::string_view rest = value;;) {
                const auto semicolon = rest.find(';');
                const std::string_view key = trimmed(rest.substr(0, semicolon));
                if (key.size() < 2 || key.size() > 4 || key[0] < '0' || key[0] > '1' || key[1] < '0' || key[1] > '9')
                    return fail("keys= takes KEY arguments separated by \";\", such as keys=07;02 5;04");
                t.keys.emplace_back(key);
                if (semicolon == std::string_view::npos) break;
                rest = rest.substr(semicolon + 1);
            }
        } else {
            return fail("WHAT is ch=N, f=MHZ, id=ID or keys=K;K, not \"" + std::string(fields[2]) + "\"");
        }
        if (fields.size() == 4) {
            const auto [toneName, toneValue] = item(fields[3]);
            const ToneTables& tables = toneTables();
            const auto known = [&](const auto& table, std::size_t count) {
                for (std::size_t i = 0; i < count; ++i)
                    if (!table[i].empty() && table[i].back() != '-' && table[i] == toneValue) return true;
                return false;
            };
            if (t.kind == Transmission::Kind::Keys) return fail("key presses carry no tone");
            if (toneName == "ctcss" && known(tables.ctcss, std::size(tables.ctcss))) t.ctcss = std::string(toneValue);
            else if (toneName == "dcs" && known(tables.dcs, std::size(tables.dcs))) t.dcs = std::string(toneValue);
            else return fail("TONE is ctcss=HZ or dcs=CODE of the scanner's tables, not \"" + std::string(fields[3]) + "\"");
        }
        // A signal of its own for each line, the same every time.
        t.signal = 60 + static_cast<int>((static_cast<std::uint64_t>(number) * 2654435761u + t.startMs) % 190);
        t.voice = number;
        script.push_back(std::move(t));
    }
    std::stable_sort(script.begin(), script.end(), [](const Transmission& a, const Transmission& b) { return a.startMs < b.startMs; });
    return script;
}

// ---- the generator ------------------------------------------------------------------

std::uint64_t SplitMix64::next()
{
    std::uint64_t z = (state_ += 0x9E3779B97F4A7C15ull);
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ull;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBull;
    return z ^ (z >> 31);
}

std::int64_t SplitMix64::between(std::int64_t low, std::int64_t high)
{
    if (high <= low) return low;
    const auto span = static_cast<std::uint64_t>(high - low) + 1;
    return low + static_cast<std::int64_t>(next() % span);
}

// ---- traffic -------------------------------------------------------------------------

Traffic Traffic::scripted(std::vector<Transmission> script)
{
    Traffic traffic;
    std::stable_sort(script.begin(), script.end(), [](const Transmission& a, const Transmission& b) { return a.startMs < b.startMs; });
    traffic.script_ = std::move(script);
    return traffic;
}

Traffic Traffic::random(const Activity& activity)
{
    Traffic traffic;
    Activity a = activity;
    a.busy = std::clamp(a.busy, 0.0, 1.0);
    traffic.activity_ = a;
    traffic.random_ = SplitMix64(a.seed);
    if (a.busy <= 0) {
        traffic.nextDrawMs_ = std::numeric_limits<std::int64_t>::max();
    } else {
        const auto meanGap = static_cast<std::int64_t>(static_cast<double>(kMeanMs) * (1.0 - a.busy) / a.busy);
        traffic.nextDrawMs_ = traffic.random_.between(0, 2 * meanGap);
    }
    return traffic;
}

std::optional<Transmission> Traffic::draw(std::int64_t startMs, const ScannerMemory& memory)
{
    Transmission t;
    t.startMs = startMs;
    t.durationMs = random_.between(kShortestMs, kLongestMs);
    t.signal = static_cast<int>(random_.between(40, 255));
    t.voice = static_cast<int>(random_.between(0, 1 << 30));
    const std::uint64_t pick = random_.next();

    // What can be on the air: the programmed channels, the IDs of the trunk
    // banks, and the search ranges that have limits.
    int channels = 0, ids = 0, ranges = 0;
    for (const Channel& ch : memory.channels) channels += ch.empty() ? 0 : 1;
    for (int b = 0; b < kBanks; ++b) {
        if (!memory.trunk[b].on) continue;
        for (const IdList& list : memory.ids[b])
            for (const IdSlot& slot : list.idSlots) ids += slot.empty() ? 0 : 1;
    }
    for (const SearchRange& r : memory.search) ranges += r.lower != 0 && r.upper != 0 ? 1 : 0;
    const int total = channels + ids + ranges;
    if (total == 0) return std::nullopt;
    int n = static_cast<int>(pick % static_cast<std::uint64_t>(total));

    if (n < channels) {
        for (int c = 1; c <= kChannels; ++c) {
            if (memory.channel(c).empty()) continue;
            if (n-- == 0) {
                t.kind = Transmission::Kind::Channel;
                t.channel = c;
                return t;
            }
        }
    }
    n -= channels;
    if (n < ids) {
        for (int b = 0; b < kBanks; ++b) {
            if (!memory.trunk[b].on) continue;
            for (const IdList& list : memory.ids[b])
                for (const IdSlot& slot : list.idSlots) {
                    if (slot.empty()) continue;
                    if (n-- == 0) {
                        t.kind = Transmission::Kind::Id;
                        t.id = slot.id;
                        t.bank = b;
                        return t;
                    }
                }
        }
    }
    n -= ids;
    for (const SearchRange& r : memory.search) {
        if (r.lower == 0 || r.upper == 0) continue;
        if (n-- > 0) continue;
        // A frequency on the range's own steps.
        const long long lower = std::min(r.lower, r.upper) * 100LL, upper = std::max(r.lower, r.upper) * 100LL;
        long long step = stepHz(r.step);
        if (step == 0) {
            const auto band = bandDefault(static_cast<Freq>(lower / 100));
            step = band && stepHz(band->step) > 0 ? stepHz(band->step) : 5000;
        }
        const long long k = random_.between(0, (upper - lower) / step);
        t.kind = Transmission::Kind::Frequency;
        t.freq = static_cast<Freq>((lower + k * step) / 100);
        return t;
    }
    return std::nullopt;
}

void Traffic::drawUntil(std::int64_t ms, const ScannerMemory& memory)
{
    if (!activity_) return;
    while (nextDrawMs_ <= ms) {
        const std::int64_t start = nextDrawMs_;
        drawn_ = draw(start, memory);
        // A slot with nothing to transmit on lasts as long as a transmission would.
        const std::int64_t length = drawn_ ? drawn_->durationMs : kMeanMs;
        const auto meanGap = static_cast<std::int64_t>(static_cast<double>(kMeanMs) * (1.0 - activity_->busy) / activity_->busy);
        nextDrawMs_ = start + length + random_.between(0, 2 * meanGap);
    }
}

std::vector<std::string> Traffic::pressesUntil(std::int64_t ms)
{
    std::vector<std::string> keys;
    for (; pressed_ < script_.size() && script_[pressed_].startMs <= ms; ++pressed_)
        if (script_[pressed_].kind == Transmission::Kind::Keys)
            keys.insert(keys.end(), script_[pressed_].keys.begin(), script_[pressed_].keys.end());
    return keys;
}

std::vector<const Transmission*> Traffic::onAir(std::int64_t ms, const ScannerMemory& memory)
{
    std::vector<const Transmission*> out;
    for (const Transmission& t : script_) {
        if (t.startMs > ms) break;
        if (t.onAirAt(ms)) out.push_back(&t);
    }
    drawUntil(ms, memory);
    if (drawn_ && drawn_->onAirAt(ms)) out.push_back(&*drawn_);
    return out;
}

} // namespace kestra::sim
