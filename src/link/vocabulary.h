#pragma once
// The scanner's remote command language as the program speaks it: every
// command is built here and every reply is read here. Replies are searched,
// not parsed: a decoder looks for its marker (case-sensitive) and takes a
// fixed number of characters at a fixed distance behind it, so an echo or
// noise in front does no harm and a reply without the marker changes nothing.

#include "core/cellcodes.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kestra::wire {

inline constexpr const char* kCrLf = "\r\n";

// ---- placeholders ----
char bankLetter(int bank);            // 'A' + bank
std::string channel3(int chanid);     // three digits, channel 1000 as "000"
std::string freq8(std::string_view mhzText);  // "0416.0000" -> "04160000"
// Characters of `reply` at 1-based position (marker position + offset), or
// nothing when the marker is missing.
std::optional<std::string> behind(std::string_view reply, std::string_view marker, std::size_t offset,
                                  std::size_t length);

// ---- channel commands ----
std::string selectChannel(int chanid);                                      // "MA" nnn
std::string programFrequency(int chanid, bool trunk, std::string_view mhz);  // "PM" nnn " "/"T" ffffffff
std::string clearChannel(int chanid);                                       // "PM" nnn " 00000000"
inline constexpr const char* kReadStep = "ST";
std::optional<std::string> setStep(std::string_view stepGridText);          // "ST 12.5K"...; nothing for unknown
inline constexpr const char* kReadMode = "RM";
std::optional<std::string> setMode(std::string_view modeGridText);          // "RM NFM"...
inline constexpr const char* kReadDelay = "DL";
std::optional<std::string> setDelay(std::string_view delayCode);            // "DLF", "DLN +2"...
std::string readBeep(int chanid);                                           // "BA C " nnn
std::string setBeep(int chanid, bool on);                                   // "BAN C " nnn / "BAF C " nnn
std::string readTag(int chanid);                                            // "TA C " nnn
std::string setTag(int chanid, std::string_view text);                      // "TA C " nnn " " text
inline constexpr const char* kReadSubtone = "CS";
std::string setSubtone(int code);                                           // "CS" ddd or "CSL" ddd
std::string setLockout(bool on);                                            // "LON"/"LOF"
std::string setAttenuator(bool on);                                         // "ATN"/"ATF"
std::string setRecord(bool on);                                             // "ARN"/"ARF"
std::string readPriority(int bank);                                         // "PC " b
std::string setPriority(int bank, int chanid);                              // "PC " b number
std::string readBankTag(int bank);                                          // "TA B " b
std::string setBankTag(int bank, std::string_view text);                    // "TA B " b " " text
// The lists of what is active, each given whole: the memory banks that scan,
// the search ranges that search (the Virtual Control reads them back alike).
std::string activeScanBanks(std::string_view letters);                      // "CB " letters
std::string activeSearchRanges(std::string_view letters);                   // "SB " letters

// ---- trunk commands ----
std::string trunkBank(int bank);                  // "TBN " b
std::string readTrunkType(int bank);              // "TB " b
std::string setTrunkType(int bank, std::string_view codeAndBlock);  // "TR " b " " ...
std::string readTrunkChannelOption(int bank);     // "TC " b
std::string readListTag(int bank, char list);     // "TA L " b " " l
std::string setListTag(int bank, char list, std::string_view text);
std::string readTrunkId(int bank, char list, int slot);   // "TG " b " " l d
std::string setTrunkId(int bank, char list, int slot, std::string_view id);
std::string readIdTag(int bank, char list, int slot);     // "TA I " b " " l d
std::string setIdTag(int bank, char list, int slot, std::string_view text);
std::string readIdBeep(int bank, char list, int slot);    // "BA I " b " " l d
std::string setIdBeep(int bank, char list, int slot, bool on);
// The scanner's code of the program's trunk type: 1 and 2 swap, 8 and 9 swap.
int scannerTrunkType(int programType);
// The "TR" line that gives a bank the program's trunk type 1..9 before its
// channels or IDs go out. Types 4 and 5 carry a default frequency block
// ("TR b 4 04160000 0125 381"); their real Base Configs follow with the trunk
// settings. Nothing for a type the scanner has no code for (0).
std::optional<std::string> trunkTypeLine(int bank, int programType);

// ---- search commands ----
std::string readLowerLimit(int range);            // "LL " b
std::string setLowerLimit(int range, std::string_view mhz);  // "LL" ffffffff " " b
std::string readUpperLimit(int range);
std::string setUpperLimit(int range, std::string_view mhz);
std::string readSearchTag(int range);             // "TA S " b
std::string setSearchTag(int range, std::string_view text);

// ---- system commands ----
inline constexpr const char* kModel = "SI";
inline constexpr const char* kVersion = "VR";
inline constexpr const char* kWakeUp[3] = {"IDF", "CDF", "QUF"};
std::string readDisplayLine(int line);            // "LCD1".."LCD4"; 0 gives "LCD"
std::string key(int number, bool hold = false);   // "KEY07", "KEY05H"
std::string digitKey(int digit);                  // "KEY02 " d
int exitKeyNumber(int bc785d);                    // 7 on the BC2xx family, 9 on the BC7xx family
std::string exitKey(int bc785d);
std::string fipsCode(std::string_view code);      // "FP " code
inline constexpr const char* kFactoryReset = "AC";

// The model a reply to "SI" names, if any.
std::optional<Model> modelOfReply(std::string_view reply);

// ---- reply decoders ----

// A channel reply ("C001 F01306250 TF DN LF AF RF N000"): the fields behind
// their markers, each missing when its marker is.
struct ChannelReply {
    std::optional<std::string> freq8;    // eight digits; "00000000" for an empty channel
    std::optional<char> trunk, delay, lockout, atten, record;  // 'N' on, 'F' off
    std::optional<std::string> tone;     // three digits
    bool empty() const { return freq8 && *freq8 == "00000000"; }
};
ChannelReply decodeChannel(std::string_view reply, int chanid);

// "5K", "6.", "7.", "12", "20", "25", "50", or "AUTO"/"10K"/"100K" found anywhere.
std::optional<std::string> decodeStep(std::string_view reply);
std::optional<std::string> decodeMode(std::string_view reply);    // "FM", "WF", "AM", "NF"
// 'F' for off, or the two characters of the setting ("+1" ... "-1").
std::optional<std::string> decodeDelay(std::string_view reply);
std::optional<char> decodeBeep(std::string_view reply);           // 'F' or 'N'
std::optional<std::string> decodeTag(std::string_view reply);     // of "TA C "
std::optional<std::string> decodeSubtone(std::string_view reply); // the four characters behind "CS"
std::optional<int> decodePriority(std::string_view reply, int bank);
std::optional<std::string> decodeBankTag(std::string_view reply, int bank);

// ---- reply checks ----
// A reply is taken only when it has the form the scanner gives it: a line
// hit by noise on the way (a letter for a digit, a marker lost) is treated as
// a reply that never came, never stored.

// The line of a reply that is exactly one line ended by a carriage return,
// without it; nothing otherwise.
std::optional<std::string_view> singleLine(std::string_view rx);
// The reply to read step `step` of channel `chanid` (1 "MA", 2 "RM", 3 "DL",
// 4 "BA C", 5 "ST", 6 "TA C", 7 "CS"), e.g. "C001 F01306250 TF DN LF AF RF N000".
bool wellFormedChannelReply(int step, std::string_view rx, int chanid);
// Replies to commands that set something: every line "OK"; "NG" or "ERR"
// among them is a refusal; anything else is a reply garbled on the line.
enum class SetReply { Ok, Refused, Malformed };
SetReply classifySetReply(std::string_view rx);

// ---- menu lines ----
// The option lines the program compares display lines with, 24 characters each.
namespace menu {
inline constexpr const char* kOn = "[1:ON            ][*****";
inline constexpr const char* kOff = "[2:OFF           ][*****";
inline constexpr const char* kOnly = "[3:ONLY          ][*****";
extern const std::vector<std::string> kModes;     // "[1:AM ..." to "[5:AUTO ..."
extern const std::vector<std::string> kSteps;     // every step line of both model groups
extern const std::vector<std::string> kDelays;    // "[1:NONE ..." to "[8:-10 SECONDS ..."
extern const std::vector<std::string> kGeneral;   // "[ 1:15SECONDS ..." to "[SLAVE ..."
// Kept as the program has always had it: a longer pad that no display line
// can match.
inline constexpr const char* kStep625Long = "[2:6.25KHz         ][*****";
}  // namespace menu

} // namespace kestra::wire
