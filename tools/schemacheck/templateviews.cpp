#include "templateviews.h"

#include "dom/nodewalk.h"

#include <QMap>
#include <QRegularExpression>
#include <QSet>

#include <algorithm>

namespace templateviews {

namespace {

using Attributes = QMap<QString, QString>;

Attributes AttributesOf(const QDomElement &element)
{
    Attributes sorted;
    for (int i = 0; i < element.attributes().count(); ++i) {
        sorted.insert(element.attributes().item(i).nodeName(), element.attributes().item(i).nodeValue());
    }
    return sorted;
}

// The limits that a key of the occurrence table packs.
QString Limits(int key)
{
    const bool isOptional = key % 100 == 0;
    const QString from = isOptional ? QStringLiteral("0..") : QStringLiteral("1..");
    if (key < 0) {
        return from + QStringLiteral("unbounded");
    }
    return from + QString::number(isOptional ? std::max(key / 100, 1) : key);
}

// Whether the name is that of a type, and not of an element.
bool IsTypeName(const ReaderRun &run, const QString &name)
{
    const auto entry = run.GetTypes().find(name);
    return entry != run.GetTypes().end() && entry->second.m_pFragment->firstChild().nodeName() != name;
}

struct Rows
{
    QStringList m_lOwn;
    QStringList m_lOfTypes;

    void Add(const ReaderRun &run, const QDomElement &element, int key, const QString &parent)
    {
        if (parent == element.parentNode().nodeName()) {
            m_lOwn.append(Limits(key));
        } else if (IsTypeName(run, parent)) {
            m_lOfTypes.append(QStringLiteral("%1 in %2").arg(Limits(key), parent));
        }
    }
};

// The rows of an element: those of its parent, else those of types, which can't be told from each other here.
QString OccursOf(ReaderRun &run, const QDomElement &element)
{
    const auto keys = run.GetOccurs().find(element.tagName());
    if (keys == run.GetOccurs().end()) {
        return QString();
    }
    Rows rows;
    for (const auto &[key, parents] : keys->second) {
        for (const QString &parent : parents) {
            rows.Add(run, element, key, parent);
        }
    }
    QStringList &shown = rows.m_lOwn.isEmpty() ? rows.m_lOfTypes : rows.m_lOwn;
    shown.removeDuplicates();
    return shown.join(QStringLiteral(", "));
}

// "choice.member", both from 1, of each choice that lists the name.
QString ChoiceOf(ReaderRun &run, const QString &name)
{
    QStringList places;
    for (const auto &[key, member] : run.GetChoices()) {
        if (member == name) {
            places.append(QString::number(key / 100 + 1) + QLatin1Char('.') + QString::number(key % 100 + 1));
        }
    }
    return places.join(QStringLiteral(", "));
}

QString Remark(ReaderRun &run, const QDomElement &element)
{
    const QString occurs = OccursOf(run, element);
    const QString choice = ChoiceOf(run, element.tagName());
    QStringList parts;
    if (!occurs.isEmpty()) {
        parts.append(QStringLiteral("occurs ") + occurs);
    }
    if (!choice.isEmpty()) {
        parts.append(QStringLiteral("choice ") + choice);
    }
    return parts.isEmpty() ? QString() : QStringLiteral(" <!-- %1 -->").arg(parts.join(QStringLiteral("; ")));
}

QString StartTag(const QDomElement &element)
{
    QString text = QLatin1Char('<') + element.tagName();
    const Attributes attributes = AttributesOf(element);
    for (auto attribute = attributes.constBegin(); attribute != attributes.constEnd(); ++attribute) {
        text += QStringLiteral(" %1=\"%2\"").arg(attribute.key(), attribute.value().toHtmlEscaped());
    }
    return text;
}

const QRegularExpression &FacetPattern()
{
    static const QRegularExpression pattern(QStringLiteral("^(enumeration\\d+|(min|max)(In|Ex)clusive)"));
    return pattern;
}

// Bounds and enumeration of the element itself, or of one of its attributes.
QString Allowed(const Attributes &attributes, const QString &name)
{
    QMap<int, QString> values;
    QStringList bounds;
    for (auto attribute = attributes.constBegin(); attribute != attributes.constEnd(); ++attribute) {
        const QString facet = FacetPattern().match(attribute.key()).captured();
        if (facet.isEmpty() || attribute.key() != facet + name) {
            continue;
        }
        if (facet.startsWith(QLatin1String("enumeration"))) {
            values.insert(facet.mid(11).toInt(), attribute.value());
        } else {
            bounds.append(facet + QLatin1Char(' ') + attribute.value());
        }
    }
    return values.isEmpty() ? bounds.join(QStringLiteral(", "))
                            : QStringList(values.values()).join(QStringLiteral(" | "));
}

bool IsOwnAttribute(const QString &name)
{
    static const QSet<QString> facets { QStringLiteral("type"),        QStringLiteral("default"),
                                        QStringLiteral("pattern"),     QStringLiteral("length"),
                                        QStringLiteral("minLength"),   QStringLiteral("maxLength"),
                                        QStringLiteral("totalDigits"), QStringLiteral("fractionDigits"),
                                        QStringLiteral("whiteSpace") };
    return !facets.contains(name) && !FacetPattern().match(name).hasMatch();
}

// Shared by the names of an element and its attributes.
Name NameOf(ReaderRun &run, const QDomElement &element, const QString &repeatedAround)
{
    Name name;
    for (QDomElement outer = element; outer != run.GetRoot(); outer = outer.parentNode().toElement()) {
        name.m_sPlace.prepend(name.m_sPlace.isEmpty() ? outer.tagName() : outer.tagName() + QLatin1Char('/'));
    }
    name.m_sOccurs = OccursOf(run, element);
    name.m_sChoice = ChoiceOf(run, element.tagName());
    const bool isRepeated = name.m_sOccurs.contains(QLatin1String("unbounded"))
        || name.m_sOccurs.contains(QRegularExpression(QStringLiteral("\\.\\.([2-9]|\\d\\d)")));
    name.m_sRepeated = isRepeated ? element.tagName() : repeatedAround;
    return name;
}

void AddNames(ReaderRun &run, const QDomElement &element, const QString &repeatedAround, std::vector<Name> &names)
{
    const Attributes attributes = AttributesOf(element);
    Name name = NameOf(run, element, repeatedAround);
    const QString place = name.m_sPlace;
    // A container is in the host's hands where it may go or stand several times.
    if (attributes.contains(QStringLiteral("type")) || !(name.m_sOccurs + name.m_sChoice).isEmpty()) {
        name.m_sType = attributes.value(QStringLiteral("type"));
        name.m_sAllowed = Allowed(attributes, QString());
        names.push_back(name);
    }
    for (auto attribute = attributes.constBegin(); attribute != attributes.constEnd(); ++attribute) {
        if (IsOwnAttribute(attribute.key())) {
            names.push_back({ place + QLatin1String(place.isEmpty() ? "@" : "/@") + attribute.key(), attribute.value(),
                              Allowed(attributes, attribute.key()), QString(), QString(), name.m_sRepeated });
        }
    }
    // Further copies hold what the first one holds.
    QSet<QString> seen;
    for (QDomElement child = element.firstChildElement(); !child.isNull(); child = child.nextSiblingElement()) {
        if (!seen.contains(child.tagName())) {
            seen.insert(child.tagName());
            AddNames(run, child, name.m_sRepeated, names);
        }
    }
}

// The name by which an item finds it: its own, or an element's with its parent's where others are called alike.
QString ItemName(const Name &name, const QHash<QString, int> &counts)
{
    const QString own = name.m_sPlace.section(QLatin1Char('/'), -1);
    const bool isAttribute = own.startsWith(QLatin1Char('@'));
    return isAttribute ? own.mid(1) : counts.value(own) > 1 ? name.m_sPlace.section(QLatin1Char('/'), -2) : own;
}

} // namespace

QString Template(ReaderRun &run)
{
    QString text;
    for (dom::NodeWalk walk(run.GetRoot()); !walk.AtEnd(); walk.Next()) {
        const QDomElement element = walk.Node().toElement();
        const QString indent(walk.Depth() * 2, QLatin1Char(' '));
        const bool isLeaf = element.firstChildElement().isNull();
        text +=
            indent + StartTag(element) + QLatin1String(isLeaf ? "/>" : ">") + Remark(run, element) + QLatin1Char('\n');
        // The ends of the elements that are complete with this one.
        QDomElement ended = element;
        for (int depth = walk.Depth() - 1; isLeaf && depth >= 0 && ended.nextSiblingElement().isNull(); --depth) {
            ended = ended.parentNode().toElement();
            text += QLatin1String("%1</%2>\n").arg(QString(depth * 2, QLatin1Char(' ')), ended.tagName());
        }
    }
    return text;
}

std::vector<Name> Names(ReaderRun &run)
{
    std::vector<Name> names;
    if (!run.GetRoot().isNull()) {
        AddNames(run, run.GetRoot(), QString(), names);
    }
    return names;
}

QString NamesTable(const std::vector<Name> &names)
{
    QVector<QStringList> rows { { QStringLiteral("Place"), QStringLiteral("Type"), QStringLiteral("Allowed"),
                                  QStringLiteral("Occurs"), QStringLiteral("Choice") } };
    for (const Name &name : names) {
        rows.append({ name.m_sPlace, name.m_sType, name.m_sAllowed, name.m_sOccurs, name.m_sChoice });
    }
    QVector<int> widths(rows.first().size());
    for (const QStringList &row : std::as_const(rows)) {
        for (int column = 0; column < row.size(); ++column) {
            widths[column] = std::max(widths[column], int(row.at(column).size()));
        }
    }
    QString text;
    for (const QStringList &row : std::as_const(rows)) {
        QString line;
        for (int column = 0; column < row.size(); ++column) {
            line += row.at(column).leftJustified(widths[column] + 2);
        }
        text += line.trimmed() + QLatin1Char('\n');
    }
    return text;
}

QString NamesCode(const std::vector<Name> &names)
{
    QHash<QString, int> counts;
    for (const Name &name : names) {
        ++counts[name.m_sPlace.section(QLatin1Char('/'), -1)];
    }
    QString text;
    for (const Name &name : names) {
        // The unit comes with the item of its element.
        if (name.m_sPlace.endsWith(QLatin1String("@Unit"))) {
            continue;
        }
        const bool isContainer = name.m_sType.isEmpty() && !name.m_sPlace.contains(QLatin1Char('@'));
        text += isContainer ? QStringLiteral("control->AddReportContainer(\"%1\", 1);").arg(ItemName(name, counts))
            : name.m_sRepeated.isEmpty()
            ? QStringLiteral("control->AddReportData(\"%1\", \"\", \"\", 1, \"\", 0, \"\");")
                  .arg(ItemName(name, counts))
            : QStringLiteral("control->AddReportSource(\"%1\", [](const ReportPlace &place) { return "
                             "QVariant(place.GetIndex(\"%2\")); }, 1, \"\", 0, \"\");")
                  .arg(ItemName(name, counts), name.m_sRepeated);
        const QStringList remarks { name.m_sPlace + QLatin1Char(':'), name.m_sType, name.m_sAllowed, name.m_sOccurs };
        text += QLatin1String(" // ") + remarks.join(QLatin1Char(' ')).simplified() + QLatin1Char('\n');
    }
    return text;
}

} // namespace templateviews
