#include "ui/easyfillwindow.h"
#include "ui/widgets/okcancel.h"

#include "core/memtable.h"
#include "editor/lineops.h"
#include "platform/qt/qtext.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace kestra {

namespace {

constexpr const char* kSelectAll = "Select All";
constexpr const char* kUnselectAll = "Unselect All";

QLineEdit* numberBox(const char* name, QWidget* parent)
{
    auto* box = new QLineEdit(parent);
    box->setObjectName(name);
    box->setMaxLength(12);
    return box;
}

} // namespace

const char* const EasyFillWindow::kInfo =
    " With Easy Fill you can setup a bank with ascending frequencies. Enter a start frequency and a step and KES "
    "will calculate all remaining frequencies.\r\n\r\n"
    "Example: Start = 88.00 and step = 100 kHz will fill the bank with 88.00 - 88.10 - 88.20 - 88.30 etc.";

EasyFillWindow::EasyFillWindow(MemTable& table, LineOperations& lineOps, QWidget* parent)
    : QDialog(parent), table_(table), lineOps_(lineOps)
{
    setObjectName("easy2");
    setWindowTitle(toQt("Easy Fill " + table_.modelName()));
    setModal(true);
    const ModelSwitches& model = table_.doc().model;

    // The range and the frequencies.
    auto* range = new QGridLayout;
    range->setHorizontalSpacing(8);
    text1_ = numberBox("Text1", this);
    text2_ = numberBox("Text2", this);
    text6_ = numberBox("Text6", this);
    // The step is typed or chosen from the usual increments.
    auto* stepList = new QComboBox(this);
    stepList->setObjectName("Text3");
    stepList->setEditable(true);
    stepList->setInsertPolicy(QComboBox::NoInsert);
    for (const std::string& step : easyStepChoices(model)) stepList->addItem(toQt(step));
    text3_ = stepList->lineEdit();
    text3_->setMaxLength(12);
    const std::pair<const char*, QWidget*> boxes[] = {
        {"From channel:", text1_}, {"To channel:", text2_}, {"Start:", text6_}, {"Step:", stepList}};
    int row = 0;
    for (const auto& [caption, box] : boxes) {
        auto* label = new QLabel(caption, this);
        label->setBuddy(box);
        range->addWidget(label, row, 0);
        range->addWidget(box, row, 1);
        ++row;
    }
    range->addWidget(new QLabel("MHz", this), 2, 2);
    range->addWidget(new QLabel("kHz", this), 3, 2);
    range->setColumnStretch(3, 1);

    // "Fill Range With:": a box and a list for each field.
    auto* fillGroup = new QGroupBox("Fill Range With:", this);
    auto* fields = new QGridLayout(fillGroup);
    fields->setColumnStretch(1, 1);
    for (int f = 0; f < kEasyFields; ++f) {
        const auto field = static_cast<EasyField>(f);
        auto* box = new QCheckBox(easyFieldCaption(field), fillGroup);
        box->setObjectName("ef");
        box->setProperty("index", f);
        fields->addWidget(box, f, 0);
        ef_[f] = box;
        if (field == EasyField::Frequency) continue;   // Start and Step are its values
        auto* list = new QComboBox(fillGroup);
        list->setObjectName("Combo1");
        list->setProperty("index", f);
        if (field == EasyField::Tag) {
            // Any tag may be typed; the Easy Tags of the document are offered.
            list->setEditable(true);
            list->setMinimumContentsLength(16);
            for (const std::string& tag : table_.doc().easytags) list->addItem(toQt(tag));
        } else {
            for (const std::string& text : easyFieldChoices(field, model)) list->addItem(toQt(text));
        }
        fields->addWidget(list, f, 1);
        list_[f] = list;
    }

    check3d1_ = new QCheckBox("Fill Series", this);
    check3d1_->setObjectName("check3d1");
    check3d1_->setToolTip("The number at the end of the tag counts up by one per channel");
    check1_ = new QCheckBox("Auto Increase Tone Setting", this);
    check1_->setObjectName("Check1");
    check1_->setToolTip("The PL/DPL setting moves on by one per channel");

    auto* info = new QLabel(toQt(kInfo).replace("\r\n", "\n"), this);
    info->setObjectName("info");
    info->setWordWrap(true);
    info->setFrameStyle(QFrame::StyledPanel | QFrame::Sunken);
    info->setMargin(6);

    auto* left = new QVBoxLayout;
    left->addLayout(range);
    left->addWidget(fillGroup);
    left->addWidget(check3d1_);
    left->addWidget(check1_);

    auto button = [this](const char* caption, const char* name) {
        auto* b = new QPushButton(caption, this);
        b->setObjectName(name);
        b->setAutoDefault(false);
        return b;
    };
    selectAll_ = button(kSelectAll, "selectall");
    default_ = button("Default", "defaults");
    allChannels_ = button("All Channels", "allchannels");
    help_ = button("Help", "help");
    apply_ = button("Apply", "Command5");
    auto* right = new QVBoxLayout;
    right->addWidget(info);
    right->addSpacing(8);
    for (QPushButton* b : {selectAll_, default_, allChannels_, help_, apply_}) right->addWidget(b);
    right->addStretch(1);

    auto* body = new QHBoxLayout;
    body->addLayout(left, 1);
    body->addSpacing(10);
    body->addLayout(right);

    const OkCancelRow okCancel = makeOkCancelRow(this, "Ok");
    ok_ = okCancel.ok;
    cancel_ = okCancel.cancel;
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(body);
    layout->addSpacing(6);
    layout->addLayout(okCancel.row);

    connect(selectAll_, &QPushButton::clicked, this, &EasyFillWindow::toggleSelectAll);
    connect(default_, &QPushButton::clicked, this, &EasyFillWindow::setDefaults);
    connect(allChannels_, &QPushButton::clicked, this, [this] { text2_->setText("1000"); });
    connect(help_, &QPushButton::clicked, this, &EasyFillWindow::showHelp);
    connect(apply_, &QPushButton::clicked, this, &EasyFillWindow::apply);
    connect(ok_, &QPushButton::clicked, this, &EasyFillWindow::accept);
    connect(cancel_, &QPushButton::clicked, this, &EasyFillWindow::reject);

    setDefaults();
}

void EasyFillWindow::setDefaults()
{
    const EasyFillValues first;
    showValues(first);
    for (int f = 0; f < kEasyFields; ++f) {
        ef_[f]->setChecked(first.ticked[f]);
        if (QComboBox* list = list_[f]) {
            if (list->isEditable())
                list->setEditText(QString());
            else
                list->setCurrentIndex(0);
        }
    }
    check3d1_->setChecked(first.fillSeries);
    check1_->setChecked(first.autoTone);
    selectAll_->setText(kSelectAll);
}

void EasyFillWindow::showValues(const EasyFillValues& values)
{
    text1_->setText(toQt(values.from));
    text2_->setText(toQt(values.to));
    text6_->setText(toQt(values.start));
    text3_->setText(toQt(values.step));
}

void EasyFillWindow::toggleSelectAll()
{
    const bool select = selectAll_->text() == kSelectAll;
    for (QCheckBox* box : ef_) box->setChecked(select);
    selectAll_->setText(select ? kUnselectAll : kSelectAll);
}

void EasyFillWindow::showHelp()
{
    table_.dialogs().message(kInfo, "Easy Fill", Buttons::Ok, Icon::Information);
}

EasyFillValues EasyFillWindow::values() const
{
    const ModelSwitches& model = table_.doc().model;
    EasyFillValues values;
    values.from = fromQt(text1_->text());
    values.to = fromQt(text2_->text());
    values.start = fromQt(text6_->text());
    values.step = fromQt(text3_->text());
    for (int f = 0; f < kEasyFields; ++f) {
        values.ticked[f] = ef_[f]->isChecked();
        if (list_[f]) values.code[f] = easyFieldCode(static_cast<EasyField>(f), fromQt(list_[f]->currentText()), model);
    }
    values.fillSeries = check3d1_->isChecked();
    values.autoTone = check1_->isChecked();
    return values;
}

void EasyFillWindow::apply()
{
    EasyFillValues v = values();
    // Each bank the fill reaches keeps its undo copy from before this window
    // changed it, so Undo on its tab brings it back.
    const ChannelRange range = easyFillRange(v);
    if (range.first <= range.last) {
        for (int b = channelBank(range.first); b <= channelBank(range.last); ++b)
            if (savedBanks_.insert(b).second) lineOps_.saveundo(b);
    }
    easyFill(table_.doc(), v);
    // The grid shows the filled bank at once: whatever carries the grid into
    // the store while the window stays open (the backup minute runs
    // createbank) must find the filled channels there, not the old ones.
    table_.fillgrid();
    showValues(v);
    applied_ = true;
}

void EasyFillWindow::accept()
{
    apply();
    QDialog::accept();
}

} // namespace kestra
