#pragma once

#include <QDomDocument>
#include <QDomElement>
#include <QDomNode>
#include <QString>

#include <list>

/// The search by name that the template's walk and the reader share. Names are compared whole and exactly, with
/// QDomNode::nodeName. Nothing here recurses, so that any depth can be searched.
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
/// bears the name; no element (test with isElement()) if there is none, also where the first match is no element.
QDomNode FindFirst(const QString &name, const SearchRoots &roots);

/// Appends every node of that name from roots.m_oStart on, in document order: first roots.m_oTop if the start itself
/// bears the name, then what is below. What lies inside a match is not looked at (the start aside).
void FindAll(const QString &name, const SearchRoots &roots, std::list<QDomNode> &result);

/// All nodes called `name`, or, with a `parent`, those below the first element called so; nothing if there is none.
void FindBelow(const QString &name, const QString &parent, const SearchRoots &roots, std::list<QDomNode> &result);

} // namespace dom
