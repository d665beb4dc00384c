#include "ui/widgets/lcdpanel.h"

#include "vcontrol/displaystate.h"

#include <QFontMetrics>
#include <QPainter>

namespace kestra {

namespace {
constexpr int kMargin = 6;  // the display's border around the cells
}

LcdPanel::LcdPanel(QWidget* parent) : QWidget(parent), text_(Qt::black), back_(Qt::white), display_(Qt::white)
{
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void LcdPanel::setLine(int line, const QString& text, const std::array<bool, kColumns>& inverted,
                       const std::array<bool, kColumns>& blinking)
{
    if (line < 0 || line >= kLines) return;
    Line cells;
    for (int i = 0; i < kColumns; ++i) {
        cells[i].ch = i < text.size() ? text.at(i) : QLatin1Char(' ');
        cells[i].inverted = inverted[i];
        cells[i].blinking = blinking[i];
    }
    bool same = true;
    for (int i = 0; i < kColumns && same; ++i)
        same = cells[i].ch == lines_[line][i].ch && cells[i].inverted == lines_[line][i].inverted &&
               cells[i].blinking == lines_[line][i].blinking;
    if (same) return;
    lines_[line] = cells;
    update();
}

QString LcdPanel::text(int line) const
{
    QString s;
    if (line < 0 || line >= kLines) return s;
    for (const Cell& c : lines_[line]) s += c.ch;
    return s;
}

void LcdPanel::setColours(const QColor& text, const QColor& back, const QColor& display)
{
    text_ = text;
    back_ = back;
    display_ = display;
    update();
}

void LcdPanel::setLcdFont(const QFont& font)
{
    setFont(font);
    updateGeometry();
    adjustSize();
    update();
}

void LcdPanel::blink()
{
    blinkOn_ = !blinkOn_;
    for (const Line& line : lines_)
        for (const Cell& c : line)
            if (c.blinking) {
                update();
                return;
            }
}

QSize LcdPanel::cellSize() const
{
    // Every cell as wide as a wide letter, so that a proportional font
    // still keeps the columns of the display.
    const QFontMetrics fm(font());
    return {std::max(fm.horizontalAdvance(QLatin1Char('W')), fm.horizontalAdvance(QLatin1Char('M'))), fm.height()};
}

QSize LcdPanel::sizeHint() const
{
    const QSize c = cellSize();
    return {c.width() * kColumns + 2 * kMargin, c.height() * kLines + 2 * kMargin};
}

void LcdPanel::paintEvent(QPaintEvent*)
{
    QPainter p(this);
    p.fillRect(rect(), display_);
    p.setFont(font());
    const QSize c = cellSize();
    const QColor reference = blinkOn_ ? text_ : back_;
    for (int l = 0; l < kLines; ++l) {
        for (int i = 0; i < kColumns; ++i) {
            const Cell& cell = lines_[l][i];
            const QRect r(kMargin + i * c.width(), kMargin + l * c.height(), c.width(), c.height());
            QColor fore = cell.inverted ? back_ : text_;
            const QColor ground = cell.inverted ? text_ : back_;
            // A blinking cell's character comes and goes against its ground.
            if (cell.blinking && reference != fore) fore = ground;
            p.fillRect(r, ground);
            p.setPen(fore);
            p.drawText(r, Qt::AlignCenter, QString(cell.ch));
        }
    }
}

SignalMeter::SignalMeter(QWidget* parent) : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void SignalMeter::setSignal(int signal)
{
    if (signal == signal_) return;
    signal_ = signal;
    update();
}

int SignalMeter::barsShown() const
{
    int shown = 0;
    for (int i = 0; i < kBars; ++i)
        if (meterBarShown(signal_, i)) ++shown;
    return shown;
}

void SignalMeter::paintEvent(QPaintEvent*)
{
    QPainter p(this);
    const int w = width() / kBars;
    for (int i = 0; i < kBars; ++i) {
        // Bars rise from left to right, as on the scanner's own meter.
        const int h = height() * (i + 3) / (kBars + 2);
        const QRect r(i * w + 1, height() - h, w - 2, h);
        p.fillRect(r, meterBarShown(signal_, i) ? QColor(0, 170, 0) : QColor(200, 200, 200));
    }
}

} // namespace kestra
