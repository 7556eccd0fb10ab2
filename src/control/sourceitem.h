#pragma once

#include "control/reportdata.h"
#include "control/reportsource.h"

#include <optional>

class XmlCreateReport;

/// An item without a value of its own: a source, which a host's function gives one for each place, or a container. The
/// functions are the host's: they may change the list while they run.
class SourceItem : public ReportData
{
public:
    /// `traits` has the name, and what else every item has. A null `source` makes a container; with a null `count` the
    /// occurrences of `traits` count.
    SourceItem(const ReportData &traits, ReportSource source, ReportCount count);

    bool IsContainer() const { return m_fnSource == nullptr; }

    /// How often the element in hand is to stand.
    int AskCount(const XmlCreateReport &report);

    /// Whether the value was asked for, in this announcement of an element, for the attribute, or with an empty name
    /// for the element.
    bool IsAsked(quint64 announcement, const QString &attribute) const;
    void Ask(quint64 announcement, const ReportPlace &place);
    /// The latest answer, invalid if there is no value.
    const QVariant &GetValue() const { return m_oValue; }

private:
    template <typename Result>
    static std::optional<Result> Call(const std::function<Result(const ReportPlace &)> &function,
                                      const ReportPlace &place);

    ReportSource m_fnSource;
    ReportCount m_fnCount;
    quint64 m_iAnnouncement = 0; // of the latest answer; the first is 1
    QString m_sAttribute;
    QVariant m_oValue;
};
