#include "report/refusals.h"

#include "events/itagwright.h"
#include "host/trace.h"

#include <algorithm>

namespace {

QString Unit()
{
    return QStringLiteral("xmlcreatereport");
}

} // namespace

// Keep the first refusal, that of the form in which the receiver had the value; a broken facet replaces a wrong type,
// since it says more.
void Refusals::Note(const QString &attribute, const QString &value, const QString &reason, int error)
{
    Target &target = GetTarget(attribute);
    const bool isFirst = target.m_iError == 0;
    const bool saysMore = error == ITagwright::CURRENT_VALUE_IS_NOT_VALID && target.m_iError != error;
    if (isFirst || saysMore) {
        target.m_sValue = value;
        target.m_sReason = reason;
        target.m_iError = error;
    }
}

void Refusals::Written(const QString &attribute)
{
    GetTarget(attribute).m_bWritten = true;
}

void Refusals::Tell(const QDomElement &element)
{
    for (Target &target : m_lTargets) {
        if (target.m_bWritten || target.m_bTold) {
            continue;
        }
        target.m_bTold = true;
        trace::Write(Unit(), __LINE__, [&] { return Sentence(target, element); });
    }
}

QString Refusals::Sentence(const Target &target, const QDomElement &element)
{
    const QString place = target.m_sAttribute.isEmpty() ? QString() : QLatin1String("/@") + target.m_sAttribute;
    return QStringLiteral("%1%2: the value \"%3\" was not written: %4 (error %5).")
        .arg(m_oPath.Of(element), place, target.m_sValue, target.m_sReason, QString::number(target.m_iError));
}

void Refusals::TellMissing(const QDomElement &element, int error)
{
    trace::Write(Unit(), __LINE__, [&] {
        return QStringLiteral("%1 stays without a value, though it may not be left out (error %2).")
            .arg(m_oPath.Of(element), QString::number(error));
    });
}

void Refusals::TellCount(const QDomElement &element, int count, int error)
{
    trace::Write(Unit(), __LINE__, [&] {
        return QStringLiteral("%1 may not stand %2 times here (error %3).")
            .arg(m_oPath.Of(element), QString::number(count), QString::number(error));
    });
}

bool Refusals::HasRefusedValue() const
{
    return std::any_of(m_lTargets.begin(), m_lTargets.end(), [](const Target &target) {
        return target.m_sAttribute.isEmpty() && !target.m_bWritten && !target.m_sReason.isEmpty();
    });
}

Refusals::Target &Refusals::GetTarget(const QString &attribute)
{
    const auto found = std::find_if(m_lTargets.begin(), m_lTargets.end(),
                                    [&attribute](const Target &target) { return target.m_sAttribute == attribute; });
    if (found != m_lTargets.end()) {
        return *found;
    }
    Target target;
    target.m_sAttribute = attribute;
    m_lTargets.push_back(target);
    return m_lTargets.back();
}
