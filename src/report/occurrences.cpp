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

OccurrenceLookup::OccurrenceLookup(const OccursMap &occursMap, ElementIndex &index)
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
    const QDomDocument document = element.ownerDocument();
    if (element == document.documentElement()) {
        // It is found as what a search gives that begins on the name sought: the document's last child.
        return element == document.lastChild() && IsListed(parents, tagName, keyApplies);
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
    const QDomDocument document = node.ownerDocument();
    const QString rootName = document.documentElement().tagName();
    const QDomNode last = document.lastChild();
    const QString name = node.nodeName();
    const bool isRootListed = IsListed(parents, rootName, keyApplies);
    if (node == last) {
        return isRootListed && last.nodeName() == rootName;
    }
    const bool isListed = IsListed(parents, name, keyApplies) || (isRootListed && name == last.nodeName());
    return isListed && name != rootName && m_pIndex->FindFirst(name) == node;
}
