#pragma once

#include <QString>
#include <QVarLengthArray>

class ItemIndex;
class QXmlAttributes;

/// An attribute that takes the present time without any item.
bool IsTimeName(const QString &name);

/// What the control's items have to do with one element, told as a walk over the whole list would come upon it: which
/// items match the element or, short of that, one of its attributes, in list order. All others stand in the gaps
/// between these and do the same, whichever they are: they stamp the first date-time attribute, if there is one.
class ElementItems
{
public:
    struct Candidate
    {
        int m_iPosition = 0;
        /// The attribute that the item serves, -1 if it matches the element.
        int m_iAttribute = -1;
    };

    ElementItems(const ItemIndex &index, const QString &name, const QString &parentName,
                 const QXmlAttributes &attributes);

    const QVarLengthArray<Candidate, 8> &GetCandidates() const;
    /// The attribute at which an item of a gap stops looking: the first date-time attribute, else the last one; -1
    /// without attributes.
    int GetLastLookedAt() const;
    /// Whether an item of a gap stamps that attribute.
    bool HasStamp() const;
    /// Whether an item of that name matches the element as "parent/child".
    bool IsPathName(const QString &itemName) const;

private:
    void Add(const ItemIndex &index, const QString &name, int attribute);
    void Sort();

    QVarLengthArray<Candidate, 8> m_lCandidates;
    int m_iLastLookedAt = -1;
    bool m_bStamp = false;
    QString m_sPathName; // empty if no item can have such a name
};
