#include "report/reportfate.h"

#include <utility>

void ReportFate::SetResult(const QString &failure)
{
    if (failure.isEmpty()) {
        m_oOutcome.SetSaved();
    } else {
        m_oOutcome.SetNotSaved(failure);
    }
}

void ReportFate::Settle()
{
    if (std::exchange(m_bSettled, true)) {
        return;
    }
    if (m_oOutcome.GetState() == ReportOutcome::State::Open) {
        m_oOutcome.SetDropped();
    }
    // The handler may end whoever holds this object.
    const Handler handler = std::exchange(m_fnHandler, nullptr);
    const ReportOutcome outcome = m_oOutcome;
    if (handler) {
        handler(outcome);
    }
}
