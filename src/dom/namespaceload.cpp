#include "dom/namespaceload.h"

namespace dom {

void NamespaceLoad::BeginElement()
{
    for (const QString &attribute : std::as_const(m_lDeclared)) {
        ++m_hPrefixes[attribute];
    }
    m_lScopes.push_back(m_lDeclared);
    m_lDeclared.clear();
}

void NamespaceLoad::EndElement()
{
    if (m_lScopes.empty()) {
        return;
    }
    const qint64 prefixes = m_hPrefixes.size();
    m_iWork += prefixes > kFreePrefixes ? prefixes * prefixes : 0;
    for (const QString &attribute : std::as_const(m_lScopes.back())) {
        const auto open = m_hPrefixes.find(attribute);
        if (--open.value() == 0) {
            m_hPrefixes.erase(open);
        }
    }
    m_lScopes.pop_back();
}

} // namespace dom
