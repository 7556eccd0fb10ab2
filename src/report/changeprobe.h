#pragma once

#include <QDomDocument>
#include <QDomElement>
#include <QDomNodeList>

/// Tells whether anyone has changed the structure of a document since the probe was armed, without looking at it.
///
/// Qt's lists of elements are live: after a change of the document a list is made anew when it is read, and before one
/// it gives what it gave the last time. So the probe keeps a list over a tiny tree of the same document, and renames
/// the one element in it, which Qt does not count as a change: as long as the list still finds the old name, nothing
/// was changed. If a Qt should make its lists anew each time, the probe says "changed" too often and never too rarely.
class ChangeProbe
{
public:
    /// From now on changes of `document` are seen.
    void Arm(QDomDocument document);

    /// True if nodes of the document were inserted, removed or given a value since Arm(), or if it is not armed.
    bool HasChanged() const;

    /// Lets go of the document.
    void Disarm();

private:
    QDomElement m_oTree;
    QDomElement m_oMark;
    QDomNodeList m_lMarks;
};
