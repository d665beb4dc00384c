#pragma once
// A window with a port of its own to the scanner (General parameters,
// Priority Channels, Setup Bank Tags, Easy Program): the port is opened and
// the scanner woken when the window first shows, and closed when it goes.
// Its exchanges run inside the clicks, each command waiting its delay.

#include "link/exchange.h"
#include "platform/unboundport.h"
#include "ui/transferwindow.h"

#include <QDialog>

#include <functional>
#include <memory>

namespace kestra {

class ScannerDialog : public QDialog {
public:
    ScannerDialog(TransferWindow::Services services, TransferWindow::Link link, QWidget* parent)
        : QDialog(parent), services_(services), port_(link.port ? std::move(link.port) : std::make_unique<UnboundPort>())
    {
        setModal(true);
        engine_ = std::make_unique<ExchangeEngine>(*port_, services_.scheduler, services_.dialogs, services_.settings,
                                                   link.comport, link.baud, ExchangeEngine::Caption::ReadData);
    }
    ~ScannerDialog() override
    {
        engine_->stopflag = 1;
        port_->close();
    }

    // Runs by itself when the window first shows.
    void formLoad()
    {
        if (loaded_) return;
        loaded_ = true;
        if (wake) wake();
        lineChanged();
    }
    bool lineOpen() const { return engine_->portOpened; }
    ExchangeEngine& engine() { return *engine_; }

protected:
    void showEvent(QShowEvent* event) override
    {
        QDialog::showEvent(event);
        formLoad();
    }
    // Opens the port and wakes the scanner; sets portOpened.
    std::function<void()> wake = [this] { engine_->openForm(services_.doc.model.bc785d); };
    // After the wake-up: the buttons that need the scanner follow lineOpen().
    virtual void lineChanged() {}

    TransferWindow::Services services_;

private:
    std::unique_ptr<SerialPort> port_;
    std::unique_ptr<ExchangeEngine> engine_;
    bool loaded_ = false;
};

} // namespace kestra
