// The values of elements.

#include "report/boundtest.h"
#include "report/domparser.h"
#include "report/enumerationtest.h"
#include "report/xmlcreatereport.h"

#include <QDomDocument>
#include <QDomElement>

#include <cmath>
#include <limits>

namespace {

constexpr char kSetter[] = "SetXmlValue";

QString TypeName()
{
    return QStringLiteral("type");
}

QString ShortType()
{
    return QStringLiteral("short");
}

// False for a number that has no integer form, NaN among them.
bool FitsInteger(double value)
{
    const double cut = std::trunc(value);
    return cut >= std::numeric_limits<int>::min() && cut <= std::numeric_limits<int>::max();
}

QString NoIntegerHoldsIt()
{
    return QStringLiteral("no integer holds it");
}

} // namespace

void XmlCreateReport::SetXmlValue(QString value)
{
    if (!FetchElementToSet(kSetter)) {
        return;
    }
    if (TypeControl(QStringLiteral("string")).isEmpty()) {
        RefuseType(ITagwright::CURRENT_TYPE_IS_NOT_STRING, QString(), value, "string");
        return;
    }
    const enumeration::Verdict verdict = enumeration::JudgeForElement(m_pDomParser->GetAttributes().GetAll(), value);
    if (!verdict.m_bPasses) {
        Refuse(ITagwright::CURRENT_VALUE_IS_NOT_VALID, QString(), value, &enumeration::Explain);
        return;
    }
    WriteValue(verdict.m_lNames, value);
}

void XmlCreateReport::SetXmlValue(const char *value)
{
    SetXmlValue(QString::fromUtf8(value));
}

void XmlCreateReport::SetXmlValue(double value)
{
    if (!FetchElementToSet(kSetter)) {
        return;
    }
    const QString typeWord = QStringLiteral("double");
    const bool isShort = TypeControl(typeWord) == ShortType();
    // Asked again for the check itself, so that an element without a type says so twice: receivers count on it.
    if (TypeControl(typeWord).isEmpty()) {
        RefuseType(ITagwright::CURRENT_TYPE_IS_NOT_DOUBLE, QString(), QString::number(value, 'g', 12), "double");
        return;
    }
    if (isShort && !FitsInteger(value)) {
        Refuse(ITagwright::CURRENT_VALUE_IS_NOT_VALID, QString(), QString::number(value, 'g', 12), &NoIntegerHoldsIt);
        return;
    }
    SetNumber(value, isShort ? QString::number(static_cast<int>(value)) : QString::number(value, 'g', 12));
}

void XmlCreateReport::SetXmlValue(int value)
{
    if (!FetchElementToSet(kSetter)) {
        return;
    }
    if (TypeControl(QStringLiteral("integer")).isEmpty()) {
        RefuseType(ITagwright::CURRENT_TYPE_IS_NOT_INTEGER, QString(), QString::number(value), "integer");
        return;
    }
    // Even if the bounds refuse the value: the walk then takes the element for a container.
    m_pDomParser->GetAttributes().Remove(TypeName());
    SetNumber(value, QString::number(value));
}

void XmlCreateReport::SetXmlValue(bool value)
{
    SetUntestedValue(QStringLiteral("bool"), ITagwright::CURRENT_TYPE_IS_NOT_BOOL,
                     value ? QStringLiteral("true") : QStringLiteral("false"), "boolean");
}

void XmlCreateReport::SetXmlValue(QDateTime value)
{
    SetUntestedValue(QStringLiteral("dateTime"), ITagwright::CURRENT_TYPE_IS_NOT_DATETIME, value.toString(Qt::ISODate),
                     "date and time");
}

void XmlCreateReport::SetXmlValue(QTime value)
{
    SetUntestedValue(QStringLiteral("time"), ITagwright::CURRENT_TYPE_IS_NOT_TIME, value.toString(Qt::ISODate), "time");
}

template <typename Number>
void XmlCreateReport::SetNumber(Number value, const QString &text)
{
    const auto limits = bounds::OfElement<Number>(m_pDomParser->GetAttributes().GetAll());
    const bounds::Verdict verdict = bounds::Judge(limits, value);
    if (!verdict.m_bPasses) {
        Refuse(ITagwright::CURRENT_VALUE_IS_NOT_VALID, QString(), text, [&] { return bounds::Explain(limits, value); });
        return;
    }
    WriteValue(bounds::UsedNames(verdict, QString()), text);
}

void XmlCreateReport::SetUntestedValue(const QString &typeWord, int typeError, const QString &text, const char *kind)
{
    if (!FetchElementToSet(kSetter)) {
        return;
    }
    if (TypeControl(typeWord).isEmpty()) {
        RefuseType(typeError, QString(), text, kind);
        return;
    }
    WriteValue(QStringList(), text);
}

void XmlCreateReport::WriteValue(const QStringList &testedAttributes, const QString &text)
{
    m_pDomParser->GetAttributes().Remove(TypeName());
    for (const QString &name : testedAttributes) {
        m_pDomParser->GetAttributes().Remove(name);
    }
    NoteWritten(QString());
    CreateAndAppendTextNode(text);
}

QString XmlCreateReport::TypeControl(QString expectedType)
{
    QString type = m_pDomParser->GetAttributes().GetValue(TypeName());
    if (type.isEmpty()) {
        Error(ITagwright::CURRENT_ELEMENT_HAS_NO_TYPE);
        return QString();
    }
    if (type.contains(expectedType)) {
        return type;
    }
    if (type.contains(ShortType())) {
        return ShortType();
    }
    const QString longType = QStringLiteral("long");
    return type.contains(longType) ? longType : QString();
}

void XmlCreateReport::CreateAndAppendTextNode(QString text)
{
    if (!HasCurrentElement()) {
        Error(ITagwright::CURRENT_ELEMENT_IS_NULL);
        return;
    }
    const ElementIndex::OwnChange change(m_pDomParser->GetElementIndex());
    const QDomNode first = m_pCurrentElement->firstChild();
    if (first.nodeType() == QDomNode::TextNode) {
        m_pCurrentElement->removeChild(first);
    }
    m_pCurrentElement->appendChild(m_pDocument->createTextNode(text));
    m_pDomParser->SetNodeToContinue(m_pCurrentElement, false);
}
