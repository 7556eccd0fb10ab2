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

const QString kSmall = QStringLiteral("<a><b/></a>");
const QString kSmallLog = QStringLiteral("( a[a|] b[b|] /b /a ) 1");
const QString kOther = QStringLiteral("<c><d/></c>");
const QString kOtherLog = QStringLiteral("( c[c|] d[d|] /d /c ) 1");

} // namespace

class TstXmlReader : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void sendsEvents_data();
    void sendsEvents();
    void eachContentReplacesTheOneBefore();
    void unreadableContentIsFalse();
    void replacedContentLivesToTheEndOfItsParse();
    void goesOnWhereNodesAreTakenOut();
    void deletesHandedOverDocumentAtNextContentOnly();
    void hostHandlerStaysAsItIs();
    void stopsAtItsLimits();
    void canBeUsedAfterAReceiverHasThrown();
    void findsNodes_data();
    void findsNodes();
    void searchesBelowTheCursor();
    void keptNodesHaveTheirSubtree_data();
    void keptNodesHaveTheirSubtree();
    void nullCallbackAnswersFalse();

private:
    QString Write(const QString &content);
    QString Parse();
    template <typename Content>
    QString Parse(Content content)
    {
        m_pReader->SetXmlContent(content);
        return Parse();
    }

    QTemporaryDir m_oDir;
    EventRecorder m_oRecorder;
    std::unique_ptr<XMLReader> m_pReader;
};

void TstXmlReader::init()
{
    m_oRecorder = EventRecorder();
    m_pReader = std::make_unique<XMLReader>(&m_oRecorder, nullptr);
    ErrorHandler::SetTraceMask(32);
}

QString TstXmlReader::Write(const QString &content)
{
    QFile file(m_oDir.filePath(QStringLiteral("content.xml")));
    return file.open(QIODevice::WriteOnly) && file.write(content.toUtf8()) > 0 ? file.fileName() : QString();
}

/// The events of a parse, and its result.
QString TstXmlReader::Parse()
{
    m_oRecorder.m_lEvents.clear();
    const bool result = m_pReader->ParseXml();
    return (m_oRecorder.m_lEvents << QString::number(result)).join(QLatin1Char(' '));
}

void TstXmlReader::sendsEvents_data()
{
    QTest::addColumn<QString>("xml");
    QTest::addColumn<QString>("withDocument");
    QTest::addColumn<QString>("withoutDocument");

    // Without a document the line ends of the serialisation are the text of what has none, behind an empty element.
    QTest::newRow("cursor goes down, across and up") << "<a><b><c x='1'/></b><d/></a>"
                                                     << "( a[a|] b[b|] c x=1[c|] /c /b d[d|] /d /a ) 1"
                                                     << "( a[|_] b[|_] /c c x=1[|_] /b /d d[|_] /a ) 1";
    QTest::newRow("leading text hides the children") << "<a>x<b/></a>"
                                                     << "( a[a|] b[a|] /b /a ) 1"
                                                     << "( a[|x] /b b[|_] /a ) 1";
    QTest::newRow("comment stops the cursor") << "<a><b/><!-- --><c/><d/></a>"
                                              << "( a[a|] b[b|] /b c[b|] /c d[b|] /d /a ) 1"
                                              << "( a[|_] /b b[|_] /c c[|_] /d d[|_] /a ) 1";
    QTest::newRow("instruction as first child") << "<a><?p i?><b/></a>"
                                                << "( a[a|] b[a|] /b /a ) 1"
                                                << "( a[|_] /b b[|_] /a ) 1";
    QTest::newRow("same name moves nowhere") << "<r><a><a/></a><b/></r>"
                                             << "( r[r|] a[a|] a[a|] /a /a b[a|] /b /r ) 1"
                                             << "( r[|_] a[|_] /a a[|_] /a /b b[|_] /r ) 1";
    QTest::newRow("text behind an empty element") << "<a><b/>x<c>y</c>z</a>"
                                                  << "( a[a|] b[b|] /b c[b|] /c /a ) 1"
                                                  << "( a[|_] /b b[|x] c[|y] /c /a ) 1";
    QTest::newRow("nothing before the end") << "<a/>"
                                            << "( a[a|] /a ) 1"
                                            << "( /a ) 1";
}

void TstXmlReader::sendsEvents()
{
    QFETCH(QString, xml);
    QTEST(Parse(Write(xml)), "withDocument");
    // A second run begins anew.
    QTEST(Parse(), "withDocument");
    QTEST(Parse(QDomNode(Document(xml).documentElement())), "withoutDocument");
}

void TstXmlReader::eachContentReplacesTheOneBefore()
{
    const QDomDocument small = Document(kSmall);
    QDomDocumentFragment fragment = QDomDocument(small).createDocumentFragment();
    fragment.appendChild(small.documentElement().cloneNode());
    QCOMPARE(Parse(), QStringLiteral("0"));
    QCOMPARE(Parse(small), kSmallLog);
    QCOMPARE(Parse(Write(kOther)), kOtherLog);
    QCOMPARE(m_pReader->SearchBelowCurrentElement(QStringLiteral("d"))->size(), std::size_t(1));
    m_pReader->SetXmlContent(fragment);
    QVERIFY(m_pReader->SearchBelowCurrentElement(QStringLiteral("d"))->empty());
    QCOMPARE(Parse(), QStringLiteral("( a[|_] /b b[|_] /a ) 1"));
    QCOMPARE(Parse(new QDomDocument(small)), kSmallLog);
    // A node that is a document has nodes to follow.
    QCOMPARE(Parse(static_cast<const QDomNode &>(Document(kOther))), kOtherLog);
}

void TstXmlReader::unreadableContentIsFalse()
{
    QVERIFY(m_pReader->SetXmlContent(m_oDir.filePath(QStringLiteral("missing.xml"))) && !m_pReader->ParseXml());
    QTest::ignoreMessage(QtInfoMsg, QRegularExpression(QStringLiteral("^XMLReader: .* no regular file")));
    QVERIFY(m_pReader->SetXmlContent(m_oDir.path()) && !m_pReader->ParseXml());
    QCOMPARE(Parse(static_cast<QDomDocument *>(nullptr)), QStringLiteral("0"));
    QCOMPARE(Parse(Write(QStringLiteral("<a><b/></c>"))), QStringLiteral("( a[a|] b[b|] /b 0"));
    // The file is read anew at each parse.
    Write(kSmall);
    QCOMPARE(Parse().right(1), QStringLiteral("1"));
}

void TstXmlReader::replacedContentLivesToTheEndOfItsParse()
{
    std::size_t found = 99;
    m_oRecorder.m_pHook = [&](XmlEvent *event) {
        QTest::ignoreMessage(QtInfoMsg, "XMLReader: ParseXml was called from inside its own parse");
        QVERIFY(!m_pReader->ParseXml());
        if (event->GetType() == XmlEvent::EVENT_DOC_BEGIN) {
            m_pReader->SetXmlContent(new QDomDocument(Document(kOther)));
            m_pReader->SetXmlContent(Document(kOther));
            found = m_pReader->GetElement(QStringLiteral("d"), QString())->size()
                + m_pReader->SearchBelowCurrentElement(QStringLiteral("dummy"))->size();
        }
    };
    QCOMPARE(Parse(new QDomDocument(Document(kSmall))), kSmallLog);
    QCOMPARE(found, std::size_t(1));
    QCOMPARE(Parse(Write(kSmall)), kSmallLog);
    QCOMPARE(Parse(), kOtherLog);
}

void TstXmlReader::goesOnWhereNodesAreTakenOut()
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

void TstXmlReader::deletesHandedOverDocumentAtNextContentOnly()
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

void TstXmlReader::hostHandlerStaysAsItIs()
{
    QDomDocument document = Document(kSmall);
    XmlContentHandler handler(&m_oRecorder, &document);
    m_pReader = std::make_unique<XMLReader>(&m_oRecorder, &handler);
    QCOMPARE(Parse(Document(kOther)), QStringLiteral("( c[a|] d[b|] /d /c ) 1"));
    m_pReader.reset();
    QCOMPARE(handler.GetCurrentElement()->tagName(), QStringLiteral("a"));
}

void TstXmlReader::stopsAtItsLimits()
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
    QCOMPARE(m_pReader->GetElement(QStringLiteral("x"), QStringLiteral("n"))->size(), std::size_t(1));
    DismantleChain(chain);
    // Depth that only the parser sees.
    deep.documentElement().appendChild(
        deep.createComment(QLatin1String("-->") + Nested(100000) + QLatin1String("<!--")));
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

void TstXmlReader::canBeUsedAfterAReceiverHasThrown()
{
    m_oRecorder.m_pHook = [this](XmlEvent *) {
        m_pReader->SetXmlContent(Document(kOther));
        throw 1;
    };
    QVERIFY_EXCEPTION_THROWN(Parse(Document(kSmall)), int);
    m_oRecorder.m_pHook = nullptr;
    QCOMPARE(Parse(), kOtherLog);
}

void TstXmlReader::findsNodes_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QString>("xml");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("parent");
    QTest::addColumn<QString>("found");
    const QString tree = QStringLiteral("<r><x id='1'><x id='2'/></x><y><x id='3'/></y><y><x id='4'/>t</y></r>");
    const auto row = [](const char *tag, const char *kind, const QString &xml, const QStringList &words) {
        QTest::newRow(tag) << QString::fromLatin1(kind) << xml << words[0] << words[1] << words[2];
    };
    const auto words = [](const char *text) { return QString::fromLatin1(text).split(QLatin1Char(',')); };
    row("a match hides what is in it", "document", tree, words("x,,x:1 x:3 x:4"));
    row("below the first of several parents", "document", tree, words("x,y,x:3"));
    row("the root's name gives the last child", "document", tree + QLatin1String("<!-- -->"), words("r,,#comment"));
    row("name and parent alike", "document", tree, words("x,x,r x:2"));
    row("unknown parent", "document", tree, words("x,z,"));
    row("texts", "document", tree, words("#text,,#text"));
    row("a text is no parent", "document", tree, words("x,#text,"));
    row("an instruction hides its siblings", "document", QStringLiteral("<r><a><?y?><y><x/></y></a><y id='1'><x/></y></r>"),
        words("x,y,x"));
    row("node: begins at the first child", "node", tree, words("x,,r x:2"));
    row("node: sees nothing behind it", "node", tree, words("y,,"));
    row("node: leading text", "node", QStringLiteral("<r>t<x/></r>"), words("x,,"));
    row("fragment: begins at the first child", "fragment", tree, words("x,,x:1 x:2"));
    row("fragment: sees nothing behind it", "fragment", tree, words("y,,"));
    row("no content", "none", tree, words(",,"));
    row("null document", "null", tree, words(",,"));
}

void TstXmlReader::findsNodes()
{
    QFETCH(QString, kind);
    QFETCH(QString, xml);
    QFETCH(QString, name);
    QFETCH(QString, parent);
    QDomDocument document;
    QVERIFY(document.setContent(xml));
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

void TstXmlReader::searchesBelowTheCursor()
{
    QDomDocument document;
    document.setContent(QStringLiteral("<r><a><x id='1'/></a><b><x id='2'/><b id='3'/></b></r>"));
    QVERIFY(m_pReader->SearchBelowCurrentElement(QString())->empty());
    m_pReader->SetXmlContent(document);
    QStringList found;
    m_oRecorder.m_pHook = [&](XmlEvent *event) {
        found += Shown(m_pReader->SearchBelowCurrentElement(QStringLiteral("x")));
        if (event->GetType() == XmlEvent::EVENT_DOC_BEGIN) {
            found += Shown(m_pReader->SearchBelowCurrentElement(QStringLiteral("dummy")));
            // The whole content, before the parser has reached any of it.
            found += Shown(m_pReader->GetElement(QStringLiteral("x"), QStringLiteral("b")));
        }
    };
    QVERIFY(m_pReader->ParseXml());
    QCOMPARE(found.join(QLatin1Char(',')), QStringLiteral(",r,x:2,x:1 x:2,x:1,r,r,x:1,x:2,r,r,,,,x:2,x:2"));
    // The cursor's own name gives the root, which stands for the content.
    QCOMPARE(Shown(m_pReader->SearchBelowCurrentElement(QStringLiteral("b"))), QStringLiteral("r b:3"));
}

void TstXmlReader::keptNodesHaveTheirSubtree_data()
{
    QTest::addColumn<bool>("isDocumentGone");
    QTest::newRow("its document goes with the content") << false;
    QTest::newRow("its document has gone before") << true;
}

void TstXmlReader::keptNodesHaveTheirSubtree()
{
    QFETCH(bool, isDocumentGone);
    m_pReader->SetXmlContent(new QDomDocument(Document(QStringLiteral("<r><x a='&lt;'><z/></x><y/></r>"))));
    const QDomNode kept = m_pReader->GetElement(QStringLiteral("x"), QString())->front();
    QVERIFY(m_pReader->GetElement(QStringLiteral("none"), QString())->empty());
    if (isDocumentGone) {
        m_pReader->SetXmlContent(Document(kSmall));
    }
    // Neither its document nor its sibling is there any more.
    QCOMPARE(Parse(kept), QStringLiteral("( x a=<[|_] /z z[|_] /x ) 1"));
}

void TstXmlReader::nullCallbackAnswersFalse()
{
    QTest::ignoreMessage(QtInfoMsg, "XmlContentHandler: pCallback is NULL!");
    QTest::ignoreMessage(QtInfoMsg, "XMLReader: pCallback is NULL!");
    QDomDocument document = Document(kSmall);
    XmlContentHandler handler(nullptr, &document);
    XMLReader reader(nullptr, &handler);
    QVERIFY(!reader.SetXmlContent(document) && !reader.SetXmlContent(&document) && !reader.ParseXml());
    QVERIFY(reader.GetElement(QStringLiteral("a"), QString())->empty());
    QVERIFY(reader.SearchBelowCurrentElement(QStringLiteral("a"))->empty());
    // Deaf, and harmless where it is used after all.
    QVERIFY(handler.startElement(QString(), QString(), QStringLiteral("a"), QXmlAttributes()));
    m_pReader = std::make_unique<XMLReader>(&m_oRecorder, &handler);
    QCOMPARE(Parse(document), QStringLiteral("1"));
}

QTEST_GUILESS_MAIN(TstXmlReader)
#include "tst_xmlreader.moc"
