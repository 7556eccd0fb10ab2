#pragma once

#include "report/facets.h"

#include <QDateTime>
#include <QString>
#include <QTime>
#include <QVariant>

#include <array>
#include <optional>

class ReportData;

/// A value that a source has given for one place, in the forms in which it is written: the first that the builder takes
/// counts.
class SourceValue
{
public:
    /// Numbers are scaled as `item` asks for. Attributes take no bool and no time: these are texts there.
    SourceValue(const QVariant &value, ReportData &item, bool isAttribute, bool isValidOutput);

    /// Whether a report can hold values of that kind at all.
    static bool IsUsable(const QVariant &value);

    /// Gives the next form to `set`, which takes any of the types that the builder's setters take. Nothing happens
    /// behind the last one.
    template <typename Set>
    void SetNext(Set set);

private:
    enum class Form { None, Bool, Integer, Number, DateTime, Time, Text, TextAsDate };

    Form TakeForm() { return m_iNext < m_aForms.size() ? m_aForms[m_iNext++] : Form::None; }
    QString GetText() const;

    QVariant m_oValue;
    bool m_bNumberText = false; // the text is the number's, not the value's own
    double m_dNumber = 0.0;
    std::array<Form, 3> m_aForms {}; // in the order in which they are tried; None behind the last one
    std::size_t m_iNext = 0;
};

template <typename Set>
void SourceValue::SetNext(Set set)
{
    Form form = TakeForm();
    const std::optional<int> integer = form == Form::Integer ? facets::ToInteger(m_dNumber) : std::nullopt;
    if (form == Form::Integer && !integer) {
        form = TakeForm();
    }
    if (form == Form::Bool) {
        set(m_oValue.toBool());
    } else if (form == Form::Integer) {
        set(*integer);
    } else if (form == Form::Number) {
        set(m_dNumber);
    } else if (form == Form::DateTime) {
        set(m_oValue.toDateTime());
    } else if (form == Form::Time) {
        set(m_oValue.toTime());
    } else if (form == Form::Text) {
        set(GetText());
    } else if (form == Form::TextAsDate) {
        set(QDateTime::fromString(GetText(), Qt::ISODate));
    }
}
