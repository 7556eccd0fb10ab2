#include "report/occurrences.h"

#include <algorithm>

namespace {

bool IsListed(const QHash<QString, std::set<int>> &parents, const QString &parent,
              const OccurrenceLookup::KeyTest &keyApplies)
{
    const auto keys = parents.constFind(parent);
    return keys != parents.constEnd() && std::any_of(keys->begin(), keys->end(), keyApplies);
}

QHash<QString, std::set<int>> ByParent(const OccursMap::mapped_type &row)
{
    QHash<QString, std::set<int>> result;
    for (const auto &[key, parents] : row) {
        for (const QString &parent : parents) {
            result[parent].insert(key);
        }
    }
    return result;
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

OccurrenceLookup::OccurrenceLookup(const OccursMap &occursMap, WalkedDocument &index)
    : m_pOccursMap(&occursMap)
    , m_pIndex(&index)
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
    const WalkedDocument::Top &top = m_pIndex->GetTop();
    if (element == top.m_oRoot) {
        // It is found as what a search gives that begins on the name sought: the document's last child.
        return element == top.m_oLast && IsListed(parents, tagName, keyApplies);
    }
    for (QDomNode node = element.parentNode(); node.isElement(); node = node.parentNode()) {
        if (IsStart(node, parents, keyApplies)) {
            return true;
        }
        if (node.nodeName() == tagName) {
            return false; // what lies inside a match is not looked at
        }
    }
    return false;
}

const OccurrenceLookup::ParentKeys &OccurrenceLookup::GetParents(const QString &name)
{
    auto row = m_hRows.find(name);
    if (row == m_hRows.end()) {
        const auto filed = m_pOccursMap->find(name);
        row = m_hRows.insert(name, filed == m_pOccursMap->end() ? ParentKeys() : ByParent(filed->second));
    }
    return *row;
}

// Whether a search below one of the parents begins at this node. The names searched for are those of the elements that
// bear a listed name; for the root's name the document's last child stands in, whatever its own name is.
bool OccurrenceLookup::IsStart(const QDomNode &node, const ParentKeys &parents, const KeyTest &keyApplies)
{
    const WalkedDocument::Top top = m_pIndex->GetTop();
    const QString name = node.nodeName();
    if (node == top.m_oLast) {
        return name == top.m_sRootName && IsListed(parents, name, keyApplies);
    }
    const bool isListed = IsListed(parents, name, keyApplies)
        || (name == top.m_oLast.nodeName() && IsListed(parents, top.m_sRootName, keyApplies));
    return isListed && name != top.m_sRootName && m_pIndex->FindFirst(name) == node;
}
