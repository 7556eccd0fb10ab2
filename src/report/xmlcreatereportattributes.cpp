// The values of attributes.

#include "report/boundtest.h"
#include "report/domparser.h"
#include "report/enumerationtest.h"
#include "report/xmlcreatereport.h"

#include <QDomElement>

namespace {

constexpr char kSetter[] = "SetAttributeValue";

} // namespace

void XmlCreateReport::SetAttributeValue(QString name, QString value)
{
    if (!FetchCurrentElement(kSetter) || !HasCurrentElement()
        || !CheckAttributeType(name, QStringLiteral("string"), ITagwright::CURRENT_TYPE_IS_NOT_STRING, value)) {
        return;
    }
    const enumeration::Verdict verdict =
        enumeration::JudgeForAttribute(m_pDomParser->GetAttributes().GetAll(), name, value);
    if (!verdict.m_bPasses) {
        Refuse(ITagwright::CURRENT_VALUE_IS_NOT_VALID, name, value, &enumeration::Explain);
        return;
    }
    WriteAttribute(name, verdict.m_lNames, value);
}

void XmlCreateReport::SetAttributeValue(QString name, const char *value)
{
    SetAttributeValue(name, QString::fromUtf8(value));
}

void XmlCreateReport::SetAttributeValue(QString name, QDateTime value)
{
    if (FetchCurrentElement(kSetter) && HasCurrentElement()
        && CheckAttributeType(name, QStringLiteral("dateTime"), ITagwright::CURRENT_TYPE_IS_NOT_DATETIME,
                              value.toString(Qt::ISODate))) {
        WriteAttribute(name, QStringList(), value.toString(Qt::ISODate));
    }
}

void XmlCreateReport::SetAttributeValue(QString name, int value)
{
    if (FetchElementToSet(kSetter)
        && CheckAttributeType(name, QStringLiteral("integer"), ITagwright::CURRENT_TYPE_IS_NOT_INTEGER,
                              QString::number(value))) {
        SetAttributeNumber(name, value, QString::number(value));
    }
}

void XmlCreateReport::SetAttributeValue(QString name, double value)
{
    if (FetchElementToSet(kSetter)
        && CheckAttributeType(name, QStringLiteral("double"), ITagwright::CURRENT_TYPE_IS_NOT_DOUBLE,
                              QString::number(value, 'g', 12))) {
        SetAttributeNumber(name, value, QString::number(value, 'g', 12));
    }
}

void XmlCreateReport::RemoveAttribute(QString name)
{
    if (FetchCurrentElement("RemoveAttribute") && HasCurrentElement()) {
        m_pDomParser->GetAttributes().Remove(name);
    }
}

// Until it has a value, an attribute holds its type. Unlike an element's, "short" and "long" take only their own kind.
bool XmlCreateReport::CheckAttributeType(const QString &name, const QString &typeWord, int typeError,
                                         const QString &value)
{
    // An empty value contains no type word, whether the attribute is there or not.
    if (!m_pDomParser->GetAttributes().GetValue(name).contains(typeWord)) {
        RefuseType(typeError, name, value, typeWord.toUtf8().constData());
        return false;
    }
    return true;
}

template <typename Number>
void XmlCreateReport::SetAttributeNumber(const QString &name, Number value, const QString &text)
{
    const auto limits = bounds::OfAttribute<Number>(m_pDomParser->GetAttributes().GetAll(), name);
    const bounds::Verdict verdict = bounds::Judge(limits, value);
    if (!verdict.m_bPasses) {
        Refuse(ITagwright::CURRENT_VALUE_IS_NOT_VALID, name, text, [&] { return bounds::Explain(limits, value); });
        return;
    }
    WriteAttribute(name, bounds::UsedNames(verdict, name), text);
}

// Puts the value in the place of the type. It does not end the element for the walk.
void XmlCreateReport::WriteAttribute(const QString &name, const QStringList &testedAttributes, const QString &text)
{
    const ElementIndex::OwnChange change(m_pDomParser->GetElementIndex());
    for (const QString &tested : testedAttributes) {
        m_pDomParser->GetAttributes().Remove(tested);
    }
    m_pDomParser->GetAttributes().Set(name, text);
    NoteWritten(name);
}
