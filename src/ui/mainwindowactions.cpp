// What the main window's entries do: the File entries, the Edit and Options
// entries over LineOperations and BankTools with the system clipboard, the
// windows they open, and Read Data and Send Data with their hand-back.

#include "ui/mainwindow.h"

#include "editor/freqrules.h"
#include "platform/qt/qtext.h"
#include "sim/programports.h"
#include "ui/backupwindow.h"
#include "ui/defaultdatawindow.h"
#include "ui/easyfillwindow.h"
#include "ui/findwindow.h"
#include "ui/banktagswindow.h"
#include "ui/easyprogramwindow.h"
#include "ui/generalparamswindow.h"
#include "ui/prioritywindow.h"
#include "ui/memorymanagerwindow.h"
#include "ui/optionswindow.h"
#include "ui/portsetupwindow.h"
#include "ui/printwindow.h"
#include "ui/replacewindow.h"
#include "ui/transferwindow.h"
#include "ui/trunkconfigwindow.h"
#include "ui/trunkidwindow.h"
#include "ui/virtualcontrolwindow.h"

#include "core/text.h"
#include "editor/backup.h"
#include "platform/cp1252.h"

#include <QClipboard>
#include <QFile>
#include <QDialog>
#include <QDialogButtonBox>
#include <QGuiApplication>
#include <QListWidget>
#include <QStatusBar>
#include <QVBoxLayout>

#include <filesystem>

namespace kestra {

void MainWindow::editUndo() { lineOps_->tabundo(); }
void MainWindow::editCut() { QGuiApplication::clipboard()->setText(toQt(lineOps_->cutcells())); }
void MainWindow::editCopy() { QGuiApplication::clipboard()->setText(toQt(lineOps_->copycells())); }
void MainWindow::editPaste() { lineOps_->pastecells(fromQt(QGuiApplication::clipboard()->text())); }
void MainWindow::editDelete() { lineOps_->cutcells(); }
void MainWindow::editCutLines() { QGuiApplication::clipboard()->setText(toQt(lineOps_->cutLines())); }
void MainWindow::editCopyLines() { QGuiApplication::clipboard()->setText(toQt(lineOps_->copyLines())); }
void MainWindow::editPasteLines() { lineOps_->pasteLines(fromQt(QGuiApplication::clipboard()->text())); }
void MainWindow::editShiftUp() { lineOps_->shiftUp(); }
void MainWindow::editShiftDown() { lineOps_->shiftDown(); }
void MainWindow::editClearSelectedLines() { lineOps_->clearSelectedLines(); }
void MainWindow::editInsertEmptyLine() { lineOps_->insertEmptyLine(); }
void MainWindow::editRemoveEmptyLines() { lineOps_->removeAllEmptyLines(); }
void MainWindow::editRemoveSelectedLines() { lineOps_->removeSelectedLines(); }
void MainWindow::editClearLockouts() { lineOps_->clearLockoutChannels(); }
void MainWindow::editFillDown() { lineOps_->fillDown(); }
void MainWindow::editSelectAll() { lineOps_->selectAll(); }
void MainWindow::editPasteSpecial() { lineOps_->pasteLinesSpecial(fromQt(QGuiApplication::clipboard()->text())); }
void MainWindow::editCenterTags() { lineOps_->centerTags(); }
void MainWindow::editRemoveLeadingSpaces() { lineOps_->removeLeadingSpaces(); }
void MainWindow::editFillDefaultData() { lineOps_->fillDefaultData(); }
void MainWindow::editFillSeries() { lineOps_->fillSeries(); }

void MainWindow::editEasyFill()
{
    // The window fills the store, perhaps of several banks: the grid goes
    // into the store (with the bank's undo copy) first and is repainted after.
    lineOps_->saveundo();
    EasyFillWindow dialog(table_, *lineOps_, this);
    dialog.exec();
    if (dialog.applied()) table_.markDirty();
    table_.fillgrid();
}

void MainWindow::editClearBank() { lineOps_->clearCurrentBank(); }

void MainWindow::editCopyChannels()
{
    // The selected lines of the bank on view are the channels offered.
    const GridSelection& s = table_.grid().selection();
    const int bank = table_.doc().currentBank;
    MemoryManagerWindow dialog(table_, lineOps_.get(), MemoryManagerWindow::Mode::Memory, this);
    dialog.presetChannels(channelNumber(bank, std::clamp(s.top(), 1, kChannelRows)),
                          channelNumber(bank, std::clamp(s.bottom(), 1, kChannelRows)));
    dialog.exec();
    // The grid is repainted by the work itself; a bank's tag may have moved.
    if (dialog.changed()) bankTagsChanged();
}

void MainWindow::editSwapBanks()
{
    MemoryManagerWindow dialog(table_, lineOps_.get(), MemoryManagerWindow::Mode::Memory, this);
    dialog.presetBanks(table_.doc().currentBank);
    dialog.exec();
    if (dialog.changed()) bankTagsChanged();
}

void MainWindow::sortAscending() { bankTools_->sortAscending(); }
void MainWindow::sortDescending() { bankTools_->sortDescending(); }

void MainWindow::findDuplicatesCurrentBank()
{
    bankTools_->findDuplicates(BankTools::Scope::CurrentBank, action("find_duplisub")->isChecked());
}

void MainWindow::findDuplicatesAllBanks()
{
    bankTools_->findDuplicates(BankTools::Scope::AllBanks, action("find_duplisub")->isChecked());
}

void MainWindow::removeDuplicates() { bankTools_->removeDuplicates(); }

void MainWindow::menuFind()
{
    // Each opening of the window searches from the first channel again.
    bankTools_->forgetLastHit();
    FindWindow dialog(table_, *bankTools_, this);
    dialog.exec();
}

void MainWindow::menuReplace()
{
    ReplaceWindow dialog(table_, *bankTools_, this);
    dialog.exec();
}

void MainWindow::afterLineOperation()
{
    updateCaption();
    updateChannelPanel();
    syncListCombos();
}

void MainWindow::afterFileCommand()
{
    // A document with a real file behind it goes first in the recent files.
    const std::string& name = table_.doc().fnaam;
    std::error_code ec;
    if (!name.empty() && name.rfind("Untitled", 0) != 0 && std::filesystem::is_regular_file(name, ec)) {
        addRecentFile(table_.profile(), name);
        updateRecentFiles();
    }
    updateCaption();
    updateTabs();
    bankChanged();
}

void MainWindow::menuNew()
{
    commitEdit();
    table_.fileNew();
    afterFileCommand();
}

void MainWindow::menuBackupRestore()
{
    if (!backup_) return;
    commitEdit();
    BackupWindow dialog(table_, *backup_, this);
    dialog.exec();
    if (dialog.restored()) afterFileCommand();
}

void MainWindow::menuOpen()
{
    commitEdit();
    table_.fileOpen();
    afterFileCommand();
}

void MainWindow::menuOpenSpecial()
{
    commitEdit();
    table_.fileOpenSpecial();
    afterFileCommand();
}

void MainWindow::menuOpenLorven()
{
    commitEdit();
    table_.fileOpenLorven();
    afterFileCommand();
}

void MainWindow::menuSave()
{
    commitEdit();
    table_.fileSave();
    afterFileCommand();
}

void MainWindow::menuSaveAs()
{
    commitEdit();
    table_.fileSaveAs();
    afterFileCommand();
}

void MainWindow::updateRecentFiles()
{
    const auto entries = readRecentFiles(table_.profile());
    const std::vector<QAction*>& menuEntries = actionArray("filenaam");
    int shown = 0;
    for (const RecentFile& entry : entries) {
        if (!entry.used || shown >= static_cast<int>(menuEntries.size())) continue;
        QAction* item = menuEntries[static_cast<std::size_t>(shown)];
        const QString path = QFile::decodeName(entry.name.c_str());
        item->setText(QStringLiteral("&%1 %2").arg(shown + 1).arg(path));
        item->setData(path);
        item->setEnabled(true);
        item->setVisible(true);
        ++shown;
    }
    for (int i = shown; i < static_cast<int>(menuEntries.size()); ++i) {
        QAction* item = menuEntries[static_cast<std::size_t>(i)];
        item->setData(QString());
        item->setText(i == 0 ? QString::fromLatin1(kNoOldFiles) : QString());
        item->setEnabled(false);
        item->setVisible(i == 0);
    }
}

void MainWindow::openRecentFile(int index)
{
    const std::vector<QAction*>& menuEntries = actionArray("filenaam");
    if (index < 0 || index >= static_cast<int>(menuEntries.size())) return;
    const QString path = menuEntries[static_cast<std::size_t>(index)]->data().toString();
    if (path.isEmpty()) return;
    commitEdit();
    const std::string name = QFile::encodeName(path).toStdString();
    std::error_code ec;
    if (!std::filesystem::is_regular_file(name, ec)) {
        table_.dialogs().message("The file " + cp1252FromUtf8(name) + " cannot be found.");
        return;
    }
    table_.openMemFile(name);
    afterFileCommand();
}

void MainWindow::menuExit()
{
    close();
}

void MainWindow::showBankEmptyStatus()
{
    // The report reads the store: carry the visible bank into it first.
    commitEdit();
    table_.createbank();

    auto* dialog = new QDialog(this);
    dialog->setObjectName("emptystatus");
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setWindowTitle("Bank Empty Status");
    auto* layout = new QVBoxLayout(dialog);
    auto* list = new QListWidget(dialog);
    list->setObjectName("List1");
    list->setSelectionMode(QAbstractItemView::NoSelection);
    list->setFont(fixedWidthFont());
    for (const std::string& line : table_.bankEmptyStatus()) list->addItem(toQt(line));
    layout->addWidget(list);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok, dialog);
    connect(buttons, &QDialogButtonBox::accepted, dialog, &QDialog::accept);
    layout->addWidget(buttons);
    dialog->resize(300, 340);
    dialog->open();
}

void MainWindow::menuSoftOptions()
{
    // Ok carries the grid into the store and fills it anew: close an open edit first.
    commitEdit();
    OptionsWindow dialog(table_, this);
    dialog.exec();
    updateTopFrame();
}

void MainWindow::menuComset()
{
    // A model change reads the grid back into the store under the old layout.
    commitEdit();
    PortSetupWindow dialog(table_, ports(), this);
    if (dialog.exec() != QDialog::Accepted) return;
    const SetupResult& chosen = dialog.result();
    table_.com = chosen.com;
    // Headers, column count, the lists of the new model in the top frame,
    // the grid filled anew and the caption with the model's menu.
    table_.setModel(chosen.model);
    // The widths kept for the new layout; the alignment goes with every cell.
    if (auto widths = readColumnWidths(table_.doc().model.bc785d, folder_.path())) setColumnWidthsTwips(*widths);
    updateCaption();
}

TransferWindow::Services MainWindow::windowServices()
{
    return {table_.doc(), table_.settings(), table_.dialogs(), table_.scheduler(), folder_.path()};
}

// The scanner's port of com250.ini for a window that opens it for itself.
TransferWindow::Link MainWindow::scannerLink()
{
    const ComSettings& com = table_.com;
    return {ports().port(com.port, table_.doc().model.model()), com.port, com.baud};
}

void MainWindow::menuReadData()
{
    // Reading clears what it reads: the unsaved document may be saved first,
    // and the grid goes into the store before the window works on it.
    commitEdit();
    if (!table_.askClearTable()) return;
    if (!table_.createbank()) return;
    Document& doc = table_.doc();
    const ModelSwitches modelBefore = doc.model;
    TransferWindow dialog(TransferWindow::Caption::ReadData, windowServices(), scannerLink(), this);
    dialog.exec();

    // The bank tags read when the window opened replace the document's after
    // a finished read, when the settings ask for it.
    const ReadPipeline* read = dialog.readPipeline();
    if (dialog.runFinished() && read && read->tagsread && table_.settings().synctagsr == 1) {
        read->applyTags(doc);
        bankTagsChanged();
    }
    // The model check of the read may have found another model on the cable:
    // the grid takes its layout without reading the old one back.
    if (!(doc.model == modelBefore)) {
        table_.applyLayout();
        updateCaption();
    }
    if (dialog.runStarted()) table_.markDirty();
    table_.fillgrid();
    if (dialog.runFinished()) {
        statusBar()->showMessage(toQt(dialog.engine().finishedLine()), kRunLineMs);
        for (const std::string& trouble : read->troubles) table_.dialogs().message(trouble);
    }
}

void MainWindow::menuSendData()
{
    // The window sends from the store: the grid goes into it first.
    commitEdit();
    if (!table_.createbank()) return;
    Document& doc = table_.doc();
    if (table_.settings().option3 == 1) {
        // The table check with the bandplan over every bank, as the upload
        // may take any of them. A check that corrected cells leaves the
        // document unsaved; the send itself changes nothing.
        const auto before = doc.memdata;
        checktable(doc, table_.settings());
        if (table_.settings().bandplan != 0) applybandplanall(doc, table_.settings());
        if (doc.memdata != before) table_.markDirty();
        table_.fillgrid();
    }
    const ModelSwitches modelBefore = doc.model;
    TransferWindow dialog(TransferWindow::Caption::SendData, windowServices(), scannerLink(), this);
    dialog.exec();
    if (dialog.runFinished()) {
        statusBar()->showMessage(toQt(dialog.engine().finishedLine()), kRunLineMs);
        if (const std::string refused = dialog.engine().refusalsLine(); !refused.empty()) table_.dialogs().message(refused);
        if (const SendPipeline* send = dialog.sendPipeline())
            for (const std::string& trouble : send->troubles) table_.dialogs().message(trouble);
    }

    // The model check of the send may have found another model on the cable:
    // the grid takes its layout without reading the old one back.
    if (!(doc.model == modelBefore)) {
        table_.applyLayout();
        updateCaption();
        table_.fillgrid();
    }
}

void MainWindow::menuVirtualControl()
{
    if (vc_ && !vc_->closed()) {
        vc_->showNormal();
        vc_->raise();
        vc_->activateWindow();
        return;
    }
    // The grid goes into the store first: the scanner's model reply may give
    // the grid another layout, which it then takes without reading it back.
    commitEdit();
    table_.createbank();
    const ComSettings com = table_.com;
    auto* window = new VirtualControlWindow(table_, ports().port(com.port, table_.doc().model.model()), recorder_);
    vc_ = window;
    window->onModelChanged = [this] {
        table_.applyLayout();
        table_.fillgrid();
        updateCaption();
    };
    const bool keepEditor = table_.settings().vcm == 1;
    window->onClosed = [this, keepEditor] {
        if (!keepEditor) setVisible(vcmainvisible_);
    };
    if (keepEditor) {
        table_.vcrunning = true;
    } else {
        vcmainvisible_ = isVisible();
        hide();
    }
    window->show();
    window->start();
}

void MainWindow::menuIdList()
{
    // The window's Copy/Move/Swap Banks may move channels: the grid goes into the store first.
    commitEdit();
    table_.createbank();
    TrunkIdWindow dialog(table_, this);
    dialog.exec();
    // Bank tags and channels may have moved with a bank's trunk settings.
    bankTagsChanged();
    table_.fillgrid();
}

void MainWindow::menuSetupDefaultData()
{
    DefaultDataWindow dialog(table_, this);
    dialog.exec();
}

void MainWindow::menuGeneralParams()
{
    commitEdit();
    Document& doc = table_.doc();
    const auto codesBefore = doc.fipscodes;
    GeneralParamsWindow dialog(windowServices(), scannerLink(), this);
    dialog.exec();
    // "Store" keeps the FIPS codes in the document.
    if (doc.fipscodes != codesBefore) table_.markDirty();
}

void MainWindow::menuPriorityChannels()
{
    commitEdit();
    PriorityWindow dialog(windowServices(), scannerLink(), this);
    dialog.exec();
}

void MainWindow::menuEasyProgram()
{
    commitEdit();
    EasyProgramWindow dialog(windowServices(), scannerLink(), this);
    dialog.exec();
}

void MainWindow::menuBankTags()
{
    commitEdit();
    BankTagsWindow dialog(windowServices(), scannerLink(), this);
    if (dialog.exec() == QDialog::Accepted && dialog.keep()) {
        table_.markDirty();
        bankTagsChanged();
    }
}

void MainWindow::menuTrunkSettings()
{
    TrunkConfigWindow dialog(table_, lineOps_.get(), this);
    dialog.exec();
    if (dialog.banksMoved()) bankTagsChanged();
}

void MainWindow::menuPrint()
{
    // The reports read the store: the grid goes into it first.
    commitEdit();
    table_.createbank();
    PrintWindow dialog(table_, this);
    dialog.exec();
}

void MainWindow::menuResetTableWidth()
{
    // The widths the grid has when no width file is kept.
    applyColumnWidths();
}

void MainWindow::menuCheckTable()
{
    commitEdit();
    checkDataInTable(table_);
}

void MainWindow::menuBandplanCurrentBank()
{
    commitEdit();
    bandplanCurrentBank(table_);
}

void MainWindow::menuBandplanAllBanks()
{
    commitEdit();
    bandplanAllBanks(table_);
}

} // namespace kestra
