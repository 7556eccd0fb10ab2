#pragma once

#include <QDomDocument>
#include <QDomDocumentFragment>
#include <QDomElement>

#include <deque>

/// Owns what the tables of a run only borrow: documents, fragments and handles on elements. What it has given out stays
/// valid, and at its address, until the arena ends.
class SchemaArena
{
public:
    SchemaArena() = default;
    Q_DISABLE_COPY(SchemaArena)

    /// A new empty fragment, made by `document`.
    QDomDocumentFragment *NewFragment(QDomDocument &document);

    /// A handle of the arena's own on the element.
    QDomElement *Keep(const QDomElement &element);

    /// Keeps a document alive: its fragments look it up when they are changed or cloned.
    void Keep(const QDomDocument &document);

private:
    // The order of the members is that of their life: a fragment must not outlive its document.
    std::deque<QDomDocument> m_lDocuments;
    std::deque<QDomDocumentFragment> m_lFragments;
    std::deque<QDomElement> m_lElements;
};
