#include "ui/mainwindow.h"
#include "sim/programports.h"
#include "platform/qt/qtserialport.h"
#include "ui/transferwindow.h"
#include "ui/backupwindow.h"
#include "ui/portsetupwindow.h"
#include "ui/defaultdatawindow.h"
#include "ui/easyfillwindow.h"
#include "ui/memorymanagerwindow.h"
#include "ui/findwindow.h"
#include "ui/optionswindow.h"
#include "ui/replacewindow.h"
#include "ui/widgets/toolbaricons.h"
#include "editor/freqrules.h"
#include "platform/qt/qtext.h"

#include "ui/widgets/gridmodel.h"
#include "core/text.h"

#include <QActionGroup>
#include <QApplication>
#include <QCloseEvent>
#include <QClipboard>
#include <QComboBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QFrame>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QIcon>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QScreen>
#include <QScrollBar>
#include <QProgressBar>
#include <QStatusBar>
#include <QTabBar>
#include <QTableView>
#include <QToolBar>
#include <QVBoxLayout>

#include <cmath>
#include <functional>

namespace kestra {

namespace {


constexpr int twipsToPixels(int twips) { return (twips + 7) / 15; }

constexpr const char* kHelpText = "Use right mouse button click in grid to show the popup menu";
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

// The grid view. Its keys go to the cell entry first; what that leaves (the
// arrows, paging and the like) moves through the grid as usual.
class GridView : public QTableView {
public:
    using QTableView::QTableView;

    std::function<bool(QKeyEvent*)> keyHandler;

protected:
    void keyPressEvent(QKeyEvent* event) override
    {
        if (keyHandler && keyHandler(event)) return;
        QTableView::keyPressEvent(event);
    }
};

// Text1, the in-place text box over a frequency or tag cell. Enter closes it
// into the grid and moves on, Escape drops it, and losing the focus to
// something else in the window closes it into the grid where it stands.
class CellBox : public QLineEdit {
public:
    using QLineEdit::QLineEdit;

    std::function<void()> onEnter, onEscape, onFocusLost;

protected:
    void keyPressEvent(QKeyEvent* event) override
    {
        switch (event->key()) {
        case Qt::Key_Return:
        case Qt::Key_Enter:
            if (onEnter) onEnter();
            return;
        case Qt::Key_Escape:
            if (onEscape) onEscape();
            return;
        default: QLineEdit::keyPressEvent(event);
        }
    }
    void focusOutEvent(QFocusEvent* event) override
    {
        QLineEdit::focusOutEvent(event);
        // A menu or another program taking the focus for a while leaves the box open.
        if (event->reason() == Qt::PopupFocusReason || event->reason() == Qt::ActiveWindowFocusReason) return;
        if (onFocusLost) onFocusLost();
    }
};

} // namespace

// ---- Construction ------------------------------------------------------------------

MainWindow::MainWindow(MemTable& table, AppFolder folder, QWidget* parent)
    : QMainWindow(parent), table_(table), folder_(std::move(folder))
{
    setObjectName("memtab");
    setWindowTitle(QString::fromStdString(table_.caption()));
    setContextMenuPolicy(Qt::PreventContextMenu);   // no built-in toolbar menu beside View > Toolbar

    model_ = new GridModel(table_.grid(), table_.settings(), this);
    model_->onEdited = [this](int, int) { table_.markDirty(); };
    frequency_ = std::make_unique<FrequencyEntry>(table_);
    cellEntry_ = std::make_unique<CellEntry>(table_, *frequency_);
    lineOps_ = std::make_unique<LineOperations>(table_);
    bankTools_ = std::make_unique<BankTools>(table_, *lineOps_);
    // Shift+Delete, Ctrl+D and Ctrl+U run the menu entries of the same work.
    cellEntry_->clearSelectedLines = [this] { action("memtab_delline")->trigger(); };
    cellEntry_->tell = [this](const std::string& text) { statusBar()->showMessage(toQt(text), kRunLineMs); };
    cellEntry_->shiftChannelDown = [this] { action("edit_shiftdown")->trigger(); };
    cellEntry_->shiftChannelUp = [this] { action("edit_shiftup")->trigger(); };

    buildMenus();
    buildToolbars();
    buildCentral();
    buildStatusBar();

    table_.setView(this);
    resize(1020, 700);
}

MainWindow::~MainWindow()
{
    table_.setView(nullptr);
    while (busy_ > 0) setBusy(false);
}

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

ProgramPorts& MainWindow::ports()
{
    if (ports_) return *ports_;
    if (!ownPorts_) ownPorts_ = std::make_unique<ProgramPorts>(table_.scheduler(), folder_.path(), &QtSerialPort::openDevice);
    return *ownPorts_;
}

QAction* MainWindow::action(const std::string& name) const
{
    auto it = actions_.find(name);
    return it == actions_.end() ? nullptr : it->second;
}

const std::vector<QAction*>& MainWindow::actionArray(const std::string& name) const
{
    static const std::vector<QAction*> none;
    auto it = arrays_.find(name);
    return it == arrays_.end() ? none : it->second;
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
    QMenu* imp = addSubmenu(file, "mnuimp2", "&Import", false);
    addEntry(imp, "impicf", "Import &ICF File");
    addEntry(imp, "impadv", "Import ICF File &Advanced...");
    addEntry(imp, "imp_ic2", "Frequencies from MEM File...");
    addEntry(imp, "imp_trtags", "Trunk ID's and Tags from MEM file");
    addEntry(imp, "imp_trset", "Trunk Settings from MEM file");
    addEntry(imp, "impsrc1", "Search Range Data from MEM file");
    addEntry(file, "open_780file", "Open LORVEN mem file", true);
    addEntry(file, "expcsv", "&Export CSV Data");
    file->addSeparator();
    addEntry(file, "menuprint", "&Print...");
    addEntry(file, "setup_print", "Setup Printer Layout");
    file->addSeparator();
    addEntry(file, "filenaam", "No old Files");
    for (int i = 1; i < 4; ++i) addEntry(file, "filenaam", "")->setVisible(false);
    file->addSeparator();
    addEntry(file, "imp_csv", "&Advanced Data Import");
    addEntry(file, "catch", "Web Frequency &Catcher");
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
    addEntry(modelMenu_, "vc", "&Virtual Control");
    addEntry(modelMenu_, "ditun", "Direct Tune");
    addEntry(modelMenu_, "mnu_prioch", "Priority Channels");
    addEntry(modelMenu_, "other82", "&Other Options");
    addEntry(modelMenu_, "setdelay", "&Easy program");
    addEntry(modelMenu_, "debugs", "Send Data Debug");
    modelMenu_->addSeparator();
    addEntry(modelMenu_, "comset", "Rs232 &Communication and Scanner Model Setup", true);

    // Trunk
    QMenu* trunk = topMenu("menu_trunk", "&Trunk");
    addEntry(trunk, "mnu_idlist", "&ID List");
    addEntry(trunk, "trunkset", "&System Settings");

    // Search
    QMenu* search = topMenu("srcmenu1", "Sea&rch");
    addEntry(search, "redit", "&Range Editor");
    addEntry(search, "sextender", "Search Range &Extender");
    addEntry(search, "srclockout", "&Lockout Frequencies");

    // Setup
    QMenu* setup = topMenu("setupdt", "&Setup");
    addEntry(setup, "preset_step", "Preset &Offset Settings");
    addEntry(setup, "tbtags", "&Bank Tags");
    addEntry(setup, "set_search", "&Active Banks");
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
    connectPortEntry("comset", &MainWindow::menuComset);
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

void MainWindow::buildCentral()
{
    auto* central = new QWidget(this);
    auto* layout = new QVBoxLayout(central);
    layout->setContentsMargins(4, 2, 4, 2);
    layout->setSpacing(0);

    auto* helpFrame = new QFrame(central);
    helpFrame->setObjectName("helpbar");
    helpFrame->setFrameStyle(QFrame::StyledPanel | QFrame::Sunken);
    auto* helpLayout = new QHBoxLayout(helpFrame);
    helpLayout->setContentsMargins(6, 2, 6, 2);
    auto* helpText = new QLabel(kHelpText, helpFrame);
    helpText->setObjectName("helptext");
    helpLayout->addWidget(helpText, 1);
    helpbar_ = helpFrame;
    layout->addWidget(helpFrame);
    layout->addSpacing(2);
    layout->addWidget(buildTopFrame(central));
    layout->addSpacing(4);

    tabbed1_ = new QTabBar(central);
    tabbed1_->setObjectName("tabbed1");
    tabbed1_->setExpanding(false);
    tabbed1_->setUsesScrollButtons(true);
    tabbed1_->setDrawBase(false);
    for (int bank = 0; bank <= kDummyBank; ++bank) tabbed1_->addTab(toQt(table_.tabCaption(bank)));
    connect(tabbed1_, &QTabBar::currentChanged, this, &MainWindow::onTabChanged);
    layout->addWidget(tabbed1_);

    auto* frame = new QFrame(central);
    frame->setObjectName("Frame1");
    frame->setFrameStyle(QFrame::StyledPanel | QFrame::Raised);
    auto* frameLayout = new QVBoxLayout(frame);
    frameLayout->setContentsMargins(6, 4, 6, 6);
    frameLayout->setSpacing(4);
    frameLabel_ = new QLabel(frame);
    frameLabel_->setObjectName("framelabel");
    QFont bold = frameLabel_->font();
    bold.setBold(true);
    frameLabel_->setFont(bold);
    frameLayout->addWidget(frameLabel_);

    auto* view = new GridView(frame);
    view->setObjectName("memtabel");
    view->setModel(model_);
    view->setSelectionMode(QAbstractItemView::ContiguousSelection);
    view->setSelectionBehavior(QAbstractItemView::SelectItems);
    // No editor of the view's own: text cells are typed into Text1, list cells change by key.
    view->setEditTriggers(QAbstractItemView::NoEditTriggers);
    view->setAlternatingRowColors(true);
    view->setCornerButtonEnabled(false);
    view->setWordWrap(false);
    view->setContextMenuPolicy(Qt::CustomContextMenu);
    const QFontMetrics metrics(view->font());
    view->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    view->verticalHeader()->setDefaultSectionSize(metrics.height() + 6);
    view->verticalHeader()->setFixedWidth(std::max(twipsToPixels(500), metrics.horizontalAdvance("10000") + 10));
    view->horizontalHeader()->setMinimumHeight(twipsToPixels(250));
    view->horizontalHeader()->setHighlightSections(true);
    memtabel_ = view;
    frameLayout->addWidget(view, 1);
    layout->addWidget(frame, 1);

    auto* box = new CellBox(view->viewport());
    box->setObjectName("Text1");
    box->setFrame(false);
    box->hide();
    box->onEnter = [this] { closeText1(true, true); };
    box->onEscape = [this] { closeText1(false, false); };
    box->onFocusLost = [this] { closeText1(true, false); };
    text1_ = box;
    view->keyHandler = [this](QKeyEvent* event) { return gridKey(event); };
    connect(view, &QAbstractItemView::doubleClicked, this, [this](const QModelIndex& index) {
        gridDoubleClicked(GridModel::gridRow(index), GridModel::gridCol(index));
    });
    // The box stays over its cell while the grid scrolls or its columns change width.
    connect(view->horizontalScrollBar(), &QScrollBar::valueChanged, this, &MainWindow::placeText1);
    connect(view->verticalScrollBar(), &QScrollBar::valueChanged, this, &MainWindow::placeText1);
    connect(view->horizontalHeader(), &QHeaderView::sectionResized, this, &MainWindow::placeText1);

    model_->bindSelection(view->selectionModel());
    connect(model_, &QAbstractItemModel::modelReset, this, &MainWindow::layoutColumnsChanged);
    connect(model_, &GridModel::gridShownChanged, view, [view](bool shown) { view->setUpdatesEnabled(shown); });
    connect(view->selectionModel(), &QItemSelectionModel::currentChanged, this, [this] {
        updateChannelPanel();
        updateSmartInfo();
        syncListCombos();
    });
    connect(view, &QWidget::customContextMenuRequested, this, [this, view](const QPoint& pos) {
        // The Edit entries of the pop-up menu, at the mouse.
        if (QAction* popedit = action("popedit"); popedit && popedit->menu())
            popedit->menu()->popup(view->viewport()->mapToGlobal(pos));
    });

    setCentralWidget(central);
}

QWidget* MainWindow::buildTopFrame(QWidget* parent)
{
    auto* frame = new QFrame(parent);
    frame->setObjectName("topframe");
    frame->setFrameStyle(QFrame::StyledPanel | QFrame::Raised);
    auto* layout = new QVBoxLayout(frame);
    layout->setContentsMargins(6, 3, 6, 3);
    layout->setSpacing(3);

    // Smart Info: what the active column takes and how.
    smartBar_ = new QWidget(frame);
    smartBar_->setObjectName("smartinfo");
    auto* smartLayout = new QHBoxLayout(smartBar_);
    smartLayout->setContentsMargins(0, 0, 0, 0);
    smartLayout->setSpacing(8);
    smartTitle_ = new QLabel(smartBar_);
    smartTitle_->setObjectName("smarttitle");
    QFont bold = smartTitle_->font();
    bold.setBold(true);
    smartTitle_->setFont(bold);
    smartTitle_->setMinimumWidth(QFontMetrics(bold).horizontalAdvance("Record output:") + 6);
    smartText_ = new QLabel(smartBar_);
    smartText_->setObjectName("smarttext");
    smartText_->setTextFormat(Qt::PlainText);
    smartText_->setMinimumWidth(100);
    smartText_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    smartLayout->addWidget(smartTitle_);
    smartLayout->addWidget(smartText_, 1);
    layout->addWidget(smartBar_);

    // The lists: a choice goes into its column of every selected row. A
    // narrow window cuts the row off at the right rather than growing for it.
    auto* listRow = new QWidget(frame);
    listRow->setObjectName("lists");
    listRow->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    auto* lists = new QHBoxLayout(listRow);
    lists->setContentsMargins(0, 0, 0, 0);
    lists->setSpacing(4);
    auto addCombo = [listRow, lists](const char* caption, const char* name, int minChars) {
        auto* label = new QLabel(QString::fromUtf8(caption), listRow);
        auto* combo = new QComboBox(listRow);
        combo->setObjectName(name);
        combo->setSizeAdjustPolicy(QComboBox::AdjustToContents);
        combo->setMinimumContentsLength(minChars);
        combo->setMaxVisibleItems(20);
        label->setBuddy(combo);
        lists->addWidget(label);
        lists->addWidget(combo);
        lists->addSpacing(8);
        return combo;
    };
    combostep_ = addCombo("Step:", "combostep", 5);
    modecombo_ = addCombo("Mode:", "modecombo", 4);
    delaycombo_ = addCombo("Delay:", "delaycombo", 4);
    ctc_ = addCombo("CTCSS:", "ctc", 5);
    dcsc_ = addCombo("DCS:", "dcsc", 4);
    lists->addStretch(1);
    for (const auto& [combo, column] : {std::pair{combostep_, col::step}, std::pair{modecombo_, col::mode},
                                        std::pair{delaycombo_, col::delay}, std::pair{ctc_, col::tone},
                                        std::pair{dcsc_, col::tone}}) {
        QComboBox* box = combo;
        const int storeColumn = column;
        connect(box, &QComboBox::activated, this, [this, box, storeColumn] { listChosen(storeColumn, box); });
    }
    for (const std::string& tone : CellEntry::ctcChoices()) ctc_->addItem(toQt(tone));
    for (const std::string& code : CellEntry::dcsChoices()) dcsc_->addItem(toQt(code));

    // The Easy Tag lists: all tags, and the tags of the current bank.
    easyTags_ = new QWidget(listRow);
    easyTags_->setObjectName("easytags");
    auto* tagLayout = new QHBoxLayout(easyTags_);
    tagLayout->setContentsMargins(0, 0, 0, 0);
    tagLayout->setSpacing(4);
    auto tagCombo = [this](const char* name) {
        auto* combo = new QComboBox(easyTags_);
        combo->setObjectName(name);
        combo->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
        combo->setMinimumContentsLength(16);
        combo->setMaxVisibleItems(20);
        connect(combo, &QComboBox::activated, this, [this, combo] { tagChosen(combo); });
        return combo;
    };
    tagLayout->addWidget(new QLabel("Tags:", easyTags_));
    textcombo_ = tagCombo("textcombo");
    tagLayout->addWidget(textcombo_);
    tagLayout->addSpacing(8);
    tagLayout->addWidget(new QLabel("Bank Tags:", easyTags_));
    for (int bank = 0; bank < 10; ++bank) {
        bankcombos_[bank] = tagCombo("bankcombo");
        bankcombos_[bank]->setProperty("index", bank);
        bankcombos_[bank]->setVisible(false);
        tagLayout->addWidget(bankcombos_[bank]);
    }
    lists->addWidget(easyTags_);
    layout->addWidget(listRow);

    topFrame_ = frame;
    return frame;
}

void MainWindow::buildStatusBar()
{
    auto* bar = new QStatusBar(this);
    bar->setObjectName("StatusBar1");
    setStatusBar(bar);
    auto panel = [bar](const char* name) {
        auto* label = new QLabel(bar);
        label->setObjectName(name);
        label->setFrameStyle(QFrame::Panel | QFrame::Sunken);
        label->setContentsMargins(4, 0, 4, 0);
        return label;
    };
    panelChannel_ = panel("panel1");
    panelChannel_->setMinimumWidth(110);
    panelFile_ = panel("panel2");
    panelFile_->setTextFormat(Qt::PlainText);
    panelProgress_ = new QWidget(bar);
    panelProgress_->setObjectName("panel3");
    panelProgress_->setFixedWidth(200);
    auto* progressLayout = new QHBoxLayout(panelProgress_);
    progressLayout->setContentsMargins(0, 1, 0, 1);
    prstatus_ = new QProgressBar(panelProgress_);
    prstatus_->setObjectName("prstatus");
    prstatus_->setRange(0, 100);
    prstatus_->setTextVisible(false);
    prstatus_->hide();
    progressLayout->addWidget(prstatus_);
    bar->addWidget(panelChannel_);
    bar->addWidget(panelFile_, 1);
    bar->addWidget(panelProgress_);
    updateChannelPanel();
    panelFile_->setText(QString::fromStdString(table_.doc().fnaam));
}

QFont MainWindow::fixedWidthFont()
{
    const QStringList families = QFontDatabase::families();
    for (const char* name : {"Lucida Console", "Courier New"})
        if (families.contains(QString::fromLatin1(name), Qt::CaseInsensitive)) return QFont(QString::fromLatin1(name));
    return QFontDatabase::systemFont(QFontDatabase::FixedFont);
}

// ---- Form Load ------------------------------------------------------------------------

void MainWindow::formLoad()
{
    model_->setFixedFont(fixedWidthFont());
    table_.formLoad();
    backup_ = std::make_unique<Backup>(table_);
    // The recent-file keys are read; the File menu keeps "No old Files".
    readRecentFiles(table_.profile());

    const Settings& settings = table_.settings();
    action("mnu_toolb")->setChecked(settings.toolbar == 1);
    toolbar1_->setVisible(settings.toolbar == 1);
    toolbar2_->setVisible(settings.toolbar == 1);
    action("nu_hbar")->setChecked(settings.helpbar == 1);
    helpbar_->setVisible(settings.helpbar == 1);

    if (settings.window == 1) {
        if (auto saved = readWindowPlace(folder_.path())) setPlace(*saved);
    }

    model_->reload();
    fillListCombos();
    easyTagsRebuilt();
    updateTopFrame();
    applyColumnWidths();
    if (settings.tabwidth == 1) {
        if (auto widths = readColumnWidths(table_.doc().model.bc785d, folder_.path())) setColumnWidthsTwips(*widths);
    }
    updateTabs();
    updateCaption();
    bankChanged();
}

WindowPlace MainWindow::place() const
{
    const QRect normal = isMaximized() || isMinimized() ? normalGeometry() : QRect(pos(), size());
    WindowPlace p;
    p.left = normal.left() * 15;
    p.top = normal.top() * 15;
    p.width = normal.width() * 15;
    p.height = normal.height() * 15;
    p.state = isMaximized() ? 2 : 0;
    return p;
}

void MainWindow::setPlace(const WindowPlace& place)
{
    if (place.width > 0 && place.height > 0) resize(twipsToPixels(place.width), twipsToPixels(place.height));
    // A place on a screen that is no longer there is not taken.
    const QPoint topLeft(place.left / 15, place.top / 15);
    if (QGuiApplication::screenAt(topLeft + QPoint(width() / 2, height() / 2))) move(topLeft);
    // A window that was minimised opens normally; there is nothing to see of it otherwise.
    setWindowState(place.state == 2 ? Qt::WindowMaximized : Qt::WindowNoState);
}

std::vector<int> MainWindow::columnWidthsTwips() const
{
    std::vector<int> widths;
    for (int c = 0; c < model_->columnCount(); ++c) widths.push_back(memtabel_->columnWidth(c) * 15);
    return widths;
}

void MainWindow::setColumnWidthsTwips(const std::vector<int>& widths)
{
    for (int c = 0; c < model_->columnCount() && c < int(widths.size()); ++c)
        memtabel_->setColumnWidth(c, twipsToPixels(widths[c]));
}

void MainWindow::layoutColumnsChanged()
{
    // Another scanner family: the widths kept for its layout, else the defaults.
    applyColumnWidths();
    if (auto widths = readColumnWidths(table_.doc().model.bc785d, folder_.path())) setColumnWidthsTwips(*widths);
}

// ---- What the window shows ------------------------------------------------------------

void MainWindow::updateCaption()
{
    setWindowTitle(QString::fromStdString(table_.caption()));
    modelMenu_->setTitle(toQt("&" + table_.modelName()));
    panelFile_->setText(QString::fromStdString(table_.doc().fnaam));
}

void MainWindow::updateTabs()
{
    for (int bank = 0; bank < tabbed1_->count(); ++bank) tabbed1_->setTabText(bank, toQt(table_.tabCaption(bank)));
}

void MainWindow::updateFrameLabel()
{
    frameLabel_->setText(toQt(table_.frameLabel()));
}

void MainWindow::updateBankChecks()
{
    const int bank = table_.doc().currentBank;
    for (QAction* entry : actionArray("bk0")) entry->setChecked(entry->property("index").toInt() == bank);
}

void MainWindow::updateChannelPanel()
{
    if (!panelChannel_) return;
    const int row = std::max(1, table_.grid().selection().row);
    panelChannel_->setText(QString(" Channel %1").arg(channelNumber(table_.doc().currentBank, row)));
}

void MainWindow::applyColumnWidths()
{
    const QFontMetrics metrics(memtabel_->font());
    for (int c = 0; c < model_->columnCount(); ++c) {
        const int gridCol = c + 1;
        const int chars = gridCol == 1 ? 11 : gridCol == 2 ? 18 : 9;
        const QString header = model_->headerData(c, Qt::Horizontal).toString();
        memtabel_->setColumnWidth(c, std::max(metrics.horizontalAdvance(QString(chars, 'X')) * 3 / 4,
                                              metrics.horizontalAdvance(header) + 18));
    }
}

// ---- MemtabView ----------------------------------------------------------------------------

void MainWindow::showProgress(int percent)
{
    prstatus_->setValue(std::clamp(percent, 0, 100));
    if (!prstatus_->isVisible()) prstatus_->show();
    if (prstatus_->isVisible()) prstatus_->repaint();
}

void MainWindow::hideProgress()
{
    prstatus_->hide();
}

void MainWindow::bankTagsChanged()
{
    updateTabs();
    updateFrameLabel();
}

void MainWindow::captionChanged()
{
    updateCaption();
}

void MainWindow::layoutChanged()
{
    model_->reload();
    updateChannelPanel();
    fillListCombos();
    updateSmartInfo();
}

void MainWindow::bankChanged()
{
    const int bank = table_.doc().currentBank;
    if (bank >= 0 && bank < tabbed1_->count() && tabbed1_->currentIndex() != bank) {
        tabSync_ = true;
        tabbed1_->setCurrentIndex(bank);
        tabSync_ = false;
    }
    updateFrameLabel();
    updateBankChecks();
    updateChannelPanel();
    updateTopFrame();
}

void MainWindow::setBusy(bool busy)
{
    if (busy) {
        QApplication::setOverrideCursor(Qt::WaitCursor);
        ++busy_;
    } else if (busy_ > 0) {
        QApplication::restoreOverrideCursor();
        --busy_;
    }
}

void MainWindow::commitEdit()
{
    closeText1(true, false);
}

void MainWindow::easyTagsRebuilt()
{
    const Document& doc = table_.doc();
    auto refill = [](QComboBox* combo, const std::vector<std::string>& tags) {
        combo->clear();
        for (const std::string& tag : tags) combo->addItem(toQt(tag));
    };
    refill(textcombo_, doc.easytags);
    for (int bank = 0; bank < 10; ++bank) refill(bankcombos_[bank], doc.banktaglist[bank]);
}

// ---- The top frame --------------------------------------------------------------------------

void MainWindow::updateTopFrame()
{
    const Settings& settings = table_.settings();
    smartBar_->setVisible(settings.smart == 1);
    easyTags_->setVisible(settings.option9 == 1);
    const int bank = table_.doc().currentBank;
    for (int b = 0; b < 10; ++b) bankcombos_[b]->setVisible(b == bank);
    updateSmartInfo();
}

void MainWindow::updateSmartInfo()
{
    if (table_.settings().smart != 1) return;
    const SmartInfo info = cellEntry_->smartInfo(table_.grid().selection().col);
    smartTitle_->setText(toQt(info.title));
    smartText_->setText(toQt(info.text));
    smartText_->setToolTip(smartText_->text());
}

void MainWindow::fillListCombos()
{
    auto refill = [](QComboBox* combo, const std::vector<std::string>& texts) {
        combo->clear();
        for (const std::string& text : texts) combo->addItem(toQt(text));
    };
    refill(combostep_, cellEntry_->choices(col::step));
    refill(modecombo_, cellEntry_->choices(col::mode));
    refill(delaycombo_, cellEntry_->choices(col::delay));
    syncListCombos();
}

void MainWindow::syncListCombos()
{
    const GridSelection& sel = table_.grid().selection();
    const int storeColumn = cellEntry_->storeColumn(sel.col);
    if (sel.row < 1 || sel.row >= table_.grid().rows()) return;
    QString text = toQt(table_.grid().text(sel.row, sel.col));
    auto show = [&text](QComboBox* combo) {
        if (const int at = combo->findText(text, Qt::MatchExactly); at >= 0) combo->setCurrentIndex(at);
    };
    switch (storeColumn) {
    case col::step: show(combostep_); break;
    case col::mode: show(modecombo_); break;
    case col::delay: show(delaycombo_); break;
    case col::tone:
        if (text.endsWith('-')) text.chop(1);
        show(ctc_);
        show(dcsc_);
        break;
    default: break;
    }
}

void MainWindow::listChosen(int storeColumn, QComboBox* combo)
{
    commitEdit();
    cellEntry_->chooseFromList(storeColumn, fromQt(combo->currentText()));
    memtabel_->setFocus();
}

void MainWindow::tagChosen(QComboBox* combo)
{
    if (combo->currentIndex() < 0) return;
    commitEdit();
    cellEntry_->chooseTag(fromQt(combo->currentText()));
    memtabel_->setFocus();
}

// ---- Cell entry ----------------------------------------------------------------------------

bool MainWindow::windowOpen() const { return QApplication::activeModalWidget() != nullptr; }

bool MainWindow::gridKey(QKeyEvent* event)
{
    // Keys that reach the grid while Text1 is open belong to Text1. One that
    // Text1 does not take (Shift alone, a function key) comes back up to the
    // grid from it: that one ends here, it is never sent round again.
    if (cellEntry_->editing() && text1_->isVisible()) {
        if (forwardingToText1_) return true;
        forwardingToText1_ = true;
        QApplication::sendEvent(text1_, event);
        forwardingToText1_ = false;
        return true;
    }
    const Qt::KeyboardModifiers mods = event->modifiers();
    if (mods & (Qt::AltModifier | Qt::MetaModifier)) return false;
    Keystroke key;
    key.shift = mods & Qt::ShiftModifier;
    key.ctrl = mods & Qt::ControlModifier;
    using Kind = Keystroke::Kind;
    switch (event->key()) {
    case Qt::Key_Space: key.kind = Kind::Space; break;
    case Qt::Key_Delete: key.kind = Kind::Delete; break;
    case Qt::Key_Backspace: key.kind = Kind::Backspace; break;
    case Qt::Key_Return:
    case Qt::Key_Enter: key.kind = Kind::Enter; break;
    case Qt::Key_F2: key.kind = Kind::Edit; break;
    case Qt::Key_Plus:
    case Qt::Key_Minus:
        if (mods & Qt::KeypadModifier) {
            key.kind = event->key() == Qt::Key_Plus ? Kind::NumPlus : Kind::NumMinus;
            break;
        }
        key.ch = event->key() == Qt::Key_Plus ? '+' : '-';
        break;
    default:
        if (key.ctrl) {
            if (event->key() < Qt::Key_A || event->key() > Qt::Key_Z) return false;
            key.ch = static_cast<char>('A' + (event->key() - Qt::Key_A));
            break;
        }
        {
            const QString text = event->text();
            if (text.size() != 1 || text.at(0).unicode() < 32 || text.at(0) == QChar(0x7f)) return false;
            key.ch = fromQt(text).front();
        }
        break;
    }
    switch (cellEntry_->key(key)) {
    case CellEntry::KeyResult::EditorOpened: openText1(); return true;
    case CellEntry::KeyResult::Handled: syncListCombos(); return true;
    case CellEntry::KeyResult::Ignored:
        // A character is never a search in the grid.
        return key.kind == Kind::Character && !key.ctrl;
    }
    return false;
}

void MainWindow::gridDoubleClicked(int row, int col)
{
    if (cellEntry_->doubleClick(row, col) == CellEntry::KeyResult::EditorOpened)
        openText1();
    else
        syncListCombos();
}

void MainWindow::openText1()
{
    lineOps_->saveundo();   // Undo brings back the bank as it was before this edit
    const CellEntry::Edit& edit = cellEntry_->edit();
    const QModelIndex index = model_->indexOfCell(edit.row, edit.col);
    memtabel_->scrollTo(index);
    const QVariant font = model_->data(index, Qt::FontRole);
    text1_->setFont(font.isValid() ? font.value<QFont>() : memtabel_->font());
    text1_->setAlignment(Qt::Alignment(model_->data(index, Qt::TextAlignmentRole).toInt()));
    text1_->setText(toQt(edit.text));
    text1_->setCursorPosition(text1_->text().size());
    placeText1();
    text1_->show();
    text1_->raise();
    text1_->setFocus(Qt::OtherFocusReason);
}

void MainWindow::placeText1()
{
    if (!cellEntry_->editing()) return;
    const CellEntry::Edit& edit = cellEntry_->edit();
    text1_->setGeometry(memtabel_->visualRect(model_->indexOfCell(edit.row, edit.col)));
}

void MainWindow::closeText1(bool keep, bool moveOn)
{
    if (closingText1_) return;
    if (!cellEntry_->editing()) {
        text1_->hide();
        return;
    }
    closingText1_ = true;
    const std::string text = fromQt(text1_->text());
    const bool hadFocus = text1_->hasFocus();
    text1_->hide();
    if (hadFocus) memtabel_->setFocus(Qt::OtherFocusReason);
    if (keep)
        cellEntry_->commit(text, moveOn);
    else
        cellEntry_->drop();
    closingText1_ = false;
    syncListCombos();
}

// ---- Handlers ---------------------------------------------------------------------------------

void MainWindow::onTabChanged(int index)
{
    if (tabSync_ || index < 0) return;
    setBusy(true);
    commitEdit();
    table_.changeBank(index);
    bankChanged();
    setBusy(false);
}

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

void MainWindow::menuExit()
{
    close();
}

void MainWindow::closeEvent(QCloseEvent* event)
{
    if (unloaded_) {
        event->accept();
        return;
    }
    commitEdit();
    if (!table_.exitRequested()) {
        event->ignore();
        return;
    }
    unloaded_ = true;
    table_.unload();
    // The window's own part of unloading: its place and the column widths.
    if (table_.settings().window == 1) writeWindowPlace(place(), folder_.path());
    writeColumnWidths(table_.doc().model.bc785d, columnWidthsTwips(), folder_.path());
    while (busy_ > 0) setBusy(false);
    event->accept();
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

void MainWindow::showAbout()
{
    std::string text = kApplicationTitle;
    text += kCrLf;
    text += kCrLf;
    text += "Programs and remote-controls the Uniden BC250D, BC296D, BC785D, BC796D and UBC3300 trunk-tracking scanners.";
    table_.dialogs().message(text, "About Kestra Console", Buttons::Ok, Icon::Information);
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

void MainWindow::menuReadData()
{
    // Reading clears what it reads: the unsaved document may be saved first,
    // and the grid goes into the store before the window works on it.
    commitEdit();
    if (!table_.askClearTable()) return;
    if (!table_.createbank()) return;
    Document& doc = table_.doc();
    const ModelSwitches modelBefore = doc.model;
    const ComSettings com = table_.com;
    TransferWindow dialog(TransferWindow::Caption::ReadData,
                   {doc, table_.settings(), table_.dialogs(), table_.scheduler(), folder_.path()},
                   {ports().port(com.port, doc.model.model()), com.port, com.baud}, this);
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
    const ComSettings com = table_.com;
    TransferWindow dialog(TransferWindow::Caption::SendData,
                   {doc, table_.settings(), table_.dialogs(), table_.scheduler(), folder_.path()},
                   {ports().port(com.port, doc.model.model()), com.port, com.baud}, this);
    dialog.exec();
    if (dialog.runFinished()) {
        statusBar()->showMessage(toQt(dialog.engine().finishedLine()), kRunLineMs);
        if (const std::string refused = dialog.engine().refusalsLine(); !refused.empty()) table_.dialogs().message(refused);
    }

    // The model check of the send may have found another model on the cable:
    // the grid takes its layout without reading the old one back.
    if (!(doc.model == modelBefore)) {
        table_.applyLayout();
        updateCaption();
        table_.fillgrid();
    }
}

void MainWindow::menuSetupDefaultData()
{
    DefaultDataWindow dialog(table_, this);
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

} // namespace kestra
