// The main window's File > Import and Export entries: Advanced Data Import,
// the WebCatcher, the CSV export, ICF files, other MEM files and the CHIRP
// channel lists.

#include "ui/mainwindow.h"

#include "core/memfile.h"
#include "core/text.h"
#include "importexport/chirp.h"
#include "platform/qt/qtext.h"
#include "ui/advancedimportwindow.h"
#include "ui/csvexportwindow.h"
#include "ui/icfimportwindow.h"
#include "ui/memimportwindow.h"

namespace kestra {

namespace {
constexpr const char* kChirpFilter = "CHIRP CSV Files (*.csv)|*.csv|All Files(*.*)|*.*";
}

void MainWindow::menuAdvancedImport()
{
    commitEdit();
    table_.createbank();
    AdvancedImportWindow dialog(table_, this);
    dialog.exec();
    if (dialog.wroteTable()) table_.fillgrid();
}

void MainWindow::menuWebCatcher()
{
    commitEdit();
    table_.createbank();
    WebCatcherWindow dialog(table_, this);
    dialog.exec();
    table_.fillgrid();
}

void MainWindow::menuExportCsv()
{
    // The export reads the store: the grid goes into it first.
    commitEdit();
    table_.createbank();
    CsvExportWindow dialog(table_, this);
    dialog.exec();
}

void MainWindow::menuImportIcf()
{
    commitEdit();
    table_.createbank();
    const auto dialog = IcfImportWindow::open(table_, this);
    if (!dialog) return;
    dialog->exec();
    table_.fillgrid();
}

void MainWindow::menuImportMem(MemImportKind kind)
{
    commitEdit();
    table_.createbank();
    const auto dialog = MemImportWindow::open(kind, table_, this);
    if (!dialog) return;
    dialog->exec();
    table_.fillgrid();
}

void MainWindow::menuImportChirp()
{
    commitEdit();
    table_.createbank();
    FileChoice choice;
    choice.title = "Import CHIRP CSV";
    choice.filter = kChirpFilter;
    choice.folder = table_.startFolder(table_.opendir);
    const auto path = table_.dialogs().openFile(choice);
    if (!path) return;
    std::string bytes;
    if (!readFileBytes(*path, bytes)) {
        table_.dialogs().message("The file " + cp1252FromUtf8(*path) + " cannot be read.");
        return;
    }
    // Into the bank on view and the banks behind it.
    const ChirpImport result = chirpImport(table_, bytes, table_.doc().currentBank);
    table_.fillgrid();
    table_.dialogs().message(result.report(), "CHIRP CSV");
}

void MainWindow::menuExportChirp()
{
    commitEdit();
    table_.createbank();
    FileChoice choice;
    choice.title = "Export CHIRP CSV";
    choice.filter = kChirpFilter;
    choice.name = "*.csv";
    choice.folder = table_.startFolder(table_.savedir);
    const auto path = table_.dialogs().saveFile(choice);
    if (!path) return;
    std::string out = *path;
    if (!contains(asciiLower(out), ".csv")) out += ".csv";
    if (const std::string problem = writeFileAtomic(out, chirpExportText(table_.doc(), -1)); !problem.empty())
        table_.dialogs().message(problem);
}

} // namespace kestra
