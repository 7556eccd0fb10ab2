#include "schema/xmlschemahandler.h"

#include "dom/guardedreader.h"
#include "events/itagwright.h"
#include "host/trace.h"
#include "schema/referenceresolver.h"
#include "schema/schematags.h"

#include <QHash>

#include <algorithm>
#include <utility>

using schematags::UnitName;

XmlSchemaHandler::XmlSchemaHandler(ITagwright *pCallback, QString schemaPath)
    : XmlSchemaHandler(pCallback, schemaPath, {}, {}, {}, {})
{
    trace::CheckCallback(pCallback, "XmlSchemaHandler", UnitName(), __LINE__);
}

XmlSchemaHandler::XmlSchemaHandler(ITagwright *pCallback, QString schemaPath, MissingMap missing, OccursMap occurs,
                                   TypeMap types, ChoiceMap choices)
    : m_pCallback(pCallback)
    , m_MissingMap(std::move(missing))
    , m_OccursMap(std::move(occurs))
    , m_TypeMap(std::move(types))
    , m_ChoiceMap(std::move(choices))
    , m_pDocument(std::make_unique<QDomDocument>())
    , m_sSchemaPath(schemaPath)
    , m_pRun(std::make_shared<SchemaRun>(schemaPath))
{
}

std::shared_ptr<const Declarations> XmlSchemaHandler::CollectDeclarations()
{
    m_pRun->m_pDeclarations->Collect();
    return m_pRun->m_pDeclarations;
}

void XmlSchemaHandler::GetMaps(MissingMap &missing, OccursMap &occurs, TypeMap &types, ChoiceMap &choices)
{
    missing = m_MissingMap;
    occurs = m_OccursMap;
    types = m_TypeMap;
    choices = m_ChoiceMap;
}

void XmlSchemaHandler::AddMissingElement(const QString &name, const int &count, MissingElement record)
{
    std::list<MissingElement> &records = m_MissingMap[name][count];
    records.push_back(std::move(record));
    m_pMissingElement = &records.back();
}

XmlSchemaHandler::TagReader XmlSchemaHandler::ReaderOf(const QString &tag)
{
    static const QHash<QString, TagReader> readers {
        { QStringLiteral("xs:element"), &XmlSchemaHandler::ReadElement },
        { QStringLiteral("xs:complexType"), &XmlSchemaHandler::ReadTypeStart },
        { QStringLiteral("xs:simpleType"), &XmlSchemaHandler::ReadTypeStart },
        { QStringLiteral("xs:attribute"), &XmlSchemaHandler::ReadAttribute },
        { QStringLiteral("xs:restriction"), &XmlSchemaHandler::ReadRestriction },
        { QStringLiteral("xs:extension"), &XmlSchemaHandler::ReadExtension },
        { QStringLiteral("xs:choice"), &XmlSchemaHandler::ReadChoice },
        { QStringLiteral("xs:include"), &XmlSchemaHandler::ReadInclude },
    };
    return readers.value(tag, nullptr);
}

bool XmlSchemaHandler::startElement(const QString &, const QString &, const QString &qName, const QXmlAttributes &atts)
{
    if (!IsReading()) {
        return true;
    }
    if (m_oOpenTags.IsPassingOver()) {
        m_oOpenTags.Push(OpenTags::Kind::PassedOver);
        return true;
    }
    m_sTag = qName;
    m_oOpenTags.Push(OpenTags::Kind::Plain);
    const TagReader read = m_bInRestriction ? &XmlSchemaHandler::ReadFacet : ReaderOf(m_sTag);
    if (read != nullptr) {
        (this->*read)(atts);
    }
    if (m_pRun->m_oMaker.IsExceeded()) {
        m_pRun->TraceLimit(QStringLiteral("the tag %1 in %2").arg(m_sTag, WhereText()));
    }
    return true;
}

bool XmlSchemaHandler::endElement(const QString &, const QString &, const QString &qName)
{
    if (!IsReading()) {
        return true;
    }
    const OpenTags::Kind kind = m_oOpenTags.Pop();
    if (kind == OpenTags::Kind::PassedOver) {
        return true;
    }
    if (qName == QLatin1String("xs:complexType")) {
        EndType(kind != OpenTags::Kind::UnmovedType);
    } else if (qName == QLatin1String("xs:simpleType")) {
        EndType(false);
    } else if (qName == QLatin1String("xs:element")) {
        m_bInGlobal = m_bInGlobal && m_iTypeDepth > 0;
    } else if (qName == QLatin1String("xs:attribute")) {
        m_bInGlobal = m_bInGlobal && m_iTypeDepth > 0;
        m_bInGlobalAttribute = m_bInGlobalAttribute && m_iTypeDepth > 0;
    } else if (qName == QLatin1String("xs:restriction")) {
        m_bInRestriction = false;
        m_iEnumerationIndex = 1;
    } else if (qName == QLatin1String("xs:choice")) {
        m_bInChoice = false;
        // Each choice has a hundred keys of its own, an empty one too.
        m_iChoiceKey = (m_iChoiceKey / 100 + 1) * 100;
    }
    return true;
}

void XmlSchemaHandler::EndType(bool movesUp)
{
    const bool isInner = m_iTypeDepth > 1;
    m_iTypeDepth = std::max(m_iTypeDepth - 1, 0);
    const bool hasElement = movesUp && isInner && m_pCurrentElement != nullptr;
    if (hasElement && m_pCurrentElement->parentNode().isElement()) {
        m_pCurrentElement = m_pRun->Keep(m_pCurrentElement->parentNode().toElement());
    }
}

void XmlSchemaHandler::MoveDown()
{
    const QDomElement last = m_pCurrentElement == nullptr ? QDomElement() : m_pCurrentElement->lastChildElement();
    if (last.isNull()) {
        m_oOpenTags.Mark(OpenTags::Kind::UnmovedType);
        return;
    }
    m_pCurrentElement = m_pRun->Keep(last);
}

void XmlSchemaHandler::ReadTypeStart(const QXmlAttributes &atts)
{
    ++m_iTypeDepth;
    if (atts.count() > 0) {
        m_oOpenTags.Mark(OpenTags::Kind::NamedType);
        StartDeclaration(atts.value(0), true);
    } else if (m_iTypeDepth != 1 && m_sTag == QLatin1String("xs:complexType")) {
        MoveDown();
    }
}

// Opens the fragment of a named type or of a global declaration, and files its entry.
void XmlSchemaHandler::StartDeclaration(const QString &name, bool isType)
{
    m_sGlobalName = name;
    OpenFragment(m_pRun->NewFragment(*m_pDocument), isType);
    m_pTypeEntry = FileEntry(name, { isType, 0, m_pFragment });
}

void XmlSchemaHandler::OpenFragment(QDomDocumentFragment *fragment, bool hasPlaceholders)
{
    m_pFragment = fragment;
    m_bHasPlaceholders = hasPlaceholders;
    m_oCarrier.clear();
    m_oRestriction.clear();
}

void XmlSchemaHandler::ReadGlobal(const QXmlAttributes &atts)
{
    if (atts.count() == 0) {
        TracePassedOver();
        m_oOpenTags.Mark(OpenTags::Kind::PassedOver);
        return;
    }
    m_oOpenTags.Mark(OpenTags::Kind::Global);
    m_bInGlobalAttribute = m_bInGlobalAttribute || m_sTag == QLatin1String("xs:attribute");
    m_bInGlobal = true;
    StartDeclaration(atts.value(0), false);
    m_pCurrentElement = m_pRun->Keep(m_pDocument->createElement(m_sGlobalName));
    m_pRun->m_oMaker.Append(*m_pFragment, *m_pCurrentElement);
    m_pRun->m_pDeclarations->MarkDefault(*m_pCurrentElement, atts);
    for (int i = 0; i < atts.count(); ++i) {
        const QString name = atts.qName(i);
        if (name == QLatin1String("default")) {
            m_pRun->m_oMaker.SetAttribute(*m_pCurrentElement, name, atts.value(i));
        } else if (name == QLatin1String("type") && !ApplyType(atts.value(i), *m_pCurrentElement)) {
            // Not raised: the declaration counts as complete all the same. A default behind the type is lost.
            AddMissingElement(atts.value(i), 1, { m_pCurrentElement, nullptr, m_sGlobalName });
            return;
        }
    }
}

void XmlSchemaHandler::ReadInclude(const QXmlAttributes &atts)
{
    if (atts.count() == 0) {
        TracePassedOver();
        return;
    }
    m_bHasInclude = true;
    const QString path = m_pRun->m_oFiles.PathOf(atts.value(0));
    const QString refusal = m_pRun->m_oFiles.Enter(path, m_oOpenTags.Count());
    if (!refusal.isEmpty()) {
        trace::Write(UnitName(), __LINE__, [&] {
            return QLatin1String("The include of ") + path + QLatin1String(" in ") + WhereText()
                + QLatin1String(" is passed over: ") + refusal + QLatin1Char('.');
        });
        return;
    }
    // A file that can't be read adds nothing; the names that it should have declared are missed in the end.
    RunInclude(path);
    m_pRun->m_oFiles.Leave();
}

void XmlSchemaHandler::RunInclude(const QString &path)
{
    // The tables are moved there and back: copies would cost more with each include.
    XmlSchemaHandler nested(m_pCallback, m_sSchemaPath, std::move(m_MissingMap), std::move(m_OccursMap),
                            std::move(m_TypeMap), std::move(m_ChoiceMap));
    nested.m_pRun = m_pRun;
    dom::GuardedReader reader;
    reader.setContentHandler(&nested);
    reader.setErrorHandler(&nested);
    reader.ReadFile(path);
    m_MissingMap = std::move(nested.m_MissingMap);
    m_OccursMap = std::move(nested.m_OccursMap);
    m_TypeMap = std::move(nested.m_TypeMap);
    m_ChoiceMap = std::move(nested.m_ChoiceMap);
    // Kept only now: a handle taken before the document's first node is made would share nothing with it.
    m_pRun->Keep(*nested.m_pDocument);
}

bool XmlSchemaHandler::endDocument()
{
    m_pLocator = nullptr;
    // 1. Resolve what waits.
    if (!IsReading() || !ReferenceResolver(m_MissingMap, m_TypeMap, *m_pRun).Resolve(m_bHasInclude)) {
        return false;
    }
    // 2. Choose the root: the last unused declaration by name.
    ChooseRoot();
    // 3. Build the template; that of an include is never read.
    if (m_pRun->m_oFiles.IsAtTop()) {
        BuildTemplate();
    }
    return true;
}

void XmlSchemaHandler::ChooseRoot()
{
    for (auto &[name, entry] : m_TypeMap) {
        if (!entry.m_bUsed && entry.m_pFragment != nullptr && entry.m_pFragment->hasChildNodes()) {
            m_pFragment = entry.m_pFragment;
            entry.m_bUsed = true;
        }
    }
}

void XmlSchemaHandler::BuildTemplate()
{
    // The load makes the processing instruction, and then reports the error that an element is missing, which is as
    // wanted.
    m_pDocument->setContent(QStringLiteral("<?xml version='1.0' encoding=\"UTF-8\"?>"));
    // Without a root candidate m_pFragment may belong to a named type, or be null.
    QDomNode next;
    for (QDomNode child = m_pFragment == nullptr ? next : m_pFragment->firstChild(); !child.isNull(); child = next) {
        next = child.nextSibling();
        if (!TemplateMaker::IsPlaceholder(child)) {
            m_pDocument->appendChild(m_bRootMoves ? child : child.cloneNode(true));
        }
    }
    m_pRun->m_pDeclarations->Settle(*m_pDocument);
}

bool XmlSchemaHandler::IsReading() const
{
    return m_pCallback != nullptr && !m_pRun->m_oMaker.IsExceeded();
}

TypeEntry *XmlSchemaHandler::FileEntry(const QString &name, TypeEntry entry)
{
    TypeEntry &place = m_TypeMap[name];
    if (place.m_pFragment != nullptr && place.m_pFragment->ownerDocument() != *m_pDocument) {
        m_pRun->m_lReplaced.insert(name);
    }
    place = entry;
    return &place;
}

// The content of the declaration of that name, which is marked as used, if all that it refers to is there.
const QDomDocumentFragment *XmlSchemaHandler::UseComplete(const QString &name)
{
    const auto found = m_TypeMap.find(name);
    if (found == m_TypeMap.end() || found->second.m_iOpenRefs != 0 || found->second.m_pFragment == nullptr) {
        return nullptr;
    }
    found->second.m_bUsed = true;
    return found->second.m_pFragment;
}

QString XmlSchemaHandler::WhereText() const
{
    const QString path = m_pRun->m_oFiles.GetCurrent();
    return m_pLocator == nullptr ? path
                                 : QStringLiteral("%1, line %2,").arg(path, QString::number(m_pLocator->lineNumber()));
}

void XmlSchemaHandler::TracePassedOver() const
{
    trace::Write(UnitName(), __LINE__, [this] {
        return QStringLiteral("The tag %1 in %2 has no attributes and is passed over.").arg(m_sTag, WhereText());
    });
}
