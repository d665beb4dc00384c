// The Virtual Control's tabs beside the keyboard (the "History" tab has a
// file of its own): "Log Setup" (what the hit log does and where it writes), "Audio
// Setup" and "Audio Rec." (the recorder), "Font" (the display's font and
// colours), "Misc." (the lists of active banks and the trunk lists), and the
// tab whose work comes in a later version.

#include "ui/virtualcontrolwindow.h"

#include "platform/qt/qtext.h"
#include "ui/widgets/lcdpanel.h"
#include "ui/widgets/namedbutton.h"
#include "ui/widgets/panelkey.h"

#include <QAction>
#include <QButtonGroup>
#include <QCheckBox>
#include <QColorDialog>
#include <QComboBox>
#include <QFontDatabase>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>
#include <QTableWidget>
#include <QVBoxLayout>

namespace kestra {

namespace {

int firstOf(ActiveList list)
{
    switch (list) {
    case ActiveList::SearchBanks: return 100;
    case ActiveList::ScanBanks: return 110;
    case ActiveList::IdLists: return 120;
    }
    return 100;
}

constexpr int kTwipsPerPixel = 15;

} // namespace

QWidget* VirtualControlWindow::buildLogSetupTab()
{
    auto* page = new QWidget;
    page->setObjectName("Log Setup");
    auto* layout = new QGridLayout(page);

    check3_ = new QCheckBox("Log History Data to disk:", page);
    check3_->setObjectName("Check3");
    connect(check3_, &QCheckBox::toggled, this, &VirtualControlWindow::logToDisk);
    layout->addWidget(check3_, 0, 0);
    label18_ = new QLabel(toQt(hitlog_->logname), page);
    label18_->setObjectName("Label18");
    label18_->setFrameShape(QFrame::StyledPanel);
    label18_->setFrameShadow(QFrame::Sunken);
    label18_->setMinimumWidth(260);
    layout->addWidget(label18_, 0, 1);
    auto* name = namedButton("Log file...", "Command2", page);
    connect(name, &QPushButton::clicked, this, &VirtualControlWindow::chooseLogName);
    layout->addWidget(name, 0, 2);

    const HitLogOptions& o = hitlog_->options;
    auto tick = [this, page](int index, const char* caption, const char* objectName, bool on) {
        auto* box = new QCheckBox(caption, page);
        box->setObjectName(objectName);
        box->setChecked(on);
        connect(box, &QCheckBox::toggled, this, [this] {
            HitLogOptions& options = hitlog_->options;
            options.onlyNew = logOptions_[0]->isChecked();
            options.lockoutIdSearch = logOptions_[1]->isChecked();
            options.lockoutSearch = logOptions_[2]->isChecked();
            options.resumeIdSearch = logOptions_[3]->isChecked();
            options.resumeSearch = logOptions_[4]->isChecked();
        });
        logOptions_[index] = box;
        return box;
    };
    layout->addWidget(tick(0, "Only Log new frequencies / trunk id's", "Check4", o.onlyNew), 1, 0, 1, 3);

    auto* lockout = new QGroupBox("Auto Lockout after logged:", page);
    auto* lockoutRows = new QVBoxLayout(lockout);
    lockoutRows->addWidget(tick(1, "in Trunk ID search mode", "Check7", o.lockoutIdSearch));
    lockoutRows->addWidget(tick(2, "in Search mode", "Check8", o.lockoutSearch));
    layout->addWidget(lockout, 2, 0);
    auto* resume = new QGroupBox("Auto Resume after logged:", page);
    auto* resumeRows = new QVBoxLayout(resume);
    resumeRows->addWidget(tick(3, "in Trunk ID search mode", "Check9", o.resumeIdSearch));
    resumeRows->addWidget(tick(4, "in Search mode", "Check10", o.resumeSearch));
    layout->addWidget(resume, 2, 1, 1, 2);
    layout->setColumnStretch(1, 1);
    layout->setRowStretch(3, 1);
    return page;
}

void VirtualControlWindow::logToDisk(bool on)
{
    // A file that cannot be opened leaves the box ticked: the lines are lost,
    // as a failed write loses them.
    if (!hitlog_->setLogging(on))
        label22_->setText(QString("Cannot open the log file %1").arg(toQt(hitlog_->logname)));
}

void VirtualControlWindow::chooseLogName()
{
    FileChoice choice;
    choice.title = "Log file";
    choice.filter = HitLog::kCsvFilter;
    const std::filesystem::path current(hitlog_->logname);
    choice.folder = current.parent_path().string();
    choice.name = current.filename().string();
    const std::optional<std::string> chosen = table_.dialogs().saveFile(choice);
    if (!chosen) return;
    hitlog_->logname = HitLog::csvName(*chosen);
    label18_->setText(toQt(hitlog_->logname));
}

QWidget* VirtualControlWindow::buildAudioSetupTab()
{
    auto* page = new QWidget;
    page->setObjectName("Audio Setup");
    auto* layout = new QGridLayout(page);

    auto* quality = new QGroupBox("Audio Quality:", page);
    auto* qualityRows = new QVBoxLayout(quality);
    auto* qualityGroup = new QButtonGroup(page);
    const char* qualities[2] = {"Low", "Medium"};
    for (int i = 0; i < 2; ++i) {
        option1_[i] = new QRadioButton(qualities[i], quality);
        option1_[i]->setObjectName("Option1");
        option1_[i]->setProperty("index", i);
        qualityGroup->addButton(option1_[i], i);
        qualityRows->addWidget(option1_[i]);
    }
    connect(qualityGroup, &QButtonGroup::idClicked, this, [this](int id) { audio_->setQuality(id); });
    layout->addWidget(quality, 0, 0);

    auto* trigger = new QGroupBox("Recording Trigger:", page);
    auto* triggerRows = new QVBoxLayout(trigger);
    auto* triggerGroup = new QButtonGroup(page);
    const char* triggers[2] = {"Automatically start when BUSY is shown", "Manual Control"};
    for (int i = 0; i < 2; ++i) {
        option2_[i] = new QRadioButton(triggers[i], trigger);
        option2_[i]->setObjectName("Option2");
        option2_[i]->setProperty("index", i);
        triggerGroup->addButton(option2_[i], i);
        triggerRows->addWidget(option2_[i]);
    }
    connect(triggerGroup, &QButtonGroup::idClicked, this, [this](int id) { audio_->setTrigger(id); });
    layout->addWidget(trigger, 0, 1);

    auto* delayRow = new QHBoxLayout;
    delayRow->addWidget(new QLabel("Post busy delay before saving:", page));
    hscroll1_ = new QSlider(Qt::Horizontal, page);
    hscroll1_->setObjectName("HScroll1");
    hscroll1_->setRange(AudioRecorder::kMinDelayMs, AudioRecorder::kMaxDelayMs);
    connect(hscroll1_, &QSlider::valueChanged, this, [this](int ms) {
        audio_->setDelay(ms);
        audiodel_->setText(QString("%1 ms").arg(ms));
    });
    delayRow->addWidget(hscroll1_, 1);
    audiodel_ = new QLabel(page);
    audiodel_->setObjectName("audiodel");
    audiodel_->setMinimumWidth(60);
    delayRow->addWidget(audiodel_);
    layout->addLayout(delayRow, 1, 0, 1, 2);

    auto* folderRow = new QHBoxLayout;
    audioFolder_ = new QLabel(page);
    audioFolder_->setObjectName("audiopath");
    audioFolder_->setFrameShape(QFrame::StyledPanel);
    audioFolder_->setFrameShadow(QFrame::Sunken);
    folderRow->addWidget(audioFolder_, 1);
    auto* choose = namedButton("Choose a folder...", "Command11", page);
    connect(choose, &QPushButton::clicked, this, &VirtualControlWindow::chooseAudioFolder);
    folderRow->addWidget(choose);
    layout->addLayout(folderRow, 2, 0, 1, 2);

    auto* selected = new QGroupBox("Record selected memory channels:", page);
    auto* selectedRow = new QHBoxLayout(selected);
    check11_ = new QCheckBox("Use Record Out parameter", selected);
    check11_->setObjectName("Check11");
    connect(check11_, &QCheckBox::toggled, this, [this](bool on) { audio_->setRecordOut(on); });
    selectedRow->addWidget(check11_);
    const char* names[4] = {"Text11", "Text13", "Text14", "Text15"};
    const char* tips[4] = {"Channel", "Bank", "Row", "Record"};
    for (int i = 0; i < 4; ++i) {
        recordOut_[i] = new QLineEdit(selected);
        recordOut_[i]->setObjectName(names[i]);
        recordOut_[i]->setToolTip(tips[i]);
        recordOut_[i]->setReadOnly(true);
        recordOut_[i]->setMaximumWidth(50);
        selectedRow->addWidget(recordOut_[i]);
    }
    selectedRow->addStretch(1);
    layout->addWidget(selected, 3, 0, 1, 2);
    layout->setRowStretch(4, 1);
    return page;
}

void VirtualControlWindow::chooseAudioFolder()
{
    const std::optional<std::string> chosen =
        table_.dialogs().chooseFolder("Choose a folder:", audio_->folder().string());
    if (!chosen) return;
    audio_->setAudioPath(*chosen);
    showAudio();
}

QWidget* VirtualControlWindow::buildAudioRecTab()
{
    auto* page = new QWidget;
    page->setObjectName("Audio Rec.");
    auto* layout = new QGridLayout(page);

    auto* onOff = new QHBoxLayout;
    command4_ = namedButton("Start", "Command4", page);
    connect(command4_, &QPushButton::clicked, this, [this] { audio_->startButton(); });
    command5_ = namedButton("Stop", "Command5", page);
    connect(command5_, &QPushButton::clicked, this, [this] { audio_->stopButton(); });
    onOff->addWidget(command4_);
    onOff->addWidget(command5_);
    onOff->addStretch(1);
    layout->addLayout(onOff, 0, 0, 1, 3);

    cmdRecord_ = namedButton("Record", "cmdRecord", page);
    cmdRecord_->setToolTip("Start recording immediate");
    connect(cmdRecord_, &QPushButton::clicked, this, [this] { audio_->record(); });
    cmdSave_ = namedButton("Save", "cmdSave", page);
    cmdSave_->setToolTip("Save the recording as as WAV file");
    connect(cmdSave_, &QPushButton::clicked, this, [this] { audio_->save(); });
    auto* reset = namedButton("Reset", "cmdReset", page);
    reset->setToolTip("To start a new recording and adjusting all settings");
    connect(reset, &QPushButton::clicked, this, [this] { audio_->reset(); });
    layout->addWidget(cmdRecord_, 1, 0);
    layout->addWidget(cmdSave_, 1, 1);
    layout->addWidget(reset, 1, 2);

    auto label = [page](const char* name, const char* tip) {
        auto* l = new QLabel(page);
        l->setObjectName(name);
        l->setToolTip(tip);
        l->setFrameShape(QFrame::StyledPanel);
        l->setFrameShadow(QFrame::Sunken);
        l->setMinimumHeight(22);
        return l;
    };
    label27_ = label("Label27", "");
    label28_ = label("Label28", "Frequency");
    label29_ = label("Label29", "Trunk ID");
    layout->addWidget(label27_, 2, 0);
    layout->addWidget(label28_, 2, 1);
    layout->addWidget(label29_, 2, 2);
    layout->setRowStretch(3, 1);
    return page;
}

void VirtualControlWindow::showAudio()
{
    // Shown without running the controls' own changes again.
    const AudioRecorder& a = *audio_;
    for (int i = 0; i < 2; ++i) {
        option1_[i]->setChecked(a.quality() == i);
        option2_[i]->setChecked(a.trigger() == i);
    }
    {
        const QSignalBlocker quiet(hscroll1_);
        hscroll1_->setValue(a.delay());
    }
    audiodel_->setText(QString("%1 ms").arg(a.delay()));
    audioFolder_->setText(QString::fromStdString(a.folder().string()));
    {
        const QSignalBlocker quiet(check11_);
        check11_->setChecked(a.recordOutOn());
    }
    const AudioRecorder::RecordOut& out = a.recordOut();
    recordOut_[0]->setText(QString::number(out.channel));
    recordOut_[1]->setText(QString::number(out.bank));
    recordOut_[2]->setText(QString::number(out.row));
    recordOut_[3]->setText(toQt(out.value));
    arOn_->setChecked(a.recordingOn());
    command4_->setEnabled(a.startEnabled());
    command5_->setEnabled(a.stopEnabled());
    cmdRecord_->setEnabled(a.recordEnabled());
    cmdSave_->setEnabled(a.saveEnabled());
    label27_->setText(toQt(a.label27()));
    label28_->setText(toQt(a.label28()));
    label29_->setText(toQt(a.label29()));
}

void VirtualControlWindow::storeTabs()
{
    hitlog_->options.toIni(vfo_);
    vfo_.filename = hitlog_->logname;
    vfo_.audiopath = audio_->audioPath();
    vfo_.option[7] = audio_->recordOutOn() ? 1 : 0;
}

QWidget* VirtualControlWindow::buildFontTab()
{
    auto* page = new QWidget;
    page->setObjectName("Font");
    auto* layout = new QGridLayout(page);

    check6_ = new QCheckBox("Use custom settings:", page);
    check6_->setObjectName("Check6");
    check6_->setChecked(vfo_.custom == 1);
    layout->addWidget(check6_, 0, 0, 1, 2);

    layout->addWidget(new QLabel("Font:", page), 1, 0);
    fontNames_ = new QComboBox(page);
    fontNames_->setObjectName("fontname");
    QStringList families = QFontDatabase::families();
    if (!families.contains("Terminal")) families.prepend("Terminal");
    fontNames_->addItems(families);
    layout->addWidget(fontNames_, 1, 1);

    layout->addWidget(new QLabel("Size:", page), 2, 0);
    fontSizes_ = new QComboBox(page);
    fontSizes_->setObjectName("fontsize");
    for (int size : LcdLook::kSizes) fontSizes_->addItem(QString::number(size));
    layout->addWidget(fontSizes_, 2, 1);

    check5_ = new QCheckBox("Bold", page);
    check5_->setObjectName("Check5");
    layout->addWidget(check5_, 3, 1);

    auto* colours = new QHBoxLayout;
    const char* captions[3] = {"Text ForeColor", "Text BackColor", "Display Back"};
    for (int i = 0; i < 3; ++i) {
        auto* button = new QPushButton(captions[i], page);
        button->setObjectName("colour");
        button->setProperty("index", i);
        connect(button, &QPushButton::clicked, this, [this, i] { chooseColour(i); });
        colours->addWidget(button);
    }
    layout->addLayout(colours, 4, 0, 1, 3);

    fontSample_ = new QLabel(" 146.5200 NFM ", page);
    fontSample_->setObjectName("sample");
    fontSample_->setAlignment(Qt::AlignCenter);
    fontSample_->setMinimumHeight(48);
    layout->addWidget(fontSample_, 5, 0, 1, 3);

    auto* buttons = new QHBoxLayout;
    auto* apply = new QPushButton("Apply", page);
    apply->setObjectName("apply");
    connect(apply, &QPushButton::clicked, this, &VirtualControlWindow::fontTabApply);
    auto* reset = new QPushButton("Default", page);
    reset->setObjectName("default");
    connect(reset, &QPushButton::clicked, this, &VirtualControlWindow::fontTabDefault);
    buttons->addStretch(1);
    buttons->addWidget(apply);
    buttons->addWidget(reset);
    layout->addLayout(buttons, 6, 0, 1, 3);
    layout->setColumnStretch(2, 1);
    layout->setRowStretch(7, 1);

    // The sample follows the choice before it is applied.
    connect(fontNames_, &QComboBox::currentIndexChanged, this, &VirtualControlWindow::fontTabSample);
    connect(fontSizes_, &QComboBox::currentIndexChanged, this, &VirtualControlWindow::fontTabSample);
    connect(check5_, &QCheckBox::toggled, this, &VirtualControlWindow::fontTabSample);
    return page;
}

void VirtualControlWindow::fontTabFromLook()
{
    pendingLook_ = look_;
    int name = fontNames_->findText(toQt(look_.fontname), Qt::MatchFixedString);
    if (name < 0) {
        fontNames_->addItem(toQt(look_.fontname));
        name = fontNames_->count() - 1;
    }
    fontNames_->setCurrentIndex(name);
    int size = fontSizes_->findText(QString::number(look_.fontsize));
    if (size < 0) {
        fontSizes_->addItem(QString::number(look_.fontsize));
        size = fontSizes_->count() - 1;
    }
    fontSizes_->setCurrentIndex(size);
    check5_->setChecked(look_.fontbold == 1);
    fontTabSample();
}

void VirtualControlWindow::fontTabSample()
{
    // The colours have no control of their own: the sample shows them.
    QFont font(fontNames_->currentText());
    font.setPointSize(std::min(fontSizes_->currentText().toInt(), 18));
    font.setBold(check5_->isChecked());
    fontSample_->setFont(font);
    fontSample_->setStyleSheet(QString("color: %1; background: %2; border: 6px solid %3;")
                                   .arg(LcdLook::colour(pendingLook_.color[0]).name(),
                                        LcdLook::colour(pendingLook_.color[1]).name(),
                                        LcdLook::colour(pendingLook_.color[2]).name()));
}

void VirtualControlWindow::chooseColour(int which)
{
    const QString titles[3] = {"Text ForeColor", "Text BackColor", "Display Back"};
    const QColor chosen = QColorDialog::getColor(LcdLook::colour(pendingLook_.color[which]), this, titles[which]);
    if (!chosen.isValid()) return;
    pendingLook_.color[which] = LcdLook::classic(chosen);
    if (which == 0) pendingLook_.color[3] = pendingLook_.color[0];
    fontTabSample();
}

void VirtualControlWindow::fontTabApply()
{
    pendingLook_.fontname = fromQt(fontNames_->currentText());
    if (pendingLook_.fontname.size() < 4) pendingLook_.fontname = "Terminal";
    pendingLook_.fontsize = std::clamp(fontSizes_->currentText().toInt(), 8, 24);
    pendingLook_.fontbold = check5_->isChecked() ? 1 : 0;
    look_ = pendingLook_;
    applyLook();
}

void VirtualControlWindow::fontTabDefault()
{
    look_ = LcdLook{};
    fontTabFromLook();
    applyLook();
}

QWidget* VirtualControlWindow::buildMiscTab()
{
    auto* page = new QWidget;
    page->setObjectName("Misc.");
    // A size smaller than the rest, so that both halves fit the fixed width.
    QFont small = page->font();
    small.setPointSizeF(small.pointSizeF() - 1);
    page->setFont(small);
    auto* layout = new QHBoxLayout(page);
    layout->setSpacing(6);

    auto* left = new QVBoxLayout;
    const char* captions[3] = {"Active Searchbanks (use double click to toggle):",
                               "Active Scanbanks (use double click to toggle):",
                               "Active Scanlists (use double click to toggle):"};
    for (int f = 0; f < 3; ++f) {
        auto* frame = new QGroupBox(captions[f], page);
        frame->setObjectName("activeframe");
        frame->setProperty("index", f);
        auto* row = new QHBoxLayout(frame);
        row->setSpacing(1);
        for (int i = 0; i < 10; ++i) {
            const int index = 100 + 10 * f + i;
            auto* letter = new ToggleLetter(index, QString(QChar('A' + i)), frame);
            connect(letter, &ToggleLetter::doubleClicked, this, [this, index] { letterToggled(index); });
            row->addWidget(letter);
            linkb1_[index] = letter;
        }
        row->addStretch(1);
        // Shown once the scanner has told which are active.
        frame->hide();
        QSizePolicy keep = frame->sizePolicy();
        keep.setRetainSizeWhenHidden(true);
        frame->setSizePolicy(keep);
        activeFrames_[f] = frame;
        left->addWidget(frame);
    }
    left->addStretch(1);
    layout->addLayout(left);

    auto* trunk = new QGroupBox("Trunk Lists:", page);
    trunk->setObjectName("trunklists");
    auto* grid = new QGridLayout(trunk);
    grid->setSpacing(1);
    grid->setHorizontalSpacing(2);
    for (int bank = 0; bank < 10; ++bank) {
        auto* caption = new QLabel(QString("Bank %1:").arg(bank + 1), trunk);
        caption->setMinimumWidth(caption->sizeHint().width() + 4);
        grid->addWidget(caption, bank, 0);
        for (int i = 0; i < 10; ++i) {
            const int index = bank * 10 + i;
            auto* letter = new ToggleLetter(index, QString(QChar('A' + i)), trunk);
            connect(letter, &ToggleLetter::doubleClicked, this, [this, index] { letterToggled(index); });
            grid->addWidget(letter, bank, i + 1);
            linkb1_[index] = letter;
        }
    }
    trunk->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    layout->addWidget(trunk, 0, Qt::AlignTop);
    return page;
}

void VirtualControlWindow::activeReply(ActiveList list, const std::string& reply)
{
    const std::array<bool, 10> lit = activeFromReply(reply);
    const int first = firstOf(list);
    activeFrames_[(first - 100) / 10]->show();
    for (int i = 0; i < 10; ++i) linkb1_[first + i]->setOn(lit[i]);
}

void VirtualControlWindow::letterToggled(int index)
{
    ToggleLetter* letter = linkb1_[index];
    letter->setOn(!letter->on());
    // The trunk lists only change colour; the three lists go to the scanner,
    // and the next poll of the list confirms them.
    if (index < 100) return;
    const ActiveList list = index < 110 ? ActiveList::SearchBanks : index < 120 ? ActiveList::ScanBanks : ActiveList::IdLists;
    const int first = firstOf(list);
    std::array<bool, 10> lit{};
    for (int i = 0; i < 10; ++i) lit[i] = linkb1_[first + i]->on();
    if (!closed_) loop_->send(activeCommand(list, lit));
}

} // namespace kestra
