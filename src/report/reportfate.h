#pragma once

#include "report/reportoutcome.h"

#include <functional>

/// Holds the outcome of one report and tells its fate once. The report's builder and its comment dialog share it:
/// either may end first.
class ReportFate
{
public:
    using Handler = std::function<void(const ReportOutcome &)>;

    ReportOutcome &GetOutcome() { return m_oOutcome; }
    /// The handler is called once: by Settle(), or at once if that is over.
    void SetHandler(Handler handler);
    /// Nothing can change any more: a report that nobody has tried to save is dropped.
    void Settle();

private:
    void Tell();

    ReportOutcome m_oOutcome;
    Handler m_fnHandler;
    bool m_bSettled = false;
};
