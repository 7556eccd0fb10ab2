#include "support/deepdocument.h"

#include "dom/nodesearch.h"

#include <QRandomGenerator>
#include <QtTest>

using dom::SearchRoots;

namespace {

/// The search as it is defined, by recursion.
QDomNode RecursiveFirst(const QString &name, const QDomElement &element, const QDomNode &top)
{
    if (element.tagName() == name) {
        return top;
    }
    QDomNode last;
    for (QDomNode child = element.firstChild(); !child.isNull(); child = child.nextSibling()) {
        if (child.nodeName() == name) {
            return child;
        }
        if (child.isElement()) {
            last = RecursiveFirst(name, child.toElement(), top);
            if (last.isElement()) {
                return last;
            }
        }
    }
    return last.isElement() ? last : QDomNode();
}

void RecursiveAll(const QString &name, const QDomElement &element, const QDomNode &top, std::list<QDomNode> &result)
{
    if (element.tagName() == name) {
        result.push_back(top);
    }
    for (QDomNode child = element.firstChild(); !child.isNull(); child = child.nextSibling()) {
        if (child.nodeName() == name) {
            result.push_back(child);
        } else if (child.isElement()) {
            RecursiveAll(name, child.toElement(), top, result);
        }
    }
}

std::list<QDomNode> RecursiveBelow(const QString &name, const QString &parent, const SearchRoots &roots)
{
    std::list<QDomNode> result;
    const QDomNode start =
        parent.isEmpty() ? QDomNode(roots.m_oStart) : RecursiveFirst(parent, roots.m_oStart, roots.m_oTop);
    if (parent.isEmpty() || start.isElement()) {
        RecursiveAll(name, start.toElement(), roots.m_oTop, result);
    }
    return result;
}

const QStringList kNames { QStringLiteral("a"),
                           QStringLiteral("b"),
                           QStringLiteral("c"),
                           QStringLiteral("p:a"),
                           QStringLiteral("#text"),
                           QStringLiteral("#comment"),
                           QString() };

/// A random node, with names few enough that elements, instructions and references often share one.
QDomNode RandomNode(QDomDocument &document, QRandomGenerator &random)
{
    const QString &name = kNames.at(random.bounded(3));
    switch (random.bounded(12)) {
    case 0:
        return document.createTextNode(name);
    case 1:
        return document.createComment(name);
    case 2:
        return document.createProcessingInstruction(name, name);
    case 3:
        return document.createEntityReference(name);
    case 4:
    case 5:
        return document.createElementNS(QStringLiteral("urn:p"), QStringLiteral("p:") + name);
    default:
        return document.createElement(name);
    }
}

QDomDocument RandomDocument(QRandomGenerator &random)
{
    QDomDocument document;
    QList<QDomElement> elements { document.createElement(kNames.at(random.bounded(3))) };
    document.appendChild(elements.first());
    for (int count = random.bounded(25); count > 0; --count) {
        const QDomNode node = RandomNode(document, random);
        elements[random.bounded(elements.size())].appendChild(node);
        if (node.isElement()) {
            elements.append(node.toElement());
        }
    }
    if (random.bounded(4) == 0) {
        document.appendChild(document.createComment(QStringLiteral("behind the root")));
    }
    return document;
}

} // namespace

class TstNodeSearch : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void equalsTheRecursiveSearch();
    void searchesAnyDepth();
};

void TstNodeSearch::equalsTheRecursiveSearch()
{
    QRandomGenerator random(4711);
    int found = 0;
    for (int round = 0; round < 1500; ++round) {
        const QDomDocument document = RandomDocument(random);
        const SearchRoots roots = dom::DocumentRoots(document);
        for (const QString &name : kNames) {
            for (const QString &parent : kNames) {
                std::list<QDomNode> result;
                dom::FindBelow(name, parent, roots, result);
                QVERIFY2(result == RecursiveBelow(name, parent, roots),
                         qPrintable(name + QLatin1Char('<') + parent + document.toString()));
                found += static_cast<int>(result.size());
            }
        }
    }
    QVERIFY(found > 20000);
    std::list<QDomNode> result;
    dom::FindBelow(QString(), QString(), SearchRoots(), result);
    QVERIFY(result.empty());
}

void TstNodeSearch::searchesAnyDepth()
{
    QDomDocument document;
    QDomElement root = document.createElement(QStringLiteral("r"));
    document.appendChild(root);
    const QDomElement innermost = document.createElement(QStringLiteral("x"));
    const QDomElement chain = MakeChain(document, innermost, 200000);
    root.appendChild(chain);
    root.appendChild(document.createElement(QStringLiteral("x")));

    std::list<QDomNode> result;
    dom::FindAll(QStringLiteral("x"), dom::DocumentRoots(document), result);
    QCOMPARE(result.size(), std::size_t(2));
    QVERIFY(result.front() == innermost);
    QVERIFY(dom::FindFirst(QStringLiteral("x"), dom::DocumentRoots(document)) == innermost);
    DismantleChain(chain);
}

QTEST_GUILESS_MAIN(TstNodeSearch)
#include "tst_nodesearch.moc"
