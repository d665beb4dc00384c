#include "core/memtab.h"
#include "core/defdata.h"
#include "core/softset.h"
#include "core/toolbaricons.h"
#include "platform/qt/qtext.h"

#include "core/gridmodel.h"
#include "core/text.h"

#include <QAbstractItemDelegate>
#include <QActionGroup>
#include <QApplication>
#include <QCloseEvent>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QFrame>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QIcon>
#include <QLabel>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QScreen>
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

// The grid view with a way to close an open cell edit into the model.
class GridView : public QTableView {
public:
    using QTableView::QTableView;

    void commitOpenEditor()
    {
        if (state() != QAbstractItemView::EditingState) return;
        const auto editors = viewport()->findChildren<QWidget*>(Qt::FindDirectChildrenOnly);
        for (QWidget* editor : editors) {
            if (!editor->isVisible()) continue;
            commitData(editor);
            closeEditor(editor, QAbstractItemDelegate::NoHint);
        }
    }
};

} // namespace

// ---- Construction ------------------------------------------------------------------

Memtab::Memtab(MemTable& table, AppFolder folder, QWidget* parent)
    : QMainWindow(parent), table_(table), folder_(std::move(folder))
{
    setObjectName("memtab");
    setWindowTitle(QString::fromStdString(table_.caption()));
    setContextMenuPolicy(Qt::PreventContextMenu);   // no built-in toolbar menu beside View > Toolbar

    model_ = new GridModel(table_.grid(), table_.settings(), this);
    model_->onEdited = [this](int, int) { table_.markDirty(); };

    buildMenus();
    buildToolbars();
    buildCentral();
    buildStatusBar();

    table_.setView(this);
    resize(1020, 700);
}

Memtab::~Memtab()
{
    table_.setView(nullptr);
    while (busy_ > 0) setBusy(false);
}

QAction* Memtab::addEntry(QMenu* menu, const char* name, const char* caption, bool enabled)
{
    auto* action = new QAction(QString::fromUtf8(caption), menu);
    action->setObjectName(name);
    action->setEnabled(enabled);
    menu->addAction(action);
    actions_.try_emplace(name, action);
    arrays_[name].push_back(action);
    return action;
}

QMenu* Memtab::addSubmenu(QMenu* parentMenu, const char* name, const char* caption, bool enabled)
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

void Memtab::connectEntry(const char* name, void (Memtab::*handler)())
{
    QAction* entry = action(name);
    if (entry) connect(entry, &QAction::triggered, this, [this, handler] { (this->*handler)(); });
}

QAction* Memtab::action(const std::string& name) const
{
    auto it = actions_.find(name);
    return it == actions_.end() ? nullptr : it->second;
}

const std::vector<QAction*>& Memtab::actionArray(const std::string& name) const
{
    static const std::vector<QAction*> none;
    auto it = arrays_.find(name);
    return it == arrays_.end() ? none : it->second;
}

void Memtab::buildMenus()
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
    addEntry(file, "backrest", "&Backup and Restore");
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
    connect(toolbarEntry, &QAction::triggered, this, &Memtab::toggleToolbar);
    QAction* helpbarEntry = addEntry(view, "nu_hbar", "Helpbar", true);
    helpbarEntry->setCheckable(true);
    connect(helpbarEntry, &QAction::triggered, this, &Memtab::toggleHelpbar);
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
    QMenu* dupli = addSubmenu(options, "memdupli", "Find &Duplicate Channels", false);
    addEntry(dupli, "fd_curbank", "in Current Bank");
    addEntry(dupli, "fd_allbanks", "in All Banks");
    addEntry(dupli, "find_duplisub", "Including Subtone")->setCheckable(true);
    addEntry(options, "remove_dupli", "Remove D&uplicate Channels");
    QMenu* sort = addSubmenu(options, "memtab_sort", "&Sort by Frequency ", false);
    addEntry(sort, "sort_up", "&Ascending OLD");
    addEntry(sort, "sort_down", "&Descending OLD");
    addEntry(sort, "sort_allb", "&Ascending");
    addEntry(sort, "sort_rangedown", "&Descending");
    options->addSeparator();
    addEntry(options, "tabeasy", "&Easy Fill");
    addEntry(options, "checktab", "Check &Data In Table");
    QMenu* runband = addSubmenu(options, "runband", "Check Table using &Bandplan", false);
    addEntry(runband, "runband1", "Current Bank");
    addEntry(runband, "runband2", "All Banks");
    options->addSeparator();
    QMenu* tags = addSubmenu(options, "tag_ption", "Table Tags Options", false);
    addEntry(tags, "center_tags", "Center Memory Tags");
    addEntry(tags, "rem_space", "Remove Leading Spaces");

    // The scanner model's menu.
    modelMenu_ = topMenu("men_ar5", ("&" + table_.modelName()).c_str());
    addEntry(modelMenu_, "menread", "&Read Data From Scanner");
    addEntry(modelMenu_, "memsend", "&Send Data To Scanner");
    modelMenu_->addSeparator();
    addEntry(modelMenu_, "vc", "&Virtual Control");
    addEntry(modelMenu_, "ditun", "Direct Tune");
    addEntry(modelMenu_, "mnu_prioch", "Priority Channels");
    addEntry(modelMenu_, "other82", "&Other Options");
    addEntry(modelMenu_, "setdelay", "&Easy program");
    addEntry(modelMenu_, "debugs", "Send Data Debug");
    modelMenu_->addSeparator();
    addEntry(modelMenu_, "comset", "Rs232 &Communication and Scanner Model Setup");

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
    addEntry(help, "shortkey", "&Keyboard Shortcuts");
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

    // The entries that work now.
    connectEntry("menunew", &Memtab::menuNew);
    connectEntry("tabopen", &Memtab::menuOpen);
    connectEntry("openspecial", &Memtab::menuOpenSpecial);
    connectEntry("open_780file", &Memtab::menuOpenLorven);
    connectEntry("savenu", &Memtab::menuSave);
    connectEntry("tabsaveas", &Memtab::menuSaveAs);
    connectEntry("exit_tab", &Memtab::menuExit);
    connectEntry("emptystatus", &Memtab::showBankEmptyStatus);
    connectEntry("hpabout", &Memtab::showAbout);
    connectEntry("restable", &Memtab::menuResetTableWidth);
    connectEntry("setdef", &Memtab::menuSetupDefaultData);
    connectEntry("soft_options", &Memtab::menuSoftOptions);
}

void Memtab::buildToolbars()
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

void Memtab::buildCentral()
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
    layout->addSpacing(4);

    tabbed1_ = new QTabBar(central);
    tabbed1_->setObjectName("tabbed1");
    tabbed1_->setExpanding(false);
    tabbed1_->setUsesScrollButtons(true);
    tabbed1_->setDrawBase(false);
    for (int bank = 0; bank <= kDummyBank; ++bank) tabbed1_->addTab(toQt(table_.tabCaption(bank)));
    connect(tabbed1_, &QTabBar::currentChanged, this, &Memtab::onTabChanged);
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
    view->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed
                          | QAbstractItemView::AnyKeyPressed);
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

    model_->bindSelection(view->selectionModel());
    connect(model_, &QAbstractItemModel::modelReset, this, &Memtab::layoutColumnsChanged);
    connect(model_, &GridModel::gridShownChanged, view, [view](bool shown) { view->setUpdatesEnabled(shown); });
    connect(view->selectionModel(), &QItemSelectionModel::currentChanged, this, [this] { updateChannelPanel(); });
    connect(view, &QWidget::customContextMenuRequested, this, [this, view](const QPoint& pos) {
        // The Edit entries of the pop-up menu, at the mouse.
        if (QAction* popedit = action("popedit"); popedit && popedit->menu())
            popedit->menu()->popup(view->viewport()->mapToGlobal(pos));
    });

    setCentralWidget(central);
}

void Memtab::buildStatusBar()
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

QFont Memtab::fixedWidthFont()
{
    const QStringList families = QFontDatabase::families();
    for (const char* name : {"Lucida Console", "Courier New"})
        if (families.contains(QString::fromLatin1(name), Qt::CaseInsensitive)) return QFont(QString::fromLatin1(name));
    return QFontDatabase::systemFont(QFontDatabase::FixedFont);
}

// ---- Form Load ------------------------------------------------------------------------

void Memtab::formLoad()
{
    model_->setFixedFont(fixedWidthFont());
    table_.formLoad();

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
    applyColumnWidths();
    if (settings.tabwidth == 1) {
        if (auto widths = readColumnWidths(table_.doc().model.bc785d, folder_.path())) setColumnWidthsTwips(*widths);
    }
    updateTabs();
    updateCaption();
    bankChanged();
}

WindowPlace Memtab::place() const
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

void Memtab::setPlace(const WindowPlace& place)
{
    if (place.width > 0 && place.height > 0) resize(twipsToPixels(place.width), twipsToPixels(place.height));
    // A place on a screen that is no longer there is not taken.
    const QPoint topLeft(place.left / 15, place.top / 15);
    if (QGuiApplication::screenAt(topLeft + QPoint(width() / 2, height() / 2))) move(topLeft);
    // A window that was minimised opens normally; there is nothing to see of it otherwise.
    setWindowState(place.state == 2 ? Qt::WindowMaximized : Qt::WindowNoState);
}

std::vector<int> Memtab::columnWidthsTwips() const
{
    std::vector<int> widths;
    for (int c = 0; c < model_->columnCount(); ++c) widths.push_back(memtabel_->columnWidth(c) * 15);
    return widths;
}

void Memtab::setColumnWidthsTwips(const std::vector<int>& widths)
{
    for (int c = 0; c < model_->columnCount() && c < int(widths.size()); ++c)
        memtabel_->setColumnWidth(c, twipsToPixels(widths[c]));
}

void Memtab::layoutColumnsChanged()
{
    // Another scanner family: the widths kept for its layout, else the defaults.
    applyColumnWidths();
    if (auto widths = readColumnWidths(table_.doc().model.bc785d, folder_.path())) setColumnWidthsTwips(*widths);
}

// ---- What the window shows ------------------------------------------------------------

void Memtab::updateCaption()
{
    setWindowTitle(QString::fromStdString(table_.caption()));
    modelMenu_->setTitle(toQt("&" + table_.modelName()));
    panelFile_->setText(QString::fromStdString(table_.doc().fnaam));
}

void Memtab::updateTabs()
{
    for (int bank = 0; bank < tabbed1_->count(); ++bank) tabbed1_->setTabText(bank, toQt(table_.tabCaption(bank)));
}

void Memtab::updateFrameLabel()
{
    frameLabel_->setText(toQt(table_.frameLabel()));
}

void Memtab::updateBankChecks()
{
    const int bank = table_.doc().currentBank;
    for (QAction* entry : actionArray("bk0")) entry->setChecked(entry->property("index").toInt() == bank);
}

void Memtab::updateChannelPanel()
{
    if (!panelChannel_) return;
    const int row = std::max(1, table_.grid().selection().row);
    panelChannel_->setText(QString(" Channel %1").arg(channelNumber(table_.doc().currentBank, row)));
}

void Memtab::applyColumnWidths()
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

void Memtab::showProgress(int percent)
{
    prstatus_->setValue(std::clamp(percent, 0, 100));
    if (!prstatus_->isVisible()) prstatus_->show();
    if (prstatus_->isVisible()) prstatus_->repaint();
}

void Memtab::hideProgress()
{
    prstatus_->hide();
}

void Memtab::bankTagsChanged()
{
    updateTabs();
    updateFrameLabel();
}

void Memtab::captionChanged()
{
    updateCaption();
}

void Memtab::layoutChanged()
{
    model_->reload();
    updateChannelPanel();
}

void Memtab::bankChanged()
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
}

void Memtab::setBusy(bool busy)
{
    if (busy) {
        QApplication::setOverrideCursor(Qt::WaitCursor);
        ++busy_;
    } else if (busy_ > 0) {
        QApplication::restoreOverrideCursor();
        --busy_;
    }
}

void Memtab::commitEdit()
{
    static_cast<GridView*>(memtabel_)->commitOpenEditor();
}

// ---- Handlers ---------------------------------------------------------------------------------

void Memtab::onTabChanged(int index)
{
    if (tabSync_ || index < 0) return;
    setBusy(true);
    commitEdit();
    table_.changeBank(index);
    bankChanged();
    setBusy(false);
}

void Memtab::afterFileCommand()
{
    updateCaption();
    updateTabs();
    bankChanged();
}

void Memtab::menuNew()
{
    commitEdit();
    table_.fileNew();
    afterFileCommand();
}

void Memtab::menuOpen()
{
    commitEdit();
    table_.fileOpen();
    afterFileCommand();
}

void Memtab::menuOpenSpecial()
{
    commitEdit();
    table_.fileOpenSpecial();
    afterFileCommand();
}

void Memtab::menuOpenLorven()
{
    commitEdit();
    table_.fileOpenLorven();
    afterFileCommand();
}

void Memtab::menuSave()
{
    commitEdit();
    table_.fileSave();
    afterFileCommand();
}

void Memtab::menuSaveAs()
{
    commitEdit();
    table_.fileSaveAs();
    afterFileCommand();
}

void Memtab::menuExit()
{
    close();
}

void Memtab::closeEvent(QCloseEvent* event)
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

void Memtab::showBankEmptyStatus()
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

void Memtab::showAbout()
{
    std::string text = kApplicationTitle;
    text += kCrLf;
    text += kCrLf;
    text += "Programs and remote-controls the Uniden BC250D, BC296D, BC785D, BC796D and UBC3300 trunk-tracking scanners.";
    table_.dialogs().message(text, "About Kestra Console", Buttons::Ok, Icon::Information);
}

void Memtab::menuSoftOptions()
{
    // Ok carries the grid into the store and fills it anew: close an open edit first.
    commitEdit();
    Softset dialog(table_, this);
    dialog.exec();
}

void Memtab::menuSetupDefaultData()
{
    Defdata dialog(table_, this);
    dialog.exec();
}

void Memtab::menuResetTableWidth()
{
    // The widths the grid has when no width file is kept.
    applyColumnWidths();
}

void Memtab::toggleToolbar(bool on)
{
    table_.settings().toolbar = on ? 1 : 0;
    toolbar1_->setVisible(on);
    toolbar2_->setVisible(on);
}

void Memtab::toggleHelpbar(bool on)
{
    table_.settings().helpbar = on ? 1 : 0;
    helpbar_->setVisible(on);
}

} // namespace kestra
