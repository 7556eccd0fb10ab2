#pragma once

#include "events/eventsender.h"
#include "report/childcursor.h"
#include "report/currentattributes.h"
#include "report/nodeset.h"
#include "report/occurrences.h"
#include "report/refusals.h"
#include "report/reportplace.h"
#include "report/validoutput.h"
#include "report/walkeddocument.h"
#include "schema/schematables.h"

#include <QDomDocument>
#include <QDomElement>
#include <QDomNode>
#include <QString>

#include <functional>
#include <list>
#include <memory>
#include <utility>
#include <vector>

/// Walks a template document depth first and turns it, in place, into the report: each element is announced to the
/// callback, and afterwards kept, entered or removed by what the callback has done and what the schema allows.
///
/// While Parse() runs, the setters of XmlCreateReport reach the walk's position through GetCurrentElement() and
/// SetNodeToContinue(). One object serves one walk, on one thread, and holds on to nodes of the document until it ends.
class DomParser
{
public:
    /// `pCallback` receives all events; it is not owned. A null one is traced, and the object can't walk then.
    DomParser(ITagwright *pCallback, OccursMap occursMap, ChoiceMap choiceMap);
    Q_DISABLE_COPY(DomParser)

    /// The document to walk, not owned. False, and no change, for a null pointer.
    bool SetDocument(QDomDocument *document);

    /// Runs the walk. False, and no event, if there is no callback, no document or no document element.
    bool Parse();

    /// Says that nobody but the receiver, through the nodes of the events, can see the document during the walk. Until
    /// the receiver takes such a node, copies may then stand bare in it. To be called before Parse().
    void SetUnwatched() { m_oWalked.SetWatched(false); }

    /// Announces all elements and drops none on the way; what has no value goes, or is named, behind the last one. The
    /// template bears the marks of the declarations. To be called before Parse().
    void SetValidOutput(std::shared_ptr<const Declarations> declarations)
    {
        m_pValidOutput = std::make_unique<ValidOutput>(std::move(declarations));
    }
    /// Null unless valid output is made.
    ValidOutput *GetValidOutput() { return m_pValidOutput.get(); }
    /// What valid output knows of the current element; null without it, and for an element that no schema has declared.
    const ValidOutput::Element *FindDeclared()
    {
        return m_pValidOutput == nullptr ? nullptr : m_pValidOutput->Find(m_oAttributes);
    }

    /// The element being handled, as the walk itself holds it: a null element while there is none. A null pointer
    /// without a callback.
    QDomElement *GetCurrentElement() { return m_pCurrentElement.get(); }

    /// Tells the walk, from inside an event, that the element in delivery has been dealt with. It goes on with `node`
    /// itself, or else behind it. Only the pointer is kept: the node is read when the walk goes on. False, and no
    /// change, for a null pointer.
    bool SetNodeToContinue(QDomNode *node, bool stayOnNode);

    /// All nodes called `name` in the document, or, with a parent's name, below the first element of that name. The
    /// caller owns the list.
    std::list<QDomNode> *GetElement(QString name, QString parent);

    /// Takes a node out of the document; it and all below it stay alive until the walk has ended, since the walk may
    /// still go on from inside. False if the node has no parent.
    bool Remove(const QDomNode &node);

    /// Where the current element stands; `attribute` is the one in hand, or empty.
    ReportPlace GetPlace(const QString &attribute) { return m_oRefusals.PlaceOf(*m_pCurrentElement, attribute); }

    /// The document as it is walked. The setters bracket their changes of it by its OwnChange.
    WalkedDocument &GetWalked() { return m_oWalked; }

    /// The attributes of the current element.
    CurrentAttributes &GetAttributes() { return m_oAttributes; }

    /// The values of the current element that were refused, while tracing is on or an outcome asks for them.
    Refusals &GetRefusals() { return m_oRefusals; }

    /// Puts copies of the current element, as it stands, behind it, so that it stands `count` times; none for 1 and
    /// less. They and the element itself are multiplied then.
    void Multiply(int count);

    /// True for an element that was multiplied and for each of its copies.
    bool IsMultiplied(const QDomElement &element) const { return m_oMultiplied.Contains(element); }

    /// True where it is asked for the current element the first time.
    bool ServeOnce();

    /// Brings all attributes that were kept out of the document into it: from now on it is what the template says.
    void CompleteDocument();

    /// Where the occurrence table allows which element.
    OccurrenceLookup &GetOccurrences() { return m_oOccurrences; }

private:
    // The children of an element that has been entered.
    struct Level
    {
        ChildCursor m_oCursor;
        QString m_sText; // of the latest child that had one
        bool m_bTop = false;
    };

    void WalkLevels(const QDomElement &root);
    void EnterChild();
    void LeaveLevel();
    bool HandleChild(Level &level);
    void AnnounceChild(Level &level);
    void TakeUpRequest(Level &level);
    void MoveToResumeNode(Level &level);
    void NodeTaken();

    bool HandleUnsetElement();
    // An element without a type is a container, whatever it holds.
    bool HasType() { return !m_oAttributes.GetValue(QStringLiteral("type")).isEmpty(); }
    bool Drop(ChildCursor cursor);
    ChildCursor CursorOfPending();
    bool CheckOccursMap(const QString &name);
    bool IsChoiceItem(const QString &name) const;

    void SetCurrent(const QDomNode &node, AttributeModel::Pointer model);
    void TellMissing();
    void FinishValidOutput();
    void SendElemBegin(const QDomNode &node, const QString &text);
    void Error(ITagwright::ErrorID id) { SendEvent<ErrorEvent>(m_pCallback, id); }

    QDomDocument *m_pDocument = nullptr; // not owned
    QDomNode *m_pResumeNode = nullptr; // m_oResumeNode, or what SetNodeToContinue was given; not owned
    std::unique_ptr<QDomElement> m_pCurrentElement;
    // An optional container that the walk has announced and of which the content decides. The first element with a type
    // that stays without a value takes it out, with all below it (HandleUnsetElement). Anything that a receiver handles
    // below the top level makes it stay (TakeUpRequest). A container without a type decides nothing. Leaving it decides
    // nothing either: an element behind it may still take it out, and is announced once more then. Null: none.
    std::unique_ptr<QDomElement> m_pPendingElement;
    ITagwright *m_pCallback = nullptr; // not owned
    OccursMap m_OccursMap;
    ChoiceMap m_ChoiceMap;
    std::list<QDomNode> *m_pSearchResult = nullptr; // of the latest GetElement; its caller owns it
    bool m_bResumeRequested = false;
    bool m_bResumeOnSameNode = false;

    std::function<void()> m_fnNodeTaken { [this] { NodeTaken(); } };
    WalkedDocument m_oWalked;
    std::vector<Level> m_lLevels; // from the top down to the one that is walked
    std::size_t m_iPendingLevel = 0; // where m_pPendingElement is a child
    CurrentAttributes m_oAttributes { &m_oWalked };
    NodeSet m_oMultiplied;
    bool m_bGoesBack = false; // there has been a pending element
    QDomNode m_oLastServed; // for which somebody has asked ServeOnce()
    NodeSet m_oServed; // the same for those that may come again
    Refusals m_oRefusals { m_oWalked };
    std::unique_ptr<ValidOutput> m_pValidOutput;
    QDomNode m_oResumeNode;
    OccurrenceLookup m_oOccurrences;
};
