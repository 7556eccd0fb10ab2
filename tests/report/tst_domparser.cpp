#include "support/scriptedreceiver.h"
#include "support/templates.h"

#include "dom/nodesearch.h"
#include "dom/nodewalk.h"
#include "report/domparser.h"

#include <QThread>
#include <QtTest>

#include <random>

namespace {

QString NameAt(unsigned index)
{
    return QString(QLatin1Char("ABCDEFR"[index]));
}

// The walk told literally: recursive, over a document that is always complete, and with each question to the
// occurrence table answered by searches of the whole document. DomParser is held against it.
class LiteralWalk
{
public:
    LiteralWalk(ITagwright *callback, const OccursMap &occurs, const ChoiceMap &choices)
        : m_pCallback(callback)
        , m_OccursMap(occurs)
        , m_ChoiceMap(choices)
    {
    }

    void SetDocument(QDomDocument *document) { m_oDocument = *document; }
    void SetUnwatched() { }
    void CompleteDocument() { }
    WalkedDocument &GetWalked() { return m_oWalked; }
    QDomElement *GetCurrentElement() { return &m_oCurrent; }
    LiteralWalk &GetAttributes() { return *this; }
    void Set(const QString &name, const QString &value) { m_oCurrent.setAttribute(name, value); }
    void Remove(const QString &name) { m_oCurrent.removeAttribute(name); }

    void Multiply(int count)
    {
        m_lMultiplied.push_back(m_oCurrent);
        for (int i = 1; i < count; ++i) {
            m_lMultiplied.push_back(m_oCurrent.cloneNode(true));
            m_oCurrent.parentNode().toElement().insertAfter(m_lMultiplied.back(), m_oCurrent);
        }
    }
    bool IsMultiplied(const QDomNode &node) const
    {
        return std::find(m_lMultiplied.begin(), m_lMultiplied.end(), node) != m_lMultiplied.end();
    }

    void SetNodeToContinue(QDomNode *node, bool stayOnNode)
    {
        m_bRequested = true;
        m_bStay = stayOnNode;
        m_pResume = node;
    }

    bool Remove(QDomNode node)
    {
        m_lRemoved.push_back(node);
        return !node.parentNode().removeChild(node).isNull();
    }

    void Parse()
    {
        SendEvent<DocBeginEvent>(m_pCallback);
        m_oCurrent = m_oDocument.documentElement();
        Announce(m_oCurrent, QString());
        WalkChildren(QDomElement(m_oCurrent), true);
        SendEvent<DocEndEvent>(m_pCallback);
    }

private:
    void WalkChildren(const QDomElement &element, bool isTop)
    {
        QDomNode child = element.firstChild();
        QString text;
        while (!child.isNull() && (isTop || child.nodeType() != QDomNode::TextNode)) {
            m_oCurrent = child.toElement();
            const QString value = m_oCurrent.attribute(QStringLiteral("default"));
            if (child.firstChild().nodeType() == QDomNode::TextNode) {
                text = child.firstChild().nodeValue();
            } else if (!isTop && !value.isEmpty()) {
                m_oCurrent.removeAttribute(QStringLiteral("default"));
                m_oCurrent.appendChild(m_oDocument.createTextNode(value));
            }
            Announce(child, text);
            if (m_bRequested) {
                m_bRequested = false;
                child = m_bStay ? *m_pResume : m_pResume->nextSibling();
                m_oPending = isTop ? m_oPending : QDomElement();
                continue;
            }
            if (HandleUnset()) {
                child = *m_pResume;
                if (isTop || m_oPending.isNull()) {
                    continue;
                }
            }
            WalkChildren(child.toElement(), false);
            child = child.nextSibling();
        }
    }

    bool HandleUnset()
    {
        const bool isPending = !m_oPending.isNull();
        const QString name = m_oCurrent.tagName();
        if (!isPending && !CheckOccursMap(name) && !IsChoiceItem(name)) {
            SendEvent<ErrorEvent>(m_pCallback, ITagwright::CURRENT_OCCURRENCE_IS_NOT_VALID);
            return false;
        }
        if (m_oCurrent.attribute(QStringLiteral("type")).isEmpty()) {
            if (!isPending) {
                m_oPending = m_oCurrent;
                m_oResume = m_oCurrent;
                m_pResume = &m_oResume;
            }
            return !isPending;
        }
        const QDomElement unset = isPending ? m_oPending : m_oCurrent;
        m_oPending.clear();
        m_oResume = unset.nextSibling();
        m_pResume = &m_oResume;
        m_oCurrent = m_oResume.toElement();
        if (!Remove(unset) && !isPending) {
            SendEvent<ErrorEvent>(m_pCallback, ITagwright::GENERAL_ERROR);
        }
        return true;
    }

    bool CheckOccursMap(const QString &name)
    {
        if (m_OccursMap.count(name) == 0) {
            SendEvent<ErrorEvent>(m_pCallback, ITagwright::CURRENT_VALUE_IS_NOT_VALID);
            return false;
        }
        bool result = false;
        for (const auto &[key, parents] : m_OccursMap.at(name)) {
            for (const QString &parent : key % 100 == 0 ? parents : std::list<QString>()) {
                for (const QDomNode &node : GetElement(parent, QString())) {
                    const std::list<QDomNode> found = GetElement(name, node.nodeName());
                    result = result || std::find(found.begin(), found.end(), m_oCurrent) != found.end();
                }
            }
        }
        return result;
    }

    bool IsChoiceItem(const QString &name) const
    {
        return !name.isEmpty() && std::any_of(m_ChoiceMap.begin(), m_ChoiceMap.end(), [&name](const auto &row) {
            return row.second == name;
        });
    }

    std::list<QDomNode> GetElement(const QString &name, const QString &parent) const
    {
        std::list<QDomNode> result;
        dom::FindBelow(name, parent, dom::DocumentRoots(m_oDocument), result);
        return result;
    }

    void Announce(const QDomNode &node, const QString &text)
    {
        SendEvent<ElemBeginEvent>(m_pCallback, node, node.nodeName(), ToXmlAttributes(SortedAttributes(node)), text);
    }

    ITagwright *m_pCallback;
    QDomDocument m_oDocument;
    WalkedDocument m_oWalked; // of no document
    OccursMap m_OccursMap;
    ChoiceMap m_ChoiceMap;
    QDomElement m_oCurrent;
    QDomElement m_oPending;
    QDomNode m_oResume;
    QDomNode *m_pResume = nullptr;
    bool m_bRequested = false;
    bool m_bStay = false;
    std::list<QDomNode> m_lMultiplied;
    std::list<QDomNode> m_lRemoved;
};

// Does at random, but the same for the same seed, whatever a receiver can do: values, copies, attributes, discarded
// elements. In every second run it also changes the document behind the walk's back; in the others nobody sees the
// document before a node is taken, so that copies stand bare in it.
template <typename Walk>
class RandomReceiver : public ScriptedReceiver
{
public:
    RandomReceiver(unsigned seed, const QDomDocument &document, const OccursMap &occurs, const ChoiceMap &choices)
        : m_oDocument(document.cloneNode(true).toDocument())
        , m_oWalk(this, occurs, choices)
        , m_oRandom(seed)
        , m_bEdits(seed % 2 == 0)
    {
        m_oWalk.SetDocument(&m_oDocument);
        if (!m_bEdits) {
            m_oWalk.SetUnwatched();
        }
        m_fnElement = [this, takeAt = seed % 3 == 0 ? int(seed % 40) : -1](ElemBeginEvent &event) {
            const QXmlAttributes attributes = event.GetElementAttributes();
            for (int i = 0; i < attributes.count(); ++i) {
                m_lHeard.append(attributes.qName(i) + QLatin1Char('=') + attributes.value(i));
            }
            m_lHeard.append(event.GetElementText());
            Act();
            if (m_iActions == takeAt) {
                m_lHeard.append(ToText(event.GetElementNode().ownerDocument()));
            }
        };
        m_fnError = [this](int) {
            if (Draw(20) == 0) {
                Act();
            }
        };
        m_oWalk.Parse();
        m_lHeard.append(ToText(m_oDocument));
    }

private:
    unsigned Draw(unsigned bound) { return m_oRandom() % bound; }

    void Act()
    {
        QDomElement &current = *m_oWalk.GetCurrentElement();
        const unsigned action = ++m_iActions > 300 || current.isNull() ? 99 : Draw(24);
        if (action < 6) {
            const WalkedDocument::OwnChange own(m_oWalk.GetWalked());
            m_oWalk.GetAttributes().Remove(QStringLiteral("type"));
            current.appendChild(m_oDocument.createTextNode(QStringLiteral("v")));
            m_oWalk.SetNodeToContinue(&current, false);
        } else if (action < 9 && !m_oWalk.IsMultiplied(current)) {
            m_oWalk.Multiply(static_cast<int>(1 + Draw(3)));
            m_oWalk.SetNodeToContinue(&current, true);
        } else if (action == 9) {
            m_oWalk.CompleteDocument();
            m_oSuccessor = dom::NextSibling(current).toElement();
            m_oWalk.Remove(QDomNode(current));
            m_oWalk.SetNodeToContinue(&m_oSuccessor, false);
        } else if (action < 13) {
            const WalkedDocument::OwnChange own(m_oWalk.GetWalked());
            m_oWalk.GetAttributes().Set(QStringLiteral("u"), QString::number(action));
        }
        if (m_bEdits && m_iActions < 300 && Draw(10) == 0) {
            Edit();
        }
    }

    void Edit()
    {
        const QDomNodeList named = m_oDocument.elementsByTagName(NameAt(Draw(6)));
        QDomNode node =
            named.isEmpty() ? m_oDocument.documentElement() : named.at(static_cast<int>(Draw(2)) % named.count());
        if (Draw(3) == 0 && node != m_oDocument.documentElement()) {
            m_lKept.push_back(node);
            node.parentNode().removeChild(node);
        } else if (Draw(3) == 0) {
            node.insertBefore(m_oDocument.createProcessingInstruction(NameAt(Draw(6)), QString()), node.firstChild());
        } else {
            // Often the name in which the present element's place is told: another is the first of it then.
            const QDomNode parent = m_oWalk.GetCurrentElement()->parentNode();
            const QString name = parent.isElement() && Draw(2) == 0 ? parent.nodeName() : NameAt(Draw(6));
            node.insertBefore(m_oDocument.createElement(name), node.firstChild());
        }
    }

    QDomDocument m_oDocument;
    Walk m_oWalk;
    std::mt19937 m_oRandom;
    bool m_bEdits;
    int m_iActions = 0;
    QDomElement m_oSuccessor;
    std::list<QDomNode> m_lKept;
};

void AddRandomChildren(QDomDocument document, QDomNode parent, std::mt19937 &random, int depth)
{
    for (unsigned i = random() % 5; i > 0; --i) {
        QDomElement child = document.createElement(NameAt(random() % 6));
        const unsigned kind = random() % 10;
        if (kind < 4) {
            child.setAttribute(QStringLiteral("type"), kind == 0 ? QString() : QStringLiteral("string"));
        }
        if (kind == 3 || kind == 5) {
            child.setAttribute(QStringLiteral("default"), QStringLiteral("d"));
        }
        if (kind == 9) {
            child.appendChild(document.createTextNode(QStringLiteral("t")));
        }
        if (random() % 64 == 0) {
            parent.appendChild(document.createProcessingInstruction(NameAt(random() % 6), QString()));
        }
        parent.appendChild(child);
        if (depth > 0 && (kind == 0 || kind > 4)) {
            AddRandomChildren(document, child, random, depth - 1);
        }
    }
}

OccursMap RandomOccurs(std::mt19937 &random)
{
    OccursMap table;
    for (unsigned i = random() % 24; i > 0; --i) {
        const int key = std::array<int, 5> { 0, -100, 300, 3, -1 }[random() % 5];
        table[NameAt(random() % 6)][key].push_back(NameAt(random() % 7));
    }
    return table;
}

} // namespace

class TestDomParser : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void IsTheLiteralWalk()
    {
        for (unsigned seed = 0; seed < 1000; ++seed) {
            std::mt19937 random(seed);
            QDomDocument document;
            document.appendChild(document.createElement(NameAt(seed % 4 < 2 ? 0 : 6)));
            AddRandomChildren(document, document.documentElement(), random, 4);
            if (seed % 7 == 0) {
                document.appendChild(seed % 4 < 2 ? QDomNode(document.createComment(QStringLiteral("c")))
                                                  : QDomNode(document.createElement(QStringLiteral("B"))));
            }
            const OccursMap occurs = RandomOccurs(random);
            const ChoiceMap choices = { { 0, NameAt(1) }, { 100, seed % 5 == 0 ? NameAt(2) : QString() } };
            const RandomReceiver<LiteralWalk> expected(seed, document, occurs, choices);
            const RandomReceiver<DomParser> actual(seed, document, occurs, choices);
            QVERIFY2(actual.m_lHeard == expected.m_lHeard,
                     qPrintable(QStringLiteral("seed %1\n%2\n%3").arg(seed).arg(expected.Heard(), actual.Heard())));
        }
    }

    void RowOfEmptyContainersNeedsNoStack()
    {
        constexpr int kContainers = 50000;
        QDomDocument document = ReadTemplate(QStringLiteral("<R><B><C type='s'/></B></R>"));
        const QDomElement container = document.documentElement().firstChildElement();
        for (int i = 1; i < kContainers; ++i) {
            document.documentElement().appendChild(container.cloneNode(true));
        }
        ScriptedReceiver receiver;
        DomParser parser(&receiver, { { QStringLiteral("B"), { { 0, { QStringLiteral("R") } } } } }, ChoiceMap());
        parser.SetDocument(&document);
        const std::unique_ptr<QThread> thread(QThread::create([&parser] { parser.Parse(); }));
        thread->setStackSize(1024 * 1024);
        thread->start();
        QVERIFY(thread->wait());
        // Only the first is announced twice: the others are met below the top.
        QCOMPARE(receiver.m_lHeard.size(), 1 + 1 + 1 + 2 * kContainers + 1);
        QCOMPARE(ToText(document), QStringLiteral("<R/>"));
    }
};

QTEST_GUILESS_MAIN(TestDomParser)
#include "tst_domparser.moc"
