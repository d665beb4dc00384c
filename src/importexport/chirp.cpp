#include "chirp.h"

#include "csvtable.h"

#include "core/cellcodes.h"
#include "core/memtable.h"
#include "core/text.h"
#include "editor/freqrules.h"
#include "editor/frequencyentry.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <map>

namespace kestra {

namespace {

constexpr const char* kEol = "\r\n";

// The frequency text in MHz with six decimals.
std::string mhzText(std::string_view text)
{
    const long long u = freqUnits(text);
    char buf[32];
    std::snprintf(buf, sizeof buf, "%lld.%04lld00", u / 10000, u % 10000);
    return buf;
}

void exportBank(const Document& doc, int bank, int locationBase, std::string& out)
{
    const ToneTables& tones = toneTables();
    for (int row = 1; row <= kChannelRows; ++row) {
        const auto& line = doc.memdata[bank][row];
        if (Val(line[col::freq]) == 0) continue;
        // The tone the squelch opens on: CTCSS as tone squelch, DCS as a code.
        std::string toneMode, ctone = "88.5", dcs = "023";
        const long long code = IntVal(repairToneCode(line[col::tone]));
        long long plain = code >= 150 ? code - 149 : code;
        if (plain >= 1 && plain <= 38) {
            toneMode = "TSQL";
            ctone = tones.ctcss[plain];
        } else if (plain >= 39 && plain <= 142) {
            toneMode = "DTCS";
            dcs = tones.dcs[plain - 39];
        }
        const std::string mode = line[col::mode] == "4" ? "Auto" : modeText(line[col::mode]);
        const int step = stepUnits(line[col::step]);
        char stepBuf[16];
        std::snprintf(stepBuf, sizeof stepBuf, "%.2f", (step > 0 ? step : 50) / 10.0);
        std::string tag = line[col::tag];
        std::string comment = line[col::comment];
        if (trim(comment).empty()) comment.clear();
        out += numText(locationBase + row - 1) + ',' + csvField(utf8FromCp1252(rtrim(tag))) + ',' +
               mhzText(line[col::freq]) + ",,0.000000," + toneMode + ",88.5," + ctone + ',' + dcs + ",NN," + dcs +
               ",Tone->Tone," + (mode.empty() ? "FM" : mode) + ',' + stepBuf + ',' + (line[col::lockout] == "1" ? "S" : "") +
               ",," + csvField(utf8FromCp1252(comment)) + ",,,,";
        out += kEol;
    }
}

// The index of a CTCSS tone by value, 0 when the scanner has none such.
int ctcssIndex(std::string_view text)
{
    const double v = Val(text);
    const ToneTables& tones = toneTables();
    for (int i = 1; i <= 38; ++i)
        if (std::fabs(Val(tones.ctcss[i]) - v) < 0.05) return i;
    return 0;
}

// The grid text of a DCS code ("23" and "023" alike), "" when the scanner has none such.
std::string dcsText(std::string_view text)
{
    std::string code = trim(text);
    while (code.size() < 3) code.insert(code.begin(), '0');
    const ToneTables& tones = toneTables();
    for (int i = 0; i < 104; ++i)
        if (tones.dcs[i] == code) return code;
    return {};
}

struct Columns {
    std::map<std::string, std::size_t> byName;
    const std::string& get(const CsvRow& row, const char* name) const
    {
        static const std::string kNone;
        const auto it = byName.find(name);
        if (it == byName.end() || it->second >= row.fields.size()) return kNone;
        return row.fields[it->second];
    }
    bool has(const char* name) const { return byName.count(name) > 0; }
};

struct Pending {
    int line = 0;
    int channel = 0;
    std::string freq, tag, tone, mode, step, lockout, comment;
};

std::string lineNote(int line, const std::string& what) { return "Line " + numText(line) + ": " + what; }

// What a CHIRP line asks of one channel, or a note why it cannot be taken.
bool readLine(const Columns& cols, const CsvRow& row, Pending& p, std::vector<std::string>& notes)
{
    p.line = row.line;
    const std::string freq = trim(cols.get(row, "Frequency"));
    if (!(Val(freq) > 0)) {
        notes.push_back(lineNote(row.line, "no frequency \"" + freq + "\""));
        return false;
    }
    if (coverageLimit(freq, LimitKind::Entry)) {
        notes.push_back(lineNote(row.line, freq + " MHz is outside the scanner's coverage"));
        return false;
    }
    const std::string mode = trim(cols.get(row, "Mode"));
    if (!mode.empty() && mode != "Auto" && !modeCode(mode)) {
        notes.push_back(lineNote(row.line, "mode " + mode + " cannot be received by the scanner"));
        return false;
    }
    p.freq = freq;
    p.mode = mode == "Auto" ? "" : mode;
    std::string tag = cp1252FromUtf8(cols.get(row, "Name"));
    p.tag = tag.substr(0, std::min(tag.size(), kTagLength));
    p.comment = cp1252FromUtf8(cols.get(row, "Comment")).substr(0, kCommentLength);
    p.lockout = trim(cols.get(row, "Skip")) == "S" ? "On" : "Off";

    if (const long long units = std::llround(Val(cols.get(row, "TStep")) * 10); units > 0) {
        char buf[16];
        std::snprintf(buf, sizeof buf, "%.1f", units / 10.0);
        std::string text = buf;
        if (text == "6.2" || text == "6.3") text = "6.25";   // 6.25 is kept to two decimals
        if (stepCode(text, 1)) p.step = text;
    }

    // The tone the squelch opens on, for the tone modes a receiver can follow.
    const std::string toneMode = trim(cols.get(row, "Tone"));
    std::string crossMode = trim(cols.get(row, "CrossMode"));
    std::string ctcss, dcs;
    if (toneMode == "TSQL" || toneMode == "TSQL-R") ctcss = cols.get(row, "cToneFreq");
    else if (toneMode == "DTCS" || toneMode == "DTCS-R") dcs = cols.get(row, "DtcsCode");
    else if (toneMode == "Cross") {
        const std::size_t arrow = crossMode.find("->");
        const std::string rx = arrow == std::string::npos ? "" : crossMode.substr(arrow + 2);
        if (rx == "Tone") ctcss = cols.get(row, "cToneFreq");
        else if (rx == "DTCS") dcs = cols.has("RxDtcsCode") ? cols.get(row, "RxDtcsCode") : cols.get(row, "DtcsCode");
    }
    p.tone.clear();   // no tone: the grid text "" is the code "0"
    if (!ctcss.empty()) {
        if (const int i = ctcssIndex(ctcss)) p.tone = toneTables().ctcss[i];
        else notes.push_back(lineNote(row.line, "tone " + ctcss + " is not one the scanner knows; taken without it"));
    } else if (!dcs.empty()) {
        if (std::string text = dcsText(dcs); !text.empty()) p.tone = text;
        else notes.push_back(lineNote(row.line, "DCS code " + dcs + " is not one the scanner knows; taken without it"));
    }

    const std::string duplex = trim(cols.get(row, "Duplex"));
    if (duplex == "split")
        notes.push_back(lineNote(row.line, "split transmit frequency not kept (the scanner only receives)"));
    else if ((duplex == "+" || duplex == "-") && Val(cols.get(row, "Offset")) != 0)
        notes.push_back(lineNote(row.line, "duplex offset " + duplex + trim(cols.get(row, "Offset")) +
                                               " MHz not kept (the scanner only receives)"));
    return true;
}

} // namespace

std::string chirpExportText(const Document& doc, int bank)
{
    std::string out = std::string(kChirpHeader) + kEol;
    if (bank >= 0 && bank <= kDummyBank) {
        exportBank(doc, bank, 0, out);
    } else {
        for (int b = 0; b < kChannelBanks; ++b) exportBank(doc, b, b * kChannelRows, out);
    }
    return out;
}

std::string ChirpImport::report() const
{
    std::string text = numText(taken) + (taken == 1 ? " channel" : " channels") + " taken, " + numText(refused) +
                       (refused == 1 ? " line" : " lines") + " refused.";
    for (const std::string& note : notes) text += "\r\n" + note;
    return text;
}

ChirpImport chirpImport(MemTable& table, std::string_view bytes, int firstBank)
{
    ChirpImport result;
    if (bytes.substr(0, 3) == "\xEF\xBB\xBF") bytes.remove_prefix(3);
    const std::vector<CsvRow> rows = parseCsv(bytes);
    Columns cols;
    if (!rows.empty())
        for (std::size_t i = 0; i < rows[0].fields.size(); ++i) cols.byName.try_emplace(trim(rows[0].fields[i]), i);
    if (!cols.has("Frequency")) {
        result.readable = false;
        result.notes.push_back("Not a CHIRP CSV file: the first line names no Frequency column.");
        return result;
    }

    const int base = std::clamp(firstBank, 0, kDummyBank) * kChannelRows + 1;
    std::map<int, Pending> byChannel;
    int next = base;
    for (std::size_t r = 1; r < rows.size(); ++r) {
        const CsvRow& row = rows[r];
        int channel = next;
        if (cols.has("Location")) {
            const std::string location = trim(cols.get(row, "Location"));
            if (location.empty() || location.find_first_not_of("0123456789") != std::string::npos) {
                result.notes.push_back(lineNote(row.line, "no channel location \"" + location + "\""));
                ++result.refused;
                continue;
            }
            channel = base + static_cast<int>(std::min<long long>(IntVal(location), kLastChannel));
        }
        next = channel + 1;
        if (channel > kLastChannel) {
            result.notes.push_back(lineNote(row.line, "no channel left for it (the last is " + numText(kLastChannel) + ")"));
            ++result.refused;
            continue;
        }
        Pending p;
        if (!readLine(cols, row, p, result.notes)) {
            ++result.refused;
            continue;
        }
        p.channel = channel;
        if (byChannel.count(channel)) result.notes.push_back(lineNote(row.line, "takes the place of line " +
                                                                              numText(byChannel[channel].line)));
        byChannel[channel] = p;
    }

    // Bank by bank through the grid, as if the user typed each line.
    const int onView = table.doc().currentBank;
    FrequencyEntry entry(table);
    const int bc785d = table.doc().model.bc785d;
    auto put = [&](int row, int storeColumn, const std::string& text) {
        if (const int c = gridColumnOfStore(bc785d, storeColumn)) table.grid().setText(row, c, text);
    };
    std::vector<std::pair<int, std::string>> comments;
    for (const auto& [channel, p] : byChannel) {
        const int bank = channelBank(channel), row = channelRow(channel);
        if (table.doc().currentBank != bank) table.changeBank(bank);
        // A channel taken replaces what the line held; the bandplan and the
        // default data fill what the CHIRP line leaves open.
        for (int c = 1; c < table.grid().cols(); ++c) table.grid().setText(row, c, "");
        entry.enterfreq(row, p.freq);
        put(row, col::tag, p.tag);
        if (!p.mode.empty()) put(row, col::mode, p.mode);
        if (!p.step.empty()) put(row, col::step, p.step);
        put(row, col::tone, p.tone);
        put(row, col::lockout, p.lockout);
        comments.emplace_back(channel, p.comment);
        ++result.taken;
    }
    if (result.taken > 0) {
        table.changeBank(onView);
        for (const auto& [channel, comment] : comments)
            table.doc().memdata[channelBank(channel)][channelRow(channel)][col::comment] = comment;
        table.markDirty();
    }
    return result;
}

} // namespace kestra
