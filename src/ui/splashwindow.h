#pragma once
// The splash window info: two centred labels on a window that grows to its
// full height, then hands over to the main window. Timer1 grows it by 45 twips
// every 25 ms until it is 1300 twips high; then the one-shot Timer2 (1000 ms)
// fills the start-up default cells, shows the main window and closes info.

#include <QWidget>

#include <functional>

class QLabel;
class QTimer;

namespace kestra {

struct Document;

class SplashWindow : public QWidget {
    Q_OBJECT
public:
    // showMain runs the main window's Form Load and shows it.
    SplashWindow(Document& doc, std::function<void()> showMain, QWidget* parent = nullptr);

    static constexpr int kStepTwips = 45;
    static constexpr int kFullTwips = 1300;
    static constexpr int kStartTwips = 400;
    static constexpr int kWidthTwips = 5400;

    // 1 twip = 1/15 pixel at 96 dots per inch.
    static int pixels(int twips) { return (twips + 7) / 15; }

    QTimer* timer1() const { return timer1_; }
    QTimer* timer2() const { return timer2_; }

    // Places the window in the middle of its screen.
    void centerOnScreen();

private:
    void timer1Tick();
    void timer2Tick();

    Document& doc_;
    std::function<void()> showMain_;
    QLabel* label1_;
    QLabel* label2_;
    QTimer* timer1_;
    QTimer* timer2_;
    int heightTwips_ = kStartTwips;
};

} // namespace kestra
