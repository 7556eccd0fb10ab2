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

} // namespace

QString NodePath::Of(const QDomElement &element)
{
    std::vector<QDomElement> line;
    for (QDomElement step = element; !step.isNull(); step = step.parentNode().toElement()) {
        line.insert(line.begin(), step);
    }
    m_lSteps.resize(line.size());
    QString path;
    for (std::size_t depth = 0; depth < line.size(); ++depth) {
        path += QLatin1Char('/') + StepText(line[depth], depth);
    }
    return path;
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

QString NodePath::StepText(const QDomElement &element, std::size_t depth)
{
    QString name = element.tagName();
    if (element.parentNode().isNull()) {
        return name; // taken out: Qt may leave its siblings dangling
    }
    Step &last = m_lSteps[depth];
    int position = last.m_iPosition;
    const bool goesOn = last.m_oElement.tagName() == name && last.m_oElement.parentNode() == element.parentNode();
    if (!goesOn || !CountOn(last.m_oElement, element, position)) {
        position = 1;
        CountOn(element.parentNode().firstChildElement(name), element, position);
    }
    last = { element, position };
    const bool isOnly = position == 1 && element.nextSiblingElement(name).isNull();
    return isOnly ? name : QStringLiteral("%1[%2]").arg(name, QString::number(position));
}
