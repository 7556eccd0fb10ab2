#include "report/reportfate.h"

#include <utility>

void ReportFate::SetHandler(Handler handler)
{
    m_fnHandler = std::move(handler);
    Tell();
}

void ReportFate::Settle()
{
    if (!m_bSettled && m_oOutcome.GetState() == ReportOutcome::State::Open) {
        m_oOutcome.SetDropped();
    }
    m_bSettled = true;
    Tell();
}

void ReportFate::Tell()
{
    if (m_bSettled && m_fnHandler) {
        // The handler may end whoever holds this object.
        const Handler handler = std::exchange(m_fnHandler, nullptr);
        const ReportOutcome outcome = m_oOutcome;
        handler(outcome);
    }
}
