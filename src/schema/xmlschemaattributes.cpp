// The part of XmlSchemaHandler that reads attributes, restrictions and extensions, and finds the elements that they
// write to.

#include "schema/schematags.h"
#include "schema/xmlschemahandler.h"

using schematags::HasPrefix;
using schematags::WithoutPrefix;

void XmlSchemaHandler::ReadAttribute(const QXmlAttributes &atts)
{
    if (m_iTypeDepth == 0) {
        ReadGlobal(atts);
        return;
    }
    const LocalDeclaration local(atts);
    const QDomElement target = local.Key().isEmpty() ? QDomElement() : AttributeTarget();
    if (target.isNull()) {
        return;
    }
    const int note = m_pRun->m_pDeclarations->AddAttribute(local.Key(), local.m_sType, atts);
    if (!local.m_sName.isEmpty()) {
        m_pRun->m_oMaker.SetAttribute(target, local.m_sName, local.m_sType);
        m_pRun->m_pDeclarations->MarkAttribute(target, note);
    } else if (const QDomDocumentFragment *source = UseComplete(local.m_sRef)) {
        m_pRun->m_oMaker.SetSchemaAttribute(*source, target);
        m_pRun->m_pDeclarations->MarkReference(*source, target, note);
    } else {
        WaitForAttributes(local.m_sRef, target, false);
        m_pMissingElement->m_iNote = note;
    }
}

void XmlSchemaHandler::ReadRestriction(const QXmlAttributes &atts)
{
    m_bInRestriction = true;
    m_oRestriction.clear();
    QString type;
    if (atts.count() == 0) {
        TracePassedOver();
    } else if (atts.qName(0) == QLatin1String("base")) {
        const QString base = atts.value(0);
        type = HasPrefix(base) ? WithoutPrefix(base) : QString();
        m_pRun->m_oMaker.SetAttribute(RestrictionTarget(), QLatin1String("type"), type);
    }
    // Unasked, a restriction without a base makes no place that it could be noted on.
    if (m_pRun->m_pDeclarations->IsCollecting()) {
        m_pRun->m_pDeclarations->OpenRule(RestrictionTarget(), type);
    }
}

void XmlSchemaHandler::ReadFacet(const QXmlAttributes &atts)
{
    // An annotation in a restriction has no value to give.
    if (atts.count() == 0) {
        return;
    }
    QString name = HasPrefix(m_sTag) ? WithoutPrefix(m_sTag) : m_sTag;
    m_pRun->m_pDeclarations->AddFacet(name, atts.value(0));
    if (name.contains(QLatin1String("enumeration"))) {
        name += QString::number(m_iEnumerationIndex);
        ++m_iEnumerationIndex;
    }
    m_pRun->m_oMaker.SetAttribute(RestrictionTarget(), name, atts.value(0));
}

void XmlSchemaHandler::ReadExtension(const QXmlAttributes &atts)
{
    if (atts.count() == 0) {
        TracePassedOver();
        return;
    }
    const QString base = atts.value(0);
    const QDomElement target = ExtensionTarget(HasPrefix(base));
    if (target.isNull() || atts.qName(0) != QLatin1String("base")) {
        return;
    }
    if (HasPrefix(base)) {
        m_pRun->m_oMaker.SetAttribute(target, QLatin1String("type"), WithoutPrefix(base));
    } else if (const QDomDocumentFragment *source = UseComplete(base)) {
        m_pRun->m_oMaker.CopyAttributes(*source, target, TemplateMaker::Existing::Replace);
    } else {
        WaitForAttributes(base, target, true);
    }
}

void XmlSchemaHandler::WaitForAttributes(const QString &name, const QDomElement &target, bool isBase)
{
    RaiseOpenRefs();
    AddMissingElement(name, 1, { m_pRun->Keep(target), nullptr, m_sGlobalName, true, isBase });
}

// In a global declaration: the local element whose anonymous type is open, or the declaration's own element.
QDomElement XmlSchemaHandler::LastElement() const
{
    const QDomElement last = m_pCurrentElement->lastChildElement();
    return last.isNull() ? *m_pCurrentElement : last;
}

// Outside a global declaration. Null inside a reference: the local element created last is a different element.
QDomElement XmlSchemaHandler::LocalTarget() const
{
    return m_oOpenTags.LocalElement() == OpenTags::Kind::PlacedElement ? *m_pLocalElement : QDomElement();
}

// Outside a global declaration and outside a local element: null unless a named type is open.
QDomElement XmlSchemaHandler::Carrier()
{
    if (m_oCarrier.isNull() && m_bHasPlaceholders && m_oOpenTags.InNamedType()) {
        m_oCarrier = TemplateMaker::NewPlaceholder(*m_pDocument);
        m_pFragment->insertBefore(m_oCarrier, QDomNode());
    }
    return m_oOpenTags.InNamedType() ? m_oCarrier : QDomElement();
}

// Each restriction has a placeholder of its own, and only one that comes first in the fragment is the carrier: of a
// union's members the first counts.
QDomElement XmlSchemaHandler::Restriction()
{
    if (!m_oOpenTags.InNamedType()) {
        return QDomElement();
    }
    if (m_oRestriction.isNull() && m_bHasPlaceholders) {
        m_oRestriction = m_pFragment->hasChildNodes() ? *AppendPlace() : Carrier();
    }
    return m_oRestriction;
}

QDomElement XmlSchemaHandler::AttributeTarget()
{
    if (m_bInGlobal) {
        return *m_pCurrentElement;
    }
    return m_oOpenTags.LocalElement() == OpenTags::Kind::Plain ? Carrier() : LocalTarget();
}

QDomElement XmlSchemaHandler::RestrictionTarget()
{
    if (m_bInGlobalAttribute) {
        return *m_pCurrentElement;
    }
    if (m_bInGlobal) {
        return LastElement();
    }
    return m_oOpenTags.LocalElement() == OpenTags::Kind::Plain ? Restriction() : LocalTarget();
}

QDomElement XmlSchemaHandler::ExtensionTarget(bool isBuiltIn)
{
    if (m_bInGlobal) {
        // A global attribute takes the attributes of a base itself, but not a built-in type.
        return m_bInGlobalAttribute && !isBuiltIn ? *m_pCurrentElement : LastElement();
    }
    const QDomElement target = AttributeTarget();
    // Outside all declarations nothing is written, but the base counts as used, or is waited for, all the same.
    return target.isNull() && !m_oOpenTags.InNamedType() ? TemplateMaker::NewPlaceholder(*m_pDocument) : target;
}
