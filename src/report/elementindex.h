#pragma once

#include "report/changeprobe.h"

#include <QDomDocument>
#include <QDomElement>
#include <QDomNode>
#include <QHash>
#include <QString>

#include <unordered_map>

/// Knows the first element of each name of a document that is changed while it is walked, in document order.
///
/// It answers as dom::FindFirst over the whole document does, at all times. A few questions are answered by a search;
/// then the document is gone through once for all names, and that knowledge is kept alive: what the walk and its
/// setters do is told by OwnChange and Remove, and what a receiver does to the document on its own is noticed, and
/// starts everything anew. (One thing can't be noticed: a receiver that renames elements which were passed already.)
class ElementIndex
{
public:
    /// Brackets a change that puts no element in front of what has been walked: values, attributes, copies behind the
    /// current element. Only bracketed changes leave the knowledge as it is.
    class OwnChange
    {
    public:
        explicit OwnChange(ElementIndex &index)
            : m_pIndex(&index)
        {
            m_pIndex->ForgetIfChanged();
        }
        ~OwnChange() { m_pIndex->Arm(); }
        Q_DISABLE_COPY(OwnChange)

    private:
        ElementIndex *m_pIndex; // not owned
    };

    /// What a search over the whole document begins on, and what it gives for the name of that.
    struct Top
    {
        QDomElement m_oRoot;
        QString m_sRootName;
        QDomNode m_oLast;
    };

    /// The document to know; a null one lets go of all nodes.
    void SetDocument(const QDomDocument &document);

    /// True: nobody but OwnChange and Remove changes the document, so that nothing needs to be noticed.
    void SetUnwatched(bool unwatched);

    const Top &GetTop();

    /// The first element called so. A null node, or one that is no element, if there is none. If the document element
    /// is called so, the document's last child, whatever it is.
    QDomNode FindFirst(const QString &name);

    /// Takes `node` out of its parent. The node and all below it stay alive until SetDocument. False if it has no
    /// parent.
    bool Remove(QDomNode node);

private:
    // A subtree that was taken out, and the node that followed it in document order then.
    struct Removed
    {
        QDomNode m_oNode;
        QDomNode m_oSuccessor;
    };

    void ForgetIfChanged();
    void GiveUp();
    void Forget();
    void Arm();
    void BeginScan();
    void ScanTo(const QString &name);
    QDomNode FindKnown(const QString &name);
    bool FindAgain(const QString &name, QDomNode &first);

    QDomDocument m_oDocument;
    ChangeProbe m_oProbe;
    bool m_bKnown = false;
    bool m_bUnwatched = false;
    int m_iSearches = 0;
    int m_iPatience = 0; // searches before the document is gone through as a whole
    Top m_oTop;
    // The names up to the node where the scan has stopped, which is the first that has not been looked at.
    QHash<QString, QDomNode> m_hFirst;
    QDomNode m_oScan;
    QDomNode m_oScanEnd;
    std::unordered_map<const void *, Removed> m_hRemoved;
};
