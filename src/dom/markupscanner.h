#pragma once

#include "dom/dtdscanner.h"
#include "dom/entitytable.h"
#include "dom/namespaceload.h"
#include "dom/readinglimits.h"
#include "dom/xmltext.h"

#include <QString>

namespace dom {

/// Reads a file's markup once, without recursion and in little memory. Up to the first fault at which Qt's reader would
/// stop it sees each tag that Qt sees; behind such a fault it may see further ones.
class MarkupScanner
{
public:
    enum class Result {
        /// Within all limits.
        Fine,
        /// Perhaps deeper than allowed: only Qt's reader can tell. What entities come to is within its limit.
        Doubtful,
        /// A limit is broken, which GetReason names.
        Refused
    };

    MarkupScanner(QIODevice *device, const ReadingLimits &limits);

    Result Scan();
    const QString &GetReason() const { return m_sReason; }
    /// Where it was broken.
    int GetLine() const { return m_oText.Line(); }

private:
    bool ScanMarkup();
    bool ScanBang();
    bool ScanCData();
    bool ScanDoctype();
    bool ScanDeclarations();
    bool ScanStartTag();
    bool ScanValue(ushort quote);
    bool ScanEndTag();
    bool SkipPast(ushort mark, int count);
    bool BeginElement();
    bool EndElement();
    bool ReadReference();
    bool CountReference();
    bool CountCharacter(ushort character);
    void CountRest();
    bool Grow(qint64 growth);
    bool Refuse(const QString &reason);

    XmlText m_oText;
    ReadingLimits m_oLimits;
    EntityTable m_oEntities;
    DtdScanner m_oDtd;
    ReferenceReader m_oReference;
    NamespaceLoad m_oNamespaces;
    QString m_sReason;
    /// Bytes that references in the file come to beyond their own length, those in its declarations left out.
    qint64 m_iGrowth = 0;
    int m_iDepth = 0;
    bool m_bIsEachEndCounted = false;
};

} // namespace dom
