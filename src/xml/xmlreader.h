#pragma once

#include "tagwright_export.h"

#include <QDomDocument>
#include <QDomDocumentFragment>
#include <QDomNode>
#include <QString>

#include <functional>
#include <list>
#include <memory>
#include <vector>

class ITagwright;
class QFile;
class XmlContentHandler;

namespace dom {
class GuardedReader;
struct SearchRoots;
} // namespace dom

/// Reads XML in two ways that go together: by events, while ParseXml runs over the content, and by search for names.
///
/// Construct it, give it a content, then parse and search in any order; searches also from inside XmlUpdate. A search
/// always sees the whole content, not only what a running parse has reached. One thread; all events come on the stack
/// of ParseXml. Don't destroy a reader from inside XmlUpdate.
///
/// Events: DocBeginEvent, an ElemBeginEvent and an ElemEndEvent for each element, DocEndEvent where the end is reached.
/// - File and document content: each ElemBeginEvent carries the element's node and an empty text; the text is to be
///   taken from the node (`event->GetElementNode().toElement().text()`). The node is found by keeping step with the
///   parser, which goes astray in mixed content: an element behind a leading text, comment or instruction, behind a
///   comment between two elements, or behind an element within another of the same name comes with a node that was
///   announced before. Name and attributes come from the parser and are always right.
/// - Fragment and node content (but for a node that is a document): a null node, and as text the first that follows the
///   start tag. The event comes with that text: for an element without text of its own with the line end that the
///   serialisation puts there, for an empty one behind its ElemEndEvent, and not at all if none follows before the
///   next start tag or the end of the root.
///
/// The attributes of an event are without the declarations of namespaces ("xmlns", "xmlns:p").
///
/// What Qt's parser lets pass: ParseXml's true is no proof that the content is well-formed. Duplicate attributes (the
/// events carry all of them, the document the last), undeclared prefixes and names such as "a:b:c", undeclared entities
/// (they vanish), missing blanks between attributes, control characters (also as references, zero included), any
/// version and an unknown encoding in the declaration, a DOCTYPE that names another root. Line ends and blanks in
/// attributes stay as they stand in the file. Defaults of a DTD and external entities are not read. A text of blanks
/// alone is in no document that Qt reads.
///
/// Limits: a content is read no further, and a trace tells why, where its elements nest deeper than 500 (Qt's parser
/// recurses on the caller's stack), where its entities may put in more than 16 million characters, refer to what isn't
/// declared before them or are more than 1,000, and where its namespace prefixes would keep Qt's parser busy for more
/// than about a second. ParseXml is false then, as at a fault. Searches work at any depth.
class TAGWRIGHT_EXPORT XMLReader
{
public:
    /// `pCallback` hears all events; it isn't owned and must outlive the reader. With a null one, which is traced,
    /// everything answers false or an empty list. `handler` is null for a host: the reader makes its own. One that is
    /// given isn't owned, must outlive the reader, and keeps its own callback and document.
    XMLReader(ITagwright *pCallback, XmlContentHandler *handler);
    /// Frees what the reader has made. A document that was handed over by pointer is NOT deleted here; see below.
    virtual ~XMLReader();
    Q_DISABLE_COPY(XMLReader)

    /// Reads a file into a document of the reader's own. True also if it can't be opened or parsed: ParseXml, which
    /// reads the file's bytes again, tells by false, and searches see what was read up to the fault or limit. Of a FIFO
    /// or a device nothing is read.
    bool SetXmlContent(QString fileName);
    /// Uses a document through a handle of the reader's own: whoever has made it keeps it, and both see each other's
    /// changes. True.
    bool SetXmlContent(QDomDocument document);
    /// Takes a document object made with `new`. Exactly one of two things happens to it:
    /// - the next SetXmlContent of this reader deletes it (inside XmlUpdate: when the running parse has ended). From
    ///   then on the pointer must not be used. The same pointer given again stays;
    /// - if no SetXmlContent follows, the destructor of the reader leaves it alone: the caller deletes it, after the
    ///   reader has gone.
    ///
    /// So never give a document on the stack, and don't delete one while a reader has it. The overload that takes the
    /// document by value has none of these rules. True, also for a null pointer: ParseXml is false and searches give
    /// empty lists then.
    bool SetXmlContent(QDomDocument *document);
    /// Uses a fragment through a handle of the reader's own. A parse reads only a fragment with one element at its top
    /// to the end. True.
    bool SetXmlContent(QDomDocumentFragment fragment);
    /// Uses a node, with all that is below it, through a handle of the reader's own. True.
    bool SetXmlContent(QDomNode node);

    /// Runs the parser over the content: over the bytes of the file, or over a fresh serialisation of the document,
    /// fragment or node. The result is the parser's; at a fault the events up to it have gone out. May be called again.
    /// False, and no event, without content, from inside an XmlUpdate of this reader's own parse, and for a document,
    /// fragment or node in which more than 500 elements lie within each other.
    ///
    /// A SetXmlContent from inside XmlUpdate is allowed: searches see the new content at once, the parse that is
    /// running goes on over the old one, which lives until its end. So is a change of the document through a node; but
    /// don't fill it anew, by its setContent, during a parse.
    bool ParseXml();

    /// All nodes called `name` in document order, or, with a `parent` that isn't empty, those below the first element
    /// called so. Names are compared whole and exactly with QDomNode::nodeName: no path, no wildcard, no namespace;
    /// "#text" finds texts. What lies inside a match is not looked at.
    ///
    /// If the element at which the search begins bears the name itself, the list begins with what stands for the
    /// content, and what is below that element follows: with file and document content the document's last child
    /// (the root, if nothing stands behind it), with a fragment its first child, with a node the node itself. The
    /// search begins at the root, or at the first child of the fragment or node if that is an element, or, with a
    /// `parent`, at the element found for it.
    ///
    /// Never null; no match gives an empty list. The list belongs to the reader: don't delete it; the next search
    /// replaces it, and the reader's end destroys it. The nodes in it are handles and may be kept. But a node that is
    /// kept past its document (that of a file goes with the next content, or with the reader) keeps only its own
    /// subtree: it has no parent, and to ask it for its siblings is an error that Qt doesn't catch.
    std::list<QDomNode> *GetElement(QString name, QString parent);

    /// As GetElement, below the element that the running parse has announced last, or ended last. After a parse that
    /// is the root. If that element bears the name itself, what stands for the content comes first, as there. An empty
    /// list before the first parse of a content, and for fragment and node content.
    std::list<QDomNode> *SearchBelowCurrentElement(QString name);

private:
    template <typename Fill>
    bool SetContent(bool &hasKind, Fill fill);
    void ErasePointerAndSetFlags();
    void InitHandler(ITagwright *pCallback, QDomDocument *document);
    void LetGoOf(const QDomDocument *document);
    bool ParseNode(const QDomNode &node);
    bool RunParser(const std::function<bool(dom::GuardedReader &)> &read);
    void EndParse();
    dom::SearchRoots GetSearchRoots() const;

    /// Owned only while m_bOwnsHandler is set.
    std::unique_ptr<XmlContentHandler> m_pHandler;
    std::unique_ptr<dom::GuardedReader> m_pReader;
    ITagwright *m_pCallback;
    /// In which the reader's own handler keeps step: the content, if that is a file, a document or a node that is one.
    /// Of a document handed over by pointer only the next content makes the reader the owner: see m_bIsHostDocument.
    std::unique_ptr<QDomDocument> m_pDocument;
    std::unique_ptr<QFile> m_pFile;
    std::unique_ptr<std::list<QDomNode>> m_pSearchResult;
    std::unique_ptr<QDomDocumentFragment> m_pFragment;
    std::unique_ptr<QDomNode> m_pNode;
    bool m_bHasNode = false;
    bool m_bHasFragment = false;
    bool m_bHasDocument = false;
    bool m_bHasFile = false;
    bool m_bOwnsHandler = false;

    bool m_bIsHostDocument = false;
    bool m_bParsing = false;
    /// For each content that was replaced during the running parse its document or null: they live to its end.
    std::vector<std::unique_ptr<QDomDocument>> m_lReplacedDocuments;
};
