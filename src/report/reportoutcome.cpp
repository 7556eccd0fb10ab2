#include "report/reportoutcome.h"

bool ReportOutcome::IsComplete() const
{
    return IsSaved() && IsSchemaRead() && m_lRefusedValues.isEmpty() && m_lMissing.isEmpty();
}

void ReportOutcome::SetSaved()
{
    m_eState = State::Saved;
    m_sSaveError.clear();
}

void ReportOutcome::SetNotSaved(const QString &error)
{
    m_eState = State::NotSaved;
    m_sSaveError = error;
}

void ReportOutcome::SetDropped()
{
    m_eState = State::Dropped;
}
