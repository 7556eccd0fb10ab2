#pragma once

#include "support/templates.h"

#include "dom/guardedreader.h"
#include "events/itagwright.h"
#include "schema/xmlschemahandler.h"

#include <QRegularExpression>

/// One run of the schema reader for a test, and its results as text that doesn't depend on the order of attributes.
class SchemaReading : public ITagwright
{
public:
    explicit SchemaReading(const QString &path)
        : m_oHandler(this, path)
    {
        m_oReader.setContentHandler(&m_oHandler);
        m_oReader.setErrorHandler(&m_oHandler);
    }

    void XmlUpdate(XmlEvent *) override { }

    QString Template() { return ToText(*m_oHandler.GetDocument()); }

    /// A table: "occurs" as `name:key=parent,parent;key=parent`, "choices" as `key=name`, "types" as `name:open
    /// references` with a `*` if used, "missing" as `name:count<owner>` with an `@` for the attribute form.
    QString Table(const QString &name)
    {
        MissingMap missing;
        OccursMap occurs;
        TypeMap types;
        ChoiceMap choices;
        m_oHandler.GetMaps(missing, occurs, types, choices);
        QStringList rows;
        for (const auto &[element, keys] : occurs) {
            QStringList entries;
            for (const auto &[key, parents] : keys) {
                const QStringList list(parents.begin(), parents.end());
                entries << QStringLiteral("%1=%2").arg(key).arg(list.join(QLatin1Char(',')));
            }
            rows << QStringLiteral("occurs %1:%2").arg(element, entries.join(QLatin1Char(';')));
        }
        for (const auto &[key, member] : choices) {
            rows << QStringLiteral("choices %1=%2").arg(key).arg(member);
        }
        for (const auto &[type, entry] : types) {
            const QLatin1String used(entry.m_bUsed ? "*" : "");
            rows << QStringLiteral("types %1:%2%3").arg(type).arg(entry.m_iOpenRefs).arg(used);
        }
        for (const auto &[type, counts] : missing) {
            for (const auto &[count, records] : counts) {
                for (const MissingElement &record : records) {
                    const QString owner = record.m_sOwner + QLatin1String(record.m_bAttribute ? ">@" : ">");
                    rows << QStringLiteral("missing %1:%2<%3").arg(type).arg(count).arg(owner);
                }
            }
        }
        return rows.filter(QRegularExpression(QLatin1Char('^') + name))
            .join(QLatin1Char(' '))
            .remove(name + QLatin1Char(' '));
    }

    XmlSchemaHandler m_oHandler;
    dom::GuardedReader m_oReader;
};
