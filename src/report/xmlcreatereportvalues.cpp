// The values of elements and attributes.

#include "host/trace.h"
#include "report/domparser.h"
#include "report/facets.h"
#include "report/xmlcreatereport.h"

#include <QDomDocument>
#include <QDomElement>

namespace {

using facets::Facets;

/// A kind of value: the types that take it, and the facets that it is held against.
struct ValueKind
{
    QString (*m_fnTypeWord)(); // a word in the names of the types that take the value
    const char *m_pNoun; // for a trace
    ITagwright::ErrorID m_eError;
    Facets m_eFacets;
};

constexpr ValueKind kString { [] { return QStringLiteral("string"); }, "string", ITagwright::CURRENT_TYPE_IS_NOT_STRING,
                              Facets::Enumeration };
constexpr ValueKind kDouble { [] { return QStringLiteral("double"); }, "double", ITagwright::CURRENT_TYPE_IS_NOT_DOUBLE,
                              Facets::DoubleBounds };
constexpr ValueKind kInteger { [] { return QStringLiteral("integer"); }, "integer",
                               ITagwright::CURRENT_TYPE_IS_NOT_INTEGER, Facets::IntegerBounds };
constexpr ValueKind kBool { [] { return QStringLiteral("bool"); }, "boolean", ITagwright::CURRENT_TYPE_IS_NOT_BOOL,
                            Facets::None };
constexpr ValueKind kDateTime { [] { return QStringLiteral("dateTime"); }, "date and time",
                                ITagwright::CURRENT_TYPE_IS_NOT_DATETIME, Facets::None };
constexpr ValueKind kTime { [] { return QStringLiteral("time"); }, "time", ITagwright::CURRENT_TYPE_IS_NOT_TIME,
                            Facets::None };

QString TypeName()
{
    return QStringLiteral("type");
}

QString ShortType()
{
    return QStringLiteral("short");
}

} // namespace

/// A value as a setter was given it.
struct GivenValue
{
    const ValueKind &m_oKind;
    QString m_sText;
    double m_dNumber = 0.0; // of a double and an integer
};

void XmlCreateReport::SetXmlValue(QString value)
{
    SetElement({ kString, value });
}

void XmlCreateReport::SetXmlValue(const char *value)
{
    SetElement({ kString, QString::fromUtf8(value) });
}

void XmlCreateReport::SetXmlValue(double value)
{
    SetElement({ kDouble, QString::number(value, 'g', 12), value });
}

void XmlCreateReport::SetXmlValue(int value)
{
    SetElement({ kInteger, QString::number(value), double(value) });
}

void XmlCreateReport::SetXmlValue(bool value)
{
    SetElement({ kBool, QLatin1String(value ? "true" : "false") });
}

void XmlCreateReport::SetXmlValue(QDateTime value)
{
    SetElement({ kDateTime, value.toString(Qt::ISODate) });
}

void XmlCreateReport::SetXmlValue(QTime value)
{
    SetElement({ kTime, value.toString(Qt::ISODate) });
}

void XmlCreateReport::SetElement(GivenValue given)
{
    if (!FetchCurrentElement("SetXmlValue") || !CheckCurrentElement()) {
        return;
    }
    const QString typeWord = given.m_oKind.m_fnTypeWord();
    // A double asks for the type twice, so that an element without one says so twice: receivers count on it.
    const bool isShort = &given.m_oKind == &kDouble && TypeControl(typeWord) == ShortType();
    if (TypeControl(typeWord).isEmpty()) {
        RefuseType(given, QString());
        return;
    }
    if (isShort) {
        const std::optional<int> integer = facets::ToInteger(given.m_dNumber);
        if (!integer) {
            RefuseValue(given, QString(), QLatin1String("no integer holds it"));
            return;
        }
        given.m_sText = QString::number(*integer);
    } else if (&given.m_oKind == &kInteger) {
        // Even if the bounds refuse the value: the walk then takes the element for a container.
        GetAttributes().Remove(TypeName());
    }
    WriteValue(given, QString());
}

void XmlCreateReport::SetAttributeValue(QString name, QString value)
{
    SetAttribute(name, { kString, value });
}

void XmlCreateReport::SetAttributeValue(QString name, const char *value)
{
    SetAttribute(name, { kString, QString::fromUtf8(value) });
}

void XmlCreateReport::SetAttributeValue(QString name, QDateTime value)
{
    SetAttribute(name, { kDateTime, value.toString(Qt::ISODate) });
}

void XmlCreateReport::SetAttributeValue(QString name, int value)
{
    SetAttribute(name, { kInteger, QString::number(value), double(value) });
}

void XmlCreateReport::SetAttributeValue(QString name, double value)
{
    SetAttribute(name, { kDouble, QString::number(value, 'g', 12), value });
}

// Until it has a value, an attribute holds its type. Unlike an element's, "short" and "long" take only their own kind,
// and an empty type takes nothing.
void XmlCreateReport::SetAttribute(const QString &name, const GivenValue &given)
{
    const bool isNumber = &given.m_oKind == &kInteger || &given.m_oKind == &kDouble;
    if (!FetchCurrentElement("SetAttributeValue") || !(isNumber ? CheckCurrentElement() : HasCurrentElement())) {
        return;
    }
    if (GetAttributes().GetValue(name).contains(given.m_oKind.m_fnTypeWord())) {
        WriteValue(given, name);
    } else {
        RefuseType(given, name);
    }
}

void XmlCreateReport::RemoveAttribute(QString name)
{
    if (FetchCurrentElement("RemoveAttribute") && HasCurrentElement()) {
        GetAttributes().Remove(name);
    }
}

CurrentAttributes &XmlCreateReport::GetAttributes()
{
    return m_pDomParser->GetAttributes();
}

QString XmlCreateReport::TypeControl(QString expectedType)
{
    QString type = GetAttributes().GetValue(TypeName());
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

// The refusal is traced when the receiver is done with the element: it may try the value in another form.
void XmlCreateReport::RefuseType(const GivenValue &given, const QString &attribute)
{
    const ValueKind &kind = given.m_oKind;
    const bool isElement = attribute.isEmpty();
    const QString type = GetAttributes().GetValue(isElement ? TypeName() : attribute);
    // An element that has its value and is announced once more has no type any more, but misses nothing.
    const bool hasValue = isElement && type.isEmpty() && m_pCurrentElement->firstChild().isText();
    if (m_pDomParser->GetRefusals().IsAsked() && !hasValue) {
        const QString reason = type.isEmpty()
            ? QStringLiteral("there is no type here")
            : QStringLiteral("the type \"%1\" takes no %2")
                  .arg(type, isElement ? QLatin1String(kind.m_pNoun) : kind.m_fnTypeWord());
        m_pDomParser->GetRefusals().Note(attribute, given.m_sText, reason, kind.m_eError);
    }
    Error(kind.m_eError);
}

void XmlCreateReport::RefuseValue(const GivenValue &given, const QString &attribute, const QString &reason)
{
    m_pDomParser->GetRefusals().Note(attribute, given.m_sText, reason, ITagwright::CURRENT_VALUE_IS_NOT_VALID);
    Error(ITagwright::CURRENT_VALUE_IS_NOT_VALID);
}

// The facets that served the check go with it; in valid output all of them go in the end.
QString XmlCreateReport::CheckValue(GivenValue &given, const QString &attribute, QStringList &used)
{
    if (const ValidOutput::Element *pDeclared = m_pDomParser->FindDeclared()) {
        const bool isDouble = &given.m_oKind == &kDouble;
        const bool isNumber = isDouble || &given.m_oKind == &kInteger;
        return m_pDomParser->GetValidOutput()->Refuse(*pDeclared, attribute, given.m_sText,
                                                      isNumber ? &given.m_dNumber : nullptr, isDouble);
    }
    const facets::Verdict verdict =
        facets::Check(given.m_oKind.m_eFacets, given.m_sText, given.m_dNumber, GetAttributes().GetAll(), attribute);
    used = verdict.m_lUsed;
    return verdict.m_sRefusal;
}

void XmlCreateReport::WriteValue(GivenValue given, const QString &attribute)
{
    QStringList usedFacets;
    const QString refusal = CheckValue(given, attribute, usedFacets);
    if (!refusal.isEmpty()) {
        RefuseValue(given, attribute, refusal);
        return;
    }
    m_pDomParser->GetRefusals().Written(attribute);
    for (const QString &used : usedFacets) {
        GetAttributes().Remove(used);
    }
    if (attribute.isEmpty()) {
        GetAttributes().Remove(TypeName());
        CreateAndAppendTextNode(given.m_sText);
    } else {
        // The value takes the place of the type. The element itself still counts as one without a value.
        const WalkedDocument::OwnChange change(m_pDomParser->GetWalked());
        if (m_pDomParser->GetValidOutput() != nullptr && GetAttributes().GetValue(attribute) == given.m_sText) {
            ValidOutput::NoteGiven(GetAttributes(), attribute);
        }
        GetAttributes().Set(attribute, given.m_sText);
    }
}

void XmlCreateReport::CreateAndAppendTextNode(QString text)
{
    if (!CheckCurrentElement()) {
        return;
    }
    const WalkedDocument::OwnChange change(m_pDomParser->GetWalked());
    const QDomNode first = m_pCurrentElement->firstChild();
    if (first.nodeType() == QDomNode::TextNode) {
        m_pCurrentElement->removeChild(first);
    }
    m_pCurrentElement->appendChild(m_pDocument->createTextNode(text));
    m_pDomParser->SetNodeToContinue(m_pCurrentElement, false);
}
