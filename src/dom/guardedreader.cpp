#include "dom/guardedreader.h"

#include "dom/limits.h"
#include "dom/saxdocument.h"

#include <QDomDocument>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSet>
#include <QXmlInputSource>
#include <QXmlLocator>

namespace dom {

/// Stands between Qt's reader and the handlers, hands on what they may hear, and keeps count.
class GuardedReader::Guard : public QXmlDefaultHandler
{
public:
    explicit Guard(GuardedReader &reader)
        : m_oReader(reader)
    {
    }

    /// Looks at "<", "%", "&", "(" and ")" in the input before Qt's reader has them. What entities put in isn't seen
    /// here: Qt puts them into values without a word, so each reference counts as the longest entity. For a "(" of a
    /// content model Qt recurses, and tells nobody before the model's end.
    void See(ushort character)
    {
        switch (character) {
        case '<':
            m_bInMarkup = true;
            m_iParentheses = 0;
            break;
        case '%':
            m_iParentheses += m_iEntityParentheses;
            m_iGrowth += m_bInProlog ? m_iLongestEntity : 0;
            break;
        case '&':
            m_iGrowth += m_iLongestEntity;
            break;
        case '(':
            ++m_iParentheses;
            break;
        default:
            --m_iParentheses;
        }
        if (m_iGrowth > limits::kMaxEntityGrowth) {
            Refuse(QStringLiteral("its entities may come to more than %1 characters").arg(limits::kMaxEntityGrowth));
        } else if (m_bInProlog && m_iParentheses > limits::kMaxContentModelDepth) {
            Refuse(QStringLiteral("more than %1 parentheses lie within each other").arg(limits::kMaxContentModelDepth));
        }
    }

    bool Refuse(const QString &reason)
    {
        const int line = m_pLocator == nullptr ? 0 : m_pLocator->lineNumber();
        m_oReader.m_sRefusal = m_oReader.m_sName + QStringLiteral("line %1: ").arg(line) + reason;
        return false;
    }

    void setDocumentLocator(QXmlLocator *locator) override
    {
        m_pLocator = locator;
        m_oReader.m_pContent->setDocumentLocator(locator);
    }
    bool startDocument() override { return m_oReader.m_pContent->startDocument(); }
    bool endDocument() override { return m_oReader.m_pContent->endDocument(); }
    bool startPrefixMapping(const QString &prefix, const QString &uri) override
    {
        if (!m_hPrefixes.contains(prefix)) {
            m_hPrefixes.insert(prefix);
            m_iPrefixWeight += Weight(prefix);
        }
        return m_oReader.m_pContent->startPrefixMapping(prefix, uri);
    }
    bool endPrefixMapping(const QString &prefix) override
    {
        m_iPrefixWeight -= m_hPrefixes.remove(prefix) ? Weight(prefix) : 0;
        return m_oReader.m_pContent->endPrefixMapping(prefix);
    }
    bool startElement(const QString &uri, const QString &local, const QString &name,
                      const QXmlAttributes &atts) override
    {
        m_bInProlog = false;
        EndMarkup();
        if (++m_iDepth > limits::kMaxFileDepth) {
            return Refuse(QStringLiteral("more than %1 elements lie within each other").arg(limits::kMaxFileDepth));
        }
        return m_oReader.m_pContent->startElement(uri, local, name, atts);
    }
    bool endElement(const QString &uri, const QString &local, const QString &name) override
    {
        EndMarkup();
        --m_iDepth;
        const qint64 prefixes = m_hPrefixes.size();
        m_iComparisons += prefixes > limits::kFreePrefixes ? prefixes * m_iPrefixWeight : 0;
        if (m_iComparisons > limits::kMaxPrefixComparisons) {
            return Refuse(QStringLiteral("it has too many namespace prefixes on too many elements"));
        }
        return m_oReader.m_pContent->endElement(uri, local, name);
    }
    bool characters(const QString &text) override { return m_oReader.m_pContent->characters(text); }
    bool processingInstruction(const QString &target, const QString &data) override
    {
        EndMarkup();
        return m_oReader.m_pContent->processingInstruction(target, data);
    }
    /// A document takes those of its content alone. Qt tells it which these are, but only of a reader of Qt's own.
    bool skippedEntity(const QString &name) override
    {
        return (m_bFillsDocument && (m_bInProlog || m_bInMarkup)) || m_oReader.m_pContent->skippedEntity(name);
    }

    bool startDTD(const QString &name, const QString &publicId, const QString &systemId) override
    {
        return m_oReader.m_pLexical->startDTD(name, publicId, systemId);
    }
    bool startCDATA() override { return m_oReader.m_pLexical->startCDATA(); }
    bool endCDATA() override
    {
        EndMarkup();
        return m_oReader.m_pLexical->endCDATA();
    }
    bool comment(const QString &text) override
    {
        EndMarkup();
        return m_oReader.m_pLexical->comment(text);
    }

    /// A text refers to earlier entities alone, so that what it comes to is known as soon as it is declared. Each of
    /// its references counts as the longest of those.
    bool internalEntityDecl(const QString &name, const QString &value) override
    {
        // No references are "&#65;", and "% " in a declaration.
        static const QRegularExpression general(QStringLiteral("&(?!#)[^;]*;?"));
        static const QRegularExpression any(QStringLiteral("(&(?!#)|%(?!\\s))[^;]*;?"));
        const bool isParameter = name.startsWith(QLatin1Char('%'));
        qint64 length = value.size();
        qint64 parentheses = isParameter ? value.count(QLatin1Char('(')) : 0;
        m_iSearched += length * m_hEntities.size();
        if (m_hEntities.size() > limits::kMaxEntities || m_iSearched > limits::kMaxEntitySearch) {
            return Refuse(QStringLiteral("it declares too many or too long entities"));
        }
        bool areDeclared = true;
        auto references = (isParameter ? any : general).globalMatch(value);
        while (references.hasNext()) {
            areDeclared = m_hEntities.contains(references.next().captured()) && areDeclared;
            length += m_iLongestEntity;
            parentheses += m_iEntityParentheses;
        }
        if (!areDeclared) {
            return Refuse(QStringLiteral("the entity %1 refers to what is not declared before it").arg(name));
        }
        m_hEntities.insert(Reference(name));
        // More than the limit isn't told apart.
        m_iLongestEntity = qMin(qMax(m_iLongestEntity, length), limits::kMaxEntityGrowth + 1);
        m_iEntityParentheses = qMin(qMax(m_iEntityParentheses, parentheses), limits::kMaxEntityGrowth + 1);
        return m_oReader.m_pDeclarations->internalEntityDecl(name, value);
    }
    bool externalEntityDecl(const QString &name, const QString &publicId, const QString &systemId) override
    {
        m_hEntities.insert(Reference(name));
        return m_oReader.m_pDeclarations->externalEntityDecl(name, publicId, systemId);
    }

    bool m_bFillsDocument = false;

private:
    /// A handler is told of some markup. Qt's reader may have taken the first character behind it already.
    void EndMarkup() { m_bInMarkup = m_oReader.m_oTaken == QLatin1Char('<'); }
    static QString Reference(const QString &name)
    {
        return (name.startsWith(QLatin1Char('%')) ? name : QLatin1Char('&') + name) + QLatin1Char(';');
    }
    static qint64 Weight(const QString &prefix) { return 1 + prefix.size() / limits::kPrefixCharacters; }

    GuardedReader &m_oReader;
    QXmlLocator *m_pLocator = nullptr;
    int m_iDepth = 0;
    bool m_bInProlog = true;
    /// A "<" has come of which no handler has been told yet.
    bool m_bInMarkup = false;
    /// The references that there are to entities, as "&e;" or "%p;".
    QSet<QString> m_hEntities { QStringLiteral("&lt;"), QStringLiteral("&gt;"), QStringLiteral("&amp;"),
                                QStringLiteral("&apos;"), QStringLiteral("&quot;") };
    qint64 m_iLongestEntity = 0;
    qint64 m_iEntityParentheses = 0;
    qint64 m_iSearched = 0;
    qint64 m_iGrowth = 0;
    qint64 m_iParentheses = 0;
    QSet<QString> m_hPrefixes;
    qint64 m_iPrefixWeight = 0;
    qint64 m_iComparisons = 0;
};

/// Gives Qt's reader the characters, decoded by Qt, and the guard a look at each.
class GuardedReader::Source : public QXmlInputSource
{
public:
    Source(GuardedReader &reader, QIODevice *device)
        : QXmlInputSource(device)
        , m_oReader(reader)
    {
    }
    Source(GuardedReader &reader, const QString &text)
        : m_oReader(reader)
        , m_sPiece(text)
        , m_pAt(m_sPiece.constBegin())
        , m_pEnd(m_sPiece.constEnd())
    {
    }
    /// Qt's own function does the same, but costs a tenth of the whole parse.
    QChar next() override
    {
        if (m_pAt == m_pEnd && !Fetch()) {
            return QChar(EndOfDocument);
        }
        const QChar taken = *m_pAt++;
        m_oReader.m_oTaken = taken;
        if (IsWatched(taken.unicode())) {
            m_oReader.m_pGuard->See(taken.unicode());
            return m_oReader.m_sRefusal.isEmpty() ? taken : QChar(EndOfDocument);
        }
        return taken == QChar(EndOfData) ? QChar(EndOfDocument) : taken;
    }

private:
    // Each character is asked: the compiler makes a test of one bit of this, and no jump.
    static bool IsWatched(ushort unit)
    {
        return unit == '<' || unit == '&' || unit == '%' || unit == '(' || unit == ')';
    }
    bool Fetch()
    {
        fetchData(); // which does nothing without a device
        m_sPiece = data();
        m_pAt = m_sPiece.constBegin();
        m_pEnd = m_sPiece.constEnd();
        return m_pAt != m_pEnd;
    }

    GuardedReader &m_oReader;
    QString m_sPiece; // of the input, decoded
    const QChar *m_pAt = nullptr;
    const QChar *m_pEnd = nullptr;
};

GuardedReader::GuardedReader()
    : m_pGuard(std::make_unique<Guard>(*this))
{
    QXmlSimpleReader::setContentHandler(m_pGuard.get());
    QXmlSimpleReader::setLexicalHandler(m_pGuard.get());
    QXmlSimpleReader::setDeclHandler(m_pGuard.get());
}

GuardedReader::~GuardedReader() = default;

bool GuardedReader::ReadFile(const QString &path, QDomDocument *document)
{
    m_sName = path + QLatin1String(", ");
    const QFileInfo info(path);
    QFile file(path);
    if (info.exists() && !info.isFile()) {
        m_sRefusal = path + QLatin1String(" is no regular file");
        return false;
    }
    // Qt's reader begins a document also where there is none, and meets its end at once.
    if (!file.open(QIODevice::ReadOnly)) {
        m_sRefusal = path + QLatin1String(" can't be opened: ") + file.errorString();
    }
    Source source(*this, &file);
    return Read(source, document);
}

bool GuardedReader::ReadText(const QString &text, QDomDocument *document)
{
    Source source(*this, text);
    return Read(source, document);
}

bool GuardedReader::Read(Source &source, QDomDocument *document)
{
    if (document == nullptr) {
        return parse(&source) && GetRefusal().isEmpty();
    }
    // As QDomDocument sets up a reader of its own.
    setFeature(QStringLiteral("http://xml.org/sax/features/namespaces"), false);
    setFeature(QStringLiteral("http://xml.org/sax/features/namespace-prefixes"), true);
    setFeature(QStringLiteral("http://trolltech.com/xml/features/report-whitespace-only-CharData"), false);
    m_pGuard->m_bFillsDocument = true;
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    return document->setContent(&source, this) && GetRefusal().isEmpty();
#else
    SaxDocument filler(*document);
    m_pContent = &filler;
    m_pLexical = &filler;
    return parse(&source) && GetRefusal().isEmpty();
#endif
}

} // namespace dom
