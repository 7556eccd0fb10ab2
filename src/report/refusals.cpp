#include "report/refusals.h"

#include "events/itagwright.h"

#include <algorithm>

namespace {

QString Unit()
{
    return QStringLiteral("xmlcreatereport");
}

} // namespace

void Refusals::Report(const QDomElement &element, const Target &target)
{
    if (!IsAsked()) {
        return;
    }
    const QString place = PlaceOf(element, target.m_sAttribute).GetText();
    if (m_pOutcome != nullptr) {
        m_pOutcome->AddRefused({ place, target.m_sValue, target.m_sReason, target.m_iError });
    }
    trace::Write(Unit(), __LINE__, [&] {
        const QString error = QString::number(target.m_iError);
        return target.m_bIsCount
            ? QStringLiteral("%1 may not stand %2 times here (error %3).").arg(place, target.m_sValue, error)
            : QStringLiteral("%1: the value \"%2\" was not written: %3 (error %4).")
                  .arg(place, target.m_sValue, target.m_sReason, error);
    });
}

// Keep the first refusal, that of the form in which the receiver had the value; a broken facet replaces a wrong type,
// since it says more.
void Refusals::Note(const QString &attribute, const QString &value, const QString &reason, int error)
{
    if (!IsAsked()) {
        return;
    }
    Target &target = GetTarget(attribute);
    if (target.m_iError == 0 || (error == ITagwright::CURRENT_VALUE_IS_NOT_VALID && target.m_iError != error)) {
        target.m_sValue = value;
        target.m_sReason = reason;
        target.m_iError = error;
    }
}

void Refusals::Written(const QString &attribute)
{
    if (IsAsked()) {
        GetTarget(attribute).m_bWritten = true;
    }
}

void Refusals::Tell(const QDomElement &element)
{
    for (Target &target : m_lTargets) {
        if (target.m_bWritten || target.m_bTold) {
            continue;
        }
        target.m_bTold = true;
        Report(element, target);
    }
}

void Refusals::TellMissing(const QDomElement &element, const QString &attribute, int error)
{
    if (!IsAsked()) {
        return;
    }
    const QString place = PlaceOf(element, attribute).GetText();
    if (m_pOutcome != nullptr) {
        m_pOutcome->AddMissing(place);
    }
    trace::Write(Unit(), __LINE__, [&] {
        return QStringLiteral("%1 stays without a value, though it may not be left out (error %2).")
            .arg(place, QString::number(error));
    });
}

void Refusals::TellExcluded(const QDomElement &element, int error)
{
    Report(element, { QString(), element.text(), QStringLiteral("another alternative of the choice has one"), error });
}

void Refusals::TellCount(const QDomElement &element, int count, int error)
{
    Target target { QString(), QString::number(count), QStringLiteral("it may not stand that often here"), error };
    target.m_bIsCount = true;
    Report(element, target);
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
