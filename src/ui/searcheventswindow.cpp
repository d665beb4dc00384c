#include "ui/searcheventswindow.h"

#include "core/text.h"
#include "editor/freqrules.h"
#include "platform/qt/qtext.h"
#include "platform/unboundport.h"
#include "search/searchranges.h"
#include "trunk/trunkids.h"
#include "ui/widgets/keyfilter.h"

#include <QApplication>
#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>

namespace kestra {

namespace {

constexpr int kTwipsPerPixel = 15;
constexpr int kPresetWidthTwips = 10200;

} // namespace

SearchEventsWindow::SearchEventsWindow(Services services, Link link, QWidget* parent)
    : QDialog(parent), services_(std::move(services)), port_(std::move(link.port))
{
    setObjectName("sevent");
    setWindowTitle("Search Events:");
    setModal(true);
    if (!port_) port_ = std::make_unique<UnboundPort>();
    link_ = std::make_unique<SearchLink>(*port_, services_.scheduler, services_.dialogs, services_.settings,
                                         link.comport, link.baud);
    copy_ = services_.doc.srcdata;

    auto* grid = new QGridLayout;
    int column = 1;
    for (const char* caption : {"Start:", "End:", "Mode:", "Step:", "Alpha Tag (max. 16)"})
        grid->addWidget(new QLabel(caption, this), 0, column++);
    const auto box = [this](const char* name, int range, int maxLength, bool (*accepted)(char)) {
        auto* b = new QLineEdit(this);
        b->setObjectName(name);
        b->setProperty("index", range);
        b->setMaxLength(maxLength);
        new KeyFilter(b, accepted);
        connect(b, &QLineEdit::textEdited, this, &SearchEventsWindow::edited);
        return b;
    };
    for (int r = 0; r < kSearchRanges; ++r) {
        Row& row = rows_[r];
        row.start = box("Text1", r, 9, &limitKeyAccepted);
        row.end = box("Text2", r, 9, &limitKeyAccepted);
        row.tag = box("Text3", r, static_cast<int>(kTagLength), &tagKeyAccepted);
        row.mode = new QComboBox(this);
        row.mode->setObjectName("Combo1");
        row.step = new QComboBox(this);
        row.step->setObjectName("Combo2");
        row.preset = new QComboBox(this);
        row.preset->setObjectName("Combo3");
        row.preset->setVisible(false);
        for (QComboBox* c : {row.mode, row.step, row.preset}) c->setProperty("index", r);
        connect(row.mode, &QComboBox::activated, this, &SearchEventsWindow::edited);
        connect(row.step, &QComboBox::activated, this, &SearchEventsWindow::edited);
        connect(row.preset, &QComboBox::activated, this, [this, r](int index) { presetChosen(r, index); });
        grid->addWidget(new QLabel(QString::number(r + 1), this), r + 1, 0);
        grid->addWidget(row.start, r + 1, 1);
        grid->addWidget(row.end, r + 1, 2);
        grid->addWidget(row.mode, r + 1, 3);
        grid->addWidget(row.step, r + 1, 4);
        grid->addWidget(row.tag, r + 1, 5);
        grid->addWidget(row.preset, r + 1, 6);
    }
    for (const SearchPreset& p : services_.presets)
        for (Row& row : rows_) row.preset->addItem(toQt(presetLabel(p)));

    progress_ = new QProgressBar(this);
    progress_->setObjectName("panel3d1");
    progress_->setRange(0, 100);
    progress_->setValue(0);

    auto* buttons = new QHBoxLayout;
    const auto addButton = [this, buttons](const char* name, const char* caption, auto work) {
        auto* b = new QPushButton(caption, this);
        b->setObjectName(name);
        b->setAutoDefault(false);
        connect(b, &QPushButton::clicked, this, work);
        buttons->addWidget(b);
        return b;
    };
    addButton("Command3", "Read", [this] { readRanges(); });
    addButton("Command5", "Send", [this] { sendRanges(); });
    addButton("Command4", "Preset>>", [this] { showPresets(); });
    addButton("Command6", "Clear", [this] {
        for (auto& range : copy_) range.fill("");
        showCopy();
        edited();
    });
    buttons->addStretch(1);
    addButton("Apply", "Apply", [this] { apply(); })->setEnabled(false);
    addButton("Command1", "Ok", [this] {
        apply();
        accept();
    })->setDefault(true);
    addButton("Command2", "Cancel", [this] { reject(); });

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(grid);
    layout->addWidget(progress_);
    layout->addLayout(buttons);

    fillLists();
    showCopy();
}

SearchEventsWindow::~SearchEventsWindow() { link_->close(); }

QPushButton* SearchEventsWindow::button(const char* name) const { return findChild<QPushButton*>(name); }

void SearchEventsWindow::showEvent(QShowEvent* event)
{
    QDialog::showEvent(event);
    if (!loaded_) formLoad();
}

void SearchEventsWindow::formLoad()
{
    if (loaded_) return;
    loaded_ = true;
    if (link_->open()) link_->wakeForRanges(services_.doc.model);
}

void SearchEventsWindow::fillLists()
{
    const bool was = painting_;
    painting_ = true;
    const auto steps = searchStepList(services_.doc.model);
    for (Row& row : rows_) {
        row.mode->clear();
        for (const std::string& m : searchModeList()) row.mode->addItem(toQt(m));
        row.step->clear();
        for (const std::string& s : steps) row.step->addItem(toQt(s));
    }
    painting_ = was;
}

void SearchEventsWindow::showCopy()
{
    painting_ = true;
    for (int r = 0; r < kSearchRanges; ++r) {
        Row& row = rows_[r];
        const auto& fields = copy_[r];
        row.start->setText(toQt(fields[rangefield::start]));
        row.end->setText(toQt(fields[rangefield::end]));
        row.tag->setText(toQt(fields[rangefield::tag]));
        const auto index = [](const std::string& text, const QComboBox* list) {
            const long long i = IntVal(text);
            return i >= 0 && i < list->count() ? static_cast<int>(i) : 0;
        };
        row.mode->setCurrentIndex(index(fields[rangefield::mode], row.mode));
        row.step->setCurrentIndex(index(fields[rangefield::step], row.step));
    }
    painting_ = false;
}

// Any edit goes into the private copy and makes Apply usable.
void SearchEventsWindow::edited()
{
    if (painting_) return;
    for (int r = 0; r < kSearchRanges; ++r) {
        const Row& row = rows_[r];
        auto& fields = copy_[r];
        fields[rangefield::start] = fromQt(row.start->text());
        fields[rangefield::end] = fromQt(row.end->text());
        fields[rangefield::tag] = fromQt(row.tag->text());
        fields[rangefield::mode] = std::to_string(row.mode->currentIndex());
        fields[rangefield::step] = std::to_string(row.step->currentIndex());
    }
    button("Apply")->setEnabled(true);
}

void SearchEventsWindow::showPresets()
{
    for (Row& row : rows_) row.preset->setVisible(true);
    adjustSize();
    resize(kPresetWidthTwips / kTwipsPerPixel, height());
    const QRect screen = (parentWidget() ? parentWidget()->screen() : QApplication::primaryScreen())->availableGeometry();
    move(screen.center() - rect().center());
}

void SearchEventsWindow::presetChosen(int range, int index)
{
    if (index < 0 || index >= static_cast<int>(services_.presets.size())) return;
    applyPreset(copy_[range], services_.presets[static_cast<std::size_t>(index)], services_.doc.model);
    showCopy();
    button("Apply")->setEnabled(true);
}

void SearchEventsWindow::setBusy(bool busy)
{
    for (const char* name : {"Command3", "Command5", "Command4", "Command6", "Command1", "Command2"})
        button(name)->setEnabled(!busy);
    if (busy) QApplication::setOverrideCursor(Qt::WaitCursor);
    else QApplication::restoreOverrideCursor();
}

void SearchEventsWindow::readRanges()
{
    if (!link_->checkModel(SearchLink::Direction::Read, services_.doc.model)) return;
    setBusy(true);
    fillLists();
    link_->readRanges(copy_, services_.doc.model, [this](int tens) { progress_->setValue(tens * 10); });
    showCopy();
    setBusy(false);
    button("Apply")->setEnabled(true);
}

void SearchEventsWindow::sendRanges()
{
    // The limits go as the scanner can tune them, and the boxes show it.
    for (auto& fields : copy_) {
        fields[rangefield::start] = searchLimit(fields[rangefield::start]);
        fields[rangefield::end] = searchLimit(fields[rangefield::end]);
    }
    showCopy();
    if (services_.settings.option7 != 1 && !link_->checkModel(SearchLink::Direction::Send, services_.doc.model))
        return;
    setBusy(true);
    link_->sendRanges(copy_, services_.doc.model, [this](int tens) { progress_->setValue(tens * 10); });
    setBusy(false);
}

void SearchEventsWindow::apply()
{
    services_.doc.srcdata = copy_;
    button("Apply")->setEnabled(false);
}

} // namespace kestra
