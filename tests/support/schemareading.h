#pragma once

#include "support/templates.h"

#include "dom/guardedreader.h"
#include "events/itagwright.h"
#include "schema/xmlschemahandler.h"

/// One run of the schema reader for a test, and its results as text that doesn't depend on the order of attributes.
class SchemaReading : public ITagwright
{
public:
    explicit SchemaReading(const QString &path = QStringLiteral("schema.xsd"))
        : m_oHandler(this, path)
    {
        m_oReader.setContentHandler(&m_oHandler);
        m_oReader.setErrorHandler(&m_oHandler);
    }

    void XmlUpdate(XmlEvent *) override { }

    /// Reads declarations, which are put between the tags of a schema element.
    bool Read(const QString &declarations)
    {
        return m_oReader.ReadText(QStringLiteral("<xs:schema>") + declarations + QStringLiteral("</xs:schema>"));
    }

    QString Template() { return ToText(*m_oHandler.GetDocument()); }

    /// A table: "occurs" as `name:key=parent,parent;key=parent`, "choices" as `key=name`, "types" as `name:open
    /// references` with a `*` if used, "missing" as `name:count<owner>` with an `@` for the attribute form.
    QString Table(const QString &name)
    {
        m_oHandler.GetMaps(m_Missing, m_Occurs, m_Types, m_Choices);
        QStringList rows;
        if (name == QLatin1String("occurs")) {
            AddOccurs(rows);
        } else if (name == QLatin1String("choices")) {
            for (const auto &[key, member] : m_Choices) {
                rows << QString::number(key) + QLatin1Char('=') + member;
            }
        } else if (name == QLatin1String("types")) {
            for (const auto &[type, entry] : m_Types) {
                rows << QStringLiteral("%1:%2%3")
                            .arg(type)
                            .arg(entry.m_iOpenRefs)
                            .arg(QLatin1String(entry.m_bUsed ? "*" : ""));
            }
        } else {
            AddMissing(rows);
        }
        return rows.join(QLatin1Char(' '));
    }

    XmlSchemaHandler m_oHandler;
    dom::GuardedReader m_oReader;

private:
    void AddOccurs(QStringList &rows)
    {
        for (const auto &[name, keys] : m_Occurs) {
            QStringList entries;
            for (const auto &[key, parents] : keys) {
                const QStringList names(parents.begin(), parents.end());
                entries << QString::number(key) + QLatin1Char('=') + names.join(QLatin1Char(','));
            }
            rows << name + QLatin1Char(':') + entries.join(QLatin1Char(';'));
        }
    }

    void AddMissing(QStringList &rows)
    {
        for (const auto &[name, counts] : m_Missing) {
            for (const auto &[count, records] : counts) {
                for (const MissingElement &record : records) {
                    rows << QStringLiteral("%1:%2<%3>%4")
                                .arg(name)
                                .arg(count)
                                .arg(record.m_sOwner, QLatin1String(record.m_bAttribute ? "@" : ""));
                }
            }
        }
    }

    MissingMap m_Missing;
    OccursMap m_Occurs;
    TypeMap m_Types;
    ChoiceMap m_Choices;
};
