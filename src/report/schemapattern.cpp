#include "report/schemapattern.h"

#include <QHash>

namespace {

struct Escape
{
    QString m_sPlain;
    QString m_sInSet; // empty: can't be said there
};

// Letters that mean other sets of characters in a schema.
const Escape *FindEscape(QChar letter)
{
    static const QHash<QChar, Escape> escapes {
        { QLatin1Char('d'), { QStringLiteral("\\p{Nd}"), QStringLiteral("\\p{Nd}") } },
        { QLatin1Char('D'), { QStringLiteral("\\P{Nd}"), QStringLiteral("\\P{Nd}") } },
        { QLatin1Char('s'), { QStringLiteral("[ \\t\\n\\r]"), QStringLiteral(" \\t\\n\\r") } },
        { QLatin1Char('S'), { QStringLiteral("[^ \\t\\n\\r]"), QString() } },
        { QLatin1Char('w'), { QStringLiteral("[^\\p{P}\\p{Z}\\p{C}]"), QString() } },
        { QLatin1Char('W'), { QStringLiteral("[\\p{P}\\p{Z}\\p{C}]"), QStringLiteral("\\p{P}\\p{Z}\\p{C}") } },
    };
    const auto found = escapes.constFind(letter);
    return found == escapes.constEnd() ? nullptr : &*found;
}

// One character outside a set, or the "[" that begins one.
QString Plain(QChar character)
{
    if (character == QLatin1Char('.')) {
        return QStringLiteral("[^\\n\\r]");
    }
    const bool isAnchor = character == QLatin1Char('^') || character == QLatin1Char('$');
    return isAnchor ? QLatin1Char('\\') + QString(character) : QString(character);
}

} // namespace

std::optional<QString> FromSchemaPattern(const QString &pattern)
{
    QString result;
    bool isInSet = false;
    for (int i = 0; i < pattern.size(); ++i) {
        const QChar character = pattern.at(i);
        const QChar next = i + 1 < pattern.size() ? pattern.at(i + 1) : QChar();
        if (character == QLatin1Char('\\')) {
            ++i;
            const Escape *pEscape = FindEscape(next);
            const QString text = pEscape == nullptr ? QLatin1Char('\\') + QString(next)
                                                    : (isInSet ? pEscape->m_sInSet : pEscape->m_sPlain);
            const bool isBlock =
                next.toLower() == QLatin1Char('p') && pattern.midRef(i + 1).startsWith(QLatin1String("{Is"));
            if (text.isEmpty() || isBlock || QStringLiteral("icIC").contains(next)) {
                return std::nullopt;
            }
            result += text;
        } else if (isInSet && character == QLatin1Char('[')) {
            return std::nullopt;
        } else if (isInSet) {
            isInSet = character != QLatin1Char(']');
            result += character;
        } else {
            isInSet = character == QLatin1Char('[');
            result += Plain(character);
        }
    }
    return QLatin1String("\\A(?:") + result + QLatin1String(")\\z");
}
