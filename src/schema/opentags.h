#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

/// The tags that are open while a schema is read. The reader's rules look at a depth and a few flags; this stack
/// answers two questions that these leave open: which named type or local element is open, and whether a start tag has
/// moved the position.
class OpenTags
{
public:
    enum class Kind {
        /// Nothing depends on this tag.
        Plain,
        /// This tag and all below it are passed over.
        PassedOver,
        /// A local element that stands in the template.
        PlacedElement,
        /// A local element that made no element of its own: a reference, or one without a name.
        UnplacedElement,
        /// A type whose tag has attributes: it counts as named.
        NamedType,
        /// An anonymous complex type that found no element to move down to.
        UnmovedType
    };

    void Push(Kind kind) { m_lTags.push_back(kind); }

    /// Says what the tag opened last has turned out to be.
    void Mark(Kind kind) { m_lTags.back() = kind; }

    /// The tag that ends; Plain if none is open.
    Kind Pop()
    {
        const Kind kind = m_lTags.empty() ? Kind::Plain : m_lTags.back();
        m_lTags.resize(std::max<std::size_t>(m_lTags.size(), 1) - 1);
        return kind;
    }

    std::size_t Count() const { return m_lTags.size(); }
    bool IsPassingOver() const { return !m_lTags.empty() && m_lTags.back() == Kind::PassedOver; }
    bool InNamedType() const { return std::find(m_lTags.begin(), m_lTags.end(), Kind::NamedType) != m_lTags.end(); }

    /// The kind of the innermost open local element; Plain if none is open.
    Kind LocalElement() const
    {
        const auto innermost = std::find_if(m_lTags.rbegin(), m_lTags.rend(), [](Kind kind) {
            return kind == Kind::PlacedElement || kind == Kind::UnplacedElement;
        });
        return innermost == m_lTags.rend() ? Kind::Plain : *innermost;
    }

private:
    std::vector<Kind> m_lTags;
};
