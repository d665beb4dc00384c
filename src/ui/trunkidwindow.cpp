#include "ui/trunkidwindow.h"

#include "core/memtable.h"
#include "platform/qt/qtext.h"
#include "trunk/trunkids.h"
#include "ui/edittrunkidwindow.h"
#include "ui/listtagwindow.h"
#include "ui/memorymanagerwindow.h"
#include "ui/trunktagreplacewindow.h"
#include "ui/widgets/gridmodel.h"
#include "ui/widgets/keyfilter.h"

#include <QCheckBox>
#include <QClipboard>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QTabBar>
#include <QTableView>
#include <QVBoxLayout>

#include <algorithm>
#include <iterator>

namespace kestra {

namespace {

// Column widths in twips, as the grid is laid out: ID, Tag, Record, Beep Al., Scan List Tag.
constexpr int kWidthsTwips[] = {1000, 2000, 800, 800, 2000};
constexpr int kTwipsPerPixel = 15;

} // namespace

TrunkIdWindow::TrunkIdWindow(MemTable& table, QWidget* parent)
    : QDialog(parent), table_(table), sheet_(table.doc())
{
    setObjectName("trtags");
    setWindowTitle("Trunk Id's:");
    setModal(true);
    Document& doc = table_.doc();

    tabs_ = new QTabBar(this);
    tabs_->setObjectName("TabStrip1");
    for (int b = 0; b < kChannelBanks; ++b) tabs_->addTab(QString());
    fillTabCaptions();

    kind_ = new QLabel(this);
    kind_->setObjectName("Label3");
    hint_ = new QLabel(this);
    hint_->setObjectName("Label4");
    hint_->setWordWrap(true);

    // The grid of one bank.
    sheet_.load(std::clamp(doc.currentBank, 0, kChannelBanks - 1));
    model_ = std::make_unique<GridModel>(sheet_.grid(), table_.settings());
    grid_ = new QTableView(this);
    grid_->setObjectName("Grid1");
    grid_->setModel(model_.get());
    grid_->setTabKeyNavigation(false);   // Tab is taken by the filter below
    grid_->setContextMenuPolicy(Qt::CustomContextMenu);
    grid_->verticalHeader()->setDefaultSectionSize(grid_->fontMetrics().height() + 4);
    for (int c = 0; c < 5; ++c) grid_->setColumnWidth(c, kWidthsTwips[c] / kTwipsPerPixel);
    // The BC250D and BC296D family records nothing: no Record column, no box.
    const bool records = doc.model.bc785d == 1;
    grid_->setColumnHidden(TrunkIdSheet::kRecordCol - 1, !records);
    model_->bindSelection(grid_->selectionModel());
    grid_->installEventFilter(this);
    grid_->setMinimumWidth(560);
    grid_->setMinimumHeight(300);

    // The entry boxes mirror the current row.
    idBox_ = new QLineEdit(this);
    idBox_->setObjectName("Text1");
    idBox_->setMaxLength(static_cast<int>(kIdCellLength));
    new KeyFilter(idBox_, [this](char c) { return idKeyAccepted(sheet_.trunkType(), c); },
                  [this] { sheet_.enterId(fromQt(idBox_->text())); });
    tagBox_ = new QLineEdit(this);
    tagBox_->setObjectName("Text2");
    new KeyFilter(tagBox_, &tagKeyAccepted, [this] { sheet_.enterTag(fromQt(tagBox_->text())); });
    record_ = new QCheckBox("Record", this);
    record_->setObjectName("Check1");
    record_->setVisible(records);
    beep_ = new QCheckBox("Beep Alert", this);
    beep_->setObjectName("Check2");
    auto* entry = new QFormLayout;
    entry->addRow("ID:", idBox_);
    entry->addRow("Tag:", tagBox_);
    entry->addRow(record_);
    entry->addRow(beep_);

    auto* tools = new QGridLayout;
    auto place = [tools](QPushButton* b, int row, int col) { tools->addWidget(b, row, col); };
    place(addButton("Command3", "Copy/Move/Swap ID's", &TrunkIdWindow::copyIds), 0, 0);
    place(addButton("Command4", "Copy/Move/Swap Banks", &TrunkIdWindow::copyBanks), 0, 1);
    place(addButton("Command5", "Edit ScanList Tags", &TrunkIdWindow::editListTags), 1, 0);
    place(addButton("Command6", "Find and Replace Tag Text", &TrunkIdWindow::replaceTagText), 1, 1);
    place(addButton("sortidup", QString::fromUtf8("Sort Trunk Id's \u2191"), nullptr), 2, 0);
    place(addButton("sortiddown", QString::fromUtf8("Sort Trunk Id's \u2193"), nullptr), 2, 1);
    place(addButton("sorttagup", QString::fromUtf8("Sort Trunk Tags \u2191"), nullptr), 3, 0);
    place(addButton("sorttagdown", QString::fromUtf8("Sort Trunk Tags \u2193"), nullptr), 3, 1);
    place(addButton("undosort", "Undo last Sort Operation", nullptr), 4, 0);
    place(addButton("centertags", "Center Tags", nullptr), 5, 0);
    place(addButton("alignleft", "Align Left", nullptr), 5, 1);
    place(addButton("insertid", "Insert single id", nullptr), 6, 0);
    place(addButton("removeid", "Remove single id", nullptr), 6, 1);
    place(addButton("lineup", "Move single line up", nullptr), 7, 0);
    place(addButton("linedown", "Move single line down", nullptr), 7, 1);
    place(addButton("cmdcut", "Cut", &TrunkIdWindow::cutCells), 8, 0);
    place(addButton("cmdcopy", "Copy", &TrunkIdWindow::copyCells), 8, 1);
    place(addButton("cmdpaste", "Paste", &TrunkIdWindow::pasteCells), 9, 0);
    place(addButton("cmddelete", "delete selected area", nullptr), 9, 1);
    button("sortidup")->setToolTip("Numeric, ascending");
    button("sortiddown")->setToolTip("Numeric, descending");
    button("sorttagup")->setToolTip("Ascending");
    button("sorttagdown")->setToolTip("Descending");

    // The sheet's commands that need nothing from the window.
    const std::pair<const char*, void (*)(TrunkIdSheet&)> sheetCommands[] = {
        {"sortidup", [](TrunkIdSheet& s) { s.sortIds(true); }},
        {"sortiddown", [](TrunkIdSheet& s) { s.sortIds(false); }},
        {"sorttagup", [](TrunkIdSheet& s) { s.sortTags(true); }},
        {"sorttagdown", [](TrunkIdSheet& s) { s.sortTags(false); }},
        {"undosort", [](TrunkIdSheet& s) { s.undoSort(); }},
        {"centertags", [](TrunkIdSheet& s) { s.centerTags(); }},
        {"alignleft", [](TrunkIdSheet& s) { s.alignLeft(); }},
        {"insertid", [](TrunkIdSheet& s) { s.insertId(); }},
        {"removeid", [](TrunkIdSheet& s) { s.removeId(); }},
        {"lineup", [](TrunkIdSheet& s) { s.moveUp(); }},
        {"linedown", [](TrunkIdSheet& s) { s.moveDown(); }},
        {"cmddelete", [](TrunkIdSheet& s) { s.deleteSelection(); }},
    };
    for (const auto& [name, command] : sheetCommands)
        connect(button(name), &QPushButton::clicked, this, [this, command] {
            command(sheet_);
            showCurrentRow();
        });

    popup_ = new QMenu(this);
    popup_->setObjectName("popmenu");
    popup_->addAction("Cut", this, &TrunkIdWindow::cutCells);
    popup_->addAction("Copy", this, &TrunkIdWindow::copyCells);
    popup_->addAction("Paste", this, &TrunkIdWindow::pasteCells);
    popup_->addAction("Delete", this, [this] { sheet_.deleteSelection(); });

    ok_ = new QPushButton("Ok", this);
    ok_->setObjectName("Command1");
    cancel_ = new QPushButton("Cancel", this);
    cancel_->setObjectName("Command2");
    auto* okRow = new QHBoxLayout;
    okRow->addStretch(1);
    okRow->addWidget(ok_);
    okRow->addWidget(cancel_);

    auto* side = new QVBoxLayout;
    side->addLayout(entry);
    side->addSpacing(8);
    side->addLayout(tools);
    side->addStretch(1);
    auto* body = new QHBoxLayout;
    body->addWidget(grid_, 1);
    body->addLayout(side);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(tabs_);
    layout->addWidget(kind_);
    layout->addWidget(hint_);
    layout->addLayout(body, 1);
    layout->addLayout(okRow);

    // Keyboard order: tabs, grid, the entry, Ok and Cancel, then the tools.
    QWidget* order[] = {tabs_, grid_, idBox_, tagBox_, record_, beep_, ok_, cancel_};
    for (std::size_t i = 1; i < std::size(order); ++i) setTabOrder(order[i - 1], order[i]);
    QWidget* last = cancel_;
    for (QPushButton* b : findChildren<QPushButton*>()) {
        if (b == ok_ || b == cancel_) continue;
        setTabOrder(last, b);
        last = b;
    }

    connect(ok_, &QPushButton::clicked, this, &TrunkIdWindow::accept);
    connect(cancel_, &QPushButton::clicked, this, &TrunkIdWindow::reject);
    connect(tabs_, &QTabBar::currentChanged, this, &TrunkIdWindow::tabChanged);
    connect(record_, &QCheckBox::clicked, this, [this](bool on) { sheet_.setFlag(TrunkIdSheet::kRecordCol, on); });
    connect(beep_, &QCheckBox::clicked, this, [this](bool on) { sheet_.setFlag(TrunkIdSheet::kBeepCol, on); });
    connect(grid_->selectionModel(), &QItemSelectionModel::currentChanged, this, [this] { showCurrentRow(); });
    connect(grid_, &QTableView::doubleClicked, this, &TrunkIdWindow::cellDoubleClicked);
    connect(grid_, &QTableView::customContextMenuRequested, this,
            [this](const QPoint& at) { popup_->popup(grid_->viewport()->mapToGlobal(at)); });

    tabs_->setCurrentIndex(sheet_.bank());
    showBankLabels();
    showCurrentRow();
    loading_ = false;
    grid_->setFocus();
    resize(1000, 640);
}

TrunkIdWindow::~TrunkIdWindow()
{
    // The view lets go of the model before the model goes.
    grid_->setModel(nullptr);
}

QPushButton* TrunkIdWindow::addButton(const char* name, const QString& caption, void (TrunkIdWindow::*handler)())
{
    auto* b = new QPushButton(caption, this);
    b->setObjectName(name);
    if (handler) connect(b, &QPushButton::clicked, this, handler);
    return b;
}

QPushButton* TrunkIdWindow::button(const char* name) const { return findChild<QPushButton*>(name); }

void TrunkIdWindow::fillTabCaptions()
{
    for (int b = 0; b < kChannelBanks; ++b)
        tabs_->setTabText(b, toQt(std::to_string(b + 1) + ": " + table_.doc().banktags[b]));
}

void TrunkIdWindow::showBankLabels()
{
    // A bank without a trunk system leaves the labels as they were.
    const int type = sheet_.trunkType();
    if (const char* kind = trunkKindLabel(type)) kind_->setText(kind);
    if (const char* hint = idFormatHint(type)) hint_->setText(hint);
}

void TrunkIdWindow::tabChanged(int index)
{
    if (loading_ || index < 0) return;
    sheet_.showBank(index);
    idBox_->clear();
    tagBox_->clear();
    showBankLabels();
}

void TrunkIdWindow::showCurrentRow()
{
    const int row = sheet_.grid().selection().row;
    if (row < 1 || row > TrunkIdSheet::kLastRow) return;
    idBox_->setText(toQt(sheet_.grid().text(row, TrunkIdSheet::kIdCol)));
    tagBox_->setText(toQt(sheet_.grid().text(row, TrunkIdSheet::kTagCol)));
    record_->setChecked(sheet_.flag(row, TrunkIdSheet::kRecordCol));
    beep_->setChecked(sheet_.flag(row, TrunkIdSheet::kBeepCol));
}

void TrunkIdWindow::cellDoubleClicked(const QModelIndex& index)
{
    const int row = GridModel::gridRow(index), col = GridModel::gridCol(index);
    sheet_.toggleFlag(row, col);
    showCurrentRow();
}

bool TrunkIdWindow::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == grid_ && event->type() == QEvent::KeyPress && gridKey(static_cast<QKeyEvent*>(event))) return true;
    return QDialog::eventFilter(watched, event);
}

bool TrunkIdWindow::gridKey(QKeyEvent* key)
{
    const Qt::KeyboardModifiers mods = key->modifiers();
    if (mods & Qt::ControlModifier) {
        switch (key->key()) {
        case Qt::Key_C: copyCells(); return true;
        case Qt::Key_X: cutCells(); return true;
        case Qt::Key_V: pasteCells(); return true;
        default: return false;
        }
    }
    switch (key->key()) {
    // At the ends of the row the cursor stays and the focus goes on.
    case Qt::Key_Tab: return sheet_.moveColumn(1);
    case Qt::Key_Backtab: return sheet_.moveColumn(-1);
    case Qt::Key_Return:
    case Qt::Key_Enter: sheet_.enter(); return true;
    case Qt::Key_Backspace: sheet_.typeKey(kBackspace); return true;
    case Qt::Key_Delete: sheet_.deleteSelection(); showCurrentRow(); return true;
    default: break;
    }
    const std::string text = fromQt(key->text());
    if (text.size() != 1 || static_cast<unsigned char>(text[0]) < 32 || (mods & Qt::AltModifier)) return false;
    sheet_.typeKey(text[0]);
    return true;
}

void TrunkIdWindow::copyCells() { QGuiApplication::clipboard()->setText(toQt(sheet_.copy())); }
void TrunkIdWindow::cutCells()
{
    QGuiApplication::clipboard()->setText(toQt(sheet_.cut()));
    showCurrentRow();
}
void TrunkIdWindow::pasteCells()
{
    sheet_.paste(fromQt(QGuiApplication::clipboard()->text()));
    showCurrentRow();
}

void TrunkIdWindow::copyIds()
{
    sheet_.handOver();
    EditTrunkIdWindow dialog(table_.doc(), sheet_.bank(), this);
    dialog.exec();
    sheet_.reload();
    showCurrentRow();
}

void TrunkIdWindow::copyBanks()
{
    sheet_.handOver();
    MemoryManagerWindow dialog(table_, nullptr, MemoryManagerWindow::Mode::Trunk, this);
    dialog.presetBanks(sheet_.bank());
    dialog.exec();
    sheet_.reload();
    fillTabCaptions();
    showBankLabels();
    showCurrentRow();
}

void TrunkIdWindow::editListTags()
{
    sheet_.handOver();
    ListTagWindow dialog(table_.doc(), sheet_.bank(), this);
    dialog.exec();
    sheet_.reload();
}

void TrunkIdWindow::replaceTagText()
{
    TrunkTagReplaceWindow dialog(sheet_, this);
    dialog.exec();
    showCurrentRow();
}

void TrunkIdWindow::accept()
{
    sheet_.commit();
    if (sheet_.storeChanged()) table_.markDirty();
    QDialog::accept();
}

void TrunkIdWindow::reject()
{
    sheet_.revert();
    QDialog::reject();
}

} // namespace kestra
