/// Runs every file of a folder through the reader, as each kind of content, and compares result and events with those
/// of Qt's parser alone: conformance FOLDER. Not part of the suite, since the files have to be fetched; see
/// scripts/conformance.

#include "support/eventrecorder.h"

#include "dom/guardedreader.h"
#include "xml/xmlreader.h"

#include <QDirIterator>
#include <QElapsedTimer>
#include <QTextStream>
#include <QXmlDefaultHandler>
#include <QXmlInputSource>
#include <QXmlSimpleReader>

#include <cstdio>

namespace {

constexpr qint64 kMaxMilliseconds = 10000;

/// What the reader has to send in either mode, written down straight from the parser.
class Expected : public QXmlDefaultHandler
{
public:
    explicit Expected(bool withDocument)
        : m_bWithDocument(withDocument)
    {
    }

    bool startDocument() override { return Add(QStringLiteral("(")); }
    bool endDocument() override { return Add(QStringLiteral(")")); }
    bool startElement(const QString & /*uri*/, const QString & /*localName*/, const QString &qName,
                      const QXmlAttributes &atts) override
    {
        m_sTag = TagWord(qName, atts);
        m_bOpen = !m_bWithDocument;
        return m_bOpen || Add(m_sTag + QLatin1String("[]"));
    }
    bool endElement(const QString & /*uri*/, const QString & /*localName*/, const QString &qName) override
    {
        return Add(QLatin1Char('/') + qName);
    }
    bool characters(const QString &ch) override
    {
        const bool wasOpen = m_bOpen;
        m_bOpen = false;
        const QString text = QString(ch).replace(QLatin1Char('\n'), QLatin1Char('_'));
        return !wasOpen || Add(QStringLiteral("%1[%2]").arg(m_sTag, text));
    }

    QStringList Run(const QXmlInputSource &source)
    {
        QXmlSimpleReader parser;
        parser.setContentHandler(this);
        return m_lWords << QString::number(parser.parse(&source));
    }

private:
    bool Add(const QString &word)
    {
        m_lWords += word;
        return true;
    }

    bool m_bWithDocument;
    bool m_bOpen = false;
    QString m_sTag;
    QStringList m_lWords;
};

QStringList ExpectedOfText(const QString &text, bool withDocument)
{
    QXmlInputSource source;
    source.setData(text);
    return Expected(withDocument).Run(source);
}

QString SavedText(const QDomNode &node)
{
    QString text;
    QTextStream stream(&text);
    node.save(stream, 0, QDomNode::EncodingFromDocument);
    return stream.flush(), text;
}

int g_iRuns = 0;
int g_iFailed = 0;
int g_iRefused = 0;

void Check(bool passed, const QString &path, const char *failure)
{
    if (!passed) {
        ++g_iFailed;
        std::printf("%s: %s\n", qPrintable(path), failure);
    }
}

template <typename Content>
void Compare(const QString &path, const char *failure, Content content, const QStringList &expected)
{
    EventRecorder recorder;
    recorder.m_bNodes = false;
    XMLReader reader(&recorder, nullptr);
    reader.SetXmlContent(content);
    recorder.m_lEvents << QString::number(reader.ParseXml());
    Check(recorder.m_lEvents == expected, path, failure);
    ++g_iRuns;
}

/// A file in which an entity refers to a later one, say, isn't read to its end; the events up to there are Qt's.
void RunAsFile(const QString &path, QDomDocument &document)
{
    QFile file(path);
    const QXmlInputSource source(&file);
    QStringList expected = Expected(true).Run(source);
    dom::GuardedReader guarded;
    if (guarded.ReadFile(path, &document) || guarded.GetRefusal().isEmpty()) {
        Compare(path, "differs as file", path, expected);
        QDomDocument ofQt;
        file.seek(0);
        ofQt.setContent(&file);
        Check(document.toString() == ofQt.toString(), path, "differs as a document that is filled");
        return;
    }
    ++g_iRefused;
    EventRecorder recorder;
    recorder.m_bNodes = false;
    XMLReader reader(&recorder, nullptr);
    const bool isRead = reader.SetXmlContent(path) && reader.ParseXml();
    Check(!isRead && expected.mid(0, recorder.m_lEvents.size()) == recorder.m_lEvents, path, "is not refused");
}

void RunFile(const QString &path)
{
    QElapsedTimer timer;
    timer.start();
    QDomDocument document;
    RunAsFile(path, document);
    const QDomNode root = document.documentElement();
    QDomDocumentFragment fragment = document.createDocumentFragment();
    fragment.appendChild(root.cloneNode());
    Compare(path, "differs as document", document, ExpectedOfText(document.toString(1), true));
    Compare(path, "differs as document by pointer", &document, ExpectedOfText(document.toString(1), true));
    Compare(path, "differs as node", root, ExpectedOfText(SavedText(root), false));
    Compare(path, "differs as fragment", fragment, ExpectedOfText(SavedText(fragment), false));
    Check(timer.elapsed() < kMaxMilliseconds, path, "takes too long");
}

} // namespace

int main(int argc, char **argv)
{
    QDirIterator iterator(QFile::decodeName(argc == 2 ? argv[1] : ""), QDir::Files, QDirIterator::Subdirectories);
    int files = 0;
    for (; iterator.hasNext(); ++files) {
        RunFile(iterator.next());
    }
    std::printf("%d files, %d refused, %d runs, %d failures\n", files, g_iRefused, g_iRuns, g_iFailed);
    return files > 0 && g_iFailed == 0 ? 0 : 1;
}
