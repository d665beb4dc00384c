#pragma once
// What the Virtual Control knows of the scanner. The scanner does not say what
// it is doing in one message: the state is read from the text of its four-line
// display (the "LCD" reply) and from the short replies to the polls "MD",
// "ST", "SQ", "SG", "RM", "AT" and "TB". The comparisons are on fixed columns
// and fixed words of the display, in a fixed order. Columns are counted from 1
// in the comments, as the scanner's display counts them.
//
// Nothing here rejects a reply: a missing marker leaves a field as it was, a
// line of an unknown form gives no trunk ID.

#include <array>
#include <string>

namespace kestra {

// The lamps of the keypad's group A by index. The decoder lights MUTE, ATT
// and Lock Out; the others follow the mode number (see keypad.h).
enum Lamp { kLampMute = 8, kLampAtt = 9, kLampLockOut = 10 };
inline constexpr int kLamps = 12;

struct DisplayState {
    // The four display lines of 16 characters, and for lines 1 to 3 the raw
    // field: the text, the two separators "][" and the 16 attribute characters
    // ("#" one inverted character). lcdinv: the whole line inverted ("*" x 16).
    // A line is not always 16 long: line 2 of a moving scan reads "SCANNING",
    // line 1 of a locked-out channel is 18 long (its last two columns become
    // " L/O", of which the display's 16 cells show " L"), and a cut-short reply
    // gives a shorter line. The display draws the first 16 characters and
    // blanks past the end.
    std::array<std::string, 4> lcdline{std::string(16, ' '), std::string(16, ' '), std::string(16, ' '),
                                       std::string(16, ' ')};
    std::array<std::string, 3> lcdraw{};
    std::array<int, 4> lcdinv{};

    std::string modenumber;    // two digits from "MD", or "Menu"
    std::string channeltext;   // columns 11 to 14 of line 1
    std::string freqtext;      // columns 1 to 9 of line 2 when it holds a "."
    std::string modulation;    // "WFM", "FM", "AM" or "NFM"
    std::string steptext;      // the step in kHz
    int signal = 0;            // 0..255
    std::string subtonetext;
    std::string trunkid;
    std::string idlocation;    // three characters of line 1
    std::string idtag;         // the tag of the trunk ID (filled by the hit log)
    std::string encoded;       // columns 11 to 13 of line 2 ("ENC" on encrypted voice)
    std::string systemname;    // "Motorola", "Edacs", "LTR" or empty
    bool trunkflag = false;    // the channel is a trunk channel
    std::string statusline;    // what the scanner is doing, in a sentence

    // The Busy indicator (Label4 index 3 and Picture11) and its twin in the
    // status window states2, which the trunk ID rule of SQ leaves out.
    bool busyshown = false;
    bool busytwin = false;

    int trunkmode = 0;   // 1 in a trunk ID view
    int idvalid = 0;     // 1 when trunkid holds a real ID
    int curbank = 0;     // the memory or search bank on the display, 1..10
    int trunkbank = 0;   // from TB, 1..10; 0 out of trunk mode
    int subtonestate = 0;  // 0 none, 1 CTCSS found, 2 DCS found, 3 searching
    int opclass = 0;     // 0 manual, 1 scan, 2 other (mode above 05), 3 search
    bool optionOverlay = false;  // line 1 shows "SYSTEM OPTION  " (Picture23)

    std::array<bool, kLamps> lamps{};
};

// The LCD reply in rxbuf: cut at "LCD1" to 167 characters, the four lines and
// their attributes, channel, frequency, MUTE, trunk mode, bank, the SCANNING
// flattening of line 2, Lock Out, trunk ID, trunk system, subtone.
void parselcd(DisplayState& state, std::string& rxbuf);

// After parselcd: 1 when the scanner counts as moving (scanning, searching).
int decidePollfast(const DisplayState& state);
// The scanner moved on: everything that belongs to a received signal goes.
void wipeReception(DisplayState& state);
// Timer3: encoded := columns 11 to 13 of line 2. True when it changed (the
// encrypted voice skip is then tried at once).
bool refreshEncoded(DisplayState& state);

// The last line of a reply, without its CR. A key's reply ("OK") may stand
// ahead of the poll's in rxbuf; the poll's reply is the last line.
std::string replyLine(const std::string& rxbuf);

// The short replies, each complete (ended by CR) in rxbuf.
void takeStep(DisplayState& state, const std::string& rxbuf);        // ST
void takeSignal(DisplayState& state, const std::string& rxbuf);      // SG
void takeSquelch(DisplayState& state, const std::string& rxbuf);     // SQ
void takeMode(DisplayState& state, const std::string& rxbuf);        // MD, then classify
void takeModulation(DisplayState& state, const std::string& rxbuf);  // RM
void takeAttenuator(DisplayState& state, const std::string& rxbuf);  // AT
void takeTrunkBank(DisplayState& state, const std::string& rxbuf);   // TB

// statusline and opclass from modenumber, subtonestate, systemname and trunkbank.
void classify(DisplayState& state);

// The four options of "Apco 25 - Encrypted Communication Auto Resume:"
// (setup keys enc1 to enc4).
struct EncryptedSkip {
    bool idSearch = true;  // mode "10"
    bool trunkScan = true; // mode "12"
    bool search = true;    // mode "02"
    bool scan = true;      // mode "00"
};
// How many "KEY00" to send for the encrypted voice skip: one for each option
// whose mode is on the display while encoded is exactly "ENC".
int encryptedSkips(const DisplayState& state, const EncryptedSkip& options);

// The meter: bar i (0..7) shows when signal - 31.875 * i is 0 or more.
bool meterBarShown(int signal, int bar);

} // namespace kestra
