#include "support/deepdocument.h"
#include "support/files.h"
#include "support/limitedprocess.h"

#include "dom/documentsaver.h"
#include "dom/documentwriter.h"
#include "dom/guardedreader.h"
#include "dom/nodewalk.h"

#include <QFileInfo>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>
#include <QTextStream>

#include <sys/stat.h>

namespace {

constexpr int kRandomDocuments = 400;

QString Pick(QRandomGenerator &random, const QStringList &choices)
{
    return choices.at(random.bounded(choices.size()));
}

QString RandomText(QRandomGenerator &random)
{
    static const QStringList pieces =
        QString::fromUtf8("a,<,>,]]>,&,\",',\n,\r,\t, ,],-,\u00e4\u20ac\U0001F600").split(QLatin1Char(','));
    QString text;
    for (int i = random.bounded(6); i > 0; --i) {
        text += Pick(random, pieces);
    }
    return text;
}

/// At most one attribute for an element: Qt's own order of several differs from run to run.
void Fill(QDomDocument &document, QDomNode parent, QRandomGenerator &random, int depth)
{
    for (int i = random.bounded(5); i > 0; --i) {
        const int kind = random.bounded(depth < 4 ? 9 : 4);
        if (kind == 0) {
            parent.appendChild(document.createTextNode(RandomText(random)));
            parent.lastChild().appendChild(document.createElement(QStringLiteral("lost")));
        } else if (kind == 1) {
            parent.appendChild(document.createProcessingInstruction(QStringLiteral("pi"), QStringLiteral("a<b \"c\"")));
        } else if (kind == 2) {
            parent.appendChild(document.createComment(RandomText(random)));
        } else if (kind == 3) {
            parent.appendChild(document.createCDATASection(RandomText(random)));
        } else {
            QDomElement element = document.createElement(
                Pick(random, { QStringLiteral("a"), QStringLiteral("b:c"), QString::fromUtf8("\u00e4") }));
            if (random.bounded(2) == 0) {
                element.setAttribute(QStringLiteral("type"), RandomText(random));
            }
            parent.appendChild(element);
            Fill(document, element, random, depth + 1);
        }
    }
}

QByteArray QtBytes(const QDomDocument &document)
{
    QByteArray bytes;
    QTextStream stream(&bytes);
    document.save(stream, 4);
    stream.flush();
    return bytes;
}

QByteArray OwnBytes(const QDomDocument &document)
{
    dom::DocumentWriter writer;
    return writer.Write(document) ? QByteArray::fromStdString(writer.TakeBytes()) : QByteArray("refused");
}

QDomDocument Parse(const QByteArray &text, bool withNamespaces = false)
{
    QDomDocument document;
    if (!document.setContent(text, withNamespaces)) {
        // Qt 6's own parser refuses references to what nobody has declared.
        dom::GuardedReader().ReadText(QString::fromUtf8(text), &document);
    }
    return document;
}

} // namespace

class TestDocumentWriter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void writesTheBytesOfQt()
    {
        QRandomGenerator random(20261125);
        for (int i = 0; i < kRandomDocuments; ++i) {
            QDomDocument document = Parse("<?xml version='1.0' encoding='UTF-8'?><root/>");
            Fill(document, document.documentElement(), random, 0);
            QCOMPARE(OwnBytes(document), QtBytes(document));
        }
        QCOMPARE(OwnBytes(QDomDocument()), QByteArray());
    }

    void sortsAttributesByName()
    {
        QDomDocument document =
            Parse("<r b='1' xsi:noNamespaceSchemaLocation='s' z='2' a='3'><c z='1' xmlns:xsi='n' a='2'/></r>");
        document.documentElement().setAttribute(QStringLiteral("xmlns:xsi"), QStringLiteral("n"));
        QCOMPARE(OwnBytes(document),
                 QByteArray("<r a=\"3\" b=\"1\" z=\"2\" xsi:noNamespaceSchemaLocation=\"s\" xmlns:xsi=\"n\">\n"
                            "    <c a=\"2\" xmlns:xsi=\"n\" z=\"1\"/>\n</r>\n"));
    }

    void replacesWhatXmlCantHold()
    {
        const auto written = [](const QString &text) {
            QDomDocument document = Parse("<r/>");
            document.documentElement().appendChild(document.createTextNode(text));
            dom::DocumentWriter writer;
            const int isWritten = writer.Write(document) ? 1 : 0;
            const QString bytes = QString::fromStdString(writer.TakeBytes());
            return QStringLiteral("%1%2%3").arg(isWritten).arg(bytes).arg(writer.HasReplaced());
        };
        const ushort units[] = { 1, 0x1f, 0, 0xD800, 'x', 0xDC00, 0xFFFE, 0xFFFF, '\t', 0x7f, 0 };
        QCOMPARE(written(QString::fromUtf16(units, 10)),
                 QString::fromUtf8("1<r>\ufffd\ufffd\ufffd\ufffdx\ufffd\ufffd\ufffd\t\u007f</r>\n1"));
        QCOMPARE(written(QStringLiteral("a\tb")), QStringLiteral("1<r>a\tb</r>\n0"));
    }

    void leavesOtherDocumentsToQt()
    {
        for (const QByteArray start : { "<!DOCTYPE r [<!NOTATION n SYSTEM 's'>]><r>", "<n:r xmlns:n='u'>", "<r>&u;",
                                        "<?xml version='1.0' encoding='ISO-8859-1'?><r a='\xc3\xa4'>" }) {
            const QByteArray end = start.startsWith("<n") ? "</n:r>" : "</r>";
            const QDomDocument document = Parse(start + end, true);
            QCOMPARE(OwnBytes(document), QByteArray("refused"));
            QCOMPARE(dom::SaveDocument(document, Path("qts.xml")).m_sFailure, QString());
            QCOMPARE(FileBytes(Path("qts.xml")), QtBytes(document));
            // Qt's saving recurses.
            const QByteArray deep = start + QByteArray("<x>").repeated(101) + QByteArray("</x>").repeated(101) + end;
            QVERIFY(dom::SaveDocument(Parse(deep, true), Path("deep.xml")).m_sFailure.contains(QLatin1String("100")));
            QVERIFY(!QFileInfo::exists(Path("deep.xml")));
        }
    }

    void savesAnyDepthOnASmallStack()
    {
        QDomDocument document;
        document.appendChild(MakeChain(document, document.createElement(QStringLiteral("x")), 3000));
        const auto result =
            limitedprocess::Run([&] { return dom::SaveDocument(document, Path("any.xml")).m_sFailure.toUtf8(); });
        QCOMPARE(result.m_sReason + QString::fromUtf8(result.m_sOutput), QString());
        QCOMPARE(FileBytes(Path("any.xml")).count("</n>"), 3000);
        dom::TakeApart(document);
    }

    void saysWhyAFileCannotBeWritten()
    {
        mkfifo(QFile::encodeName(Path("fifo")).constData(), 0600);
        QVERIFY(QFile::link(QStringLiteral("/dev/full"), Path("full")));
        for (const QString &path : { Path("absent/r.xml"), m_oFolder.path(), Path("fifo"), Path("full"), QString() }) {
            const bool existed = QFileInfo::exists(path);
            QVERIFY(!dom::SaveDocument(Parse("<r/>"), path).m_sFailure.isEmpty());
            QCOMPARE(QFileInfo::exists(path), existed);
        }
    }

    void removesATornFile()
    {
        const QDomDocument document = Parse("<r>" + QByteArray(10000, 'x') + "</r>");
        QVERIFY(QFile::link(Path("torn.xml"), Path("link.xml")));
        for (const QString &path : { Path("torn.xml"), Path("link.xml") }) {
            // As on a file system that has no more room.
            const auto full = limitedprocess::Run([&] {
                std::signal(SIGXFSZ, SIG_IGN);
                limitedprocess::SetLimit(RLIMIT_FSIZE, 4096);
                return dom::SaveDocument(document, path).m_sFailure.toUtf8();
            });
            QVERIFY(full.m_sReason.isEmpty() && !full.m_sOutput.isEmpty());
            QVERIFY(!QFileInfo::exists(Path("torn.xml")));
            QCOMPARE(dom::SaveDocument(document, path).m_sFailure, QString());
            QVERIFY(QFileInfo(Path("torn.xml")).size() > 4096);
        }
    }

private:
    QString Path(const char *name) const { return m_oFolder.filePath(QLatin1String(name)); }

    QTemporaryDir m_oFolder;
};

QTEST_GUILESS_MAIN(TestDocumentWriter)
#include "tst_documentwriter.moc"
