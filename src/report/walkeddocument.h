#pragma once

#include "dom/nodesearch.h"
#include "report/changeprobe.h"

#include <QDomDocument>
#include <QDomNode>
#include <QHash>
#include <QString>

#include <unordered_map>
#include <vector>

/// The document while it is walked: who can see it, what was taken out of it, and the first element of each name.
///
/// A first element is searched for once. The walk and the setters put no element in front of it, so that it stays the
/// first until it is taken out. When a receiver changes a watched document on its own, each first element is searched
/// for again. (Renaming an element can't be noticed.)
class WalkedDocument
{
public:
    /// Brackets a change by the walk or a setter, so that it isn't taken for one by the receiver. The change must put
    /// no element in front of a first one and send no event.
    class OwnChange
    {
    public:
        explicit OwnChange(WalkedDocument &document)
            : m_pDocument(&document)
        {
            m_pDocument->ForgetIfChanged();
        }
        ~OwnChange() { m_pDocument->Arm(); }
        Q_DISABLE_COPY(OwnChange)

    private:
        WalkedDocument *m_pDocument; // not owned
    };

    /// To be called once.
    void SetDocument(const QDomDocument &document) { m_oDocument = document; }

    /// A watched document can be read and changed at any time by somebody else than the walk and its setters. It is
    /// taken for watched as long as nobody says otherwise.
    void SetWatched(bool watched) { m_bWatched = watched; }
    bool IsWatched() const { return m_bWatched; }

    /// Those of the whole document.
    const dom::SearchRoots &GetRoots();

    /// The first node of that name, as dom::FindFirst finds it in the whole document.
    QDomNode FindFirst(const QString &name);

    /// Takes `node` out of its parent. The node and all below it stay alive as long as this object. False if it has no
    /// parent.
    bool Remove(QDomNode node);
    /// Says that the walk passes over `node`, which stays where it is.
    void PassOver(const QDomNode &node) { m_lGone.push_back({ node, node.parentNode(), -1 }); }
    /// How many children of `parent` that were called `name` have been announced and aren't there any more; those that
    /// are there and were passed over count against them.
    int CountGone(const QDomNode &parent, const QString &name);

private:
    void ForgetIfChanged();
    void Arm();

    QDomDocument m_oDocument;
    bool m_bWatched = true;
    ChangeProbe m_oProbe;
    dom::SearchRoots m_oRoots; // null until somebody asks
    QHash<QString, QDomNode> m_hFirst; // null for a name that no element bears
    // A node that was taken out, and stays alive here, or that was passed over.
    struct Gone
    {
        QDomNode m_oNode;
        QDomNode m_oParent;
        int m_iCount = 1;
    };
    std::vector<Gone> m_lGone;
    std::size_t m_iCounted = 0; // how many of them are in m_hGone, which is made up when somebody asks
    std::unordered_map<const void *, QHash<QString, int>> m_hGone; // by parent and name
};
