#include "schema/opentags.h"

#include <algorithm>

void OpenTags::Push(Kind kind)
{
    m_lTags.push_back(kind);
}

void OpenTags::Mark(Kind kind)
{
    m_lTags.back() = kind;
}

OpenTags::Kind OpenTags::Pop()
{
    if (m_lTags.empty()) {
        return Kind::Plain;
    }
    const Kind kind = m_lTags.back();
    m_lTags.pop_back();
    return kind;
}

std::size_t OpenTags::Count() const
{
    return m_lTags.size();
}

bool OpenTags::IsPassingOver() const
{
    return !m_lTags.empty() && m_lTags.back() == Kind::PassedOver;
}

bool OpenTags::InNamedType() const
{
    return std::find(m_lTags.begin(), m_lTags.end(), Kind::NamedType) != m_lTags.end();
}

OpenTags::Kind OpenTags::LocalElement() const
{
    const auto innermost = std::find_if(m_lTags.rbegin(), m_lTags.rend(), [](Kind kind) {
        return kind == Kind::PlacedElement || kind == Kind::UnplacedElement;
    });
    return innermost == m_lTags.rend() ? Kind::Plain : *innermost;
}
