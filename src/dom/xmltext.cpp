#include "dom/xmltext.h"

#include <algorithm>

namespace dom {

XmlText::XmlText(QIODevice *device)
    : m_oSource(device)
{
}

bool XmlText::SkipTo(ushort one, ushort other)
{
    while (m_pAt != m_pEnd || Fill()) {
        m_pAt = std::find_if(m_pAt, m_pEnd, [one, other](ushort c) { return c == one || c == other; });
        if (m_pAt != m_pEnd) {
            return true;
        }
    }
    return false;
}

int XmlText::Line() const
{
    return 1 + m_iLinesBefore + static_cast<int>(std::count(m_pBegin, m_pAt, ushort('\n')));
}

bool XmlText::Fill()
{
    m_iLinesBefore += static_cast<int>(std::count(m_pBegin, m_pEnd, ushort('\n')));
    // The source has the first piece at once, and the others when asked.
    if (!m_bIsFirst) {
        m_oSource.fetchData();
    }
    m_bIsFirst = false;
    m_sChunk = m_oSource.data();
    m_pBegin = m_sChunk.utf16();
    m_pAt = m_pBegin;
    m_pEnd = m_pBegin + m_sChunk.size();
    const auto isFalseEnd = [](ushort c) { return c >= QXmlInputSource::EndOfData; };
    m_bHasFalseEnd = m_bHasFalseEnd || std::any_of(m_pBegin, m_pEnd, isFalseEnd);
    return m_pBegin != m_pEnd;
}

} // namespace dom
