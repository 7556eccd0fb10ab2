#include "dom/guardedreader.h"

#include "dom/entitycosts.h"
#include "dom/limits.h"

#include <QDomDocument>
#include <QFile>
#include <QFileInfo>
#include <QSet>
#include <QXmlDefaultHandler>
#include <QXmlInputSource>
#include <QXmlLocator>

namespace dom {

/// Stands between Qt's reader and the handlers, hands on what they may hear, and keeps count.
class GuardedReader::Guard : public QXmlDefaultHandler
{
public:
    explicit Guard(int openTags)
        : m_iDepth(openTags)
    {
    }

    /// Gets each character of the input first, and looks at some. What entities put in isn't seen here: Qt puts them into values without a
    /// word, so each reference counts as the greatest entity. For a "(" of a content model Qt recurses, and tells
    /// nobody before the model's end.
    void Take(ushort character)
    {
        m_iLatest = character;
        if (character < '=') {
            See(character);
        }
    }
    void See(ushort character)
    {
        if (character == '<') {
            m_bInMarkup = true;
            m_iParentheses = 0;
        } else if (character == '&' || (character == '%' && m_bInProlog)) {
            m_iGrowth += m_oEntities.GetLength();
            m_iParentheses += m_oEntities.GetParentheses();
        } else if (character == '(' || character == ')') {
            m_iParentheses += character == '(' ? 1 : -1;
        }
        if (m_iGrowth > limits::kMaxEntityGrowth) {
            Refuse(QStringLiteral("its entities may come to more than %1 characters").arg(limits::kMaxEntityGrowth));
        } else if (m_bInProlog && m_iParentheses > limits::kMaxContentModelDepth) {
            Refuse(
                QStringLiteral("more than %1 parentheses lie within each other").arg(limits::kMaxContentModelDepth));
        }
    }

    bool HasRefused() const { return !m_sRefusal.isEmpty(); }
    bool Refuse(const QString &reason)
    {
        const int line = m_pLocator == nullptr ? 0 : m_pLocator->lineNumber();
        m_sRefusal = m_sName + QStringLiteral("line %1: ").arg(line) + reason;
        return false;
    }

    void setDocumentLocator(QXmlLocator *locator) override
    {
        m_pLocator = locator;
        m_pContent->setDocumentLocator(locator);
    }
    bool startDocument() override { return m_pContent->startDocument(); }
    bool endDocument() override { return m_pContent->endDocument(); }
    bool startPrefixMapping(const QString &prefix, const QString &uri) override
    {
        if (!m_hPrefixes.contains(prefix)) {
            m_hPrefixes.insert(prefix);
            m_iPrefixWeight += Weight(prefix);
        }
        return m_pContent->startPrefixMapping(prefix, uri);
    }
    bool endPrefixMapping(const QString &prefix) override
    {
        m_iPrefixWeight -= m_hPrefixes.remove(prefix) ? Weight(prefix) : 0;
        return m_pContent->endPrefixMapping(prefix);
    }
    bool startElement(const QString &uri, const QString &local, const QString &name, const QXmlAttributes &atts) override
    {
        m_bInProlog = false;
        EndMarkup();
        if (++m_iDepth > limits::kMaxFileDepth) {
            return Refuse(QStringLiteral("more than %1 elements lie within each other").arg(limits::kMaxFileDepth));
        }
        return m_pContent->startElement(uri, local, name, atts);
    }
    bool endElement(const QString &uri, const QString &local, const QString &name) override
    {
        EndMarkup();
        --m_iDepth;
        return ComparePrefixes() && m_pContent->endElement(uri, local, name);
    }
    bool characters(const QString &text) override { return m_pContent->characters(text); }
    bool ignorableWhitespace(const QString &text) override { return m_pContent->ignorableWhitespace(text); }
    bool processingInstruction(const QString &target, const QString &data) override
    {
        EndMarkup();
        return m_pContent->processingInstruction(target, data);
    }
    /// A document takes those of its content alone. Qt tells it which these are, but only of a reader of Qt's own.
    bool skippedEntity(const QString &name) override
    {
        return (m_bFillsDocument && (m_bInProlog || m_bInMarkup)) || m_pContent->skippedEntity(name);
    }
    QString errorString() const override { return m_pContent->errorString(); }

    bool startDTD(const QString &name, const QString &publicId, const QString &systemId) override
    {
        return m_pLexical->startDTD(name, publicId, systemId);
    }
    bool endDTD() override { return m_pLexical->endDTD(); }
    bool startCDATA() override { return m_pLexical->startCDATA(); }
    bool endCDATA() override
    {
        EndMarkup();
        return m_pLexical->endCDATA();
    }
    bool comment(const QString &text) override
    {
        EndMarkup();
        return m_pLexical->comment(text);
    }

    bool internalEntityDecl(const QString &name, const QString &value) override
    {
        const QString reason = m_oEntities.Declare(name, value);
        return reason.isEmpty() ? m_pDeclarations->internalEntityDecl(name, value) : Refuse(reason);
    }
    bool externalEntityDecl(const QString &name, const QString &publicId, const QString &systemId) override
    {
        m_oEntities.DeclareExternal(name);
        return m_pDeclarations->externalEntityDecl(name, publicId, systemId);
    }

    QXmlDefaultHandler m_oNobody;
    // Not owned.
    QXmlContentHandler *m_pContent = &m_oNobody;
    QXmlLexicalHandler *m_pLexical = &m_oNobody;
    QXmlDeclHandler *m_pDeclarations = &m_oNobody;
    QString m_sRefusal;
    /// What the sentence of a refusal begins with.
    QString m_sName;
    bool m_bFillsDocument = false;

private:
    /// A handler is told of some markup; the reader may have taken the first character behind it already.
    void EndMarkup() { m_bInMarkup = m_iLatest == '<'; }
    static int Weight(const QString &prefix) { return 1 + prefix.size() / limits::kPrefixCharacters; }
    bool ComparePrefixes()
    {
        const qint64 prefixes = m_hPrefixes.size();
        m_iComparisons += prefixes > limits::kFreePrefixes ? prefixes * m_iPrefixWeight : 0;
        return m_iComparisons <= limits::kMaxPrefixComparisons
            || Refuse(QStringLiteral("it has too many namespace prefixes on too many elements"));
    }

    QXmlLocator *m_pLocator = nullptr;
    int m_iDepth;
    bool m_bInProlog = true;
    ushort m_iLatest = 0;
    /// A "<" has come of which no handler has been told yet.
    bool m_bInMarkup = false;
    EntityCosts m_oEntities;
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
    Source(Guard &guard, QIODevice *device)
        : QXmlInputSource(device)
        , m_oGuard(guard)
        , m_bHasMore(true)
    {
        TakePiece();
    }
    Source(Guard &guard, const QString &text)
        : m_oGuard(guard)
    {
        setData(text);
        TakePiece();
    }
    QChar next() override
    {
        if (m_pAt == m_pEnd && m_bHasMore) {
            fetchData();
            TakePiece();
        }
        if (m_pAt == m_pEnd) {
            return QChar(EndOfDocument);
        }
        const ushort character = *m_pAt++;
        m_oGuard.Take(character);
        const bool isEnd = character == EndOfData || m_oGuard.HasRefused();
        return QChar(isEnd ? ushort(EndOfDocument) : character);
    }

private:
    void TakePiece()
    {
        m_sPiece = data();
        m_pAt = m_sPiece.utf16();
        m_pEnd = m_pAt + m_sPiece.size();
    }

    Guard &m_oGuard;
    QString m_sPiece;
    const ushort *m_pAt = nullptr;
    const ushort *m_pEnd = nullptr;
    /// A text is there whole.
    bool m_bHasMore = false;
};

GuardedReader::GuardedReader(int openTags)
    : m_pGuard(std::make_unique<Guard>(openTags))
{
    QXmlSimpleReader::setContentHandler(m_pGuard.get());
    QXmlSimpleReader::setLexicalHandler(m_pGuard.get());
    QXmlSimpleReader::setDeclHandler(m_pGuard.get());
}

GuardedReader::~GuardedReader() = default;

bool GuardedReader::ReadFile(const QString &path, QDomDocument *document)
{
    m_pGuard->m_sName = path + QLatin1String(", ");
    if (!QFileInfo(path).isFile()) {
        m_pGuard->m_sRefusal = QStringLiteral("%1 is no regular file").arg(path);
        return false;
    }
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        m_pGuard->m_sRefusal = QStringLiteral("%1 can't be opened: %2").arg(path, file.errorString());
        return false;
    }
    Source source(*m_pGuard, &file);
    return Read(source, document);
}

bool GuardedReader::ReadText(const QString &text, QDomDocument *document)
{
    Source source(*m_pGuard, text);
    return Read(source, document);
}

const QString &GuardedReader::GetRefusal() const
{
    return m_pGuard->m_sRefusal;
}

void GuardedReader::setContentHandler(QXmlContentHandler *handler)
{
    m_pGuard->m_pContent = handler;
}

void GuardedReader::setLexicalHandler(QXmlLexicalHandler *handler)
{
    m_pGuard->m_pLexical = handler;
}

void GuardedReader::setDeclHandler(QXmlDeclHandler *handler)
{
    m_pGuard->m_pDeclarations = handler;
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
    return document->setContent(&source, this) && GetRefusal().isEmpty();
}

} // namespace dom
