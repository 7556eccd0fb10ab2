#include "control/itemlist.h"
#include "control/sourceitem.h"
#include "control/vcreporting.h"
#include "host/trace.h"
#include "report/xmlcreatereport.h"

#include <algorithm>
#include <utility>

// Values by place: what the host adds, and how an element gets it. A host's function may remove what is being served:
// an item is shared as long as it is asked.

namespace {

QString Unit()
{
    return QStringLiteral("vcreportingsources");
}

bool BeginsWith(const QVector<ReportPlace::Step> &steps, const QVector<ReportPlace::Step> &first)
{
    return steps.size() >= first.size() && std::equal(first.begin(), first.end(), steps.begin(), [](auto &a, auto &b) {
               return a.m_sName == b.m_sName && a.m_iIndex == b.m_iIndex;
           });
}

} // namespace

void VCReporting::AddReportSource(QString name, ReportSource source, int maxOccurs, QString auxText, int exponent,
                                  QString unit)
{
    AddSource(*CreateReportData(name, maxOccurs, auxText, exponent, unit), std::move(source), nullptr);
}

void VCReporting::AddReportSource(QString name, ReportSource source, ReportCount maxOccurs, QString auxText,
                                  int exponent, QString unit)
{
    AddSource(*CreateReportData(name, 1, auxText, exponent, unit), std::move(source), std::move(maxOccurs));
}

void VCReporting::AddReportContainer(QString name, int count)
{
    AddContainer(*CreateReportData(name, count, QString(), 0, QString()), nullptr);
}

void VCReporting::AddReportContainer(QString name, ReportCount count)
{
    AddContainer(*CreateReportData(name, 1, QString(), 0, QString()), std::move(count));
}

void VCReporting::AddSource(ReportData &traits, ReportSource source, ReportCount count)
{
    const bool isUsable = source != nullptr;
    trace::Write(Unit(), __LINE__, [&traits, isUsable] {
        return QLatin1String("VCReporting::AddReportSource: ") + traits.GetName()
            + (isUsable ? QLatin1String() : QLatin1String(" has no function and is not added."));
    });
    if (isUsable) {
        m_Items->Append(std::make_shared<SourceItem>(traits, std::move(source), std::move(count)));
    }
}

void VCReporting::AddContainer(ReportData &traits, ReportCount count)
{
    trace::Write(Unit(), __LINE__,
                 [&traits] { return QLatin1String("VCReporting::AddReportContainer: ") + traits.GetName(); });
    m_Items->Append(std::make_shared<SourceItem>(traits, nullptr, std::move(count)));
}

/// The report has been made, or given up.
void VCReporting::EndSources()
{
    m_lAbsent.clear();
    if (m_bDeleteAfterUse) {
        m_Items->RemoveSources();
    }
}

/// True the first time that the element in hand is announced. It may come again, and no source is asked again then.
bool VCReporting::IsFirstVisit()
{
    if (!m_oFirstVisit) {
        m_oFirstVisit = m_pReport->ServeOnce();
    }
    return *m_oFirstVisit;
}

/// True for an element that a count of 0 has declared absent, and for all below it.
bool VCReporting::IsAbsent()
{
    if (!m_lAbsent.isEmpty() && !BeginsWith(m_pReport->GetPlace().GetSteps(), m_lAbsent)) {
        m_lAbsent.clear();
    }
    return !m_lAbsent.isEmpty();
}

/// Asks how often the element in hand is to stand. False if it gets nothing: it has been served before, or is absent.
bool VCReporting::OpenSource(const std::shared_ptr<SourceItem> &source, int &count)
{
    if (!IsFirstVisit()) {
        return false;
    }
    count = source->AskCount(*m_pReport);
    if (count > 0) {
        return true;
    }
    const ReportPlace place = m_pReport->GetPlace();
    m_lAbsent = place.GetSteps();
    trace::Write(Unit(), __LINE__, [&] {
        return QStringLiteral("%1 is to stand %2 times: it and all below it stay without values.")
            .arg(place.GetText(), QString::number(count));
    });
    m_pReport->SetElementMaxOccurs(place.GetName(), 0);
    return false;
}

/// What a source gives for the element in hand or an attribute of it. Invalid for no value.
QVariant VCReporting::GetSourceValue(const std::shared_ptr<SourceItem> &source, const QString &attribute)
{
    if (source->IsContainer() || !IsFirstVisit()) {
        return QVariant();
    }
    if (!source->IsAsked(m_iAnnouncement, attribute)) {
        source->Ask(m_iAnnouncement, m_pReport->GetPlace(attribute));
    }
    return source->GetValue();
}
