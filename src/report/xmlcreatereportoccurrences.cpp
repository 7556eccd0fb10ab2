// Repetitions and choices.

#include "dom/nextsibling.h"
#include "report/domparser.h"
#include "report/xmlcreatereport.h"

#include <QDomElement>

namespace {

// Whether a key of the occurrence table lets an element stand that often. A key that packs the limit of an optional
// element in hundreds is taken for a limit as it stands: the table doesn't tell it from one.
bool KeyAllows(int key, int maxOccurs)
{
    if (maxOccurs > 0) {
        return key == -1 || key == -100 || key >= maxOccurs;
    }
    return maxOccurs < 0 || key % 100 == 0;
}

} // namespace

void XmlCreateReport::SetElementMaxOccurs(QString name, int maxOccurs)
{
    if (!FetchCurrentElement("SetElementMaxOccurs") || name == m_sLastOccursName) {
        return;
    }
    m_sLastOccursName = name;
    // Where repeated elements nest, the inner name is the last one when the outer element's copies come.
    if (m_pDomParser->IsMultiplied(*m_pCurrentElement)) {
        return;
    }
    if (!CheckOccursMap(name, m_pCurrentElement->tagName(), maxOccurs, m_pCurrentElement)) {
        m_pDomParser->GetRefusals().TellCount(*m_pCurrentElement, maxOccurs,
                                              ITagwright::CURRENT_OCCURRENCE_IS_NOT_VALID);
        Error(ITagwright::CURRENT_OCCURRENCE_IS_NOT_VALID);
        return;
    }
    m_pDomParser->Multiply(maxOccurs);
    m_pDomParser->SetNodeToContinue(m_pCurrentElement, true);
}

bool XmlCreateReport::CheckOccursMap(QString name, QString tagName, int maxOccurs, QDomElement *element)
{
    OccurrenceLookup &occurrences = m_pDomParser->GetOccurrences();
    if (!occurrences.HasRow(name)) {
        Error(ITagwright::CURRENT_OCCURRENCE_IS_NOT_VALID);
        return false;
    }
    return occurrences.IsFound(name, tagName, *element, [maxOccurs](int key) { return KeyAllows(key, maxOccurs); });
}

void XmlCreateReport::DiscardChoiceItem()
{
    if (!FetchCurrentElement("DiscardChoiceItem")) {
        return;
    }
    if (!MayBeDiscarded(m_pCurrentElement->tagName())) {
        Error(ITagwright::GENERAL_ERROR);
        return;
    }
    // The sibling behind is passed over: attributes that are kept for it and those behind it get into the document now.
    m_pDomParser->CompleteDocument();
    const QDomElement discarded = *m_pCurrentElement;
    m_pDiscardSuccessor = std::make_unique<QDomElement>(dom::NextSibling(discarded).toElement());
    m_pCurrentElement = m_pDiscardSuccessor.get();
    m_pDomParser->GetWalked().PassOver(*m_pDiscardSuccessor);
    const bool isRemoved = m_pDomParser->Remove(discarded);
    m_pDomParser->SetNodeToContinue(m_pCurrentElement, false);
    if (isRemoved) {
        ++m_iDiscardedItems;
    } else {
        Error(ITagwright::GENERAL_ERROR);
    }
}

// An alternative that stands behind more places than were given up has one in front of it; any other needs one behind.
bool XmlCreateReport::MayBeDiscarded(const QString &tagName) const
{
    const ChoiceKeys &keys = m_pDomParser->GetChoiceKeys();
    const auto key = keys.constFind(tagName);
    if (tagName.isEmpty() || key == keys.constEnd()) {
        return false;
    }
    return *key % 100 > m_iDiscardedItems || m_ChoiceMap.find(*key + 1) != m_ChoiceMap.end();
}
