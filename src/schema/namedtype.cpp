#include "schema/namedtype.h"

#include "schema/templatecontent.h"

void NamedType::Open(QDomDocument &document, QDomDocumentFragment &fragment)
{
    Close();
    m_oDocument = document;
    m_oFragment = fragment;
}

void NamedType::Close()
{
    m_oFragment.clear();
    m_oCarrier.clear();
    m_oRestriction.clear();
}

QDomElement NamedType::Carrier()
{
    if (m_oCarrier.isNull() && !m_oFragment.isNull()) {
        m_oCarrier = NewPlaceholder();
        m_oFragment.insertBefore(m_oCarrier, QDomNode());
    }
    return m_oCarrier;
}

void NamedType::StartRestriction()
{
    m_oRestriction.clear();
}

QDomElement NamedType::Restriction()
{
    if (m_oRestriction.isNull()) {
        m_oRestriction = AppendPlace();
        if (!m_oRestriction.isNull() && m_oFragment.firstChild() == m_oRestriction) {
            m_oCarrier = m_oRestriction;
        }
    }
    return m_oRestriction;
}

QDomElement NamedType::AppendPlace()
{
    QDomElement place;
    if (!m_oFragment.isNull()) {
        place = NewPlaceholder();
        m_oFragment.appendChild(place);
    }
    return place;
}

QDomElement NamedType::NewPlaceholder()
{
    return m_oDocument.createElement(content::PlaceholderName());
}
