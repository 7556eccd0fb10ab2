#include "schema/schemaarena.h"

QDomDocumentFragment *SchemaArena::NewFragment(QDomDocument &document)
{
    m_lFragments.push_back(document.createDocumentFragment());
    return &m_lFragments.back();
}

QDomElement *SchemaArena::Keep(const QDomElement &element)
{
    m_lElements.push_back(element);
    return &m_lElements.back();
}

void SchemaArena::Keep(const QDomDocument &document)
{
    m_lDocuments.push_back(document);
}
