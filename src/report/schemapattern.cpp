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

// What stands for a backslash and the text behind it; empty if nothing can.
QString Escaped(const QString &behind, bool isInSet)
{
    const QChar letter = behind.isEmpty() ? QChar() : behind.at(0);
    const bool isBlock = letter.toLower() == QLatin1Char('p') && behind.midRef(1).startsWith(QLatin1String("{Is"));
    if (isBlock || letter.isNull() || QStringLiteral("icIC").contains(letter)) {
        return QString();
    }
    const Escape *pEscape = FindEscape(letter);
    if (pEscape == nullptr) {
        return QLatin1Char('\\') + QString(letter);
    }
    return isInSet ? pEscape->m_sInSet : pEscape->m_sPlain;
}

} // namespace

std::optional<QString> FromSchemaPattern(const QString &pattern)
{
    QString result;
    bool isInSet = false;
    for (int i = 0; i < pattern.size(); ++i) {
        const QChar character = pattern.at(i);
        const bool isEscape = character == QLatin1Char('\\');
        if (isEscape || (isInSet && character == QLatin1Char('['))) {
            const QString text = isEscape ? Escaped(pattern.mid(++i, 4), isInSet) : QString();
            if (text.isEmpty()) {
                return std::nullopt;
            }
            result += text;
            continue;
        }
        result += isInSet ? QString(character) : Plain(character);
        isInSet = isInSet ? character != QLatin1Char(']') : character == QLatin1Char('[');
    }
    return QLatin1String("\\A(?:") + result + QLatin1String(")\\z");
}
