#include "support/eventrecorder.h"

#include "xml/xmlreader.h"

#include <QDirIterator>
#include <QXmlStreamReader>
#include <QtTest>

namespace {

constexpr qint64 kMaxSize = qint64 { 2 } * 1024 * 1024;

/// The events, from a parser that shares nothing with the reader's; empty if it finds a fault.
QStringList StreamEvents(const QString &path)
{
    QFile file(path);
    QXmlStreamReader stream(&file);
    stream.setNamespaceProcessing(false);
    QStringList events { QStringLiteral("(") };
    for (bool more = file.open(QIODevice::ReadOnly); more && !stream.atEnd(); stream.readNext()) {
        if (stream.isStartElement()) {
            QStringList words;
            for (const QXmlStreamAttribute &attribute : stream.attributes()) {
                // Qt's SAX parser gives neither defaults nor the declarations of namespaces.
                if (!attribute.isDefault() && !attribute.qualifiedName().startsWith(QLatin1String("xmlns"))) {
                    words += attribute.qualifiedName() + QLatin1Char('=') + attribute.value();
                }
            }
            events += TagWord(stream.qualifiedName().toString(), words) + QLatin1String("[]");
        } else if (stream.isEndElement()) {
            events += QLatin1Char('/') + stream.qualifiedName();
        }
    }
    return stream.hasError() ? QStringList() : events << QStringLiteral(")");
}

} // namespace

class TstRealDocuments : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void eventsEqualThoseOfTheStreamReader_data();
    void eventsEqualThoseOfTheStreamReader();
};

void TstRealDocuments::eventsEqualThoseOfTheStreamReader_data()
{
    QTest::addColumn<QString>("folder");
    for (const char *folder : { "mime", "icons", "xml/iso-codes", "X11/xkb/rules", "glib-2.0/schemas", "doc" }) {
        QTest::newRow(folder) << QStringLiteral("/usr/share/") + QLatin1String(folder);
    }
}

void TstRealDocuments::eventsEqualThoseOfTheStreamReader()
{
    QFETCH(QString, folder);
    QDirIterator files(folder, { QStringLiteral("*.xml"), QStringLiteral("*.svg") }, QDir::Files,
                       QDirIterator::Subdirectories);
    int compared = 0;
    while (files.hasNext()) {
        const QString path = files.next();
        const QStringList expected = files.fileInfo().size() > kMaxSize ? QStringList() : StreamEvents(path);
        if (!expected.isEmpty()) {
            EventRecorder recorder;
            recorder.m_bNodes = false;
            XMLReader reader(&recorder, nullptr);
            reader.SetXmlContent(path);
            QVERIFY2(reader.ParseXml() && recorder.m_lEvents == expected, qPrintable(path));
            ++compared;
        }
    }
    if (compared == 0) {
        QSKIP("No documents in this folder");
    }
}

QTEST_GUILESS_MAIN(TstRealDocuments)
#include "tst_realdocuments.moc"
