#include "ui/mainwindow.h"

#include "platform/qt/qtext.h"
#include "platform/qt/qtserialport.h"
#include "sim/programports.h"
#include "ui/virtualcontrolwindow.h"
#include "ui/widgets/gridmodel.h"

#include <QAction>
#include <QActionGroup>
#include <QApplication>
#include <QCloseEvent>
#include <QComboBox>
#include <QFontDatabase>
#include <QFrame>
#include <QGuiApplication>
#include <QHeaderView>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QProgressBar>
#include <QScreen>
#include <QStyle>
#include <QStatusBar>
#include <QTabBar>
#include <QTableView>
#include <QToolBar>
#include <QVBoxLayout>

namespace kestra {

namespace {

constexpr const char* kHelpText = "Use right mouse button click in grid to show the popup menu";

} // namespace

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
    // The window's first size, within the screen at any scale factor.
    QSize size(1020, 700);
    if (const QScreen* screen = QGuiApplication::primaryScreen()) size = size.boundedTo(screen->availableSize());
    resize(size);
}

MainWindow::~MainWindow()
{
    delete vc_.data();
    table_.setView(nullptr);
    while (busy_ > 0) setBusy(false);
}

VirtualControlWindow* MainWindow::virtualControl() const { return vc_.data(); }

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
    frameLayout->addWidget(buildGrid(frame), 1);
    layout->addWidget(frame, 1);

    setCentralWidget(central);
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

void MainWindow::formLoad()
{
    model_->setFixedFont(fixedWidthFont());
    table_.formLoad();
    backup_ = std::make_unique<Backup>(table_);
    updateRecentFiles();

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
    // Timer6: the Virtual Control opens by itself shortly after the start.
    if (settings.vstart == 1) {
        timer6_ = makeTimer(table_.scheduler(), 750, true, [this] { menuVirtualControl(); });
        timer6_->setEnabled(true);
    }
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

int MainWindow::captionWidth(int column) const
{
    QHeaderView* header = memtabel_->horizontalHeader();
    QFont bold = header->font();
    bold.setBold(true);
    const int margin = 2 * header->style()->pixelMetric(QStyle::PM_HeaderMargin, nullptr, header) + 8;
    const QString caption = model_->headerData(column, Qt::Horizontal).toString();
    return std::max(header->sectionSizeHint(column), QFontMetrics(bold).horizontalAdvance(caption) + margin);
}

void MainWindow::applyColumnWidths()
{
    // Each column as wide as its caption, and as its texts in the font they
    // are shown in: a frequency, a tag of 16 of the widest letter, a list
    // value such as "DCS 754".
    for (int c = 0; c < model_->columnCount(); ++c) {
        const QVariant font = model_->data(model_->index(0, c), Qt::FontRole);
        const QFontMetrics metrics(font.isValid() ? font.value<QFont>() : memtabel_->font());
        const int gridCol = c + 1;
        const QString sample = gridCol == 1 ? QStringLiteral("0000.0000") : gridCol == 2 ? QString(16, 'W') : QStringLiteral("DCS 754");
        memtabel_->setColumnWidth(c, std::max(captionWidth(c), metrics.horizontalAdvance(sample) + 12));
    }
}

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
    // A new layout gets its captions after its columns: the widths follow them.
    if (columnsPending_) layoutColumnsChanged();
    columnsPending_ = false;
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

void MainWindow::onTabChanged(int index)
{
    if (tabSync_ || index < 0) return;
    setBusy(true);
    commitEdit();
    table_.changeBank(index);
    bankChanged();
    setBusy(false);
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
    if (vc_ && !vc_->closed()) vc_->close();
    table_.unload();
    // The window's own part of unloading: its place and the column widths.
    if (table_.settings().window == 1) writeWindowPlace(place(), folder_.path());
    writeColumnWidths(table_.doc().model.bc785d, columnWidthsTwips(), folder_.path());
    while (busy_ > 0) setBusy(false);
    event->accept();
}

} // namespace kestra
