#include "toolbaricons.h"

#include <QColor>
#include <QFont>
#include <QIcon>
#include <QPainter>
#include <QPainterPath>
#include <QPolygonF>
#include <QPixmap>

#include <cmath>
#include <initializer_list>
#include <numbers>

namespace kestra {

namespace {

// ---- Toolbar pictures -----------------------------------------------------------
// Small pictograms drawn on a 32 x 32 canvas: a base picture (page, table,
// folder, scanner, ...) and, for the line operations, a badge in the lower
// right corner.

const QColor kInk(55, 60, 70);
const QColor kRed(200, 45, 40);
const QColor kGreen(40, 150, 60);
const QColor kBlue(40, 100, 200);

void penOf(QPainter& p, const QColor& color, double width = 1.6)
{
    p.setPen(QPen(color, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
}

// A closed outline through the points, in order.
QPainterPath outline(std::initializer_list<QPointF> points)
{
    QPainterPath path;
    path.addPolygon(QPolygonF(QList<QPointF>(points)));
    path.closeSubpath();
    return path;
}

void drawPage(QPainter& p, QRectF r, const QColor& fill = Qt::white)
{
    const double fold = r.width() * 0.3;
    const QPainterPath path = outline({{r.left(), r.top()}, {r.right() - fold, r.top()}, {r.right(), r.top() + fold},
                                       {r.right(), r.bottom()}, {r.left(), r.bottom()}});
    p.setBrush(fill);
    penOf(p, kInk, 1.3);
    p.drawPath(path);
    p.drawLine(QPointF(r.right() - fold, r.top()), QPointF(r.right() - fold, r.top() + fold));
    p.drawLine(QPointF(r.right() - fold, r.top() + fold), QPointF(r.right(), r.top() + fold));
}

void drawTextLines(QPainter& p, QRectF r, int count, bool centred = false)
{
    penOf(p, QColor(120, 130, 150), 1.6);
    for (int i = 0; i < count; ++i) {
        const double y = r.top() + (i + 0.5) * r.height() / count;
        const double shrink = centred ? (i % 2) * r.width() * 0.2 : (i % 2) * r.width() * 0.25;
        const double left = centred ? r.left() + shrink : r.left();
        const double right = centred ? r.right() - shrink : r.right() - shrink;
        p.drawLine(QPointF(left, y), QPointF(right, y));
    }
}

// A table of channels: header row, a shaded fixed column and rows.
void drawTable(QPainter& p, QRectF r = QRectF(3, 4, 21, 22))
{
    p.setBrush(Qt::white);
    penOf(p, kInk, 1.3);
    p.drawRect(r);
    p.setPen(Qt::NoPen);
    p.setBrush(QColor(200, 215, 235));
    p.drawRect(QRectF(r.left() + 0.7, r.top() + 0.7, r.width() - 1.4, 4));
    p.setBrush(QColor(225, 228, 232));
    p.drawRect(QRectF(r.left() + 0.7, r.top() + 4.7, 5, r.height() - 5.4));
    penOf(p, QColor(150, 155, 165), 0.9);
    for (double y = r.top() + 4.7 + 4.2; y < r.bottom() - 1; y += 4.2) p.drawLine(QPointF(r.left(), y), QPointF(r.right(), y));
    p.drawLine(QPointF(r.left() + 5.7, r.top()), QPointF(r.left() + 5.7, r.bottom()));
}

void drawArrow(QPainter& p, QPointF from, QPointF to, const QColor& color, double width = 2.6)
{
    penOf(p, color, width);
    p.drawLine(from, to);
    const double angle = std::atan2(to.y() - from.y(), to.x() - from.x());
    const double head = 5.5;
    QPolygonF tip;
    tip << to << QPointF(to.x() - head * std::cos(angle - 0.5), to.y() - head * std::sin(angle - 0.5))
        << QPointF(to.x() - head * std::cos(angle + 0.5), to.y() - head * std::sin(angle + 0.5));
    p.setBrush(color);
    penOf(p, color, 1.0);
    p.drawPolygon(tip);
}

enum class Badge { None, Cross, Plus, Minus, Up, Down, Scissors, Copy, Paste, Equal };

void drawScissors(QPainter& p, QRectF r)
{
    const double cx = r.center().x();
    penOf(p, QColor(90, 95, 105), 1.8);
    p.drawLine(QPointF(r.left() + r.width() * 0.2, r.top()), QPointF(cx + r.width() * 0.12, r.bottom() - r.height() * 0.35));
    p.drawLine(QPointF(r.right() - r.width() * 0.2, r.top()), QPointF(cx - r.width() * 0.12, r.bottom() - r.height() * 0.35));
    p.setBrush(Qt::NoBrush);
    penOf(p, kRed, 1.8);
    const double d = r.width() * 0.34;
    p.drawEllipse(QRectF(r.left(), r.bottom() - d, d, d));
    p.drawEllipse(QRectF(r.right() - d, r.bottom() - d, d, d));
}

void drawClipboard(QPainter& p, QRectF r)
{
    p.setBrush(QColor(170, 120, 70));
    penOf(p, QColor(110, 75, 40), 1.2);
    p.drawRoundedRect(r, 2, 2);
    p.setBrush(Qt::white);
    penOf(p, kInk, 0.8);
    p.drawRect(r.adjusted(r.width() * 0.18, r.height() * 0.18, -r.width() * 0.18, -r.height() * 0.1));
    p.setBrush(QColor(160, 165, 175));
    p.drawRoundedRect(QRectF(r.center().x() - r.width() * 0.22, r.top() - 1.5, r.width() * 0.44, r.height() * 0.2), 1, 1);
}

void drawBadge(QPainter& p, Badge badge)
{
    if (badge == Badge::None) return;
    const QRectF r(16, 16, 15, 15);
    switch (badge) {
    case Badge::Scissors:
        drawScissors(p, r);
        return;
    case Badge::Copy:
        drawPage(p, QRectF(16, 14, 10, 13));
        drawPage(p, QRectF(20, 18, 10, 13));
        return;
    case Badge::Paste:
        drawClipboard(p, QRectF(17, 16, 13, 15));
        return;
    case Badge::Up:
        drawArrow(p, QPointF(24, 31), QPointF(24, 15), kBlue, 3.0);
        return;
    case Badge::Down:
        drawArrow(p, QPointF(24, 14), QPointF(24, 30), kBlue, 3.0);
        return;
    default:
        break;
    }
    const QColor color = badge == Badge::Plus ? kGreen : badge == Badge::Equal ? kBlue : kRed;
    p.setBrush(color);
    penOf(p, Qt::white, 1.2);
    p.drawEllipse(r);
    penOf(p, Qt::white, 2.4);
    const QPointF c = r.center();
    switch (badge) {
    case Badge::Cross:
        p.drawLine(c + QPointF(-3.5, -3.5), c + QPointF(3.5, 3.5));
        p.drawLine(c + QPointF(-3.5, 3.5), c + QPointF(3.5, -3.5));
        break;
    case Badge::Plus:
        p.drawLine(c + QPointF(-4.5, 0), c + QPointF(4.5, 0));
        p.drawLine(c + QPointF(0, -4.5), c + QPointF(0, 4.5));
        break;
    case Badge::Minus:
        p.drawLine(c + QPointF(-4.5, 0), c + QPointF(4.5, 0));
        break;
    case Badge::Equal:
        p.drawLine(c + QPointF(-4, -2), c + QPointF(4, -2));
        p.drawLine(c + QPointF(-4, 2.5), c + QPointF(4, 2.5));
        break;
    default:
        break;
    }
}

void drawFolder(QPainter& p)
{
    const QPainterPath back = outline({{3, 8}, {11, 8}, {14, 11}, {27, 11}, {27, 26}, {3, 26}});
    p.setBrush(QColor(215, 165, 50));
    penOf(p, QColor(140, 100, 20), 1.3);
    p.drawPath(back);
    const QPainterPath front = outline({{3, 26}, {7, 15}, {31, 15}, {27, 26}});
    p.setBrush(QColor(245, 205, 90));
    p.drawPath(front);
}

void drawDisk(QPainter& p)
{
    const QPainterPath body = outline({{4, 4}, {24, 4}, {28, 8}, {28, 28}, {4, 28}});
    p.setBrush(QColor(50, 90, 170));
    penOf(p, QColor(25, 45, 100), 1.3);
    p.drawPath(body);
    p.setBrush(Qt::white);
    p.setPen(Qt::NoPen);
    p.drawRect(QRectF(8, 15, 16, 11));
    p.setBrush(QColor(190, 195, 205));
    p.drawRect(QRectF(9, 4.7, 13, 7));
    p.setBrush(QColor(50, 90, 170));
    p.drawRect(QRectF(17, 6, 3, 4.5));
    penOf(p, QColor(160, 170, 190), 1.0);
    p.drawLine(QPointF(10, 19), QPointF(22, 19));
    p.drawLine(QPointF(10, 22.5), QPointF(22, 22.5));
}

void drawDoor(QPainter& p)
{
    p.setBrush(QColor(150, 95, 50));
    penOf(p, QColor(90, 55, 25), 1.3);
    p.drawRect(QRectF(5, 3, 15, 26));
    p.setBrush(QColor(240, 200, 80));
    p.setPen(Qt::NoPen);
    p.drawEllipse(QRectF(16, 15, 2.6, 2.6));
    drawArrow(p, QPointF(13, 16), QPointF(30, 16), kRed, 3.0);
}

void drawUndo(QPainter& p)
{
    QPainterPath arc;
    arc.moveTo(26, 25);
    arc.cubicTo(28, 12, 18, 8, 9, 12);
    p.setBrush(Qt::NoBrush);
    penOf(p, kBlue, 3.2);
    p.drawPath(arc);
    QPolygonF tip;
    tip << QPointF(3, 13) << QPointF(12, 6) << QPointF(12.5, 18);
    p.setBrush(kBlue);
    penOf(p, kBlue, 1.0);
    p.drawPolygon(tip);
}

void drawScanner(QPainter& p, QRectF r = QRectF(4, 8, 20, 21))
{
    penOf(p, QColor(90, 95, 105), 2.0);
    p.drawLine(QPointF(r.left() + 4, r.top()), QPointF(r.left() + 4, 1.5));
    p.setBrush(QColor(60, 64, 72));
    penOf(p, QColor(30, 32, 36), 1.2);
    p.drawRoundedRect(r, 3, 3);
    p.setBrush(QColor(150, 210, 120));
    p.setPen(Qt::NoPen);
    p.drawRect(QRectF(r.left() + 3, r.top() + 3, r.width() - 6, r.height() * 0.3));
    p.setBrush(QColor(200, 205, 215));
    for (int row = 0; row < 2; ++row)
        for (int c = 0; c < 3; ++c)
            p.drawRect(QRectF(r.left() + 3.5 + c * (r.width() - 7) / 3.0, r.top() + r.height() * 0.5 + row * 4.5,
                              (r.width() - 10) / 3.0, 3));
}

void drawPrinter(QPainter& p)
{
    drawPage(p, QRectF(9, 3, 14, 12));
    p.setBrush(QColor(150, 155, 165));
    penOf(p, kInk, 1.3);
    p.drawRoundedRect(QRectF(3, 12, 26, 12), 2, 2);
    p.setBrush(Qt::white);
    p.drawRect(QRectF(9, 20, 14, 9));
    p.setBrush(kGreen);
    p.setPen(Qt::NoPen);
    p.drawEllipse(QRectF(24, 15, 3, 3));
}

void drawGlobe(QPainter& p, QRectF r = QRectF(3, 3, 26, 26))
{
    p.setBrush(QColor(90, 160, 225));
    penOf(p, QColor(30, 80, 150), 1.3);
    p.drawEllipse(r);
    p.setBrush(Qt::NoBrush);
    penOf(p, Qt::white, 1.1);
    p.drawEllipse(r.adjusted(r.width() * 0.3, 0, -r.width() * 0.3, 0));
    p.drawLine(QPointF(r.center().x(), r.top()), QPointF(r.center().x(), r.bottom()));
    p.drawLine(QPointF(r.left(), r.center().y()), QPointF(r.right(), r.center().y()));
    p.drawLine(QPointF(r.left() + 3, r.top() + r.height() * 0.27), QPointF(r.right() - 3, r.top() + r.height() * 0.27));
    p.drawLine(QPointF(r.left() + 3, r.bottom() - r.height() * 0.27), QPointF(r.right() - 3, r.bottom() - r.height() * 0.27));
}

void drawMagnifier(QPainter& p, QRectF r = QRectF(4, 4, 17, 17))
{
    penOf(p, QColor(90, 60, 30), 4.0);
    p.drawLine(r.center() + QPointF(r.width() * 0.4, r.height() * 0.4), QPointF(r.right() + 8, r.bottom() + 8));
    p.setBrush(QColor(210, 235, 250, 220));
    penOf(p, kInk, 2.2);
    p.drawEllipse(r);
}

void drawCheck(QPainter& p)
{
    penOf(p, kGreen, 4.5);
    QPainterPath path;
    path.moveTo(5, 17);
    path.lineTo(12, 25);
    path.lineTo(27, 7);
    p.setBrush(Qt::NoBrush);
    p.drawPath(path);
}

void drawTag(QPainter& p)
{
    const QPainterPath path = outline({{3, 10}, {20, 10}, {29, 17}, {20, 24}, {3, 24}});
    p.setBrush(QColor(245, 215, 110));
    penOf(p, QColor(150, 110, 20), 1.3);
    p.drawPath(path);
    p.setBrush(Qt::white);
    p.drawEllipse(QRectF(20, 15, 4, 4));
    penOf(p, QColor(150, 110, 20), 1.4);
    p.drawLine(QPointF(6, 15), QPointF(16, 15));
    p.drawLine(QPointF(6, 19), QPointF(13, 19));
}

void drawGear(QPainter& p)
{
    const QPointF c(16, 16);
    p.setBrush(QColor(130, 135, 145));
    penOf(p, kInk, 1.2);
    QPainterPath teeth;
    for (int i = 0; i < 8; ++i) {
        const double a = i * std::numbers::pi / 4;
        QTransform t;
        t.translate(c.x(), c.y());
        t.rotateRadians(a);
        teeth.addPolygon(t.map(QPolygonF(QRectF(-2.6, -14, 5.2, 6))));
        teeth.closeSubpath();
    }
    teeth.addEllipse(c, 10, 10);
    p.drawPath(teeth.simplified());
    p.setBrush(Qt::white);
    p.drawEllipse(c, 4, 4);
}

void drawWand(QPainter& p)
{
    penOf(p, QColor(40, 40, 45), 3.4);
    p.drawLine(QPointF(5, 28), QPointF(20, 13));
    penOf(p, Qt::white, 3.4);
    p.drawLine(QPointF(18, 15), QPointF(20, 13));
    p.setBrush(QColor(250, 200, 40));
    penOf(p, QColor(190, 130, 10), 1.0);
    QPolygonF star;
    for (int i = 0; i < 10; ++i) {
        const double a = -std::numbers::pi / 2 + i * std::numbers::pi / 5;
        const double rr = i % 2 ? 3.0 : 7.5;
        star << QPointF(23 + rr * std::cos(a), 9 + rr * std::sin(a));
    }
    p.drawPolygon(star);
}

void drawBars(QPainter& p, bool ascending)
{
    p.setPen(Qt::NoPen);
    p.setBrush(QColor(80, 130, 200));
    for (int i = 0; i < 4; ++i) {
        const int k = ascending ? i : 3 - i;
        const double h = 6 + k * 5;
        p.drawRect(QRectF(3 + i * 5.5, 29 - h, 4, h));
    }
    drawArrow(p, ascending ? QPointF(27, 29) : QPointF(27, 4), ascending ? QPointF(27, 4) : QPointF(27, 29),
              kGreen, 2.4);
}

void drawText(QPainter& p, QRectF r, const QString& text, const QColor& color, double size)
{
    QFont font("Sans");
    font.setBold(true);
    font.setPixelSize(int(size));
    p.setFont(font);
    p.setPen(color);
    p.drawText(r, Qt::AlignCenter, text);
}

// A picture by the key of the handler it belongs to.
void drawPicture(QPainter& p, const std::string& key)
{
    auto tableWith = [&p](Badge badge) {
        drawTable(p);
        drawBadge(p, badge);
    };
    if (key == "exit_tab") drawDoor(p);
    else if (key == "tabopen") drawFolder(p);
    else if (key == "savenu") drawDisk(p);
    else if (key == "tabundo") drawUndo(p);
    else if (key == "tab_cut") drawScissors(p, QRectF(6, 3, 20, 26));
    else if (key == "tab_copy") { drawPage(p, QRectF(3, 3, 16, 20)); drawPage(p, QRectF(12, 9, 16, 20)); }
    else if (key == "tab_paste") drawClipboard(p, QRectF(6, 5, 20, 25));
    else if (key == "copy_channhels") {
        drawTable(p);
        drawArrow(p, QPointF(13, 12), QPointF(30, 12), kGreen, 2.4);
        drawArrow(p, QPointF(30, 21), QPointF(13, 21), kBlue, 2.4);
    } else if (key == "swapbanks") {
        drawTable(p, QRectF(2, 2, 16, 17));
        drawTable(p, QRectF(14, 13, 16, 17));
        drawArrow(p, QPointF(5, 23), QPointF(5, 30), kGreen, 2.2);
    } else if (key == "memtab_delline") tableWith(Badge::Cross);
    else if (key == "memtab_inslin") tableWith(Badge::Plus);
    else if (key == "memtab_remlines") tableWith(Badge::Minus);
    else if (key == "memtab_shiftup" || key == "edit_shiftup") tableWith(Badge::Up);
    else if (key == "edit_shiftdown") tableWith(Badge::Down);
    else if (key == "tab_delete") {
        drawTable(p);
        p.setPen(Qt::NoPen);
        p.setBrush(QColor(255, 170, 60, 200));
        p.drawRect(QRectF(10, 13, 12, 9));
        drawBadge(p, Badge::Cross);
    } else if (key == "menu_fd") {
        drawTable(p);
        drawArrow(p, QPointF(16, 9), QPointF(16, 29), kGreen, 3.0);
    } else if (key == "menu_fs") {
        drawText(p, QRectF(0, 0, 32, 12), "1 2", kInk, 11);
        drawText(p, QRectF(0, 10, 32, 12), "3 4", kBlue, 11);
        drawArrow(p, QPointF(4, 27), QPointF(29, 27), kGreen, 2.2);
    } else if (key == "filldefault") {
        drawTable(p);
        p.setPen(Qt::NoPen);
        p.setBrush(QColor(120, 200, 120, 200));
        p.drawRect(QRectF(9, 13, 14, 4));
        drawBadge(p, Badge::Plus);
    } else if (key == "redit") {
        drawText(p, QRectF(0, 2, 32, 16), "[ ]", kInk, 15);
        drawMagnifier(p, QRectF(8, 10, 13, 13));
    } else if (key == "menread") {
        drawScanner(p, QRectF(2, 8, 18, 21));
        drawArrow(p, QPointF(19, 12), QPointF(31, 24), kGreen, 3.0);
    } else if (key == "memsend") {
        drawScanner(p, QRectF(12, 8, 18, 21));
        drawArrow(p, QPointF(2, 24), QPointF(14, 12), kRed, 3.0);
    } else if (key == "menuprint") drawPrinter(p);
    else if (key == "imp_csv") {
        drawPage(p, QRectF(10, 3, 18, 26));
        drawTextLines(p, QRectF(13, 12, 11, 14), 4);
        drawArrow(p, QPointF(1, 16), QPointF(14, 16), kGreen, 3.0);
    } else if (key == "catch") {
        drawGlobe(p, QRectF(3, 3, 22, 22));
        drawArrow(p, QPointF(16, 18), QPointF(29, 30), kGreen, 3.0);
    } else if (key == "ditun") {
        drawScanner(p, QRectF(3, 8, 18, 21));
        p.setBrush(QColor(190, 195, 205));
        penOf(p, kInk, 1.3);
        p.drawEllipse(QRectF(19, 14, 12, 12));
        penOf(p, kRed, 2.0);
        p.drawLine(QPointF(25, 20), QPointF(25, 15));
    } else if (key == "cut_line") tableWith(Badge::Scissors);
    else if (key == "copy_line") tableWith(Badge::Copy);
    else if (key == "paste_line") tableWith(Badge::Paste);
    else if (key == "menucreate") {
        drawPage(p, QRectF(5, 3, 20, 26));
        drawBadge(p, Badge::Cross);
    } else if (key == "center_tags") {
        drawTag(p);
        penOf(p, kBlue, 1.8);
        p.drawLine(QPointF(16, 2), QPointF(16, 30));
    } else if (key == "sort_allb") drawBars(p, true);
    else if (key == "sort_rangedown") drawBars(p, false);
    else if (key == "fd_curbank") {
        drawPage(p, QRectF(3, 3, 15, 20));
        drawPage(p, QRectF(10, 7, 15, 20));
        drawBadge(p, Badge::Equal);
    } else if (key == "remove_dupli") {
        drawPage(p, QRectF(3, 3, 15, 20));
        drawPage(p, QRectF(10, 7, 15, 20));
        drawBadge(p, Badge::Cross);
    } else if (key == "tabeasy") drawWand(p);
    else if (key == "menufind") drawMagnifier(p);
    else if (key == "checktab") drawCheck(p);
    else if (key == "vc") {
        p.setBrush(QColor(60, 64, 72));
        penOf(p, QColor(30, 32, 36), 1.2);
        p.drawRoundedRect(QRectF(2, 5, 28, 22), 3, 3);
        p.setBrush(QColor(150, 210, 120));
        p.setPen(Qt::NoPen);
        p.drawRect(QRectF(5, 8, 22, 12));
        penOf(p, QColor(40, 70, 30), 1.2);
        p.drawLine(QPointF(7, 11), QPointF(20, 11));
        p.drawLine(QPointF(7, 14), QPointF(24, 14));
        p.drawLine(QPointF(7, 17), QPointF(16, 17));
        p.setBrush(kRed);
        p.setPen(Qt::NoPen);
        p.drawEllipse(QRectF(24, 21.5, 3.5, 3.5));
    } else if (key == "tbtags") drawTag(p);
    else if (key == "soft_options") drawGear(p);
    else drawText(p, QRectF(0, 0, 32, 32), "?", kInk, 20);
}

} // namespace

QIcon pictureIcon(const std::string& key)
{
    QIcon icon;
    for (int scale : {1, 2}) {
        QPixmap pixmap(32 * scale, 32 * scale);
        pixmap.fill(Qt::transparent);
        QPainter p(&pixmap);
        p.setRenderHint(QPainter::Antialiasing);
        p.scale(scale, scale);
        drawPicture(p, key);
        p.end();
        icon.addPixmap(pixmap);
    }
    return icon;
}

} // namespace kestra
