#include "support/limitedprocess.h"
#include "support/markupsoup.h"

#include "dom/fileguard.h"

#include <QBuffer>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <QTextCodec>
#include <QXmlDefaultHandler>
#include <QXmlInputSource>
#include <QXmlSimpleReader>

#include <sys/stat.h>

namespace {

class DepthCounter : public QXmlDefaultHandler
{
public:
    bool startElement(const QString &, const QString &, const QString &, const QXmlAttributes &) override
    {
        m_iDeepest = qMax(m_iDeepest, ++m_iDepth);
        return true;
    }
    bool endElement(const QString &, const QString &, const QString &) override
    {
        --m_iDepth;
        return true;
    }

    int m_iDepth = 0;
    int m_iDeepest = 0;
};

/// What Qt itself sees of a file; it isn't asked about files that the guard refuses.
int DeepestForQt(QIODevice *device)
{
    const QXmlInputSource source(device);
    DepthCounter counter;
    QXmlSimpleReader reader;
    reader.setContentHandler(&counter);
    reader.parse(source);
    return counter.m_iDeepest;
}

QByteArray Nested(int depth, const QByteArray &inner = "")
{
    return QByteArray("<x>").repeated(depth) + inner + QByteArray("</x>").repeated(depth);
}

QByteArray Numbered(int count, const char *piece)
{
    QByteArray text;
    for (int number = 0; number < count; ++number) {
        text +=
            QByteArray(piece).replace("#N", QByteArray::number(number)).replace("#P", QByteArray::number(number + 1));
    }
    return text;
}

QByteArray Encoded(const char *codec, const QByteArray &text)
{
    return QTextCodec::codecForName(codec)->fromUnicode(QString::fromUtf8(text));
}

} // namespace

class FileGuardTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void holdsTheLimits_data();
    void holdsTheLimits();
    void agreesWithQtOnRandomFiles();
    void passesTruncatedFiles();
    void takesRegularFilesAlone_data();
    void takesRegularFilesAlone();
    void readsLargeFilesInLittleMemory();

private:
    QString Path(const char *name) const { return m_oFolder.filePath(QLatin1String(name)); }
    QString Write(const QByteArray &content) const;
    void AddDepthRows();
    void AddEntityRows();
    void AddOtherRows();

    QTemporaryDir m_oFolder;
};

QString FileGuardTest::Write(const QByteArray &content) const
{
    QFile file(Path("%1 file.xml"));
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size() ? file.fileName() : QString();
}

void FileGuardTest::holdsTheLimits_data()
{
    QTest::addColumn<QByteArray>("content");
    // Empty where the file passes.
    QTest::addColumn<QString>("reason");
    QTest::addColumn<int>("line");
    AddDepthRows();
    AddEntityRows();
    AddOtherRows();
}

void FileGuardTest::AddDepthRows()
{
    const QString deep = QStringLiteral("more than 500 elements");
    const auto row = [](const char *name, const QByteArray &content, const QString &reason, int line = 1) {
        QTest::newRow(name) << content << reason << line;
    };
    row("500 levels", Nested(499, "\n<y/>") + "<!-- -->", QString());
    row("501 levels", "<!--\n-->\r\n" + Nested(500, "\n<y/>"), deep, 4);
    row("100,000 levels, never closed", QByteArray("<x>").repeated(100000), deep);
    row("UTF-16", Encoded("UTF-16", Nested(501)), deep);
    row("UTF-16 without mark", Encoded("UTF-16LE", Nested(501)).mid(0), deep);
    row("UTF-32", Encoded("UTF-32", Nested(501)), deep);
    row("declared encoding", Encoded("IBM850", "<?xml version='1.0' encoding='IBM850'?>" + Nested(501, "\xc3\xa9")),
        deep);
    row("siblings", "<x>" + QByteArray("<x></x><x/>").repeated(600) + "</x>", QString());
    row("what only looks like elements",
        "<x><!--" + Nested(600) + "--><?p " + QByteArray("<x>").repeated(600) + "?><![CDATA["
            + QByteArray("<x>").repeated(600) + "]]></x>",
        QString());
    row("> and / in values", QByteArray("<x a='/>' b=\"/\">").repeated(501), deep);
    row("behind what Qt lets pass", "<p:x a='' a='' q:b='\x01'>\x02" + Nested(500) + "</p:x>", deep);
    row("a tag that never ends", QByteArray("<x>").repeated(500) + "<x/", deep);
    row("behind a fault", "<x a=b>" + Nested(600) + "</x>", QString());
    row("behind a second root", "<x/>" + Nested(600), QString());
    row("behind a false end", "<x>\xef\xbf\xbf" + Nested(600), QString());
    row("one entity for each level", "<!DOCTYPE x [<!ENTITY e '<x>'>]><x>" + QByteArray("&e;").repeated(500), deep);
    row("a chain of entities",
        "<!DOCTYPE x [" + Numbered(501, "<!ENTITY e#N '<x>&e#P;</x>'>") + "<!ENTITY e501 ''>]><x>&e1;</x>", deep);
    row("a tag begun by an entity", "<!DOCTYPE x [<!ENTITY e '&#60;'>]><x>" + QByteArray("&e;x>").repeated(500), deep);
    row("a number cut to 16 bits", "<!DOCTYPE x [<!ENTITY e '&#65596;x>'>]><x>" + QByteArray("&e;").repeated(500),
        deep);
    row("a comment begun by an entity", "<!DOCTYPE x [<!ENTITY e '&#60;!--'>]><x>&e;" + Nested(600) + "--></x>",
        QString());
    row("out of a parameter entity", "<!DOCTYPE x [<!ENTITY % p ']><x>'>%p;" + Nested(500), deep);
    row("an entity for text", "<!DOCTYPE x [<!ENTITY e '&#38;#60;x>'>]><x>" + QByteArray("&e;").repeated(600) + "</x>",
        QString());
}

void FileGuardTest::AddEntityRows()
{
    const QString growth = QStringLiteral("entities come to more than 16777216 bytes");
    const auto row = [](const char *name, const QByteArray &content, const QString &reason, int line = 1) {
        QTest::newRow(name) << content << reason << line;
    };
    const QByteArray large = "<!DOCTYPE x [<!ENTITY e '" + QByteArray("y").repeated(100000) + "'>";
    const QByteArray few = QByteArray("&e;").repeated(160);
    const QByteArray many = QByteArray("&e;").repeated(2000);
    row("just within", large + "]><x>" + few + "</x>", QString());
    row("in text", large + "]>\n<x>" + many + "</x>", growth, 2);
    row("in one value", large + "]><x a='" + many + "'/>", growth);
    row("in a default value", large + "<!ATTLIST x a CDATA '" + many + "'>]><x/>", growth);
    row("in comments and sections", large + "]><x><!--" + many + "--><![CDATA[" + many + "]]></x>", QString());
    row("hidden by an entity", large + "<!ENTITY p '<?p '>]><x>&p;<!-- ?>" + many + " --></x>", growth);
    row("two bytes each",
        "<!DOCTYPE x [<!ENTITY e '" + QByteArray("\xc3\xa4").repeated(9000) + "'>]><x>"
            + QByteArray("&e;").repeated(1000) + "</x>",
        growth);
    row("a billion laughs",
        "<!DOCTYPE x [<!ENTITY e10 'laugh'>"
            + Numbered(10, "<!ENTITY e#N '&e#P;&e#P;&e#P;&e#P;&e#P;&e#P;&e#P;&e#P;&e#P;&e#P;'>") + "]><x>&e0;</x>",
        growth);
    row("declared only", "<!DOCTYPE x [<!ENTITY e40 'laugh'>" + Numbered(40, "<!ENTITY e#N '&e#P;&e#P;'>") + "]><x/>",
        QString());
    row("a circle", "<!DOCTYPE x [<!ENTITY e '&f;'><!ENTITY f 'y&e;&e;'>]><x>&e;</x>", QString());
    row("a heavy circle", large + "<!ENTITY f '&e;&f;'>" + Numbered(500, "<!ENTITY g#N ''>") + "]><x>&f;</x>", growth);
    row("joined references", large + "<!ENTITY o '&#38;'>]><x>" + QByteArray("&o;e;").repeated(2000) + "</x>", growth);
    row("joined in an entity",
        "<!DOCTYPE x [<!ENTITY o '&#38;'><!ENTITY e30 'laugh'>" + Numbered(30, "<!ENTITY e#N '&o;e#P;&o;e#P;'>")
            + "]><x>&e0;</x>",
        growth);
    row("a lone sign", "<!DOCTYPE x [<!ENTITY o '&#38;'>]><x>&o;#97;</x>", QString());
    row("parameter entities",
        "<!DOCTYPE x [<!ENTITY % p '<!-- " + QByteArray("y").repeated(100000) + " -->'>"
            + QByteArray("%p;").repeated(2000) + "]><x/>",
        growth);
    row("small parameter entities", "<!DOCTYPE x [<!ENTITY % p \"<!ENTITY e 'v'>\">%p;]><x>&e;</x>", QString());
    row("very many entities", "<!DOCTYPE x [" + Numbered(50000, "<!ENTITY e#N 'v'>") + "]><x/>",
        QStringLiteral("too many and too long entities"));
}

void FileGuardTest::AddOtherRows()
{
    const auto row = [](const char *name, const QByteArray &content, const QString &reason, int line = 1) {
        QTest::newRow(name) << content << reason << line;
    };
    const auto model = [](int depth) {
        return "<!DOCTYPE x [<!ELEMENT x " + QByteArray("(").repeated(depth) + "y" + QByteArray(")").repeated(depth)
            + ">]><x/>";
    };
    row("500 parentheses", model(500), QString());
    row("20,000 parentheses", "\n" + model(20000), QStringLiteral("more than 500 parentheses"), 2);
    row("parentheses in pieces",
        "<!DOCTYPE x [<!ENTITY % p '" + QByteArray("(").repeated(400) + "'><!ENTITY % q '<!ELEMENT x "
            + QByteArray("%p;").repeated(99) + "'>%q;]><x/>",
        QStringLiteral("more than 500 parentheses"));
    row("many prefixes", "<x " + Numbered(3000, "xmlns:p#N='u' ") + ">" + QByteArray("<y/>").repeated(3000) + "</x>",
        QStringLiteral("too many namespace prefixes"));
    row("many prefixes from an entity",
        "<!DOCTYPE x [<!ENTITY e \"<x " + Numbered(3000, "xmlns:p#N='u' ") + ">\">]><z>&e;"
            + QByteArray("<y/>").repeated(3000),
        QStringLiteral("too many namespace prefixes"));
    row("prefixes of siblings", "<x>" + QByteArray("<y xmlns='u' xmlns:p='v'/>").repeated(30000) + "</x>", QString());
    row("nothing", "", QString());
    row("no bytes but zero", QByteArray(5000, '\0'), QString());
    row("half a character", "\xff\xfe<", QString());
}

/// Under the limits that a host's thread has, also for Qt's reader on what the guard lets pass.
void FileGuardTest::holdsTheLimits()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, reason);
    QFETCH(int, line);
    const QString path = Write(content);
    const auto result = limitedprocess::Run([&path] {
        const QString sentence = dom::CheckXmlFile(path);
        QFile file(path);
        const bool isLetPass = sentence.isEmpty() && DeepestForQt(&file) > limits::kMaxFileDepth;
        return isLetPass ? QByteArray("let pass") : sentence.toUtf8();
    });
    QCOMPARE(result.m_sReason, QString());
    const QString sentence = QString::fromUtf8(result.m_sOutput);
    QCOMPARE(sentence.isEmpty(), reason.isEmpty());
    if (!reason.isEmpty()) {
        QVERIFY2(sentence.contains(reason), result.m_sOutput.constData());
        QVERIFY(sentence.startsWith(path + QStringLiteral(", line %1: ").arg(line)));
    }
}

void FileGuardTest::agreesWithQtOnRandomFiles()
{
    const int rounds = qMax(5000, qEnvironmentVariableIntValue("TAGWRIGHT_SOUP_ROUNDS"));
    int deep = 0;
    for (int seed = 0; seed < rounds; ++seed) {
        QByteArray content = MarkupSoup(static_cast<quint32>(seed)).Make();
        QBuffer buffer(&content);
        QVERIFY(buffer.open(QIODevice::ReadOnly));
        dom::ReadingLimits limits;
        limits.m_iDepth = 1 + seed % 4;
        const bool isDeep = DeepestForQt(&buffer) > limits.m_iDepth;
        deep += isDeep ? 1 : 0;
        buffer.seek(0);
        const QString sentence = dom::CheckXml(&buffer, QStringLiteral("soup"), limits);
        QVERIFY2(isDeep != sentence.isEmpty(), "seed " + QByteArray::number(seed) + ": " + content);
    }
    QVERIFY(deep > rounds / 20 && deep < rounds / 2);
}

void FileGuardTest::passesTruncatedFiles()
{
    const QByteArray whole =
        "\xef\xbb\xbf<?xml version='1.0'?><!DOCTYPE x PUBLIC 'p' \"s\" [<!ENTITY % p '<!-- -->'>%p;<!ENTITY e "
        "'&#x41;<y/>'><!ELEMENT x (y|z)*><!ATTLIST x a CDATA '&e;'><!NOTATION n SYSTEM 's'>"
        "<!--]--><?p ]?>]><x xmlns:q='u' b='&e;'><![CDATA[]]]]>&e;\xc3\xa4<y/></x>";
    for (int size = 0; size <= whole.size(); ++size) {
        QByteArray part = whole.left(size);
        QBuffer buffer(&part);
        QVERIFY(buffer.open(QIODevice::ReadOnly));
        QCOMPARE(dom::CheckXml(&buffer, QStringLiteral("part")), QString());
    }
}

void FileGuardTest::takesRegularFilesAlone_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<bool>("isTaken");
    mkfifo(QFile::encodeName(Path("fifo")).constData(), 0600);
    QTest::newRow("file") << Write("<x/>") << true;
    QTest::newRow("Qt resource") << QStringLiteral(":/dom/guard.xml") << true;
    QTest::newRow("no such resource") << QStringLiteral(":/dom/absent.xml") << false;
    QTest::newRow("absent") << Path("absent") << false;
    QTest::newRow("empty path") << QString() << false;
    QTest::newRow("folder") << m_oFolder.path() << false;
    QTest::newRow("pipe") << Path("fifo") << false;
    QTest::newRow("device") << QStringLiteral("/dev/zero") << false;
}

void FileGuardTest::takesRegularFilesAlone()
{
    QFETCH(QString, path);
    QFETCH(bool, isTaken);
    QCOMPARE(dom::IsRegularFile(path), isTaken);
    QCOMPARE(dom::CheckXmlFile(path).isEmpty(), isTaken);
}

void FileGuardTest::readsLargeFilesInLittleMemory()
{
    const QString path = Path("large.xml");
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("<!DOCTYPE x [<!ENTITY e 'v'>]><x>");
    const QByteArray piece = QByteArray("<y a='1'>text &e;</y>\n").repeated(50000);
    for (int count = 0; count < 10; ++count) {
        file.write(piece);
    }
    file.write(QByteArray("<x>").repeated(500));
    file.close();
    limitedprocess::Limits limits;
    limits.m_iMemoryBytes = rlim_t(8) * 1024 * 1024;
    const auto result = limitedprocess::Run([&path] { return dom::CheckXmlFile(path).toUtf8(); }, limits);
    QCOMPARE(result.m_sReason, QString());
    QVERIFY2(result.m_sOutput.contains("line 500001: more than 500"), result.m_sOutput.constData());
}

QTEST_GUILESS_MAIN(FileGuardTest)

#include "tst_fileguard.moc"
