#include "linefaults.h"

#include "core/text.h"

#include <algorithm>

namespace kestra {

std::optional<LineFaults> LineFaults::parse(std::string_view text)
{
    LineFaults f;
    std::size_t pos = 0;
    while (pos < text.size()) {
        std::size_t end = text.find(',', pos);
        if (end == std::string_view::npos) end = text.size();
        const std::string_view item = text.substr(pos, end - pos);
        pos = end + 1;
        if (item.empty()) continue;
        const auto eq = item.find('=');
        if (eq == std::string_view::npos) return std::nullopt;
        const std::string_view key = item.substr(0, eq);
        const std::string value(item.substr(eq + 1));
        if (value.empty() || value.find_first_not_of("0123456789.") != std::string::npos) return std::nullopt;
        const double v = Val(value);
        if (key == "drop" || key == "split" || key == "garble" || key == "stray") {
            if (v > 1) return std::nullopt;
            (key == "drop" ? f.drop : key == "split" ? f.split : key == "garble" ? f.garble : f.stray) = v;
        } else if (key == "delay") {
            f.delayMs = static_cast<int>(std::min(v, 60000.0));
        } else if (key == "seed") {
            f.seed = static_cast<unsigned>(std::min(v, 4e9));
        } else {
            return std::nullopt;
        }
    }
    return f;
}

std::string CarriedReply::text() const
{
    std::string all;
    for (const Piece& p : pieces) all += p.bytes;
    return all + stray;
}

std::vector<TimedBytes> CarriedReply::timed(std::int64_t startUs, std::int64_t charUs) const
{
    std::vector<TimedBytes> out;
    std::int64_t t = startUs;
    for (const Piece& p : pieces) {
        t += charUs * static_cast<std::int64_t>(p.bytes.size()) + p.pauseUs;
        out.push_back({t, p.bytes});
    }
    if (!stray.empty()) out.push_back({t + charUs * static_cast<std::int64_t>(stray.size()), stray});
    return out;
}

FaultyLine::FaultyLine(const LineFaults& faults) : faults_(faults), random_(faults.seed) {}

std::string FaultyLine::atWrongSpeed(std::string_view bytes)
{
    std::string out(bytes);
    for (char& c : out) c = static_cast<char>((static_cast<unsigned char>(c) * 7 + 0x5b + random_() % 3) & 0xff);
    return out;
}

CarriedReply FaultyLine::carry(std::string reply)
{
    CarriedReply carried;
    if (reply.empty()) return carried;
    const LineFaults& f = faults_;
    std::uniform_real_distribution<double> chance(0, 1);
    if (f.drop > 0 && chance(random_) < f.drop) return carried;
    if (f.garble > 0)
        for (char& c : reply)
            if (c != '\r' && chance(random_) < f.garble) c = static_cast<char>(' ' + random_() % 94);
    if (f.delayMs > 0) carried.lateUs = static_cast<std::int64_t>(random_() % (static_cast<unsigned>(f.delayMs) + 1)) * 1000;

    if (f.split > 0 && reply.size() > 1 && chance(random_) < f.split) {
        const std::size_t cut1 = 1 + random_() % (reply.size() - 1);
        carried.pieces.push_back({reply.substr(0, cut1)});
        std::string rest = reply.substr(cut1);
        if (rest.size() > 1 && random_() % 2) {
            const std::size_t cut2 = 1 + random_() % (rest.size() - 1);
            carried.pieces.push_back({rest.substr(0, cut2)});
            rest = rest.substr(cut2);
        }
        carried.pieces.push_back({rest});
        // The line pauses between the pieces.
        for (std::size_t i = 1; i < carried.pieces.size(); ++i)
            carried.pieces[i].pauseUs = static_cast<std::int64_t>(1 + random_() % 40) * 1000;
    } else {
        carried.pieces.push_back({std::move(reply)});
    }
    if (f.stray > 0 && chance(random_) < f.stray) carried.stray = std::string(1, static_cast<char>('!' + random_() % 90));
    return carried;
}

} // namespace kestra
