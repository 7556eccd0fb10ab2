// The part of XmlSchemaHandler that reads what stands inside declarations: local elements, attributes, restrictions and
// extensions, and what of them waits for a later declaration.

#include "schema/schematags.h"
#include "schema/xmlschemahandler.h"

#include <utility>

using schematags::HasPrefix;
using schematags::WithoutPrefix;

namespace {

QString TypeName()
{
    return QStringLiteral("type");
}

} // namespace

void XmlSchemaHandler::ReadLocalElement(const QXmlAttributes &atts)
{
    const LocalDeclaration local(atts);
    const bool hasPlace = m_bInGlobal || m_pFragment != nullptr;
    if (local.Key().isEmpty() || !hasPlace) {
        m_oOpenTags.Mark(OpenTags::Kind::UnplacedElement);
    } else if (local.Copies() == 0) {
        FileLimits(local);
        SkipContent();
    } else if (local.m_sName.isEmpty()) {
        m_oOpenTags.Mark(OpenTags::Kind::UnplacedElement);
        MakeReferences(local);
        FileLimits(local);
    } else {
        m_oOpenTags.Mark(OpenTags::Kind::PlacedElement);
        MakeCopies(local);
        FileLimits(local);
    }
}

void XmlSchemaHandler::MakeCopies(const LocalDeclaration &local)
{
    const int copies = local.Copies();
    // One copy is counted when it is made.
    if (copies > 1
        && !CheckBudget(m_pRun->m_oBudget.Allows(TargetFragment(), ExtentOfCopy(local), copies, TargetLevel()))) {
        return;
    }
    for (int copy = 0; copy < copies && IsReading(); ++copy) {
        MakeLocalElement(local);
        const Target target { *m_pLocalElement, m_pLocalFragment };
        if (!local.m_sType.isEmpty() && !ApplyType(local.m_sType, target, TargetLevel())) {
            WaitForType(local);
            return;
        }
    }
}

Extent XmlSchemaHandler::ExtentOfCopy(const LocalDeclaration &local)
{
    Extent extent { 1, 1, 1 };
    const TypeEntry *entry = HasPrefix(local.m_sType) ? nullptr : FindComplete(local.m_sType);
    if (entry != nullptr) {
        const Extent &content = m_pRun->m_oBudget.Of(entry->m_pFragment);
        extent.m_iElements += content.m_iElements;
        extent.m_iAttributes += content.m_iAttributes;
        extent.m_iHeight += content.m_iHeight;
    }
    return extent;
}

void XmlSchemaHandler::MakeLocalElement(const LocalDeclaration &local)
{
    m_pLocalElement = m_pRun->m_oArena.Keep(m_pDocument->createElement(local.m_sName));
    m_pLocalFragment = TargetFragment();
    if (CheckBudget(m_pRun->m_oBudget.Take(m_pLocalFragment, { 1, 0, 1 }, TargetLevel()))) {
        Place(*m_pLocalElement);
    }
    if (!local.m_sDefault.isEmpty()) {
        SetAttribute({ *m_pLocalElement, m_pLocalFragment }, QStringLiteral("default"), local.m_sDefault);
    }
}

void XmlSchemaHandler::Place(const QDomNode &node)
{
    if (m_bInGlobal) {
        m_pCurrentElement->appendChild(node);
    } else {
        m_pFragment->appendChild(node);
    }
}

void XmlSchemaHandler::MakeReferences(const LocalDeclaration &local)
{
    const TypeEntry *entry = UseComplete(local.m_sRef);
    if (entry == nullptr) {
        WaitForReference(local);
        return;
    }
    TemplateBudget &budget = m_pRun->m_oBudget;
    const QDomDocumentFragment *source = entry->m_pFragment;
    const int copies = local.Copies();
    // Where there is nothing to repeat, a limit can't end the repeating.
    if (budget.Of(source).m_iElements == 0
        || !CheckBudget(budget.Allows(TargetFragment(), budget.Of(source), copies, TargetLevel()))) {
        return;
    }
    // A declaration that refers to itself grows with each copy.
    for (int copy = 0; copy < copies; ++copy) {
        if (!CheckBudget(budget.Take(TargetFragment(), budget.Of(source), TargetLevel()))) {
            return;
        }
        Place(content::CloneContent(*source));
    }
}

void XmlSchemaHandler::FileLimits(const LocalDeclaration &local)
{
    if (local.HasLimits()) {
        const QString parent = m_bInGlobal ? m_pCurrentElement->tagName() : m_sGlobalName;
        m_OccursMap[local.Key()][local.OccursKey()].push_back(parent);
    }
    if (m_bInChoice) {
        m_ChoiceMap[m_iChoiceKey] = local.Key();
        ++m_iChoiceKey;
    }
}

bool XmlSchemaHandler::ApplyType(const QString &type, Target target, int level)
{
    if (HasPrefix(type)) {
        SetAttribute(target, TypeName(), WithoutPrefix(type));
        return true;
    }
    const TypeEntry *entry = UseComplete(type);
    if (entry == nullptr) {
        return false;
    }
    const QDomDocumentFragment *source = entry->m_pFragment;
    const Extent piece = m_pRun->m_oBudget.Of(source);
    QDomDocumentFragment clone;
    if (piece.m_iElements > 0) {
        if (!CheckBudget(m_pRun->m_oBudget.Take(target.m_pFragment, piece, level + 1))) {
            return true;
        }
        // The content is cloned before anything is changed: the element may stand in the very fragment.
        clone = content::CloneContent(*source);
    }
    if (content::HasCarrier(*source)) {
        ApplyBase(*source, target);
    }
    target.m_oElement.appendChild(clone);
    return true;
}

void XmlSchemaHandler::ApplyBase(const QDomDocumentFragment &source, Target target)
{
    const content::AttributeList &attributes = AttributesOf(source);
    const auto count = static_cast<qint64>(attributes.size());
    if (CheckBudget(m_pRun->m_oBudget.TakeAttributes(target.m_pFragment, target.m_oElement, count))) {
        content::SetAttributes(attributes, target.m_oElement);
    }
}

void XmlSchemaHandler::ApplyReference(const QDomDocumentFragment &source, Target target)
{
    const QDomElement carrier = source.firstChild().toElement();
    const content::AttributeList &attributes = AttributesOf(source);
    const auto count = static_cast<qint64>(attributes.size());
    if (!carrier.isNull()
        && CheckBudget(m_pRun->m_oBudget.TakeAttributes(target.m_pFragment, target.m_oElement, count))) {
        content::SetSchemaAttribute(carrier.tagName(), attributes, target.m_oElement);
    }
}

void XmlSchemaHandler::SetAttribute(Target target, const QString &name, const QString &value)
{
    if (!target.m_oElement.isNull()
        && CheckBudget(m_pRun->m_oBudget.TakeAttributes(target.m_pFragment, target.m_oElement, 1))) {
        target.m_oElement.setAttribute(name, value);
    }
}

void XmlSchemaHandler::ReadAttribute(const QXmlAttributes &atts)
{
    if (m_iTypeDepth == 0) {
        ReadGlobal(atts);
        return;
    }
    const LocalDeclaration declared(atts);
    if (declared.Key().isEmpty()) {
        return;
    }
    const Target target = AttributeTarget();
    if (target.m_oElement.isNull()) {
        return;
    }
    if (!declared.m_sName.isEmpty()) {
        SetAttribute(target, declared.m_sName, declared.m_sType);
    } else if (const TypeEntry *entry = UseComplete(declared.m_sRef)) {
        ApplyReference(*entry->m_pFragment, target);
    } else {
        WaitForAttributes(declared.m_sRef, target, RecordKind::Plain);
    }
}

void XmlSchemaHandler::ReadExtension(const QXmlAttributes &atts)
{
    if (atts.count() == 0) {
        TracePassedOver();
        return;
    }
    const Target target = ExtensionTarget();
    if (target.m_oElement.isNull() || atts.qName(0) != QLatin1String("base")) {
        return;
    }
    const QString base = atts.value(0);
    if (HasPrefix(base)) {
        SetAttribute(target, TypeName(), WithoutPrefix(base));
    } else if (const TypeEntry *entry = UseComplete(base)) {
        ApplyBase(*entry->m_pFragment, target);
    } else {
        WaitForAttributes(base, target, RecordKind::Base);
    }
}

void XmlSchemaHandler::ReadRestriction(const QXmlAttributes &atts)
{
    m_oNamedType.StartRestriction();
    if (atts.count() == 0) {
        TracePassedOver();
    } else if (atts.qName(0) == QLatin1String("base")) {
        const QString base = atts.value(0);
        SetAttribute(RestrictionTarget(), TypeName(), HasPrefix(base) ? WithoutPrefix(base) : QString());
    }
    m_bInRestriction = true;
}

void XmlSchemaHandler::ReadFacet(const QXmlAttributes &atts)
{
    // An annotation in a restriction has nothing to give.
    if (atts.count() == 0) {
        return;
    }
    QString name = HasPrefix(m_sTag) ? WithoutPrefix(m_sTag) : m_sTag;
    if (name.contains(QLatin1String("enumeration"))) {
        name += QString::number(m_iEnumerationIndex);
        ++m_iEnumerationIndex;
    }
    SetAttribute(RestrictionTarget(), name, atts.value(0));
}

void XmlSchemaHandler::WaitForType(const LocalDeclaration &local)
{
    RaiseOpenRefs();
    FileRecord(local.m_sType, 1, { m_pLocalElement, nullptr, m_sGlobalName, false },
               { RecordKind::Plain, m_pLocalFragment, TargetLevel() + 1, false });
    if (local.m_iMinOccurs > 1) {
        WaitForCopies(local);
    }
}

void XmlSchemaHandler::WaitForCopies(const LocalDeclaration &local)
{
    const int count = local.m_iMinOccurs - 1;
    if (m_bInGlobal) {
        FileRecord(local.m_sName, count, { m_pCurrentElement, m_pLocalElement, m_sGlobalName, false },
                   { RecordKind::Plain, m_pGlobalFragment, TargetLevel(), false });
    } else {
        QDomElement *place = AppendPlace();
        RaiseOpenRefs();
        FileRecord(local.m_sName, count, { place, nullptr, m_sGlobalName, false },
                   { RecordKind::Place, m_pFragment, TargetLevel(), false });
    }
    MakeModel(local);
}

void XmlSchemaHandler::MakeModel(const LocalDeclaration &local)
{
    QDomDocumentFragment *fragment = m_pRun->m_oArena.NewFragment(*m_pDocument);
    m_pLocalElement = m_pRun->m_oArena.Keep(m_pDocument->createElement(local.m_sName));
    m_pLocalFragment = fragment;
    if (CheckBudget(m_pRun->m_oBudget.Take(fragment, { 1, 0, 1 }, 1))) {
        fragment->appendChild(*m_pLocalElement);
    }
    if (m_bInGlobal) {
        m_pFragment = fragment;
        m_oNamedType.Close();
    }
    FileEntry(local.m_sName, { true, 1, fragment });
    FileRecord(local.m_sType, 1, { m_pLocalElement, nullptr, local.m_sName, false },
               { RecordKind::Plain, fragment, 2, false });
}

void XmlSchemaHandler::WaitForReference(const LocalDeclaration &local)
{
    if (m_bInGlobal) {
        QDomElement *after = nullptr;
        const QDomElement last = m_pCurrentElement->lastChildElement();
        if (!last.isNull()) {
            m_pLocalElement = m_pRun->m_oArena.Keep(last);
            m_pLocalFragment = m_pGlobalFragment;
            after = m_pLocalElement;
        }
        RaiseOpenRefs();
        FileRecord(local.m_sRef, local.m_iMinOccurs, { m_pCurrentElement, after, m_sGlobalName, false },
                   { RecordKind::Plain, m_pGlobalFragment, TargetLevel(), false });
    } else {
        QDomElement *place = AppendPlace();
        RaiseOpenRefs();
        FileRecord(local.m_sRef, local.m_iMinOccurs, { place, nullptr, m_sGlobalName, false },
                   { RecordKind::Place, m_pFragment, TargetLevel(), false });
    }
}

QDomElement *XmlSchemaHandler::AppendPlace()
{
    const QDomElement place = m_oNamedType.AppendPlace();
    CheckBudget(!m_pRun->m_oBudget.IsExceeded());
    return m_pRun->m_oArena.Keep(place);
}

void XmlSchemaHandler::WaitForAttributes(const QString &name, const Target &target, RecordKind kind)
{
    RaiseOpenRefs();
    FileRecord(name, 1, { m_pRun->m_oArena.Keep(target.m_oElement), nullptr, m_sGlobalName, true },
               { kind, target.m_pFragment, 1, false });
}

void XmlSchemaHandler::RaiseOpenRefs()
{
    // An include inside the declaration may have put another one in its place.
    if (m_pGlobalEntry != nullptr && m_pGlobalEntry->m_pFragment->ownerDocument() == *m_pDocument) {
        ++m_pGlobalEntry->m_iOpenRefs;
    }
}

void XmlSchemaHandler::FileRecord(const QString &name, int count, MissingElement record, RecordNote note)
{
    AddMissingElement(name, count, std::move(record));
    m_pRun->m_hNotes[m_pMissingElement] = note;
}

TypeEntry *XmlSchemaHandler::FindComplete(const QString &name)
{
    const auto found = m_TypeMap.find(name);
    const bool complete =
        found != m_TypeMap.end() && found->second.m_iOpenRefs == 0 && found->second.m_pFragment != nullptr;
    return complete ? &found->second : nullptr;
}

TypeEntry *XmlSchemaHandler::UseComplete(const QString &name)
{
    TypeEntry *entry = FindComplete(name);
    if (entry != nullptr) {
        entry->m_bUsed = true;
    }
    return entry;
}

const content::AttributeList &XmlSchemaHandler::AttributesOf(const QDomDocumentFragment &fragment)
{
    const bool isOpen = &fragment == m_pFragment || &fragment == m_pGlobalFragment;
    return isOpen ? m_pRun->m_oAttributes.OfOpen(fragment) : m_pRun->m_oAttributes.Of(fragment);
}

QDomDocumentFragment *XmlSchemaHandler::TargetFragment() const
{
    return m_bInGlobal ? m_pGlobalFragment : m_pFragment;
}

int XmlSchemaHandler::TargetLevel() const
{
    // A named type is flat.
    return m_bInGlobal ? m_iCurrentLevel + 1 : 1;
}

XmlSchemaHandler::Target XmlSchemaHandler::CurrentTarget() const
{
    return { *m_pCurrentElement, m_pGlobalFragment };
}

XmlSchemaHandler::Target XmlSchemaHandler::LastTarget() const
{
    const QDomElement last = m_bInGlobalAttribute ? QDomElement() : m_pCurrentElement->lastChildElement();
    return { last.isNull() ? *m_pCurrentElement : last, m_pGlobalFragment };
}

XmlSchemaHandler::Target XmlSchemaHandler::LocalTarget() const
{
    // Inside a reference the local element created last is some other one.
    return m_oOpenTags.IsPlaced() ? Target { *m_pLocalElement, m_pLocalFragment } : Target();
}

XmlSchemaHandler::Target XmlSchemaHandler::CarrierTarget()
{
    if (m_oOpenTags.InLocalElement()) {
        return LocalTarget();
    }
    return m_oOpenTags.InNamedType() ? Target { m_oNamedType.Carrier(), m_pFragment } : Target();
}

XmlSchemaHandler::Target XmlSchemaHandler::AttributeTarget()
{
    return m_bInGlobal ? CurrentTarget() : CarrierTarget();
}

XmlSchemaHandler::Target XmlSchemaHandler::ExtensionTarget()
{
    return m_bInGlobal ? LastTarget() : CarrierTarget();
}

XmlSchemaHandler::Target XmlSchemaHandler::RestrictionTarget()
{
    if (m_bInGlobal || m_bInGlobalAttribute) {
        return LastTarget();
    }
    if (m_oOpenTags.InLocalElement()) {
        return LocalTarget();
    }
    return m_oOpenTags.InNamedType() ? Target { m_oNamedType.Restriction(), m_pFragment } : Target();
}
