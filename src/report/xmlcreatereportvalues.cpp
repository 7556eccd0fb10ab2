// The values of elements and attributes.

#include "host/trace.h"
#include "report/domparser.h"
#include "report/facets.h"
#include "report/xmlcreatereport.h"

#include <QDomDocument>
#include <QDomElement>

#include <cmath>
#include <limits>

/// What a setter takes, and the types that take it.
struct ValueKind
{
    QString m_sTypeWord; // stands in the name of a type that takes the value
    ITagwright::ErrorID m_eError;
    const char *m_pNoun;
};

namespace {

constexpr char kElementSetter[] = "SetXmlValue";
constexpr char kAttributeSetter[] = "SetAttributeValue";

ValueKind StringKind()
{
    return { QStringLiteral("string"), ITagwright::CURRENT_TYPE_IS_NOT_STRING, "string" };
}

ValueKind DoubleKind()
{
    return { QStringLiteral("double"), ITagwright::CURRENT_TYPE_IS_NOT_DOUBLE, "double" };
}

ValueKind IntegerKind()
{
    return { QStringLiteral("integer"), ITagwright::CURRENT_TYPE_IS_NOT_INTEGER, "integer" };
}

ValueKind BoolKind()
{
    return { QStringLiteral("bool"), ITagwright::CURRENT_TYPE_IS_NOT_BOOL, "boolean" };
}

ValueKind DateTimeKind()
{
    return { QStringLiteral("dateTime"), ITagwright::CURRENT_TYPE_IS_NOT_DATETIME, "date and time" };
}

ValueKind TimeKind()
{
    return { QStringLiteral("time"), ITagwright::CURRENT_TYPE_IS_NOT_TIME, "time" };
}

QString TypeName()
{
    return QStringLiteral("type");
}

QString ShortType()
{
    return QStringLiteral("short");
}

QString NumberText(double value)
{
    return QString::number(value, 'g', 12);
}

// False for a number that has no integer form, NaN among them.
bool FitsInteger(double value)
{
    const double cut = std::trunc(value);
    return cut >= std::numeric_limits<int>::min() && cut <= std::numeric_limits<int>::max();
}

} // namespace

void XmlCreateReport::SetXmlValue(QString value)
{
    if (FetchElementToSet(kElementSetter) && FitsElementType(StringKind(), value)) {
        WriteValue(QString(), value, facets::CheckText(GetAttributes().GetAll(), QString(), value));
    }
}

void XmlCreateReport::SetXmlValue(const char *value)
{
    SetXmlValue(QString::fromUtf8(value));
}

void XmlCreateReport::SetXmlValue(double value)
{
    if (!FetchElementToSet(kElementSetter)) {
        return;
    }
    const bool isShort = TypeControl(DoubleKind().m_sTypeWord) == ShortType();
    // The type is judged once more for the check itself, so that an element without a type says so twice: receivers
    // count on it.
    if (!FitsElementType(DoubleKind(), NumberText(value))) {
        return;
    }
    if (isShort && !FitsInteger(value)) {
        WriteValue(QString(), NumberText(value), { QStringLiteral("no integer holds it"), {} });
        return;
    }
    WriteValue(QString(), isShort ? QString::number(static_cast<int>(value)) : NumberText(value),
               facets::CheckNumber(GetAttributes().GetAll(), QString(), value, facets::NumberKind::Double));
}

void XmlCreateReport::SetXmlValue(int value)
{
    const QString text = QString::number(value);
    if (FetchElementToSet(kElementSetter) && FitsElementType(IntegerKind(), text)) {
        // Even if the bounds refuse the value: the walk then takes the element for a container.
        GetAttributes().Remove(TypeName());
        WriteValue(QString(), text,
                   facets::CheckNumber(GetAttributes().GetAll(), QString(), value, facets::NumberKind::Integer));
    }
}

void XmlCreateReport::SetXmlValue(bool value)
{
    SetUncheckedValue(BoolKind(), value ? QStringLiteral("true") : QStringLiteral("false"));
}

void XmlCreateReport::SetXmlValue(QDateTime value)
{
    SetUncheckedValue(DateTimeKind(), value.toString(Qt::ISODate));
}

void XmlCreateReport::SetXmlValue(QTime value)
{
    SetUncheckedValue(TimeKind(), value.toString(Qt::ISODate));
}

void XmlCreateReport::SetUncheckedValue(const ValueKind &kind, const QString &text)
{
    if (FetchElementToSet(kElementSetter) && FitsElementType(kind, text)) {
        WriteValue(QString(), text, facets::Verdict());
    }
}

void XmlCreateReport::SetAttributeValue(QString name, QString value)
{
    if (FetchCurrentElement(kAttributeSetter) && HasCurrentElement()
        && FitsAttributeType(StringKind(), name, value)) {
        WriteValue(name, value, facets::CheckText(GetAttributes().GetAll(), name, value));
    }
}

void XmlCreateReport::SetAttributeValue(QString name, const char *value)
{
    SetAttributeValue(name, QString::fromUtf8(value));
}

void XmlCreateReport::SetAttributeValue(QString name, QDateTime value)
{
    const QString text = value.toString(Qt::ISODate);
    if (FetchCurrentElement(kAttributeSetter) && HasCurrentElement()
        && FitsAttributeType(DateTimeKind(), name, text)) {
        WriteValue(name, text, facets::Verdict());
    }
}

void XmlCreateReport::SetAttributeValue(QString name, int value)
{
    const QString text = QString::number(value);
    if (FetchElementToSet(kAttributeSetter) && FitsAttributeType(IntegerKind(), name, text)) {
        WriteValue(name, text,
                   facets::CheckNumber(GetAttributes().GetAll(), name, value, facets::NumberKind::Integer));
    }
}

void XmlCreateReport::SetAttributeValue(QString name, double value)
{
    const QString text = NumberText(value);
    if (FetchElementToSet(kAttributeSetter) && FitsAttributeType(DoubleKind(), name, text)) {
        WriteValue(name, text,
                   facets::CheckNumber(GetAttributes().GetAll(), name, value, facets::NumberKind::Double));
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

bool XmlCreateReport::FitsElementType(const ValueKind &kind, const QString &text)
{
    if (!TypeControl(kind.m_sTypeWord).isEmpty()) {
        return true;
    }
    // An element that is announced once more with its value has lost its type: that is no refusal to tell of.
    if (trace::IsOn() && !HasValue()) {
        NoteTypeRefusal(kind.m_eError, QString(), text, kind.m_pNoun);
    }
    Error(kind.m_eError);
    return false;
}

// Until it has a value, an attribute holds its type. Unlike an element's, "short" and "long" take only their own kind,
// and an empty type takes nothing.
bool XmlCreateReport::FitsAttributeType(const ValueKind &kind, const QString &name, const QString &text)
{
    if (GetAttributes().GetValue(name).contains(kind.m_sTypeWord)) {
        return true;
    }
    if (trace::IsOn()) {
        NoteTypeRefusal(kind.m_eError, name, text, kind.m_sTypeWord.toUtf8().constData());
    }
    Error(kind.m_eError);
    return false;
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

// Refusals are only told when the receiver is done with the element: it may have the value in another form.
void XmlCreateReport::NoteTypeRefusal(int error, const QString &attribute, const QString &text, const char *noun)
{
    const QString type = GetAttributes().GetValue(attribute.isEmpty() ? TypeName() : attribute);
    const QString reason = type.isEmpty()
        ? QStringLiteral("there is no type here")
        : QStringLiteral("the type \"%1\" takes no %2").arg(type, QLatin1String(noun));
    m_pDomParser->GetRefusals().Note(attribute, text, reason, error);
}

bool XmlCreateReport::HasValue()
{
    return m_pCurrentElement->firstChild().isText() && GetAttributes().GetValue(TypeName()).isEmpty();
}

void XmlCreateReport::WriteValue(const QString &attribute, const QString &text, const facets::Verdict &verdict)
{
    Refusals &refusals = m_pDomParser->GetRefusals();
    if (!verdict.m_sRefusal.isEmpty()) {
        if (trace::IsOn()) {
            refusals.Note(attribute, text, verdict.m_sRefusal, ITagwright::CURRENT_VALUE_IS_NOT_VALID);
        }
        Error(ITagwright::CURRENT_VALUE_IS_NOT_VALID);
        return;
    }
    if (trace::IsOn()) {
        refusals.Written(attribute);
    }
    for (const QString &used : verdict.m_lUsed) {
        GetAttributes().Remove(used);
    }
    if (attribute.isEmpty()) {
        GetAttributes().Remove(TypeName());
        CreateAndAppendTextNode(text);
    } else {
        // The value takes the place of the type. The element itself still counts as one without a value.
        const WalkedDocument::OwnChange change(m_pDomParser->GetWalked());
        GetAttributes().Set(attribute, text);
    }
}

void XmlCreateReport::CreateAndAppendTextNode(QString text)
{
    if (!HasCurrentElement()) {
        Error(ITagwright::CURRENT_ELEMENT_IS_NULL);
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
