#pragma once
// The printer over a Qt paged device: a PDF writer, or a QPrinter for a
// printer or a PDF file. Text goes through QPainter in the chosen font;
// "Arial", where the system lacks it, is drawn in the metric-compatible
// "Liberation Sans" so that the tab positions stay where they belong.

#include "platform/printer.h"

#include <QFont>
#include <QPainter>

#include <functional>
#include <memory>

class QPagedPaintDevice;

namespace kestra {

class QtPrinter : public Printer {
public:
    // The device is opened at the first output and must outlive the printer.
    explicit QtPrinter(QPagedPaintDevice& device);
    ~QtPrinter() override;

    void setFont(const std::string& name, double size) override;
    void setScaleOrigin(int left, int top) override;
    double pageHeight() const override;
    double currentY() const override;
    void setCurrentY(double y) override;
    void printLine(const std::vector<PrintPiece>& pieces) override;
    void newPage() override;
    void endDoc() override;
    int error() const override { return error_; }

    // Runs write on a printer into a PDF file: A4 upright, no margins of its
    // own (the reports set theirs), 1200 dots an inch. Returns what write
    // returns.
    static int writePdf(const std::string& path, const std::function<int(Printer&)>& write);

    // The family a font name is drawn in on this system.
    static QString familyFor(const std::string& name);

private:
    bool open();
    // The tab column, line height and ascent of the current font on the device.
    void measure();
    double toDevice(double twips) const { return twips * dpi_ / 1440.0; }
    double toTwips(double units) const { return units * 1440.0 / dpi_; }

    QPagedPaintDevice& device_;
    QPainter painter_;
    QFont font_;
    double dpi_ = 1200;
    double column_ = 0, space_ = 0, ascent_ = 0, lineHeight_ = 0;
    double originX_ = 0, originY_ = 0;  // device units
    double y_ = 0;                      // device units from the origin
    bool pagePending_ = false;
    bool started_ = false;
    bool ended_ = false;
    int error_ = 0;
};

} // namespace kestra
