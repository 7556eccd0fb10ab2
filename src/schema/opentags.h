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
        /// This tag and all below it are passed over.
        PassedOver,
        /// A local element that stands in the template.
        PlacedElement,
        /// A local element that made no element of its own: a reference, or one without a name.
        UnplacedElement,
        /// A type with attributes, which a reader of schemas calls named.
        NamedType,
        /// An anonymous complex type that found no element to move down to.
        UnmovedType
    };

    void Push(Kind kind);
    /// Says what the tag opened last has turned out to be.
    void Mark(Kind kind);
    /// The tag that ends; Plain if none is open.
    Kind Pop();

    std::size_t Count() const;
    bool IsPassingOver() const;
    bool InNamedType() const;
    /// The kind of the innermost open local element; Plain if none is open.
    Kind LocalElement() const;

private:
    std::vector<Kind> m_lTags;
};
