// The Keyboard tab of the Virtual Control: the three key groups, the tuning
// knob, direct tuning ("VFO:") and Auto Resume, and the scanner's option menu
// shown over the keys while the display is in it.

#include "ui/virtualcontrolwindow.h"

#include "platform/qt/qtext.h"
#include "ui/widgets/panelkey.h"
#include "ui/widgets/tuningknob.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace kestra {

namespace {

// The close grid a group of keys sits in.
QGridLayout* keyGrid(QWidget* group)
{
    auto* grid = new QGridLayout(group);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setSpacing(4);
    return grid;
}

constexpr QSize kKeyA(82, 34);
constexpr QSize kKeyB(44, 30);
constexpr QSize kKeyC(62, 30);

// The scanner's option menu, as it lists it.
constexpr const char* kOptionMenu[] = {"1 : DIMMER", "2 : SCREEN MASK", "3 : KEY BEEP", "4 : ENTER LOCK",
                                       "5 : PC CONTROL", "6 : CLONE", "7 : DATA SKIP", "8 : SQ MODE",
                                       "9 : BANK TAG", "0 : P-25 CARD"};

} // namespace

QWidget* VirtualControlWindow::buildKeyboardTab()
{
    auto* page = new QWidget;
    page->setObjectName("Keyboard");
    auto* layout = new QVBoxLayout(page);
    layout->setContentsMargins(6, 6, 6, 6);
    auto* keys = new QHBoxLayout;
    keys->setSpacing(14);
    keys->addWidget(buildGroupA(page), 0, Qt::AlignTop);
    keys->addWidget(buildGroupB(page), 0, Qt::AlignTop);
    keys->addWidget(buildGroupC(page), 0, Qt::AlignTop);
    keys->addStretch(1);
    layout->addLayout(keys);
    layout->addStretch(1);
    layout->addWidget(buildTuning(page));
    picture23_ = static_cast<QFrame*>(buildOptionOverlay(page));
    return page;
}

QWidget* VirtualControlWindow::buildGroupA(QWidget* parent)
{
    auto* group = new QWidget(parent);
    QGridLayout* grid = keyGrid(group);
    for (int i = 0; i < 12; ++i) {
        auto* key = new PanelKey("Picture4", "Label1", i, true, group);
        key->setFixedSize(kKeyA);
        connect(key, &PanelKey::clicked, this, [this, i] {
            runKey(groupAKey(i, loop_->state(), table_.doc().model, loop_->retries()));
        });
        if (i == 10) {
            // The right button on Lock Out holds the key: "KEY06H" at the press.
            connect(key, &PanelKey::pressed, this, [this](Qt::MouseButton button) {
                if (button == Qt::RightButton) runKey(lockOutHold());
            });
        }
        grid->addWidget(key, i / 2, i % 2);
        keysA_[i] = key;
    }
    return group;
}

QWidget* VirtualControlWindow::buildGroupB(QWidget* parent)
{
    auto* group = new QWidget(parent);
    QGridLayout* grid = keyGrid(group);
    // The numeric pad: 1 2 3 / 4 5 6 / 7 8 9 / . 0 E
    const int places[12][2] = {{3, 1}, {0, 0}, {0, 1}, {0, 2}, {1, 0}, {1, 1},
                               {1, 2}, {2, 0}, {2, 1}, {2, 2}, {3, 2}, {3, 0}};
    for (int i = 0; i < 12; ++i) {
        auto* key = new PanelKey("Picture7", "Label2", i, false, group);
        key->setFixedSize(kKeyB);
        connect(key, &PanelKey::pressed, key, [key] { key->setHeldLook(true); });
        connect(key, &PanelKey::released, key, [key] { key->setHeldLook(false); });
        connect(key, &PanelKey::clicked, this, [this, i] { runKey(groupBKey(i)); });
        grid->addWidget(key, places[i][0], places[i][1]);
        keysB_[i] = key;
    }
    return group;
}

QWidget* VirtualControlWindow::buildGroupC(QWidget* parent)
{
    auto* group = new QWidget(parent);
    QGridLayout* grid = keyGrid(group);
    // DOWN UP / PRI LIGHT / MODE CLR / CH/FREQ / V UP V DOWN; index 3 is the Busy indicator.
    const int places[10][2] = {{0, 0}, {1, 0}, {1, 1}, {-1, -1}, {2, 0}, {0, 1}, {2, 1}, {3, 0}, {4, 0}, {4, 1}};
    for (int i = 0; i < 10; ++i) {
        if (i == 3) continue;
        auto* key = new PanelKey("Picture9", "Label4", i, false, group);
        key->setFixedSize(kKeyC);
        connect(key, &PanelKey::pressed, this, [this, key, i](Qt::MouseButton button) {
            key->setHeldLook(true);
            if (button == Qt::LeftButton || button == Qt::RightButton)
                runKey(groupCKey(i, button == Qt::RightButton, loop_->state(), table_.doc().model));
        });
        connect(key, &PanelKey::released, key, [key] { key->setHeldLook(false); });
        grid->addWidget(key, places[i][0], places[i][1]);
        keysC_[i] = key;
    }
    knob_ = new TuningKnob(group);
    connect(knob_, &TuningKnob::pressed, this, &VirtualControlWindow::knobPressed);
    connect(knob_, &TuningKnob::released, this, &VirtualControlWindow::knobReleased);
    grid->addWidget(knob_, 0, 2, 3, 1, Qt::AlignCenter);
    return group;
}

QWidget* VirtualControlWindow::buildTuning(QWidget* parent)
{
    auto* row = new QWidget(parent);
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);

    auto* frame13 = new QGroupBox("VFO:", row);
    frame13->setObjectName("Frame13");
    auto* vfo = new QHBoxLayout(frame13);
    text19_ = new QLineEdit(toQt(kDirectTuneStart), frame13);
    text19_->setObjectName("Text19");
    text19_->setMaxLength(12);
    text19_->setFixedWidth(90);
    text19_->installEventFilter(this);
    vfo->addWidget(text19_);
    command12_ = new QPushButton("Tune", frame13);
    command12_->setObjectName("Command12");
    connect(command12_, &QPushButton::clicked, this, &VirtualControlWindow::tune);
    vfo->addWidget(command12_);
    layout->addWidget(frame13);

    auto* resume = new QGroupBox(row);
    resume->setObjectName("Frame_resume");
    auto* r = new QHBoxLayout(resume);
    check2_ = new QCheckBox("Auto Resume after:", resume);
    check2_->setObjectName("Check2");
    r->addWidget(check2_);
    combo1_ = new QComboBox(resume);
    combo1_->setObjectName("Combo1");
    for (int seconds : AutoResume::kChoices) combo1_->addItem(QString::number(seconds));
    combo1_->setCurrentIndex(AutoResume::kStartChoice);
    r->addWidget(combo1_);
    r->addWidget(new QLabel("sec.", resume));
    connect(check2_, &QCheckBox::toggled, this, &VirtualControlWindow::autoResumeChanged);
    connect(combo1_, &QComboBox::currentIndexChanged, this, &VirtualControlWindow::autoResumeChanged);
    layout->addWidget(resume);
    layout->addStretch(1);
    return row;
}

QWidget* VirtualControlWindow::buildOptionOverlay(QWidget* parent)
{
    auto* frame = new QFrame(parent);
    frame->setObjectName("Picture23");
    frame->setFrameShape(QFrame::Box);
    frame->setAutoFillBackground(true);
    frame->setStyleSheet("QFrame#Picture23 { background: #fffbe0; border: 1px solid #606060; }");
    auto* layout = new QVBoxLayout(frame);
    auto* title = new QLabel("SYSTEM OPTION", frame);
    QFont bold = title->font();
    bold.setBold(true);
    title->setFont(bold);
    layout->addWidget(title);
    for (const char* entry : kOptionMenu) layout->addWidget(new QLabel(entry, frame));
    frame->adjustSize();
    frame->move(190, 8);
    frame->hide();
    return frame;
}

void VirtualControlWindow::knobPressed(Qt::MouseButton button)
{
    // Left turns down (Timer11), right turns up (Timer7), a step every 100 ms while held.
    if (button == Qt::LeftButton) timer11_->setEnabled(true);
    if (button == Qt::RightButton) timer7_->setEnabled(true);
}

void VirtualControlWindow::knobReleased()
{
    timer11_->setEnabled(false);
    timer7_->setEnabled(false);
}

void VirtualControlWindow::knobTick(bool up)
{
    knob_->setAngle(turnKnob(knob_->angle(), up));
    runKey(groupCKey(up ? 8 : 9, false, loop_->state(), table_.doc().model));
}

void VirtualControlWindow::tune()
{
    std::string text = fromQt(text19_->text());
    KeyAction action;
    action.commands = directTune(text);
    text19_->setText(toQt(text));
    runKey(action);
}

bool VirtualControlWindow::directTuneKey(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        tune();
        return true;
    }
    // Keys that type nothing (arrows, Delete, Home) are the box's own.
    const QString typed = event->text();
    if (typed.isEmpty() || event->key() == Qt::Key_Delete) return false;
    return !directTuneTakes(typed.at(0).unicode());
}

bool VirtualControlWindow::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == text19_ && event->type() == QEvent::KeyPress) return directTuneKey(static_cast<QKeyEvent*>(event));
    return QMainWindow::eventFilter(watched, event);
}

void VirtualControlWindow::autoResumeChanged()
{
    const int choice = std::clamp(combo1_->currentIndex(), 0, kResumeChoices - 1);
    loop_->setAutoResume(check2_->isChecked(), AutoResume::kChoices[choice]);
}

} // namespace kestra
