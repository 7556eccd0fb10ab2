#pragma once

#include <cstddef>
#include <vector>

/// The tags that are open while a schema is read. The reader's rules look at a depth and a few flags; this stack
/// answers the questions that those can't: what is open of named types and local elements, and whether a start tag has
/// moved the position.
class OpenTags
{
public:
    enum class Kind {
        /// Nothing depends on this tag.
        Plain,
        /// A local element that stands in the template.
        PlacedElement,
        /// A local element that made no element of its own: a reference, or one without a name.
        UnplacedElement,
        /// A type with attributes, which a reader of schemas calls named.
        NamedType,
        /// An anonymous complex type that found no element to move down to.
        UnmovedType
    };

    void Push();
    /// Says what the tag opened last has turned out to be.
    void Mark(Kind kind);
    /// The tag that ends; Plain if none is open.
    Kind Pop();

    std::size_t Count() const;
    bool InNamedType() const;
    bool InLocalElement() const;
    /// Whether the innermost open local element stands in the template.
    bool IsPlaced() const;

private:
    std::vector<Kind> m_lTags;
    std::vector<Kind> m_lElements;
    int m_iNamedTypes = 0;
};
