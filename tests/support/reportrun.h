#pragma once

#include "support/scriptedreceiver.h"
#include "support/templates.h"

#include "report/xmlcreatereport.h"

#include <QFile>
#include <QTemporaryDir>

/// One report: the content of a schema's root tag goes to a file, a scripted receiver fills the report, and what came
/// out is read back.
class ReportRun
{
public:
    ScriptedReceiver m_oReceiver;
    XmlCreateReport m_oReport { &m_oReceiver };

    bool Run(const QString &declarations)
    {
        QFile schema(SchemaPath());
        return schema.open(QIODevice::WriteOnly)
            && schema.write(QStringLiteral("<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema'>%1</xs:schema>")
                                .arg(declarations)
                                .toUtf8())
            > 0
            && schema.flush() && m_oReport.CreateXmlFromSchema(SchemaPath(), ReportPath(), false);
    }

    QString SchemaPath() const { return m_oDir.filePath(QStringLiteral("schema.xsd")); }
    QString ReportPath() const { return m_oDir.filePath(QStringLiteral("report.xml")); }

    QByteArray Bytes() const
    {
        QFile file(ReportPath());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    QString Report() const { return ReportText(Bytes()); }

private:
    QTemporaryDir m_oDir;
};

/// A global element "R" with an anonymous complex type that holds `content`.
inline QString RootElement(const QString &content)
{
    return QStringLiteral("<xs:element name='R'><xs:complexType><xs:sequence>%1</xs:sequence></xs:complexType>"
                          "</xs:element>")
        .arg(content);
}
