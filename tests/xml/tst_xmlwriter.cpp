#include "support/files.h"

#include "host/quilmar.h"
#include "xml/xmlwriter.h"

#include <QtTest>

#include <type_traits>

static_assert(!std::is_copy_constructible_v<XMLWriter> && !std::is_copy_assignable_v<XMLWriter>);

namespace {

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

    /// The file without its declaration, line ends and indentation.
    QString Saved()
    {
        const QString text = m_pWriter->SaveXmlFile() ? QString::fromUtf8(FileBytes(m_sPath)) : QString();
        const QString head = QStringLiteral("<?xml version='1.0' encoding='UTF-8'?>\n");
        return text.startsWith(head) ? text.mid(head.size()).remove(QRegularExpression(QStringLiteral("\n *"))) : text;
    }
    bool Create(const char *name, const QString &text = QString(), bool goDown = false)
    {
        return m_pWriter->CreateXmlElement(QLatin1String(name), text, goDown);
    }

    QTemporaryDir m_oDir;
    QString m_sPath;
    std::unique_ptr<XMLWriter> m_pWriter;

private Q_SLOTS:
    void init()
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

    void movesTheCursor()
    {
        QVERIFY(!m_pWriter->GoToXmlParent() && Create("a", QString(), true) && Create("b", QStringLiteral("t"), true));
        QVERIFY(m_pWriter->SetXmlAttribute(QStringLiteral("x"), QStringLiteral("1")) && !Create("c"));
        QVERIFY(m_pWriter->GoToXmlParent() && Create("d") && m_pWriter->GoToXmlParent());
        QVERIFY(!m_pWriter->GoToXmlParent() && Create("e", QStringLiteral("u")));
        QCOMPARE(Saved(), QStringLiteral("<r><a><b x=\"1\">t</b><d/></a><e>u</e></r>"));
    }

    void savesAgainAndIntoTheFirstFileOnly()
    {
        QVERIFY(!QFile::exists(m_sPath));
        QVERIFY(!m_pWriter->CreateXmlFile(m_oDir.filePath(QStringLiteral("other.xml")), QStringLiteral("other")));
        QCOMPARE(Saved(), QStringLiteral("<r/>"));
        Create("a");
        QCOMPARE(Saved(), QStringLiteral("<r><a/></r>"));
        QCOMPARE(QDir(m_oDir.path()).entryList(QDir::Files).size(), 1);
    }

    void withoutRootNothingIsWritten()
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

    void writesABranch()
    {
        QVERIFY(!m_pWriter->CreateElementsFromNode(nullptr));
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
        QVERIFY(m_pWriter->CreateElementsFromNode(&node) && Create("a", QString(), true));
        QVERIFY(Create("b", QStringLiteral("t"), true));
        // Below a text no element can be made, but each is left: the inner one to a, the outer one to the root.
        node.m_lItems = { &inner };
        QVERIFY(m_pWriter->CreateElementsFromNode(&node) && !m_pWriter->GoToXmlParent());
        QCOMPARE(Saved(),
                 QStringLiteral("<r><f><R><Level>12.5 dB</Level><Site><Name>A &amp; B</Name><Empty/></Site>"
                                "<Note/></R><f/></f><a><b>t</b></a></r>"));
    }

    void writesAnyDepth()
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
        QCOMPARE(FileBytes(m_sPath).count("</f>"), 1999);
    }
};

QTEST_GUILESS_MAIN(TstXmlWriter)
#include "tst_xmlwriter.moc"
