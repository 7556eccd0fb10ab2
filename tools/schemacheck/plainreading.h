#pragma once

#include "schemamodel.h"

#include <QMap>

/// What a schema's declarations say, by a plain reading of XSD: names in their own spaces, wherever they are declared.
class PlainReading
{
public:
    /// An element that stands in a document.
    struct Place
    {
        /// The tag that puts it there: an element with a name, or a reference.
        int m_iSource = 0;
        /// The element with the name.
        int m_iDeclaration = 0;
        /// 0 for the first of several copies.
        int m_iCopy = 0;
    };

    explicit PlainReading(const SchemaModel &model);

    /// The last global element of that name, -1 if there is none.
    int GlobalElement(const QString &name) const { return m_hElements.value(name, -1); }
    /// The children of an element, in order, each as often as its minOccurs says, and once for 0; of one tag at most
    /// so many copies.
    std::vector<Place> ChildrenOf(int element, int mostCopies) const;
    /// The attributes that the template's element gets: type, default, facets, and its own with their types.
    QMap<QString, QString> AttributesOf(int element) const;
    /// The type of an element or a global attribute, inside it or by name; -1 for a built-in one.
    int TypeOf(int node) const;

private:
    int FindType(const QString &name) const;
    void AddContent(int type, std::vector<Place> &places, int mostCopies, int level) const;
    void AddParticles(int node, std::vector<Place> &places, int mostCopies, int level) const;
    void AddParticle(int node, std::vector<Place> &places, int mostCopies, int level) const;
    void AddCopies(int element, std::vector<Place> &places, int mostCopies) const;
    void AddValue(const QString &typeName, int type, QMap<QString, QString> &attributes, int level) const;
    void AddFacets(int restriction, QMap<QString, QString> &attributes) const;
    void AddAttributes(int type, QMap<QString, QString> &attributes, int level) const;
    void AddReferred(const QString &name, QMap<QString, QString> &attributes) const;

    const SchemaModel &m_oModel;
    QHash<QString, int> m_hElements;
    QHash<QString, int> m_hAttributes;
    QHash<QString, int> m_hTypes;
    QHash<QString, int> m_hGroups;
};
