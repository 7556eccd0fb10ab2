#include "support/deepdocument.h"
#include "support/eventrecorder.h"

#include "host/veldra.h"
#include "xml/xmlcontenthandler.h"
#include "xml/xmlreader.h"

#include <QtTest>

#include <type_traits>

static_assert(!std::is_copy_constructible_v<XMLReader> && !std::is_copy_assignable_v<XMLReader>);

namespace {

QDomDocument Document(const QString &xml)
{
    QDomDocument document;
    document.setContent(xml);
    return document;
}

QString Nested(int depth)
{
    return QStringLiteral("<n>").repeated(depth) + QStringLiteral("</n>").repeated(depth);
}

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

/// One row of texts for each line: a name, and the columns behind "; ".
void AddRows(const std::vector<const char *> &columns, const char *rows)
{
    for (const char *column : columns) {
        QTest::addColumn<QString>(column);
    }
    for (const QString &row : QString::fromLatin1(rows).split(QLatin1Char('\n'), Qt::SkipEmptyParts)) {
        const QStringList fields = row.split(QLatin1String("; "));
        QTestData &data = QTest::newRow(qPrintable(fields.value(0)));
        for (int i = 1; i <= int(columns.size()); ++i) {
            data << fields.value(i);
        }
    }
}

const QString kSmall = QStringLiteral("<a><b/></a>");
const QString kSmallLog = QStringLiteral("( a[a|] b[b|] /b /a ) 1");
const QString kOther = QStringLiteral("<c><d/></c>");
const QString kOtherLog = QStringLiteral("( c[c|] d[d|] /d /c ) 1");
const QString kTree = QStringLiteral("<r><x id='1'><x id='2'/></x><y><x id='3'/></y><y><x id='4'/>t</y></r>");

} // namespace

class TstXmlReader : public QObject
{
    Q_OBJECT

    QString Write(const QString &content)
    {
        QFile file(m_oDir.filePath(QStringLiteral("content.xml")));
        return file.open(QIODevice::WriteOnly) && file.write(content.toUtf8()) > 0 ? file.fileName() : QString();
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
        ErrorHandler::SetTraceMask(32);
    }

    void sendsEvents_data()
    {
        // Without a document the line ends of the serialisation are the text of what has none, behind an empty element.
        AddRows({ "xml", "withDocument", "withoutDocument" }, R"(
down, across, up; <a><b><c x='1'/></b><d/></a>; a[a|] b[b|] c x=1[c|] /c /b d[d|] /d /a; a[|_] b[|_] /c c x=1[|_] /b /d d[|_] /a
text hides what follows; <a>x<b/></a>; a[a|] b[a|] /b /a; a[|x] /b b[|_] /a
comment stops the cursor; <a><b/><!-- --><c/><d/></a>; a[a|] b[b|] /b c[b|] /c d[b|] /d /a; a[|_] /b b[|_] /c c[|_] /d d[|_] /a
instruction first; <a><?p i?><b/></a>; a[a|] b[a|] /b /a; a[|_] /b b[|_] /a
same name moves nowhere; <r><a><a/></a><b/></r>; r[r|] a[a|] a[a|] /a /a b[a|] /b /r; r[|_] a[|_] /a a[|_] /a /b b[|_] /r
text behind an empty one; <a><b/>x<c>y</c>z</a>; a[a|] b[b|] /b c[b|] /c /a; a[|_] /b b[|x] c[|y] /c /a
nothing before the end; <a/>; a[a|] /a; /a
)");
    }
    void sendsEvents()
    {
        QFETCH(QString, xml);
        QFETCH(QString, withDocument);
        QFETCH(QString, withoutDocument);
        const QString frame = QStringLiteral("( %1 ) 1");
        QCOMPARE(Parse(Write(xml)), frame.arg(withDocument));
        // A second run begins anew.
        QCOMPARE(Parse(), frame.arg(withDocument));
        QCOMPARE(Parse(QDomNode(Document(xml).documentElement())), frame.arg(withoutDocument));
    }

    void eachContentReplacesTheOneBefore()
    {
        const QDomDocument small = Document(kSmall);
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
        QCOMPARE(Parse(static_cast<const QDomNode &>(Document(kOther))), kOtherLog);
    }

    void unreadableContentIsFalse()
    {
        QCOMPARE(Parse(m_oDir.filePath(QStringLiteral("missing.xml"))), QStringLiteral("( 0"));
        const QRegularExpression noFile(QStringLiteral("^XMLReader: .* no regular file"));
        QTest::ignoreMessage(QtInfoMsg, noFile);
        QTest::ignoreMessage(QtInfoMsg, noFile);
        QVERIFY(m_pReader->SetXmlContent(m_oDir.path()) && !m_pReader->ParseXml());
        QCOMPARE(Parse(static_cast<QDomDocument *>(nullptr)), QStringLiteral("0"));
        QCOMPARE(Parse(Write(QStringLiteral("<a><b/></c>"))), QStringLiteral("( a[a|] b[b|] /b 0"));
        // The file is read anew at each parse.
        Write(kSmall);
        QCOMPARE(Parse().right(1), QStringLiteral("1"));
    }

    void replacedContentLivesToTheEndOfItsParse()
    {
        QString found;
        m_oRecorder.m_pHook = [&](XmlEvent *event) {
            QTest::ignoreMessage(QtInfoMsg, "XMLReader: ParseXml was called from inside its own parse");
            QVERIFY(!m_pReader->ParseXml());
            if (event->GetType() == XmlEvent::EVENT_DOC_BEGIN) {
                m_pReader->SetXmlContent(new QDomDocument(Document(kOther)));
                m_pReader->SetXmlContent(Document(kOther));
                found = Found("d") + FoundBelow("dummy");
            }
        };
        QCOMPARE(Parse(new QDomDocument(Document(kSmall))), kSmallLog);
        QCOMPARE(found, QStringLiteral("d"));
        QCOMPARE(Parse(Write(kSmall)), kSmallLog);
        QCOMPARE(Parse(), kOtherLog);
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
        auto *first = new QDomDocument(Document(kSmall));
        const QDomElement root = first->documentElement();
        m_pReader->SetXmlContent(first);
        m_pReader->SetXmlContent(first);
        QVERIFY(root.parentNode().isDocument());
        const auto second = std::make_unique<QDomDocument>(Document(kOther));
        m_pReader->SetXmlContent(second.get());
        QVERIFY(root.parentNode().isNull());
        m_pReader.reset();
        QVERIFY(second->documentElement().parentNode().isDocument());
    }

    void hostHandlerStaysAsItIs()
    {
        QDomDocument document = Document(kSmall);
        XmlContentHandler handler(&m_oRecorder, &document);
        m_pReader = std::make_unique<XMLReader>(&m_oRecorder, &handler);
        QCOMPARE(Parse(Document(kOther)), QStringLiteral("( c[a|] d[b|] /d /c ) 1"));
        m_pReader.reset();
        QCOMPARE(handler.GetCurrentElement()->tagName(), QStringLiteral("a"));
    }

    void stopsAtItsLimits()
    {
        QVERIFY(m_pReader->SetXmlContent(Write(Nested(500))) && m_pReader->ParseXml());
        const QRegularExpression noFurther(QStringLiteral("^XMLReader: the content is not read, or no further: "));
        Write(Nested(501));
        QTest::ignoreMessage(QtInfoMsg, noFurther);
        QCOMPARE(Parse().count(QStringLiteral("n[n|]")), 500);

        QDomDocument deep = Document(kSmall);
        const QDomElement chain = MakeChain(deep, deep.createElement(QStringLiteral("x")), 100000);
        deep.documentElement().appendChild(chain);
        QTest::ignoreMessage(QtInfoMsg, "XMLReader: the content is not parsed, since it nests more elements than 500");
        QCOMPARE(Parse(deep), QStringLiteral("0"));
        QCOMPARE(Found("x", "n"), QStringLiteral("x"));
        DismantleChain(chain);
        // Depth that only the parser sees.
        const QString hidden = QLatin1String("-->") + Nested(100000) + QLatin1String("<!--");
        deep.documentElement().appendChild(deep.createComment(hidden));
        QTest::ignoreMessage(QtInfoMsg, noFurther);
        QVERIFY(!m_pReader->ParseXml());

        QDomDocument wide = Document(kSmall);
        for (int i = 0; i < 1500; ++i) {
            wide.documentElement().setAttribute(QStringLiteral("xmlns:p%1").arg(i), QStringLiteral("u"));
            wide.documentElement().appendChild(wide.createElement(QStringLiteral("c")));
        }
        QElapsedTimer timer;
        timer.start();
        QTest::ignoreMessage(QtInfoMsg, noFurther);
        QVERIFY(m_pReader->SetXmlContent(QDomNode(wide.documentElement())) && !m_pReader->ParseXml());
        QVERIFY(timer.elapsed() < 5000);
    }

    void canBeUsedAfterAReceiverHasThrown()
    {
        m_oRecorder.m_pHook = [this](XmlEvent *) {
            m_pReader->SetXmlContent(Document(kOther));
            throw 1;
        };
        QVERIFY_EXCEPTION_THROWN(Parse(Document(kSmall)), int);
        m_oRecorder.m_pHook = nullptr;
        QCOMPARE(Parse(), kOtherLog);
    }

    void findsNodes_data()
    {
        AddRows({ "kind", "xml", "name", "parent", "found" },
                R"(
a match hides what is in it; document; @; x; ; x:1 x:3 x:4
below the first of several parents; document; @; x; y; x:3
the root's name gives the last child; document; @<!-- -->; r; ; #comment
name and parent alike; document; @; x; x; r x:2
unknown parent; document; @; x; z; 
texts; document; @; #text; ; #text
a text is no parent; document; @; x; #text; 
an instruction ends its parent's search; document; <r><a><?p?><p><x/></p></a><p><x id='3'/></p></r>; x; p; x:3
node begins at the first child; node; @; x; ; r x:2
node sees nothing behind it; node; @; y; ; 
fragment begins at the first child; fragment; @; x; ; x:1 x:2
fragment sees nothing behind it; fragment; @; y; ; 
no content; none; @; ; ; 
null document; null; @; ; ; 
)");
    }
    void findsNodes()
    {
        QFETCH(QString, kind);
        QFETCH(QString, xml);
        QFETCH(QString, name);
        QFETCH(QString, parent);
        QDomDocument document = Document(xml.replace(QLatin1Char('@'), kTree));
        QDomNode root = document.documentElement();
        QDomDocumentFragment fragment = document.createDocumentFragment();
        if (kind == QLatin1String("document")) {
            m_pReader->SetXmlContent(document);
        } else if (kind == QLatin1String("node")) {
            m_pReader->SetXmlContent(root);
        } else if (kind == QLatin1String("fragment")) {
            while (root.hasChildNodes()) {
                fragment.appendChild(root.firstChild());
            }
            m_pReader->SetXmlContent(fragment);
        } else if (kind == QLatin1String("null")) {
            m_pReader->SetXmlContent(static_cast<QDomDocument *>(nullptr));
        }
        QTEST(Shown(m_pReader->GetElement(name, parent)), "found");
    }

    void searchesBelowTheCursor()
    {
        m_pReader->SetXmlContent(Document(QStringLiteral("<r><a><x id='1'/></a><b><x id='2'/><b id='3'/></b></r>")));
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
            m_pReader->SetXmlContent(new QDomDocument(Document(QStringLiteral("<r><x a='&lt;'><z/></x><y/></r>"))));
            const QDomNode kept = m_pReader->GetElement(QStringLiteral("x"), QString())->front();
            QCOMPARE(Found("none"), QString());
            if (isDocumentGone) {
                m_pReader->SetXmlContent(Document(kSmall));
            }
            // Neither its document nor its sibling is there any more.
            QCOMPARE(Parse(kept), QStringLiteral("( x a=<[|_] /z z[|_] /x ) 1"));
        }
    }

    void nullCallbackAnswersFalse()
    {
        QTest::ignoreMessage(QtInfoMsg, "XmlContentHandler: pCallback is NULL!");
        QTest::ignoreMessage(QtInfoMsg, "XMLReader: pCallback is NULL!");
        QDomDocument document = Document(kSmall);
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
