#include "ui/statuswindow.h"

#include <QCloseEvent>
#include <QEvent>
#include <QLabel>
#include <QVBoxLayout>

namespace kestra {

StatusWindow::StatusWindow(QWidget* parent) : QWidget(parent, Qt::Window | Qt::WindowStaysOnTopHint)
{
    setObjectName("states2");
    setWindowTitle("KESTRA - Status");
    setAttribute(Qt::WA_DeleteOnClose);
    setFixedSize(kWidthTwips / 15, kHeightTwips / 15);
    setAutoFillBackground(true);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(4, 2, 4, 2);
    layout->setSpacing(0);
    for (int i = 0; i < 5; ++i) {
        auto* label = new QLabel(this);
        label->setObjectName(QString("Label%1").arg(i + 1));
        label->setCursor(Qt::PointingHandCursor);
        label->installEventFilter(this);
        layout->addWidget(label);
        labels_[i] = label;
    }
    labels_[4]->setText("Busy");
    labels_[4]->setVisible(false);
    QFont fixed("Terminal");
    fixed.setStyleHint(QFont::TypeWriter);
    setLcdFont(fixed);
}

void StatusWindow::setLine(int line, const QString& text)
{
    if (line >= 0 && line < 4 && labels_[line]->text() != text) labels_[line]->setText(text);
}

QString StatusWindow::line(int line) const { return line >= 0 && line < 4 ? labels_[line]->text() : QString(); }

void StatusWindow::setBusy(bool busy) { labels_[4]->setVisible(busy); }
bool StatusWindow::busy() const { return !labels_[4]->isHidden(); }

void StatusWindow::setColours(const QColor& text, const QColor& back)
{
    QPalette pal = palette();
    pal.setColor(QPalette::Window, back);
    pal.setColor(QPalette::WindowText, text);
    setPalette(pal);
}

void StatusWindow::setLcdFont(const QFont& font)
{
    QFont small = font;
    small.setPointSize(9);
    for (QLabel* label : labels_) label->setFont(small);
}

QPoint StatusWindow::placeTwips() const { return {x() * 15, y() * 15}; }

void StatusWindow::moveTwips(int left, int top) { move(left / 15, top / 15); }

void StatusWindow::closeEvent(QCloseEvent* event)
{
    emit unloading();
    QWidget::closeEvent(event);
}

bool StatusWindow::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::MouseButtonRelease) {
        emit restoreRequested();
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

} // namespace kestra
