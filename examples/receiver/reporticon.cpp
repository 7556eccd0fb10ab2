#include "reporticon.h"

#include <QPainter>
#include <QPainterPath>
#include <QPixmap>

namespace {

const QColor kInk(0x3C, 0x44, 0x50);

/// The squares of the drawing: the button's picture has as many dots.
constexpr double kSquares = 16.0;

void DrawPad(QPainter &painter)
{
    painter.setPen(QPen(kInk, 0.7));
    painter.setBrush(Qt::white);
    painter.drawRoundedRect(QRectF(0.6, 2.4, 11.0, 13.0), 0.8, 0.8);
    painter.setPen(QPen(QColor(0x4F, 0xA8, 0x64), 0.7));
    for (const double y : { 5.6, 7.7, 9.8, 11.9, 14.0 }) {
        painter.drawLine(QPointF(2.0, y), QPointF(10.2, y));
    }
    painter.setPen(QPen(QColor(0x6E, 0x7F, 0xA3), 0.8, Qt::SolidLine, Qt::RoundCap));
    for (const double x : { 1.9, 3.9, 5.9, 7.9, 9.9 }) {
        painter.drawLine(QPointF(x, 1.2), QPointF(x, 3.4));
    }
}

/// Lies along the x axis, its tip at the origin.
void DrawPencil(QPainter &painter)
{
    const QPolygonF wood { QVector<QPointF> { { 0.0, 0.0 }, { 2.4, -1.3 }, { 2.4, 1.3 } } };
    const QPolygonF lead { QVector<QPointF> { { 0.0, 0.0 }, { 0.9, -0.5 }, { 0.9, 0.5 } } };
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(0xE3, 0xBD, 0x8C));
    painter.drawPolygon(wood);
    painter.setBrush(kInk);
    painter.drawPolygon(lead);
    painter.fillRect(QRectF(2.4, -1.3, 8.6, 0.9), QColor(0xFF, 0xE9, 0x7A));
    painter.fillRect(QRectF(2.4, -0.4, 8.6, 0.9), QColor(0xF4, 0xC0, 0x1E));
    painter.fillRect(QRectF(2.4, 0.5, 8.6, 0.8), QColor(0xA8, 0x75, 0x10));
    painter.fillRect(QRectF(11.0, -1.3, 1.1, 2.6), QColor(0xB8, 0xBE, 0xC8));
    painter.fillRect(QRectF(12.1, -1.3, 1.7, 2.6), QColor(0xE5, 0x8A, 0x96));
}

QPixmap DrawPicture(int size)
{
    QPixmap picture(size, size);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(size / kSquares, size / kSquares);
    DrawPad(painter);
    painter.translate(4.6, 12.4);
    painter.rotate(-45.0);
    DrawPencil(painter);
    return picture;
}

} // namespace

QIcon MakeReportIcon(const QIcon &small)
{
    QIcon icon(small);
    for (const int size : { 24, 32, 48, 64, 128 }) {
        icon.addPixmap(DrawPicture(size));
    }
    return icon;
}
