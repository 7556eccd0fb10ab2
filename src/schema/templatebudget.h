#pragma once

#include <QDomElement>
#include <QString>

#include <unordered_map>

/// What a piece of a template holds. The carrier of a named type doesn't count as an element; what it carries does.
struct Extent
{
    qint64 m_iElements = 0;
    qint64 m_iAttributes = 0;
    int m_iHeight = 0;
};

/// Counts what a run builds, before it is built, so that a small file can't ask for more than the host can bear:
/// minOccurs multiplies, and types that hold others twice double at each level. Once a limit is broken the answer stays
/// no.
class TemplateBudget
{
public:
    /// Whether `count` such pieces may still stand in the fragment, their tops on this level (1 for the fragment's own
    /// children). Counts nothing.
    bool Allows(const QDomDocumentFragment *fragment, const Extent &piece, qint64 count, int level);

    /// The same for one piece, which is counted.
    bool Take(const QDomDocumentFragment *fragment, const Extent &piece, int level);

    /// Whether the element, which stands in the fragment, may get so many attributes more. They are counted.
    bool TakeAttributes(const QDomDocumentFragment *fragment, const QDomElement &element, qint64 count);

    /// A placeholder that was counted in the fragment is about to go.
    void GiveBackElement(const QDomDocumentFragment *fragment);

    /// Whether the attributes of an element that has so many of them may be listed. The steps are counted.
    bool TakeListing(qint64 attributes);

    /// What the fragment holds. One that the run has not built itself is measured.
    const Extent &Of(const QDomDocumentFragment *fragment);

    bool IsExceeded() const;
    /// The limit that was broken, as a sentence; empty if none was.
    QString GetReason() const;

private:
    bool Refuse(const QString &reason);

    std::unordered_map<const QDomDocumentFragment *, Extent> m_hExtents;
    Extent m_oTotal;
    qint64 m_iListingSteps = 0;
    QString m_sReason;
};
