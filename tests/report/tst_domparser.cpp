#include "support/scriptedreceiver.h"
#include "support/templates.h"

#include "report/domparser.h"
#include "report/literalwalk.h"

#include <QThread>
#include <QtTest>

#include <random>

namespace {

void WriteValue(QDomElement element)
{
    element.removeAttribute(QStringLiteral("type"));
    element.appendChild(element.ownerDocument().createTextNode(QStringLiteral("v")));
}

QString NameAt(unsigned index)
{
    return QString(QLatin1Char("ABCDEFR"[index]));
}

// A change by a setter, which DomParser is told of.
template <typename Walk>
void ChangeAsSetter(Walk &walk, const std::function<void()> &change)
{
    if constexpr (std::is_same_v<Walk, DomParser>) {
        const WalkedDocument::OwnChange own(walk.GetWalked());
        change();
    } else {
        change();
    }
}

// Does at random, but the same for the same seed, whatever a receiver can do: values, copies, discarded elements,
// questions to the table, and changes of the document behind the walk's back.
template <typename Walk>
class RandomReceiver : public ScriptedReceiver
{
public:
    RandomReceiver(unsigned seed, const QDomDocument &document, const OccursMap &occurs, const ChoiceMap &choices)
        : m_oWalk(this, occurs, choices)
        , m_oRandom(seed)
        , m_iEditRate(seed % 2 == 0 ? 10 : 1000)
    {
        m_oDocument = document.cloneNode(true).toDocument();
        m_oWalk.SetDocument(&m_oDocument);
        m_fnElement = [this, seed](ElemBeginEvent &event) {
            m_lHeard.append(event.GetElementText());
            Act();
            if (seed % 4 == 0) {
                event.GetElementNode(); // behind what was changed
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
        if (++m_iActions > 300) {
            return;
        }
        QDomElement &current = *m_oWalk.GetCurrentElement();
        const unsigned action = current.isNull() ? 99 : Draw(24);
        if (action < 6) {
            ChangeAsSetter(m_oWalk, [&] { WriteValue(current); });
            m_oWalk.SetNodeToContinue(&current, false);
        } else if (action < 9) {
            ChangeAsSetter(m_oWalk, [&] {
                for (unsigned i = Draw(3); i > 0; --i) {
                    current.parentNode().toElement().insertAfter(current.cloneNode(true), current);
                }
            });
            m_oWalk.SetNodeToContinue(&current, true);
        } else if (action == 9) {
            m_oSuccessor = current.nextSibling().toElement();
            m_oWalk.Remove(QDomNode(current));
            m_oWalk.SetNodeToContinue(&m_oSuccessor, false);
        }
        if (Draw(m_iEditRate) == 0) {
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
    unsigned m_iEditRate;
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
    void Walks_data();
    void Walks();
    void IsTheLiteralWalk();
    void RowOfEmptyContainersNeedsNoStack();
    void RefusesWhatCannotBeWalked();
};

void TestDomParser::Walks_data()
{
    QTest::addColumn<QString>("occurs");
    QTest::addColumn<QString>("xml");
    QTest::addColumn<QString>("valued");
    QTest::addColumn<QString>("heard");
    QTest::addColumn<QString>("report");
    const auto row = [](const char *occurs, const char *xml, const char *valued, const char *heard,
                        const char *report) {
        QTest::addRow("%s in %s", occurs, xml)
            << QString::fromLatin1(occurs) << QString::fromLatin1(xml) << QString::fromLatin1(valued)
            << QString::fromLatin1(heard) << QString::fromLatin1(report);
    };
    row("B:0:R C:1:B D:0:R", "<R><A type='s'/><B><C type='s'/></B><D type='s'/><E type='s'/></R>", "A",
        "begin R A B B C D E !15 !16 end", "<R><A>v</A><E type='s'/></R>");
    row("B:0:R", "<R><B><C type='s'/><D type='s'/></B></R>", "C", "begin R B B C D !15 !16 end",
        "<R><B><C>v</C><D type='s'/></B></R>");
    row("B:-100:R", "<R><B><C type='s'/><D type='s'/></B></R>", "D", "begin R B B C end", "<R/>");
    row("B:0:A", "<R><A><B><C/></B><D type='s'/><E type='s'/></A></R>", "E", "begin R A !15 !16 B C D D !15 !16 E end",
        "<R><A><D type='s'/><E>v</E></A></R>");
    row("B:0:R D:0:R", "<R><B><X><C type='s'/><Y/></X><Z/></B><D type='s'/></R>", "", "begin R B B X C D Z !15 !16 end",
        "<R/>");
    row("A:0:P", "<R><P><A type='s'/></P><P><A type='s'/></P></R>", "", "begin R P !15 !16 A P !15 !16 A !16 end",
        "<R><P/><P><A type='s'/></P></R>");
    row("", "<R><P type='s' default='d'/><Q><A type='s' default='d'/></Q></R>", "",
        "begin R P !15 !16 Q !15 !16 A !15 !16 end", "<R><P default='d' type='s'/><Q><A type='s'>d</A></Q></R>");
    row("A:0:R B:0:R", "<R><A type='s'/><B type='s'/></R>", "R", "begin R A B #text !15 !16 end",
        "<R><A type='s'/>v</R>");
}

void TestDomParser::Walks()
{
    QFETCH(QString, xml);
    QFETCH(QString, occurs);
    QFETCH(QString, valued);
    QDomDocument document = ReadTemplate(xml);
    ScriptedReceiver receiver;
    DomParser parser(&receiver, ReadOccurs(occurs), ChoiceMap());
    receiver.m_fnElement = [&](ElemBeginEvent &event) {
        if (event.GetElementName() == valued) {
            WriteValue(*parser.GetCurrentElement());
            parser.SetNodeToContinue(parser.GetCurrentElement(), false);
        }
    };
    parser.SetDocument(&document);
    QVERIFY(parser.Parse());
    QTEST(receiver.Heard(), "heard");
    QTEST(ToText(document), "report");
}

void TestDomParser::IsTheLiteralWalk()
{
    for (unsigned seed = 0; seed < 1000; ++seed) {
        std::mt19937 random(seed);
        QDomDocument document;
        document.appendChild(document.createElement(NameAt(seed % 2 == 0 ? 0 : 6)));
        AddRandomChildren(document, document.documentElement(), random, 4);
        if (seed % 7 == 0) {
            document.appendChild(seed % 2 == 0 ? QDomNode(document.createComment(QStringLiteral("c")))
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

void TestDomParser::RowOfEmptyContainersNeedsNoStack()
{
    constexpr int kContainers = 50000;
    QDomDocument document = ReadTemplate(QStringLiteral("<R/>"));
    QDomElement container = document.createElement(QStringLiteral("B"));
    container.appendChild(document.createElement(QStringLiteral("C")))
        .toElement()
        .setAttribute(QStringLiteral("type"), 1);
    for (int i = 0; i < kContainers; ++i) {
        document.documentElement().appendChild(container.cloneNode(true));
    }
    ScriptedReceiver receiver;
    DomParser parser(&receiver, ReadOccurs(QStringLiteral("B:0:R")), ChoiceMap());
    parser.SetDocument(&document);
    const std::unique_ptr<QThread> thread(QThread::create([&parser] { parser.Parse(); }));
    thread->setStackSize(1024 * 1024);
    thread->start();
    QVERIFY(thread->wait());
    // Only the first is announced twice: the others are met below the top.
    QCOMPARE(receiver.m_lHeard.size(), 1 + 1 + 1 + 2 * kContainers + 1);
    QCOMPARE(ToText(document), QStringLiteral("<R/>"));
}

void TestDomParser::RefusesWhatCannotBeWalked()
{
    ScriptedReceiver receiver;
    DomParser parser(&receiver, OccursMap(), ChoiceMap());
    QVERIFY(!parser.SetDocument(nullptr) && !parser.SetNodeToContinue(nullptr, false) && !parser.Parse());
    QDomDocument document;
    QVERIFY(parser.SetDocument(&document) && !parser.Parse() && receiver.m_lHeard.isEmpty());

    DomParser unusable(nullptr, OccursMap(), ChoiceMap());
    document = ReadTemplate(QStringLiteral("<R/>"));
    QVERIFY(unusable.SetDocument(&document) && !unusable.Parse() && unusable.GetCurrentElement() == nullptr);
}

QTEST_GUILESS_MAIN(TestDomParser)
#include "tst_domparser.moc"
