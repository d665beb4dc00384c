#include "editor/easyfill.h"

#include "core/text.h"
#include "editor/cellentry.h"
#include "editor/lineops.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>
#include <optional>
#include <utility>

namespace kestra {

namespace {

constexpr double kMinStep = 5, kMaxStep = 10000;   // kHz

// The two runs of PL/DPL codes: 1..142 the tones and DCS codes, 150..291 their
// locked-out forms; both hold 142 codes.
constexpr int kToneCodes = 142;
constexpr int kLockedFirst = 150;

int channelOf(const std::string& text)
{
    const double v = std::trunc(Val(text));
    return static_cast<int>(std::clamp(v, -1.0e6, 1.0e6));
}

// A frequency in units of 10 Hz as its nine-character text. It is rounded to
// the 100 Hz of the four decimals, a half going down: so the 8.33 kHz raster
// gives 118.0083, 118.0167, 118.0250, and a 6.25 kHz raster ends in 12, 37,
// 62 and 87 like the channels the rest of the editor knows on that raster.
std::string frequencyText(double units10Hz)
{
    // The margin keeps a half that the binary sum brought a hair above .5 a half.
    const double units100Hz = std::clamp(units10Hz / 10.0, 0.0, 1.0e12);
    const auto n = static_cast<long long>(std::ceil(units100Hz - 0.5 - 1e-6));
    char text[48];
    std::snprintf(text, sizeof text, "%lld.%04lld", n / 10000, n % 10000);
    return padfreq(text, 8, 5);
}

} // namespace

const char* easyFieldCaption(EasyField field)
{
    static constexpr const char* captions[kEasyFields] = {
        "Frequency:", "Tag:", "Trunk:", "Delay Time:", "Record:", "Beep Alert:",
        "PL/DPL:",    "Lockout:", "Att:", "Mode:",     "Step:"};
    return captions[static_cast<int>(field)];
}

int easyFieldColumn(EasyField field, const ModelSwitches& model)
{
    switch (field) {
    case EasyField::Frequency: return col::freq;
    case EasyField::Tag: return col::tag;
    case EasyField::Trunk: return col::trunk;
    case EasyField::Delay: return col::delay;
    case EasyField::Record: return model.bc785d == 1 ? col::record : col::recordHidden;
    case EasyField::Beep: return col::beep;
    case EasyField::Tone: return col::tone;
    case EasyField::Lockout: return col::lockout;
    case EasyField::Atten: return col::atten;
    case EasyField::Mode: return col::mode;
    case EasyField::Step: return col::step;
    }
    return col::freq;
}

std::vector<std::string> easyFieldChoices(EasyField field, const ModelSwitches& model)
{
    if (field == EasyField::Frequency || field == EasyField::Tag) return {};
    // The Record list is an Off/On list on every model, the hidden column's too.
    const int column = field == EasyField::Record ? col::record : easyFieldColumn(field, model);
    std::vector<std::string> list = CellEntry::modelChoices(column, model);
    if (field == EasyField::Step) {
        // By size, "Auto" behind the sizes.
        auto size = [](const std::string& text) {
            return text == "Auto" ? std::numeric_limits<double>::max() : Val(text);
        };
        std::stable_sort(list.begin(), list.end(),
                         [&](const std::string& a, const std::string& b) { return size(a) < size(b); });
    }
    return list;
}

std::vector<std::string> easyStepChoices(const ModelSwitches& model)
{
    std::vector<std::string> list = {"6.25", "10.0", "12.5", "15.0", "20.0"};
    for (const std::string& step : easyFieldChoices(EasyField::Step, model)) {
        const double kHz = Val(step);
        if (kHz > 20.0) list.push_back(step);
    }
    return list;
}

std::string easyFieldCode(EasyField field, std::string_view text, const ModelSwitches& model)
{
    std::optional<std::string> code;
    switch (field) {
    case EasyField::Frequency:
    case EasyField::Tag: break;
    case EasyField::Trunk:
    case EasyField::Record:
    case EasyField::Beep:
    case EasyField::Lockout:
    case EasyField::Atten: code = onOffCode(text); break;
    case EasyField::Delay: code = delayCode(text, model.bc785d); break;
    case EasyField::Tone: code = text == "None" ? std::optional<std::string>("0") : toneCode(text); break;
    case EasyField::Mode: code = modeCode(text); break;
    case EasyField::Step: code = stepCode(text, model.x96); break;
    }
    return code.value_or(std::string(text));
}

std::string nextToneCode(std::string_view code, int steps)
{
    if (steps <= 0) return std::string(code);
    const long long v = IntVal(code);
    if (v >= 0 && v <= kToneCodes) return numText(1 + (v + steps - 1) % kToneCodes);
    if (v >= kLockedFirst && v < kLockedFirst + kToneCodes)
        return numText(kLockedFirst + (v - kLockedFirst + steps) % kToneCodes);
    return std::string(code);
}

void normaliseEasyFill(EasyFillValues& values)
{
    if (channelOf(values.from) > channelOf(values.to)) std::swap(values.from, values.to);
    if (channelOf(values.from) < 1) values.from = "1";
    if (channelOf(values.to) > kLastChannel) values.to = numText(kLastChannel);

    const double step = Val(values.step);
    if (step > kMaxStep) values.step = "10000";
    if (step < kMinStep) values.step = "5";
}

ChannelRange easyFillRange(const EasyFillValues& values)
{
    EasyFillValues corrected = values;
    normaliseEasyFill(corrected);
    return {channelOf(corrected.from), channelOf(corrected.to)};
}

void easyFill(Document& doc, EasyFillValues& values)
{
    normaliseEasyFill(values);
    const ChannelRange range{channelOf(values.from), channelOf(values.to)};
    const ModelSwitches& model = doc.model;

    // In units of 10 Hz. 8.33 kHz is a third of 25 kHz: its increment is made
    // exact enough that a thousand channels add up without drift.
    double running = Val(values.start) * 100000.0;
    double increment = Val(values.step) * 100.0;
    if (std::abs(increment - 833.0) < 1e-6) increment = 833.333333333333;

    std::optional<TagSeries> series;
    if (values.fillSeries) series = tagSeries(values.codeOf(EasyField::Tag));

    for (int c = range.first; c <= range.last; ++c) {
        if (c < 1 || c > kLastChannel) continue;
        auto& line = doc.memdata[channelBank(c)][channelRow(c)];
        const int offset = c - range.first;

        if (values.tick(EasyField::Frequency)) {
            line[col::freq] = frequencyText(running);
            running += increment;
        }
        for (int f = 1; f < kEasyFields; ++f) {
            const auto field = static_cast<EasyField>(f);
            if (!values.tick(field)) continue;
            std::string code = values.code[f];
            if (field == EasyField::Tag) code = withoutQuotes(series && offset > 0 ? series->at(offset) : code);
            if (field == EasyField::Tone && values.autoTone) code = nextToneCode(code, offset);
            line[easyFieldColumn(field, model)] = std::move(code);
        }
    }
}

} // namespace kestra
