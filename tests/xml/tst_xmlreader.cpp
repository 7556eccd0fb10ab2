#include "support/deepdocument.h"
#include "support/eventrecorder.h"
#include "support/files.h"
#include "support/templates.h"

#include "dom/nodewalk.h"
#include "host/trace.h"
#include "xml/xmlcontenthandler.h"
#include "xml/xmlreader.h"

#include <QtTest>

#include <type_traits>

static_assert(!std::is_copy_constructible_v<XMLReader> && !std::is_copy_assignable_v<XMLReader>);

namespace {

/// The nodes as "name" or, where there is one, "name:id".
QString Shown(const std::list<QDomNode> *nodes)
{
    QStringList words;
    for (const QDomNode &node : *nodes) {
        const QString id = node.toElement().attribute(QStringLiteral("id"));
        words += id.isEmpty() ? node.nodeName() : node.nodeName() + QLatin1Char(':') + id;
    }
    return words.join(QLatin1Char(' '));
}

QString Framed(const char *events)
{
    return QStringLiteral("( %1 ) 1").arg(QLatin1String(events));
}

const QString kSmall = QStringLiteral("<a><b/></a>");
const QString kSmallLog = Framed("a[a|] b[b|] /b /a");
const QString kOther = QStringLiteral("<c><d/></c>");
const QString kOtherLog = Framed("c[c|] d[d|] /d /c");
const QString kTree = QStringLiteral("<r><x id='1'><x id='2'/></x><y><x id='3'/></y><y><x id='4'/>t</y></r>");

} // namespace

class TstXmlReader : public QObject
{
    Q_OBJECT

    QString Write(const QString &content)
    {
        return WriteFile(m_oDir.filePath(QStringLiteral("content.xml")), content.toUtf8());
    }
    /// The events of a parse, and its result.
    QString Parse()
    {
        m_oRecorder.m_lEvents.clear();
        const bool result = m_pReader->ParseXml();
        return (m_oRecorder.m_lEvents << QString::number(result)).join(QLatin1Char(' '));
    }
    template <typename Content>
    QString Parse(Content content)
    {
        m_pReader->SetXmlContent(content);
        return Parse();
    }
    QString Found(const char *name, const char *parent = "")
    {
        return Shown(m_pReader->GetElement(QLatin1String(name), QLatin1String(parent)));
    }
    QString FoundBelow(const char *name) { return Shown(m_pReader->SearchBelowCurrentElement(QLatin1String(name))); }

    QTemporaryDir m_oDir;
    EventRecorder m_oRecorder;
    std::unique_ptr<XMLReader> m_pReader;

private Q_SLOTS:
    void init()
    {
        m_oRecorder = EventRecorder();
        m_pReader = std::make_unique<XMLReader>(&m_oRecorder, nullptr);
        ErrorHandler::SetTraceMask(trace::kTraceBit);
    }

    void sendsEvents()
    {
        // Without a document the line ends of the serialisation are the text of what has none, behind an empty element.
        const char *const rows[][3] = {
            { "<a><b><c x='1'/></b><d/></a>", "a[a|] b[b|] c x=1[c|] /c /b d[d|] /d /a",
              "a[|_] b[|_] /c c x=1[|_] /b /d d[|_] /a" },
            { "<a>x<b/></a>", "a[a|] b[a|] /b /a", "a[|x] /b b[|_] /a" },
            { "<a><b/><!-- --><c/><d/></a>", "a[a|] b[b|] /b c[b|] /c d[b|] /d /a",
              "a[|_] /b b[|_] /c c[|_] /d d[|_] /a" },
            { "<a><b/>x<c>y</c>z</a>", "a[a|] b[b|] /b c[b|] /c /a", "a[|_] /b b[|x] c[|y] /c /a" },
        };
        for (const auto &[xml, withDocument, withoutDocument] : rows) {
            const QDomNode root = ReadTemplate(QLatin1String(xml)).documentElement();
            for (int run = 0; run < 2; ++run) { // a second run begins anew
                QCOMPARE(run == 0 ? Parse(Write(QLatin1String(xml))) : Parse(), Framed(withDocument));
            }
            QCOMPARE(Parse(root), Framed(withoutDocument));
        }
    }

    void eachContentReplacesTheOneBefore()
    {
        const QDomDocument small = ReadTemplate(kSmall);
        QDomDocumentFragment fragment = QDomDocument(small).createDocumentFragment();
        fragment.appendChild(small.documentElement().cloneNode());
        QCOMPARE(Parse(), QStringLiteral("0"));
        QCOMPARE(FoundBelow(""), QString());
        QCOMPARE(Parse(small), kSmallLog);
        QCOMPARE(Parse(Write(kOther)), kOtherLog);
        QCOMPARE(FoundBelow("d"), QStringLiteral("d"));
        m_pReader->SetXmlContent(fragment);
        QCOMPARE(FoundBelow("d"), QString());
        QCOMPARE(Parse(), QStringLiteral("( a[|_] /b b[|_] /a ) 1"));
        QCOMPARE(Parse(new QDomDocument(small)), kSmallLog);
        // A node that is a document has nodes to follow.
        QCOMPARE(Parse(static_cast<const QDomNode &>(ReadTemplate(kOther))), kOtherLog);
    }

    void unreadableContentIsFalse()
    {
        QCOMPARE(Parse(m_oDir.filePath(QStringLiteral("missing.xml"))), QStringLiteral("( 0"));
        const QRegularExpression noFile(QStringLiteral("^XMLReader: .* no regular file"));
        QTest::ignoreMessage(QtInfoMsg, noFile);
        QTest::ignoreMessage(QtInfoMsg, noFile);
        QCOMPARE(Parse(m_oDir.path()), QStringLiteral("0"));
        QCOMPARE(Parse(static_cast<QDomDocument *>(nullptr)), QStringLiteral("0"));
        QCOMPARE(Parse(Write(QStringLiteral("<a><b/></c>"))), QStringLiteral("( a[a|] b[b|] /b 0"));
        Write(kSmall); // the file is read anew at each parse
        QCOMPARE(Parse().right(1), QStringLiteral("1"));
    }

    void replacedContentLivesToTheEndOfItsParse()
    {
        QString found;
        m_oRecorder.m_pHook = [&](XmlEvent *event) {
            QTest::ignoreMessage(QtInfoMsg, "XMLReader: ParseXml was called from inside its own parse");
            QVERIFY(!m_pReader->ParseXml());
            if (event->GetType() == XmlEvent::EVENT_DOC_BEGIN) {
                auto *again = new QDomDocument(ReadTemplate(kOther));
                m_pReader->SetXmlContent(again);
                m_pReader->SetXmlContent(ReadTemplate(kOther));
                m_pReader->SetXmlContent(again);
                found = Found("d") + FoundBelow("dummy");
            }
        };
        QCOMPARE(Parse(new QDomDocument(ReadTemplate(kSmall))), kSmallLog);
        QCOMPARE(found, QStringLiteral("d"));
        QCOMPARE(Parse(Write(kSmall)), kSmallLog);
        QCOMPARE(Parse(), kOtherLog);
        // A document that was handed over goes with the next content.
        m_pReader->SetXmlContent(QDomDocument());
    }

    void goesOnWhereNodesAreTakenOut()
    {
        m_oRecorder.m_pHook = [](XmlEvent *event) {
            if (event->GetType() == XmlEvent::EVENT_ELEM_BEGIN) {
                const QDomNode node = static_cast<ElemBeginEvent *>(event)->GetElementNode();
                node.parentNode().removeChild(node);
            }
        };
        // A node that was taken out has no siblings to step to, and no parent to go back to.
        QCOMPARE(Parse(Write(QStringLiteral("<a><b/><c><d/><e/></c><f/></a>"))),
                 QStringLiteral("( a[a|] b[b|] /b c[b|] d[b|] /d e[b|] /e /c f[|] /f /a ) 1"));
    }

    void deletesHandedOverDocumentAtNextContentOnly()
    {
        // A root is without its parent when its document is gone.
        auto *first = new QDomDocument(ReadTemplate(kSmall));
        const QDomElement root = first->documentElement();
        m_pReader->SetXmlContent(first);
        m_pReader->SetXmlContent(first);
        QVERIFY(root.parentNode().isDocument());
        const auto second = std::make_unique<QDomDocument>(ReadTemplate(kOther));
        m_pReader->SetXmlContent(second.get());
        QVERIFY(root.parentNode().isNull());
        m_pReader.reset();
        QVERIFY(second->documentElement().parentNode().isDocument());
    }

    void hostHandlerStaysAsItIs()
    {
        QDomDocument document = ReadTemplate(kSmall);
        XmlContentHandler handler(&m_oRecorder, &document);
        m_pReader = std::make_unique<XMLReader>(&m_oRecorder, &handler);
        QCOMPARE(Parse(ReadTemplate(kOther)), QStringLiteral("( c[a|] d[b|] /d /c ) 1"));
        m_pReader.reset();
        QCOMPARE(handler.GetCurrentElement()->tagName(), QStringLiteral("a"));
    }

    void stopsAtItsLimits()
    {
        QDomDocument deep = ReadTemplate(kSmall);
        deep.documentElement().appendChild(MakeChain(deep, deep.createElement(QStringLiteral("x")), 100000));
        QTest::ignoreMessage(QtInfoMsg, "XMLReader: the content is not parsed, since it nests more elements than 500");
        QCOMPARE(Parse(deep), QStringLiteral("0"));
        QCOMPARE(Found("x", "n"), QStringLiteral("x"));
        dom::TakeApart(deep.documentElement());
        // Depth that only the parser sees.
        const QString hidden = QLatin1String("-->") + QStringLiteral("<n>").repeated(100000);
        deep.documentElement().appendChild(deep.createComment(hidden));
        QTest::ignoreMessage(QtInfoMsg, QRegularExpression(QStringLiteral("^XMLReader: .*, or no further: ")));
        QVERIFY(!m_pReader->ParseXml());
    }

    void canBeUsedAfterAReceiverHasThrown()
    {
        m_oRecorder.m_pHook = [this](XmlEvent *) {
            m_pReader->SetXmlContent(ReadTemplate(kOther));
            throw 1;
        };
        QVERIFY_EXCEPTION_THROWN(Parse(ReadTemplate(kSmall)), int);
        m_oRecorder.m_pHook = nullptr;
        QCOMPARE(Parse(), kOtherLog);
    }

    void findsNodes()
    {
        QCOMPARE(Found("x"), QString());
        QDomDocument document = ReadTemplate(kTree + QLatin1String("<!-- -->"));
        m_pReader->SetXmlContent(document);
        QCOMPARE(Found("x"), QStringLiteral("x:1 x:3 x:4")); // a match hides what is in it
        QCOMPARE(Found("x", "y"), QStringLiteral("x:3")); // below the first of several
        QCOMPARE(Found("x", "x"), QStringLiteral("#comment x:2"));
        QCOMPARE(Found("#text"), QStringLiteral("#text"));
        QCOMPARE(Found("x", "#text"), QString());
        QCOMPARE(Found("r"), QStringLiteral("#comment")); // the document's last child stands for the root's name
        QDomNode root = document.documentElement();
        m_pReader->SetXmlContent(root);
        QCOMPARE(Found("x"), QStringLiteral("r x:2")); // begins at the first child
        QCOMPARE(Found("y"), QString());
        QDomDocumentFragment fragment = document.createDocumentFragment();
        while (root.hasChildNodes()) {
            fragment.appendChild(root.firstChild());
        }
        m_pReader->SetXmlContent(fragment);
        QCOMPARE(Found("x"), QStringLiteral("x:1 x:2"));
        // An instruction ends the search of its parent.
        m_pReader->SetXmlContent(ReadTemplate(QStringLiteral("<r><a><?p?><p><x/></p></a><p><x id='3'/></p></r>")));
        QCOMPARE(Found("x", "p"), QStringLiteral("x:3"));
    }

    void searchesBelowTheCursor()
    {
        m_pReader->SetXmlContent(
            ReadTemplate(QStringLiteral("<r><a><x id='1'/></a><b><x id='2'/><b id='3'/></b></r>")));
        QStringList found;
        m_oRecorder.m_pHook = [&](XmlEvent *event) {
            found += FoundBelow("x");
            if (event->GetType() == XmlEvent::EVENT_DOC_BEGIN) {
                // The whole content, before the parser has reached any of it.
                found += { FoundBelow("dummy"), Found("x", "b") };
            }
        };
        QVERIFY(m_pReader->ParseXml());
        QCOMPARE(found.join(QLatin1Char(',')), QStringLiteral(",r,x:2,x:1 x:2,x:1,r,r,x:1,x:2,r,r,,,,x:2,x:2"));
        // The cursor's own name gives the root, which stands for the content.
        QCOMPARE(FoundBelow("b"), QStringLiteral("r b:3"));
    }

    void keptNodesHaveTheirSubtree()
    {
        for (const bool isDocumentGone : { false, true }) {
            m_pReader->SetXmlContent(new QDomDocument(ReadTemplate(QStringLiteral("<r><x a='&lt;'><z/></x><y/></r>"))));
            const QDomNode kept = m_pReader->GetElement(QStringLiteral("x"), QString())->front();
            QCOMPARE(Found("none"), QString());
            if (isDocumentGone) {
                m_pReader->SetXmlContent(ReadTemplate(kSmall));
            }
            // Neither its document nor its sibling is there any more.
            QCOMPARE(Parse(kept), QStringLiteral("( x a=<[|_] /z z[|_] /x ) 1"));
        }
    }

    void nullCallbackAnswersFalse()
    {
        QTest::ignoreMessage(QtInfoMsg, "XmlContentHandler: pCallback is NULL!");
        QTest::ignoreMessage(QtInfoMsg, "XMLReader: pCallback is NULL!");
        QDomDocument document = ReadTemplate(kSmall);
        XmlContentHandler handler(nullptr, &document);
        XMLReader reader(nullptr, &handler);
        QVERIFY(!reader.SetXmlContent(document) && !reader.SetXmlContent(&document) && !reader.ParseXml());
        QVERIFY(reader.GetElement(QStringLiteral("a"), QString())->empty());
        // Deaf, and harmless where it is used after all.
        QVERIFY(handler.startElement(QString(), QString(), QStringLiteral("a"), QXmlAttributes()));
        m_pReader = std::make_unique<XMLReader>(&m_oRecorder, &handler);
        QCOMPARE(Parse(document), QStringLiteral("1"));
    }
};

QTEST_GUILESS_MAIN(TstXmlReader)
#include "tst_xmlreader.moc"
