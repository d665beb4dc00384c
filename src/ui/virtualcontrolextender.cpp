// The Virtual Control's "Src Extender" tab: the presets of SEARCH.TXT, any of
// which a double click loads into range J and searches there, over the
// control loop's link.

#include "ui/virtualcontrolwindow.h"

#include "link/searchlink.h"
#include "search/searchranges.h"
#include "vcontrol/extender.h"
#include "ui/widgets/extendergrid.h"

#include <QLabel>
#include <QVBoxLayout>

namespace kestra {

QWidget* VirtualControlWindow::buildExtenderTab()
{
    auto* page = new QWidget;
    page->setObjectName("Src Extender");
    auto* grid = new ExtenderGrid(page);
    grid->setPresets(extenderPresets(readSearchPresets(table_.folder().path())));
    grid->onChosen = [this](const SearchPreset& preset) {
        runExtender(*loop_, preset, commandDelay(table_.settings(), table_.com.baud));
    };
    auto* note = new QLabel("Use double click to select search range. Bank 10 is used for extended search. Extended "
                            "Search ranges are stored in search.txt file.",
                            page);
    note->setWordWrap(true);
    auto* layout = new QVBoxLayout(page);
    layout->addWidget(grid, 1);
    layout->addWidget(note);
    return page;
}

} // namespace kestra
