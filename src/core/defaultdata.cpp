#include "defaultdata.h"

#include "cellcodes.h"
#include "listreader.h"
#include "memfile.h"
#include "text.h"

#include <algorithm>

namespace kestra {

const char* DefaultData::caption(Field field)
{
    static constexpr const char* captions[FieldCount] = {"Trunk:",   "Delay Time:", "Beep Alert:", "PL/DPL",
                                                         "Lockout:", "Attenuator:", "Record Out:"};
    return captions[field];
}

std::vector<std::string> DefaultData::fieldList(Field field, int bc785d)
{
    switch (field) {
    case Delay: {
        std::vector<std::string> list;
        for (int code = 0; code < (bc785d == 1 ? 8 : 3); code += (bc785d == 1 ? 1 : 2))
            list.push_back(delayText(std::to_string(code), bc785d));
        return list;
    }
    case Tone: {
        // Position = store code: "None", the 38 tones, the 104 codes.
        std::vector<std::string> list;
        for (int code = 0; code <= 142; ++code) list.push_back(toneText(std::to_string(code)));
        return list;
    }
    default: return {"Off", "On"};
    }
}

int DefaultData::storeColumn(Field field)
{
    static constexpr int columns[FieldCount] = {col::trunk, col::delay, col::beep, col::tone,
                                                col::lockout, col::atten, col::record};
    return columns[field];
}

std::string DefaultData::gridText(Field field, int bc785d) const
{
    if (enabled[field] != 1) return {};
    const auto list = fieldList(field, bc785d);
    const int at = value[field][bc785d == 1 ? 1 : 0];
    return at >= 0 && at < static_cast<int>(list.size()) ? list[at] : std::string();
}

void readDefaultData(DefaultData& data, const std::filesystem::path& folder)
{
    std::string bytes;
    if (!readFileBytes(folder / "defdata.ini", bytes)) return;
    ListReader in(bytes);
    DefaultData read = data;
    for (int& flag : read.enabled) {
        auto field = in.field();
        if (!field) return;
        flag = Val16(*field);
    }
    for (auto& byLayout : read.value)
        for (int& v : byLayout) {
            auto field = in.field();
            if (!field) return;
            v = Val16(*field);
        }
    data = read;
}

std::string defaultDataText(const DefaultData& data)
{
    std::string out;
    for (int flag : data.enabled) out += std::to_string(flag) + "\r\n";
    for (const auto& byLayout : data.value)
        for (int v : byLayout) out += std::to_string(v) + "\r\n";
    return out;
}

std::string writeDefaultData(const DefaultData& data, const std::filesystem::path& folder)
{
    return writeFileAtomic(folder / "defdata.ini", defaultDataText(data));
}

} // namespace kestra
