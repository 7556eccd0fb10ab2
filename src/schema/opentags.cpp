#include "schema/opentags.h"

namespace {

bool IsElement(OpenTags::Kind kind)
{
    return kind == OpenTags::Kind::PlacedElement || kind == OpenTags::Kind::UnplacedElement;
}

} // namespace

void OpenTags::Push()
{
    m_lTags.push_back(Kind::Plain);
}

void OpenTags::Mark(Kind kind)
{
    if (m_lTags.empty()) {
        return;
    }
    m_lTags.back() = kind;
    if (IsElement(kind)) {
        m_lElements.push_back(kind);
    }
    m_iNamedTypes += kind == Kind::NamedType ? 1 : 0;
}

OpenTags::Kind OpenTags::Pop()
{
    if (m_lTags.empty()) {
        return Kind::Plain;
    }
    const Kind kind = m_lTags.back();
    m_lTags.pop_back();
    if (IsElement(kind)) {
        m_lElements.pop_back();
    }
    m_iNamedTypes -= kind == Kind::NamedType ? 1 : 0;
    return kind;
}

std::size_t OpenTags::Count() const
{
    return m_lTags.size();
}

bool OpenTags::InNamedType() const
{
    return m_iNamedTypes > 0;
}

bool OpenTags::InLocalElement() const
{
    return !m_lElements.empty();
}

bool OpenTags::IsPlaced() const
{
    return !m_lElements.empty() && m_lElements.back() == Kind::PlacedElement;
}
