#include "dom/documentwriter.h"

#include <QRandomGenerator>
#include <QTest>
#include <QTextStream>

namespace {

constexpr int kRandomDocuments = 400;

QString Pick(QRandomGenerator &random, const QStringList &choices)
{
    return choices.at(random.bounded(choices.size()));
}

QString RandomText(QRandomGenerator &random)
{
    static const QStringList pieces { QStringLiteral("a"),
                                      QStringLiteral("<"),
                                      QStringLiteral(">"),
                                      QStringLiteral("]]>"),
                                      QStringLiteral("&"),
                                      QStringLiteral("\""),
                                      QStringLiteral("'"),
                                      QStringLiteral("\n"),
                                      QStringLiteral("\r"),
                                      QStringLiteral("\t"),
                                      QStringLiteral(" "),
                                      QStringLiteral("]"),
                                      QString::fromUtf8("\u00e4\u20ac\U0001F600") };
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
        const int kind = random.bounded(depth < 4 ? 6 : 3);
        if (kind == 0) {
            parent.appendChild(document.createTextNode(RandomText(random)));
        } else if (kind == 1) {
            parent.appendChild(document.createProcessingInstruction(QStringLiteral("pi"), QStringLiteral("a<b \"c\"")));
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
    stream.setCodec("UTF-8");
    document.save(stream, 4);
    stream.flush();
    return bytes;
}

QByteArray OwnBytes(const QDomDocument &document)
{
    dom::DocumentWriter writer;
    return writer.Write(document) ? QByteArray::fromStdString(writer.TakeBytes()) : QByteArray("refused");
}

QDomDocument Parse(const char *text)
{
    QDomDocument document;
    document.setContent(QByteArray(text));
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

    void replacesWhatXmlCantHold_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("written");
        const QString mark(QChar(0xFFFD));
        QTest::newRow("control") << QStringLiteral("a\x01\x1f") << QLatin1Char('a') + mark + mark;
        QTest::newRow("nul") << QString(QChar(0)) << mark;
        QTest::newRow("lone high surrogate") << QString(QChar(0xD800)) + QLatin1Char('x') << mark + QLatin1Char('x');
        QTest::newRow("lone low surrogate") << QString(QChar(0xDC00)) << mark;
        QTest::newRow("not a character") << QString(QChar(0xFFFE)) + QChar(0xFFFF) << mark + mark;
        QTest::newRow("all is well") << QStringLiteral("a\tb\u007f") << QStringLiteral("a\tb\u007f");
    }
    void replacesWhatXmlCantHold()
    {
        QFETCH(QString, text);
        QFETCH(QString, written);
        QDomDocument document = Parse("<r/>");
        document.documentElement().appendChild(document.createTextNode(text));
        dom::DocumentWriter writer;
        QVERIFY(writer.Write(document));
        QCOMPARE(writer.HasReplaced(), text != written);
        QCOMPARE(QString::fromStdString(writer.TakeBytes()), QStringLiteral("<r>%1</r>\n").arg(written));
        QCOMPARE(document.documentElement().text(), text);
    }

    void leavesOtherDocumentsToQt_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("comment") << QByteArray("<r><!-- c --></r>");
        QTest::newRow("cdata") << QByteArray("<r><![CDATA[x]]></r>");
        QTest::newRow("doctype") << QByteArray("<!DOCTYPE r><r/>");
        QTest::newRow("other encoding") << QByteArray("<?xml version='1.0' encoding='ISO-8859-1'?><r/>");
    }
    void leavesOtherDocumentsToQt()
    {
        QFETCH(QByteArray, text);
        QCOMPARE(OwnBytes(Parse(text.constData())), QByteArray("refused"));
    }

    void leavesNamespacesToQt()
    {
        QDomDocument document;
        document.setContent(QByteArray("<n:r xmlns:n='u'/>"), true);
        QCOMPARE(OwnBytes(document), QByteArray("refused"));
    }
};

QTEST_GUILESS_MAIN(TestDocumentWriter)
#include "tst_documentwriter.moc"
