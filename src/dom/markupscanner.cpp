#include "dom/markupscanner.h"

namespace dom {

namespace {

bool IsQuote(ushort character)
{
    return character == '"' || character == '\'';
}

} // namespace

MarkupScanner::MarkupScanner(QIODevice *device, const ReadingLimits &limits)
    : m_oText(device)
    , m_oLimits(limits)
    , m_oDtd(m_oText, m_oEntities, limits)
{
}

/// The steps answer false where they don't understand the file any more, or refuse it.
MarkupScanner::Result MarkupScanner::Scan()
{
    ushort character = 0;
    bool isUnderstood = true;
    while (isUnderstood && m_oText.SkipTo('<', '&')) {
        m_oText.Get(character);
        isUnderstood = character == '<' ? ScanMarkup() : ReadReference();
    }
    if (!isUnderstood) {
        CountRest();
    }
    if (!m_sReason.isEmpty()) {
        return Result::Refused;
    }
    return isUnderstood && !m_oText.HasFalseEnd() ? Result::Fine : Result::Doubtful;
}

/// Behind "<".
bool MarkupScanner::ScanMarkup()
{
    ushort character = 0;
    if (!m_oText.Get(character)) {
        return true;
    }
    switch (character) {
    case '!':
        return ScanBang();
    case '?':
        return SkipPast('?', 1);
    case '/':
        return ScanEndTag();
    default:
        m_oText.Unget();
        return ScanStartTag();
    }
}

bool MarkupScanner::ScanBang()
{
    ushort character = 0;
    if (!m_oText.Get(character)) {
        return true;
    }
    switch (character) {
    case '-':
        return m_oText.Get(character) && character == '-' && SkipPast('-', 2);
    case '[':
        return ScanCData();
    case 'D':
        return m_iDepth == 0 && ScanDoctype();
    default:
        return false;
    }
}

bool MarkupScanner::ScanCData()
{
    for (const char expected : { 'C', 'D', 'A', 'T', 'A', '[' }) {
        ushort character = 0;
        if (!m_oText.Get(character) || character != expected) {
            return false;
        }
    }
    return SkipPast(']', 2);
}

bool MarkupScanner::ScanDoctype()
{
    ushort quote = 0;
    ushort character = 0;
    while (m_oText.Get(character)) {
        if (quote != 0) {
            quote = character == quote ? 0 : quote;
        } else if (IsQuote(character)) {
            quote = character;
        } else if (character == '[') {
            return ScanDeclarations();
        } else if (character == '>' || character == '<') {
            return character == '>';
        }
    }
    return true;
}

/// Behind "[". With entities that hold markup nothing in the file need be what it looks like.
bool MarkupScanner::ScanDeclarations()
{
    const DtdScanner::Result result = m_oDtd.Read();
    if (result == DtdScanner::Result::Refused) {
        return Refuse(m_oDtd.GetReason());
    }
    m_oEntities.Resolve();
    if (!Grow(0)) {
        return false;
    }
    if (result == DtdScanner::Result::Lost) {
        for (const QChar character : m_oDtd.TakeRest()) {
            CountCharacter(character.unicode());
        }
        return false;
    }
    ushort character = 0;
    while (m_oText.Get(character) && character != '>') {
        if (character > ' ') {
            return false;
        }
    }
    return !m_oEntities.HasMarkup();
}

/// From the name's first character on. Qt announces an element at its "/" already, whatever follows.
bool MarkupScanner::ScanStartTag()
{
    DeclarationFinder finder;
    ushort character = 0;
    while (m_oText.Get(character)) {
        if (character == '>') {
            return BeginElement();
        }
        if (character == '/') {
            return m_oText.Get(character) && character == '>' && BeginElement() && EndElement();
        }
        if (character == '<') {
            return false;
        }
        if (finder.Feed(character)) {
            m_oNamespaces.Declare(finder.GetName());
        }
        if (!IsQuote(character)) {
            continue;
        }
        if (!ScanValue(character)) {
            return false;
        }
        finder.BeginName();
    }
    return true;
}

bool MarkupScanner::ScanValue(ushort quote)
{
    ushort character = 0;
    while (m_oText.SkipTo(quote, '&')) {
        m_oText.Get(character);
        if (character == quote) {
            return true;
        }
        if (!ReadReference()) {
            return false;
        }
    }
    return true;
}

bool MarkupScanner::ScanEndTag()
{
    ushort character = 0;
    if (!m_oText.SkipTo('>', '<')) {
        return true;
    }
    m_oText.Get(character);
    return character == '>' && EndElement();
}

/// Past the end of a comment, a CDATA section or an instruction: `count` marks or more, and ">".
bool MarkupScanner::SkipPast(ushort mark, int count)
{
    int marks = 0;
    ushort character = 0;
    while (m_oText.Get(character)) {
        if (character == '>' && marks >= count) {
            return true;
        }
        marks = character == mark ? marks + 1 : 0;
    }
    return true;
}

bool MarkupScanner::BeginElement()
{
    ++m_iDepth;
    m_oNamespaces.BeginElement();
    return m_iDepth <= m_oLimits.m_iDepth;
}

bool MarkupScanner::EndElement()
{
    --m_iDepth;
    m_oNamespaces.EndElement();
    if (m_oNamespaces.IsTooMuch()) {
        return Refuse(QStringLiteral("it has too many namespace prefixes on too many elements"));
    }
    return m_iDepth >= 0;
}

/// Behind "&".
bool MarkupScanner::ReadReference()
{
    ushort character = '&';
    m_oReference.Feed(character, 0);
    while (m_oReference.IsOpen() && m_oText.Get(character)) {
        if (character == '<' || IsQuote(character)) {
            m_oText.Unget();
            return true;
        }
        if (m_oReference.Feed(character, m_oEntities.GetLongestName())) {
            return CountReference();
        }
    }
    return true;
}

bool MarkupScanner::CountReference()
{
    const QString &name = m_oReference.GetName();
    m_bIsEachEndCounted = m_bIsEachEndCounted || m_oEntities.IsOpenEnded(name);
    return Grow(m_oEntities.Growth(name)) && !m_bIsEachEndCounted;
}

/// Where the file isn't understood, and everything that looks like a reference counts.
bool MarkupScanner::CountCharacter(ushort character)
{
    if (m_bIsEachEndCounted && character == ';' && !Grow(m_oEntities.GetHighestGrowth())) {
        return false;
    }
    return !m_oReference.Feed(character, m_oEntities.GetLongestName()) || CountReference() || m_sReason.isEmpty();
}

void MarkupScanner::CountRest()
{
    ushort character = 0;
    while (m_sReason.isEmpty() && !m_oEntities.IsEmpty() && m_oText.Get(character)) {
        CountCharacter(character);
    }
}

bool MarkupScanner::Grow(qint64 growth)
{
    m_iGrowth += growth;
    return m_iGrowth + m_oDtd.GetGrowth() + m_oEntities.GetDeclarationGrowth() <= m_oLimits.m_iGrowth
        || Refuse(QStringLiteral("its entities come to more than %1 bytes").arg(m_oLimits.m_iGrowth));
}

bool MarkupScanner::Refuse(const QString &reason)
{
    m_sReason = reason;
    return false;
}

} // namespace dom
