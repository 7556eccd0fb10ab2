#pragma once

#include "report/walkeddocument.h"
#include "schema/schematables.h"

#include <QDomElement>
#include <QHash>
#include <QString>

#include <functional>
#include <set>

/// The greatest choice key of each name that stands in a choice.
using ChoiceKeys = QHash<QString, int>;
ChoiceKeys GreatestChoiceKeys(const ChoiceMap &choiceMap);

/// Answers from the occurrence table whether an element stands where the table has filed it.
///
/// The table's word is a search: an element counts for a parent name P if it is among the elements of its name below
/// the first element called P. That is the same as standing below it with none of its own name between, which is seen
/// from the element upwards, without a search of the document.
class OccurrenceLookup
{
public:
    using KeyTest = std::function<bool(int)>;

    /// Neither is owned; the table must stay as it is.
    OccurrenceLookup(const OccursMap &occursMap, WalkedDocument &index);

    bool HasRow(const QString &name) const;

    /// True if `element`, a node of the document, is found by its `tagName` under one of the parent names that the
    /// row `name` lists for a key that passes `keyApplies`.
    bool IsFound(const QString &name, const QString &tagName, const QDomElement &element, const KeyTest &keyApplies);

private:
    // The keys under which a row lists each parent.
    using ParentKeys = QHash<QString, std::set<int>>;

    const ParentKeys &GetParents(const QString &name);
    bool IsStart(const QDomNode &node, const ParentKeys &parents, const KeyTest &keyApplies);

    const OccursMap *m_pOccursMap; // not owned
    WalkedDocument *m_pIndex; // not owned
    QHash<QString, ParentKeys> m_hRows;
};
