// The main window's grid memtabel and its top frame: the keys typed into the
// grid, the in-place text box Text1, the Smart Info bar and the list and
// Easy Tag combos.

#include "ui/mainwindow.h"

#include "platform/qt/qtext.h"
#include "ui/widgets/gridmodel.h"

#include <QApplication>
#include <QComboBox>
#include <QFrame>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QScrollBar>
#include <QTableView>
#include <QVBoxLayout>

namespace kestra {

namespace {

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

QTableView* MainWindow::buildGrid(QWidget* parent)
{
    auto* view = new GridView(parent);
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
    // The last column takes what the window has to spare: the grid is as wide as the window.
    view->horizontalHeader()->setStretchLastSection(true);
    memtabel_ = view;

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
    connect(model_, &QAbstractItemModel::modelReset, this, [this] {
        layoutColumnsChanged();
        columnsPending_ = true;
    });
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
    return view;
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
    // Each list shows the current row's value in its column; a value not in
    // the list (an empty channel) leaves the list blank.
    const Grid& grid = table_.grid();
    const int row = grid.selection().row;
    if (row < 1 || row >= grid.rows()) return;
    auto show = [](QComboBox* combo, const QString& text) {
        combo->setCurrentIndex(combo->findText(text, Qt::MatchExactly));
    };
    for (int gridCol = 1; gridCol < grid.cols(); ++gridCol) {
        QString text = toQt(grid.text(row, gridCol));
        switch (cellEntry_->storeColumn(gridCol)) {
        case col::step: show(combostep_, text); break;
        case col::mode: show(modecombo_, text); break;
        case col::delay: show(delaycombo_, text); break;
        case col::tone:
            if (text.endsWith('-')) text.chop(1);
            show(ctc_, text);
            show(dcsc_, text);
            break;
        default: break;
        }
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

} // namespace kestra
