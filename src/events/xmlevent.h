#pragma once

#include "events/itagwright.h"

#include <QDomNode>
#include <QString>
#include <QXmlAttributes>

#include <functional>

/// The base of all events. A receiver reads GetType() and casts to the class of that type.
class TAGWRIGHT_EXPORT XmlEvent
{
public:
    /// The numbers are fixed.
    enum type : int {
        EVENT_NONE = 0,
        EVENT_DOC_BEGIN = 1,
        EVENT_DOC_END = 2,
        EVENT_ELEM_BEGIN = 3,
        EVENT_ELEM_END = 4,
        EVENT_ERROR = 5
    };

    XmlEvent();
    XmlEvent(const XmlEvent &other);
    XmlEvent &operator=(const XmlEvent &other);
    virtual ~XmlEvent();

    /// Which class the event is of; never changes.
    type GetType();

protected:
    /// For the derived classes, each of which has its one type.
    explicit XmlEvent(type eventType);

private:
    type m_eType;
};

/// A walk or a parse begins.
class TAGWRIGHT_EXPORT DocBeginEvent : public XmlEvent
{
public:
    DocBeginEvent();
    DocBeginEvent(const DocBeginEvent &other);
    DocBeginEvent &operator=(const DocBeginEvent &other);
    ~DocBeginEvent() override;
};

/// A walk or a parse has come to its end.
class TAGWRIGHT_EXPORT DocEndEvent : public XmlEvent
{
public:
    DocEndEvent();
    DocEndEvent(const DocEndEvent &other);
    DocEndEvent &operator=(const DocEndEvent &other);
    ~DocEndEvent() override;
};

// Qt 5.15 marks its SAX classes deprecated, and a host's own code keeps its warnings.
QT_WARNING_PUSH
QT_WARNING_DISABLE_DEPRECATED

/// An element is announced.
class TAGWRIGHT_EXPORT ElemBeginEvent : public XmlEvent
{
public:
    /// `node` may be a null node.
    ElemBeginEvent(const QDomNode &node, const QString &name, const QXmlAttributes &attributes, const QString &text);
    ElemBeginEvent(const ElemBeginEvent &other);
    ElemBeginEvent &operator=(const ElemBeginEvent &other);
    ~ElemBeginEvent() override;

    /// A handle on the element in its document, not a copy: what is changed through it changes the document. A null
    /// node where the sender has no document. A node that is kept past the builder or reader that has sent it keeps
    /// only its own subtree: it has no parent, and to ask it for its siblings is an error that Qt doesn't catch.
    QDomNode GetElementNode();
    /// The name of the node's parent. A walk is faster as long as no receiver takes a node, and the parent's name can
    /// be had without one.
    QString GetParentName();
    /// The qualified name.
    QString GetElementName();
    /// The attributes as they are at this moment, by qualified name; types and namespaces are not filled.
    QXmlAttributes GetElementAttributes();
    /// The element's text as far as the sender knows it at this moment.
    QString GetElementText();

protected:
    /// For a walk that wants to know when somebody takes hold of the node: `nodeTaken`, not owned, is called then. It
    /// lives as long as the delivery.
    ElemBeginEvent(const QDomNode &node, const QString &name, const QXmlAttributes &attributes, const QString &text,
                   const std::function<void()> *nodeTaken);

private:
    QDomNode TakeNode() const;

    QDomNode m_oNode;
    QString m_sName;
    QXmlAttributes m_oAttributes;
    QString m_sText;
    const std::function<void()> *m_pNodeTaken = nullptr; // not owned
};

QT_WARNING_POP

/// An element ends. A report's walk sends none.
class TAGWRIGHT_EXPORT ElemEndEvent : public XmlEvent
{
public:
    /// `name` is the qualified name.
    // NOLINTNEXTLINE(google-explicit-constructor): implicit, as the interface has it.
    ElemEndEvent(const QString &name);
    ElemEndEvent(const ElemEndEvent &other);
    ElemEndEvent &operator=(const ElemEndEvent &other);
    ~ElemEndEvent() override;

    /// The qualified name.
    QString GetElementName();

private:
    QString m_sName;
};

/// Something did not fit. It reports and stops nothing; the receiver may answer with another setter call.
class TAGWRIGHT_EXPORT ErrorEvent : public XmlEvent
{
public:
    /// `id` is one of the fixed numbers.
    // NOLINTNEXTLINE(google-explicit-constructor): implicit, as the interface has it.
    ErrorEvent(ITagwright::ErrorID id);
    ErrorEvent(const ErrorEvent &other);
    ErrorEvent &operator=(const ErrorEvent &other);
    ~ErrorEvent() override;

    /// What did not fit.
    ITagwright::ErrorID GetErrorID();

private:
    ITagwright::ErrorID m_eErrorId;
};
