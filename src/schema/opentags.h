#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

/// The tags that are open while a schema is read. The reader's rules look at a depth and a few flags; this stack
/// answers three questions that these leave open: which named type or local element is open, whether a start tag has
/// moved the position, and in which choice it stands.
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
        /// A global element or attribute.
        Global,
        /// A type whose tag has attributes: it counts as named.
        NamedType,
        /// An anonymous complex type that found no element to move down to.
        UnmovedType
    };

    /// A place in a content model: the number of the innermost choice around it, below 0 if there is none, and which
    /// of the choice's alternatives it belongs to.
    struct Alternative
    {
        int m_iChoice = -1;
        int m_iAlternative = 0;
        bool m_bAlone = false; // nothing but the choice itself is around the place
    };

    void Push(Kind kind)
    {
        if (!m_lTags.empty()) {
            ++m_lTags.back().m_oWithin.m_iAlternative;
        }
        m_lTags.push_back({ kind, {} });
    }

    /// Says what the tag opened last has turned out to be.
    void Mark(Kind kind) { m_lTags.back().m_eKind = kind; }
    /// Says that the tag opened last is a choice, and gives it a number.
    void MarkChoice(int number) { m_lTags.back().m_oWithin.m_iChoice = number; }

    /// The tag that ends; Plain if none is open.
    Kind Pop()
    {
        const Kind kind = m_lTags.empty() ? Kind::Plain : m_lTags.back().m_eKind;
        m_lTags.resize(std::max<std::size_t>(m_lTags.size(), 1) - 1);
        return kind;
    }

    std::size_t Count() const { return m_lTags.size(); }
    bool IsPassingOver() const { return !m_lTags.empty() && m_lTags.back().m_eKind == Kind::PassedOver; }
    bool InNamedType() const
    {
        return std::any_of(m_lTags.begin(), m_lTags.end(),
                           [](const Tag &tag) { return tag.m_eKind == Kind::NamedType; });
    }

    /// The kind of the innermost open local element; Plain if none is open.
    Kind LocalElement() const
    {
        const auto innermost = std::find_if(m_lTags.rbegin(), m_lTags.rend(), IsLocalElement);
        return innermost == m_lTags.rend() ? Kind::Plain : innermost->m_eKind;
    }

    /// Where the tag opened last stands in the content model around it.
    Alternative GetAlternative() const
    {
        const auto around = std::find_if(m_lTags.rbegin() + 1, m_lTags.rend(), [](const Tag &tag) {
            return tag.m_oWithin.m_iChoice >= 0 || tag.m_eKind == Kind::Global || IsLocalElement(tag);
        });
        if (around == m_lTags.rend() || around->m_oWithin.m_iChoice < 0) {
            return Alternative();
        }
        return { around->m_oWithin.m_iChoice, around->m_oWithin.m_iAlternative, around == m_lTags.rbegin() + 1 };
    }

private:
    struct Tag
    {
        Kind m_eKind = Kind::Plain;
        Alternative m_oWithin; // of the child opened last
    };

    static bool IsLocalElement(const Tag &tag)
    {
        return tag.m_eKind == Kind::PlacedElement || tag.m_eKind == Kind::UnplacedElement;
    }

    std::vector<Tag> m_lTags;
};
