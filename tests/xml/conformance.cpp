/// Runs every file of a folder through the reader, as each kind of content, and compares result and events with those
/// of Qt's parser alone: conformance FOLDER. Not part of the suite, since the files have to be fetched; see
/// scripts/conformance.

#include "support/eventrecorder.h"

#include "dom/guardedreader.h"
#include "xml/xmlreader.h"

#include <QDirIterator>
#include <QTextStream>

#include <cstdio>

namespace {

/// What an EventRecorder without nodes writes down of a content with a document.
class Expected : public QXmlDefaultHandler
{
public:
    bool startDocument() override { return Add(QStringLiteral("(")); }
    bool endDocument() override { return Add(QStringLiteral(")")); }
    bool startElement(const QString &, const QString &, const QString &name, const QXmlAttributes &atts) override
    {
        return Add(TagWord(name, atts) + QLatin1String("[]"));
    }
    bool endElement(const QString &, const QString &, const QString &name) override
    {
        return Add(QLatin1Char('/') + name);
    }

    QStringList m_lWords;

private:
    bool Add(const QString &word)
    {
        m_lWords += word;
        return true;
    }
};

int g_iFailed = 0;

void Check(bool passed, const QString &path, const char *failure)
{
    if (!passed) {
        ++g_iFailed;
        std::printf("%s: %s\n", qPrintable(path), failure);
    }
}

/// Where the reader refuses to go on, it has told the same up to there.
template <typename Content>
void Compare(const QString &path, const char *kind, Content content, const QXmlInputSource &source, bool isRefused)
{
    Expected expected;
    QXmlSimpleReader parser;
    parser.setContentHandler(&expected);
    const bool isWellFormed = parser.parse(source);
    EventRecorder recorder;
    recorder.m_bNodes = false;
    XMLReader reader(&recorder, nullptr);
    const bool isRead = reader.SetXmlContent(content) && reader.ParseXml();
    const int told = isRefused ? recorder.m_lEvents.size() : -1;
    Check(isRead == (isWellFormed && !isRefused) && recorder.m_lEvents == expected.m_lWords.mid(0, told), path, kind);
}

void RunFile(const QString &path)
{
    QDomDocument document;
    QDomDocument ofQt;
    QFile file(path);
    dom::GuardedReader guarded;
    guarded.ReadFile(path, &document);
    const bool isRefused = !guarded.GetRefusal().isEmpty();
    Compare(path, "differs as file", path, QXmlInputSource(&file), isRefused);
    file.seek(0);
    ofQt.setContent(&file);
    Check(isRefused || document.toString() == ofQt.toString(), path, "is filled otherwise than by Qt");
    QXmlInputSource source;
    source.setData(ofQt.toString(1));
    Compare(path, "differs as document", ofQt, source, false);
    const QDomNode root = ofQt.documentElement();
    QString text;
    QTextStream stream(&text);
    root.save(stream, 0);
    source.setData(text);
    EventRecorder recorder;
    XMLReader reader(&recorder, nullptr);
    reader.SetXmlContent(root);
    Check(reader.ParseXml() == QXmlSimpleReader().parse(source), path, "differs as node");
}

} // namespace

int main(int argc, char **argv)
{
    QDirIterator iterator(QFile::decodeName(argc == 2 ? argv[1] : ""), QDir::Files, QDirIterator::Subdirectories);
    int files = 0;
    for (; iterator.hasNext(); ++files) {
        RunFile(iterator.next());
    }
    std::printf("%d files, %d failures\n", files, g_iFailed);
    return files > 0 && g_iFailed == 0 ? 0 : 1;
}
