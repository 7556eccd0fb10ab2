#include "report/enumerationtest.h"

#include "report/attributes.h"

namespace enumeration {

namespace {

// A text without a match fails if any of the values is not empty: which of them Qt would give last says nothing.
template <typename IsValue>
Verdict Judge(const QDomElement &element, const QString &text, IsValue isValue)
{
    Verdict verdict;
    bool hasMatch = false;
    bool restricts = false;
    for (const QDomAttr &attribute : SortedAttributes(element)) {
        const QString name = attribute.nodeName();
        if (name.contains(QLatin1String("enumeration")) && isValue(name)) {
            const QString value = attribute.value();
            hasMatch = hasMatch || value == text;
            restricts = restricts || !value.isEmpty();
            verdict.m_lNames.append(name);
        }
    }
    verdict.m_bPasses = hasMatch || !restricts;
    return verdict;
}

} // namespace

Verdict JudgeForElement(const QDomElement &element, const QString &text)
{
    return Judge(element, text, [](const QString &name) { return name.at(name.size() - 1).isDigit(); });
}

Verdict JudgeForAttribute(const QDomElement &element, const QString &attributeName, const QString &text)
{
    return Judge(element, text, [&attributeName](const QString &name) { return name.contains(attributeName); });
}

} // namespace enumeration
