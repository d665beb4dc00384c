#include "ui/widgets/panelkey.h"

#include <QMouseEvent>
#include <QVBoxLayout>

namespace kestra {

namespace {

// The key's look: a grey cap; the lamp above the caption lit red-orange or dark.
constexpr const char* kKeyStyle = "kestra--PanelKey { background: #c8c8c8; border: 1px solid #6e6e6e; border-radius: 4px; }";
constexpr const char* kLampLit = "background: #ff5000; border: 1px solid #7a2600;";
constexpr const char* kLampUnlit = "background: #505050; border: 1px solid #303030;";

// Cyan on (red 0, green 255, blue 255), grey off (128 each).
constexpr const char* kLetterOn = "background: rgb(0,255,255); border: 1px solid #404040;";
constexpr const char* kLetterOff = "background: rgb(128,128,128); border: 1px solid #404040;";

} // namespace

PanelKey::PanelKey(const char* pictureName, const char* labelName, int index, bool withLamp, QWidget* parent)
    : QFrame(parent), index_(index)
{
    setObjectName(pictureName);
    setProperty("index", index);
    setStyleSheet(kKeyStyle);
    setCursor(Qt::PointingHandCursor);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(3, 2, 3, 2);
    layout->setSpacing(1);
    if (withLamp) {
        lamp_ = new QFrame(this);
        lamp_->setObjectName("lamp");
        lamp_->setFixedHeight(5);
        lamp_->setStyleSheet(kLampUnlit);
        lamp_->setAttribute(Qt::WA_TransparentForMouseEvents);
        layout->addWidget(lamp_);
    }
    label_ = new QLabel(this);
    label_->setObjectName(labelName);
    label_->setProperty("index", index);
    label_->setAlignment(Qt::AlignCenter);
    label_->setWordWrap(true);
    label_->setAttribute(Qt::WA_TransparentForMouseEvents);
    QFont small = label_->font();
    small.setPointSizeF(std::max(6.0, small.pointSizeF() - 1));
    small.setBold(true);
    label_->setFont(small);
    setHeldLook(false);
    layout->addWidget(label_, 1);
}

void PanelKey::setCaption(const QString& caption)
{
    if (label_->text() != caption) label_->setText(caption);
}

void PanelKey::setLit(bool lit)
{
    if (!lamp_ || lit == lit_) return;
    lit_ = lit;
    lamp_->setStyleSheet(lit ? kLampLit : kLampUnlit);
}

void PanelKey::setHeldLook(bool held)
{
    label_->setStyleSheet(held ? "color: white; background: transparent;" : "color: black; background: transparent;");
}

void PanelKey::mousePressEvent(QMouseEvent* event)
{
    emit pressed(event->button());
}

void PanelKey::mouseReleaseEvent(QMouseEvent* event)
{
    emit released(event->button());
    if (rect().contains(event->position().toPoint())) emit clicked(event->button());
}

void PanelKey::mouseDoubleClickEvent(QMouseEvent* event)
{
    // The second press of a double click is a press of its own, so that two
    // quick clicks are two key presses on the scanner.
    emit pressed(event->button());
    emit doubleClicked();
}

ToggleLetter::ToggleLetter(int index, const QString& letter, QWidget* parent) : QLabel(letter, parent), index_(index)
{
    setObjectName("linkb1");
    setProperty("index", index);
    setAlignment(Qt::AlignCenter);
    setFixedSize(20, 18);
    setStyleSheet(kLetterOff);
}

void ToggleLetter::setOn(bool on)
{
    if (on == on_) return;
    on_ = on;
    setStyleSheet(on ? kLetterOn : kLetterOff);
}

void ToggleLetter::mouseDoubleClickEvent(QMouseEvent*)
{
    emit doubleClicked();
}

} // namespace kestra
