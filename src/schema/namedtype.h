#pragma once

#include <QDomDocument>
#include <QDomDocumentFragment>
#include <QDomElement>

class TemplateBudget;

/// The fragment of the named type that is being read, and the placeholders in it. Without a fragment of a named type
/// nothing is made and all results are null: a global declaration's fragment takes no placeholder.
class NamedType
{
public:
    void Open(QDomDocument &document, QDomDocumentFragment &fragment, TemplateBudget &budget);
    void Close();

    /// What the type gives to an element that refers to it: the fragment's first child, made when first needed.
    QDomElement Carrier();

    void StartRestriction();
    /// The placeholder of the restriction that is open. Each restriction has one of its own, and only one that comes
    /// first in the fragment is the carrier: of a union's members the first counts.
    QDomElement Restriction();

    /// A new placeholder at the end of the fragment, which content will replace. Counted as an element until then.
    QDomElement AppendPlace();

private:
    QDomElement NewPlaceholder();

    QDomDocument m_oDocument;
    QDomDocumentFragment *m_pFragment = nullptr;
    TemplateBudget *m_pBudget = nullptr;
    QDomElement m_oCarrier;
    QDomElement m_oRestriction;
};
