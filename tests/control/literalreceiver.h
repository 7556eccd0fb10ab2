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
    explicit LiteralReceiver(bool deleteAfterUse)
        : m_bDeleteAfterUse(deleteAfterUse)
    {
    }

    void Add(ReportData item, const ExplicitReportData &data)
    {
        item.SetExplicitData(data);
        m_lItems.push_back(item);
    }
    void Delete(const QString &name)
    {
        for (size_t i = 0; i < m_lItems.size();) {
            if (m_lItems[i].GetName() == name) {
                m_lItems.erase(m_lItems.begin() + static_cast<std::ptrdiff_t>(i));
            } else {
                ++i;
            }
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

    bool Number(size_t i)
    {
        const ExplicitReportData data = m_lItems[i].GetExplicitData();
        if (data.m_Kind != EXPLICIT_DOUBLE) {
            return m_lItems[i].GetDataValue(m_dNumber);
        }
        m_dNumber = data.m_dNumber / std::pow(10.0, m_lItems[i].GetExponent());
        return true;
    }
    QString Text(size_t i)
    {
        const ExplicitReportData data = m_lItems[i].GetExplicitData();
        QString text;
        if (data.m_Kind == EXPLICIT_STRING) {
            return data.m_sText;
        }
        if (data.m_Kind == EXPLICIT_DOUBLE) {
            return text.setNum(data.m_dNumber / std::pow(10.0, m_lItems[i].GetExponent()), 'g', 12);
        }
        m_lItems[i].GetDataValue(text);
        return text;
    }

    void Handle(ElemBeginEvent &event)
    {
        const QString name = event.GetElementName();
        const QXmlAttributes attributes = event.GetElementAttributes();
        const size_t count = m_lItems.size();
        bool unitWanted = false;
        bool pathMatched = false;
        QString unit;
        QString lastName;
        for (size_t i = 0; i < count; ++i) {
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
        if (m_bWritten) {
            if (unitWanted && !attributes.value(QStringLiteral("Unit")).isEmpty()) {
                m_pReport->SetAttributeValue(QStringLiteral("Unit"), unit);
            }
            if (m_bDeleteAfterUse) {
                Delete(pathMatched ? lastName : name);
            }
            m_bWritten = false;
        }
        if (IsTime(name)) {
            m_pReport->SetXmlValue(QDateTime::currentDateTime());
        }
    }

    void PassAttributes(size_t i, const QXmlAttributes &attributes)
    {
        for (int a = 0; a < attributes.count(); ++a) {
            m_sAttribute = attributes.qName(a);
            if (m_sAttribute == m_lItems[i].GetName()) {
                SetAttribute(i);
                return;
            }
            if (IsTime(m_sAttribute)) {
                m_pReport->SetAttributeValue(m_sAttribute, QDateTime::currentDateTime());
                m_bWritten = true;
                return;
            }
        }
    }

    bool Serve(size_t i, const QString &name, const QXmlAttributes &attributes)
    {
        if (m_lItems[i].GetMaxOccurs() > 1) {
            m_pReport->SetElementMaxOccurs(name, m_lItems[i].GetMaxOccurs());
        }
        const ExplicitReportData data = m_lItems[i].GetExplicitData();
        m_iIndex = static_cast<int>(i);
        if (data.m_Kind == EXPLICIT_BOOL || data.m_Kind == EXPLICIT_LONG) {
            if (data.m_Kind == EXPLICIT_BOOL) {
                m_pReport->SetXmlValue(data.m_bFlag);
            } else if (data.m_lValue == static_cast<int>(data.m_lValue)) {
                m_pReport->SetXmlValue(static_cast<int>(data.m_lValue));
            }
            m_bWritten = true;
            PassAllAttributes(attributes);
        }
        if (m_bWritten) {
            m_iIndex = -100;
            return false;
        }
        if (Number(i)) {
            m_pReport->SetXmlValue(m_dNumber);
            m_dNumber = 65535.0;
        } else {
            m_pReport->SetXmlValue(Text(i));
        }
        m_iIndex = -100;
        m_bWritten = true;
        PassAllAttributes(attributes);
        return true;
    }

    void PassAllAttributes(const QXmlAttributes &attributes)
    {
        for (int a = 0; a < attributes.count(); ++a) {
            m_sAttribute = attributes.qName(a);
            for (size_t i = 0; i < m_lItems.size() && !PassAttribute(i); ++i) { }
        }
    }

    bool PassAttribute(size_t i)
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

    void SetAttribute(size_t i)
    {
        const int outer = m_iIndex;
        m_iIndex = static_cast<int>(i);
        m_bAttribute = true;
        if (Number(i)) {
            m_pReport->SetAttributeValue(m_sAttribute, m_dNumber);
            m_dNumber = 65535.0;
        } else {
            m_pReport->SetAttributeValue(m_sAttribute, Text(i));
        }
        m_bAttribute = false;
        m_iIndex = outer;
        m_bWritten = true;
    }

    void Handle(ITagwright::ErrorID id)
    {
        const bool fits = m_dNumber > -2147483649.0 && m_dNumber < 2147483648.0;
        if (id == CURRENT_TYPE_IS_NOT_DOUBLE && fits) {
            Retry(static_cast<int>(m_dNumber));
        } else if ((id == CURRENT_TYPE_IS_NOT_INTEGER || id == CURRENT_TYPE_IS_NOT_DOUBLE) && m_iIndex != -100) {
            Retry(Text(static_cast<size_t>(m_iIndex)));
        } else if (id == CURRENT_TYPE_IS_NOT_STRING && m_iIndex != -100) {
            Retry(QDateTime::fromString(Text(static_cast<size_t>(m_iIndex)), Qt::ISODate));
        }
    }

    template <typename Value>
    void Retry(Value value)
    {
        if (m_bAttribute) {
            m_pReport->SetAttributeValue(m_sAttribute, value);
        } else {
            m_pReport->SetXmlValue(value);
        }
        m_bWritten = true;
    }

    bool m_bDeleteAfterUse;
    std::vector<ReportData> m_lItems;
    XmlCreateReport *m_pReport = nullptr;
    bool m_bWritten = false;
    bool m_bAttribute = false;
    int m_iIndex = -100;
    double m_dNumber = 65535.0;
    QString m_sAttribute;
};
