#include "support/fulldisk.h"
#include "support/limitedprocess.h"

#include "dom/documentsaver.h"
#include "dom/nodedepth.h"

#include <QDomDocument>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>
#include <QTextStream>

#include <sys/stat.h>

Q_DECLARE_METATYPE(QDomDocument)

namespace {

QByteArray FileBytes(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("unreadable");
}

QByteArray QtBytes(const QDomDocument &document, const QString &path)
{
    {
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly)) {
            return "unwritable";
        }
        QTextStream stream(&file);
        stream.setCodec("UTF-8");
        document.save(stream, 4, QDomNode::EncodingFromDocument);
    }
    return FileBytes(path);
}

QDomDocument Parsed(const QByteArray &xml)
{
    QDomDocument document;
    document.setContent(xml);
    return document;
}

/// Every kind of node and neighbourhood below `depth` elements, so that both ways of saving meet it.
QDomDocument Mixed(const QString &declaration, int depth)
{
    QDomDocument document(QStringLiteral("root"));
    if (!declaration.isNull()) {
        document.appendChild(document.createProcessingInstruction(QStringLiteral("xml"), declaration));
    }
    document.appendChild(document.createComment(QStringLiteral("top")));
    QDomNode parent = document;
    for (int level = 0; level < depth; ++level) {
        QDomElement element = document.createElement(QStringLiteral("level"));
        if (level % 3 == 1) {
            parent.appendChild(document.createTextNode(QStringLiteral("t\u20AC<&\"")));
        } else if (level % 3 == 2) {
            parent.appendChild(document.createComment(QStringLiteral("c-")));
            parent.appendChild(document.createElementNS(QStringLiteral("urn:a&b"), QStringLiteral("p:leaf")));
        }
        element.setAttribute(QStringLiteral("a"), QStringLiteral("x > \"y\"\n\u4E2D"));
        parent.appendChild(element);
        if (level % 4 == 3) {
            parent.appendChild(document.createCDATASection(QStringLiteral("<&>")));
        } else if (level % 4 == 2) {
            parent.appendChild(document.createProcessingInstruction(QStringLiteral("pi"), QStringLiteral("data")));
            parent.appendChild(document.createEntityReference(QStringLiteral("e")));
            parent.appendChild(document.createComment(QStringLiteral("after")));
        }
        parent = element;
    }
    document.appendChild(document.createComment(QStringLiteral("end")));
    return document;
}

QDomDocument Plain(int depth)
{
    QDomDocument document;
    QDomNode parent = document.appendChild(document.createElement(QStringLiteral("level")));
    for (int level = 1; level < depth; ++level) {
        parent = parent.appendChild(document.createElement(QStringLiteral("level")));
    }
    return document;
}

} // namespace

class DocumentSaverTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void writesTheBytesOfQt_data();
    void writesTheBytesOfQt();
    void savesAnyDepthOnASmallStack();
    void saysWhyAFileCannotBeWritten_data();
    void saysWhyAFileCannotBeWritten();
    void removesATornFile();
    void keepsWhatIsNoRegularFile();

private:
    QString Path(const char *name) const { return m_oFolder.filePath(QLatin1String(name)); }

    QTemporaryDir m_oFolder;
};

void DocumentSaverTest::writesTheBytesOfQt_data()
{
    QTest::addColumn<QDomDocument>("document");
    const QString utf8 = QStringLiteral("version=\"1.0\" encoding=\"UTF-8\"");
    QTest::newRow("null") << QDomDocument();
    QTest::newRow("no root") << Mixed(utf8, 0);
    QTest::newRow("shallow") << Mixed(utf8, 12);
    QTest::newRow("deep") << Mixed(utf8, 450);
    QTest::newRow("deep, no declaration") << Mixed(QString(), 450);
    QTest::newRow("deep, another encoding") << Mixed(QStringLiteral("version='1.0' encoding='ISO-8859-1'"), 450);
    QTest::newRow("deep, UTF-16") << Mixed(QStringLiteral("encoding=\"UTF-16\""), 450);
    const QByteArray nested = QByteArray("<x>").repeated(300) + QByteArray("</x>").repeated(300);
    QTest::newRow("deep, doctype") << Parsed("<!DOCTYPE x [<!ENTITY e 'v'><!NOTATION n SYSTEM 's'>]><!--c-->" + nested);
}

void DocumentSaverTest::writesTheBytesOfQt()
{
    QFETCH(QDomDocument, document);
    QCOMPARE(dom::SaveDocument(document, Path("ours.xml")).m_sFailure, QString());
    const QByteArray ours = FileBytes(Path("ours.xml"));
    QCOMPARE(ours, QtBytes(document, Path("qts.xml")));
    QCOMPARE(ours.isEmpty(), document.isNull());
}

void DocumentSaverTest::savesAnyDepthOnASmallStack()
{
    const QString path = Path("deep.xml");
    const auto result = limitedprocess::Run([&path] {
        const QDomDocument document = Plain(3000);
        QByteArray reason = dom::SaveDocument(document, path).m_sFailure.toUtf8();
        reason += dom::IsDeeperThan(document, 2999) && !dom::IsDeeperThan(document, 3000) ? "" : "depth";
        reason += dom::SaveDocument(Mixed(QString(), 3000), path + QLatin1Char('2')).m_sFailure.toUtf8();
        return reason;
    });
    QCOMPARE(result.m_sReason, QString());
    QCOMPARE(result.m_sOutput, QByteArray());
    QCOMPARE(FileBytes(path).count("</level>"), 2999);
    QCOMPARE(FileBytes(path + QLatin1Char('2')).count("</level>"), 2999);
}

void DocumentSaverTest::saysWhyAFileCannotBeWritten_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("no folder") << Path("absent/report.xml");
    QTest::newRow("a folder") << m_oFolder.path();
    const QString fifo = Path("fifo");
    mkfifo(QFile::encodeName(fifo).constData(), 0600);
    QTest::newRow("a pipe without reader") << fifo;
    QTest::newRow("no path") << QString();
}

void DocumentSaverTest::saysWhyAFileCannotBeWritten()
{
    QFETCH(QString, path);
    const bool existed = QFileInfo::exists(path);
    QVERIFY(!dom::SaveDocument(Mixed(QString(), 2), path).m_sFailure.isEmpty());
    QCOMPARE(QFileInfo::exists(path), existed);
}

void DocumentSaverTest::removesATornFile()
{
    const QDomDocument document = Mixed(QString(), 90);
    const QString link = Path("link.xml");
    QVERIFY(QFile::link(Path("torn.xml"), link));
    for (const QString &path : { Path("torn.xml"), link }) {
        {
            const FullDisk full(4096);
            QVERIFY(!dom::SaveDocument(document, path).m_sFailure.isEmpty());
        }
        QVERIFY(!QFileInfo::exists(Path("torn.xml")));
        QCOMPARE(dom::SaveDocument(document, path).m_sFailure, QString());
        QVERIFY(QFileInfo(Path("torn.xml")).size() > 4096);
    }
}

void DocumentSaverTest::keepsWhatIsNoRegularFile()
{
    if (!QFileInfo::exists(QStringLiteral("/dev/full"))) {
        QSKIP("There is no /dev/full here.");
    }
    const QString link = Path("full");
    QVERIFY(QFile::link(QStringLiteral("/dev/full"), link));
    QVERIFY(!dom::SaveDocument(Mixed(QString(), 2), link).m_sFailure.isEmpty());
    QVERIFY(QFileInfo(link).isSymLink());
    QVERIFY(QFileInfo::exists(QStringLiteral("/dev/full")));
}

QTEST_GUILESS_MAIN(DocumentSaverTest)

#include "tst_documentsaver.moc"
