#pragma once
// A key filter for an entry box: typed characters that the rule refuses are
// dropped before the box sees them (the rule sees each character in the
// program's single-byte form). Keys without a character, Backspace, Delete,
// Escape and the shortcuts pass. Enter, when a handler is given, runs it
// instead of pressing the window's default button. With clearOnDoubleClick a
// double click empties the box.

#include "platform/qt/qtext.h"

#include <QEvent>
#include <QKeyEvent>
#include <QLineEdit>
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
    KeyFilter(QLineEdit* box, std::function<bool(char)> accepted, bool clearOnDoubleClick)
        : KeyFilter(static_cast<QWidget*>(box), std::move(accepted))
    {
        clearOnDoubleClick_ = clearOnDoubleClick;
    }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::MouseButtonDblClick && clearOnDoubleClick_) {
            if (auto* line = qobject_cast<QLineEdit*>(watched)) {
                line->clear();
                return true;
            }
        }
        if (event->type() != QEvent::KeyPress) return QObject::eventFilter(watched, event);
        auto* key = static_cast<QKeyEvent*>(event);
        if (key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter) {
            if (!onEnter_) return false;
            onEnter_();
            return true;
        }
        if (key->modifiers() & (Qt::ControlModifier | Qt::AltModifier)) return false;
        const std::string text = fromQt(key->text());
        const unsigned char c = text.size() == 1 ? static_cast<unsigned char>(text[0]) : 0;
        if (c < 32 || c == 127) return false;
        return !accepted_(text[0]);
    }

private:
    std::function<bool(char)> accepted_;
    std::function<void()> onEnter_;
    bool clearOnDoubleClick_ = false;
};

} // namespace kestra
