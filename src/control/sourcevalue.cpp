#include "control/sourcevalue.h"

#include "control/reportdata.h"

namespace {

bool IsWhole(int type)
{
    return type == QMetaType::Int || type == QMetaType::UInt || type == QMetaType::LongLong
        || type == QMetaType::ULongLong || type == QMetaType::Long || type == QMetaType::ULong
        || type == QMetaType::Short || type == QMetaType::UShort;
}

} // namespace

bool SourceValue::IsUsable(const QVariant &value)
{
    switch (value.userType()) {
    case QMetaType::QDateTime:
        return value.toDateTime().isValid();
    case QMetaType::QDate:
        return value.toDate().isValid();
    case QMetaType::QTime:
        return value.toTime().isValid();
    case QMetaType::QStringList:
        return value.toStringList().size() == 1; // Qt makes no text of several
    default:
        return value.canConvert<QString>();
    }
}

SourceValue::SourceValue(const QVariant &value, ReportData &item, bool isAttribute, bool isValidOutput)
    : m_oValue(value)
{
    const int type = value.userType();
    const bool isWhole = IsWhole(type);
    if (isWhole || type == QMetaType::Double || type == QMetaType::Float) {
        m_dNumber = item.Scaled(value.toDouble());
        // A whole number keeps all of its digits as a text, where a double loses some. A "long" takes both, but holds a
        // text against its bounds in valid output alone.
        m_bNumberText = !isWhole || item.GetExponent() != 0;
        if (m_bNumberText) {
            m_aForms = { Form::Number, Form::Integer, Form::Text };
        } else if (isValidOutput) {
            m_aForms = { Form::Integer, Form::Text, Form::Number };
        } else {
            m_aForms = { Form::Integer, Form::Number, Form::Text };
        }
    } else if (type == QMetaType::Bool && !isAttribute) {
        m_aForms = { Form::Bool };
    } else if (type == QMetaType::QDateTime) {
        m_aForms = { Form::DateTime, Form::Text };
    } else if (type == QMetaType::QTime && !isAttribute) {
        m_aForms = { Form::Time, Form::Text };
    } else {
        m_aForms = { Form::Text, Form::TextAsDate };
    }
}

/// Times as a report has them, without milliseconds.
QString SourceValue::GetText() const
{
    if (m_bNumberText) {
        return QString::number(m_dNumber, 'g', 12);
    }
    if (m_oValue.userType() == QMetaType::QDateTime) {
        return m_oValue.toDateTime().toString(Qt::ISODate);
    }
    return m_oValue.userType() == QMetaType::QTime ? m_oValue.toTime().toString(Qt::ISODate) : m_oValue.toString();
}
