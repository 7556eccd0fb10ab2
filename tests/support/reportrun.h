#pragma once

#include "support/files.h"
#include "support/schematext.h"
#include "support/scriptedreceiver.h"
#include "support/templates.h"

#include "report/xmlcreatereport.h"

#include <QTemporaryDir>

/// One report: the content of a schema's root tag, as Expanded() takes it, goes to a file, a scripted receiver fills
/// the report, and what came out is read back.
class ReportRun
{
public:
    ScriptedReceiver m_oReceiver;
    XmlCreateReport m_oReport { &m_oReceiver };

    bool Run(const QString &declarations)
    {
        return m_oReport.CreateXmlFromSchema(WriteFile(SchemaPath(), SchemaText(declarations)), ReportPath(), false);
    }

    /// Has the receiver obey orders, with blanks between them, at each announcement of their element: "v=s:x" a value
    /// (s, i, d, b or t before it), "v@A=s:x" an attribute's, "v@A!" none of that name, "v[1]=s:x" one of the second v,
    /// "v:3" copies, "v-" to be discarded, "v+" to be kept.
    void Follow(const QString &orders)
    {
        m_oReceiver.m_fnElement = [this, orders](ElemBeginEvent &event) {
            for (const QString &order : orders.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
                Obey(event.GetElementName(), order);
            }
        };
    }

    QString SchemaPath() const { return m_oDir.filePath(QStringLiteral("schema.xsd")); }
    QString ReportPath() const { return m_oDir.filePath(QStringLiteral("report.xml")); }

    QByteArray Bytes() const { return FileBytes(ReportPath()); }
    QString Report() const { return ReportText(Bytes()); }

private:
    void Obey(const QString &element, const QString &order)
    {
        static const QRegularExpression form(
            QStringLiteral("^(\\w+)(?:\\[(\\d+)\\])?(?:@(\\w+))?(?:=(\\w):|([-+:!]))(.*)$"));
        const QRegularExpressionMatch match = form.match(order);
        const QString value = match.captured(6);
        const QTime time = QTime::fromString(value, Qt::ISODate);
        const bool isAny = match.captured(2).isEmpty();
        if (match.captured(1) != element || (!isAny && match.captured(2).toInt() != m_oReport.GetPlace().GetIndex())) {
            return;
        }
        const QString attribute = match.captured(3);
        const auto give = [this, &attribute](auto given) {
            return attribute.isEmpty() ? m_oReport.SetXmlValue(given) : m_oReport.SetAttributeValue(attribute, given);
        };
        switch ((match.captured(4) + match.captured(5)).at(0).toLatin1()) {
        case 's':
            return give(value);
        case 'i':
            return give(value.toInt());
        case 'd':
            return give(value.toDouble());
        case 'b':
            return m_oReport.SetXmlValue(value == QLatin1String("true"));
        case 't':
            return time.isValid() ? m_oReport.SetXmlValue(time) : give(QDateTime::fromString(value, Qt::ISODate));
        case '!':
            return m_oReport.RemoveAttribute(attribute);
        case ':':
            return m_oReport.SetElementMaxOccurs(element, value.toInt());
        case '+':
            return m_oReport.KeepCurrentElement();
        default:
            return m_oReport.DiscardChoiceItem();
        }
    }

    QTemporaryDir m_oDir;
};
