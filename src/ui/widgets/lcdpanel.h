#pragma once
// The mirror of the scanner's four-line display: four rows of sixteen cells
// (lijn1 to lijn4), one character to a cell, so that each cell can be shown
// inverted alone. A cell may also blink: the blink tick flips a reference
// colour between the text colour and the back colour, and blinking cells draw
// their character in it. Beside it the signal meter of eight bars.

#include <QColor>
#include <QFont>
#include <QWidget>

#include <array>

namespace kestra {

class LcdPanel : public QWidget {
    Q_OBJECT
public:
    static constexpr int kLines = 4;
    static constexpr int kColumns = 16;

    struct Cell {
        QChar ch = QLatin1Char(' ');
        bool inverted = false;
        bool blinking = false;
    };
    using Line = std::array<Cell, kColumns>;

    explicit LcdPanel(QWidget* parent = nullptr);

    // text: the characters of the cells (cut or padded to sixteen).
    void setLine(int line, const QString& text, const std::array<bool, kColumns>& inverted,
                 const std::array<bool, kColumns>& blinking);
    QString text(int line) const;
    const Cell& cell(int line, int column) const { return lines_[line][column]; }

    // Text and back colour of the cells, and the colour of the display around them.
    void setColours(const QColor& text, const QColor& back, const QColor& display);
    QColor textColour() const { return text_; }
    QColor backColour() const { return back_; }
    void setLcdFont(const QFont& font);

    // The blink tick: the reference colour swaps between text and back colour.
    void blink();

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QSize cellSize() const;

    std::array<Line, kLines> lines_{};
    QColor text_, back_, display_;
    bool blinkOn_ = true;  // the reference colour is the text colour
};

// The meter Picture20: bar i (0..7) shows when the signal reaches 31.875 * i.
class SignalMeter : public QWidget {
    Q_OBJECT
public:
    static constexpr int kBars = 8;
    explicit SignalMeter(QWidget* parent = nullptr);

    void setSignal(int signal);
    int barsShown() const;
    QSize sizeHint() const override { return {kBars * 9 + 2, 40}; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    int signal_ = 0;
};

} // namespace kestra
