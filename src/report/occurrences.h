#pragma once

#include "report/walkeddocument.h"
#include "schema/schematables.h"

#include <QDomElement>
#include <QString>

#include <functional>

/// Answers from the occurrence table whether an element stands where the table has filed it.
///
/// By the table an element counts for a parent name P if a search below the first element called P finds it among the
/// elements of its name. That search finds an element that stands below this P with none of its own name in between, so
/// that a look at the element's ancestors gives the same answer.
class OccurrenceLookup
{
public:
    using KeyTest = std::function<bool(int)>;
    /// The parents of one name, by key.
    using Row = OccursMap::mapped_type;

    /// Neither is owned; the table must stay as it is.
    OccurrenceLookup(const OccursMap &occursMap, WalkedDocument &document);

    /// Null if there is no row of that name.
    const Row *FindRow(const QString &name) const;

    /// True if `element`, a node of the document, is found by its `tagName` under one of the parent names that the row
    /// lists for a key that passes `keyApplies`.
    bool IsFound(const Row &row, const QString &tagName, const QDomElement &element, const KeyTest &keyApplies);

private:
    bool IsStart(const QDomNode &node, const Row &row, const KeyTest &keyApplies);

    const OccursMap *m_pOccursMap; // not owned
    WalkedDocument *m_pDocument; // not owned
};
