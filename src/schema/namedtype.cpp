#include "schema/namedtype.h"

#include "schema/templatebudget.h"
#include "schema/templatecontent.h"

void NamedType::Open(QDomDocument &document, QDomDocumentFragment &fragment, TemplateBudget &budget)
{
    Close();
    m_oDocument = document;
    m_pFragment = &fragment;
    m_pBudget = &budget;
}

void NamedType::Close()
{
    m_pFragment = nullptr;
    m_oCarrier.clear();
    m_oRestriction.clear();
}

QDomElement NamedType::Carrier()
{
    if (m_oCarrier.isNull() && m_pFragment != nullptr) {
        m_oCarrier = NewPlaceholder();
        m_pFragment->insertBefore(m_oCarrier, QDomNode());
    }
    return m_oCarrier;
}

void NamedType::StartRestriction()
{
    m_oRestriction.clear();
}

QDomElement NamedType::Restriction()
{
    if (m_oRestriction.isNull() && m_pFragment != nullptr) {
        const bool isFirst = !m_pFragment->hasChildNodes();
        m_oRestriction = isFirst ? Carrier() : AppendPlace();
    }
    return m_oRestriction;
}

QDomElement NamedType::AppendPlace()
{
    QDomElement place;
    // Placeholders cost as much as elements when their fragment is cloned.
    if (m_pFragment != nullptr && m_pBudget->Take(m_pFragment, { 1, 0, 1 }, 1)) {
        place = NewPlaceholder();
        m_pFragment->appendChild(place);
    }
    return place;
}

QDomElement NamedType::NewPlaceholder()
{
    return m_oDocument.createElement(content::PlaceholderName());
}
