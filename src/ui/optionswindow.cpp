#include "ui/optionswindow.h"
#include "ui/widgets/okcancel.h"

#include "core/memtable.h"
#include "trunk/trunksystems.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSlider>
#include <QTabWidget>
#include <QVBoxLayout>

#include <cstring>
#include <stdexcept>

namespace kestra {

namespace {

enum Tab { General, Bandplan, Tags, Trunk, VirtualControl, Backup };

// Check1 by index: the setup.ini key, the caption of the box.
struct CheckBoxKey {
    const char* key;
    const char* caption;
};

constexpr CheckBoxKey kCheck1[OptionsWindow::kChecks] = {
    {"9khz", "Advanced Frequency Upload"},
    {"smart", "Smart Info"},
    {"zero", "Hide leading zero's of frequencies"},
    {"round", "Round Frequencies according to bandplan."},
    {"savenames", "Save memory bank tags in MEM file"},
    {"cleartag", "Automatically clear bank tags when selecting File _ New"},
    {"window", "Save Main Window Position and Size"},
    {"synctagsr", "Read memory bank tags from scanner when reading data."},
    {"synctagst", "Send memory bank tags to scanner when sending data."},
    {"remtags", "Software remembers last used bank tags"},
    {"shiftdir", "Reverse Channel Shift Option Buttons"},
    {"option3", "Do bandplan check before every upload"},
    {"option2", "Automatic Advanced Frequency Upload"},
    {"delid", "Delete Empty Trunk Id's during upload"},
    {"textra", "Read/Send Record from trunk id's "},
    {"loadlast", "Load last used file at startup"},
    {"tabwidth", "Save Width of Tabs"},
    {"option9", "Show Easy Tag Dropdown List"},
    {"qview", "Virtual Control Always On Top"},
    {"vstart", "Always start with Virtual Control"},
    {"vpos", "Store Virtual Control Window position"},
    {"linkbank", "Upload Active Bank settings"},
    {"infob", "Show Info Box"},
    {"vcm", "Do not close editor when running Virtual Control"},
    {"enc1", "in trunk id search mode"},
    {"enc2", "in trunk scan mode"},
    {"enc3", "in search mode"},
    {"enc4", "in scan mode"},
    {"option11", "Special 7.5 kHz support in VHF range"},
    {"option12", "Enable Step Logic"},
    {"vcstat", "When minimized show STATUS window"},
    {"ffont", "Display Tags in Fixed Width Font"},
};

// The choices of "Bandplan Option:" by value.
constexpr const char* kBandplans[] = {"None", "BC250/785 Bandplan - US", "Custom Bandplan",
                                      "UBC3300 - plan 1", "UBC3300 - plan 2", "UBC3300 - plan 3 - Germany"};
// The choices of "Scanner Model:": the file keeps the number 0..2 and nothing
// else gives it a name, so the number is what the user sees.
constexpr const char* kModels[] = {"0", "1", "2"};
constexpr const char* kAlignments[] = {"Left", "Center", "Right"};

int Settings::*memberOf(const char* key)
{
    for (const SettingKey& k : settingKeys())
        if (std::strcmp(k.name, key) == 0) return k.member;
    throw std::logic_error(std::string("no setting ") + key);
}

QComboBox* makeCombo(const char* name, const auto& items, int value, QWidget* parent)
{
    auto* combo = new QComboBox(parent);
    combo->setObjectName(name);
    for (const char* item : items) combo->addItem(QString::fromUtf8(item));
    // A value no choice stands for shows no choice, and stays as it is.
    combo->setCurrentIndex(value >= 0 && value < combo->count() ? value : -1);
    return combo;
}

QLineEdit* folderText(const std::string& folder, QWidget* parent)
{
    auto* text = new QLineEdit(QString::fromStdString(folder), parent);
    text->setReadOnly(true);
    text->setMinimumWidth(260);
    return text;
}

} // namespace

const char* OptionsWindow::checkKey(int index)
{
    return kCheck1[index].key;
}

QString OptionsWindow::minutesText(int minutes)
{
    return minutes == 1 ? QStringLiteral("1 Minute.") : QStringLiteral("%1 Minutes.").arg(minutes);
}

OptionsWindow::OptionsWindow(MemTable& table, QWidget* parent)
    : QDialog(parent), table_(table)
{
    setObjectName("softset");
    setWindowTitle("Software Options");
    setModal(true);

    const Settings& settings = table_.settings();
    for (int i = 0; i < kChecks; ++i) {
        auto* box = new QCheckBox(QString::fromUtf8(kCheck1[i].caption), this);
        box->setObjectName("Check1");
        box->setProperty("index", i);
        box->setChecked(settings.*memberOf(kCheck1[i].key) == 1);
        check1_[i] = box;
    }
    for (int i = 0; i < kChecks; ++i)
        if (std::strcmp(kCheck1[i].key, "option2") == 0)
            check1_[i]->setToolTip(
                "On from a fresh install. \"PM\" gives a channel its band's own step; where that is not the step "
                "you chose, the frequency is keyed in instead, so every channel comes back with the step it was sent "
                "with.");

    auto* tabs = new QTabWidget(this);
    tabs->setObjectName("SSTab1");
    tabs->setUsesScrollButtons(false);   // all six tabs in view: the window is as wide as they need
    auto page = [tabs](const char* caption) {
        auto* widget = new QWidget(tabs);
        auto* layout = new QVBoxLayout(widget);
        tabs->addTab(widget, QString::fromUtf8(caption));
        return layout;
    };
    auto group = [](const char* caption, QVBoxLayout* on) {
        auto* box = new QGroupBox(QString::fromUtf8(caption));
        auto* layout = new QVBoxLayout(box);
        on->addWidget(box);
        return layout;
    };
    auto add = [this](QBoxLayout* layout, std::initializer_list<int> indices) {
        for (int i : indices) layout->addWidget(check1_[i]);
    };

    // General
    QVBoxLayout* general = page("General");
    QVBoxLayout* display = group("Display", general);
    add(display, {2, 31, 1, 22});
    align_ = makeCombo("align", kAlignments, settings.align, this);
    auto* alignForm = new QFormLayout;
    alignForm->addRow("Grid Text Alignment:", align_);
    display->addLayout(alignForm);
    QVBoxLayout* program = group("Program", general);
    add(program, {6, 16, 15, 10});
    QVBoxLayout* scanner = group("Scanner", general);
    model_ = makeCombo("model", kModels, settings.model, this);
    auto* modelForm = new QFormLayout;
    modelForm->addRow("Scanner Model:", model_);
    scanner->addLayout(modelForm);
    add(scanner, {21});
    QVBoxLayout* defaults = group("Default folder", general);
    auto* defaultRow = new QHBoxLayout;
    defaultFolder_ = folderText(table_.opendir, this);
    defaultFolder_->setObjectName("defaultfolder");
    command4_ = new QPushButton("Choose...", this);
    command4_->setObjectName("Command4");
    defaultRow->addWidget(defaultFolder_, 1);
    defaultRow->addWidget(command4_);
    defaults->addLayout(defaultRow);
    general->addStretch(1);

    // Bandplan
    QVBoxLayout* plan = page("Bandplan");
    bandplan_ = makeCombo("bandplan", kBandplans, settings.bandplan, this);
    auto* planForm = new QFormLayout;
    planForm->addRow("Bandplan Option:", bandplan_);
    plan->addLayout(planForm);
    QVBoxLayout* rules = group("Frequencies", plan);
    add(rules, {3, 29, 28});
    QVBoxLayout* upload = group("Upload", plan);
    add(upload, {11, 0, 12});
    plan->addStretch(1);

    // Tags
    QVBoxLayout* tags = page("Tags");
    QVBoxLayout* bankTags = group("Memory bank tags", tags);
    add(bankTags, {4, 9, 5, 7, 8});
    QVBoxLayout* easyTags = group("Channel tags", tags);
    add(easyTags, {17});
    tags->addStretch(1);

    // Trunk
    QVBoxLayout* trunk = page("Trunk");
    QVBoxLayout* transfer = group("Transfer", trunk);
    add(transfer, {13, 14});
    QVBoxLayout* encrypted = group("APCO 25 encrypted communication auto resume", trunk);
    add(encrypted, {24, 25, 26, 27});
    command3_ = new QPushButton("Reset Trunk systems", this);
    command3_->setObjectName("Command3");
    auto* resetRow = new QHBoxLayout;
    resetRow->addWidget(command3_);
    resetRow->addStretch(1);
    trunk->addLayout(resetRow);
    trunk->addStretch(1);

    // Virtual Control
    QVBoxLayout* vc = page("Virtual Control");
    add(vc, {18, 19, 20, 23, 30});
    vc->addStretch(1);

    // Backup
    QVBoxLayout* backup = page("Backup");
    QVBoxLayout* automatic = group("Automatic backup", backup);
    backena_ = new QCheckBox("Enable Automatic Backup every:", this);
    backena_->setObjectName("backena");
    backena_->setChecked(settings.backena == 1);
    automatic->addWidget(backena_);
    auto* sliderRow = new QHBoxLayout;
    hscroll1_ = new QSlider(Qt::Horizontal, this);
    hscroll1_->setObjectName("HScroll1");
    hscroll1_->setRange(1, 99);
    hscroll1_->setPageStep(10);
    hscroll1_->setValue(settings.backupdelay);
    minutes_ = new QLabel(this);
    minutes_->setObjectName("Label1");
    minutes_->setMinimumWidth(minutes_->fontMetrics().horizontalAdvance("99 Minutes.") + 4);
    sliderRow->addWidget(hscroll1_, 1);
    sliderRow->addWidget(minutes_);
    automatic->addLayout(sliderRow);
    QVBoxLayout* backupFolder = group("Backup folder", backup);
    auto* backupRow = new QHBoxLayout;
    backupFolder_ = folderText(table_.backdir, this);
    backupFolder_->setObjectName("backupfolder");
    command5_ = new QPushButton("Choose...", this);
    command5_->setObjectName("Command5");
    backupRow->addWidget(backupFolder_, 1);
    backupRow->addWidget(command5_);
    backupFolder->addLayout(backupRow);
    backup->addStretch(1);
    showMinutes(hscroll1_->value());

    // Ok and Cancel
    const OkCancelRow okCancel = makeOkCancelRow(this, "Ok");
    ok_ = okCancel.ok;
    cancel_ = okCancel.cancel;
    auto* buttons = okCancel.row;

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(tabs, 1);
    layout->addLayout(buttons);

    connect(hscroll1_, &QSlider::valueChanged, this, &OptionsWindow::showMinutes);
    connect(command3_, &QPushButton::clicked, this, &OptionsWindow::resetTrunks);
    connect(command4_, &QPushButton::clicked, this, &OptionsWindow::chooseDefaultFolder);
    connect(command5_, &QPushButton::clicked, this, &OptionsWindow::chooseBackupFolder);
    connect(ok_, &QPushButton::clicked, this, &OptionsWindow::accept);
    connect(cancel_, &QPushButton::clicked, this, &OptionsWindow::reject);
}

void OptionsWindow::showMinutes(int minutes)
{
    minutes_->setText(minutesText(minutes));
}

void OptionsWindow::chooseDefaultFolder()
{
    if (auto folder = table_.dialogs().chooseFolder("Choose a folder:", chosenDefault_.value_or(table_.opendir))) {
        chosenDefault_ = *folder;
        defaultFolder_->setText(QString::fromStdString(*folder));
    }
}

void OptionsWindow::chooseBackupFolder()
{
    if (auto folder = table_.dialogs().chooseFolder("Choose a folder:", chosenBackup_.value_or(table_.backdir))) {
        chosenBackup_ = *folder;
        backupFolder_->setText(QString::fromStdString(*folder));
    }
}

void OptionsWindow::resetTrunks()
{
    resetTrunkSystems(table_.doc());
}

void OptionsWindow::accept()
{
    // The grid goes into the store under the old settings (the frequency form
    // among them) before it is filled anew under the new ones.
    table_.createbank();

    Settings& settings = table_.settings();
    for (int i = 0; i < kChecks; ++i) settings.*memberOf(kCheck1[i].key) = check1_[i]->isChecked() ? 1 : 0;
    if (bandplan_->currentIndex() >= 0) settings.bandplan = bandplan_->currentIndex();
    if (model_->currentIndex() >= 0) settings.model = model_->currentIndex();
    if (align_->currentIndex() >= 0) settings.align = align_->currentIndex();
    settings.backena = backena_->isChecked() ? 1 : 0;
    settings.backupdelay = hscroll1_->value();

    // The default folder is where files are opened and saved from then on.
    if (chosenDefault_) table_.opendir = table_.savedir = *chosenDefault_;
    if (chosenBackup_) table_.backdir = *chosenBackup_;

    table_.fillgrid();
    QDialog::accept();
}

} // namespace kestra
