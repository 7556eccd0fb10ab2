#pragma once

#include "workload.h"

#include "events/itagwright.h"
#include "report/xmlcreatereport.h"

#include <QDateTime>
#include <QHash>
#include <QString>

/// A host that answers each element with its value and multiplies the Signal, and does nothing else.
class PlainReceiver : public ITagwright
{
public:
    /// `repeats` 0: the Signal is left as often as the schema has it.
    explicit PlainReceiver(int repeats, int fillers = 0);

    /// Makes the report; false if the schema can't be read. A receiver serves any number of reports.
    bool MakeReport(const QString &schemaPath, const QString &reportPath, bool validOutput = false);

    void XmlUpdate(XmlEvent *event) override;

private:
    struct Value
    {
        workload::Kind m_eKind = workload::Kind::Text;
        QString m_sText;
        double m_dNumber = 0.0;
        QDateTime m_tTime;
    };

    void Add(const QString &name, const workload::Field &field);
    void SetValue(const Value &value);

    QHash<QString, Value> m_hValues;
    int m_iRepeats;
    /// The builder of the running report; not owned.
    XmlCreateReport *m_pReport = nullptr;
};
