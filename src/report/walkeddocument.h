#pragma once

#include "report/changeprobe.h"

#include <QDomDocument>
#include <QDomElement>
#include <QDomNode>
#include <QHash>
#include <QString>

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

    /// The node that a search over the whole document begins on, and the node that stands for the root's name in it.
    struct Top
    {
        QDomElement m_oRoot;
        QString m_sRootName;
        QDomNode m_oLast;
    };

    /// The document to know; a null one lets go of all nodes.
    void SetDocument(const QDomDocument &document);

    /// A watched document can be read and changed at any time by somebody else than the walk and its setters. It is
    /// taken for watched as long as nobody says otherwise.
    void SetWatched(bool watched) { m_bWatched = watched; }
    bool IsWatched() const { return m_bWatched; }

    const Top &GetTop();

    /// The first node of that name, as dom::FindFirst finds it in the whole document.
    QDomNode FindFirst(const QString &name);

    /// Takes `node` out of its parent. The node and all below it stay alive until SetDocument(). False if it has no
    /// parent.
    bool Remove(QDomNode node);

private:
    void ForgetIfChanged();
    void Arm();

    QDomDocument m_oDocument;
    bool m_bWatched = true;
    ChangeProbe m_oProbe;
    Top m_oTop;
    QHash<QString, QDomNode> m_hFirst; // null for a name that no element bears
    std::vector<QDomNode> m_lRemoved;
};
