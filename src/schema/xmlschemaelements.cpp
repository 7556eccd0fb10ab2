// The part of XmlSchemaHandler that reads local elements and choices, and files references that wait for a later
// declaration.

#include "schema/schematags.h"
#include "schema/xmlschemahandler.h"

using schematags::HasPrefix;
using schematags::WithoutPrefix;

void XmlSchemaHandler::ReadElement(const QXmlAttributes &atts)
{
    if (m_iTypeDepth == 0) {
        ReadGlobal(atts);
    } else {
        ReadLocalElement(atts);
    }
}

void XmlSchemaHandler::ReadLocalElement(const QXmlAttributes &atts)
{
    const LocalDeclaration local(atts);
    m_oOpenTags.Mark(OpenTags::Kind::UnplacedElement);
    if (local.Key().isEmpty() || m_pFragment == nullptr) {
        return;
    }
    if (m_pRun->m_pDeclarations->IsCollecting()) {
        m_iParticle = m_pRun->m_pDeclarations->AddParticle(
            { local.m_iMinOccurs == 0, local.MostOccurs(), local.Copies(), m_oOpenTags.GetAlternative(), {} }, atts);
    }
    // 1. Make the element in as many copies as asked for, or the content of the reference.
    if (local.Copies() == 0) {
        m_oOpenTags.Mark(OpenTags::Kind::PassedOver);
    } else if (local.m_sName.isEmpty()) {
        MakeReferences(local);
    } else {
        m_oOpenTags.Mark(OpenTags::Kind::PlacedElement);
        MakeCopies(local);
    }
    // 2. File its limits and its place in a choice, also if no copy was asked for.
    FileLimits(local);
}

void XmlSchemaHandler::ReadChoice(const QXmlAttributes &atts)
{
    m_bInChoice = true;
    if (m_pRun->m_pDeclarations->IsCollecting()) {
        m_oOpenTags.MarkChoice(m_pRun->m_pDeclarations->AddChoice(m_oOpenTags.GetAlternative(), atts));
    }
}

void XmlSchemaHandler::MakeCopies(const LocalDeclaration &local)
{
    const QString defaultName = QLatin1String("default");
    for (int copy = 0; copy < local.Copies() && IsReading(); ++copy) {
        m_pLocalElement = m_pRun->Keep(m_pDocument->createElement(local.m_sName));
        m_pRun->m_oMaker.Append(ContentParent(), *m_pLocalElement);
        Declarations::MarkParticle(*m_pLocalElement, m_iParticle);
        if (!local.m_sDefault.isEmpty()) {
            m_pRun->m_oMaker.SetAttribute(*m_pLocalElement, defaultName, local.m_sDefault);
        }
        if (!local.m_sType.isEmpty() && !ApplyType(local.m_sType, *m_pLocalElement)) {
            WaitForType(local);
            return;
        }
    }
}

void XmlSchemaHandler::MakeReferences(const LocalDeclaration &local)
{
    const QDomDocumentFragment *source = UseComplete(local.m_sRef);
    if (source == nullptr) {
        WaitForReference(local);
        return;
    }
    // A declaration that refers to itself grows with each copy.
    for (int copy = 0; copy < local.Copies(); ++copy) {
        const QDomDocumentFragment clone = m_pRun->m_oMaker.CloneContent(*source, ContentParent());
        if (!clone.hasChildNodes()) {
            // An empty declaration never reaches a limit: don't loop over its copies.
            return;
        }
        Declarations::MarkParticle(clone.firstChildElement(), m_iParticle);
        ContentParent().appendChild(clone);
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

// Applies the type to the element. False if the type isn't complete: the element has to wait.
bool XmlSchemaHandler::ApplyType(const QString &type, QDomElement target)
{
    TemplateMaker &maker = m_pRun->m_oMaker;
    if (HasPrefix(type)) {
        maker.SetAttribute(target, QLatin1String("type"), WithoutPrefix(type));
        return true;
    }
    const QDomDocumentFragment *source = UseComplete(type);
    if (source == nullptr) {
        return false;
    }
    // The content is cloned before anything is changed: the element may stand in the very fragment. Most types are
    // simple ones, with nothing behind the carrier.
    QDomDocumentFragment clone;
    const bool hasCarrier = TemplateMaker::HasCarrier(*source);
    const bool isCarrierAlone = hasCarrier && source->firstChild() == source->lastChild();
    if (TemplateMaker::HasContent(*source) && !isCarrierAlone) {
        clone = maker.CloneContent(*source, target);
    }
    if (hasCarrier) {
        maker.CopyAttributes(*source, target, TemplateMaker::Existing::Replace);
    }
    target.appendChild(clone);
    return true;
}

void XmlSchemaHandler::WaitForType(const LocalDeclaration &local)
{
    RaiseOpenRefs();
    AddMissingElement(local.m_sType, 1, { m_pLocalElement, nullptr, m_sGlobalName });
    if (local.m_iMinOccurs > 1) {
        WaitForCopies(local);
    }
}

// The further copies of an element whose type has to wait: a model takes the type, clones of it follow the first copy.
void XmlSchemaHandler::WaitForCopies(const LocalDeclaration &local)
{
    const int count = local.m_iMinOccurs - 1;
    if (m_bInGlobal) {
        AddMissingElement(local.m_sName, count, { m_pCurrentElement, m_pLocalElement, m_sGlobalName });
    } else {
        RaiseOpenRefs();
        AddMissingElement(local.m_sName, count, { AppendPlace(), nullptr, m_sGlobalName });
    }
    QDomDocumentFragment *fragment = m_pRun->NewFragment(*m_pDocument);
    m_pLocalElement = m_pRun->Keep(m_pDocument->createElement(local.m_sName));
    m_pRun->m_oMaker.Append(*fragment, *m_pLocalElement);
    Declarations::MarkParticle(*m_pLocalElement, m_iParticle);
    if (m_bInGlobal) {
        OpenFragment(fragment, false);
    }
    FileEntry(local.m_sName, { true, 1, fragment });
    AddMissingElement(local.m_sType, 1, { m_pLocalElement, nullptr, local.m_sName });
}

void XmlSchemaHandler::WaitForReference(const LocalDeclaration &local)
{
    MissingElement record { m_pCurrentElement, nullptr, m_sGlobalName };
    record.m_iNote = m_iParticle;
    if (!m_bInGlobal) {
        record.m_pParent = AppendPlace();
    } else if (m_pCurrentElement->hasChildNodes()) {
        m_pLocalElement = m_pRun->Keep(m_pCurrentElement->lastChildElement());
        record.m_pAfter = m_pLocalElement;
    }
    RaiseOpenRefs();
    AddMissingElement(local.m_sRef, local.m_iMinOccurs, record);
}

// A placeholder in a named type, which the content will replace. Elsewhere it is appended nowhere, so that the content
// gets lost with it.
QDomElement *XmlSchemaHandler::AppendPlace()
{
    QDomElement *place = m_pRun->Keep(TemplateMaker::NewPlaceholder(*m_pDocument));
    if (m_bHasPlaceholders) {
        m_pRun->m_oMaker.Append(*m_pFragment, *place);
    }
    return place;
}

void XmlSchemaHandler::RaiseOpenRefs()
{
    // An include inside this declaration may have declared the same name, and so replaced the entry.
    if (m_pTypeEntry != nullptr && m_pTypeEntry->m_pFragment->ownerDocument() == *m_pDocument) {
        ++m_pTypeEntry->m_iOpenRefs;
    }
}

// Where local elements go. The fragment of a named type is flat.
QDomNode XmlSchemaHandler::ContentParent() const
{
    return m_bInGlobal ? static_cast<QDomNode>(*m_pCurrentElement) : static_cast<QDomNode>(*m_pFragment);
}
