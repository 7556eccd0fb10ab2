#include "report/nodepath.h"

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

QString StepText(const NodePath::Step &step)
{
    const QString name = step.m_oElement.tagName();
    const bool isOut = step.m_oElement.parentNode().isNull();
    const bool isOnly = isOut || (step.m_iPosition == 1 && step.m_oElement.nextSiblingElement(name).isNull());
    return isOnly ? name : QStringLiteral("%1[%2]").arg(name, QString::number(step.m_iPosition));
}

} // namespace

QString NodePath::Of(const QDomElement &element)
{
    QString path;
    for (const Step &step : StepsTo(element)) {
        path += QLatin1Char('/') + StepText(step);
    }
    return path;
}

const std::vector<NodePath::Step> &NodePath::StepsTo(const QDomElement &element)
{
    std::size_t depth = 0;
    for (QDomElement step = element; !step.isNull(); step = step.parentNode().toElement()) {
        ++depth;
    }
    m_lSteps.resize(depth);
    for (QDomElement step = element; !step.isNull(); step = step.parentNode().toElement()) {
        TakeStep(step, --depth);
    }
    return m_lSteps;
}

// The next element of that name moves up to the position.
void NodePath::LeaveOut(const QDomNode &node)
{
    for (Step &step : m_lSteps) {
        if (step.m_oElement == node) {
            step.m_oElement = step.m_oElement.nextSiblingElement(step.m_oElement.tagName());
        }
    }
}

void NodePath::TakeStep(const QDomElement &element, std::size_t depth)
{
    Step &last = m_lSteps[depth];
    if (last.m_oElement == element) {
        return;
    }
    if (element.parentNode().isNull()) {
        last = { element, 1 }; // taken out: Qt may leave its siblings dangling
        return;
    }
    const QString name = element.tagName();
    int position = last.m_iPosition;
    const bool goesOn = last.m_oElement.tagName() == name && last.m_oElement.parentNode() == element.parentNode();
    if (!goesOn || !CountOn(last.m_oElement, element, position)) {
        position = 1;
        CountOn(element.parentNode().firstChildElement(name), element, position);
    }
    last = { element, position };
}
