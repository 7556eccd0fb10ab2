#include "support/eventrecorder.h"

#include "xml/xmlreader.h"

#include <QtTest>

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

} // namespace

class TstReaderSearch : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void findsNodes_data();
    void findsNodes();
    void searchesBelowTheCursor();
    void listsAndNodesOutliveWhatTheyMay();

private:
    void SetContent(const QString &kind, const QString &xml);

    QTemporaryDir m_oDir;
    EventRecorder m_oRecorder;
    QDomDocument m_oDocument;
    std::unique_ptr<XMLReader> m_pReader;
};

void TstReaderSearch::SetContent(const QString &kind, const QString &xml)
{
    m_pReader = std::make_unique<XMLReader>(&m_oRecorder, nullptr);
    m_oDocument.setContent(xml);
    if (kind == QLatin1String("file")) {
        QFile file(m_oDir.filePath(QStringLiteral("content.xml")));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(xml.toUtf8()) > 0);
        file.close();
        m_pReader->SetXmlContent(file.fileName());
    } else if (kind == QLatin1String("document")) {
        m_pReader->SetXmlContent(m_oDocument);
    } else if (kind == QLatin1String("node")) {
        m_pReader->SetXmlContent(m_oDocument.documentElement());
    } else if (kind == QLatin1String("fragment")) {
        QDomDocumentFragment fragment = m_oDocument.createDocumentFragment();
        while (m_oDocument.documentElement().hasChildNodes()) {
            fragment.appendChild(m_oDocument.documentElement().firstChild());
        }
        m_pReader->SetXmlContent(fragment);
    } else if (kind == QLatin1String("null")) {
        m_pReader->SetXmlContent(static_cast<QDomDocument *>(nullptr));
    }
}

void TstReaderSearch::findsNodes_data()
{
    QTest::addColumn<QStringList>("kinds");
    QTest::addColumn<QString>("xml");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("parent");
    QTest::addColumn<QString>("found");

    const QString tree = QStringLiteral("<r><x id='1'><x id='2'/></x><y><x id='3'/></y><y><x id='4'/>t</y></r>");
    const QStringList whole { QStringLiteral("file"), QStringLiteral("document") };
    const QStringList node { QStringLiteral("node") };
    const QStringList fragment { QStringLiteral("fragment") };
    QTest::newRow("a match hides what is in it") << whole << tree << "x"
                                                 << ""
                                                 << "x:1 x:3 x:4";
    QTest::newRow("below the first of several parents") << whole << tree << "x"
                                                        << "y"
                                                        << "x:3";
    QTest::newRow("the root's name gives the last child") << whole << QString(tree + QLatin1String("<!-- -->")) << "r"
                                                          << ""
                                                          << "#comment";
    QTest::newRow("name and parent alike") << whole << tree << "x"
                                           << "x"
                                           << "r x:2";
    QTest::newRow("the root as parent") << whole << tree << "y"
                                        << "r"
                                        << "y y";
    QTest::newRow("unknown parent") << whole << tree << "x"
                                    << "z"
                                    << "";
    QTest::newRow("texts") << whole << tree << "#text"
                           << ""
                           << "#text";
    QTest::newRow("a text is no parent") << whole << tree << "x"
                                         << "#text"
                                         << "";
    QTest::newRow("exact names") << whole << tree << "X"
                                 << ""
                                 << "";
    QTest::newRow("node: begins at the first child") << node << tree << "x"
                                                     << ""
                                                     << "r x:2";
    QTest::newRow("node: sees nothing behind it") << node << tree << "y"
                                                  << ""
                                                  << "";
    QTest::newRow("node: leading text") << node << "<r>t<x/></r>"
                                        << "x"
                                        << ""
                                        << "";
    QTest::newRow("fragment: begins at the first child") << fragment << tree << "x"
                                                         << ""
                                                         << "x:1 x:2";
    QTest::newRow("fragment: sees nothing behind it") << fragment << tree << "y"
                                                      << ""
                                                      << "";
    QTest::newRow("nothing") << QStringList { QStringLiteral("none"), QStringLiteral("null") } << tree << ""
                             << ""
                             << "";
}

void TstReaderSearch::findsNodes()
{
    QFETCH(QStringList, kinds);
    QFETCH(QString, xml);
    QFETCH(QString, name);
    QFETCH(QString, parent);
    QFETCH(QString, found);
    for (const QString &kind : std::as_const(kinds)) {
        SetContent(kind, xml);
        QCOMPARE(Shown(m_pReader->GetElement(name, parent)), found);
    }
}

void TstReaderSearch::searchesBelowTheCursor()
{
    SetContent(QStringLiteral("file"), QStringLiteral("<r><a><x id='1'/></a><b><x id='2'/><b id='3'/></b></r>"));
    QVERIFY(m_pReader->SearchBelowCurrentElement(QStringLiteral("x"))->empty());
    QStringList found;
    m_oRecorder.m_pHook = [&](XmlEvent *event) {
        const int type = event->GetType();
        found += QString::number(type) + Shown(m_pReader->SearchBelowCurrentElement(QStringLiteral("x")));
        if (type == XmlEvent::EVENT_DOC_BEGIN) {
            found += Shown(m_pReader->SearchBelowCurrentElement(QStringLiteral("dummy")));
            // The whole content, before the parser has reached any of it.
            found += Shown(m_pReader->GetElement(QStringLiteral("x"), QStringLiteral("b")));
        }
    };
    QVERIFY(m_pReader->ParseXml());
    QCOMPARE(found.join(QLatin1Char(',')),
             QStringLiteral("1,r,x:2,3x:1 x:2,3x:1,3r,4r,4x:1,3x:2,3r,4r,3,4,4,4x:2,2x:2"));
    // The cursor's own name gives the root, which stands for the content.
    QCOMPARE(Shown(m_pReader->SearchBelowCurrentElement(QStringLiteral("b"))), QStringLiteral("r b:3"));
    m_oRecorder.m_pHook = nullptr;
}

void TstReaderSearch::listsAndNodesOutliveWhatTheyMay()
{
    SetContent(QStringLiteral("file"), QStringLiteral("<r><x><z/></x><y/></r>"));
    const QDomNode kept = m_pReader->GetElement(QStringLiteral("x"), QString())->front();
    QVERIFY(m_pReader->GetElement(QStringLiteral("none"), QString())->empty());
    m_pReader->SetXmlContent(m_oDir.filePath(QStringLiteral("missing.xml")));
    QVERIFY(m_pReader->GetElement(QStringLiteral("x"), QString())->empty());
    // Neither its document nor its sibling is there any more.
    m_pReader->SetXmlContent(kept);
    m_oRecorder.TakeLog();
    QVERIFY(m_pReader->ParseXml());
    QCOMPARE(m_oRecorder.TakeLog(), QStringLiteral("( x[|_] /z z[|_] /x )"));
    m_pReader.reset();
    QCOMPARE(kept.firstChild().nodeName(), QStringLiteral("z"));
}

QTEST_GUILESS_MAIN(TstReaderSearch)
#include "tst_readersearch.moc"
