#include "xml/xmlreader.h"

#include "dom/guardedreader.h"
#include "dom/limits.h"
#include "dom/nodesearch.h"
#include "dom/nodewalk.h"
#include "host/trace.h"
#include "xml/nodetext.h"
#include "xml/xmlcontenthandler.h"

#include <QFile>
#include <QScopeGuard>

namespace {

constexpr int kDocumentIndent = 1;

void Trace(int line, const char *sentence, const QString &detail = QString())
{
    trace::Write(QStringLiteral("xmlreader"), line,
                 [&] { return QLatin1String("XMLReader: ") + QLatin1String(sentence) + detail; });
}

/// A file that doesn't exist is passed over without a trace.
void TraceRefusal(int line, const dom::GuardedReader &reader, const QFile *file)
{
    if (!reader.GetRefusal().isEmpty() && (file == nullptr || file->exists())) {
        Trace(line, "the content is not read, or no further: ", reader.GetRefusal());
    }
}

} // namespace

XMLReader::XMLReader(ITagwright *pCallback, XmlContentHandler *handler)
    : m_pHandler(handler)
    , m_pCallback(pCallback)
{
    trace::CheckCallback(pCallback, "XMLReader", QStringLiteral("xmlreader"), __LINE__);
}

XMLReader::~XMLReader()
{
    if (!m_bOwnsHandler) {
        static_cast<void>(m_pHandler.release());
    }
    m_pHandler.reset();
    m_pReader.reset();
    m_pFile.reset();
    if (m_bIsHostDocument) {
        static_cast<void>(m_pDocument.release());
    }
}

bool XMLReader::SetXmlContent(QString fileName)
{
    return SetContent(m_bHasFile, [&] {
        m_pFile = std::make_unique<QFile>(fileName);
        m_pDocument = std::make_unique<QDomDocument>();
        dom::GuardedReader reader;
        reader.ReadFile(fileName, m_pDocument.get());
        TraceRefusal(__LINE__, reader, m_pFile.get());
    });
}

bool XMLReader::SetXmlContent(QDomDocument document)
{
    return SetContent(m_bHasDocument, [&] { m_pDocument = std::make_unique<QDomDocument>(document); });
}

bool XMLReader::SetXmlContent(QDomDocument *document)
{
    LetGoOf(document);
    return SetContent(m_bHasDocument, [&] {
        m_pDocument.reset(document);
        m_bIsHostDocument = true;
    });
}

bool XMLReader::SetXmlContent(QDomDocumentFragment fragment)
{
    return SetContent(m_bHasFragment, [&] { m_pFragment = std::make_unique<QDomDocumentFragment>(fragment); });
}

bool XMLReader::SetXmlContent(QDomNode node)
{
    return SetContent(m_bHasNode, [&] {
        m_pNode = std::make_unique<QDomNode>(node);
        if (node.isDocument()) {
            m_pDocument = std::make_unique<QDomDocument>(node.toDocument());
        }
    });
}

bool XMLReader::ParseXml()
{
    if (m_bParsing) {
        Trace(__LINE__, "ParseXml was called from inside its own parse");
        return false;
    }
    if (m_bHasDocument) {
        return m_pDocument != nullptr && ParseNode(*m_pDocument);
    }
    if (m_bHasFile) {
        const QString path = m_pFile->fileName();
        return RunParser([&path](dom::GuardedReader &reader) { return reader.ReadFile(path); });
    }
    if (m_bHasNode) {
        return ParseNode(*m_pNode);
    }
    return m_bHasFragment && ParseNode(*m_pFragment);
}

std::list<QDomNode> *XMLReader::GetElement(QString name, QString parent)
{
    m_pSearchResult = std::make_unique<std::list<QDomNode>>();
    dom::FindBelow(name, parent, GetSearchRoots(), *m_pSearchResult);
    return m_pSearchResult.get();
}

std::list<QDomNode> *XMLReader::SearchBelowCurrentElement(QString name)
{
    m_pSearchResult = std::make_unique<std::list<QDomNode>>();
    // Until the parse ends the cursor still stands in a content that was replaced meanwhile.
    const bool isCursorStale = m_bOwnsHandler && !m_lReplacedDocuments.empty();
    const QDomElement *current =
        m_pCallback == nullptr || m_pHandler == nullptr || isCursorStale ? nullptr : m_pHandler->GetCurrentElement();
    if (current != nullptr) {
        dom::FindAll(name, { *current, GetSearchRoots().m_oTop }, *m_pSearchResult);
    }
    return m_pSearchResult.get();
}

/// The steps that all kinds of content share; `fill` sets the content itself. False without a callback.
template <typename Fill>
bool XMLReader::SetContent(bool &hasKind, Fill fill)
{
    if (m_pCallback == nullptr) {
        return false;
    }
    ErasePointerAndSetFlags();
    hasKind = true;
    fill();
    InitHandler(m_pCallback, m_pDocument.get());
    return true;
}

void XMLReader::ErasePointerAndSetFlags()
{
    m_pNode.reset();
    m_pFragment.reset();
    if (m_bParsing) {
        m_lReplacedDocuments.push_back(std::move(m_pDocument));
    }
    m_pDocument.reset();
    m_pFile.reset();
    m_bHasNode = m_bHasFragment = m_bHasDocument = m_bHasFile = m_bIsHostDocument = false;
}

void XMLReader::InitHandler(ITagwright *pCallback, QDomDocument *document)
{
    if (m_pHandler == nullptr) {
        m_pHandler = std::make_unique<XmlContentHandler>(pCallback, document);
        m_bOwnsHandler = true;
    } else if (m_bOwnsHandler && !m_bParsing) {
        m_pHandler->SetDocument(document);
    }
}

/// A host's document that is given again must not be deleted as the content before.
void XMLReader::LetGoOf(const QDomDocument *document)
{
    if (m_pDocument.get() == document) {
        static_cast<void>(m_pDocument.release());
    }
    for (std::unique_ptr<QDomDocument> &replaced : m_lReplacedDocuments) {
        if (replaced.get() == document) {
            static_cast<void>(replaced.release());
        }
    }
}

bool XMLReader::ParseNode(const QDomNode &node)
{
    if (dom::IsDeeperThan(node, limits::kMaxFileDepth)) {
        Trace(__LINE__, "the content is not parsed, since it nests more elements than ",
              QString::number(limits::kMaxFileDepth));
        return false;
    }
    const QString text = m_bHasDocument ? m_pDocument->toString(kDocumentIndent) : NodeText(node);
    return RunParser([&text](dom::GuardedReader &reader) { return reader.ReadText(text); });
}

/// Whatever a receiver throws, the reader can be used again.
bool XMLReader::RunParser(const std::function<bool(dom::GuardedReader &)> &read)
{
    const auto end = qScopeGuard([this] { EndParse(); });
    m_bParsing = true;
    m_pReader = std::make_unique<dom::GuardedReader>();
    m_pReader->setContentHandler(m_pHandler.get());
    m_pReader->setErrorHandler(m_pHandler.get());
    const bool result = read(*m_pReader);
    TraceRefusal(__LINE__, *m_pReader, m_pFile.get());
    return result;
}

void XMLReader::EndParse()
{
    m_bParsing = false;
    m_pReader.reset();
    if (!m_lReplacedDocuments.empty() && m_bOwnsHandler) {
        m_pHandler->SetDocument(m_pDocument.get());
    }
    m_lReplacedDocuments.clear();
}

dom::SearchRoots XMLReader::GetSearchRoots() const
{
    if (m_bHasFile || m_bHasDocument) {
        return m_pDocument == nullptr ? dom::SearchRoots() : dom::DocumentRoots(*m_pDocument);
    }
    if (m_bHasFragment) {
        return { m_pFragment->firstChild().toElement(), m_pFragment->firstChild() };
    }
    return m_bHasNode ? dom::SearchRoots { m_pNode->firstChild().toElement(), *m_pNode } : dom::SearchRoots();
}
