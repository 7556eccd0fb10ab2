#include "commentplacer.h"

#include <QApplication>
#include <QEvent>
#include <QScreen>
#include <QVector>
#include <QWidget>

#include <algorithm>

namespace {

constexpr int kGap = 8;
constexpr int kCascade = 32;

bool IsCommentDialog(const QObject *object)
{
    return object->objectName() == QLatin1String("ToReportCommentDialog");
}

/// With their frames.
QVector<QRect> FindOthers(const QWidget &dialog)
{
    QVector<QRect> others;
    for (const QWidget *widget : QApplication::topLevelWidgets()) {
        if (widget != &dialog && widget->isVisible() && IsCommentDialog(widget)) {
            others.append(widget->frameGeometry());
        }
    }
    return others;
}

bool IsFree(const QRect &place, const QVector<QRect> &others, const QRect &screen)
{
    return screen.contains(place)
        && std::none_of(others.begin(), others.end(), [&place](const QRect &other) { return other.intersects(place); });
}

/// Right of one of the others, below, left or above; where nothing is free, a step away from the last of them.
QPoint FindPlace(const QSize &size, const QVector<QRect> &others, const QRect &screen)
{
    for (const QRect &other : others) {
        const QPoint start = other.topLeft();
        for (const QPoint &place : { QPoint(other.right() + kGap, start.y()), QPoint(start.x(), other.bottom() + kGap),
                                     QPoint(start.x() - size.width() - kGap, start.y()),
                                     QPoint(start.x(), start.y() - size.height() - kGap) }) {
            if (IsFree(QRect(place, size), others, screen)) {
                return place;
            }
        }
    }
    return others.last().topLeft() + QPoint(kCascade, kCascade);
}

} // namespace

CommentPlacer::CommentPlacer(QObject *parent)
    : QObject(parent)
{
    QCoreApplication::instance()->installEventFilter(this);
}

bool CommentPlacer::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::Show || event->spontaneous() || !IsCommentDialog(watched)) {
        return false;
    }
    auto *dialog = qobject_cast<QWidget *>(watched);
    const QVector<QRect> others = dialog == nullptr ? QVector<QRect>() : FindOthers(*dialog);
    if (!others.isEmpty() && !dialog->testAttribute(Qt::WA_Moved)) {
        // Before it is on the screen nobody knows its frame; it will be as that of the others.
        const QSize size = dialog->size().expandedTo(others.first().size());
        dialog->move(FindPlace(size, others, dialog->screen()->availableGeometry()));
    }
    return false;
}
