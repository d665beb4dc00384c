#include "platform/qt/qtprinter.h"

#include "platform/qt/qtext.h"

#include <QFontDatabase>
#include <QFontMetricsF>
#include <QPageLayout>
#include <QPageSize>
#include <QPagedPaintDevice>
#include <QPdfWriter>

namespace kestra {

namespace {

// The width of one tab column: the average width of a character of the
// font, weighted by how often each letter turns up in text (the classic
// average-width rule of TrueType fonts, which Windows reports for Arial).
// Taken from the advances rather than the font file's own average field,
// which newer fonts fill with a plain mean over all their glyphs: so Arial
// and Liberation Sans put the tabs at the same places.
double columnWidth(const QFontMetricsF& metrics)
{
    static constexpr int kWeights[26] = {64, 14, 27, 35, 100, 20, 14, 42, 63, 3, 6, 35, 20,
                                         56, 56, 17, 4,  49,  56, 71, 31, 10, 18, 3, 18, 2};
    double sum = 166 * metrics.horizontalAdvance(QLatin1Char(' '));
    for (int i = 0; i < 26; ++i) sum += kWeights[i] * metrics.horizontalAdvance(QLatin1Char(char('a' + i)));
    return sum / 1000.0;
}

} // namespace

QtPrinter::QtPrinter(QPagedPaintDevice& device) : device_(device)
{
    dpi_ = device_.logicalDpiY() > 0 ? device_.logicalDpiY() : 1200;
    font_ = QFont(familyFor("Arial"));
    font_.setPointSizeF(8.25);
    measure();
}

void QtPrinter::measure()
{
    const QFontMetricsF metrics(font_, &device_);
    column_ = columnWidth(metrics);
    space_ = metrics.horizontalAdvance(QLatin1Char(' '));
    ascent_ = metrics.ascent();
    lineHeight_ = metrics.height();
}

QtPrinter::~QtPrinter()
{
    if (painter_.isActive()) painter_.end();
}

int QtPrinter::writePdf(const std::string& path, const std::function<int(Printer&)>& write)
{
    QPdfWriter writer(QString::fromStdString(path));
    writer.setResolution(1200);
    writer.setTitle(QStringLiteral("Kestra Console report"));
    writer.setCreator(QStringLiteral("Kestra Console"));
    writer.setPageLayout(QPageLayout(QPageSize(QPageSize::A4), QPageLayout::Portrait, QMarginsF(0, 0, 0, 0)));
    QtPrinter printer(writer);
    return write(printer);
}

QString QtPrinter::familyFor(const std::string& name)
{
    const QString family = QString::fromStdString(name);
    if (family == QLatin1String("Arial") && !QFontDatabase::hasFamily(family)
        && QFontDatabase::hasFamily(QStringLiteral("Liberation Sans")))
        return QStringLiteral("Liberation Sans");
    return family;
}

bool QtPrinter::open()
{
    if (error_ || ended_) return false;
    if (!started_) {
        started_ = true;
        if (!painter_.begin(&device_)) {
            error_ = kPrinterError;
            return false;
        }
        painter_.setFont(font_);
    }
    return true;
}

void QtPrinter::setFont(const std::string& name, double size)
{
    font_ = QFont(familyFor(name));
    font_.setPointSizeF(size);
    measure();
    if (painter_.isActive()) painter_.setFont(font_);
}

void QtPrinter::setScaleOrigin(int left, int top)
{
    originX_ = toDevice(-left);
    originY_ = toDevice(-top);
}

double QtPrinter::pageHeight() const
{
    return toTwips(device_.pageLayout().paintRectPixels(int(dpi_)).height());
}

double QtPrinter::currentY() const { return toTwips(y_); }

void QtPrinter::setCurrentY(double y) { y_ = toDevice(y); }

void QtPrinter::printLine(const std::vector<PrintPiece>& pieces)
{
    if (!open()) return;
    if (pagePending_) {
        pagePending_ = false;
        if (!device_.newPage()) {
            error_ = kPrinterError;
            return;
        }
    }
    const QFontMetricsF metrics(font_, &device_);
    double x = 0;
    for (const PrintPiece& piece : pieces) {
        double at = x;
        if (piece.tab > 0) {
            at = (piece.tab - 1) * column_;
            // Text that ran past the tab keeps one blank before the next piece.
            if (at < x) at = x + space_;
        }
        const QString text = toQt(piece.text);
        painter_.drawText(QPointF(originX_ + at, originY_ + y_ + ascent_), text);
        x = at + metrics.horizontalAdvance(text);
    }
    y_ += lineHeight_;
}

void QtPrinter::newPage()
{
    if (error_ || ended_) return;
    pagePending_ = true;
    y_ = 0;
}

void QtPrinter::endDoc()
{
    if (!open()) return;
    ended_ = true;
    if (!painter_.end()) error_ = kPrinterError;
}

} // namespace kestra
