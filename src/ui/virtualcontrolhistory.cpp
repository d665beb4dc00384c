// The Virtual Control's "History" tab: the grid of the last hundred hits
// (newest on top) with how long each stayed on the air and its recording,
// and below it the session's "Activity": every frequency, trunk ID and tone
// heard, how often and how long, sortable by any column.

#include "ui/virtualcontrolwindow.h"

#include "platform/qt/qtext.h"
#include "ui/widgets/namedbutton.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QAudioDevice>
#include <QMediaDevices>
#include <QPushButton>
#include <QSoundEffect>
#include <QSplitter>
#include <QTableWidget>
#include <QUrl>
#include <QVBoxLayout>

namespace kestra {

namespace {

constexpr int kTwipsPerPixel = 15;

// The history grid's columns and their widths in units; the tenth, the date,
// has no header text. Beside them the hit's time on the air and its recording.
constexpr const char* kHistoryCaptions[HitLog::kColumns] = {"-",    "Bank", "Channel", "Frequency", "ID",
                                                            "Ctcss", "Dcs", "Time",    "Mode",      ""};
constexpr int kHistoryWidths[HitLog::kColumns] = {800, 600, 900, 1000, 1000, 700, 550, 1400, 700, 1000};
constexpr int kDurationColumn = HitLog::kColumns;
constexpr int kPlayColumn = HitLog::kColumns + 1;
constexpr const char* kPlayMark = "\u25B6";  // ▶ on a row that has a recording

constexpr const char* kActivityCaptions[] = {"Kind", "Heard", "Where", "Tag", "Hits", "Time on air", "Last"};
constexpr int kActivityColumns = 7;

// A cell's text, made only when there is something to show.
void setCell(QTableWidget* grid, int row, int column, const QString& text)
{
    QTableWidgetItem* item = grid->item(row, column);
    if (!item) {
        if (text.isEmpty()) return;
        item = new QTableWidgetItem;
        grid->setItem(row, column, item);
    }
    if (item->text() != text) item->setText(text);
}

// A cell that shows a text and sorts by a number behind it.
class NumberItem : public QTableWidgetItem {
public:
    bool operator<(const QTableWidgetItem& other) const override
    {
        return data(Qt::UserRole).toLongLong() < other.data(Qt::UserRole).toLongLong();
    }
};

void setSorted(QTableWidgetItem* item, qlonglong value, const QString& text)
{
    item->setData(Qt::UserRole, value);
    item->setText(text);  // last: the change of the shown text re-sorts the row
}

// "since the window opened" in minutes and seconds: when a hit was logged.
QString sinceText(std::int64_t ms)
{
    const std::int64_t s = ms / 1000;
    return QString("%1:%2").arg(s / 60).arg(s % 60, 2, 10, QChar('0'));
}

} // namespace

QWidget* VirtualControlWindow::buildHistoryTab()
{
    auto* page = new QWidget;
    page->setObjectName("History");
    auto* layout = new QVBoxLayout(page);
    auto* split = new QSplitter(Qt::Vertical, page);

    loggrid_ = new QTableWidget(HitLog::kRows, HitLog::kColumns + 2, split);
    loggrid_->setObjectName("loggrid");
    loggrid_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    loggrid_->setSelectionBehavior(QAbstractItemView::SelectRows);
    loggrid_->setSelectionMode(QAbstractItemView::SingleSelection);
    loggrid_->verticalHeader()->hide();
    loggrid_->verticalHeader()->setDefaultSectionSize(loggrid_->fontMetrics().height() + 4);
    QStringList captions;
    for (const char* caption : kHistoryCaptions) captions << caption;
    captions << "On air" << "Play";
    loggrid_->setHorizontalHeaderLabels(captions);
    for (int c = 0; c < HitLog::kColumns; ++c) loggrid_->setColumnWidth(c, kHistoryWidths[c] / kTwipsPerPixel);
    loggrid_->setColumnWidth(kDurationColumn, 900 / kTwipsPerPixel);
    loggrid_->setColumnWidth(kPlayColumn, 500 / kTwipsPerPixel);
    connect(loggrid_, &QTableWidget::cellClicked, this, [this](int row, int column) {
        if (column == kPlayColumn) playHistoryRow(row);
    });
    connect(loggrid_, &QTableWidget::itemSelectionChanged, this, [this] { showPlayButton(); });

    auto* activityPage = new QWidget(split);
    auto* activityLayout = new QVBoxLayout(activityPage);
    activityLayout->setContentsMargins(0, 0, 0, 0);
    auto* activityLabel = new QLabel("Activity", activityPage);
    activityGrid_ = new QTableWidget(0, kActivityColumns, activityPage);
    activityGrid_->setObjectName("activitygrid");
    activityLabel->setBuddy(activityGrid_);
    activityGrid_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    activityGrid_->setSelectionBehavior(QAbstractItemView::SelectRows);
    activityGrid_->verticalHeader()->hide();
    QStringList activityCaptions;
    for (const char* caption : kActivityCaptions) activityCaptions << caption;
    activityGrid_->setHorizontalHeaderLabels(activityCaptions);
    activityGrid_->horizontalHeader()->setStretchLastSection(true);
    activityGrid_->setSortingEnabled(true);
    activityGrid_->sortByColumn(4, Qt::DescendingOrder);
    activityLayout->addWidget(activityLabel);
    activityLayout->addWidget(activityGrid_, 1);
    split->addWidget(loggrid_);
    split->addWidget(activityPage);
    split->setStretchFactor(0, 3);
    split->setStretchFactor(1, 1);
    layout->addWidget(split, 1);

    auto* buttons = new QHBoxLayout;
    auto* clear = namedButton("Clear History", "Command13", page);
    connect(clear, &QPushButton::clicked, this, [this] {
        hitlog_->clear();
        showHistory();
    });
    auto* save = namedButton("Save current history", "Command1", page);
    connect(save, &QPushButton::clicked, this, &VirtualControlWindow::saveHistoryAs);
    playButton_ = namedButton("Play recording", "cmdPlay", page);
    playButton_->setEnabled(false);
    connect(playButton_, &QPushButton::clicked, this, [this] { playHistoryRow(loggrid_->currentRow()); });
    buttons->addWidget(clear);
    buttons->addWidget(save);
    buttons->addWidget(playButton_);
    buttons->addStretch(1);
    layout->addLayout(buttons);

    hitlog_->activity.onClosed = [this] { showHistory(); };
    showHistory();
    return page;
}

void VirtualControlWindow::showHistory()
{
    // Row 1 of the history, the newest hit, is the grid's top row.
    const auto& rows = hitlog_->histline();
    const auto& extras = hitlog_->activity.rows();
    for (int r = 1; r <= HitLog::kRows; ++r) {
        for (int c = 0; c < HitLog::kColumns; ++c) setCell(loggrid_, r - 1, c, toQt(rows[r][c]));
        const std::size_t at = static_cast<std::size_t>(r - 1);
        const bool known = at < extras.size();
        setCell(loggrid_, r - 1, kDurationColumn, known ? toQt(ActivityLog::durationText(extras[at].durationMs)) : QString());
        setCell(loggrid_, r - 1, kPlayColumn, known && !extras[at].recording.empty() ? QString(kPlayMark) : QString());
    }
    showActivity();
    showPlayButton();
}

void VirtualControlWindow::saveHistoryAs()
{
    FileChoice choice;
    choice.title = "Save current history";
    choice.filter = HitLog::kCsvFilter;
    choice.folder = table_.folder().path().string();
    const std::optional<std::string> chosen = table_.dialogs().saveFile(choice);
    if (!chosen) return;
    const std::string error = hitlog_->saveHistory(HitLog::csvName(*chosen));
    if (!error.empty()) table_.dialogs().message(error);
}

void VirtualControlWindow::showActivity()
{
    // Only what changed since the last look; each entry keeps its items, so
    // it is found wherever the user's sort has put it.
    const auto& entries = hitlog_->activity.entries();
    for (std::size_t place : hitlog_->activity.takeChanged()) {
        const ActivityLog::Entry& e = entries[place];
        if (place >= activityItems_.size()) {
            // A new row at the end, filled whole before the grid sorts it in.
            activityGrid_->setSortingEnabled(false);
            const int row = activityGrid_->rowCount();
            activityGrid_->insertRow(row);
            for (int c = 0; c < kActivityColumns; ++c)
                activityGrid_->setItem(row, c, c < 4 ? new QTableWidgetItem : new NumberItem);
            activityItems_.push_back(activityGrid_->item(row, 0));
            const QString texts[] = {toQt(e.kind), toQt(e.subject), toQt(e.where)};
            for (int c = 0; c < 3; ++c) activityGrid_->item(row, c)->setText(texts[c]);
            activityGrid_->setSortingEnabled(true);
        }
        const int row = activityItems_[place]->row();
        QTableWidgetItem* cells[kActivityColumns];
        for (int c = 0; c < kActivityColumns; ++c) cells[c] = activityGrid_->item(row, c);
        // Sorting moves the row as each value changes: the cells are held first.
        cells[3]->setText(toQt(e.tag));
        setSorted(cells[4], e.hits, QString::number(e.hits));
        setSorted(cells[5], e.totalMs, toQt(ActivityLog::durationText(e.totalMs)));
        setSorted(cells[6], e.lastMs - openedMs_, sinceText(e.lastMs - openedMs_));
    }
}

void VirtualControlWindow::showPlayButton()
{
    const int row = loggrid_->currentRow();
    const auto& extras = hitlog_->activity.rows();
    playButton_->setEnabled(row >= 0 && static_cast<std::size_t>(row) < extras.size() &&
                            !extras[static_cast<std::size_t>(row)].recording.empty());
}

void VirtualControlWindow::playHistoryRow(int row)
{
    const auto& extras = hitlog_->activity.rows();
    if (row < 0 || static_cast<std::size_t>(row) >= extras.size()) return;
    const std::string& file = extras[static_cast<std::size_t>(row)].recording;
    if (file.empty()) return;
    if (!std::filesystem::exists(file)) {
        table_.dialogs().message("The recording " + cp1252FromUtf8(file) + " is no longer there.");
        return;
    }
    if (QMediaDevices::audioOutputs().isEmpty()) {
        table_.dialogs().message("No audio device to play the recording on.");
        return;
    }
    if (!player_) player_ = new QSoundEffect(this);
    player_->stop();
    player_->setSource(QUrl::fromLocalFile(QString::fromStdString(file)));
    player_->play();
    playing_ = file;
}

} // namespace kestra
