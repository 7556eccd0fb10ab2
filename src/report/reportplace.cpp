#include "report/reportplace.h"

#include <algorithm>
#include <utility>

ReportPlace::ReportPlace(QVector<Step> steps, QString attribute)
    : m_lSteps(std::move(steps))
    , m_sAttribute(std::move(attribute))
{
}

int ReportPlace::GetIndex(const QString &name) const
{
    const auto found =
        std::find_if(m_lSteps.crbegin(), m_lSteps.crend(), [&name](const Step &step) { return step.m_sName == name; });
    return found == m_lSteps.crend() ? -1 : found->m_iIndex;
}

QString ReportPlace::GetText() const
{
    QString text;
    for (const Step &step : m_lSteps) {
        text += QLatin1Char('/') + step.m_sName;
        if (step.m_iIndex > 0) {
            text += QLatin1Char('[') + QString::number(step.m_iIndex + 1) + QLatin1Char(']');
        }
    }
    return m_sAttribute.isEmpty() ? text : text + QLatin1String("/@") + m_sAttribute;
}
