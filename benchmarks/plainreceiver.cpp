#include "plainreceiver.h"

#include "events/xmlevent.h"

PlainReceiver::PlainReceiver(int repeats, int fillers)
    : m_iRepeats(repeats)
{
    for (const auto *fields : { &workload::ReportFields(), &workload::SettingsFields(), &workload::SignalFields() }) {
        for (const workload::Field &field : *fields) {
            Add(QString::fromUtf8(field.name), field);
        }
    }
    for (int i = 0; i < fillers; ++i) {
        Add(QString::fromStdString(workload::FillerName(i)), workload::FillerField(i));
    }
}

bool PlainReceiver::MakeReport(const QString &schemaPath, const QString &reportPath, bool validOutput)
{
    XmlCreateReport report(this);
    report.SetValidOutput(validOutput);
    m_pReport = &report;
    const bool isRead = report.CreateXmlFromSchema(schemaPath, reportPath, false);
    m_pReport = nullptr;
    return isRead;
}

void PlainReceiver::XmlUpdate(XmlEvent *event)
{
    if (event->GetType() != XmlEvent::EVENT_ELEM_BEGIN) {
        return;
    }
    const QString name = static_cast<ElemBeginEvent *>(event)->GetElementName();
    if (m_iRepeats > 0 && name == QLatin1String("Signal")) {
        m_pReport->SetElementMaxOccurs(name, m_iRepeats);
        return;
    }
    const auto found = m_hValues.constFind(name);
    if (found != m_hValues.constEnd()) {
        SetValue(*found);
    }
}

void PlainReceiver::Add(const QString &name, const workload::Field &field)
{
    Value value;
    value.m_eKind = field.kind;
    value.m_sText = QString::fromUtf8(field.text);
    value.m_dNumber = value.m_sText.toDouble();
    value.m_tTime = QDateTime::fromString(value.m_sText, Qt::ISODate);
    m_hValues.insert(name, value);
}

void PlainReceiver::SetValue(const Value &value)
{
    switch (value.m_eKind) {
    case workload::Kind::Text:
        m_pReport->SetXmlValue(value.m_sText);
        break;
    case workload::Kind::Number:
        m_pReport->SetXmlValue(value.m_dNumber);
        break;
    case workload::Kind::Integer:
        m_pReport->SetXmlValue(static_cast<int>(value.m_dNumber));
        break;
    case workload::Kind::Time:
        m_pReport->SetXmlValue(value.m_tTime);
        break;
    }
}
