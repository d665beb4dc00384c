#pragma once
// The status window states2: a small window that stands in for the Virtual
// Control while that is minimised. Four labels mirror the display's lines and
// a fifth says Busy, in the display's colours. A click on any of them asks
// for the Virtual Control back; the window then closes.

#include <QWidget>

#include <array>

class QLabel;

namespace kestra {

class StatusWindow : public QWidget {
    Q_OBJECT
public:
    // The window's size in units (15 to a pixel).
    static constexpr int kWidthTwips = 3180;
    static constexpr int kHeightTwips = 1290;

    explicit StatusWindow(QWidget* parent = nullptr);

    void setLine(int line, const QString& text);
    QString line(int line) const;
    void setBusy(bool busy);
    bool busy() const;
    void setColours(const QColor& text, const QColor& back);
    void setLcdFont(const QFont& font);
    QLabel* label(int index) const { return labels_[index]; }  // 0..3 the lines, 4 Busy

    // Its place in units, as vfo.ini keeps it.
    QPoint placeTwips() const;
    void moveTwips(int left, int top);

signals:
    // A click on one of the labels.
    void restoreRequested();
    // The window is going: its place is still to be read.
    void unloading();

protected:
    void closeEvent(QCloseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    std::array<QLabel*, 5> labels_{};
};

} // namespace kestra
