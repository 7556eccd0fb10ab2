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
const QString kSmallLog = QStringLiteral("( a[a|] b[b|] /b /a )");
const QString kOther = QStringLiteral("<c><d/></c>");
const QString kOtherLog = QStringLiteral("( c[c|] d[d|] /d /c )");

} // namespace

class TstXmlReader : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void sendsEvents_data();
    void sendsEvents();
    void eachKindOfContentReplacesTheOneBefore();
    void unreadableContentIsFalse();
    void replacedContentLivesToTheEndOfItsParse();
    void refusesNestedParse();
    void goesOnWhereNodesAreTakenOut();
    void deletesHandedOverDocumentAtNextContentOnly();
    void hostHandlerStaysAsItIs();
    void stopsAtTheDepthLimit();
    void keepsEntitiesFromGrowing();
    void nullCallbackAnswersFalse();

private:
    QString Write(const QString &content, const QString &name = QStringLiteral("content.xml"));
    bool Parse(const QString &log);

    QTemporaryDir m_oDir;
    EventRecorder m_oRecorder;
    std::unique_ptr<XMLReader> m_pReader;
};

void TstXmlReader::init()
{
    m_oRecorder.m_pHook = nullptr;
    m_oRecorder.TakeLog();
    m_pReader = std::make_unique<XMLReader>(&m_oRecorder, nullptr);
}

QString TstXmlReader::Write(const QString &content, const QString &name)
{
    QFile file(m_oDir.filePath(name));
    return file.open(QIODevice::WriteOnly) && file.write(content.toUtf8()) >= 0 ? file.fileName() : QString();
}

/// True if the parse is true and gives these events.
bool TstXmlReader::Parse(const QString &log)
{
    const bool parsed = m_pReader->ParseXml();
    const QString found = m_oRecorder.TakeLog();
    return (parsed && found == log) || (qWarning("%s", qUtf8Printable(found)), false);
}

void TstXmlReader::sendsEvents_data()
{
    QTest::addColumn<QString>("xml");
    QTest::addColumn<QString>("withDocument");
    QTest::addColumn<QString>("withoutDocument");

    // Without a document the line ends of the serialisation are the text of what has none, behind an empty element.
    QTest::newRow("cursor goes down, across and up") << "<a><b><c/></b><d/></a>"
                                                     << "( a[a|] b[b|] c[c|] /c /b d[d|] /d /a )"
                                                     << "( a[|_] b[|_] /c c[|_] /b /d d[|_] /a )";
    QTest::newRow("leading text hides the children") << "<a>x<b/></a>"
                                                     << "( a[a|] b[a|] /b /a )"
                                                     << "( a[|x] /b b[|_] /a )";
    QTest::newRow("comment stops the cursor") << "<a><b/><!-- --><c/><d/></a>"
                                              << "( a[a|] b[b|] /b c[b|] /c d[b|] /d /a )"
                                              << "( a[|_] /b b[|_] /c c[|_] /d d[|_] /a )";
    QTest::newRow("instruction as first child") << "<a><?p i?><b/></a>"
                                                << "( a[a|] b[a|] /b /a )"
                                                << "( a[|_] /b b[|_] /a )";
    QTest::newRow("same name moves nowhere") << "<r><a><a/></a><b/></r>"
                                             << "( r[r|] a[a|] a[a|] /a /a b[a|] /b /r )"
                                             << "( r[|_] a[|_] /a a[|_] /a /b b[|_] /r )";
    QTest::newRow("text behind an empty element counts for it") << "<a><b/>x<c>y</c>z</a>"
                                                                << "( a[a|] b[b|] /b c[b|] /c /a )"
                                                                << "( a[|_] /b b[|x] c[|y] /c /a )";
    QTest::newRow("no text before the end") << "<a/>"
                                            << "( a[a|] /a )"
                                            << "( /a )";
}

void TstXmlReader::sendsEvents()
{
    QFETCH(QString, xml);
    QFETCH(QString, withDocument);
    QFETCH(QString, withoutDocument);
    const QDomDocument document = Document(xml);
    QVERIFY(m_pReader->SetXmlContent(Write(xml)));
    // A second run begins anew.
    QVERIFY(Parse(withDocument) && Parse(withDocument));
    m_pReader->SetXmlContent(document.documentElement());
    QVERIFY(Parse(withoutDocument) && Parse(withoutDocument));
}

void TstXmlReader::eachKindOfContentReplacesTheOneBefore()
{
    const QDomDocument small = Document(kSmall);
    QDomDocumentFragment fragment = QDomDocument(small).createDocumentFragment();
    fragment.appendChild(small.documentElement().cloneNode());
    QVERIFY(!m_pReader->ParseXml());
    QVERIFY(m_pReader->SetXmlContent(small) && Parse(kSmallLog));
    QVERIFY(m_pReader->SetXmlContent(Write(kOther)) && Parse(kOtherLog));
    QVERIFY(m_pReader->SearchBelowCurrentElement(QStringLiteral("d"))->size() == 1);
    QVERIFY(m_pReader->SetXmlContent(fragment));
    QVERIFY(m_pReader->SearchBelowCurrentElement(QStringLiteral("d"))->empty());
    QVERIFY(Parse(QStringLiteral("( a[|_] /b b[|_] /a )")));
    QVERIFY(m_pReader->SetXmlContent(new QDomDocument(small)) && Parse(kSmallLog));
    QVERIFY(m_pReader->SetXmlContent(Document(kOther).documentElement())
            && Parse(QStringLiteral("( c[|_] /d d[|_] /c )")));
    // A node that is a document has nodes to follow.
    QVERIFY(m_pReader->SetXmlContent(static_cast<const QDomNode &>(small)) && Parse(kSmallLog));
}

void TstXmlReader::unreadableContentIsFalse()
{
    QVERIFY(m_pReader->SetXmlContent(m_oDir.filePath(QStringLiteral("missing.xml"))));
    QVERIFY(!m_pReader->ParseXml());
    QVERIFY(m_pReader->SetXmlContent(m_oDir.path()) && !m_pReader->ParseXml());
    QVERIFY(m_pReader->SetXmlContent(static_cast<QDomDocument *>(nullptr)) && !m_pReader->ParseXml());
    m_oRecorder.TakeLog();
    QVERIFY(m_pReader->SetXmlContent(Write(QStringLiteral("<a><b/></c>"))));
    QVERIFY(!m_pReader->ParseXml());
    QCOMPARE(m_oRecorder.TakeLog(), QStringLiteral("( a[a|] b[b|] /b"));
    // The file is read anew at each parse.
    Write(kSmall);
    QVERIFY(m_pReader->ParseXml());
}

void TstXmlReader::replacedContentLivesToTheEndOfItsParse()
{
    std::size_t found = 99;
    m_oRecorder.m_pHook = [&](XmlEvent *event) {
        if (event->GetType() == XmlEvent::EVENT_DOC_BEGIN) {
            m_pReader->SetXmlContent(new QDomDocument(Document(kOther)));
            m_pReader->SetXmlContent(Document(kOther));
            found = m_pReader->GetElement(QStringLiteral("d"), QString())->size()
                + m_pReader->SearchBelowCurrentElement(QStringLiteral("dummy"))->size();
        }
    };
    m_pReader->SetXmlContent(new QDomDocument(Document(kSmall)));
    QVERIFY(Parse(kSmallLog));
    QCOMPARE(found, std::size_t(1));
    m_pReader->SetXmlContent(Write(kSmall));
    QVERIFY(Parse(kSmallLog));
    QVERIFY(Parse(kOtherLog));
}

void TstXmlReader::refusesNestedParse()
{
    m_oRecorder.m_pHook = [&](XmlEvent *) { QVERIFY(!m_pReader->ParseXml()); };
    m_pReader->SetXmlContent(Document(kSmall));
    QVERIFY(Parse(kSmallLog));
}

void TstXmlReader::goesOnWhereNodesAreTakenOut()
{
    m_oRecorder.m_pHook = [](XmlEvent *event) {
        if (event->GetType() == XmlEvent::EVENT_ELEM_BEGIN) {
            const QDomNode node = static_cast<ElemBeginEvent *>(event)->GetElementNode();
            node.parentNode().removeChild(node);
        }
    };
    m_pReader->SetXmlContent(Write(QStringLiteral("<a><b/><c><d/><e/></c><f/></a>")));
    // A node that was taken out has no siblings to step to, and no parent to go back to.
    QVERIFY(Parse(QStringLiteral("( a[a|] b[b|] /b c[b|] d[b|] /d e[b|] /e /c f[|] /f /a )")));
}

void TstXmlReader::deletesHandedOverDocumentAtNextContentOnly()
{
    // A root is without its parent when its document is gone.
    auto *first = new QDomDocument(Document(kSmall));
    const QDomElement root = first->documentElement();
    m_pReader->SetXmlContent(first);
    m_pReader->SetXmlContent(first);
    QVERIFY(root.parentNode().isDocument());
    auto second = std::make_unique<QDomDocument>(Document(kOther));
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
    QVERIFY(m_pReader->SearchBelowCurrentElement(QStringLiteral("b"))->empty());
    m_pReader->SetXmlContent(Document(kOther));
    QVERIFY(Parse(QStringLiteral("( c[a|] d[b|] /d /c )")));
    m_pReader.reset();
    QCOMPARE(handler.GetCurrentElement()->tagName(), QStringLiteral("a"));
}

void TstXmlReader::stopsAtTheDepthLimit()
{
    QVERIFY(m_pReader->SetXmlContent(Write(Nested(500))) && m_pReader->ParseXml());
    // The file has grown since it was checked.
    Write(Nested(501));
    m_oRecorder.TakeLog();
    QVERIFY(!m_pReader->ParseXml());
    ErrorHandler::SetTraceMask(32);
    QTest::ignoreMessage(QtInfoMsg, QRegularExpression(QStringLiteral("^XMLReader: the content is not read: .*500")));
    QVERIFY(m_pReader->SetXmlContent(Write(Nested(30000))) && !m_pReader->ParseXml());
    QVERIFY(m_pReader->GetElement(QStringLiteral("n"), QString())->empty());

    QDomDocument deep = Document(kSmall);
    const QDomElement chain = MakeChain(deep, deep.createElement(QStringLiteral("x")), 100000);
    deep.documentElement().appendChild(chain);
    m_pReader->SetXmlContent(deep);
    const QRegularExpression tooDeep(QStringLiteral("^XMLReader: the content nests deeper than 500 elements"));
    QTest::ignoreMessage(QtInfoMsg, tooDeep);
    QVERIFY(!m_pReader->ParseXml());
    QCOMPARE(m_pReader->GetElement(QStringLiteral("x"), QStringLiteral("n"))->size(), std::size_t(1));
    QVERIFY(m_oRecorder.TakeLog().isEmpty());
    DismantleChain(chain);
    // Depth that only the parser sees.
    deep.documentElement().appendChild(
        deep.createComment(QLatin1String("-->") + Nested(100000) + QLatin1String("<!--")));
    QTest::ignoreMessage(QtInfoMsg, tooDeep);
    QVERIFY(!m_pReader->ParseXml());
    ErrorHandler::SetTraceMask(0);
}

void TstXmlReader::keepsEntitiesFromGrowing()
{
    const QString entity = QStringLiteral("<!DOCTYPE a [<!ENTITY e '%1'>]><a>").arg(QString(100000, QLatin1Char('x')));
    QVERIFY(m_pReader->SetXmlContent(Write(entity + QStringLiteral("&e;").repeated(2000) + QLatin1String("</a>"))));
    QVERIFY(!m_pReader->ParseXml());
    QVERIFY(m_pReader->SetXmlContent(Write(entity + QLatin1String("&e;</a>"))));
    QVERIFY(m_pReader->ParseXml());
    QCOMPARE(m_pReader->GetElement(QStringLiteral("#text"), QString())->front().nodeValue().size(), 100000);
}

void TstXmlReader::nullCallbackAnswersFalse()
{
    ErrorHandler::SetTraceMask(32);
    QTest::ignoreMessage(QtInfoMsg, "XmlContentHandler: pCallback is NULL!");
    QTest::ignoreMessage(QtInfoMsg, "XMLReader: pCallback is NULL!");
    QDomDocument document = Document(kSmall);
    XmlContentHandler handler(nullptr, &document);
    XMLReader reader(nullptr, &handler);
    ErrorHandler::SetTraceMask(0);
    QVERIFY(!reader.SetXmlContent(document) && !reader.SetXmlContent(&document) && !reader.ParseXml());
    QVERIFY(reader.GetElement(QStringLiteral("a"), QString())->empty());
    QVERIFY(reader.SearchBelowCurrentElement(QStringLiteral("a"))->empty());
    // Deaf, and harmless where it is used after all.
    QVERIFY(handler.startElement(QString(), QString(), QStringLiteral("a"), QXmlAttributes()));
    m_pReader = std::make_unique<XMLReader>(&m_oRecorder, &handler);
    QVERIFY(m_pReader->SetXmlContent(document) && Parse(QString()));
}

QTEST_GUILESS_MAIN(TstXmlReader)
#include "tst_xmlreader.moc"
