#pragma once
// The main window's routines without a window: a MemTable with a grid on a
// fresh folder, dialogs answered by script and time that runs when a test says
// so, loaded for a model as Form Load leaves it. The logic tests build their
// editors on it.

#include "core/cellcodes.h"
#include "core/memtable.h"

#include "platform/fake/memoryprofilestore.h"
#include "platform/fake/scripteddialogs.h"
#include "platform/fake/virtualscheduler.h"

#include "support/testfiles.h"

#include <string>
#include <vector>

namespace kestra::test {

// The texts of the message boxes shown so far.
inline std::vector<std::string> messageTexts(const ScriptedDialogs& dialogs)
{
    std::vector<std::string> texts;
    for (const auto& s : dialogs.shown) texts.push_back(s.text);
    return texts;
}

struct TableRig {
    explicit TableRig(Model model = Model::BC250D)
    {
        doc.model = ModelSwitches::of(model);
        table.formLoad();
    }
    TableRig(const TableRig&) = delete;
    TableRig& operator=(const TableRig&) = delete;

    // The grid column that shows a store column in the model's layout, 0 when
    // the layout has none.
    int gridCol(int storeColumn) const { return gridColumnOfStore(doc.model.bc785d, storeColumn); }
    // A grid cell of the bank on view, by the store column it shows.
    const std::string& cell(int row, int storeColumn) const { return grid.text(row, gridCol(storeColumn)); }
    void put(int row, int storeColumn, const std::string& text) { grid.setText(row, gridCol(storeColumn), text); }
    // A column of the grid, or of the store of the bank on view, over rows first..last.
    std::vector<std::string> cells(int storeColumn, int first, int last) const
    {
        std::vector<std::string> texts;
        for (int r = first; r <= last; ++r) texts.push_back(cell(r, storeColumn));
        return texts;
    }
    std::vector<std::string> stored(int column, int first, int last) const
    {
        std::vector<std::string> texts;
        for (int r = first; r <= last; ++r) texts.push_back(doc.memdata[doc.currentBank][r][column]);
        return texts;
    }
    // A grid cell of a row found by the header of its column.
    std::string shown(int row, const std::string& header) const
    {
        for (int c = 1; c < grid.cols(); ++c)
            if (grid.text(0, c) == header) return grid.text(row, c);
        return "<no column " + header + ">";
    }
    std::vector<std::string> messages() const { return messageTexts(dialogs); }

    TempDir dir;
    Document doc;
    Settings settings;
    Grid grid;
    ScriptedDialogs dialogs;
    MemoryProfileStore profile;
    VirtualScheduler scheduler;
    MemTable table{doc, settings, grid, {dialogs, profile, scheduler, AppFolder(dir.path())}};
};

} // namespace kestra::test
