#pragma once
// The hit log of the Virtual Control: every 500 ms (Timer8) it looks at the
// decoded display and notes what the scanner stopped on: a frequency, a trunk
// ID, a P25 ID, a CTCSS tone or a DCS code. Each hit is one text line of ten
// cells; it goes on top of the history (histline, 100 rows, newest in row 1)
// and, while "Log History Data to disk:" is ticked, to the log file.
//
// What was logged last (text25 the frequency, text8 the ID, Text6 the P25 ID,
// text24 the tones) keeps a resting scanner from logging the same thing on
// every tick. When the scanner moves on (pollfast 1) the ID and tone fields
// are forgotten but the frequency is not, so a frequency logs once per change
// of frequency, an ID or tone anew after every movement. With "Only Log new
// frequencies / trunk id's" the per-bank seenlist keeps each one to a single
// line until "Clear History".
//
// The text is the scanner's and the document's: Windows-1252 bytes, written
// to the file unchanged, lines ended by CR LF.

#include "core/document.h"
#include "editor/backup.h"
#include "vcontrol/activity.h"
#include "vcontrol/displaystate.h"
#include "vcontrol/vfoini.h"

#include <array>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>

namespace kestra {

class ControlLoop;
class Scheduler;
class Timer;

// The tick boxes of the "Log Setup" tab that steer the hit log.
struct HitLogOptions {
    bool onlyNew = false;          // Check4 "Only Log new frequencies / trunk id's" (option1)
    bool lockoutIdSearch = false;  // Check7 Auto Lockout after logged, "in Trunk ID search mode" (option4)
    bool lockoutSearch = false;    // Check8 Auto Lockout after logged, "in Search mode" (option5)
    bool resumeIdSearch = false;   // Check9 Auto Resume after logged, "in Trunk ID search mode" (option6)
    bool resumeSearch = false;     // Check10 Auto Resume after logged, "in Search mode" (option7)

    static HitLogOptions fromIni(const VfoIni& ini);
    void toIni(VfoIni& ini) const;
};

class HitLog {
public:
    static constexpr int kTickMs = 500;   // Timer8
    static constexpr int kRows = 100;     // rows 1..100 hold hits, row 0 the header
    static constexpr int kColumns = 10;
    static constexpr const char* kLiveHeader = "KESTRA,Halvorn, Lowland";
    static constexpr const char* kSavedHeader = "KESTRA,logdata,Halvorn,Lowland";
    static constexpr char kPound = '\xA3';  // "£": marks a tone in seenlist
    // The file dialogs of the log file and of "Save current history".
    static constexpr const char* kCsvFilter = "CSV Files|*.csv";
    // A chosen name without an extension gets ".csv".
    static std::string csvName(std::string name);

    using Row = std::array<std::string, kColumns>;
    using Clock = std::function<DateTime()>;
    using Send = std::function<void(const std::string& command)>;

    // doc: the channel tags and the trunk ID lists, and the model (x96).
    // send: a command to the scanner (KEY06 lock out, KEY00 resume).
    // clock: the local time of a hit.
    HitLog(const Document& doc, Send send, Clock clock);
    ~HitLog();
    HitLog(const HitLog&) = delete;
    HitLog& operator=(const HitLog&) = delete;

    HitLogOptions options;
    // The log file (vfo.ini filename), a path in the program's own text.
    std::string logname;
    // Each line as addhit takes it (after the file has it).
    std::function<void(const std::string& line)> onHit;
    // The durations, counts and recordings of the hits; its clock is the
    // scheduler's once attached.
    ActivityLog activity;
    std::function<std::int64_t()> nowMs = [] { return std::int64_t{0}; };

    // Timer8: judges the state for a hit. Fills idtag from the trunk ID
    // lists, and writes the trimmed and padded ID back into trunkid.
    void tick(DisplayState& state);
    // The scanner moves (pollfast 1): the ID, P25 ID and tone fields go.
    void moved();

    // Puts one line on top of the history and into the open log file.
    void addhit(const std::string& line);
    // "Clear History": the history and seenlist.
    void clear();

    // "Log History Data to disk:". Ticking opens logname anew (an existing
    // file is replaced) with its header; unticking closes it. False when the
    // file could not be opened (the box is then still ticked: lines are lost).
    bool setLogging(bool on);
    bool logging() const { return logging_; }
    bool fileOpen() const { return file_ != nullptr; }

    // "Save current history": header and rows 1..100, cells joined by ",".
    // "" on success, else what went wrong.
    std::string saveHistory(const std::filesystem::path& path) const;

    // Runs Timer8 on the scheduler against the loop's state and forgets the
    // ID and tone fields whenever the loop's display says the scanner moves
    // (chained after the hooks already set).
    void attach(Scheduler& scheduler, ControlLoop& loop);

    const std::array<Row, kRows + 1>& histline() const { return histline_; }
    // What has been logged in bank 1..10 (empty for any other number).
    const std::string& seenlist(int bank) const;
    const std::string& lastFrequency() const { return text25_; }
    const std::string& lastId() const { return text8_; }
    const std::string& lastP25Id() const { return text6_; }
    const std::string& loggedTones() const { return text24_; }

private:
    void frequencyHit(DisplayState& state);
    void trunkHit(DisplayState& state);
    void toneHit(DisplayState& state, int subtonestate);
    void lookupIdTag(DisplayState& state) const;
    std::string channelTag(int channel) const;
    std::string* seen(int bank);
    std::string stamp(bool joinMode, const std::string& mode) const;

    const Document& doc_;
    Send send_;
    Clock clock_;
    std::array<Row, kRows + 1> histline_{};
    std::array<std::string, 11> seenlist_{};
    std::string text25_, text8_, text6_, text24_;
    bool logging_ = false;
    std::FILE* file_ = nullptr;
    std::unique_ptr<Timer> timer8_;
};

} // namespace kestra
