#pragma once
// A filter of the characters typed into a text box: a key whose character the
// box does not take is dropped before the box sees it. Keys without a
// character (arrows, Enter, Escape, Delete) pass. With clearOnDoubleClick a double click
// empties the box.

#include <QEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QObject>

#include <functional>

namespace kestra {

class KeyFilter : public QObject {
public:
    KeyFilter(QLineEdit* box, std::function<bool(char)> accepts, bool clearOnDoubleClick = false)
        : QObject(box), box_(box), accepts_(std::move(accepts)), clearOnDoubleClick_(clearOnDoubleClick)
    {
        box->installEventFilter(this);
    }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (watched == box_ && event->type() == QEvent::KeyPress) {
            const QString text = static_cast<QKeyEvent*>(event)->text();
            if (!text.isEmpty()) {
                const char16_t code = text.at(0).unicode();
                // Enter and Escape belong to the window's buttons; Delete edits like Backspace.
                if (code == '\r' || code == 27 || code == 127) return false;
                if (code > 255 || !accepts_(static_cast<char>(code))) return true;
            }
        } else if (watched == box_ && clearOnDoubleClick_ && event->type() == QEvent::MouseButtonDblClick) {
            box_->clear();
            return true;
        }
        return QObject::eventFilter(watched, event);
    }

private:
    QLineEdit* box_;
    std::function<bool(char)> accepts_;
    bool clearOnDoubleClick_;
};

} // namespace kestra
