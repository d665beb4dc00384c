#pragma once
// The grid sgrid of the Search Range Extender (its window and the Virtual
// Control's tab): one row per preset, with its number, start, end, mode,
// step and tag; a double click on a row chooses that preset.

#include "search/presets.h"

#include <QTableWidget>

#include <functional>
#include <vector>

namespace kestra {

class ExtenderGrid : public QTableWidget {
public:
    explicit ExtenderGrid(QWidget* parent = nullptr);

    void setPresets(std::vector<SearchPreset> presets);
    const std::vector<SearchPreset>& presets() const { return presets_; }

    std::function<void(const SearchPreset&)> onChosen;

private:
    std::vector<SearchPreset> presets_;
};

} // namespace kestra
