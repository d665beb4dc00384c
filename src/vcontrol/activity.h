#pragma once
// What the hit log knows beyond its lines: how long each hit stayed on the
// air, how often and how long each frequency, trunk ID and subtone was heard
// over the session, and which recording holds a hit.
//
// A hit opens when its line is logged and stays open while the scanner shows
// Busy on the same frequency (frequency and tone hits) or the same trunk ID
// (ID hits); the tick that sees it gone closes it with its duration. The
// history's rows carry the duration and the recording beside the line, in the
// same order (newest first, 100 rows).

#include "vcontrol/displaystate.h"

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace kestra {

class ActivityLog {
public:
    static constexpr int kRows = 100;

    // One row of the history.
    struct Row {
        std::int64_t startMs = 0;
        std::int64_t durationMs = -1;  // -1 while still on the air
        std::string recording;         // the WAV file that holds it, if any
    };
    // One line of the "Activity" table.
    struct Entry {
        std::string kind;      // "Frequency", "Trunk ID", "CTCSS", "DCS"
        std::string subject;   // "155.4750", "01008", "123.0", "023"
        std::string where;     // the frequency of a tone, the bank of an ID
        std::string tag;       // the channel's tag of a frequency
        int hits = 0;
        std::int64_t totalMs = 0;  // closed hits only
        std::int64_t lastMs = 0;   // when it was last logged
    };

    // A line the hit log logged at nowMs.
    void hit(const std::string& line, std::int64_t nowMs);
    // Timer8: closes the hits that are off the air.
    void tick(const DisplayState& state, std::int64_t nowMs);
    // A recording began; one saved as file: the hits logged since it began
    // are in that file.
    void recordingStarted(std::int64_t nowMs);
    void recordingSaved(const std::string& file);
    // A hit went off the air (its row and the table have a new duration).
    std::function<void()> onClosed;
    // "Clear History" forgets the rows; the session's counts stay.
    void clearRows();

    // Newest first, at most 100.
    const std::deque<Row>& rows() const { return rows_; }
    // Every frequency, ID and tone heard, in the order first heard.
    const std::vector<Entry>& entries() const { return entries_; }
    // The places in entries() that changed since the last call, in order.
    std::vector<std::size_t> takeChanged();

    // "12.5 s", "3 min 04 s"; "" while still on the air.
    static std::string durationText(std::int64_t ms);

private:
    struct Open {
        std::uint64_t serial;
        std::size_t entry;  // its place in entries_
        bool id;              // follows the trunk ID, else the frequency
        std::string subject;  // the ID or the frequency it follows
        std::int64_t startMs;
    };
    Row* rowOf(std::uint64_t serial);
    void touch(std::size_t entry);

    std::deque<Row> rows_;
    std::uint64_t serial_ = 0;  // of the newest row
    std::vector<Open> open_;
    std::vector<Entry> entries_;
    std::map<std::string, std::size_t> places_;  // kind|subject|where → its place in entries_
    std::vector<std::size_t> changed_;
    std::int64_t recordingSinceMs_ = -1;
};

} // namespace kestra
