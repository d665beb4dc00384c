#pragma once
// The Virtual Control's keys: which on-screen key sends which command to the
// scanner, how the lamps and captions follow the scanner's mode, the tuning
// knob, direct tuning, the lists of active banks, and Auto Resume.
//
// The keys come in three groups: A (index 0..11, each with a lamp), B (the
// numeric pad, 0..11) and C (0..2 and 4..9; index 3 is the Busy indicator).
// Commands are given without their carriage return.

#include "core/cellcodes.h"
#include "vcontrol/displaystate.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace kestra {

// A command and the wait (seconds) that follows it before the next one.
struct KeyCommand {
    std::string text;
    double waitAfter = 0;
    bool operator==(const KeyCommand&) const = default;
};

// What one press of a key does: the commands in order, and whether polling is
// paused around them (the MODE cycle).
struct KeyAction {
    std::vector<KeyCommand> commands;
    bool pausePolling = false;
    // HOLD recovery of the link: the key is HOLD (A 3) or MANUAL (A 11) and
    // the watchdog has counted 19 retries or more.
    bool holdRecovery = false;
};

// Group A by index, with the state of the display (ATT lamp, mode number for
// MANUAL), the model switches and the watchdog's retries. ATT and MANUAL in
// the search modes act only with the port open: commands to a closed port go
// nowhere. MANUAL's commands are chosen from the mode at the press.
KeyAction groupAKey(int index, const DisplayState& state, const ModelSwitches& model, int retries);
// The right button on Lock Out (A 10) at the press: "KEY06H".
KeyAction lockOutHold();
// Group B: digits "KEY02 d", E "KEY04", bank/list or point "KEY03".
KeyAction groupBKey(int index);
// Group C on a press of the left button, or the right one (PRI gives
// "KEY05H"; the right button does nothing on the other keys).
KeyAction groupCKey(int index, bool rightButton, const DisplayState& state, const ModelSwitches& model);

// The captions and lamps that follow the mode number, after each MD reply.
struct PanelLook {
    std::array<std::string, 12> groupA;    // Label1
    std::array<std::string, 12> groupB;    // Label2 ("bank/list" or "." at 11)
    std::array<std::string, 10> groupC;    // Label4 (3 is the Busy indicator, "")
};
// Lights lamps 0..5 and 11 of state.lamps by the mode, and gives the captions.
PanelLook updatePanel(DisplayState& state, const ModelSwitches& model);

// The knob: 25 degrees a step, V UP (C 8) turning right, V DOWN (C 9) left.
int turnKnob(int angle, bool up);
// The far end of the knob's line, relative to its centre, for a radius.
struct KnobEnd {
    double x;
    double y;
};
KnobEnd knobEnd(int angle, double radius);
inline constexpr int kKnobTickMs = 100;  // Timer7 and Timer11: ten commands a second

// Direct tune ("VFO:", Text19, starting "0400.0000"): whether a key code is
// taken into the box, and the commands of "Tune" for the text, which is
// normalised in place by padfreq.
bool directTuneTakes(int keyCode);
std::vector<KeyCommand> directTune(std::string& text);
inline constexpr const char* kDirectTuneStart = "0400.0000";

// The lists of active banks (SB search banks, CB scan banks, IS ID scan lists):
// "A".."J" from a reply (from its column 3 on), and the command that sets the
// lit ones. The poll's reply is the last line of rxbuf (a key's "OK" may
// stand ahead of it). activeText is that text, as Text10, Label38 and
// Label39 show it (Label40 shows the IS reply whole).
enum class ActiveList { SearchBanks, ScanBanks, IdLists };
std::string activeText(const std::string& rxbuf);
std::array<bool, 10> activeFromReply(const std::string& rxbuf);
std::string activeCommand(ActiveList list, const std::array<bool, 10>& lit);

// Auto Resume, on each tick of Timer4 (100 ms): the squelch-open counter of
// Label23 and the resume after the chosen seconds in modes "00" and "02".
class AutoResume {
public:
    static constexpr int kChoices[5] = {1, 2, 5, 10, 60};  // Combo1
    static constexpr int kStartChoice = 2;                  // 5 seconds

    // nowSeconds: the time of day in whole seconds. True when RESUME is due.
    bool tick(std::int64_t nowSeconds, const DisplayState& state, bool enabled, int limitSeconds);
    // Cleared when the scanner moves on (pollfast 1) and by the resume itself.
    void clear() { start_.reset(); }
    // Label23: empty without a start, else the seconds since it.
    const std::string& label() const { return label_; }

private:
    std::optional<std::int64_t> start_;
    std::string label_;
};

} // namespace kestra
