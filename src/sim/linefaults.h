#pragma once
// What a poor serial line does to the scanner's replies: it loses one, delivers
// it in pieces, corrupts characters, adds a stray character after the carriage
// return, or lets it come late. The same seed gives the same faults in the same
// order, so a run that failed can be run again. Both ends of the scanner use
// this: the in-process port and the pseudo-terminal of kestractl sim.

#include <cstdint>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace kestra {

struct LineFaults {
    double drop = 0;     // chance a reply is lost
    double split = 0;    // chance a reply comes in two or three pieces
    double garble = 0;   // chance each character of a reply is corrupted (never its carriage return)
    double stray = 0;    // chance a stray character follows a reply's carriage return
    int delayMs = 0;     // a reply comes up to this much later
    unsigned seed = 1;

    // "drop=0.05,split=0.3,garble=0.01,stray=0.01,delay=200,seed=7"; nothing
    // for a malformed text.
    static std::optional<LineFaults> parse(std::string_view text);
    bool any() const { return drop > 0 || split > 0 || garble > 0 || stray > 0 || delayMs > 0; }
};

// Bytes that reach the other end at a time (microseconds on the caller's clock).
struct TimedBytes {
    std::int64_t atUs = 0;
    std::string bytes;
};

// One reply as the line carries it.
struct CarriedReply {
    struct Piece {
        std::string bytes;
        std::int64_t pauseUs = 0;  // the line's pause before this piece, beyond wire time
    };
    std::int64_t lateUs = 0;    // how much later than usual the first piece starts
    std::vector<Piece> pieces;  // none when the reply is lost
    std::string stray;          // a character after the reply, or nothing
    bool lost() const { return pieces.empty(); }
    // The reply as it arrives, all pieces and the stray character together.
    std::string text() const;
    // When each piece arrives when the first starts at startUs and a character
    // takes charUs on the wire; the stray character last, in its own entry.
    std::vector<TimedBytes> timed(std::int64_t startUs, std::int64_t charUs) const;
};

class FaultyLine {
public:
    explicit FaultyLine(const LineFaults& faults = {});
    const LineFaults& faults() const { return faults_; }

    // What the line makes of one reply: the next faults of the seeded sequence.
    CarriedReply carry(std::string reply);
    // Bytes as a receiver set to another speed than the sender's reads them:
    // every character becomes another one.
    std::string atWrongSpeed(std::string_view bytes);

private:
    LineFaults faults_;
    std::mt19937 random_;
};

} // namespace kestra
