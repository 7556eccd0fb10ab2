#include "support/eventrecorder.h"

#include "xml/xmlreader.h"

#include <QDirIterator>
#include <QXmlStreamReader>
#include <QtTest>

#include <algorithm>

namespace {

constexpr qint64 kMaxSize = 2 * 1024 * 1024;

QString BeginWord(const QString &name, QStringList attributes)
{
    attributes.sort();
    return name + QLatin1Char(' ') + attributes.join(QLatin1Char(' '));
}

/// The begins with their attributes, and the ends.
QStringList ReaderSequence(const QString &path, bool *parsed)
{
    QStringList sequence;
    EventRecorder recorder;
    recorder.m_pHook = [&sequence](XmlEvent *event) {
        if (event->GetType() == XmlEvent::EVENT_ELEM_BEGIN) {
            auto *begin = static_cast<ElemBeginEvent *>(event);
            const QXmlAttributes attributes = begin->GetElementAttributes();
            QStringList words;
            for (int i = 0; i < attributes.count(); ++i) {
                words += attributes.qName(i) + QLatin1Char('=') + attributes.value(i);
            }
            sequence += BeginWord(begin->GetElementName(), words);
        } else if (event->GetType() == XmlEvent::EVENT_ELEM_END) {
            sequence += QLatin1Char('/') + static_cast<ElemEndEvent *>(event)->GetElementName();
        }
    };
    XMLReader reader(&recorder, nullptr);
    reader.SetXmlContent(path);
    *parsed = reader.ParseXml();
    return sequence;
}

/// The same from a parser that shares nothing with the reader; empty if it finds a fault.
QStringList StreamSequence(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return QStringList();
    }
    QStringList sequence;
    QXmlStreamReader stream(&file);
    stream.setNamespaceProcessing(false);
    while (!stream.atEnd()) {
        stream.readNext();
        if (stream.isStartElement()) {
            QStringList words;
            for (const QXmlStreamAttribute &attribute : stream.attributes()) {
                // Qt's SAX parser gives neither defaults nor the declarations of namespaces.
                if (!attribute.isDefault() && !attribute.qualifiedName().startsWith(QLatin1String("xmlns"))) {
                    words += attribute.qualifiedName() + QLatin1Char('=') + attribute.value();
                }
            }
            sequence += BeginWord(stream.qualifiedName().toString(), words);
        } else if (stream.isEndElement()) {
            sequence += QLatin1Char('/') + stream.qualifiedName();
        }
    }
    return stream.hasError() ? QStringList() : sequence;
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
    for (const char *folder : { "mime", "icons", "xml/iso-codes", "X11/xkb/rules", "glib-2.0/schemas", "qt5", "doc" }) {
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
        const QStringList expected = files.fileInfo().size() > kMaxSize ? QStringList() : StreamSequence(path);
        if (expected.isEmpty()) {
            continue;
        }
        bool parsed = false;
        const QStringList found = ReaderSequence(path, &parsed);
        const auto differs = std::mismatch(found.begin(), found.end(), expected.begin(), expected.end());
        QVERIFY2(found == expected,
                 qPrintable(path + QLatin1Char(' ') + (differs.first == found.end() ? QString() : *differs.first)));
        QVERIFY2(parsed, qPrintable(path));
        ++compared;
    }
    if (compared == 0) {
        QSKIP("No documents in this folder");
    }
    qInfo("%d documents", compared);
}

QTEST_GUILESS_MAIN(TstRealDocuments)
#include "tst_realdocuments.moc"
