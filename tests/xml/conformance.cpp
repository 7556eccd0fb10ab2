/// Runs every file of a folder through the reader, as each kind of content, and compares result and events with those
/// of Qt's parser alone: conformance FOLDER. Not part of the suite, since the files have to be fetched; see
/// scripts/conformance.

#include "dom/fileguard.h"
#include "events/itagwright.h"
#include "events/xmlevent.h"
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

QString BeginWord(const QString &name, const QXmlAttributes &attributes, const QString &text)
{
    QStringList words;
    for (int i = 0; i < attributes.count(); ++i) {
        words += attributes.qName(i) + QLatin1Char('=') + attributes.value(i);
    }
    words.sort();
    return QStringLiteral("<%1 %2>%3").arg(name, words.join(QLatin1Char(' ')), text);
}

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
        m_sName = qName;
        m_oAttributes = atts;
        m_bOpen = !m_bWithDocument;
        return m_bOpen || Add(BeginWord(qName, atts, QString()));
    }
    bool endElement(const QString & /*uri*/, const QString & /*localName*/, const QString &qName) override
    {
        return Add(QLatin1Char('/') + qName);
    }
    bool characters(const QString &ch) override
    {
        const bool wasOpen = m_bOpen;
        m_bOpen = false;
        return !wasOpen || Add(BeginWord(m_sName, m_oAttributes, ch));
    }

    QStringList Run(QXmlInputSource &source)
    {
        QXmlSimpleReader parser;
        parser.setContentHandler(this);
        return m_lWords << (parser.parse(&source) ? QStringLiteral("true") : QStringLiteral("false"));
    }

private:
    bool Add(const QString &word)
    {
        m_lWords += word;
        return true;
    }

    bool m_bWithDocument;
    bool m_bOpen = false;
    QString m_sName;
    QXmlAttributes m_oAttributes;
    QStringList m_lWords;
};

QStringList ExpectedOfText(const QString &text, bool withDocument)
{
    QXmlInputSource source;
    source.setData(text);
    return Expected(withDocument).Run(source);
}

QStringList ExpectedOfFile(const QString &path)
{
    if (!dom::CheckXmlFile(path).isEmpty()) {
        return { QStringLiteral("false") };
    }
    QFile file(path);
    QXmlInputSource source(&file);
    return Expected(true).Run(source);
}

QString SavedText(const QDomNode &node)
{
    QString text;
    QTextStream stream(&text);
    node.save(stream, 0, QDomNode::EncodingFromDocument);
    stream.flush();
    return text;
}

class Receiver : public ITagwright
{
public:
    void XmlUpdate(XmlEvent *event) override
    {
        if (event->GetType() == XmlEvent::EVENT_ELEM_BEGIN) {
            auto *begin = static_cast<ElemBeginEvent *>(event);
            m_lWords += BeginWord(begin->GetElementName(), begin->GetElementAttributes(), begin->GetElementText());
        } else if (event->GetType() == XmlEvent::EVENT_ELEM_END) {
            m_lWords += QLatin1Char('/') + static_cast<ElemEndEvent *>(event)->GetElementName();
        } else {
            m_lWords += event->GetType() == XmlEvent::EVENT_DOC_BEGIN ? QStringLiteral("(") : QStringLiteral(")");
        }
    }

    QStringList m_lWords;
};

int g_iTrue = 0;
int g_iCompared = 0;
int g_iFailed = 0;

void Fail(const QString &path, const char *what)
{
    ++g_iFailed;
    std::printf("%s: %s\n", qPrintable(path), what);
}

template <typename Content>
void Compare(const QString &path, const char *kind, Content content, const QStringList &expected)
{
    Receiver receiver;
    XMLReader reader(&receiver, nullptr);
    reader.SetXmlContent(content);
    receiver.m_lWords << (reader.ParseXml() ? QStringLiteral("true") : QStringLiteral("false"));
    ++g_iCompared;
    g_iTrue += expected.last() == QLatin1String("true") ? 1 : 0;
    if (receiver.m_lWords != expected) {
        Fail(path, kind);
    }
}

void RunFile(const QString &path)
{
    QElapsedTimer timer;
    timer.start();
    Compare(path, "differs as file", path, ExpectedOfFile(path));
    QFile file(path);
    QDomDocument document;
    if (dom::CheckXmlFile(path).isEmpty() && file.open(QIODevice::ReadOnly)) {
        document.setContent(&file);
    }
    const QDomElement root = document.documentElement();
    QDomDocumentFragment fragment = document.createDocumentFragment();
    fragment.appendChild(root.cloneNode());
    Compare(path, "differs as document", document, ExpectedOfText(document.toString(1), true));
    Compare(path, "differs as document by pointer", &document, ExpectedOfText(document.toString(1), true));
    Compare(path, "differs as node", static_cast<const QDomNode &>(root), ExpectedOfText(SavedText(root), false));
    Compare(path, "differs as document node", static_cast<const QDomNode &>(document),
            ExpectedOfText(SavedText(document), true));
    Compare(path, "differs as fragment", fragment, ExpectedOfText(SavedText(fragment), false));
    if (timer.elapsed() > kMaxMilliseconds) {
        Fail(path, "takes too long");
    }
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: conformance FOLDER\n");
        return 2;
    }
    int files = 0;
    QDirIterator iterator(QFile::decodeName(argv[1]), QDir::Files, QDirIterator::Subdirectories);
    for (; iterator.hasNext(); ++files) {
        RunFile(iterator.next());
    }
    std::printf("%d files, %d runs, %d of them read to the end, %d failures\n", files, g_iCompared, g_iTrue, g_iFailed);
    return files > 0 && g_iFailed == 0 ? 0 : 1;
}
