#pragma once

#include "report/reportplace.h"
#include "report/walkeddocument.h"

#include <QDomElement>
#include <QString>
#include <QVector>

#include <vector>

/// Finds where an element of the walked document stands. It remembers the way to the element that it was asked for
/// last, so that asking for one sibling after the other neither counts from the first again nor looks at an ancestor.
class PlaceFinder
{
public:
    explicit PlaceFinder(WalkedDocument &walked)
        : m_oWalked(walked)
    {
    }
    Q_DISABLE_COPY(PlaceFinder)

    /// `attribute` is empty for the element itself. No place for a null element.
    ReportPlace PlaceOf(const QDomElement &element, const QString &attribute);

    /// To be told before an element is taken out of its parent.
    void LeaveOut(const QDomNode &node);
    /// To be told before an element in front of the latest one is taken out.
    void Forget();

private:
    // An element of the way, and which one of its name it is among its siblings, from 1.
    struct Step
    {
        QDomElement m_oElement;
        int m_iPosition = 0;
    };

    void GoTo(const QDomElement &element);
    std::size_t CountKnown(const QDomNode &parent) const;
    void TakeStep(const QDomElement &element, const QDomNode &parent, std::size_t depth);

    WalkedDocument &m_oWalked;
    std::vector<Step> m_lWay; // from the root down to the latest element
    QVector<ReportPlace::Step> m_lSteps; // the same for the receiver; empty once it may have changed
};
