#include "dom/entitycosts.h"

#include "dom/limits.h"

namespace dom {

namespace {

/// More isn't told apart: a single reference to such an entity is too much already.
qint64 Sum(qint64 left, qint64 right)
{
    return qMin(left + right, limits::kMaxEntityGrowth + 1);
}

/// A "%" before a blank, as in a declaration, refers to nothing, nor does the "&" of a character reference.
bool IsReference(const QString &text, int at, bool isParameter)
{
    const QChar next = text.size() > at + 1 ? text.at(at + 1) : QChar();
    return text.at(at) == QLatin1Char('&') ? next != QLatin1Char('#')
                                           : isParameter && text.at(at) == QLatin1Char('%') && !next.isSpace();
}

} // namespace

EntityCosts::EntityCosts()
{
    for (const char *name : { "lt", "gt", "amp", "apos", "quot" }) {
        DeclareExternal(QLatin1String(name));
    }
}

QString EntityCosts::Declare(const QString &name, const QString &text)
{
    m_iSearched += qint64 { text.size() } * m_hCosts.size();
    if (m_hCosts.size() > limits::kMaxEntities || m_iSearched > limits::kMaxEntitySearch) {
        return QStringLiteral("it declares too many or too long entities");
    }
    Cost cost { text.size(), text.count(QLatin1Char('(')) };
    if (!AddReferences(text, name.startsWith(QLatin1Char('%')), cost)) {
        return QStringLiteral("the entity %1 refers to what is not declared before it").arg(name);
    }
    m_hCosts.insert(Key(name), cost);
    m_oHighest.m_iLength = qMax(m_oHighest.m_iLength, cost.m_iLength);
    m_oHighest.m_iParentheses = qMax(m_oHighest.m_iParentheses, cost.m_iParentheses);
    return QString();
}

QString EntityCosts::Key(const QString &name)
{
    return name.startsWith(QLatin1Char('%')) ? name : QLatin1Char('&') + name;
}

/// False where the text refers to an unknown entity, or ends within a reference, which what follows would complete.
bool EntityCosts::AddReferences(const QString &text, bool isParameter, Cost &cost) const
{
    for (int at = 0; at < text.size(); ++at) {
        if (!IsReference(text, at, isParameter)) {
            continue;
        }
        const int end = text.indexOf(QLatin1Char(';'), at);
        const auto known = m_hCosts.constFind(text.mid(at, end - at));
        if (end < 0 || known == m_hCosts.constEnd()) {
            return false;
        }
        cost.m_iLength = Sum(cost.m_iLength, known->m_iLength);
        cost.m_iParentheses = Sum(cost.m_iParentheses, known->m_iParentheses);
    }
    return true;
}

} // namespace dom
