#include "ui/widgets/tuningknob.h"

#include "vcontrol/keypad.h"

#include <QMouseEvent>
#include <QPainter>
#include <QRadialGradient>

namespace kestra {

TuningKnob::TuningKnob(QWidget* parent) : QWidget(parent)
{
    setObjectName("Picture10");
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setFixedSize(sizeHint());
    setCursor(Qt::PointingHandCursor);
    setToolTip("Left button: turn down. Right button: turn up.");
}

void TuningKnob::setAngle(int degrees)
{
    if (degrees == angle_) return;
    angle_ = degrees;
    update();
}

void TuningKnob::paintEvent(QPaintEvent*)
{
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    const QRectF body = QRectF(rect()).adjusted(2, 2, -2, -2);
    const QPointF centre = body.center();
    const double radius = body.width() / 2;
    QRadialGradient shade(centre - QPointF(radius / 3, radius / 3), radius * 1.4);
    shade.setColorAt(0, QColor(120, 120, 120));
    shade.setColorAt(1, QColor(30, 30, 30));
    p.setBrush(shade);
    p.setPen(QPen(QColor(10, 10, 10), 1.5));
    p.drawEllipse(body);
    // The line from the centre towards the angle, as far as two thirds out.
    const KnobEnd end = knobEnd(angle_, radius * 2 / 3);
    p.setPen(QPen(QColor(240, 240, 240), 3, Qt::SolidLine, Qt::RoundCap));
    p.drawLine(centre, centre + QPointF(end.x, end.y));
}

void TuningKnob::mousePressEvent(QMouseEvent* event)
{
    emit pressed(event->button());
}

void TuningKnob::mouseReleaseEvent(QMouseEvent*)
{
    emit released();
}

} // namespace kestra
