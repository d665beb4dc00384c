#pragma once
// Easy Fill: fills a range of channels in one go, across banks, with
// ascending frequencies from a start and a step and with a chosen value in any
// of the other columns. The window easy2 reads its controls into an
// EasyFillValues and calls easyFill; everything here works on the store.

#include "core/document.h"

#include <array>
#include <string>
#include <string_view>
#include <vector>

namespace kestra {

// The fields of "Fill Range With:", in the window's order.
enum class EasyField { Frequency, Tag, Trunk, Delay, Record, Beep, Tone, Lockout, Atten, Mode, Step };
inline constexpr int kEasyFields = 11;

// "Frequency:", "Tag:", ... "Step:".
const char* easyFieldCaption(EasyField field);
// The store column a field fills. Record is column 4 on the models with a
// Record column and the hidden column 6 on the others.
int easyFieldColumn(EasyField field, const ModelSwitches& model);
// The texts of a field's list for the model: those of the grid column, the
// steps in ascending order. Frequency and Tag have no fixed list.
std::vector<std::string> easyFieldChoices(EasyField field, const ModelSwitches& model);
// The increments offered for "Step:" (kHz): "6.25", "10.0", "12.5", "15.0",
// "20.0", then the model's further channel steps in ascending order.
std::vector<std::string> easyStepChoices(const ModelSwitches& model);
// The store code of a text of a field's list. The tag is its own code; a text
// that no code stands for is kept as it stands.
std::string easyFieldCode(EasyField field, std::string_view text, const ModelSwitches& model);

// What the window's controls hold when Apply runs.
struct EasyFillValues {
    std::string from = "01";          // Text1, channel 1..1100
    std::string to = "100";           // Text2
    std::string start = "0400.0000";  // Text6, MHz
    std::string step = "12.5";        // Text3, kHz
    std::array<bool, kEasyFields> ticked{true};      // the ef boxes; Frequency alone at first
    std::array<std::string, kEasyFields> code{};     // the chosen store code of each field
    bool fillSeries = false;   // check3d1: the tag's final number counts up per channel
    bool autoTone = false;     // Check1: the PL/DPL code grows by one per channel

    bool& tick(EasyField f) { return ticked[static_cast<int>(f)]; }
    bool tick(EasyField f) const { return ticked[static_cast<int>(f)]; }
    std::string& codeOf(EasyField f) { return code[static_cast<int>(f)]; }
    const std::string& codeOf(EasyField f) const { return code[static_cast<int>(f)]; }
};

// The corrections Apply makes to the typed values before it fills, written
// back as the texts the window then shows: From and To change places when
// From is the greater, From below 1 becomes "1", To above 1100 "1100"; the
// step above 10000 becomes "10000", below 5 "5".
void normaliseEasyFill(EasyFillValues& values);

struct ChannelRange {
    int first = 1;
    int last = 0;   // below first: nothing to fill
};
// The channels the values fill, once corrected.
ChannelRange easyFillRange(const EasyFillValues& values);

// Apply: corrects the values (normaliseEasyFill) and fills their range in the
// store. The caller repaints the grid.
void easyFill(Document& doc, EasyFillValues& values);

// The PL/DPL code `steps` channels after `code`: through the tones and then
// the DCS codes, round again from the first tone after the last code; the
// locked-out forms stay among themselves. "None" grows into the first tone.
// A code outside the lists stays as it is.
std::string nextToneCode(std::string_view code, int steps);

} // namespace kestra
