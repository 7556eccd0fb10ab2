#pragma once

#include <QDomDocumentFragment>
#include <QDomElement>
#include <QString>

#include <list>
#include <map>

/// A named type or a global declaration. The pointers here and in MissingElement are borrowed from the top schema
/// handler of a run: copies of a table share them, and they are valid as long as that handler lives.
struct TypeEntry
{
    /// True from the start for a named type; for a global declaration, true once something has cloned it.
    bool m_bUsed = false;
    /// References inside the fragment that still wait. 0: complete; above 0: not complete; -1: resolved by a pass.
    int m_iOpenRefs = 0;
    /// The declaration's content. Not owned.
    QDomDocumentFragment *m_pFragment = nullptr;
};

/// A reference that waits for its target.
struct MissingElement
{
    /// The element that receives the target's content. Not owned.
    QDomElement *m_pParent = nullptr;
    /// Null, or the child of m_pParent behind which the content goes. Not owned.
    QDomElement *m_pAfter = nullptr;
    /// The declaration that holds the reference: a key of TypeMap.
    QString m_sOwner;
    /// True: the target is applied as an attribute; false: as content.
    bool m_bAttribute = false;
    /// True: the target is the base of an extension, and its attributes keep their names.
    bool m_bBase = false;
    /// A pass has applied the record; no later one may do so again.
    bool m_bApplied = false;
    /// The reader's own: what it has noted of the reference itself; below 0 if nothing.
    int m_iNote = -1;
};

/// Every named type and global declaration, by name.
using TypeMap = std::map<QString, TypeEntry>;
/// Waiting references: referred name, repeat count, records.
using MissingMap = std::map<QString, std::map<int, std::list<MissingElement>>>;
/// Occurrence limits: element name, occurs key, parent names. A key that is a whole multiple of 100 says "optional".
using OccursMap = std::map<QString, std::map<int, std::list<QString>>>;
/// Members of choices: 100 x number of the choice + place in it, element name.
using ChoiceMap = std::map<int, QString>;
