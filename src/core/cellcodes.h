#pragma once
// The two text forms of a channel cell: the stored code text of the channel
// store and the text the grid shows. The tone tables, the delay, step, mode
// and on/off codes, the frequency texts, the model switches and the two grid
// layouts live here, and nowhere else.

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace kestra {

// ---- Model switches -------------------------------------------------------

enum class Model { BC250D, BC785D, BC296D, BC796D, UBC3300 };

struct ModelSwitches {
    int bc785d = 0;  // grid layout with a Record column, the long delay list, the exit key
    int x96 = 0;     // 6.25 and 20 kHz steps, the fast baud rates, the menu numbering
    int ubc33 = 1;   // the UBC3300

    // Clamps each value to 0..1; ubc33 = 1 forces bc785d = 0 and x96 = 1.
    void normalise();
    Model model() const;
    static ModelSwitches of(Model model);
    bool operator==(const ModelSwitches&) const = default;
};

// "BC250D", "BC785D", "BC296D", "BC796D", "UBC3300".
const char* modelName(Model model);
std::optional<Model> modelFromName(std::string_view name);  // case-insensitive

// ---- Grid layouts -----------------------------------------------------------

// The data columns of the grid (grid column 1 onwards) for a layout: the
// header text and the store column each grid column shows.
struct GridColumn {
    const char* header;
    int storeColumn;
};

int gridDataColumns(int bc785d);                 // 10 or 11
const GridColumn& gridColumn(int bc785d, int gridCol);   // gridCol 1..gridDataColumns
int gridColumnOfStore(int bc785d, int storeColumn);      // 0 when the layout has no such column

// Store columns of a channel.
namespace col {
inline constexpr int line = 0, freq = 1, tag = 2, trunk = 3, record = 4, delay = 5, recordHidden = 6,
                     beep = 7, tone = 8, lockout = 9, atten = 10, mode = 11, step = 12, comment = 13;
}

// ---- Tone tables -------------------------------------------------------------

// ctcsstable (index 1..78; 39..40 empty) and dcstable (index 0..213; 104..109
// empty), the "-" forms in the upper halves.
struct ToneTables {
    std::array<std::string, 81> ctcss;
    std::array<std::string, 214> dcs;
    ToneTables();
};
const ToneTables& toneTables();

// ---- Cell conversions ------------------------------------------------------------

// Store code -> grid text. An unknown code gives "" (the cell is left blank).
std::string onOffText(std::string_view code);                 // "0" Off, "1" On
std::string delayText(std::string_view code, int bc785d);
std::string stepText(std::string_view code);
std::string modeText(std::string_view code);
std::string toneText(std::string_view code);                  // code already repaired of "L"

// Grid text -> store code. Texts not in the table give nullopt (the cell's text
// is then kept as it stands).
std::optional<std::string> onOffCode(std::string_view text);  // "Off" 0, "On" 1
std::optional<std::string> delayCode(std::string_view text, int bc785d);
std::optional<std::string> stepCode(std::string_view text, int x96);
std::optional<std::string> modeCode(std::string_view text);
std::optional<std::string> toneCode(std::string_view text);   // "" gives "0"

// The repair of the older PL/DPL form: a code with the letter "L" becomes the
// text of Val + 149 ("12L" becomes "161"). Other texts come back unchanged.
std::string repairToneCode(std::string_view code);

// ---- Frequency texts --------------------------------------------------------------

std::string padfreq(std::string_view text, int width, int dotpos);
std::string trimfreq(std::string_view text, int decimals);

// The frequency text of the `zero` setting: padfreq(text, 8, 5) for 0,
// trimfreq(text, 4) for 1.
std::string formatFreq(std::string_view text, int zero);

} // namespace kestra
