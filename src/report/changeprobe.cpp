#include "report/changeprobe.h"

void ChangeProbe::Arm(QDomDocument document)
{
    const QString sought = QStringLiteral("sought");
    if (m_oTree.isNull()) {
        m_oTree = document.createElement(QStringLiteral("probe"));
        m_oMark = document.createElement(sought);
        m_oTree.appendChild(m_oMark);
        m_lMarks = m_oTree.elementsByTagName(sought);
    }
    m_oMark.setTagName(sought);
    if (m_lMarks.count() == 0) {
        // The list has been read since the change and holds nothing. Moving the mark to its own place renews it.
        m_oTree.appendChild(m_oMark);
        m_lMarks.count();
    }
    m_oMark.setTagName(QStringLiteral("renamed"));
}

bool ChangeProbe::HasChanged() const
{
    return m_lMarks.count() == 0;
}
