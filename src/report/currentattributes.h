#pragma once

#include "report/attributemodel.h"

#include <QDomElement>
#include <QString>
#include <QXmlAttributes>

/// The attributes of the walk's current element, wherever they are: in the document, or, for a bare copy, in its model
/// until the walk leaves the element. Everything that reads or changes them goes through here.
class CurrentAttributes
{
public:
    /// Goes to another element; a null model says that the document holds its attributes.
    void Bind(const QDomElement &element, AttributeModel::Pointer model);
    /// Lets go of an element that was removed: nothing is written to it.
    void Release();

    /// True if the element is the one that is bound.
    bool IsBoundTo(const QDomNode &node) const { return m_oElement == node; }

    /// Says that a receiver may change the document by itself from now on, so that it is asked each time.
    void SetShared() { m_bShared = true; }

    const AttributeList &GetAll();
    QXmlAttributes GetEventAttributes();
    /// The value, or an empty text.
    QString GetValue(const QString &name);
    void Remove(const QString &name);
    void Set(const QString &name, const QString &value);

    /// What a copy of the element is to carry.
    AttributeModel::Pointer MakeModel();

    /// Brings the attributes that are left into the document; the models of the children stay to be walked.
    void WriteOwn();
    /// The same for all below the element too: it will not be walked.
    void WriteAll();

    /// The models of the children for a walk into the element; an empty sequence if the document holds theirs.
    ModelSequence GetChildModels() const;

private:
    AttributeList &GetOwn();

    QDomElement m_oElement;
    AttributeModel::Pointer m_pModel;
    AttributeList m_lOwn;
    bool m_bShared = false;
    bool m_bInDocument = true; // the document holds the element's own attributes
    bool m_bOwn = false; // m_lOwn is what counts, not the model or what the document held when last asked
};
