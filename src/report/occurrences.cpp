#include "report/occurrences.h"

#include <algorithm>

namespace {

bool IsListed(const OccurrenceLookup::ParentKeys &parents, const QString &parent,
              const OccurrenceLookup::KeyTest &keyApplies)
{
    const auto keys = parents.constFind(parent);
    return keys != parents.constEnd() && std::any_of(keys->begin(), keys->end(), keyApplies);
}

} // namespace

ChoiceKeys GreatestChoiceKeys(const ChoiceMap &choiceMap)
{
    ChoiceKeys keys;
    for (const auto &[key, name] : choiceMap) {
        keys.insert(name, key);
    }
    return keys;
}

OccurrenceLookup::OccurrenceLookup(const OccursMap &occursMap, WalkedDocument &document)
    : m_pOccursMap(&occursMap)
    , m_pDocument(&document)
{
}

bool OccurrenceLookup::HasRow(const QString &name) const
{
    return m_pOccursMap->find(name) != m_pOccursMap->end();
}

bool OccurrenceLookup::IsFound(const QString &name, const QString &tagName, const QDomElement &element,
                               const KeyTest &keyApplies)
{
    if (element.isNull()) {
        return false;
    }
    const ParentKeys &parents = GetParents(name);
    const WalkedDocument::Top &top = m_pDocument->GetTop();
    if (element == top.m_oRoot) {
        // A search for the root's name gives the document's last child.
        return element == top.m_oLast && IsListed(parents, tagName, keyApplies);
    }
    for (QDomNode node = element.parentNode(); node.isElement(); node = node.parentNode()) {
        if (IsStart(node, parents, keyApplies)) {
            return true;
        }
        if (node.nodeName() == tagName) {
            return false; // a search doesn't look inside a match
        }
    }
    return false;
}

const OccurrenceLookup::ParentKeys &OccurrenceLookup::GetParents(const QString &name)
{
    ParentKeys &parents = m_hRows[name];
    if (!parents.isEmpty() || !HasRow(name)) {
        return parents;
    }
    for (const auto &[key, listed] : m_pOccursMap->at(name)) {
        for (const QString &parent : listed) {
            parents[parent].push_back(key);
        }
    }
    return parents;
}

// Whether a search below one of the listed parents begins at `node`, an ancestor of the element that is sought: the
// first element with the parent's name. For the root's name the document's last child stands in, whatever that is
// called.
bool OccurrenceLookup::IsStart(const QDomNode &node, const ParentKeys &parents, const KeyTest &keyApplies)
{
    const WalkedDocument::Top &top = m_pDocument->GetTop();
    const QString name = node.nodeName();
    if (node == top.m_oLast) {
        return name == top.m_sRootName && IsListed(parents, name, keyApplies);
    }
    const bool isListed = IsListed(parents, name, keyApplies)
        || (name == top.m_oLast.nodeName() && IsListed(parents, top.m_sRootName, keyApplies));
    return isListed && name != top.m_sRootName && m_pDocument->FindFirst(name) == node;
}
