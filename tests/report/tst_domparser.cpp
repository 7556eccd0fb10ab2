#include "support/scriptedreceiver.h"
#include "support/templates.h"

#include "host/veldra.h"
#include "report/domparser.h"
#include "report/literalwalk.h"

#include <QThread>
#include <QtTest>

#include <random>

namespace {

void WriteValue(QDomDocument document, QDomElement element, const QString &text)
{
    element.removeAttribute(QStringLiteral("type"));
    element.appendChild(document.createTextNode(text));
}

// DomParser and the literal walk under one interface, so that one receiver can drive both.
struct NewWalk
{
    DomParser m_oParser;
    QDomDocument m_oDocument;

    NewWalk(ITagwright *callback, const OccursMap &occurs, const ChoiceMap &choices)
        : m_oParser(callback, occurs, choices)
    {
    }
    void Parse()
    {
        m_oParser.SetDocument(&m_oDocument);
        m_oParser.Parse();
    }
    QDomElement &Current() { return *m_oParser.GetCurrentElement(); }
    void SetNodeToContinue(QDomNode *node, bool stay) { m_oParser.SetNodeToContinue(node, stay); }
    bool Remove(const QDomNode &node) { return m_oParser.Remove(node); }
    template <typename KeyTest> bool IsFound(const QString &name, const KeyTest &keyApplies)
    {
        return m_oParser.GetOccurrences().IsFound(name, Current().tagName(), Current(), keyApplies);
    }
    template <typename Change> void ChangeAsSetter(const Change &change)
    {
        const ElementIndex::OwnChange own(m_oParser.GetElementIndex());
        change();
    }
};

struct OldWalk : LiteralWalk
{
    using LiteralWalk::LiteralWalk;
    QDomElement &Current() { return m_oCurrent; }
    template <typename KeyTest> bool IsFound(const QString &name, const KeyTest &keyApplies)
    {
        return LiteralWalk::IsFound(name, m_oCurrent.tagName(), m_oCurrent, keyApplies);
    }
    template <typename Change> void ChangeAsSetter(const Change &change) { change(); }
};

// A receiver that does at random, but the same for the same seed, whatever a receiver can do: values, copies,
// discarded elements, questions to the table, and changes of the document behind the walk's back.
template <typename Walk> class RandomReceiver : public ScriptedReceiver
{
public:
    RandomReceiver(unsigned seed, const QDomDocument &document, const OccursMap &occurs, const ChoiceMap &choices)
        : m_oWalk(this, occurs, choices)
        , m_oRandom(seed)
    {
        m_oWalk.m_oDocument = document.cloneNode(true).toDocument();
        m_iEditRate = seed % 3 == 0 ? 12 : 1000;
        m_fnElement = [this](ElemBeginEvent &event) {
            QString heard = event.GetElementText();
            for (int i = 0; i < event.GetElementAttributes().length(); ++i) {
                heard += QLatin1Char(' ') + event.GetElementAttributes().qName(i);
            }
            m_lHeard.append(heard);
            Act();
        };
        m_fnError = [this](int) {
            if (Draw(20) == 0) {
                Act();
            }
        };
        m_oWalk.Parse();
    }

    QString Result() { return Heard() + QLatin1Char('\n') + ToText(m_oWalk.m_oDocument); }

private:
    int Draw(int bound) { return static_cast<int>(m_oRandom() % static_cast<unsigned>(bound)); }
    QString DrawName() { return QString(QLatin1Char(static_cast<char>('A' + Draw(6)))); }

    void Act()
    {
        if (m_iActions++ > 300) {
            return;
        }
        QDomElement &current = m_oWalk.Current();
        const int key = Draw(4);
        for (char name = 'A'; name < 'G'; ++name) {
            const bool isFound =
                m_oWalk.IsFound(QString(QLatin1Char(name)), [key](int k) { return k % 100 == 0 || k > key; });
            m_lHeard.append(isFound ? QStringLiteral("found") : QString());
        }
        switch (current.isNull() ? 9 : Draw(9)) {
        case 0:
        case 1:
            m_oWalk.ChangeAsSetter([&] { WriteValue(m_oWalk.m_oDocument, current, QStringLiteral("v")); });
            m_oWalk.SetNodeToContinue(&current, false);
            break;
        case 2:
            m_oWalk.ChangeAsSetter([&] {
                for (int i = Draw(3); i > 0; --i) {
                    current.parentNode().toElement().insertAfter(current.cloneNode(true), current);
                }
            });
            m_oWalk.SetNodeToContinue(&current, true);
            break;
        case 3:
            if (Draw(4) == 0) {
                const QDomElement discarded = current;
                m_oSuccessor = current.nextSibling().toElement();
                m_lHeard.append(m_oWalk.Remove(discarded) ? QStringLiteral("removed") : QString());
                m_oWalk.SetNodeToContinue(&m_oSuccessor, false);
            }
            break;
        default:
            break;
        }
        if (Draw(m_iEditRate) == 0) {
            Edit();
        }
    }

    void Edit()
    {
        const QDomNodeList all = m_oWalk.m_oDocument.elementsByTagName(DrawName());
        QDomNode node = all.isEmpty() ? m_oWalk.m_oDocument.documentElement() : all.at(Draw(all.count()));
        if (Draw(3) == 0 && node != m_oWalk.m_oDocument.documentElement()) {
            m_lKept.push_back(node);
            node.parentNode().removeChild(node);
        } else if (Draw(8) == 0) {
            node.insertBefore(m_oWalk.m_oDocument.createProcessingInstruction(DrawName(), QString()), QDomNode());
        } else {
            node.insertBefore(m_oWalk.m_oDocument.createElement(DrawName()), node.firstChild());
        }
    }

    Walk m_oWalk;
    std::mt19937 m_oRandom;
    int m_iEditRate;
    int m_iActions = 0;
    QDomElement m_oSuccessor;
    std::list<QDomNode> m_lKept;
};

void AddRandomChildren(QDomDocument document, QDomNode parent, std::mt19937 &random, int depth)
{
    for (unsigned i = random() % 5; i > 0; --i) {
        QDomElement child = document.createElement(QString(QLatin1Char(static_cast<char>('A' + random() % 6))));
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
        parent.appendChild(child);
        if (depth > 0 && (kind == 0 || kind > 4)) {
            AddRandomChildren(document, child, random, depth - 1);
        }
    }
}

QString RandomOccurs(std::mt19937 &random)
{
    const QStringList keys = { QStringLiteral("0"), QStringLiteral("-100"), QStringLiteral("300"), QStringLiteral("3"),
                               QStringLiteral("-1") };
    QString result;
    for (unsigned i = random() % 24; i > 0; --i) {
        result += QStringLiteral("%1:%2:%3 ")
                      .arg(QLatin1Char(static_cast<char>('A' + random() % 6)))
                      .arg(keys.at(static_cast<int>(random() % 5)))
                      .arg(QLatin1Char("ABCDEFR"[random() % 7]));
    }
    return result;
}

} // namespace

class TestDomParser : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void Walks_data();
    void Walks();
    void IsTheLiteralWalk();
    void KeepsWhatSetNodeToContinueNames();
    void RowOfEmptyContainersNeedsNoStack();
    void ProbeSeesChanges();
    void RefusesWhatCannotBeWalked();
};

void TestDomParser::Walks_data()
{
    QTest::addColumn<QString>("xml");
    QTest::addColumn<QString>("occurs");
    QTest::addColumn<QString>("choices");
    QTest::addColumn<QString>("valued");
    QTest::addColumn<QString>("heard");
    QTest::addColumn<QString>("report");
    const auto row = [](const char *name, const char *xml, const char *occurs, const char *choices, const char *valued,
                        const char *heard, const char *report) {
        QTest::newRow(name) << QString::fromLatin1(xml) << QString::fromLatin1(occurs) << QString::fromLatin1(choices)
                            << QString::fromLatin1(valued) << QString::fromLatin1(heard) << QString::fromLatin1(report);
    };
    row("root alone", "<R type='s'/>", "", "", "", "begin R end", "<R type='s'/>");
    row("optional container that stays empty", "<R><A type='s'/><B><C type='s'/></B><D type='s'/><E type='s'/></R>",
        "B:0:R C:1:B D:0:R", "", "A", "begin R A B B C D E !15 !16 end", "<R><A>v</A><E type='s'/></R>");
    row("first value keeps the container", "<R><B><C type='s'/><D type='s'/></B></R>", "B:0:R", "", "C",
        "begin R B B C D !15 !16 end", "<R><B><C>v</C><D type='s'/></B></R>");
    row("unset first drops later values", "<R><B><C type='s'/><D type='s'/></B></R>", "B:-100:R", "", "D",
        "begin R B B C end", "<R/>");
    row("deeper container is announced once", "<R><A><B><C type='s'/></B></A></R>", "B:0:A", "", "",
        "begin R A !15 !16 B C end", "<R><A/></R>");
    row("pending outlives its container", "<R><A><B><C/></B><D type='s'/><E type='s'/></A></R>", "B:0:A", "", "E",
        "begin R A !15 !16 B C D D !15 !16 E end", "<R><A><D type='s'/><E>v</E></A></R>");
    row("removed from inside a nested container", "<R><B><X><C type='s'/><Y/></X><Z/></B><D type='s'/></R>",
        "B:0:R D:0:R", "", "", "begin R B B X C D Z !15 !16 end", "<R/>");
    row("alternatives may go", "<R><A><B type='s'/><C type='s'/></A></R>", "", "B C", "C",
        "begin R A !15 !16 B !15 C end", "<R><A><C>v</C></A></R>");
    row("a limit is no leave to go", "<R><A type='s'/></R>", "A:3:R", "", "", "begin R A !16 end",
        "<R><A type='s'/></R>");
    row("optional below the first parent only", "<R><P><A type='s'/></P><P><A type='s'/></P></R>", "A:0:P", "", "",
        "begin R P !15 !16 A P !15 !16 A !16 end", "<R><P/><P><A type='s'/></P></R>");
    row("parent of no element", "<R><A type='s'/></R>", "A:0:T", "", "", "begin R A !16 end", "<R><A type='s'/></R>");
    row("hidden inside one of its own name", "<R><P><A><A type='s'/></A></P></R>", "A:0:P", "", "",
        "begin R P !15 !16 A A end", "<R><P/></R>");
    row("default at the top stays", "<R><A type='s' default='d'/></R>", "", "", "", "begin R A !15 !16 end",
        "<R><A default='d' type='s'/></R>");
    row("default below becomes the text", "<R><P><A type='s' default='d'/></P></R>", "", "", "",
        "begin R P !15 !16 A !15 !16 end", "<R><P><A type='s'>d</A></P></R>");
    row("default goes with its element", "<R><P><A type='s' default='d'/></P></R>", "A:300:P", "", "",
        "begin R P !15 !16 A end", "<R><P/></R>");
    row("text ends a level below the root", "<R>t<P>t<A/></P><Q><B/>t<A/></Q></R>", "", "", "",
        "begin R #text !15 !16 P !15 !16 Q !15 !16 B !15 !16 end", "<R>t<P>t<A/></P><Q><B/>t<A/></Q></R>");
    row("a value on the root counts for its first child", "<R><A type='s'/><B type='s'/></R>", "A:0:R B:0:R", "", "R",
        "begin R A B #text !15 !16 end", "<R><A type='s'/>v</R>");
    row("top pending stays beside a value", "<R><B><X/></B><C type='s'/><D type='s'/><E/></R>", "B:0:R", "", "C",
        "begin R B B X C D C D !15 !16 E !15 !16 end", "<R><C>vv</C><D type='s'/><E/></R>");
}

void TestDomParser::Walks()
{
    QFETCH(QString, xml);
    QFETCH(QString, occurs);
    QFETCH(QString, choices);
    QFETCH(QString, valued);
    QDomDocument document = ReadTemplate(xml);
    ScriptedReceiver receiver;
    DomParser parser(&receiver, ReadOccurs(occurs), ReadChoices(choices));
    receiver.m_fnElement = [&](ElemBeginEvent &event) {
        if (event.GetElementName() == valued) {
            WriteValue(document, *parser.GetCurrentElement(), QStringLiteral("v"));
            parser.SetNodeToContinue(parser.GetCurrentElement(), false);
        }
    };
    receiver.m_fnBegin = [&] { QVERIFY(parser.IsWalking() && parser.GetCurrentElement()->isNull()); };
    receiver.m_fnEnd = receiver.m_fnBegin;
    QVERIFY(parser.SetDocument(&document));
    QVERIFY(parser.Parse());
    QVERIFY(!parser.IsWalking());
    QTEST(receiver.Heard(), "heard");
    QTEST(ToText(document), "report");
}

void TestDomParser::IsTheLiteralWalk()
{
    for (unsigned seed = 0; seed < 3000; ++seed) {
        std::mt19937 random(seed);
        QDomDocument document;
        QDomElement root = document.createElement(seed % 2 == 0 ? QStringLiteral("A") : QStringLiteral("R"));
        document.appendChild(root);
        AddRandomChildren(document, root, random, 4);
        if (seed % 7 == 0) {
            document.appendChild(seed % 2 == 0 ? QDomNode(document.createComment(QStringLiteral("c")))
                                               : QDomNode(document.createElement(QStringLiteral("B"))));
        }
        const OccursMap occurs = ReadOccurs(RandomOccurs(random));
        const ChoiceMap choices = ReadChoices(seed % 5 == 0 ? QStringLiteral("B|C D") : QString());
        RandomReceiver<OldWalk> expected(seed, document, occurs, choices);
        RandomReceiver<NewWalk> actual(seed, document, occurs, choices);
        QVERIFY2(actual.Result() == expected.Result(),
                 qPrintable(QStringLiteral("seed %1\n%2\n%3\n%4")
                                .arg(seed)
                                .arg(ToText(document), expected.Result(), actual.Result())));
    }
}

// The node is read when the walk goes on, not when it is named.
void TestDomParser::KeepsWhatSetNodeToContinueNames()
{
    QDomDocument document = ReadTemplate(QStringLiteral("<R><A/><B/><C/></R>"));
    ScriptedReceiver receiver;
    DomParser parser(&receiver, OccursMap(), ChoiceMap());
    QDomNode next;
    receiver.m_fnElement = [&](ElemBeginEvent &event) {
        if (event.GetElementName() == QLatin1String("A")) {
            QVERIFY(!parser.SetNodeToContinue(nullptr, false));
            QVERIFY(parser.SetNodeToContinue(&next, true));
            next = document.documentElement().lastChild();
        }
    };
    parser.SetDocument(&document);
    QVERIFY(parser.Parse());
    QCOMPARE(receiver.Heard(), QStringLiteral("begin R A C !15 !16 end"));
}

void TestDomParser::RowOfEmptyContainersNeedsNoStack()
{
    constexpr int kContainers = 50000;
    QDomDocument document = ReadTemplate(QStringLiteral("<R/>"));
    for (int i = 0; i < kContainers; ++i) {
        document.documentElement()
            .appendChild(document.createElement(QStringLiteral("B")))
            .appendChild(document.createElement(QStringLiteral("C")))
            .toElement()
            .setAttribute(QStringLiteral("type"), QStringLiteral("string"));
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

void TestDomParser::ProbeSeesChanges()
{
    QDomDocument document = ReadTemplate(QStringLiteral("<R><A><B/></A></R>"));
    QDomElement child = document.documentElement().firstChildElement();
    const QDomNode grandchild = child.firstChild();
    ChangeProbe probe;
    QVERIFY(probe.HasChanged());
    const std::vector<std::function<void()>> changes = {
        [&] { child.insertBefore(document.createElement(QStringLiteral("N")), QDomNode()); },
        [&] { child.removeChild(grandchild); },
        [&] { document.documentElement().replaceChild(document.createElement(QStringLiteral("N")), child); },
        [&] { document.removeChild(document.documentElement()); },
    };
    for (const auto &change : changes) {
        probe.Arm(document);
        probe.Arm(document);
        QVERIFY(!probe.HasChanged());
        QVERIFY(!probe.HasChanged());
        change();
        QVERIFY(probe.HasChanged());
        QVERIFY(probe.HasChanged());
    }
    probe.Disarm();
    QVERIFY(probe.HasChanged());
}

void TestDomParser::RefusesWhatCannotBeWalked()
{
    ScriptedReceiver receiver;
    DomParser parser(&receiver, OccursMap(), ChoiceMap());
    QVERIFY(!parser.SetDocument(nullptr));
    QVERIFY(!parser.Parse());
    QDomDocument empty;
    QVERIFY(parser.SetDocument(&empty));
    QVERIFY(!parser.Parse());
    QVERIFY(receiver.m_lHeard.isEmpty());

    ErrorHandler::SetTraceMask(32);
    QTest::ignoreMessage(QtInfoMsg, "DomParser: pCallback is NULL!");
    DomParser unusable(nullptr, OccursMap(), ChoiceMap());
    ErrorHandler::SetTraceMask(0);
    QDomDocument document = ReadTemplate(QStringLiteral("<R/>"));
    unusable.SetDocument(&document);
    QVERIFY(!unusable.Parse());
    QVERIFY(unusable.GetCurrentElement() == nullptr);
}

QTEST_GUILESS_MAIN(TestDomParser)
#include "tst_domparser.moc"
