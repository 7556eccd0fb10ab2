#pragma once

#include "events/itagwright.h"
#include "schema/xmlschemahandler.h"

#include <QFile>
#include <QStringList>
#include <QXmlInputSource>
#include <QXmlSimpleReader>

/// One run of the schema reader for a test, and its results as text that doesn't depend on the order of attributes.
class SchemaReading : public ITagwright
{
public:
    explicit SchemaReading(const QString &path = QStringLiteral("schema.xsd"))
        : m_oHandler(this, path)
    {
    }

    void XmlUpdate(XmlEvent *) override { }

    /// Reads the text, put between the tags of a schema element.
    bool Read(const QString &declarations)
    {
        return ReadDocument(QStringLiteral("<xs:schema xmlns:xs='x'>") + declarations + QStringLiteral("</xs:schema>"));
    }

    bool ReadDocument(const QString &text)
    {
        QXmlInputSource source;
        source.setData(text);
        return Parse(source);
    }

    bool ReadFile(const QString &path)
    {
        QFile file(path);
        QXmlInputSource source(&file);
        return Parse(source);
    }

    /// The template's elements: `name{attribute=value ...}(children)`, attributes sorted; `?` for the instruction.
    QString Template() { return Describe(*m_oHandler.GetDocument()); }

    /// The content of one declaration, in the same form.
    QString Declaration(const QString &name)
    {
        FetchMaps();
        return m_Types.count(name) == 0 ? QStringLiteral("none") : Describe(*m_Types[name].m_pFragment);
    }

    /// `name:key=parent,parent;key=parent`, in the order of the table.
    QString Occurs()
    {
        FetchMaps();
        QStringList rows;
        for (const auto &[name, keys] : m_Occurs) {
            QStringList entries;
            for (const auto &[key, parents] : keys) {
                const QStringList names(parents.begin(), parents.end());
                entries << QString::number(key) + QLatin1Char('=') + names.join(QLatin1Char(','));
            }
            rows << name + QLatin1Char(':') + entries.join(QLatin1Char(';'));
        }
        return rows.join(QLatin1Char(' '));
    }

    QString Choices()
    {
        FetchMaps();
        QStringList rows;
        for (const auto &[key, name] : m_Choices) {
            rows << QString::number(key) + QLatin1Char('=') + name;
        }
        return rows.join(QLatin1Char(' '));
    }

    /// `name:open references` of each type, with a `*` behind those that are used.
    QString Types()
    {
        FetchMaps();
        return DescribeTypes(m_Types);
    }

    static QString DescribeTypes(const TypeMap &types)
    {
        QStringList rows;
        for (const auto &[name, entry] : types) {
            rows << name + QLatin1Char(':') + QString::number(entry.m_iOpenRefs)
                    + (entry.m_bUsed ? QStringLiteral("*") : QString());
        }
        return rows.join(QLatin1Char(' '));
    }

    /// `name:count<owner>` of each waiting reference, `@` for the attribute form.
    QString Missing()
    {
        FetchMaps();
        QStringList rows;
        for (const auto &[name, counts] : m_Missing) {
            for (const auto &[count, records] : counts) {
                for (const MissingElement &record : records) {
                    rows << name + QLatin1Char(':') + QString::number(count) + QLatin1Char('<') + record.m_sOwner
                            + QLatin1Char('>') + (record.m_bAttribute ? QStringLiteral("@") : QString());
                }
            }
        }
        return rows.join(QLatin1Char(' '));
    }

    static QString Describe(const QDomNode &parent)
    {
        QStringList parts;
        for (QDomNode node = parent.firstChild(); !node.isNull(); node = node.nextSibling()) {
            parts << (node.isProcessingInstruction() ? QStringLiteral("?") : DescribeElement(node));
        }
        return parts.join(QLatin1Char(' '));
    }

    XmlSchemaHandler m_oHandler;

private:
    bool Parse(const QXmlInputSource &source)
    {
        QXmlSimpleReader reader;
        reader.setContentHandler(&m_oHandler);
        reader.setErrorHandler(&m_oHandler);
        return reader.parse(source);
    }

    void FetchMaps() { m_oHandler.GetMaps(m_Missing, m_Occurs, m_Types, m_Choices); }

    static QString DescribeElement(const QDomNode &node)
    {
        QStringList attributes;
        const QDomNamedNodeMap map = node.attributes();
        for (int i = 0; i < map.count(); ++i) {
            attributes << map.item(i).nodeName() + QLatin1Char('=') + map.item(i).nodeValue();
        }
        attributes.sort();
        QString text = node.nodeName();
        if (!attributes.isEmpty()) {
            text += QLatin1Char('{') + attributes.join(QLatin1Char(' ')) + QLatin1Char('}');
        }
        const QString children = Describe(node);
        return children.isEmpty() ? text : text + QLatin1Char('(') + children + QLatin1Char(')');
    }

    MissingMap m_Missing;
    OccursMap m_Occurs;
    TypeMap m_Types;
    ChoiceMap m_Choices;
};
