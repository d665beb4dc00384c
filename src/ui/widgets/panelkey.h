#pragma once
// The keys of the Virtual Control's panel. A key is a picture with a caption
// on top, and both react alike: a press, a release, a click (press and
// release on the key, with either button) and a double click. Keys of group A
// carry a lamp. The picture and the caption take the names of their control
// arrays (Picture4 and Label1, ...) with the key's place in the array as
// property "index".
//
// ToggleLetter is one letter of the lists of active banks (linkb1): cyan when
// on, grey when off, toggled by a double click.

#include <QFrame>
#include <QLabel>

namespace kestra {

class PanelKey : public QFrame {
    Q_OBJECT
public:
    PanelKey(const char* pictureName, const char* labelName, int index, bool withLamp, QWidget* parent = nullptr);

    int index() const { return index_; }
    void setCaption(const QString& caption);
    QString caption() const { return label_->text(); }
    QLabel* label() const { return label_; }

    bool hasLamp() const { return lamp_ != nullptr; }
    void setLit(bool lit);
    bool lit() const { return lit_; }

    // The caption in white while the key is held (groups B and C), black otherwise.
    void setHeldLook(bool held);

signals:
    void pressed(Qt::MouseButton button);
    void released(Qt::MouseButton button);
    void clicked(Qt::MouseButton button);
    void doubleClicked();

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;

private:
    int index_;
    QLabel* label_;
    QFrame* lamp_ = nullptr;
    bool lit_ = false;
};

class ToggleLetter : public QLabel {
    Q_OBJECT
public:
    ToggleLetter(int index, const QString& letter, QWidget* parent = nullptr);

    int index() const { return index_; }
    void setOn(bool on);
    bool on() const { return on_; }

signals:
    void doubleClicked();

protected:
    void mouseDoubleClickEvent(QMouseEvent* event) override;

private:
    int index_;
    bool on_ = false;
};

} // namespace kestra
