#pragma once

#include <QDomElement>
#include <QString>

#include <vector>

/// Tells where an element stands: "/Report/Signal[3]/Level". A position is given where siblings share the name. It
/// remembers where it was asked last, so that asking for one sibling after the other doesn't count from the first
/// again.
class NodePath
{
public:
    /// An element of the way, and which one of its name it is among its siblings, from 1.
    struct Step
    {
        QDomElement m_oElement;
        int m_iPosition = 0;
    };

    QString Of(const QDomElement &element);
    /// The way from the root down to the element.
    const std::vector<Step> &StepsTo(const QDomElement &element);

    /// To be told before an element is taken out of its parent.
    void LeaveOut(const QDomNode &node);

private:
    void TakeStep(const QDomElement &element, std::size_t depth);

    std::vector<Step> m_lSteps; // of the latest path
};
