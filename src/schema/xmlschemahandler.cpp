#include "schema/xmlschemahandler.h"

#include "dom/guardedreader.h"
#include "events/itagwright.h"
#include "host/trace.h"
#include "schema/referenceresolver.h"
#include "schema/schematags.h"

#include <array>
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
    , m_pOwnRun(std::make_unique<SchemaRun>(schemaPath))
    , m_pRun(m_pOwnRun.get())
    , m_sFilePath(schemaPath)
{
}

XmlSchemaHandler::~XmlSchemaHandler() = default;

void XmlSchemaHandler::SetRootMoves()
{
    m_bRootMoves = true;
}

QDomDocument *XmlSchemaHandler::GetDocument()
{
    return m_pDocument.get();
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

void XmlSchemaHandler::setDocumentLocator(QXmlLocator *locator)
{
    m_pLocator = locator;
}

bool XmlSchemaHandler::startDocument()
{
    return true;
}

bool XmlSchemaHandler::characters(const QString &)
{
    return true;
}

XmlSchemaHandler::TagReader XmlSchemaHandler::ReaderOf(const QString &tag)
{
    struct Row
    {
        QLatin1String m_sTag;
        TagReader m_pRead;
    };
    static const std::array<Row, 8> rows { {
        { QLatin1String("xs:element"), &XmlSchemaHandler::ReadElement },
        { QLatin1String("xs:complexType"), &XmlSchemaHandler::ReadTypeStart },
        { QLatin1String("xs:simpleType"), &XmlSchemaHandler::ReadTypeStart },
        { QLatin1String("xs:attribute"), &XmlSchemaHandler::ReadAttribute },
        { QLatin1String("xs:restriction"), &XmlSchemaHandler::ReadRestriction },
        { QLatin1String("xs:extension"), &XmlSchemaHandler::ReadExtension },
        { QLatin1String("xs:choice"), &XmlSchemaHandler::ReadChoice },
        { QLatin1String("xs:include"), &XmlSchemaHandler::ReadInclude },
    } };
    for (const Row &row : rows) {
        if (tag == row.m_sTag) {
            return row.m_pRead;
        }
    }
    return nullptr;
}

bool XmlSchemaHandler::startElement(const QString &, const QString &, const QString &qName, const QXmlAttributes &atts)
{
    if (!IsReading()) {
        return true;
    }
    if (m_iSkippedTags > 0) {
        ++m_iSkippedTags;
        return true;
    }
    m_sTag = qName;
    m_oOpenTags.Push();
    const TagReader read = m_bInRestriction ? &XmlSchemaHandler::ReadFacet : ReaderOf(m_sTag);
    if (read != nullptr) {
        (this->*read)(atts);
    }
    return true;
}

bool XmlSchemaHandler::endElement(const QString &, const QString &, const QString &qName)
{
    if (!IsReading()) {
        return true;
    }
    if (m_iSkippedTags > 0) {
        --m_iSkippedTags;
        return true;
    }
    const OpenTags::Kind kind = m_oOpenTags.Pop();
    if (qName == QLatin1String("xs:complexType")) {
        EndType(kind);
    } else if (qName == QLatin1String("xs:simpleType")) {
        m_iTypeDepth -= m_iTypeDepth > 0 ? 1 : 0;
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

void XmlSchemaHandler::EndType(OpenTags::Kind kind)
{
    if (m_iTypeDepth == 0) {
        return;
    }
    --m_iTypeDepth;
    if (m_iTypeDepth > 0 && kind != OpenTags::Kind::UnmovedType) {
        MoveUp();
    }
}

void XmlSchemaHandler::MoveDown()
{
    const QDomElement last = m_pCurrentElement == nullptr ? QDomElement() : m_pCurrentElement->lastChildElement();
    if (last.isNull()) {
        m_oOpenTags.Mark(OpenTags::Kind::UnmovedType);
        return;
    }
    m_pCurrentElement = m_pRun->m_oArena.Keep(last);
    ++m_iCurrentLevel;
}

void XmlSchemaHandler::MoveUp()
{
    const QDomNode parent = m_pCurrentElement == nullptr ? QDomNode() : m_pCurrentElement->parentNode();
    if (parent.isElement()) {
        m_pCurrentElement = m_pRun->m_oArena.Keep(parent.toElement());
        --m_iCurrentLevel;
    }
}

void XmlSchemaHandler::ReadTypeStart(const QXmlAttributes &atts)
{
    ++m_iTypeDepth;
    if (atts.count() > 0) {
        m_oOpenTags.Mark(OpenTags::Kind::NamedType);
        m_pFragment = m_pRun->m_oArena.NewFragment(*m_pDocument);
        m_oNamedType.Open(*m_pDocument, *m_pFragment, m_pRun->m_oBudget);
        m_sGlobalName = atts.value(0);
        FileEntry(m_sGlobalName, { true, 0, m_pFragment });
        m_pGlobalEntry = m_pTypeEntry;
    } else if (m_iTypeDepth != 1 && m_sTag == QLatin1String("xs:complexType")) {
        MoveDown();
    }
}

void XmlSchemaHandler::ReadElement(const QXmlAttributes &atts)
{
    if (m_iTypeDepth == 0) {
        ReadGlobal(atts);
    } else {
        ReadLocalElement(atts);
    }
}

void XmlSchemaHandler::ReadGlobal(const QXmlAttributes &atts)
{
    if (atts.count() == 0) {
        TracePassedOver();
        SkipContent();
        return;
    }
    m_bInGlobalAttribute = m_bInGlobalAttribute || m_sTag == QLatin1String("xs:attribute");
    m_sGlobalName = atts.value(0);
    m_pFragment = m_pRun->m_oArena.NewFragment(*m_pDocument);
    m_oNamedType.Close();
    m_bInGlobal = true;
    m_pGlobalFragment = m_pFragment;
    m_iCurrentLevel = 1;
    m_pCurrentElement = m_pRun->m_oArena.Keep(m_pDocument->createElement(m_sGlobalName));
    if (CheckBudget(m_pRun->m_oBudget.Take(m_pFragment, { 1, 0, 1 }, 1))) {
        m_pFragment->appendChild(*m_pCurrentElement);
    }
    FileEntry(m_sGlobalName, { false, 0, m_pFragment });
    m_pGlobalEntry = m_pTypeEntry;
    ReadGlobalAttributes(atts);
}

void XmlSchemaHandler::ReadGlobalAttributes(const QXmlAttributes &atts)
{
    const Target target = CurrentTarget();
    for (int i = 0; i < atts.count(); ++i) {
        const QString name = atts.qName(i);
        if (name == QLatin1String("default")) {
            SetAttribute(target, name, atts.value(i));
        } else if (name == QLatin1String("type") && !ApplyType(atts.value(i), target, m_iCurrentLevel)) {
            FileRecord(atts.value(i), 1, { m_pCurrentElement, nullptr, m_sGlobalName, false },
                       { RecordKind::Plain, m_pGlobalFragment, m_iCurrentLevel + 1, false });
            return;
        }
    }
}

void XmlSchemaHandler::ReadChoice(const QXmlAttributes &)
{
    m_bInChoice = true;
}

void XmlSchemaHandler::ReadInclude(const QXmlAttributes &atts)
{
    if (atts.count() == 0) {
        TracePassedOver();
        return;
    }
    m_bHasInclude = true;
    const QString path = IncludePath(atts.value(0));
    OpenFiles &files = m_pRun->m_oFiles;
    if (!files.Enter(path, m_oOpenTags.Count())) {
        TraceRefusedInclude(path);
        return;
    }
    // A file that can't be read adds nothing; the names that it should have declared are missed in the end.
    RunInclude(path);
    files.Leave();
}

QString XmlSchemaHandler::IncludePath(const QString &location) const
{
    const QLatin1Char separator('/');
    if (m_sSchemaPath.endsWith(QLatin1String(".xsd"))) {
        return m_sSchemaPath.left(m_sSchemaPath.lastIndexOf(separator)) + separator + location;
    }
    return m_sSchemaPath.endsWith(separator) ? location : separator + location;
}

void XmlSchemaHandler::RunInclude(const QString &path)
{
    // The tables move there and back, which leaves them as a copy and its return would.
    XmlSchemaHandler nested(m_pCallback, m_sSchemaPath, std::move(m_MissingMap), std::move(m_OccursMap),
                            std::move(m_TypeMap), std::move(m_ChoiceMap));
    nested.Join(*m_pRun, path);
    dom::GuardedReader reader;
    reader.setContentHandler(&nested);
    reader.setErrorHandler(&nested);
    reader.ReadFile(path);
    m_MissingMap = std::move(nested.m_MissingMap);
    m_OccursMap = std::move(nested.m_OccursMap);
    m_TypeMap = std::move(nested.m_TypeMap);
    m_ChoiceMap = std::move(nested.m_ChoiceMap);
    // Only now: a document has no inside before its first node is made.
    m_pRun->m_oArena.Keep(*nested.m_pDocument);
    // What is open here looked read to its end from there.
    m_pRun->m_oAttributes.Drop(m_pFragment);
    m_pRun->m_oAttributes.Drop(m_pGlobalFragment);
}

void XmlSchemaHandler::Join(SchemaRun &run, const QString &filePath)
{
    m_pRun = &run;
    m_pOwnRun.reset();
    m_bIsInclude = true;
    m_sFilePath = filePath;
}

bool XmlSchemaHandler::endDocument()
{
    m_pLocator = nullptr;
    if (!IsReading() || !ResolveReferences()) {
        return false;
    }
    const bool found = ChooseRoot();
    // Nobody reads the template of an included file.
    if (!m_bIsInclude) {
        BuildTemplate(found);
    }
    return true;
}

bool XmlSchemaHandler::ResolveReferences()
{
    ReferenceResolver resolver(m_MissingMap, m_TypeMap, *m_pRun);
    resolver.DropReplaced();
    if (m_bHasInclude) {
        resolver.Reopen();
    }
    return resolver.Resolve();
}

bool XmlSchemaHandler::ChooseRoot()
{
    bool found = false;
    for (auto &[name, entry] : m_TypeMap) {
        if (!entry.m_bUsed && entry.m_pFragment != nullptr && entry.m_pFragment->hasChildNodes()) {
            m_pFragment = entry.m_pFragment;
            entry.m_bUsed = true;
            found = true;
        }
    }
    return found;
}

void XmlSchemaHandler::BuildTemplate(bool whole)
{
    // There is no other way to a processing instruction of this name. The text has no element, so that the load reports
    // an error after it has made the instruction.
    m_pDocument->setContent(QStringLiteral("<?xml version='1.0' encoding=\"UTF-8\"?>"));
    if (m_pFragment != nullptr && whole && m_bRootMoves) {
        m_pDocument->appendChild(*m_pFragment);
    } else if (m_pFragment != nullptr) {
        m_pDocument->appendChild(whole ? m_pFragment->cloneNode(true) : content::CloneContent(*m_pFragment));
    }
}

bool XmlSchemaHandler::IsReading() const
{
    return m_pCallback != nullptr && !m_pRun->m_oBudget.IsExceeded();
}

void XmlSchemaHandler::SkipContent()
{
    m_oOpenTags.Pop();
    m_iSkippedTags = 1;
}

void XmlSchemaHandler::FileEntry(const QString &name, TypeEntry entry)
{
    const auto [place, isNew] = m_TypeMap.try_emplace(name);
    m_pTypeEntry = &place->second;
    const bool isOfOtherFile =
        !isNew && m_pTypeEntry->m_pFragment != nullptr && m_pTypeEntry->m_pFragment->ownerDocument() != *m_pDocument;
    if (isOfOtherFile) {
        m_pRun->m_lReplaced.insert(name);
    }
    *m_pTypeEntry = entry;
}

bool XmlSchemaHandler::CheckBudget(bool allowed)
{
    if (!allowed && !m_pRun->m_bLimitTraced) {
        m_pRun->m_bLimitTraced = true;
        TraceLimit();
    }
    return allowed;
}

QString XmlSchemaHandler::WhereText() const
{
    return m_pLocator == nullptr
        ? m_sFilePath
        : QStringLiteral("%1, line %2,").arg(m_sFilePath, QString::number(m_pLocator->lineNumber()));
}

void XmlSchemaHandler::TraceLimit() const
{
    trace::Write(UnitName(), __LINE__, [this] {
        return QStringLiteral("%1, and the tag %2 in %3 would break this: nothing more is built.")
            .arg(m_pRun->m_oBudget.GetReason(), m_sTag, WhereText());
    });
}

void XmlSchemaHandler::TracePassedOver() const
{
    trace::Write(UnitName(), __LINE__, [this] {
        return QStringLiteral("The tag %1 in %2 has no attributes and is passed over.").arg(m_sTag, WhereText());
    });
}

void XmlSchemaHandler::TraceRefusedInclude(const QString &path) const
{
    trace::Write(UnitName(), __LINE__, [this, &path] {
        return QStringLiteral("The include of %1 in %2 is passed over: %3.")
            .arg(path, WhereText(), m_pRun->m_oFiles.GetReason());
    });
}
