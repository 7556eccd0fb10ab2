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
    void keptNodesHaveTheirSubtree();
};

void TstReaderSearch::findsNodes_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QString>("xml");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("parent");
    QTest::addColumn<QString>("found");

    const QString tree = QStringLiteral("<r><x id='1'><x id='2'/></x><y><x id='3'/></y><y><x id='4'/>t</y></r>");
    const QString commented = tree + QLatin1String("<!-- -->");
    QTest::newRow("a match hides what is in it") << "document" << tree << "x"
                                                 << ""
                                                 << "x:1 x:3 x:4";
    QTest::newRow("below the first of several parents") << "document" << tree << "x"
                                                        << "y"
                                                        << "x:3";
    QTest::newRow("the root's name gives the last child") << "document" << commented << "r"
                                                          << ""
                                                          << "#comment";
    QTest::newRow("name and parent alike") << "document" << tree << "x"
                                           << "x"
                                           << "r x:2";
    QTest::newRow("unknown parent") << "document" << tree << "x"
                                    << "z"
                                    << "";
    QTest::newRow("texts") << "document" << tree << "#text"
                           << ""
                           << "#text";
    QTest::newRow("a text is no parent") << "document" << tree << "x"
                                         << "#text"
                                         << "";
    QTest::newRow("node: begins at the first child") << "node" << tree << "x"
                                                     << ""
                                                     << "r x:2";
    QTest::newRow("node: sees nothing behind it") << "node" << tree << "y"
                                                  << ""
                                                  << "";
    QTest::newRow("node: leading text") << "node"
                                        << "<r>t<x/></r>"
                                        << "x"
                                        << ""
                                        << "";
    QTest::newRow("fragment: begins at the first child") << "fragment" << tree << "x"
                                                         << ""
                                                         << "x:1 x:2";
    QTest::newRow("fragment: sees nothing behind it") << "fragment" << tree << "y"
                                                      << ""
                                                      << "";
    QTest::newRow("no content") << "none" << tree << ""
                                << ""
                                << "";
    QTest::newRow("null document") << "null" << tree << ""
                                   << ""
                                   << "";
}

void TstReaderSearch::findsNodes()
{
    QFETCH(QString, kind);
    QFETCH(QString, xml);
    QFETCH(QString, name);
    QFETCH(QString, parent);
    QDomDocument document;
    QVERIFY(document.setContent(xml));
    QDomNode root = document.documentElement();
    QDomDocumentFragment fragment = document.createDocumentFragment();
    EventRecorder recorder;
    XMLReader reader(&recorder, nullptr);
    if (kind == QLatin1String("document")) {
        reader.SetXmlContent(document);
    } else if (kind == QLatin1String("node")) {
        reader.SetXmlContent(root);
    } else if (kind == QLatin1String("fragment")) {
        while (root.hasChildNodes()) {
            fragment.appendChild(root.firstChild());
        }
        reader.SetXmlContent(fragment);
    } else if (kind == QLatin1String("null")) {
        reader.SetXmlContent(static_cast<QDomDocument *>(nullptr));
    }
    QTEST(Shown(reader.GetElement(name, parent)), "found");
}

void TstReaderSearch::searchesBelowTheCursor()
{
    QDomDocument document;
    document.setContent(QStringLiteral("<r><a><x id='1'/></a><b><x id='2'/><b id='3'/></b></r>"));
    EventRecorder recorder;
    XMLReader reader(&recorder, nullptr);
    QVERIFY(reader.SearchBelowCurrentElement(QString())->empty());
    reader.SetXmlContent(document);
    QStringList found;
    recorder.m_pHook = [&](XmlEvent *event) {
        found += Shown(reader.SearchBelowCurrentElement(QStringLiteral("x")));
        if (event->GetType() == XmlEvent::EVENT_DOC_BEGIN) {
            found += Shown(reader.SearchBelowCurrentElement(QStringLiteral("dummy")));
            // The whole content, before the parser has reached any of it.
            found += Shown(reader.GetElement(QStringLiteral("x"), QStringLiteral("b")));
        }
    };
    QVERIFY(reader.ParseXml());
    QCOMPARE(found.join(QLatin1Char(',')), QStringLiteral(",r,x:2,x:1 x:2,x:1,r,r,x:1,x:2,r,r,,,,x:2,x:2"));
    // The cursor's own name gives the root, which stands for the content.
    QCOMPARE(Shown(reader.SearchBelowCurrentElement(QStringLiteral("b"))), QStringLiteral("r b:3"));
}

void TstReaderSearch::keptNodesHaveTheirSubtree()
{
    auto document = std::make_unique<QDomDocument>();
    document->setContent(QStringLiteral("<r><x><z/></x><y/></r>"));
    EventRecorder recorder;
    XMLReader reader(&recorder, nullptr);
    reader.SetXmlContent(document.release());
    const QDomNode kept = reader.GetElement(QStringLiteral("x"), QString())->front();
    QVERIFY(reader.GetElement(QStringLiteral("none"), QString())->empty());
    // Now neither its document nor its sibling is there any more.
    reader.SetXmlContent(kept);
    QVERIFY(reader.ParseXml());
    QCOMPARE(recorder.m_lEvents.join(QLatin1Char(' ')), QStringLiteral("( x[|_] /z z[|_] /x )"));
}

QTEST_GUILESS_MAIN(TstReaderSearch)
#include "tst_readersearch.moc"
