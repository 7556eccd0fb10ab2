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
    QString Of(const QDomElement &element);

    /// To be told before an element is taken out of its parent.
    void LeaveOut(const QDomNode &node);

private:
    struct Step
    {
        QDomElement m_oElement;
        int m_iPosition = 0;
    };

    QString StepText(const QDomElement &element, std::size_t depth);

    std::vector<Step> m_lSteps; // from the root down, of the latest path
};
