#pragma once

#include "host/trace.h"
#include "report/placefinder.h"
#include "report/reportoutcome.h"
#include "report/reportplace.h"
#include "report/walkeddocument.h"

#include <QDomElement>
#include <QString>

#include <vector>

/// Collects, while tracing is on or an outcome asks for it, which values of the current element were refused and why,
/// and tells of those that were not written in another form either. A receiver tries a value in several forms, and
/// stamps the same attribute again at each item, so that a single refusal says little.
class Refusals
{
public:
    explicit Refusals(WalkedDocument &walked)
        : m_oPlaces(walked)
    {
    }
    Q_DISABLE_COPY(Refusals)

    /// The outcome that is to name the refused values and what is missing; not owned, null for none.
    void SetOutcome(ReportOutcome *pOutcome) { m_pOutcome = pOutcome; }
    /// Whether anybody wants the sentences.
    bool IsAsked() const { return m_pOutcome != nullptr || trace::IsOn(); }

    /// Where an element of the walked document stands; `attribute` is empty for the element itself.
    ReportPlace PlaceOf(const QDomElement &element, const QString &attribute)
    {
        return m_oPlaces.PlaceOf(element, attribute);
    }

    /// `attribute` is empty for the element's own value. `reason` completes "the value was not written: ".
    void Note(const QString &attribute, const QString &value, const QString &reason, int error);

    /// The attribute, or the element, has got a value: nobody hears of its refusals, earlier and later ones.
    void Written(const QString &attribute);

    /// Tells of the refusals that no value has made good. To be called when the receiver is done with `element`.
    void Tell(const QDomElement &element);

    /// Tells that `element`, or its attribute if one is named, stays without a value though it needs one.
    void TellMissing(const QDomElement &element, const QString &attribute, int error);

    /// Tells that `element` goes with its value, as another alternative of a choice has one.
    void TellExcluded(const QDomElement &element, int error);

    /// Tells that the schema doesn't let `element` stand `count` times.
    void TellCount(const QDomElement &element, int count, int error);

    /// True if a value of the element itself was refused, and none written.
    bool HasRefusedValue() const;

    /// Another element comes.
    void Clear() { m_lTargets.clear(); }

    /// To be told before an element is taken out of its parent.
    void LeaveOut(const QDomNode &node) { m_oPlaces.LeaveOut(node); }
    /// To be told before an element in front of the latest one is taken out.
    void ForgetPath() { m_oPlaces.Forget(); }

private:
    struct Target
    {
        QString m_sAttribute;
        QString m_sValue;
        QString m_sReason;
        int m_iError = 0;
        bool m_bWritten = false;
        bool m_bTold = false;
        bool m_bIsCount = false;
    };

    Target &GetTarget(const QString &attribute);
    void Report(const QDomElement &element, const Target &target);

    std::vector<Target> m_lTargets;
    PlaceFinder m_oPlaces;
    ReportOutcome *m_pOutcome = nullptr; // not owned
};
