#pragma once

#include <QDomDocument>
#include <QDomElement>
#include <QDomNodeList>

/// Tells whether anyone has changed the structure of a document since the probe was armed, without looking at it.
///
/// Qt's lists of elements are live: reading one after a change of the document makes it anew, and without a change it
/// gives its last result. So the probe keeps a list over a tiny tree of the same document, and renames the only element
/// in it, which Qt does not count as a change: as long as the list still finds the old name, nothing was changed. With
/// a Qt that made its lists anew at each reading the probe would say "changed" too often, never too rarely.
class ChangeProbe
{
public:
    /// From now on changes of `document` are seen.
    void Arm(QDomDocument document);

    /// True if nodes of the document were inserted, removed or given a value since Arm(), or if it is not armed.
    bool HasChanged() const;

private:
    QDomElement m_oTree;
    QDomElement m_oMark;
    QDomNodeList m_lMarks;
};
