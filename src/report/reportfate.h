#pragma once

#include "report/reportoutcome.h"

#include <functional>
#include <utility>

/// Holds the outcome of one report and tells its fate once. The report's builder and its comment dialog share it:
/// either may end first.
class ReportFate
{
public:
    using Handler = std::function<void(const ReportOutcome &)>;

    ReportOutcome &GetOutcome() { return m_oOutcome; }
    void SetHandler(Handler handler) { m_fnHandler = std::move(handler); }

    /// What the latest saving came to; an empty `failure` says that the file stands there.
    void SetResult(const QString &failure);
    /// Nothing can change any more: a report that nobody has tried to save is dropped. Calls the handler the first
    /// time.
    void Settle();

private:
    ReportOutcome m_oOutcome;
    Handler m_fnHandler;
    bool m_bSettled = false;
};
