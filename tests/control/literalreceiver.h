#pragma once

#include "control/reportdata.h"
#include "events/itagwright.h"
#include "events/xmlevent.h"
#include "report/xmlcreatereport.h"

#include <cmath>
#include <vector>

/// How an element gets its values, told item by item over the whole list. What the control does with its index is held
/// against it.
class LiteralReceiver : public ITagwright
{
public:
    std::vector<ReportData> m_lItems;
    bool m_bDeleteAfterUse = false;

    void Delete(const QString &name)
    {
        for (auto item = m_lItems.begin(); item != m_lItems.end();) {
            item = item->GetName() == name ? m_lItems.erase(item) : item + 1;
        }
    }

    bool MakeReport(const QString &schema, const QString &report)
    {
        XmlCreateReport builder(this);
        m_pReport = &builder;
        const bool isRead = builder.CreateXmlFromSchema(schema, report, false);
        m_pReport = nullptr;
        return isRead;
    }

    void XmlUpdate(XmlEvent *event) override
    {
        if (event->GetType() == XmlEvent::EVENT_ELEM_BEGIN) {
            Handle(*static_cast<ElemBeginEvent *>(event));
        } else if (event->GetType() == XmlEvent::EVENT_ERROR) {
            Handle(static_cast<ErrorEvent *>(event)->GetErrorID());
        }
    }

private:
    static bool IsTime(const QString &name)
    {
        return name == QLatin1String("DateTime") || name == QLatin1String("DFDateTime");
    }

    bool Number(int i)
    {
        const ExplicitReportData data = m_lItems[i].GetExplicitData();
        if (data.m_Kind != EXPLICIT_DOUBLE) {
            return m_lItems[i].GetDataValue(m_dNumber);
        }
        m_dNumber = data.m_dNumber / std::pow(10.0, m_lItems[i].GetExponent());
        return true;
    }

    QString Text(int i)
    {
        const ExplicitReportData data = m_lItems[i].GetExplicitData();
        QString text = data.m_sText;
        if (data.m_Kind == EXPLICIT_DOUBLE) {
            text.setNum(data.m_dNumber / std::pow(10.0, m_lItems[i].GetExponent()), 'g', 12);
        } else if (data.m_Kind != EXPLICIT_STRING) {
            m_lItems[i].GetDataValue(text);
        }
        return text;
    }

    void Handle(ElemBeginEvent &event)
    {
        const QString name = event.GetElementName();
        const QXmlAttributes attributes = event.GetElementAttributes();
        bool unitWanted = false;
        bool pathMatched = false;
        QString unit;
        QString lastName;
        for (int i = 0, count = static_cast<int>(m_lItems.size()); i < count; ++i) {
            lastName = m_lItems[i].GetName();
            const int p = lastName.indexOf(QLatin1Char('/'));
            pathMatched = p >= 1 && lastName.left(p) == event.GetElementNode().parentNode().nodeName()
                && lastName.mid(p + 1) == event.GetElementNode().nodeName();
            if (lastName != name && !pathMatched) {
                PassAttributes(i, attributes);
                continue;
            }
            unit = m_lItems[i].GetUnit();
            unitWanted = unitWanted || !unit.isEmpty();
            if (Serve(i, name, attributes)) {
                break;
            }
        }
        if (m_bWritten && unitWanted && !attributes.value(QStringLiteral("Unit")).isEmpty()) {
            m_pReport->SetAttributeValue(QStringLiteral("Unit"), unit);
        }
        if (m_bWritten && m_bDeleteAfterUse) {
            Delete(pathMatched ? lastName : name);
        }
        m_bWritten = false;
        if (IsTime(name)) {
            m_pReport->SetXmlValue(QDateTime::currentDateTime());
        }
    }

    void PassAttributes(int i, const QXmlAttributes &attributes)
    {
        for (int a = 0; a < attributes.count(); ++a) {
            m_sAttribute = attributes.qName(a);
            const bool isDefault = m_sAttribute == QLatin1String("default") && m_sAttribute != m_lItems[i].GetName();
            if (!isDefault && PassAttribute(i)) {
                return;
            }
        }
    }

    bool Serve(int i, const QString &name, const QXmlAttributes &attributes)
    {
        if (m_lItems[i].GetMaxOccurs() > 1) {
            m_pReport->SetElementMaxOccurs(name, m_lItems[i].GetMaxOccurs());
        }
        const ExplicitReportData data = m_lItems[i].GetExplicitData();
        m_iIndex = i;
        if (data.m_Kind == EXPLICIT_BOOL) {
            m_pReport->SetXmlValue(data.m_bFlag);
        } else if (data.m_Kind == EXPLICIT_LONG && data.m_lValue == static_cast<int>(data.m_lValue)) {
            m_pReport->SetXmlValue(static_cast<int>(data.m_lValue));
        }
        if (data.m_Kind == EXPLICIT_BOOL || data.m_Kind == EXPLICIT_LONG) {
            HandleAttributes(attributes);
        }
        const bool isServed = !m_bWritten;
        if (isServed && Number(i)) {
            m_pReport->SetXmlValue(m_dNumber);
        } else if (isServed) {
            m_pReport->SetXmlValue(Text(i));
        }
        m_iIndex = -100;
        if (isServed) {
            HandleAttributes(attributes);
        }
        return isServed;
    }

    void HandleAttributes(const QXmlAttributes &attributes)
    {
        m_bWritten = true;
        for (int a = 0; a < attributes.count(); ++a) {
            m_sAttribute = attributes.qName(a);
            for (int i = 0; i < static_cast<int>(m_lItems.size()) && !PassAttribute(i); ++i) { }
        }
    }

    bool PassAttribute(int i)
    {
        if (m_lItems[i].GetName() == m_sAttribute) {
            SetAttribute(i);
        } else if (IsTime(m_sAttribute)) {
            m_pReport->SetAttributeValue(m_sAttribute, QDateTime::currentDateTime());
        } else if (m_sAttribute == QLatin1String("default")) {
            m_pReport->RemoveAttribute(m_sAttribute);
        } else {
            return false;
        }
        m_bWritten = true;
        return true;
    }

    void SetAttribute(int i)
    {
        m_iIndex = i;
        m_bAttribute = true;
        if (Number(i)) {
            m_pReport->SetAttributeValue(m_sAttribute, m_dNumber);
        } else {
            m_pReport->SetAttributeValue(m_sAttribute, Text(i));
        }
        m_bAttribute = false;
        m_iIndex = -100;
        m_bWritten = true;
    }

    void Handle(ITagwright::ErrorID id)
    {
        const bool fits = m_dNumber > -2147483649.0 && m_dNumber < 2147483648.0;
        if (id == CURRENT_TYPE_IS_NOT_DOUBLE && fits) {
            Retry(static_cast<int>(m_dNumber));
        } else if ((id == CURRENT_TYPE_IS_NOT_INTEGER || id == CURRENT_TYPE_IS_NOT_DOUBLE) && m_iIndex != -100) {
            Retry(Text(m_iIndex));
        } else if (id == CURRENT_TYPE_IS_NOT_STRING && m_iIndex != -100) {
            Retry(QDateTime::fromString(Text(m_iIndex), Qt::ISODate));
        }
    }

    template <typename Value>
    void Retry(Value value)
    {
        m_bWritten = true;
        if (m_bAttribute) {
            m_pReport->SetAttributeValue(m_sAttribute, value);
        } else {
            m_pReport->SetXmlValue(value);
        }
    }

    XmlCreateReport *m_pReport = nullptr;
    bool m_bWritten = false;
    bool m_bAttribute = false;
    int m_iIndex = -100;
    double m_dNumber = 65535.0;
    QString m_sAttribute;
};
