#include "report/occurrences.h"

#include <algorithm>

namespace {

bool IsListed(const OccurrenceLookup::Row &row, const QString &parent, const OccurrenceLookup::KeyTest &keyApplies)
{
    return std::any_of(row.begin(), row.end(), [&](const auto &entry) {
        const auto &[key, parents] = entry;
        return keyApplies(key) && std::find(parents.begin(), parents.end(), parent) != parents.end();
    });
}

} // namespace

OccurrenceLookup::OccurrenceLookup(const OccursMap &occursMap, WalkedDocument &document)
    : m_pOccursMap(&occursMap)
    , m_pDocument(&document)
{
}

const OccurrenceLookup::Row *OccurrenceLookup::FindRow(const QString &name) const
{
    const auto row = m_pOccursMap->find(name);
    return row == m_pOccursMap->end() ? nullptr : &row->second;
}

bool OccurrenceLookup::IsFound(const Row &row, const QString &tagName, const QDomElement &element,
                               const KeyTest &keyApplies)
{
    if (element.isNull()) {
        return false;
    }
    const dom::SearchRoots &roots = m_pDocument->GetRoots();
    if (element == roots.m_oStart) {
        // A search for the root's name gives the document's last child.
        return element == roots.m_oTop && IsListed(row, tagName, keyApplies);
    }
    for (QDomNode node = element.parentNode(); node.isElement(); node = node.parentNode()) {
        if (IsStart(node, row, keyApplies)) {
            return true;
        }
        if (node.nodeName() == tagName) {
            return false; // a search doesn't look inside a match
        }
    }
    return false;
}

// Whether a search below one of the listed parents begins at `node`, an ancestor of the element that is sought: the
// first element with the parent's name. For the root's name the document's last child stands in, whatever that is
// called.
bool OccurrenceLookup::IsStart(const QDomNode &node, const Row &row, const KeyTest &keyApplies)
{
    const dom::SearchRoots &roots = m_pDocument->GetRoots();
    const QString rootName = roots.m_oStart.tagName();
    const QString name = node.nodeName();
    if (node == roots.m_oTop) {
        return name == rootName && IsListed(row, name, keyApplies);
    }
    const bool isListed =
        IsListed(row, name, keyApplies) || (name == roots.m_oTop.nodeName() && IsListed(row, rootName, keyApplies));
    return isListed && name != rootName && m_pDocument->FindFirst(name) == node;
}
