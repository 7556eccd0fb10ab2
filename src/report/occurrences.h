#pragma once

#include "report/walkeddocument.h"
#include "schema/schematables.h"

#include <QDomElement>
#include <QHash>
#include <QString>

#include <functional>
#include <vector>

/// The greatest choice key of each name that stands in a choice.
using ChoiceKeys = QHash<QString, int>;
ChoiceKeys GreatestChoiceKeys(const ChoiceMap &choiceMap);

/// Answers from the occurrence table whether an element stands where the table has filed it.
///
/// By the table an element counts for a parent name P if a search below the first element called P finds it among the
/// elements of its name. That search finds an element that stands below this P with none of its own name in between, so
/// that a look at the element's ancestors gives the same answer.
class OccurrenceLookup
{
public:
    using KeyTest = std::function<bool(int)>;
    /// The keys under which a row lists each parent.
    using ParentKeys = QHash<QString, std::vector<int>>;

    /// Neither is owned; the table must stay as it is.
    OccurrenceLookup(const OccursMap &occursMap, WalkedDocument &document);

    bool HasRow(const QString &name) const;

    /// True if `element`, a node of the document, is found by its `tagName` under one of the parent names that the
    /// row `name` lists for a key that passes `keyApplies`.
    bool IsFound(const QString &name, const QString &tagName, const QDomElement &element, const KeyTest &keyApplies);

private:
    const ParentKeys &GetParents(const QString &name);
    bool IsStart(const QDomNode &node, const ParentKeys &parents, const KeyTest &keyApplies);

    const OccursMap *m_pOccursMap; // not owned
    WalkedDocument *m_pDocument; // not owned
    QHash<QString, ParentKeys> m_hRows;
};
