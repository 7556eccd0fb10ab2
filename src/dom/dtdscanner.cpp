#include "dom/dtdscanner.h"

namespace dom {

namespace {

bool IsBlank(ushort character)
{
    return character == ' ' || character == '\t' || character == '\n' || character == '\r';
}

bool IsQuote(ushort character)
{
    return character == '"' || character == '\'';
}

bool EndsName(ushort character)
{
    return IsBlank(character) || IsQuote(character) || character == '<' || character == '>' || character == '%'
        || character == '&' || character == ';' || character == '[' || character == ']';
}

} // namespace

DtdScanner::DtdScanner(XmlText &text, EntityTable &entities, const ReadingLimits &limits)
    : m_oText(text)
    , m_oEntities(entities)
    , m_oLimits(limits)
{
}

DtdScanner::Result DtdScanner::Read()
{
    bool isUnderstood = true;
    ushort character = 0;
    while (isUnderstood && GetBehindBlanks(character)) {
        if (character == ']' && m_lOpen.empty()) {
            return Result::Closed;
        }
        isUnderstood = (character == '%' && ReadParameterReference(false)) || (character == '<' && ReadDeclaration());
    }
    return m_sReason.isEmpty() ? Result::Lost : Result::Refused;
}

QString DtdScanner::TakeRest()
{
    QString rest;
    while (!m_lOpen.empty()) {
        rest += m_lOpen.back().m_sText.midRef(m_lOpen.back().m_iAt);
        m_lOpen.pop_back();
    }
    return rest;
}

bool DtdScanner::Get(ushort &character)
{
    while (!m_lOpen.empty() && m_lOpen.back().m_iAt == m_lOpen.back().m_sText.size()) {
        m_lOpen.pop_back();
    }
    if (m_lOpen.empty()) {
        return m_oText.Get(character);
    }
    Source &source = m_lOpen.back();
    character = source.m_sText.at(source.m_iAt++).unicode();
    return true;
}

/// A source stays open until the next Get, so that its last character can be taken back.
void DtdScanner::Unget()
{
    if (m_lOpen.empty()) {
        m_oText.Unget();
    } else {
        --m_lOpen.back().m_iAt;
    }
}

bool DtdScanner::GetBehindBlanks(ushort &character)
{
    while (Get(character)) {
        if (!IsBlank(character)) {
            return true;
        }
    }
    return false;
}

QString DtdScanner::GetName()
{
    QString name;
    ushort character = 0;
    while (Get(character)) {
        if (EndsName(character)) {
            Unget();
            break;
        }
        name.append(QChar(character));
    }
    return name;
}

/// What stands behind "<".
bool DtdScanner::ReadDeclaration()
{
    ushort character = 0;
    if (!Get(character)) {
        return false;
    }
    if (character == '?') {
        return SkipPast('?', 1);
    }
    if (character != '!' || !Get(character)) {
        return false;
    }
    if (character == '-') {
        return Get(character) && character == '-' && SkipPast('-', 2);
    }
    Unget();
    const QString keyword = GetName();
    if (keyword == QLatin1String("ENTITY")) {
        return ReadEntity();
    }
    return (keyword == QLatin1String("ELEMENT") || keyword == QLatin1String("ATTLIST")
            || keyword == QLatin1String("NOTATION"))
        && SkipDeclaration();
}

bool DtdScanner::ReadEntity()
{
    ushort character = 0;
    if (!GetBehindBlanks(character)) {
        return false;
    }
    const bool isParameter = character == '%';
    if (isParameter && !GetBehindBlanks(character)) {
        return false;
    }
    Unget();
    const QString name = GetName();
    if (name.isEmpty() || !GetBehindBlanks(character)) {
        return false;
    }
    if (!IsQuote(character)) {
        return SkipDeclaration();
    }
    QString value;
    if (!ReadEntityValue(character, value) || !GetBehindBlanks(character) || character != '>') {
        return false;
    }
    if (isParameter && !m_hParameters.contains(name)) {
        m_hParameters.insert(name, value);
    }
    return isParameter || m_oEntities.Add(name, value)
        || Refuse(QStringLiteral("there are too many and too long entities"));
}

bool DtdScanner::ReadEntityValue(ushort quote, QString &value)
{
    ushort character = 0;
    bool isUnderstood = true;
    while (isUnderstood && Get(character)) {
        if (character == quote) {
            return true;
        }
        if (character == '%') {
            isUnderstood = ReadParameterReference(true);
        } else if (character == '&') {
            isUnderstood = ReadCharacterReference(value);
        } else {
            value.append(QChar(character));
        }
    }
    return false;
}

/// Behind "&": a character is put in; a reference to an entity stays as it is.
bool DtdScanner::ReadCharacterReference(QString &value)
{
    ushort character = 0;
    if (!Get(character)) {
        return false;
    }
    if (character != '#') {
        Unget();
        value.append(QLatin1Char('&'));
        return true;
    }
    const QString digits = GetName();
    const bool isHex = digits.startsWith(QLatin1Char('x'), Qt::CaseInsensitive);
    bool isNumber = false;
    const uint code = isHex ? digits.mid(1).toUInt(&isNumber, 16) : digits.toUInt(&isNumber, 10);
    if (!isNumber || !Get(character) || character != ';') {
        return false;
    }
    // Qt cuts the number to 16 bits, and so "&#65596;" begins a tag where the entity is referred to.
    value.append(QChar(static_cast<ushort>(code)));
    return true;
}

/// Behind "%". One that isn't declared is passed over. In a literal, quotes in what is put in don't end it.
bool DtdScanner::ReadParameterReference(bool isLiteral)
{
    ushort character = 0;
    const QString name = GetName();
    if (name.isEmpty() || !Get(character) || character != ';') {
        return false;
    }
    QString text = m_hParameters.value(name);
    if (isLiteral) {
        text.replace(QLatin1Char('"'), QLatin1String("&quot;")).replace(QLatin1Char('\''), QLatin1String("&apos;"));
    }
    m_iGrowth += text.size();
    if (m_iGrowth > m_oLimits.m_iGrowth) {
        return Refuse(QStringLiteral("its entities come to more than %1 bytes").arg(m_oLimits.m_iGrowth));
    }
    if (m_lOpen.size() > static_cast<std::size_t>(m_hParameters.size())) {
        return false;
    }
    m_lOpen.push_back({ text, 0 });
    return true;
}

/// To the end of a declaration of which only the depth of its content model and its default values matter: Qt goes one
/// call deeper for each parenthesis, and puts entities into default values.
bool DtdScanner::SkipDeclaration()
{
    int depth = 0;
    ushort character = 0;
    while (Get(character) && character != '<' && character != '%') {
        if (character == '>') {
            return true;
        }
        if (IsQuote(character) && !SkipLiteral(character)) {
            return false;
        }
        depth += (character == '(' ? 1 : 0) - (character == ')' ? 1 : 0);
        if (depth > limits::kMaxContentModelDepth) {
            return RefuseContentModel();
        }
    }
    return false;
}

bool DtdScanner::RefuseContentModel()
{
    return Refuse(QStringLiteral("more than %1 parentheses lie within each other").arg(limits::kMaxContentModelDepth));
}

bool DtdScanner::SkipLiteral(ushort quote)
{
    ReferenceReader reader;
    ushort character = 0;
    while (Get(character)) {
        if (character == quote) {
            return true;
        }
        if (reader.Feed(character, m_oEntities.GetLongestName())) {
            m_oEntities.AddReference(reader.GetName());
        }
        if (character == ';') {
            m_oEntities.AddReferenceEnd();
        }
    }
    return false;
}

/// Past the end of a comment or an instruction: `count` marks or more, and ">".
bool DtdScanner::SkipPast(ushort mark, int count)
{
    int marks = 0;
    ushort character = 0;
    while (Get(character)) {
        if (character == '>' && marks >= count) {
            return true;
        }
        marks = character == mark ? marks + 1 : 0;
    }
    return false;
}

bool DtdScanner::Refuse(const QString &reason)
{
    m_sReason = reason;
    return false;
}

} // namespace dom
