#pragma once

#include "report/attributemodel.h"
#include "report/walkeddocument.h"

#include <QDomElement>
#include <QString>
#include <QXmlAttributes>

#include <functional>

/// The attributes of the walk's current element, wherever they are: in the document, or, for a bare copy, in its model
/// until the walk leaves the element. Everything that reads or changes them goes through here.
class CurrentAttributes
{
public:
    /// `walked` says whether others may change the document, and with it the attributes, at any time; not owned.
    /// Without one they always may.
    explicit CurrentAttributes(const WalkedDocument *walked = nullptr)
        : m_pWalked(walked)
    {
    }

    /// Goes to another element. A null model says that the document holds its attributes.
    void Bind(const QDomElement &element, AttributeModel::Pointer model);
    /// Lets go of the element; nothing is written to it.
    void Release() { Bind(QDomElement(), nullptr); }

    /// True if the element is the one that is bound.
    bool IsBoundTo(const QDomNode &node) const { return m_oElement == node; }

    const AttributeList &GetAll();
    QXmlAttributes GetEventAttributes();
    /// The value, or an empty text.
    QString GetValue(const QString &name);
    void Remove(const QString &name);
    void Set(const QString &name, const QString &value);
    bool Has(const QString &name);
    /// Removes all that pass the test.
    void RemoveIf(const std::function<bool(const QString &name, const QString &value)> &test);

    /// A model for copies of the element as it stands.
    AttributeModel::Pointer MakeModel();
    /// The model that the element was bound with, for a walk over its children; null if the document holds theirs.
    AttributeModel::Pointer GetModel() const { return m_pModel; }

    /// Brings the element's attributes into the document. The walk goes on into its children and their models.
    void WriteOwn();
    /// The same for the element and all below it, where the walk won't come.
    void WriteAll();

private:
    // Who holds the attributes of the element.
    enum class Holder {
        Document,
        Model, // the element is bare and has the attributes of m_pModel
        Own // the element is bare and its attributes have been changed: m_lOwn
    };

    AttributeList &GetOwn();

    const WalkedDocument *m_pWalked;
    QDomElement m_oElement;
    AttributeModel::Pointer m_pModel;
    AttributeList m_lOwn; // or the latest answer of the document
    bool m_bListed = false; // nothing has changed since that answer but what others may have
    Holder m_eHolder = Holder::Document;
};
