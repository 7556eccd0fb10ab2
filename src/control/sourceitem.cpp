#include "control/sourceitem.h"

#include "host/trace.h"
#include "report/xmlcreatereport.h"

#include <QDateTime>

#include <exception>
#include <utility>

namespace {

void Trace(const ReportPlace &place, const QString &what)
{
    trace::Write(QStringLiteral("sourceitem"), __LINE__,
                 [&] { return QStringLiteral("The source for %1 %2").arg(place.GetText(), what); });
}

bool IsWhole(int type)
{
    return type == QMetaType::Int || type == QMetaType::UInt || type == QMetaType::LongLong
        || type == QMetaType::ULongLong || type == QMetaType::Long || type == QMetaType::ULong
        || type == QMetaType::Short || type == QMetaType::UShort;
}

QString WholeNumber(const QVariant &value)
{
    return value.userType() == QMetaType::ULongLong || value.userType() == QMetaType::ULong
        ? QString::number(value.toULongLong())
        : QString::number(value.toLongLong());
}

bool IsTime(int type)
{
    return type == QMetaType::QDateTime || type == QMetaType::QDate || type == QMetaType::QTime;
}

/// Times as a report has them, without milliseconds.
QString ToText(const QVariant &value)
{
    if (value.userType() == QMetaType::QDateTime) {
        return value.toDateTime().toString(Qt::ISODate);
    }
    return value.userType() == QMetaType::QTime ? value.toTime().toString(Qt::ISODate) : value.toString();
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
    m_pValue.reset();
    m_pValue = ToItem(Call(m_fnSource, place).value_or(QVariant()), place);
}

/// Nothing from a function that throws: the report goes on without, and no exception passes through Qt.
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

ItemList::Item SourceItem::ToItem(const QVariant &value, const ReportPlace &place)
{
    const int type = value.userType();
    if (!value.isValid()) {
        return nullptr;
    }
    if (type == QMetaType::Bool) {
        // Attributes have no other form of it than the text.
        return MakeItem(value.toBool() ? QStringLiteral("true") : QStringLiteral("false"), value.toBool());
    }
    if (IsWhole(type) && GetExponent() == 0) {
        // As a text that reads as a number it keeps all of its digits.
        return MakeItem(WholeNumber(value), ExplicitReportData());
    }
    if (IsWhole(type) || type == QMetaType::Double || type == QMetaType::Float) {
        return MakeItem(QString(), value.toDouble());
    }
    if (!value.canConvert<QString>()) {
        Trace(place, QStringLiteral("gives a \"%1\", which no report can hold.").arg(QLatin1String(value.typeName())));
        return nullptr;
    }
    const QString text = ToText(value);
    // An invalid time is no value, an empty text is one.
    return text.isEmpty() && IsTime(type) ? nullptr : MakeItem(QString(), text);
}

ItemList::Item SourceItem::MakeItem(const QString &text, const ExplicitReportData &data)
{
    auto item =
        std::make_shared<SourceValue>(GetName(), QString(), text, 1, QString(), GetExponent(), GetUnit(), false);
    item->SetExplicitData(data);
    return item;
}
