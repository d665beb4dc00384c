// The main window's menus and its two toolbars: every entry by its control
// name, the handlers they call, the View switches and the Help entries.

#include "ui/mainwindow.h"

#include "platform/qt/qtext.h"
#include "ui/widgets/toolbaricons.h"

#include <QActionGroup>
#include <QDialog>
#include <QDialogButtonBox>
#include <QKeySequence>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QTabBar>
#include <QToolBar>
#include <QVBoxLayout>

namespace kestra {

namespace {

constexpr const char* kCrLf = "\r\n";

// The buttons of the two toolbars: tip and the key of the handler.
struct ToolButton {
    const char* tip;
    const char* key;
};

constexpr ToolButton kToolbar1[] = {
    {"End program", "exit_tab"},
    {"Open a file from disk", "tabopen"},
    {"Save a file", "savenu"},
    {"Undo", "tabundo"},
    {"Cut", "tab_cut"},
    {"Copy", "tab_copy"},
    {"Paste", "tab_paste"},
    {"Copy/Move/Swap channels", "copy_channhels"},
    {"Copy/Move/Swap Banks", "swapbanks"},
    {"Clear selected lines", "memtab_delline"},
    {"Insert empty line", "memtab_inslin"},
    {"Remove empty lines", "memtab_remlines"},
    {"Remove lines and shift up", "memtab_shiftup"},
    {"Clear selected area", "tab_delete"},
    {"Fill Down", "menu_fd"},
    {"Fill Series", "menu_fs"},
    {"Fill line with default data", "filldefault"},
    {"Search Range Editor", "redit"},
    {"Read data from scanner", "menread"},
    {"Send data to scanner", "memsend"},
};

constexpr ToolButton kToolbar2[] = {
    {"Print option", "menuprint"},
    {"Advanced Data Import", "imp_csv"},
    {"WebCatcher", "catch"},
    {"Direct Tune", "ditun"},
    {"Cut Line(s)", "cut_line"},
    {"Copy Line(s)", "copy_line"},
    {"Paste Line(s)", "paste_line"},
    {"Clear sheet", "menucreate"},
    {"Center memory tags", "center_tags"},
    {"Sort Ascending", "sort_allb"},
    {"Sort Decending", "sort_rangedown"},
    {"Find Duplicates", "fd_curbank"},
    {"Remove Duplicates", "remove_dupli"},
    {"EasyFill", "tabeasy"},
    {"Find", "menufind"},
    {"Check data is valid", "checktab"},
    {"Virtual Control Panel", "vc"},
    {"Setup bank tags", "tbtags"},
    {"Software setup", "soft_options"},
    {"Shift Channel Down", "edit_shiftdown"},
    {"Shift Channel up", "edit_shiftup"},
};

} // namespace

QAction* MainWindow::addEntry(QMenu* menu, const char* name, const char* caption, bool enabled)
{
    auto* action = new QAction(QString::fromUtf8(caption), menu);
    action->setObjectName(name);
    action->setEnabled(enabled);
    menu->addAction(action);
    actions_.try_emplace(name, action);
    arrays_[name].push_back(action);
    return action;
}

QMenu* MainWindow::addSubmenu(QMenu* parentMenu, const char* name, const char* caption, bool enabled)
{
    auto* menu = new QMenu(QString::fromUtf8(caption), parentMenu);
    menu->setObjectName(name);
    menu->menuAction()->setObjectName(name);
    menu->menuAction()->setEnabled(enabled);
    parentMenu->addMenu(menu);
    actions_.try_emplace(name, menu->menuAction());
    arrays_[name].push_back(menu->menuAction());
    return menu;
}

void MainWindow::connectEntry(const char* name, void (MainWindow::*handler)())
{
    QAction* entry = action(name);
    if (entry) connect(entry, &QAction::triggered, this, [this, handler] { (this->*handler)(); });
}

void MainWindow::connectLineEntry(const char* name, void (MainWindow::*handler)())
{
    QAction* entry = action(name);
    if (!entry) return;
    entry->setEnabled(true);
    connect(entry, &QAction::triggered, this, [this, handler] {
        commitEdit();
        (this->*handler)();
        afterLineOperation();
    });
}

void MainWindow::connectPortEntry(const char* name, void (MainWindow::*handler)())
{
    QAction* entry = action(name);
    if (entry)
        connect(entry, &QAction::triggered, this, [this, handler] {
            if (table_.portFree()) (this->*handler)();
        });
}

void MainWindow::buildMenus()
{
    QMenuBar* bar = menuBar();
    auto topMenu = [this, bar](const char* name, const char* caption) {
        QMenu* menu = bar->addMenu(QString::fromUtf8(caption));
        menu->setObjectName(name);
        menu->menuAction()->setObjectName(name);
        actions_.try_emplace(name, menu->menuAction());
        arrays_[name].push_back(menu->menuAction());
        return menu;
    };

    // File
    QMenu* file = topMenu("file_tab", "&File");
    addEntry(file, "menunew", "&New", true);
    addEntry(file, "tabopen", "&Open", true);
    addEntry(file, "openspecial", "Open special", true);
    addEntry(file, "savenu", "&Save", true);
    addEntry(file, "tabsaveas", "Save &As", true);
    file->addSeparator();
    QMenu* imp = addSubmenu(file, "mnuimp2", "&Import", true);
    addEntry(imp, "impicf", "Import &ICF File");
    addEntry(imp, "impadv", "Import ICF File &Advanced...", true);
    addEntry(imp, "imp_ic2", "Frequencies from MEM File...", true);
    addEntry(imp, "imp_trtags", "Trunk ID's and Tags from MEM file", true);
    addEntry(imp, "imp_trset", "Trunk Settings from MEM file");
    addEntry(imp, "impsrc1", "Search Range Data from MEM file");
    addEntry(imp, "impchirp", "CHIRP CSV...", true);
    addEntry(file, "open_780file", "Open LORVEN mem file", true);
    addEntry(file, "expcsv", "&Export CSV Data", true);
    QMenu* exp = addSubmenu(file, "mnuexp", "Export", true);
    addEntry(exp, "expchirp", "CHIRP CSV...", true);
    file->addSeparator();
    addEntry(file, "menuprint", "&Print...");
    addEntry(file, "setup_print", "Setup Printer Layout");
    file->addSeparator();
    for (int i = 0; i < 4; ++i) {
        QAction* recent = addEntry(file, "filenaam", i == 0 ? "No old Files" : "");
        recent->setVisible(i == 0);
        connect(recent, &QAction::triggered, this, [this, i] { openRecentFile(i); });
    }
    file->addSeparator();
    addEntry(file, "imp_csv", "&Advanced Data Import", true);
    addEntry(file, "catch", "Web Frequency &Catcher", true);
    addEntry(file, "backrest", "&Backup and Restore", true);
    file->addSeparator();
    addEntry(file, "exit_tab", "E&xit", true);

    // Edit
    QMenu* edit = topMenu("tab_edit", "&Edit");
    addEntry(edit, "tabundo", "&Undo");
    edit->addSeparator();
    addEntry(edit, "tab_cut", "Cu&t");
    addEntry(edit, "tab_copy", "&Copy");
    addEntry(edit, "tab_paste", "&Paste");
    addEntry(edit, "tab_delete", "&Delete                              Del");
    edit->addSeparator();
    addEntry(edit, "cut_line", "Cut Line(s)");
    addEntry(edit, "copy_line", "Copy Line(s)");
    addEntry(edit, "paste_line", "Paste Line(s)");
    addEntry(edit, "paste_special", "Paste Line Special");
    edit->addSeparator();
    addEntry(edit, "copy_channhels", "Copy/Move/Swap Memory &Channels");
    addEntry(edit, "swapbanks", "Copy/Move/Swap Memory &Banks");
    addEntry(edit, "edit_shiftup", "Shift Channel Up");
    addEntry(edit, "edit_shiftdown", "Shift Channel Down");
    edit->addSeparator();
    addEntry(edit, "tabselect", "Select &All");
    addEntry(edit, "menufind", "&Find...");
    addEntry(edit, "menu_repl", "Replace");
    edit->addSeparator();
    addEntry(edit, "menucreate", "C&lear Current Bank");

    // View
    QMenu* view = topMenu("viewmenu", "&View");
    bankGroup_ = new QActionGroup(this);
    bankGroup_->setExclusive(true);
    for (int i = 0; i < 12; ++i) {
        const std::string caption = i < 10 ? "Bank " + std::to_string(i + 1) : i == 10 ? "Dummy" : "Search / Edge";
        QAction* bank = addEntry(view, "bk0", caption.c_str(), i < 11);
        bank->setProperty("index", i);
        bank->setCheckable(true);
        bankGroup_->addAction(bank);
        connect(bank, &QAction::triggered, this, [this, i] {
            if (i < tabbed1_->count()) tabbed1_->setCurrentIndex(i);
            updateBankChecks();
        });
    }
    view->addSeparator();
    QAction* toolbarEntry = addEntry(view, "mnu_toolb", "Toolbar", true);
    toolbarEntry->setCheckable(true);
    connect(toolbarEntry, &QAction::triggered, this, &MainWindow::toggleToolbar);
    QAction* helpbarEntry = addEntry(view, "nu_hbar", "Helpbar", true);
    helpbarEntry->setCheckable(true);
    connect(helpbarEntry, &QAction::triggered, this, &MainWindow::toggleHelpbar);
    view->addSeparator();
    addEntry(view, "restable", "Reset Table Width", true);

    // Options
    QMenu* options = topMenu("memtab_edit", "&Options");
    addEntry(options, "memtab_delline", "&Clear Selected Lines          Shift Del");
    addEntry(options, "memtab_inslin", "&Insert Empty Line");
    addEntry(options, "memtab_remlines", "Remove &All Empty Lines");
    addEntry(options, "memtab_shiftup", "&Remove Selected Lines  ");
    options->addSeparator();
    addEntry(options, "remove_pass", "Clear All &Lockout Channels");
    addEntry(options, "rempskip", "Clear All &Pskip Channels");
    options->addSeparator();
    addEntry(options, "menu_fd", "&Fill Down");
    addEntry(options, "menu_fs", "Fill Series");
    options->addSeparator();
    addEntry(options, "emptystatus", "Show Bank Empty Status", true);
    options->addSeparator();
    QMenu* dupli = addSubmenu(options, "memdupli", "Find &Duplicate Channels");
    addEntry(dupli, "fd_curbank", "in Current Bank");
    addEntry(dupli, "fd_allbanks", "in All Banks");
    addEntry(dupli, "find_duplisub", "Including Subtone")->setCheckable(true);
    addEntry(options, "remove_dupli", "Remove D&uplicate Channels");
    QMenu* sort = addSubmenu(options, "memtab_sort", "&Sort by Frequency ");
    addEntry(sort, "sort_up", "&Ascending OLD");
    addEntry(sort, "sort_down", "&Descending OLD");
    addEntry(sort, "sort_allb", "&Ascending");
    addEntry(sort, "sort_rangedown", "&Descending");
    options->addSeparator();
    addEntry(options, "tabeasy", "&Easy Fill");
    addEntry(options, "checktab", "Check &Data In Table", true);
    QMenu* runband = addSubmenu(options, "runband", "Check Table using &Bandplan", true);
    addEntry(runband, "runband1", "Current Bank", true);
    addEntry(runband, "runband2", "All Banks", true);
    options->addSeparator();
    QMenu* tags = addSubmenu(options, "tag_ption", "Table Tags Options");
    addEntry(tags, "center_tags", "Center Memory Tags");
    addEntry(tags, "rem_space", "Remove Leading Spaces");

    // The scanner model's menu.
    modelMenu_ = topMenu("men_ar5", ("&" + table_.modelName()).c_str());
    addEntry(modelMenu_, "menread", "&Read Data From Scanner", true);
    addEntry(modelMenu_, "memsend", "&Send Data To Scanner", true);
    modelMenu_->addSeparator();
    addEntry(modelMenu_, "vc", "&Virtual Control", true);
    addEntry(modelMenu_, "ditun", "Direct Tune");
    addEntry(modelMenu_, "mnu_prioch", "Priority Channels", true);
    addEntry(modelMenu_, "other82", "&Other Options", true);
    addEntry(modelMenu_, "setdelay", "&Easy program", true);
    addEntry(modelMenu_, "debugs", "Send Data Debug");
    modelMenu_->addSeparator();
    addEntry(modelMenu_, "comset", "Rs232 &Communication and Scanner Model Setup", true);

    // Trunk
    QMenu* trunk = topMenu("menu_trunk", "&Trunk");
    connect(addEntry(trunk, "mnu_idlist", "&ID List", true), &QAction::triggered, this, &MainWindow::menuIdList);
    addEntry(trunk, "trunkset", "&System Settings", true);

    // Search
    QMenu* search = topMenu("srcmenu1", "Sea&rch");
    addEntry(search, "redit", "&Range Editor", true);
    addEntry(search, "sextender", "Search Range &Extender", true);
    addEntry(search, "srclockout", "&Lockout Frequencies");

    // Setup
    QMenu* setup = topMenu("setupdt", "&Setup");
    addEntry(setup, "preset_step", "Preset &Offset Settings");
    addEntry(setup, "tbtags", "&Bank Tags", true);
    addEntry(setup, "set_search", "&Active Banks", true);
    addEntry(setup, "setdef", "Setup &Default Data", true);
    addEntry(setup, "soft_options", "&Software Options", true);

    // Help
    QMenu* help = topMenu("menu_help", "&Help");
    addEntry(help, "help_edit", "&Contents");
    addEntry(help, "srchelp", "&Search For Help On..");
    addEntry(help, "open_manaul", "Read User Manual");
    addEntry(help, "shortkey", "&Keyboard Shortcuts", true);
    help->addSeparator();
    addEntry(help, "hpabout", "&About", true);

    // The pop-up menu of the grid; it is not on the menu bar.
    tabpop_ = new QMenu("Popup", this);
    tabpop_->setObjectName("tabpop");
    tabpop_->menuAction()->setObjectName("tabpop");
    actions_.try_emplace("tabpop", tabpop_->menuAction());
    QMenu* popedit = addSubmenu(tabpop_, "popedit", "Edit", true);
    addEntry(popedit, "popcut", "Cut ");
    addEntry(popedit, "popcopy", "Copy");
    addEntry(popedit, "tabpaste", "Paste");
    addEntry(popedit, "pop_delete", "Delete");
    popedit->addSeparator();
    addEntry(popedit, "popcline", "Cut Line");
    addEntry(popedit, "popcopyline", "Copy Line");
    addEntry(popedit, "poppasteline", "Paste Line");
    popedit->addSeparator();
    addEntry(popedit, "popdel", "Clear Selected Lines");
    addEntry(popedit, "popinster", "Insert Line");
    addEntry(popedit, "popshift", "Remove Selected Lines");
    addEntry(popedit, "pop_shiftup", "Shift Channel Up");
    addEntry(popedit, "pop_shiftdown", "Shift Channel Down");
    popedit->addSeparator();
    addEntry(popedit, "easypopup", "Easy Fill");
    addEntry(popedit, "popfill", "Fill Down");

    // The toolbar's "Fill line with default data" has no menu entry of its own.
    auto* fillDefault = new QAction("Fill line with default data", this);
    fillDefault->setObjectName("filldefault");
    fillDefault->setEnabled(false);
    actions_.try_emplace("filldefault", fillDefault);

    // The keys a desktop user expects, on the entries that have none of their
    // own; the menus show them. Text1 keeps its own Cut, Copy, Paste and Undo
    // while a cell is open.
    const std::pair<const char*, const char*> keys[] = {
        {"menunew", "Ctrl+N"},   {"tabopen", "Ctrl+O"},  {"savenu", "Ctrl+S"},   {"tabsaveas", "Ctrl+Shift+S"},
        {"menuprint", "Ctrl+P"}, {"tabundo", "Ctrl+Z"},  {"tab_cut", "Ctrl+X"},  {"tab_copy", "Ctrl+C"},
        {"tab_paste", "Ctrl+V"}, {"menufind", "Ctrl+F"}, {"shortkey", "F1"},
    };
    for (const auto& [name, key] : keys) {
        QAction* entry = action(name);
        entry->setShortcut(QKeySequence(QString::fromLatin1(key)));
        entry->setShortcutContext(Qt::WindowShortcut);
    }

    // The entries that work now.
    connectEntry("menunew", &MainWindow::menuNew);
    connectEntry("tabopen", &MainWindow::menuOpen);
    connectEntry("openspecial", &MainWindow::menuOpenSpecial);
    connectEntry("open_780file", &MainWindow::menuOpenLorven);
    connectEntry("savenu", &MainWindow::menuSave);
    connectEntry("tabsaveas", &MainWindow::menuSaveAs);
    connectEntry("exit_tab", &MainWindow::menuExit);
    connectEntry("emptystatus", &MainWindow::showBankEmptyStatus);
    connectEntry("backrest", &MainWindow::menuBackupRestore);
    connectEntry("hpabout", &MainWindow::showAbout);
    connectEntry("restable", &MainWindow::menuResetTableWidth);
    connectEntry("setdef", &MainWindow::menuSetupDefaultData);
    connectEntry("soft_options", &MainWindow::menuSoftOptions);
    connectEntry("checktab", &MainWindow::menuCheckTable);
    connectEntry("runband1", &MainWindow::menuBandplanCurrentBank);
    connectEntry("runband2", &MainWindow::menuBandplanAllBanks);
    connectEntry("shortkey", &MainWindow::showShortcuts);
    connectEntry("trunkset", &MainWindow::menuTrunkSettings);
    connectPortEntry("other82", &MainWindow::menuGeneralParams);
    connectPortEntry("mnu_prioch", &MainWindow::menuPriorityChannels);
    connectPortEntry("setdelay", &MainWindow::menuEasyProgram);
    connectEntry("tbtags", &MainWindow::menuBankTags);
    action("menuprint")->setEnabled(true);
    connectEntry("menuprint", &MainWindow::menuPrint);
    connectPortEntry("comset", &MainWindow::menuComset);
    connectEntry("imp_csv", &MainWindow::menuAdvancedImport);
    connectEntry("catch", &MainWindow::menuWebCatcher);
    connectEntry("expcsv", &MainWindow::menuExportCsv);
    connectEntry("impadv", &MainWindow::menuImportIcf);
    connect(action("imp_ic2"), &QAction::triggered, this, [this] { menuImportMem(MemImportKind::Frequencies); });
    connect(action("imp_trtags"), &QAction::triggered, this, [this] { menuImportMem(MemImportKind::TrunkIds); });
    connectEntry("impchirp", &MainWindow::menuImportChirp);
    connectEntry("expchirp", &MainWindow::menuExportChirp);
    const std::pair<const char*, void (MainWindow::*)()> lineEntries[] = {
        {"tabundo", &MainWindow::editUndo},
        {"tab_cut", &MainWindow::editCut},
        {"tab_copy", &MainWindow::editCopy},
        {"tab_paste", &MainWindow::editPaste},
        {"tab_delete", &MainWindow::editDelete},
        {"cut_line", &MainWindow::editCutLines},
        {"copy_line", &MainWindow::editCopyLines},
        {"paste_line", &MainWindow::editPasteLines},
        {"edit_shiftup", &MainWindow::editShiftUp},
        {"edit_shiftdown", &MainWindow::editShiftDown},
        {"memtab_delline", &MainWindow::editClearSelectedLines},
        {"memtab_inslin", &MainWindow::editInsertEmptyLine},
        {"memtab_remlines", &MainWindow::editRemoveEmptyLines},
        {"memtab_shiftup", &MainWindow::editRemoveSelectedLines},
        {"remove_pass", &MainWindow::editClearLockouts},
        {"menu_fd", &MainWindow::editFillDown},
        {"menu_fs", &MainWindow::editFillSeries},
        {"tabeasy", &MainWindow::editEasyFill},
        {"easypopup", &MainWindow::editEasyFill},
        {"menucreate", &MainWindow::editClearBank},
        {"tabselect", &MainWindow::editSelectAll},
        {"paste_special", &MainWindow::editPasteSpecial},
        {"center_tags", &MainWindow::editCenterTags},
        {"rem_space", &MainWindow::editRemoveLeadingSpaces},
        {"filldefault", &MainWindow::editFillDefaultData},
        {"copy_channhels", &MainWindow::editCopyChannels},
        {"swapbanks", &MainWindow::editSwapBanks},
        {"sort_allb", &MainWindow::sortAscending},
        {"sort_rangedown", &MainWindow::sortDescending},
        {"sort_up", &MainWindow::sortAscending},
        {"sort_down", &MainWindow::sortDescending},
        {"fd_curbank", &MainWindow::findDuplicatesCurrentBank},
        {"fd_allbanks", &MainWindow::findDuplicatesAllBanks},
        {"remove_dupli", &MainWindow::removeDuplicates},
        {"menufind", &MainWindow::menuFind},
        {"menu_repl", &MainWindow::menuReplace},
        {"popcut", &MainWindow::editCut},
        {"popcopy", &MainWindow::editCopy},
        {"tabpaste", &MainWindow::editPaste},
        {"pop_delete", &MainWindow::editDelete},
        {"popcline", &MainWindow::editCutLines},
        {"popcopyline", &MainWindow::editCopyLines},
        {"poppasteline", &MainWindow::editPasteLines},
        {"popdel", &MainWindow::editClearSelectedLines},
        {"popinster", &MainWindow::editInsertEmptyLine},
        {"popshift", &MainWindow::editRemoveSelectedLines},
        {"pop_shiftup", &MainWindow::editShiftUp},
        {"pop_shiftdown", &MainWindow::editShiftDown},
        {"popfill", &MainWindow::editFillDown},
    };
    for (const auto& [name, handler] : lineEntries) connectLineEntry(name, handler);
    // A switch of the duplicate search: checked, the PL/DPL codes must be the same too.
    action("find_duplisub")->setEnabled(true);
    connectPortEntry("menread", &MainWindow::menuReadData);
    connectPortEntry("memsend", &MainWindow::menuSendData);
    connectEntry("vc", &MainWindow::menuVirtualControl);
    connectPortEntry("redit", &MainWindow::menuSearchEvents);
    connectPortEntry("sextender", &MainWindow::menuSearchExtender);
    connectEntry("set_search", &MainWindow::menuActiveBanks);
}

void MainWindow::buildToolbars()
{
    auto build = [this](const char* name, const auto& buttons) {
        auto* bar = new QToolBar(QString::fromUtf8(name), this);
        bar->setObjectName(name);
        bar->setIconSize(QSize(22, 22));
        bar->setFloatable(false);
        for (const ToolButton& button : buttons) {
            auto* tool = new QAction(pictureIcon(button.key), QString::fromUtf8(button.tip), bar);
            tool->setToolTip(QString::fromUtf8(button.tip));
            tool->setStatusTip(QString::fromUtf8(button.tip));
            tool->setProperty("key", QString::fromUtf8(button.key));
            // The button calls the handler of its menu entry and is usable when that entry is.
            if (QAction* entry = action(button.key)) {
                tool->setEnabled(entry->isEnabled());
                connect(entry, &QAction::enabledChanged, tool, &QAction::setEnabled);
                connect(tool, &QAction::triggered, entry, [entry] { entry->trigger(); });
            } else {
                tool->setEnabled(false);
            }
            bar->addAction(tool);
        }
        return bar;
    };
    toolbar1_ = build("Toolbar1", kToolbar1);
    toolbar2_ = build("Toolbar2", kToolbar2);
    addToolBar(Qt::TopToolBarArea, toolbar1_);
    addToolBarBreak(Qt::TopToolBarArea);
    addToolBar(Qt::TopToolBarArea, toolbar2_);
}

void MainWindow::showShortcuts()
{
    auto* dialog = new QDialog(this);
    dialog->setObjectName("shortcuts");
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setWindowTitle("Keyboard Shortcuts");
    auto* layout = new QVBoxLayout(dialog);
    QStringList lines;
    for (const std::string& line : CellEntry::shortcutLines()) lines << toQt(line);
    auto* text = new QLabel(lines.join('\n'), dialog);
    text->setObjectName("Label1");
    text->setTextFormat(Qt::PlainText);
    layout->addWidget(text);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok, dialog);
    connect(buttons, &QDialogButtonBox::accepted, dialog, &QDialog::accept);
    layout->addWidget(buttons);
    dialog->open();
}

void MainWindow::toggleToolbar(bool on)
{
    table_.settings().toolbar = on ? 1 : 0;
    toolbar1_->setVisible(on);
    toolbar2_->setVisible(on);
}

void MainWindow::toggleHelpbar(bool on)
{
    table_.settings().helpbar = on ? 1 : 0;
    helpbar_->setVisible(on);
}

void MainWindow::showAbout()
{
    std::string text = kApplicationTitle;
    text += kCrLf;
    text += kCrLf;
    text += "Programs and remote-controls the Uniden BC250D, BC296D, BC785D, BC796D and UBC3300 trunk-tracking scanners.";
    table_.dialogs().message(text, "About Kestra Console", Buttons::Ok, Icon::Information);
}

} // namespace kestra
