#include "report/enumerationtest.h"

namespace enumeration {

namespace {

// A text without a match fails if any of the values is not empty: which of them Qt would give last says nothing.
template <typename IsValue>
Verdict Judge(const AttributeList &attributes, const QString &text, IsValue isValue)
{
    Verdict verdict;
    bool hasMatch = false;
    bool restricts = false;
    for (const auto &[name, value] : attributes) {
        if (name.contains(QLatin1String("enumeration")) && isValue(name)) {
            hasMatch = hasMatch || value == text;
            restricts = restricts || !value.isEmpty();
            verdict.m_lNames.append(name);
        }
    }
    verdict.m_bPasses = hasMatch || !restricts;
    return verdict;
}

} // namespace

QString Explain()
{
    return QStringLiteral("not among the enumeration values");
}

Verdict JudgeForElement(const AttributeList &attributes, const QString &text)
{
    return Judge(attributes, text, [](const QString &name) { return name.at(name.size() - 1).isDigit(); });
}

Verdict JudgeForAttribute(const AttributeList &attributes, const QString &attributeName, const QString &text)
{
    return Judge(attributes, text, [&attributeName](const QString &name) { return name.contains(attributeName); });
}

} // namespace enumeration
