#include "support/eventrecorder.h"

#include "host/quilmar.h"
#include "xml/xmlreader.h"
#include "xml/xmlwriter.h"

#include <QtTest>

#include <type_traits>

static_assert(!std::is_copy_constructible_v<XMLWriter> && !std::is_copy_assignable_v<XMLWriter>);

namespace {

const QString kHead = QStringLiteral("<?xml version='1.0' encoding='UTF-8'?>\n");

/// A node of the value tree that holds what it is given.
class FixedNode : public values::Node
{
public:
    QString GetItemName() override { return QStringLiteral("f"); }
    std::vector<values::TreeItem *> GetTreeItems() const override { return m_lItems; }

    std::vector<values::TreeItem *> m_lItems;
};

class EmptyItem : public values::ValueItem
{
public:
    QString GetItemName() override { return QStringLiteral("empty"); }
    values::ValueBase *FindValue(QString /*path*/) override { return nullptr; }
};

} // namespace

class TstXmlWriter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void movesTheCursor();
    void savesAgainAndIntoTheFirstFileOnly();
    void withoutRootNothingIsWritten();
    void readsBackWhatWasWritten_data();
    void readsBackWhatWasWritten();
    void writesABranch();
    void branchBelowTextMovesTheCursorUp();
    void writesAnyDepth();

private:
    QString Saved();
    bool Create(const char *name, const QString &text = QString(), bool goDown = false);

    QTemporaryDir m_oDir;
    QString m_sPath;
    std::unique_ptr<XMLWriter> m_pWriter;
};

void TstXmlWriter::init()
{
    m_sPath = m_oDir.filePath(QStringLiteral("written.xml"));
    QFile::remove(m_sPath);
    m_pWriter = std::make_unique<XMLWriter>();
    FixedNode node;
    QVERIFY(!Create("a") && !m_pWriter->SetXmlAttribute(QStringLiteral("a"), QString()));
    QVERIFY(!m_pWriter->GoToXmlParent() && !m_pWriter->SaveXmlFile() && !m_pWriter->CreateElementsFromNode(&node));
    QVERIFY(m_pWriter->CreateXmlFile(m_sPath, QStringLiteral("r")));
    // Markup in a tag nests no deeper than Qt's parser can go.
    QVERIFY(XMLWriter().CreateXmlFile(m_sPath, QStringLiteral("a><").repeated(100000)));
}

QString TstXmlWriter::Saved()
{
    QFile file(m_sPath);
    return m_pWriter->SaveXmlFile() && file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

bool TstXmlWriter::Create(const char *name, const QString &text, bool goDown)
{
    return m_pWriter->CreateXmlElement(QLatin1String(name), text, goDown);
}

void TstXmlWriter::movesTheCursor()
{
    QVERIFY(!m_pWriter->GoToXmlParent());
    QVERIFY(Create("a", QString(), true) && Create("b", QStringLiteral("t"), true));
    QVERIFY(m_pWriter->SetXmlAttribute(QStringLiteral("x"), QStringLiteral("1")) && !Create("c"));
    QVERIFY(m_pWriter->GoToXmlParent() && Create("d") && m_pWriter->GoToXmlParent());
    QVERIFY(!m_pWriter->GoToXmlParent() && Create("e", QStringLiteral("u")));
    const QString body =
        QStringLiteral("<r>\n    <a>\n        <b x=\"1\">t</b>\n        <d/>\n    </a>\n    <e>u</e>\n</r>\n");
    QCOMPARE(Saved(), QString(kHead + body));
}

void TstXmlWriter::savesAgainAndIntoTheFirstFileOnly()
{
    QVERIFY(!QFile::exists(m_sPath));
    QVERIFY(!m_pWriter->CreateXmlFile(m_oDir.filePath(QStringLiteral("other.xml")), QStringLiteral("other")));
    QCOMPARE(Saved(), QString(kHead + QLatin1String("<r/>\n")));
    Create("a");
    QCOMPARE(Saved(), QString(kHead + QLatin1String("<r>\n    <a/>\n</r>\n")));
    QCOMPARE(QDir(m_oDir.path()).entryList(QDir::Files).size(), 1);
}

void TstXmlWriter::withoutRootNothingIsWritten()
{
    for (const QString &tag : { QStringLiteral("1"), QString() }) {
        XMLWriter writer;
        QVERIFY(writer.CreateXmlFile(m_oDir.filePath(QStringLiteral("no/such/dir.xml")), tag));
        QVERIFY(!writer.SetXmlAttribute(QStringLiteral("a"), QString()) && !writer.GoToXmlParent());
        QTest::ignoreMessage(QtWarningMsg, "Calling appendChild() on a null node does nothing.");
        // True all the same, also where the file can't be opened.
        QVERIFY(writer.CreateXmlElement(QStringLiteral("lost"), QString(), true) && writer.SaveXmlFile());
    }
}

void TstXmlWriter::readsBackWhatWasWritten_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("markup") << QStringLiteral("a < b && c > d \"e\" 'f' <!-- ]]> &amp; &#65; <?p?>");
    QTest::newRow("not ASCII") << QString::fromUtf8("dB\xc2\xb5V/m \xe6\xbc\xa2 \xf0\x9f\x93\xa1");
    QTest::newRow("blanks and line ends") << QStringLiteral(" \t two  blanks\n\nand\r\nlines\r ");
}

void TstXmlWriter::readsBackWhatWasWritten()
{
    QFETCH(QString, text);
    QVERIFY(Create("a", text, true) && m_pWriter->SetXmlAttribute(QStringLiteral("x"), text) && !Saved().isEmpty());
    QStringList read;
    EventRecorder recorder;
    recorder.m_pHook = [&read](XmlEvent *event) {
        if (event->GetType() == XmlEvent::EVENT_ELEM_BEGIN) {
            auto *begin = static_cast<ElemBeginEvent *>(event);
            const QDomElement element = begin->GetElementNode().toElement();
            read = QStringList { begin->GetElementAttributes().value(QStringLiteral("x")), element.text(),
                                 element.attribute(QStringLiteral("x")) };
        }
    };
    XMLReader reader(&recorder, nullptr);
    QVERIFY(reader.SetXmlContent(m_sPath) && reader.ParseXml());
    QCOMPARE(read, QStringList({ text, text, text }));
}

void TstXmlWriter::writesABranch()
{
    values::MemoryTree tree;
    tree.SetNumber(QStringLiteral("R/Level"), 12.5, QStringLiteral("dB"));
    tree.SetText(QStringLiteral("R/Site/Name"), QStringLiteral("A & B"));
    tree.AddNode(QStringLiteral("R/Site/Empty"));
    tree.SetText(QStringLiteral("R/Note"), QString());
    EmptyItem empty;
    FixedNode inner;
    inner.m_lItems = { nullptr, &empty };
    FixedNode node;
    node.m_lItems = { tree.AddNode(QStringLiteral("R")), &inner };
    QVERIFY(!m_pWriter->CreateElementsFromNode(nullptr));
    QVERIFY(m_pWriter->CreateElementsFromNode(&node) && Create("last"));
    QCOMPARE(Saved().remove(QLatin1Char('\n')).remove(QLatin1String("    ")).mid(kHead.size() - 1),
             QStringLiteral("<r><f><R><Level>12.5 dB</Level><Site><Name>A &amp; B</Name><Empty/></Site><Note/></R><f/>"
                            "</f><last/></r>"));
}

void TstXmlWriter::branchBelowTextMovesTheCursorUp()
{
    FixedNode inner;
    FixedNode node;
    node.m_lItems = { &inner };
    QVERIFY(Create("a", QString(), true) && Create("b", QStringLiteral("t"), true));
    // Neither element can be made, but each is left: by the inner one to a, by the outer one to the root.
    QVERIFY(m_pWriter->CreateElementsFromNode(&node));
    QVERIFY(!m_pWriter->GoToXmlParent());
}

void TstXmlWriter::writesAnyDepth()
{
    std::vector<FixedNode> chain(2000);
    for (std::size_t i = 1; i < chain.size(); ++i) {
        chain[i].m_lItems = { &chain[i - 1] };
    }
    // On a stack that no recursion over the levels would fit.
    const std::unique_ptr<QThread> thread(QThread::create([this, &chain] {
        m_pWriter->CreateElementsFromNode(&chain.back());
        m_pWriter->SaveXmlFile();
        m_pWriter.reset();
    }));
    thread->setStackSize(128 * 1024);
    thread->start();
    QVERIFY(thread->wait());
    QFile file(m_sPath);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll().count("</f>"), 1999);
}

QTEST_GUILESS_MAIN(TstXmlWriter)
#include "tst_xmlwriter.moc"
