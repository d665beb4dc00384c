#pragma once
// The tuning knob Picture10: a round knob with a line that shows its angle.
// The knob itself only draws and reports the mouse: the window turns it while
// a button is held.

#include <QWidget>

namespace kestra {

class TuningKnob : public QWidget {
    Q_OBJECT
public:
    explicit TuningKnob(QWidget* parent = nullptr);

    int angle() const { return angle_; }
    void setAngle(int degrees);

    QSize sizeHint() const override { return {64, 64}; }

signals:
    void pressed(Qt::MouseButton button);
    void released();

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    int angle_ = 0;
};

} // namespace kestra
