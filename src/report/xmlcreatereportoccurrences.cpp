// Repetitions and choices.

#include "dom/nodewalk.h"
#include "report/domparser.h"
#include "report/xmlcreatereport.h"

#include <QDomElement>

#include <algorithm>

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
    if (!FetchCurrentElement("SetElementMaxOccurs") || IsAskedAgain(name)) {
        return;
    }
    // Where repeated elements nest, the inner name is the last one when the outer element's copies come.
    if (m_pDomParser->IsMultiplied(*m_pCurrentElement)) {
        return;
    }
    if (!CheckOccurs(name, maxOccurs)) {
        m_pDomParser->GetRefusals().TellCount(*m_pCurrentElement, maxOccurs,
                                              ITagwright::CURRENT_OCCURRENCE_IS_NOT_VALID);
        Error(ITagwright::CURRENT_OCCURRENCE_IS_NOT_VALID);
        return;
    }
    m_pDomParser->Multiply(maxOccurs);
    m_pDomParser->SetNodeToContinue(m_pCurrentElement, true);
}

// A receiver calls at each announcement, and may call once more when it hears of a refusal: only the first call for an
// element counts.
bool XmlCreateReport::IsAskedAgain(const QString &name)
{
    const ValidOutput::Element *pDeclared = m_pDomParser->FindDeclared();
    if (pDeclared != nullptr && pDeclared->m_iParticle >= 0) {
        return m_pDomParser->GetValidOutput()->IsAskedAgain(*pDeclared, m_pCurrentElement->parentNode());
    }
    const bool isAgain = name == m_sLastOccursName;
    m_sLastOccursName = name;
    return isAgain;
}

bool XmlCreateReport::CheckOccurs(const QString &name, int maxOccurs)
{
    ValidOutput *pValid = m_pDomParser->GetValidOutput();
    if (pValid == nullptr) {
        return CheckOccursMap(name, m_pCurrentElement->tagName(), maxOccurs, m_pCurrentElement);
    }
    const ValidOutput::Element *pDeclared = m_pDomParser->FindDeclared();
    return pDeclared != nullptr && name == m_pCurrentElement->tagName() && pValid->MayRepeat(*pDeclared, maxOccurs);
}

bool XmlCreateReport::CheckOccursMap(QString name, QString tagName, int maxOccurs, QDomElement *element)
{
    OccurrenceLookup &occurrences = m_pDomParser->GetOccurrences();
    const OccurrenceLookup::Row *row = occurrences.FindRow(name);
    if (row == nullptr) {
        Error(ITagwright::CURRENT_OCCURRENCE_IS_NOT_VALID);
        return false;
    }
    return occurrences.IsFound(*row, tagName, *element, [maxOccurs](int key) { return KeyAllows(key, maxOccurs); });
}

void XmlCreateReport::DiscardChoiceItem()
{
    if (!FetchCurrentElement("DiscardChoiceItem")) {
        return;
    }
    if (!MayBeDiscarded()) {
        Error(ITagwright::GENERAL_ERROR);
        return;
    }
    // The walk passes over the next sibling: bring the attributes kept for it and its followers into the document.
    m_pDomParser->CompleteDocument();
    const QDomElement discarded = *m_pCurrentElement;
    m_pDiscardSuccessor = std::make_unique<QDomElement>(dom::NextSibling(discarded).toElement());
    m_pCurrentElement = m_pDiscardSuccessor.get();
    const bool isAnnounced = m_pDomParser->GetValidOutput() != nullptr;
    if (!isAnnounced) {
        m_pDomParser->GetWalked().PassOver(*m_pDiscardSuccessor);
    }
    const bool isRemoved = m_pDomParser->Remove(discarded);
    m_pDomParser->SetNodeToContinue(m_pCurrentElement, isAnnounced);
    if (isRemoved) {
        ++m_iDiscardedItems;
    } else {
        Error(ITagwright::GENERAL_ERROR);
    }
}

// An alternative has to remain: one in front of this element, if fewer were given up than stand there, or else one
// behind it.
bool XmlCreateReport::MayBeDiscarded() const
{
    if (ValidOutput *pValid = m_pDomParser->GetValidOutput()) {
        const ValidOutput::Element *pDeclared = m_pDomParser->FindDeclared();
        m_pDomParser->CompleteDocument(); // those behind are told by their marks
        return pDeclared != nullptr && pValid->MayBeDiscarded(*pDeclared, *m_pCurrentElement);
    }
    const QString tagName = m_pCurrentElement->tagName();
    // A name that stands in two choices counts by its greatest key.
    const auto row = std::find_if(m_ChoiceMap.rbegin(), m_ChoiceMap.rend(),
                                  [&](const auto &member) { return member.second == tagName; });
    if (tagName.isEmpty() || row == m_ChoiceMap.rend()) {
        return false;
    }
    return row->first % 100 > m_iDiscardedItems || m_ChoiceMap.count(row->first + 1) != 0;
}
