#include "platform/qt/qtscheduler.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QThread>
#include <QTimer>

#include <chrono>
#include <cmath>
#include <thread>
#include <memory>

namespace kestra {

namespace {

class QtTimer : public Timer {
public:
    QtTimer() : timer_(new QTimer)
    {
        // Protocol timing wants the interval asked for, not a coarse one.
        timer_->setTimerType(Qt::PreciseTimer);
        QObject::connect(timer_, &QTimer::timeout, timer_, [this] { fire(); });
    }

    ~QtTimer() override
    {
        *alive_ = false;
        timer_->disconnect();
        timer_->stop();
        // A timer destroyed by its own handler is still inside QTimer's
        // timeout signal; let Qt finish with it first.
        if (firing_) {
            timer_->deleteLater();
        } else {
            delete timer_;
        }
    }

    void setInterval(int ms) override
    {
        interval_ = ms;
        if (enabled_) apply();
    }
    int interval() const override { return interval_; }

    void setEnabled(bool on) override
    {
        enabled_ = on;
        apply();
    }
    bool enabled() const override { return enabled_; }

    void setSingleShot(bool single) override
    {
        singleShot_ = single;
        timer_->setSingleShot(single);
    }
    bool singleShot() const override { return singleShot_; }

    void setHandler(std::function<void()> handler) override
    {
        handler_ = std::make_shared<const std::function<void()>>(std::move(handler));
    }

private:
    // (Re)starts the countdown, or stops it when off or without interval.
    void apply()
    {
        if (enabled_ && interval_ > 0) {
            timer_->start(interval_);
        } else {
            timer_->stop();
        }
    }

    void fire()
    {
        if (singleShot_) enabled_ = false;  // QTimer has stopped itself already
        const auto handler = handler_;
        const auto alive = alive_;
        firing_ = true;
        if (handler && *handler) (*handler)();
        if (*alive) firing_ = false;
    }

    QTimer* timer_;
    std::shared_ptr<const std::function<void()>> handler_;
    std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
    int interval_ = 0;
    bool enabled_ = false;
    bool singleShot_ = false;
    bool firing_ = false;
};

} // namespace

QtScheduler::QtScheduler()
{
    clock_.start();
}

std::int64_t QtScheduler::now() const
{
    return clock_.elapsed();
}

std::unique_ptr<Timer> QtScheduler::createTimer()
{
    return std::make_unique<QtTimer>();
}

void QtScheduler::wait(double seconds)
{
    const double clamped = clampWait(seconds);
    if (clamped <= 0) return;
    const qint64 total = std::llround(clamped * 1000.0);

    QElapsedTimer waited;
    waited.start();
    for (qint64 left = total; left > 0; left = total - waited.elapsed()) {
        bool looped = false;
        if (QCoreApplication::instance()) {
            // An event loop that ends when the time is up; it sleeps while
            // there is nothing to do.
            QEventLoop loop;
            QTimer end;
            end.setSingleShot(true);
            end.setTimerType(Qt::PreciseTimer);
            QObject::connect(&end, &QTimer::timeout, &loop, &QEventLoop::quit);
            end.start(static_cast<int>(left));
            looped = loop.exec(QEventLoop::AllEvents) == 0;
        }
        if (!looped) {
            // No application, or one that is quitting (a new event loop then
            // returns at once): handle what is there and sleep in short steps.
            if (QCoreApplication::instance()) QCoreApplication::processEvents(QEventLoop::AllEvents);
            QThread::msleep(static_cast<unsigned long>(std::min<qint64>(left, 20)));
        }
    }
}

void QtScheduler::pause(int ms)
{
    if (ms > 0) std::this_thread::sleep_for(std::chrono::milliseconds(ms));
}

void QtScheduler::processEvents()
{
    if (QCoreApplication::instance()) QCoreApplication::processEvents(QEventLoop::AllEvents);
}

} // namespace kestra
