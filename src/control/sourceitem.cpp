#include "control/sourceitem.h"

#include "host/trace.h"

#include <QDateTime>

#include <exception>
#include <utility>

namespace {

void Trace(const ReportPlace &place, const QString &what)
{
    trace::Write(QStringLiteral("sourceitem"), __LINE__,
                 [&] { return QStringLiteral("The source for %1 %2").arg(place.GetText(), what); });
}

QString WholeNumber(const QVariant &value)
{
    return value.userType() == QMetaType::ULongLong || value.userType() == QMetaType::ULong
        ? QString::number(value.toULongLong())
        : QString::number(value.toLongLong());
}

} // namespace

SourceItem::SourceItem(const ReportData &traits, ReportSource source, ReportCount count)
    : ReportData(traits)
    , m_fnSource(std::move(source))
    , m_fnCount(std::move(count))
{
}

int SourceItem::AskCount(const ReportPlace &place)
{
    return m_fnCount ? Call(m_fnCount, place).value_or(1) : GetMaxOccurs();
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
    switch (value.userType()) {
    case QMetaType::UnknownType:
        return nullptr;
    case QMetaType::Bool:
        // Attributes have no other form of it than the text.
        return MakeItem(value.toBool() ? QStringLiteral("true") : QStringLiteral("false"), value.toBool());
    case QMetaType::Double:
    case QMetaType::Float:
        return MakeItem(QString(), value.toDouble());
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::Long:
    case QMetaType::ULong:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Short:
    case QMetaType::UShort:
        // As a text it keeps all of its digits.
        return GetExponent() == 0 ? MakeItem(WholeNumber(value), ExplicitReportData())
                                  : MakeItem(QString(), value.toDouble());
    case QMetaType::QDateTime:
    case QMetaType::QDate:
    case QMetaType::QTime: {
        const QString text =
            value.userType() == QMetaType::QDateTime ? value.toDateTime().toString(Qt::ISODate) : value.toString();
        return text.isEmpty() ? nullptr : MakeItem(QString(), text);
    }
    default:
        break;
    }
    if (!value.canConvert<QString>()) {
        Trace(place, QStringLiteral("gives a \"%1\", which no report can hold.").arg(QLatin1String(value.typeName())));
        return nullptr;
    }
    return MakeItem(QString(), value.toString());
}

ItemList::Item SourceItem::MakeItem(const QString &text, const ExplicitReportData &data)
{
    auto item =
        std::make_shared<SourceValue>(GetName(), QString(), text, 1, QString(), GetExponent(), GetUnit(), false);
    item->SetExplicitData(data);
    return item;
}
