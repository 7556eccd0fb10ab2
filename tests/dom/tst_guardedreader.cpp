#include "support/files.h"
#include "support/limitedprocess.h"

#include "dom/guardedreader.h"

#include <QDomDocument>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

namespace {

QByteArray Nested(int depth, const QByteArray &inner = "")
{
    return QByteArray("<x>").repeated(depth) + inner + QByteArray("</x>").repeated(depth);
}

/// A piece for each number from 1 on, which stands for "#N" in it.
QByteArray Numbered(int count, const char *piece)
{
    QByteArray text;
    for (int number = 1; number <= count; ++number) {
        text += QByteArray(piece).replace("#N", QByteArray::number(number));
    }
    return text;
}

QByteArray WithDtd(const QByteArray &declarations, const QByteArray &content = "<x/>")
{
    return "<!DOCTYPE x [" + declarations + "]>" + content;
}

} // namespace

class GuardedReaderTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void holdsTheLimits_data()
    {
        QTest::addColumn<QByteArray>("content");
        // What the refusal holds; empty where there is none.
        QTest::addColumn<QString>("reason");
        const auto row = [](const char *name, const QByteArray &content, const char *reason = "") {
            QTest::newRow(name) << content << QString::fromLatin1(reason);
        };
        const char *deep = "more than 500 elements";
        row("500 levels", Nested(499, "\n<y/>") + "<!-- -->");
        row("501 levels", "<!--\n-->\r\n" + Nested(500, "\n<y/>"), "line 4: more than 500 elements");
        row("100,000 levels, never closed", QByteArray("<x>").repeated(100000), deep);
        row("a tag begun by an entity", WithDtd("<!ENTITY e '&#60;'>", "<x>" + QByteArray("&e;x>").repeated(500)),
            deep);
        row("siblings and parentheses", "<x>" + QByteArray("<x>((</x><x/>").repeated(600) + "</x>");

        const QByteArray large = "<!ENTITY e '" + QByteArray("y").repeated(100000) + "'>";
        const char *growth = "entities may come to more than 16777216 characters";
        row("just within", WithDtd(large, "<x>" + QByteArray("&e;").repeated(160) + "</x>"));
        row("in a value", WithDtd(large, "<x a='" + QByteArray("&e;").repeated(2000) + "'/>"), growth);
        row("in parameters",
            WithDtd("<!ENTITY % e '<!--" + QByteArray(100000, 'y') + "-->'>" + QByteArray("%e;").repeated(200)),
            growth);
        row("of entities of entities",
            WithDtd("<!ENTITY e '" + QByteArray(40, 'y') + "'><!ENTITY f '" + QByteArray("&e;").repeated(80) + "'>",
                    "<x a='" + QByteArray("&f;").repeated(5300) + "'/>"),
            growth);
        row("of an earlier one", WithDtd("<!ENTITY e '&lt;&#38;#38;'><!ENTITY f '&e;%'>", "<x>&f;</x>"));
        row("of a later one", WithDtd("<!ENTITY e '&f;'><!ENTITY f ''>"), "the entity e refers to");
        row("ending within a reference", WithDtd("<!ENTITY e '&#38;'>"), "the entity e refers to");
        row("parameters of a later one", WithDtd("<!ENTITY % p '<!ENTITY e \"&#37;q;\">'>"), "the entity %p refers to");
        row("a declaration in a parameter", WithDtd("<!ENTITY % p \"<!ENTITY &#37; q 'v'>\">%p;"));
        row("50,000 entities", WithDtd(Numbered(50000, "<!ENTITY e#N 'v'>")), "too many or too long");
        row("long entities", WithDtd(Numbered(900, QByteArray("<!ENTITY e#N '" + QByteArray(5000, 'v') + "'>"))),
            "too many or too long");

        const auto model = [](int depth) {
            return WithDtd("<!ELEMENT x " + QByteArray("(").repeated(depth) + "y" + QByteArray(")").repeated(depth)
                           + ">");
        };
        const char *parentheses = "more than 500 parentheses";
        row("500 parentheses", model(500));
        row("100,000 parentheses", model(100000), parentheses);
        row("parentheses in pieces",
            WithDtd("<!ENTITY % p '" + QByteArray("(").repeated(400) + "'><!ENTITY % q '<!ELEMENT x %p;%p;y'>%q;"),
            parentheses);

        const char *prefixes = "too many namespace prefixes";
        row("many prefixes",
            "<x " + Numbered(1500, "xmlns:p#N='u' ") + ">" + QByteArray("<y/>").repeated(1500) + "</x>", prefixes);
        row("long prefixes",
            "<x " + Numbered(300, "xmlns:p" + QByteArray(1000, 'p') + "#N='u' ") + ">"
                + QByteArray("<y/>").repeated(2000),
            prefixes);
        row("prefixes of siblings", "<x>" + QByteArray("<y xmlns='u' xmlns:p='v'/>").repeated(30000) + "</x>");
        row("many prefixes, one element after the other",
            "<x>" + ("<y " + Numbered(20, "xmlns:p#N='u' ") + "/>").repeated(2000) + "</x>");
        row("a prefix of each level", QByteArray("<x xmlns:p='u'>").repeated(400) + QByteArray("<x/>").repeated(5000));
        row("half a character", "\xff\xfe<");
    }

    /// Within the limits that a host's thread has.
    void holdsTheLimits()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, reason);
        const QString path = Write(content);
        const auto result = limitedprocess::Run(
            [&path] {
                dom::GuardedReader reader;
                reader.ReadFile(path);
                return reader.GetRefusal().toUtf8();
            },
            64);
        QCOMPARE(result.m_sReason, QString());
        const QString refusal = QString::fromUtf8(result.m_sOutput);
        QCOMPARE(refusal.isEmpty(), reason.isEmpty());
        QVERIFY2(refusal.contains(reason), result.m_sOutput.constData());
        QVERIFY(refusal.isEmpty() || refusal.startsWith(path + QLatin1String(", line ")));
    }

    void takesRegularFilesAlone()
    {
        mkfifo(QFile::encodeName(Path("fifo")).constData(), 0600);
        QVERIFY(dom::GuardedReader().ReadFile(Write("<x/>"))
                && dom::GuardedReader().ReadFile(QStringLiteral(":/dom/guard.xml")));
        for (const QString &path : { m_oFolder.path(), Path("fifo"), QStringLiteral("/dev/zero") }) {
            dom::GuardedReader reader;
            QVERIFY(!reader.ReadFile(path));
            QCOMPARE(reader.GetRefusal(), path + QLatin1String(" is no regular file"));
        }
        dom::GuardedReader reader;
        QVERIFY(!reader.ReadFile(Path("absent")) && reader.GetRefusal().contains(QLatin1String(" can't be opened: ")));
    }

    void fillsADocumentAsQtDoes_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QByteArray>("text");
        const auto row = [](const char *name, const QByteArray &content, const QByteArray &text) {
            QTest::newRow(name) << content << text;
        };
        row("each kind of node",
            "<?xml version='1.0'?><!--c--><!DOCTYPE x PUBLIC 'p' 's'><x>a<![CDATA[<&>]]> <?p i?><p:y p:b='1'/>\r\n"
            "</x>\n<!--e-->",
            "<?xml version='1.0'?>\n<!DOCTYPE x PUBLIC 'p' 's'>\n<!--c-->\n<x>a<![CDATA[<&>]]><?p i?>\n <p:y "
            "p:b=\"1\"/>\n</x>\n<!--e-->\n");
        row("unknown entities", "<?p?><x a='&u;'>&u;<?p?>&u;<y b='>&u;'/><!--<-->&u;</x>",
            "<?p ?>\n<x a=\"\">\n&u;<?p ?>\n&u; <y b=\">\"/>\n <!--<-->\n&u;</x>\n");
        row("what SAX alone accepts", "<x a='1' a='2'><a:b:c/>\x01</x>", "<x a=\"2\">\n <a:b:c/>\x01</x>\n");
        row("a fault", "<x>a<y>b</z>", "<x>a<y>b</y>\n</x>\n");
    }

    void fillsADocumentAsQtDoes()
    {
        QFETCH(QByteArray, content);
        QFETCH(QByteArray, text);
        QDomDocument ours;
        QCOMPARE(dom::GuardedReader().ReadFile(Write(content), &ours), !content.endsWith("z>"));
        QCOMPARE(ours.toByteArray(), text);
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
        // Qt's own document has the same parser there.
        QDomDocument qts;
        qts.setContent(content);
        QCOMPARE(ours.toString(), qts.toString());
        QCOMPARE(ours.documentElement().firstChild().columnNumber(), qts.documentElement().firstChild().columnNumber());
#endif
    }

private:
    QString Path(const char *name) const
    {
        return m_oFolder.filePath(QLatin1String(name));
    }
    QString Write(const QByteArray &content) const
    {
        return WriteFile(Path("%1 file.xml"), content);
    }

    QTemporaryDir m_oFolder;
};

QTEST_GUILESS_MAIN(GuardedReaderTest)

#include "tst_guardedreader.moc"
