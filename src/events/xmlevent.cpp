#include "events/xmlevent.h"

XmlEvent::XmlEvent()
    : XmlEvent(EVENT_NONE)
{
}

XmlEvent::XmlEvent(type eventType)
    : m_eType(eventType)
{
}

XmlEvent::XmlEvent(const XmlEvent &other) = default;
XmlEvent &XmlEvent::operator=(const XmlEvent &other) = default;
XmlEvent::~XmlEvent() = default;

XmlEvent::type XmlEvent::GetType()
{
    return m_eType;
}

DocBeginEvent::DocBeginEvent()
    : XmlEvent(EVENT_DOC_BEGIN)
{
}

DocBeginEvent::DocBeginEvent(const DocBeginEvent &other) = default;
DocBeginEvent &DocBeginEvent::operator=(const DocBeginEvent &other) = default;
DocBeginEvent::~DocBeginEvent() = default;

DocEndEvent::DocEndEvent()
    : XmlEvent(EVENT_DOC_END)
{
}

DocEndEvent::DocEndEvent(const DocEndEvent &other) = default;
DocEndEvent &DocEndEvent::operator=(const DocEndEvent &other) = default;
DocEndEvent::~DocEndEvent() = default;

ElemBeginEvent::ElemBeginEvent(const QDomNode &node, const QString &name, const QXmlAttributes &attributes,
                               const QString &text)
    : ElemBeginEvent(node, name, attributes, text, nullptr)
{
}

ElemBeginEvent::ElemBeginEvent(const QDomNode &node, const QString &name, const QXmlAttributes &attributes,
                               const QString &text, const std::function<void()> *nodeTaken)
    : XmlEvent(EVENT_ELEM_BEGIN)
    , m_oNode(node)
    , m_sName(name)
    , m_oAttributes(attributes)
    , m_sText(text)
    , m_pNodeTaken(nodeTaken)
{
}

// A copy may be kept, and asked for its node long after the walk.
ElemBeginEvent::ElemBeginEvent(const ElemBeginEvent &other)
    : XmlEvent(other)
    , m_oNode(other.TakeNode())
    , m_sName(other.m_sName)
    , m_oAttributes(other.m_oAttributes)
    , m_sText(other.m_sText)
{
}

ElemBeginEvent &ElemBeginEvent::operator=(const ElemBeginEvent &other)
{
    if (this != &other) {
        XmlEvent::operator=(other);
        m_oNode = other.TakeNode();
        m_sName = other.m_sName;
        m_oAttributes = other.m_oAttributes;
        m_sText = other.m_sText;
        m_pNodeTaken = nullptr;
    }
    return *this;
}

ElemBeginEvent::~ElemBeginEvent() = default;

QDomNode ElemBeginEvent::GetElementNode()
{
    return TakeNode();
}

QDomNode ElemBeginEvent::TakeNode() const
{
    if (m_pNodeTaken != nullptr) {
        (*m_pNodeTaken)();
    }
    return m_oNode;
}

QString ElemBeginEvent::GetElementName()
{
    return m_sName;
}

QString ElemBeginEvent::GetParentName()
{
    return m_oNode.parentNode().nodeName();
}

QXmlAttributes ElemBeginEvent::GetElementAttributes()
{
    return m_oAttributes;
}

QString ElemBeginEvent::GetElementText()
{
    return m_sText;
}

ElemEndEvent::ElemEndEvent(const QString &name)
    : XmlEvent(EVENT_ELEM_END)
    , m_sName(name)
{
}

ElemEndEvent::ElemEndEvent(const ElemEndEvent &other) = default;
ElemEndEvent &ElemEndEvent::operator=(const ElemEndEvent &other) = default;
ElemEndEvent::~ElemEndEvent() = default;

QString ElemEndEvent::GetElementName()
{
    return m_sName;
}

ErrorEvent::ErrorEvent(ITagwright::ErrorID id)
    : XmlEvent(EVENT_ERROR)
    , m_eErrorId(id)
{
}

ErrorEvent::ErrorEvent(const ErrorEvent &other) = default;
ErrorEvent &ErrorEvent::operator=(const ErrorEvent &other) = default;
ErrorEvent::~ErrorEvent() = default;

ITagwright::ErrorID ErrorEvent::GetErrorID()
{
    return m_eErrorId;
}
