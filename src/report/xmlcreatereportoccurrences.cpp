// Repetitions and choices.

#include "dom/nextsibling.h"
#include "report/domparser.h"
#include "report/xmlcreatereport.h"

#include <QDomElement>

namespace {

// Whether a key of the occurrence table lets an element stand that often. The key of an optional element, with its
// limit in hundreds, counts as a plain limit: the table doesn't tell the two apart.
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
    // The walk passes over the next sibling: bring the attributes kept for it and its followers into the document.
    m_pDomParser->CompleteDocument();
    const QDomElement discarded = *m_pCurrentElement;
    m_pDiscardSuccessor = std::make_unique<QDomElement>(dom::NextSibling(discarded).toElement());
    m_pCurrentElement = m_pDiscardSuccessor.get();
    const bool isRemoved = m_pDomParser->Remove(discarded);
    m_pDomParser->SetNodeToContinue(m_pCurrentElement, false);
    if (isRemoved) {
        ++m_iDiscardedItems;
    } else {
        Error(ITagwright::GENERAL_ERROR);
    }
}

// One alternative has to remain. With more places in front of this one than were given up, one of those does; else
// another has to stand behind it.
bool XmlCreateReport::MayBeDiscarded(const QString &tagName) const
{
    const ChoiceKeys &keys = m_pDomParser->GetChoiceKeys();
    const auto key = keys.constFind(tagName);
    if (tagName.isEmpty() || key == keys.constEnd()) {
        return false;
    }
    return *key % 100 > m_iDiscardedItems || m_ChoiceMap.find(*key + 1) != m_ChoiceMap.end();
}
