#include "report/placefinder.h"

namespace {

// Whether `element` stands at or behind `from`; counts the siblings of its name on the way into `position`.
bool CountOn(const QDomElement &from, const QDomElement &element, int &position)
{
    const QString name = element.tagName();
    for (QDomElement sibling = from; !sibling.isNull(); sibling = sibling.nextSiblingElement(name)) {
        if (sibling == element) {
            return true;
        }
        ++position;
    }
    return false;
}

std::size_t DepthOf(const QDomElement &element)
{
    std::size_t depth = 0;
    for (QDomElement step = element; !step.isNull(); step = step.parentNode().toElement()) {
        ++depth;
    }
    return depth;
}

// `last` is where the latest way had a step of the same depth.
int PositionOf(const QDomElement &element, const QDomNode &parent, const QDomElement &last, int lastPosition)
{
    if (last == element) {
        return lastPosition;
    }
    if (parent.isNull()) {
        return 1; // taken out: Qt may leave its siblings dangling
    }
    const QString name = element.tagName();
    int position = lastPosition;
    if (last.tagName() == name && last.parentNode() == parent && CountOn(last, element, position)) {
        return position;
    }
    position = 1;
    for (QDomElement sibling = element.previousSiblingElement(name); !sibling.isNull();
         sibling = sibling.previousSiblingElement(name)) {
        ++position;
    }
    return position;
}

} // namespace

ReportPlace PlaceFinder::PlaceOf(const QDomElement &element, const QString &attribute)
{
    if (m_oWalked.IsWatched()) {
        m_lSteps.clear();
    }
    if (m_lSteps.isEmpty() || m_lWay.back().m_oElement != element) {
        GoTo(element);
    }
    return ReportPlace(m_lSteps, attribute);
}

// The next element of that name moves up to the position.
void PlaceFinder::LeaveOut(const QDomNode &node)
{
    m_lSteps.clear();
    for (Step &step : m_lWay) {
        if (step.m_oElement == node) {
            step.m_oElement = step.m_oElement.nextSiblingElement(step.m_oElement.tagName());
        }
    }
}

void PlaceFinder::Forget()
{
    m_lSteps.clear();
    m_lWay.clear();
}

void PlaceFinder::GoTo(const QDomElement &element)
{
    const QDomNode parent = element.parentNode();
    const std::size_t known = CountKnown(parent);
    std::size_t depth = known > 0 ? known + 1 : DepthOf(element);
    m_lWay.resize(depth);
    m_lSteps.resize(static_cast<int>(depth));
    if (known > 0) {
        TakeStep(element, parent, known);
        return;
    }
    for (QDomElement step = element; depth > 0; step = step.parentNode().toElement()) {
        TakeStep(step, step.parentNode(), --depth);
    }
}

// How many steps lead to `parent`; 0 if it isn't on the latest way.
std::size_t PlaceFinder::CountKnown(const QDomNode &parent) const
{
    std::size_t count = m_lSteps.isEmpty() ? 0 : m_lWay.size();
    while (count > 0 && m_lWay[count - 1].m_oElement != parent) {
        --count;
    }
    return count;
}

void PlaceFinder::TakeStep(const QDomElement &element, const QDomNode &parent, std::size_t depth)
{
    Step &step = m_lWay[depth];
    const QString name = element.tagName();
    step.m_iPosition = PositionOf(element, parent, step.m_oElement, step.m_iPosition);
    step.m_oElement = element;
    m_lSteps[static_cast<int>(depth)] = { name, step.m_iPosition - 1 + m_oWalked.CountGone(parent, name) };
}
