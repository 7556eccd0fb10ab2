// Where the template isn't what a plain reading of the schema gives: found by comparing both.

#include "plainreading.h"
#include "subject.h"

#include <algorithm>

namespace {

using Place = PlainReading::Place;

class TemplateComparison
{
public:
    TemplateComparison(const Subject &subject, Findings &findings)
        : m_oSubject(subject)
        , m_oModel(subject.m_oModel)
        , m_oPlain(subject.m_oModel)
        , m_oFindings(findings)
    {
    }

    void Compare();

private:
    struct Children
    {
        std::vector<Place> m_lExpected;
        std::vector<QDomElement> m_lActual;
    };

    QString NameOf(const Place &place) const { return m_oModel.At(place.m_iDeclaration).Get("name"); }
    void CompareElement(const Place &place, const QDomElement &actual);
    void CompareAttributes(const Place &place, const QDomElement &actual);
    void CompareDefault(const Place &place, const QDomElement &actual);
    void CompareLateAttribute(const Place &place, const QString &name);
    void CompareOrder(const Children &children);
    void CompareCounts(const Children &children, const QHash<QString, int> &surplus);
    void CompareCopies(const Place &place, const QDomElement &first, const QDomElement &copy);
    void CompareLateContent(const Place &place, const QDomElement &actual);
    void Descend(const Children &children);
    void AddOtherwise(int node, const QString &name, const QString &what);

    const Subject &m_oSubject;
    const SchemaModel &m_oModel;
    PlainReading m_oPlain;
    Findings &m_oFindings;
    // A difference that no check has explained, until all of them have spoken.
    int m_iOtherNode = -1;
    QStringList m_lOtherTexts;
};

void TemplateComparison::Compare()
{
    const QDomElement root = m_oSubject.m_oRun.GetRoot();
    const int declaration = m_oPlain.GlobalElement(root.tagName());
    if (declaration >= 0) {
        CompareElement({ declaration, declaration, 0 }, root);
    }
    if (m_iOtherNode >= 0 && !m_oFindings.HasShaping()) {
        m_oFindings.Add("otherwise", m_iOtherNode, m_lOtherTexts);
    }
}

void TemplateComparison::AddOtherwise(int node, const QString &name, const QString &what)
{
    if (m_iOtherNode < 0) {
        m_iOtherNode = node;
        m_lOtherTexts = QStringList { name, what };
    }
}

// The recursion ends at the greatest depth of a template.
void TemplateComparison::CompareElement(const Place &place, const QDomElement &actual)
{
    CompareAttributes(place, actual);
    CompareLateContent(place, actual);
    Children children;
    for (QDomElement child = actual.firstChildElement(); !child.isNull(); child = child.nextSiblingElement()) {
        children.m_lActual.push_back(child);
    }
    children.m_lExpected = m_oPlain.ChildrenOf(place.m_iDeclaration, static_cast<int>(children.m_lActual.size()) + 1);
    CompareOrder(children);
    Descend(children);
}

void TemplateComparison::CompareAttributes(const Place &place, const QDomElement &actual)
{
    const QMap<QString, QString> expected = m_oPlain.AttributesOf(place.m_iDeclaration);
    int found = 0;
    for (auto attribute = expected.constBegin(); attribute != expected.constEnd(); ++attribute) {
        const bool isEqual =
            actual.hasAttribute(attribute.key()) && actual.attribute(attribute.key()) == attribute.value();
        found += isEqual ? 1 : 0;
        if (!isEqual && attribute.key() == QLatin1String("default")) {
            CompareDefault(place, actual);
        }
        if (!isEqual && actual.attribute(attribute.key()).isEmpty()) {
            CompareLateAttribute(place, attribute.key());
        }
        if (!isEqual) {
            AddOtherwise(place.m_iSource, NameOf(place),
                         QLatin1String("the attribute \"%1\" of its template").arg(attribute.key()));
        }
    }
    if (found != actual.attributes().count()) {
        AddOtherwise(place.m_iSource, NameOf(place), QStringLiteral("its template has further attributes"));
    }
}

void TemplateComparison::CompareDefault(const Place &place, const QDomElement &actual)
{
    const SchemaNode &node = m_oModel.At(place.m_iDeclaration);
    if (actual.hasAttribute(QStringLiteral("default"))) {
        return;
    }
    if (node.m_bGlobal && m_oSubject.Waits(place.m_iDeclaration)) {
        m_oFindings.Add("late-default", place.m_iDeclaration, { NameOf(place), node.Get("type") });
    } else if (!node.m_bGlobal && place.m_iCopy > 0 && m_oSubject.Waits(place.m_iDeclaration)) {
        m_oFindings.Add("copies-default", place.m_iDeclaration, { NameOf(place) });
    }
}

// A reference to a global attribute that was read before its own type had come.
void TemplateComparison::CompareLateAttribute(const Place &place, const QString &name)
{
    const int type = m_oPlain.TypeOf(place.m_iDeclaration);
    for (int number = type; type >= 0 && number < m_oModel.At(type).m_iEnd; ++number) {
        const SchemaNode &node = m_oModel.At(number);
        const std::vector<int> &declarations = m_oSubject.Declarations(name);
        if (node.Is("attribute") && node.Get("ref") == name && !declarations.empty()
            && m_oSubject.Waits(declarations.back())) {
            m_oFindings.Add("late-content", number, { name, m_oModel.At(declarations.back()).Get("type") });
        }
    }
}

// A reference to a global element that was copied before its own type had come.
void TemplateComparison::CompareLateContent(const Place &place, const QDomElement &actual)
{
    const QString type = m_oModel.At(place.m_iDeclaration).Get("type");
    const bool isBare = actual.firstChildElement().isNull() && !actual.hasAttribute(QStringLiteral("type"));
    const bool holdsMore = m_oSubject.HasContent(type) || !m_oSubject.BuiltIn(type).isEmpty();
    if (place.m_iSource != place.m_iDeclaration && isBare && holdsMore && m_oSubject.Waits(place.m_iDeclaration)) {
        m_oFindings.Add("late-content", place.m_iSource, { NameOf(place), type });
    }
}

void TemplateComparison::CompareOrder(const Children &children)
{
    const auto &expected = children.m_lExpected;
    const auto &actual = children.m_lActual;
    QHash<QString, int> surplus;
    std::size_t same = 0;
    for (const QDomElement &child : actual) {
        ++surplus[child.tagName()];
    }
    for (const Place &place : expected) {
        --surplus[NameOf(place)];
    }
    while (same < expected.size() && same < actual.size() && NameOf(expected[same]) == actual[same].tagName()) {
        ++same;
    }
    if (same == expected.size() && same == actual.size()) {
        return;
    }
    CompareCounts(children, surplus);
    const bool isReordered = std::all_of(surplus.begin(), surplus.end(), [](int count) { return count == 0; });
    if (!isReordered || same >= expected.size()) {
        return;
    }
    // The first of a row that isn't where it should be has either gone itself, or something has come ahead of it.
    const Place &place = expected[same];
    const bool isFirst = same == 0 && m_oModel.At(place.m_iSource).Has("ref");
    m_oFindings.Add(isFirst ? "first-ref" : "ref-order", place.m_iSource, { NameOf(place) });
}

void TemplateComparison::CompareCounts(const Children &children, const QHash<QString, int> &surplus)
{
    for (const Place &place : children.m_lExpected) {
        const int count = surplus.value(NameOf(place));
        const SchemaNode &source = m_oModel.At(place.m_iSource);
        if (count < 0 && place.m_iCopy == 1 && m_oSubject.Waits(place.m_iSource)) {
            const int copies = source.MinOccurs();
            m_oFindings.Add("copies-missing", place.m_iSource,
                            { NameOf(place), QString::number(std::max(0, copies + count)), QString::number(copies) });
        } else if (count != 0) {
            AddOtherwise(place.m_iSource, NameOf(place), QLatin1String("it doesn't stand as often as it should"));
        }
    }
    if (children.m_lActual.size() > children.m_lExpected.size() && !children.m_lExpected.empty()) {
        const Place &place = children.m_lExpected.front();
        AddOtherwise(place.m_iSource, NameOf(place),
                     QStringLiteral("there are elements beside it that should be elsewhere"));
    }
}

void TemplateComparison::CompareCopies(const Place &place, const QDomElement &first, const QDomElement &copy)
{
    QDomElement one = first.firstChildElement();
    QDomElement other = copy.firstChildElement();
    while (!one.isNull() && !other.isNull() && one.tagName() == other.tagName()) {
        one = one.nextSiblingElement();
        other = other.nextSiblingElement();
    }
    const bool isSameType = first.attribute(QStringLiteral("type")) == copy.attribute(QStringLiteral("type"));
    if ((!one.isNull() || !other.isNull() || !isSameType) && m_oSubject.Waits(place.m_iSource)) {
        m_oFindings.Add("copies-content", place.m_iSource, { NameOf(place) });
    }
}

// Pairs what is expected with what is there, by name.
void TemplateComparison::Descend(const Children &children)
{
    QHash<QString, std::vector<QDomElement>> byName;
    QHash<QString, std::size_t> used;
    for (const QDomElement &child : children.m_lActual) {
        byName[child.tagName()].push_back(child);
    }
    QDomElement first;
    for (const Place &place : children.m_lExpected) {
        const QString name = NameOf(place);
        const auto found = byName.constFind(name);
        if (found == byName.constEnd() || used[name] >= found->size()) {
            AddOtherwise(place.m_iSource, name, QLatin1String("it isn't there"));
            continue;
        }
        const QDomElement actual = (*found)[used[name]++];
        first = place.m_iCopy == 0 ? actual : first;
        if (place.m_iCopy > 0) {
            CompareCopies(place, first, actual);
        }
        CompareElement(place, actual);
    }
}

// The further copies of an element are kept under its name until its type is there.
void CheckReplaced(const Subject &subject, Findings &findings)
{
    const SchemaModel &model = subject.m_oModel;
    for (int number = 0; number < model.Count(); ++number) {
        const SchemaNode &node = model.At(number);
        if (!node.IsLocalElement() || node.MinOccurs() < 2 || !subject.Waits(number)) {
            continue;
        }
        const std::vector<int> &others = subject.Declarations(node.Get("name"));
        if (!others.empty()) {
            findings.Add("copies-replace", number, { node.Get("name"), model.Place(others.back()) });
        }
    }
}

} // namespace

void CheckTemplate(const Subject &subject, Findings &findings)
{
    CheckReplaced(subject, findings);
    if (subject.m_oRun.HasTemplate()) {
        TemplateComparison(subject, findings).Compare();
    }
}
