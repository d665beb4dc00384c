#pragma once
// A key filter for an entry box: typed characters that the rule refuses are
// dropped before the box sees them, and Enter, when a handler is given, runs
// it instead of pressing the window's default button. The rule sees each
// character in the program's single-byte form.

#include "platform/qt/qtext.h"

#include <QEvent>
#include <QKeyEvent>
#include <QObject>
#include <QWidget>

#include <functional>

namespace kestra {

class KeyFilter : public QObject {
public:
    KeyFilter(QWidget* box, std::function<bool(char)> accepted, std::function<void()> onEnter = {})
        : QObject(box), accepted_(std::move(accepted)), onEnter_(std::move(onEnter))
    {
        box->installEventFilter(this);
    }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() != QEvent::KeyPress) return QObject::eventFilter(watched, event);
        auto* key = static_cast<QKeyEvent*>(event);
        if (key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter) {
            if (!onEnter_) return false;
            onEnter_();
            return true;
        }
        // Editing keys (Backspace, arrows, shortcuts) pass; text goes through the rule.
        if (key->modifiers() & (Qt::ControlModifier | Qt::AltModifier)) return false;
        const std::string text = fromQt(key->text());
        if (text.size() != 1 || static_cast<unsigned char>(text[0]) < 32) return false;
        return !accepted_(text[0]);
    }

private:
    std::function<bool(char)> accepted_;
    std::function<void()> onEnter_;
};

} // namespace kestra
