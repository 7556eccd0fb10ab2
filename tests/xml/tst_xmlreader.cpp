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
    void stopsAtTheDepthLimit();
    void keepsEntitiesFromGrowing();
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

void TstXmlReader::stopsAtTheDepthLimit()
{
    QVERIFY(m_pReader->SetXmlContent(Write(Nested(500))) && m_pReader->ParseXml());
    // The file has grown since it was looked at.
    Write(Nested(501));
    const QRegularExpression notRead(QStringLiteral("^XMLReader: the content is not read: .*500"));
    QTest::ignoreMessage(QtInfoMsg, notRead);
    QCOMPARE(Parse(), QStringLiteral("0"));
    QTest::ignoreMessage(QtInfoMsg, notRead);
    QVERIFY(m_pReader->SetXmlContent(Write(Nested(30000))) && !m_pReader->ParseXml());
    QVERIFY(m_pReader->GetElement(QStringLiteral("n"), QString())->empty());

    QDomDocument deep = Document(kSmall);
    const QDomElement chain = MakeChain(deep, deep.createElement(QStringLiteral("x")), 100000);
    deep.documentElement().appendChild(chain);
    const QRegularExpression tooDeep(QStringLiteral("^XMLReader: the content is not parsed, .* 500$"));
    QTest::ignoreMessage(QtInfoMsg, tooDeep);
    QCOMPARE(Parse(deep), QStringLiteral("0"));
    QCOMPARE(m_pReader->GetElement(QStringLiteral("x"), QStringLiteral("n"))->size(), std::size_t(1));
    DismantleChain(chain);
    // Depth that only the parser sees.
    deep.documentElement().appendChild(
        deep.createComment(QLatin1String("-->") + Nested(100000) + QLatin1String("<!--")));
    QTest::ignoreMessage(QtInfoMsg, tooDeep);
    QVERIFY(!m_pReader->ParseXml());
}

void TstXmlReader::keepsEntitiesFromGrowing()
{
    const QString entity = QStringLiteral("<!DOCTYPE a [<!ENTITY e '%1'>]><a>").arg(QString(100000, QLatin1Char('x')));
    QTest::ignoreMessage(QtInfoMsg, QRegularExpression(QStringLiteral("^XMLReader: the content is not read: ")));
    QCOMPARE(Parse(Write(entity + QStringLiteral("&e;").repeated(2000) + QLatin1String("</a>"))), QStringLiteral("0"));
    QCOMPARE(Parse(Write(entity + QLatin1String("&e;</a>"))), QStringLiteral("( a[a|] /a ) 1"));
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
