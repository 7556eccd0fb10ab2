#include "report/reportoutcome.h"

bool ReportOutcome::IsComplete() const
{
    return IsSaved() && IsSchemaRead() && m_lRefusedValues.isEmpty() && m_lMissing.isEmpty();
}

void ReportOutcome::SetSaveResult(const QString &error)
{
    m_eState = error.isEmpty() ? State::Saved : State::NotSaved;
    m_sSaveError = error;
}
