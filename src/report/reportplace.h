#pragma once

#include "tagwright_export.h"

#include <QString>
#include <QVector>

/// Where a value stands in the report: the element in hand, or the owner of the attribute in hand, and the way to it
/// from the root.
///
/// Each step of the way has an ordinal: which one of its name it is within its parent, from 0. Ordinals count the
/// elements that the report announces, each once, however often it is announced and whatever is left out before it. A
/// value class: a copy may be kept.
class TAGWRIGHT_EXPORT ReportPlace
{
public:
    /// One element of the way.
    struct Step
    {
        QString m_sName; ///< the element's name
        int m_iIndex = 0; ///< its ordinal among those of its name within its parent, from 0
    };

    /// No place.
    ReportPlace() = default;
    /// `steps` begins with the root. `attribute` is empty where the element itself is in hand.
    explicit ReportPlace(QVector<Step> steps, QString attribute = QString());

    /// The way from the root to the element.
    QVector<Step> GetSteps() const { return m_lSteps; }
    /// The name of the element; empty without a place.
    QString GetName() const { return m_lSteps.isEmpty() ? QString() : m_lSteps.last().m_sName; }
    /// The name of the attribute in hand; empty where the element itself is.
    QString GetAttribute() const { return m_sAttribute; }
    /// The ordinal of the element; -1 without a place.
    int GetIndex() const { return m_lSteps.isEmpty() ? -1 : m_lSteps.last().m_iIndex; }
    /// The ordinal of the nearest element of that name on the way, from the element itself up to the root; -1 if none
    /// is called so.
    int GetIndex(const QString &name) const;
    /// For a person, counted from 1 where an element is not the first: "/Report/Spectrum[3]/Band/@Unit".
    QString GetText() const;

private:
    QVector<Step> m_lSteps;
    QString m_sAttribute;
};
