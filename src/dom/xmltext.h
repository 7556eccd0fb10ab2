#pragma once

#include <QIODevice>
#include <QString>
#include <QXmlInputSource>

namespace dom {

/// The characters of a file as Qt's SAX reader gets them, decoded by the same code in the same pieces.
class XmlText
{
public:
    explicit XmlText(QIODevice *device);
    Q_DISABLE_COPY(XmlText)

    /// The next character; false at the end.
    bool Get(ushort &character)
    {
        if (m_pAt == m_pEnd && !Fill()) {
            return false;
        }
        character = *m_pAt++;
        return true;
    }
    /// Takes back the character that Get gave last.
    void Unget() { --m_pAt; }
    /// Skips ordinary text: everything up to, and without, the next of the two characters.
    bool SkipTo(ushort one, ushort other);

    /// The line of the character that Get gave last, from 1.
    int Line() const;
    /// True once a character came which Qt's reader takes for the end of the file.
    bool HasFalseEnd() const { return m_bHasFalseEnd; }

private:
    bool Fill();

    QXmlInputSource m_oSource;
    QString m_sChunk;
    const ushort *m_pBegin = nullptr;
    const ushort *m_pAt = nullptr;
    const ushort *m_pEnd = nullptr;
    int m_iLinesBefore = 0;
    bool m_bIsFirst = true;
    bool m_bHasFalseEnd = false;
};

} // namespace dom
