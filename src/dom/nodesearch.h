#pragma once

#include <QDomDocument>
#include <QDomElement>
#include <QDomNode>
#include <QString>

#include <list>

/// The search by name that the template's walk and the reader share. Names are compared whole and exactly, with
/// QDomNode::nodeName; the element that a search starts with is asked for its tagName. Nothing here recurses, so that
/// any depth can be searched, and a search is linear in what lies below its start.
namespace dom {

/// Where a search begins, and what it gives when the element that it begins with bears the name sought.
struct SearchRoots
{
    QDomElement m_oStart;
    QDomNode m_oTop;
};

/// The roots of a search over a whole document: the document element, and the document's last child.
SearchRoots DocumentRoots(const QDomDocument &document);

/// The first node of that name from roots.m_oStart on, depth first, in document order. roots.m_oTop if the start itself
/// bears the name, whatever it is; no element (test with isElement()) if there is none. A match that is no element
/// (a text for "#text", a processing instruction) counts as none and ends the search of its parent's children; the
/// search goes on behind that parent.
QDomNode FindFirst(const QString &name, const SearchRoots &roots);

/// Appends every node of that name from roots.m_oStart on, in document order, elements or not: first roots.m_oTop if
/// the start itself bears the name, then what is below. What lies inside a match is not looked at (the start aside).
/// A null roots.m_oTop is not appended.
void FindAll(const QString &name, const SearchRoots &roots, std::list<QDomNode> &result);

/// All nodes called `name`, or, with a `parent`, those from the first element called so on, as FindAll does with that
/// element as its start; nothing if there is none.
void FindBelow(const QString &name, const QString &parent, const SearchRoots &roots, std::list<QDomNode> &result);

} // namespace dom
