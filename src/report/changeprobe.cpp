#include "report/changeprobe.h"

namespace {

QString SoughtName()
{
    return QStringLiteral("sought");
}

} // namespace

void ChangeProbe::Arm(QDomDocument document)
{
    if (m_oTree.isNull()) {
        m_oTree = document.createElement(QStringLiteral("probe"));
        m_oMark = document.createElement(SoughtName());
        m_oTree.appendChild(m_oMark);
        m_lMarks = m_oTree.elementsByTagName(SoughtName());
    }
    m_oMark.setTagName(SoughtName());
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

void ChangeProbe::Disarm()
{
    m_lMarks = QDomNodeList();
    m_oMark.clear();
    m_oTree.clear();
}
