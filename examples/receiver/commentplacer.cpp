#include "commentplacer.h"

#include <QApplication>
#include <QEvent>
#include <QScreen>
#include <QVector>
#include <QWidget>

#include <algorithm>
#include <numeric>

namespace {

constexpr int kGap = 8;

bool IsCommentDialog(const QObject *object)
{
    return object->objectName() == QLatin1String("ToReportCommentDialog");
}

/// With their frames.
QVector<QRect> FindOthers(const QWidget *dialog)
{
    QVector<QRect> others;
    for (const QWidget *other : CommentPlacer::FindDialogs()) {
        if (other != dialog) {
            others.append(other->frameGeometry());
        }
    }
    return others;
}

/// Moved as little as brings it onto the screen.
QRect OnScreen(const QRect &place, const QRect &screen)
{
    const QPoint last = screen.bottomRight() - QPoint(place.width() - 1, place.height() - 1);
    return { QPoint(qMax(screen.left(), qMin(place.left(), last.x())), qMax(screen.top(), qMin(place.top(), last.y()))),
             place.size() };
}

int CoveredArea(const QRect &place, const QVector<QRect> &others)
{
    return std::accumulate(others.begin(), others.end(), 0, [&place](int sum, const QRect &other) {
        const QRect covered = place.intersected(other);
        return sum + covered.width() * covered.height();
    });
}

/// Right of one of the others, below, left or above, where it covers least of them.
QPoint FindPlace(const QSize &size, const QVector<QRect> &others, const QRect &screen)
{
    QVector<QRect> places;
    for (const QRect &other : others) {
        const QRect start(other.topLeft(), size);
        const QSize far(other.width() + kGap, other.height() + kGap);
        const QSize near(size.width() + kGap, size.height() + kGap);
        for (const QRect &place : { start.translated(far.width(), 0), start.translated(0, far.height()),
                                    start.translated(-near.width(), 0), start.translated(0, -near.height()) }) {
            places.append(OnScreen(place, screen));
        }
    }
    const auto best = std::min_element(places.begin(), places.end(), [&others](const QRect &left, const QRect &right) {
        return CoveredArea(left, others) < CoveredArea(right, others);
    });
    return best->topLeft();
}

} // namespace

CommentPlacer::CommentPlacer(QObject *parent)
    : QObject(parent)
{
    QCoreApplication::instance()->installEventFilter(this);
}

QList<QWidget *> CommentPlacer::FindDialogs()
{
    QList<QWidget *> dialogs;
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        if (widget->isVisible() && IsCommentDialog(widget)) {
            dialogs.append(widget);
        }
    }
    return dialogs;
}

bool CommentPlacer::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::Show || event->spontaneous() || !IsCommentDialog(watched)) {
        return false;
    }
    auto *dialog = qobject_cast<QWidget *>(watched);
    const QVector<QRect> others = FindOthers(dialog);
    if (dialog != nullptr && !others.isEmpty() && !dialog->testAttribute(Qt::WA_Moved)) {
        // Before it is on the screen nobody knows its frame; it will be as that of the others.
        const QSize size = dialog->size().expandedTo(others.first().size());
        dialog->move(FindPlace(size, others, dialog->screen()->availableGeometry()));
    }
    return false;
}
