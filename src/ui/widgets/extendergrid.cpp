#include "ui/widgets/extendergrid.h"

#include "platform/qt/qtext.h"

#include <QHeaderView>

namespace kestra {

namespace {
constexpr int kTwipsPerPixel = 15;
constexpr int kWidthsTwips[] = {500, 1200, 1200, 600, 600, 3300};
} // namespace

ExtenderGrid::ExtenderGrid(QWidget* parent) : QTableWidget(parent)
{
    setObjectName("sgrid");
    setColumnCount(6);
    setHorizontalHeaderLabels({"", "Start", "End", "Mode", "Step", "Tag"});
    verticalHeader()->setVisible(false);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setSelectionMode(QAbstractItemView::SingleSelection);
    for (int c = 0; c < 6; ++c) setColumnWidth(c, kWidthsTwips[c] / kTwipsPerPixel);
    connect(this, &QTableWidget::cellDoubleClicked, this, [this](int row, int) {
        if (row >= 0 && row < static_cast<int>(presets_.size()) && onChosen) onChosen(presets_[static_cast<std::size_t>(row)]);
    });
}

void ExtenderGrid::setPresets(std::vector<SearchPreset> presets)
{
    presets_ = std::move(presets);
    setRowCount(static_cast<int>(presets_.size()));
    for (int r = 0; r < rowCount(); ++r) {
        const SearchPreset& p = presets_[static_cast<std::size_t>(r)];
        int c = 0;
        for (const std::string& text : {std::to_string(r + 1), p.start, p.end, p.mode, p.step, p.tag})
            setItem(r, c++, new QTableWidgetItem(toQt(text)));
    }
}

} // namespace kestra
