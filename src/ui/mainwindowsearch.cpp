// The main window's Search entries: the range editor (Search Events), the
// Search Range Extender, and the Active Banks of the Setup menu.

#include "ui/mainwindow.h"

#include "search/presets.h"
#include "sim/programports.h"
#include "ui/activebankswindow.h"
#include "ui/searcheventswindow.h"
#include "ui/searchextenderwindow.h"

namespace kestra {

void MainWindow::menuSearchEvents()
{
    commitEdit();
    table_.createbank();
    Document& doc = table_.doc();
    const auto before = doc.srcdata;
    const ModelSwitches modelBefore = doc.model;
    const ComSettings com = table_.com;
    SearchEventsWindow dialog({doc, table_.settings(), table_.dialogs(), table_.scheduler(),
                               readSearchPresets(folder_.path())},
                              {ports().port(com.port, doc.model.model()), com.port, com.baud}, this);
    dialog.exec();
    if (doc.srcdata != before) table_.markDirty();
    // The model check may have found another model on the cable.
    if (!(doc.model == modelBefore)) {
        table_.applyLayout();
        updateCaption();
        table_.fillgrid();
    }
}

void MainWindow::menuSearchExtender()
{
    const ComSettings com = table_.com;
    SearchExtenderWindow dialog({table_.settings(), table_.dialogs(), table_.scheduler(), readSearchPresets(folder_.path())},
                                {ports().port(com.port, table_.doc().model.model()), com.port, com.baud}, this);
    dialog.exec();
}

void MainWindow::menuActiveBanks()
{
    Document& doc = table_.doc();
    const auto scan = doc.banklockm;
    const auto search = doc.banklocks;
    ActiveBanksWindow dialog(doc, this);
    dialog.exec();
    if (doc.banklockm != scan || doc.banklocks != search) table_.markDirty();
}

} // namespace kestra
