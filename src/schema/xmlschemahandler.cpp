#include "schema/xmlschemahandler.h"

#include "events/itagwright.h"
#include "host/trace.h"
#include "schema/templatecontent.h"

#include <utility>

namespace {

// Built-in types and schema tags are told by this literal text, wherever in a value it stands.
constexpr int kPrefixLength = 3;

bool HasPrefix(const QString &text)
{
    return text.contains(QLatin1String("xs:"));
}

QString UnitName()
{
    return QStringLiteral("xmlschemahandler");
}

} // namespace

XmlSchemaHandler::XmlSchemaHandler(ITagwright *pCallback, QString schemaPath)
    : m_pCallback(pCallback)
    , m_pDocument(std::make_unique<QDomDocument>())
    , m_sSchemaPath(schemaPath)
    , m_pArena(std::make_unique<SchemaArena>())
{
    trace::CheckCallback(pCallback, "XmlSchemaHandler", UnitName(), __LINE__);
}

XmlSchemaHandler::~XmlSchemaHandler() = default;

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
    if (m_bInRestriction) {
        ReadFacet(atts);
    } else {
        ReadTag(atts);
    }
    return true;
}

void XmlSchemaHandler::ReadTag(const QXmlAttributes &atts)
{
    if (m_sTag == QLatin1String("xs:element")) {
        m_iTypeDepth == 0 ? ReadGlobal(atts) : ReadLocalElement(atts);
    } else if (m_sTag == QLatin1String("xs:complexType") || m_sTag == QLatin1String("xs:simpleType")) {
        ReadTypeStart(atts);
    } else if (m_sTag == QLatin1String("xs:restriction")) {
        ReadRestriction(atts);
    } else if (m_sTag == QLatin1String("xs:attribute")) {
        if (m_iTypeDepth == 0) {
            ReadGlobal(atts);
        }
    }
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
        EndRestriction();
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

void XmlSchemaHandler::EndRestriction()
{
    m_bInRestriction = false;
    m_iEnumerationIndex = 1;
}

void XmlSchemaHandler::ReadTypeStart(const QXmlAttributes &atts)
{
    ++m_iTypeDepth;
    if (atts.count() > 0) {
        m_oOpenTags.Mark(OpenTags::Kind::NamedType);
        m_pFragment = m_pArena->NewFragment(*m_pDocument);
        m_bNamedFragment = true;
        m_oCarrier.clear();
        m_sGlobalName = atts.value(0);
        FileEntry(m_sGlobalName, { true, 0, m_pFragment });
    } else if (m_iTypeDepth != 1 && m_sTag == QLatin1String("xs:complexType")) {
        MoveDown();
    }
}

void XmlSchemaHandler::MoveDown()
{
    const QDomElement last = m_pCurrentElement == nullptr ? QDomElement() : m_pCurrentElement->lastChildElement();
    if (last.isNull()) {
        m_oOpenTags.Mark(OpenTags::Kind::UnmovedType);
        return;
    }
    m_pCurrentElement = m_pArena->Keep(last);
}

void XmlSchemaHandler::MoveUp()
{
    const QDomElement parent =
        m_pCurrentElement == nullptr ? QDomElement() : m_pCurrentElement->parentNode().toElement();
    if (!parent.isNull()) {
        m_pCurrentElement = m_pArena->Keep(parent);
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
    m_pFragment = m_pArena->NewFragment(*m_pDocument);
    m_bNamedFragment = false;
    m_bInGlobal = true;
    m_pCurrentElement = m_pArena->Keep(m_pDocument->createElement(m_sGlobalName));
    m_pFragment->appendChild(*m_pCurrentElement);
    FileEntry(m_sGlobalName, { false, 0, m_pFragment });
    ReadGlobalAttributes(atts);
}

void XmlSchemaHandler::ReadGlobalAttributes(const QXmlAttributes &atts)
{
    for (int i = 0; i < atts.count(); ++i) {
        const QString name = atts.qName(i);
        if (name == QLatin1String("default")) {
            m_pCurrentElement->setAttribute(name, atts.value(i));
        } else if (name == QLatin1String("type") && !ApplyType(atts.value(i), *m_pCurrentElement)) {
            AddMissingElement(atts.value(i), 1, { m_pCurrentElement, nullptr, m_sGlobalName, false });
            return;
        }
    }
}

void XmlSchemaHandler::ReadLocalElement(const QXmlAttributes &atts)
{
    const LocalElement local(atts);
    if (local.m_sName.isEmpty() || (!m_bInGlobal && m_pFragment == nullptr)) {
        m_oOpenTags.Mark(OpenTags::Kind::UnplacedElement);
    } else if (local.Copies() == 0) {
        SkipContent();
    } else {
        m_oOpenTags.Mark(OpenTags::Kind::PlacedElement);
        MakeCopies(local);
    }
}

void XmlSchemaHandler::MakeCopies(const LocalElement &local)
{
    for (int copy = 0; copy < local.Copies(); ++copy) {
        QDomElement element = MakeLocalElement(local);
        if (!local.m_sType.isEmpty() && !ApplyType(local.m_sType, element)) {
            return;
        }
    }
}

QDomElement XmlSchemaHandler::MakeLocalElement(const LocalElement &local)
{
    m_pLocalElement = m_pArena->Keep(m_pDocument->createElement(local.m_sName));
    if (m_bInGlobal) {
        m_pCurrentElement->appendChild(*m_pLocalElement);
    } else {
        m_pFragment->appendChild(*m_pLocalElement);
    }
    if (!local.m_sDefault.isEmpty()) {
        m_pLocalElement->setAttribute(QStringLiteral("default"), local.m_sDefault);
    }
    return *m_pLocalElement;
}

bool XmlSchemaHandler::ApplyType(const QString &type, QDomElement &element)
{
    if (HasPrefix(type)) {
        element.setAttribute(QStringLiteral("type"), type.mid(kPrefixLength));
        return true;
    }
    const TypeEntry *entry = UseComplete(type);
    if (entry == nullptr) {
        return false;
    }
    // The content is cloned before anything is changed: the element may stand in the very fragment.
    const QDomDocumentFragment fragment = *entry->m_pFragment;
    const QDomDocumentFragment clone = content::CloneContent(fragment);
    if (content::HasCarrier(fragment)) {
        content::SetAttributes(content::ListAttributes(fragment.firstChild().toElement()), element);
    }
    element.appendChild(clone);
    return true;
}

void XmlSchemaHandler::ReadRestriction(const QXmlAttributes &atts)
{
    m_oRestriction.clear();
    if (atts.count() == 0) {
        TracePassedOver();
    } else if (atts.qName(0) == QLatin1String("base")) {
        const QString base = atts.value(0);
        RestrictionTarget().setAttribute(QStringLiteral("type"), HasPrefix(base) ? base.mid(kPrefixLength) : QString());
    }
    m_bInRestriction = true;
}

void XmlSchemaHandler::ReadFacet(const QXmlAttributes &atts)
{
    if (atts.count() == 0) {
        return;
    }
    QString name = HasPrefix(m_sTag) ? m_sTag.mid(kPrefixLength) : m_sTag;
    if (name.contains(QLatin1String("enumeration"))) {
        name += QString::number(m_iEnumerationIndex);
        ++m_iEnumerationIndex;
    }
    RestrictionTarget().setAttribute(name, atts.value(0));
}

QDomElement XmlSchemaHandler::RestrictionTarget()
{
    if (m_bInGlobalAttribute || m_bInGlobal) {
        return GlobalTarget();
    }
    return m_oOpenTags.InLocalElement() ? LocalTarget() : RestrictionPlaceholder();
}

QDomElement XmlSchemaHandler::GlobalTarget() const
{
    const QDomElement last = m_bInGlobalAttribute ? QDomElement() : m_pCurrentElement->lastChildElement();
    return last.isNull() ? *m_pCurrentElement : last;
}

QDomElement XmlSchemaHandler::LocalTarget() const
{
    // Inside a reference the local element created last is some other one.
    return m_oOpenTags.IsPlaced() ? *m_pLocalElement : QDomElement();
}

QDomElement XmlSchemaHandler::RestrictionPlaceholder()
{
    if (m_oRestriction.isNull() && m_bNamedFragment && m_oOpenTags.InNamedType()) {
        m_oRestriction = m_pDocument->createElement(content::PlaceholderName());
        m_pFragment->appendChild(m_oRestriction);
        m_pCurrentElement = m_pArena->Keep(m_oRestriction);
        if (m_pFragment->firstChild() == m_oRestriction) {
            m_oCarrier = m_oRestriction;
        }
    }
    return m_oRestriction;
}

bool XmlSchemaHandler::endDocument()
{
    if (!IsReading()) {
        return false;
    }
    BuildTemplate(ChooseRoot());
    return true;
}

bool XmlSchemaHandler::ChooseRoot()
{
    bool found = false;
    for (auto &[name, entry] : m_TypeMap) {
        if (!entry.m_bUsed && entry.m_pFragment->hasChildNodes()) {
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
    if (m_pFragment != nullptr) {
        m_pDocument->appendChild(whole ? m_pFragment->cloneNode(true) : content::CloneContent(*m_pFragment));
    }
}

bool XmlSchemaHandler::IsReading() const
{
    return m_pCallback != nullptr;
}

void XmlSchemaHandler::SkipContent()
{
    m_oOpenTags.Pop();
    m_iSkippedTags = 1;
}

void XmlSchemaHandler::FileEntry(const QString &name, TypeEntry entry)
{
    m_pTypeEntry = &m_TypeMap[name];
    *m_pTypeEntry = entry;
}

TypeEntry *XmlSchemaHandler::UseComplete(const QString &name)
{
    const auto found = m_TypeMap.find(name);
    if (found == m_TypeMap.end() || found->second.m_iOpenRefs != 0) {
        return nullptr;
    }
    found->second.m_bUsed = true;
    return &found->second;
}

void XmlSchemaHandler::TracePassedOver() const
{
    trace::Write(UnitName(), __LINE__, [this] {
        return QStringLiteral("The tag %1 in %2, line %3, has no attributes and is passed over.")
            .arg(m_sTag, m_sSchemaPath)
            .arg(m_pLocator == nullptr ? 0 : m_pLocator->lineNumber());
    });
}
