#include "ui/advancedimportwindow.h"

#include "core/memtable.h"
#include "core/text.h"
#include "platform/qt/qtext.h"

#include <algorithm>

#include <QApplication>

#include <QClipboard>
#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QToolButton>
#include <QVBoxLayout>

namespace kestra {

namespace {

constexpr const char* kFilter =
    "Comma Sep. File(*.csv *.txt)|*.csv;*.txt|Tab Sep. File(*.tab *.txt)|*.tab; *.txt|Text Files(*.txt)|*.txt|"
    "HTML file(*.htm)|*.htm|All Files(*.*)|*.*";

QPushButton* addButton(QWidget* parent, QLayout* layout, const char* name, const char* caption)
{
    auto* b = new QPushButton(caption, parent);
    b->setObjectName(name);
    b->setAutoDefault(false);
    layout->addWidget(b);
    return b;
}

} // namespace

AdvancedImportWindow::AdvancedImportWindow(MemTable& table, QWidget* parent) : QDialog(parent), table_(table)
{
    setObjectName("csvfile");
    setWindowTitle("Advanced Data Import");
    setModal(true);
    harvest_.onProgress = [] { QApplication::processEvents(); };

    auto* grid = new QGridLayout(this);
    auto makeList = [this](const char* name) {
        auto* l = new QListWidget(this);
        l->setObjectName(name);
        l->setMinimumSize(160, 260);
        return l;
    };
    list1_ = makeList("List1");
    list2_ = makeList("List2");
    count1_ = new QLabel("0", this);
    count1_->setObjectName("Label4");
    count2_ = new QLabel("0", this);
    count2_->setObjectName("Label5");

    auto* head1 = new QHBoxLayout;
    head1->addWidget(new QLabel("Frequency data found:", this));
    head1->addWidget(count1_);
    auto* head2 = new QHBoxLayout;
    head2->addWidget(new QLabel("Data selected for import:", this));
    head2->addWidget(count2_);
    grid->addLayout(head1, 0, 0);
    grid->addLayout(head2, 0, 2);
    grid->addWidget(list1_, 1, 0);
    grid->addWidget(list2_, 1, 2);

    auto* moves = new QVBoxLayout;
    QPushButton* allRight = addButton(this, moves, "allright", "All >>");
    QPushButton* hundred = addButton(this, moves, "hundred", "100 >>");
    QPushButton* oneRight = addButton(this, moves, "oneright", ">");
    QPushButton* oneLeft = addButton(this, moves, "oneleft", "<");
    QPushButton* allLeft = addButton(this, moves, "allleft", "<< All");
    moves->addStretch();
    grid->addLayout(moves, 1, 1);

    auto* under1 = new QHBoxLayout;
    QPushButton* clear1 = addButton(this, under1, "clear1", "Clear ^");
    auto* under2 = new QHBoxLayout;
    QPushButton* clear2 = addButton(this, under2, "clear2", "Clear ^");
    grid->addLayout(under1, 2, 0);
    grid->addLayout(under2, 2, 2);

    // Where "Export To Table:" writes.
    auto* target = new QHBoxLayout;
    target->addWidget(new QLabel("Bank:", this));
    bank_ = new QComboBox(this);
    bank_->setObjectName("Combo1");
    for (int b = 1; b <= 10; ++b) bank_->addItem(QString::number(b));
    bank_->addItem("D");
    const int onView = table_.doc().currentBank;
    bank_->setCurrentIndex(onView >= 0 && onView <= kDummyBank ? onView : 0);
    target->addWidget(bank_);
    target->addWidget(new QLabel("Starting at channel:", this));
    start_ = new QLineEdit("1", this);
    start_->setObjectName("Text1");
    start_->setMaximumWidth(60);
    start_->installEventFilter(this);
    target->addWidget(start_);
    auto* up = new QToolButton(this);
    up->setObjectName("spinup");
    up->setArrowType(Qt::UpArrow);
    auto* down = new QToolButton(this);
    down->setObjectName("spindown");
    down->setArrowType(Qt::DownArrow);
    target->addWidget(up);
    target->addWidget(down);
    absolute_ = new QLabel(this);
    absolute_->setObjectName("Label3");
    target->addWidget(absolute_);
    target->addStretch();
    grid->addLayout(target, 3, 0, 1, 3);

    clipText_ = new QLineEdit(this);   // keeps the clipboard text for inspection
    clipText_->setObjectName("Text2");
    clipText_->setReadOnly(true);
    clipText_->setMaxLength(static_cast<int>(FrequencyHarvest::kClipboardLimit));
    grid->addWidget(clipText_, 4, 0, 1, 3);

    auto* actions = new QHBoxLayout;
    QPushButton* fromFile = addButton(this, actions, "fromfile", "Import From File");
    QPushButton* fromClip = addButton(this, actions, "fromclipboard", "&Import From Clipboard");
    QPushButton* toTable = addButton(this, actions, "totable", "Export To Table:");
    QPushButton* toClip = addButton(this, actions, "toclipboard", "&Export To Clipboard");
    addButton(this, actions, "help", "Help");
    QPushButton* close = addButton(this, actions, "close", "Close");
    grid->addLayout(actions, 5, 0, 1, 3);

    connect(fromFile, &QPushButton::clicked, this, &AdvancedImportWindow::importFromFile);
    connect(fromClip, &QPushButton::clicked, this, &AdvancedImportWindow::importFromClipboard);
    connect(allRight, &QPushButton::clicked, this, [this] { moveAll(list1_, list2_); });
    connect(allLeft, &QPushButton::clicked, this, [this] { moveAll(list2_, list1_); });
    connect(hundred, &QPushButton::clicked, this, &AdvancedImportWindow::moveHundred);
    connect(oneRight, &QPushButton::clicked, this, [this] { moveOne(list1_, list2_, "Select an item from the left list."); });
    connect(oneLeft, &QPushButton::clicked, this, [this] { moveOne(list2_, list1_, "Select an item from the right list."); });
    connect(list1_, &QListWidget::itemDoubleClicked, this, [this] { moveOne(list1_, list2_, "Select an item from the left list."); });
    connect(list2_, &QListWidget::itemDoubleClicked, this, [this] { moveOne(list2_, list1_, "Select an item from the right list."); });
    connect(clear1, &QPushButton::clicked, this, [this] { list1_->clear(); harvest_.clear(); updateCounts(); });
    connect(clear2, &QPushButton::clicked, this, [this] { list2_->clear(); updateCounts(); });
    connect(toTable, &QPushButton::clicked, this, &AdvancedImportWindow::exportToTable);
    connect(toClip, &QPushButton::clicked, this, &AdvancedImportWindow::exportToClipboard);
    connect(close, &QPushButton::clicked, this, &QDialog::reject);
    connect(up, &QToolButton::clicked, this, [this] { spin(1); });
    connect(down, &QToolButton::clicked, this, [this] { spin(-1); });
    connect(start_, &QLineEdit::editingFinished, this, &AdvancedImportWindow::clampStart);
    connect(start_, &QLineEdit::textChanged, this, &AdvancedImportWindow::updateCounts);
    connect(bank_, &QComboBox::currentIndexChanged, this, &AdvancedImportWindow::updateCounts);
    updateCounts();
}

QPushButton* AdvancedImportWindow::button(const char* objectName) const
{
    return findChild<QPushButton*>(objectName);
}

bool AdvancedImportWindow::eventFilter(QObject* watched, QEvent* event)
{
    // The start channel takes digits and the editing keys only.
    if (watched == start_ && event->type() == QEvent::KeyPress) {
        const QString text = static_cast<QKeyEvent*>(event)->text();
        if (text.size() == 1) {
            const int code = text.at(0).unicode();
            if (code >= 58 || (code >= 10 && code <= 44)) return true;
        }
    }
    return QDialog::eventFilter(watched, event);
}

void AdvancedImportWindow::updateCounts()
{
    count1_->setText(QString::number(list1_->count()));
    count2_->setText(QString::number(list2_->count()));
    absolute_->setText(QString::number(bank_->currentIndex() * kChannelRows + static_cast<int>(Val(fromQt(start_->text())))));
}

void AdvancedImportWindow::clampStart()
{
    const double v = Val(fromQt(start_->text()));
    if (v > kChannelRows) start_->setText("100");
    else if (v < 1) start_->setText("1");
}

void AdvancedImportWindow::spin(int delta)
{
    int v = static_cast<int>(Val(fromQt(start_->text()))) + delta;
    if (v < 1) v = kChannelRows;
    else if (v > kChannelRows) v = 1;
    start_->setText(QString::number(v));
}

void AdvancedImportWindow::importFromFile()
{
    FileChoice choice;
    choice.title = "Advanced Data Import";
    choice.filter = kFilter;
    choice.folder = table_.startFolder(table_.opendir);
    const auto path = table_.dialogs().openFile(choice);
    if (!path) return;
    list1_->clear();
    list2_->clear();
    harvest_.clear();
    QApplication::setOverrideCursor(Qt::WaitCursor);
    harvest_.scanfile(*path);
    QApplication::restoreOverrideCursor();
    for (const std::string& item : harvest_.items()) list1_->addItem(toQt(item));
    updateCounts();
}

void AdvancedImportWindow::importFromClipboard()
{
    list1_->clear();
    list2_->clear();
    harvest_.clear();
    QApplication::setOverrideCursor(Qt::WaitCursor);
    std::string text = fromQt(QApplication::clipboard()->text());
    text = text.substr(0, FrequencyHarvest::kClipboardLimit);
    clipText_->setText(toQt(text));
    harvest_.scanClipboard(text);
    for (const std::string& item : harvest_.items()) list1_->addItem(toQt(item));
    updateCounts();
    QApplication::restoreOverrideCursor();
}

void AdvancedImportWindow::moveAll(QListWidget* from, QListWidget* to)
{
    while (from->count() > 0) to->addItem(from->takeItem(0));
    updateCounts();
}

void AdvancedImportWindow::moveHundred()
{
    for (int i = 0; i < 100 && list1_->count() > 0; ++i) {
        QListWidgetItem* item = list1_->takeItem(0);
        if (item->text().isEmpty()) {
            delete item;
            continue;
        }
        list2_->addItem(item);
    }
    updateCounts();
}

void AdvancedImportWindow::moveOne(QListWidget* from, QListWidget* to, const char* refusal)
{
    const int row = from->currentRow();
    if (row < 0 || from->selectedItems().isEmpty()) {
        table_.dialogs().message(refusal);
        return;
    }
    to->addItem(from->takeItem(row));
    if (from->count() > 0) from->setCurrentRow(std::min(row, from->count() - 1));
    updateCounts();
}

std::vector<std::string> AdvancedImportWindow::chosen() const
{
    std::vector<std::string> items;
    for (int i = 0; i < list2_->count(); ++i) items.push_back(fromQt(list2_->item(i)->text()));
    return items;
}

void AdvancedImportWindow::exportToTable()
{
    if (list2_->count() == 0 &&
        table_.dialogs().message("You did not select any frequencies. Close this window anyway?", "?", Buttons::YesNo) ==
            Answer::No)
        return;
    kestra::exportToTable(table_.doc(), chosen(), bank_->currentIndex(), static_cast<int>(Val(fromQt(start_->text()))));
    wrote_ = true;
    table_.fillgrid();
    accept();
}

void AdvancedImportWindow::exportToClipboard()
{
    if (list2_->count() == 0) {
        table_.dialogs().message("You did not select any frequencies.");
        return;
    }
    QApplication::clipboard()->clear();
    QApplication::clipboard()->setText(toQt(clipboardText(chosen())));
}

WebCatcherWindow::WebCatcherWindow(MemTable& table, QWidget* parent) : QDialog(parent), table_(table)
{
    setObjectName("info2");
    setWindowTitle("Webcatcher Info:");
    setModal(true);
    auto* layout = new QVBoxLayout(this);
    for (const char* line : {"Read frequency data directly from any website.",
                             "1: Use your browser to locate a website that shows frequencies.",
                             "2: In your browser type CTRL A.", "3: In your browser type CTRL C."})
        layout->addWidget(new QLabel(line, this));
    auto* buttons = new QHBoxLayout;
    import_ = addButton(this, buttons, "import", "Press To Import");
    QPushButton* close = addButton(this, buttons, "close", "Close");
    layout->addLayout(buttons);
    connect(close, &QPushButton::clicked, this, &QDialog::reject);
    connect(import_, &QPushButton::clicked, this, [this] {
        // The import window comes up first, then imports the clipboard by itself.
        window_ = new AdvancedImportWindow(table_, this);
        window_->setAttribute(Qt::WA_DeleteOnClose);
        connect(window_, &QObject::destroyed, this, [this] { window_ = nullptr; });
        window_->open();
        QApplication::processEvents();
        window_->importFromClipboard();
    });
}

} // namespace kestra
