#include "report/schemapattern.h"

#include <QHash>
#include <QRegularExpression>

namespace {

struct Escape
{
    QString m_sPlain;
    QString m_sInSet; // empty: no translation there
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

// The translation of a character outside a set, or of the "[" that begins a set.
QString Plain(QChar character)
{
    if (character == QLatin1Char('.')) {
        return QStringLiteral("[^\\n\\r]");
    }
    const bool isAnchor = character == QLatin1Char('^') || character == QLatin1Char('$');
    return isAnchor ? QLatin1Char('\\') + QString(character) : QString(character);
}

// The translation of a backslash and the letter behind it; empty if there is none.
QString Escaped(const QString &behind, bool isInSet)
{
    const QChar letter = behind.isEmpty() ? QChar() : behind.at(0);
    const bool isBlock = letter.toLower() == QLatin1Char('p') && behind.mid(1).startsWith(QLatin1String("{Is"));
    if (isBlock || letter.isNull() || QStringLiteral("icIC").contains(letter)) {
        return QString();
    }
    const Escape *pEscape = FindEscape(letter);
    if (pEscape == nullptr) {
        return QLatin1Char('\\') + QString(letter);
    }
    return isInSet ? pEscape->m_sInSet : pEscape->m_sPlain;
}

// The translation of the piece of the pattern that begins at `place`, empty if there is none. `place` moves on to the
// last character of the piece.
QString NextPiece(const QString &pattern, int &place, bool &isInSet)
{
    const QChar character = pattern.at(place);
    if (character == QLatin1Char('\\')) {
        return Escaped(pattern.mid(++place, 4), isInSet);
    }
    if (isInSet && character == QLatin1Char('[')) {
        return QString();
    }
    QString piece = isInSet ? QString(character) : Plain(character);
    isInSet = isInSet ? character != QLatin1Char(']') : character == QLatin1Char('[');
    return piece;
}

} // namespace

std::optional<QString> FromSchemaPattern(const QString &pattern)
{
    QString result;
    bool isInSet = false;
    for (int place = 0; place < pattern.size(); ++place) {
        const QString piece = NextPiece(pattern, place, isInSet);
        if (piece.isEmpty()) {
            return std::nullopt;
        }
        result += piece;
    }
    result = QLatin1String("\\A(?:") + result + QLatin1String(")\\z");
    return QRegularExpression(result).isValid() ? std::optional<QString>(result) : std::nullopt;
}
