#include "control/sourceitem.h"

#include "control/sourcevalue.h"
#include "host/trace.h"
#include "report/xmlcreatereport.h"

#include <QJsonValue>

#include <exception>
#include <utility>

namespace {

void Trace(const ReportPlace &place, const QString &what)
{
    trace::Write(QStringLiteral("sourceitem"), __LINE__,
                 [&] { return QStringLiteral("The source for %1 %2").arg(place.GetText(), what); });
}

/// What Qt makes no text of, or another than the number's, as a value that it does.
QVariant Plain(const QVariant &value)
{
    const int type = value.userType();
    if (type == QMetaType::QJsonValue) {
        const QJsonValue json = value.toJsonValue();
        return json.isNull() ? QVariant() : json.toVariant();
    }
    return type == QMetaType::SChar || type == QMetaType::UChar ? QVariant(value.toInt()) : value;
}

} // namespace

SourceItem::SourceItem(const ReportData &traits, ReportSource source, ReportCount count)
    : ReportData(traits)
    , m_fnSource(std::move(source))
    , m_fnCount(std::move(count))
{
}

int SourceItem::AskCount(const XmlCreateReport &report)
{
    return m_fnCount ? Call(m_fnCount, report.GetPlace()).value_or(1) : GetMaxOccurs();
}

bool SourceItem::IsAsked(quint64 announcement, const QString &attribute) const
{
    return m_iAnnouncement == announcement && m_sAttribute == attribute;
}

void SourceItem::Ask(quint64 announcement, const ReportPlace &place)
{
    m_iAnnouncement = announcement;
    m_sAttribute = place.GetAttribute();
    m_oValue = Plain(Call(m_fnSource, place).value_or(QVariant()));
    if (m_oValue.isValid() && !SourceValue::IsUsable(m_oValue)) {
        Trace(place, QStringLiteral("gives a \"%1\", which is no value.").arg(QLatin1String(m_oValue.typeName())));
        m_oValue.clear();
    }
}

/// A function that throws gives nothing: the report goes on without the value, and no exception passes through Qt.
template <typename Result>
std::optional<Result> SourceItem::Call(const std::function<Result(const ReportPlace &)> &function,
                                       const ReportPlace &place)
{
    try {
        return function(place);
    } catch (const std::exception &exception) {
        Trace(place, QLatin1String("throws: ") + QString::fromLocal8Bit(exception.what()));
    } catch (...) {
        Trace(place, QStringLiteral("throws."));
    }
    return std::nullopt;
}
