#include "ui/splashwindow.h"

#include "core/document.h"

#include <QGuiApplication>
#include <QLabel>
#include <QScreen>
#include <QTimer>
#include <QVBoxLayout>

namespace kestra {

SplashWindow::SplashWindow(Document& doc, std::function<void()> showMain, QWidget* parent)
    : QWidget(parent, Qt::SplashScreen | Qt::FramelessWindowHint), doc_(doc), showMain_(std::move(showMain))
{
    setObjectName("info");
    setAttribute(Qt::WA_DeleteOnClose, false);
    setWindowTitle("Kestra Console");
    setAutoFillBackground(true);
    setStyleSheet("kestra--Info { background: #1f3b5c; border: 2px solid #0d1d30; }"
                  "QLabel { color: white; background: transparent; }");

    label1_ = new QLabel("Kestra Console", this);
    label1_->setObjectName("Label1");
    label1_->setAlignment(Qt::AlignCenter);
    QFont big = label1_->font();
    big.setPointSizeF(big.pointSizeF() * 1.8);
    big.setBold(true);
    label1_->setFont(big);

    label2_ = new QLabel("for Uniden BC2xxD/7xxD/ UBC3300", this);
    label2_->setObjectName("Label2");
    label2_->setAlignment(Qt::AlignCenter);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(12, 4, 12, 4);
    layout->setSpacing(2);
    layout->addWidget(label1_);
    layout->addWidget(label2_);

    setFixedSize(pixels(kWidthTwips), pixels(heightTwips_));

    timer1_ = new QTimer(this);
    timer1_->setObjectName("Timer1");
    timer1_->setInterval(25);
    connect(timer1_, &QTimer::timeout, this, &SplashWindow::timer1Tick);

    timer2_ = new QTimer(this);
    timer2_->setObjectName("Timer2");
    timer2_->setInterval(1000);
    timer2_->setSingleShot(true);
    connect(timer2_, &QTimer::timeout, this, &SplashWindow::timer2Tick);

    timer1_->start();
}

void SplashWindow::centerOnScreen()
{
    QScreen* screen = this->screen() ? this->screen() : QGuiApplication::primaryScreen();
    if (!screen) return;
    const QRect area = screen->availableGeometry();
    const int full = pixels(kFullTwips);
    move(area.center().x() - width() / 2, area.center().y() - full / 2);
}

void SplashWindow::timer1Tick()
{
    if (heightTwips_ < kFullTwips) {
        heightTwips_ = std::min(heightTwips_ + kStepTwips, kFullTwips);
        setFixedHeight(pixels(heightTwips_));
    }
    if (heightTwips_ >= kFullTwips) {
        timer1_->stop();
        timer2_->start();
    }
}

void SplashWindow::timer2Tick()
{
    doc_.fillSplashDefaults();
    if (showMain_) showMain_();
    close();
}

} // namespace kestra
