#include "checkedschema.h"

#include "subject.h"

#include <QJsonObject>

#include <algorithm>
#include <tuple>

CheckedSchema::CheckedSchema(const QString &path)
    : m_oRun(path, ReaderRun::Undeclared::Invent)
    , m_oModel(m_oRun.GetError(path).isEmpty() ? path : QString())
    , m_sError(m_oRun.GetError(path))
{
    if (m_sError.isEmpty()) {
        m_sError = m_oModel.GetError();
    }
    if (!m_sError.isEmpty()) {
        return;
    }
    const Subject subject(m_oModel, m_oRun);
    Findings findings;
    for (const auto check : { CheckTags, CheckNames, CheckTypes, CheckValues, CheckOccurrences, CheckTemplate }) {
        check(subject, findings);
    }
    m_lFindings = findings.GetAll();
    std::stable_sort(m_lFindings.begin(), m_lFindings.end(), [this](const Finding &one, const Finding &other) {
        const SchemaNode &a = m_oModel.At(one.m_iNode);
        const SchemaNode &b = m_oModel.At(other.m_iNode);
        return std::tie(a.m_iFile, a.m_iLine, a.m_iColumn) < std::tie(b.m_iFile, b.m_iLine, b.m_iColumn);
    });
}

QString CheckedSchema::Line(const Finding &finding, bool inColours) const
{
    const SchemaNode &node = m_oModel.At(finding.m_iNode);
    const QString pattern = inColours
        ? QStringLiteral("\033[1m%1:%2:%3: \033[35mwarning:\033[0m %4: %5 \033[35m[%6]\033[0m")
        : QStringLiteral("%1:%2:%3: warning: %4: %5 [%6]");
    return pattern.arg(m_oModel.GetFiles().at(node.m_iFile), QString::number(node.m_iLine),
                       QString::number(node.m_iColumn), finding.Sentence(), finding.Cure(),
                       QLatin1String(finding.m_pRule->m_sIdentifier));
}

QJsonObject CheckedSchema::Object(const Finding &finding) const
{
    const SchemaNode &node = m_oModel.At(finding.m_iNode);
    const bool isCured = (finding.m_pRule->m_iFlags & Rule::ValidOutput) != 0;
    return { { QStringLiteral("file"), m_oModel.GetFiles().at(node.m_iFile) },
             { QStringLiteral("line"), node.m_iLine },
             { QStringLiteral("column"), node.m_iColumn },
             { QStringLiteral("rule"), QLatin1String(finding.m_pRule->m_sIdentifier) },
             { QStringLiteral("sentence"), finding.Sentence() },
             { QStringLiteral("cure"), finding.Cure() },
             { QStringLiteral("manual"), QLatin1String(finding.m_pRule->m_sHeading) },
             { QStringLiteral("curedByValidOutput"), isCured } };
}
