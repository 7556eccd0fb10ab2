#include "control/elementitems.h"
#include "control/itemindex.h"
#include "control/reportdata.h"
#include "control/vcreporting.h"
#include "events/xmlevent.h"
#include "host/trace.h"
#include "report/xmlcreatereport.h"

#include <cmath>
#include <limits>
#include <optional>

// How an element that a report announces gets its values from the list. A setter of the builder that refuses a value
// calls XmlUpdate() again before it returns; the nested call learns from the members what is on its way.

namespace {

constexpr int kNoIndex = -100;
constexpr double kNoNumber = 65535.0;

/// The number of an item. What a host gave as a double stands in no source that GetDataValue() looks at.
bool ReadNumber(ReportData &item, double &number)
{
    const ExplicitReportData data = item.GetExplicitData();
    if (data.m_Kind == EXPLICIT_DOUBLE) {
        number = data.m_dNumber / std::pow(10.0, item.GetExponent());
        return true;
    }
    return item.GetDataValue(number);
}

QString ReadText(ReportData &item)
{
    const ExplicitReportData data = item.GetExplicitData();
    QString text;
    if (data.m_Kind == EXPLICIT_STRING) {
        text = data.m_sText;
    } else if (data.m_Kind == EXPLICIT_DOUBLE) {
        double number = 0.0;
        ReadNumber(item, number);
        text.setNum(number, 'g', 12);
    } else {
        item.GetDataValue(text);
    }
    return text;
}

/// Cut towards zero. Nothing for a number beyond 32 bits, which is never bent to fit.
std::optional<int> ToInteger(double number)
{
    const double cut = std::trunc(number);
    if (cut >= std::numeric_limits<int>::min() && cut <= std::numeric_limits<int>::max()) {
        return static_cast<int>(cut);
    }
    return std::nullopt;
}

bool FitsInt(long value)
{
    return value >= std::numeric_limits<int>::min() && value <= std::numeric_limits<int>::max();
}

} // namespace

void VCReporting::XmlUpdate(XmlEvent *event)
{
    if (m_pReport == nullptr) {
        return;
    }
    if (event->GetType() == XmlEvent::EVENT_ELEM_BEGIN) {
        HandleElement(*static_cast<ElemBeginEvent *>(event));
    } else if (event->GetType() == XmlEvent::EVENT_ERROR) {
        HandleError(static_cast<ErrorEvent *>(event)->GetErrorID());
    }
}

/// What the walk has announced, and what has been found for it so far.
struct VCReporting::Element
{
    QString m_sName;
    QXmlAttributes m_oAttributes;
    bool m_bUnitWanted = false;
    QString m_sUnit; // of the last item that matched
};

void VCReporting::HandleElement(ElemBeginEvent &event)
{
    Element element;
    element.m_sName = event.GetElementName();
    element.m_oAttributes = event.GetElementAttributes();
    const QString parentName = event.GetParentName();
    const ElementItems items(*m_pItemIndex, element.m_sName, parentName, element.m_oAttributes);
    ReportData *last = ServeElement(items, element);
    if (m_bValueWritten) {
        const QString lastName = last == nullptr ? QString() : last->GetName();
        FinishElement(element, items.IsPathName(lastName) ? lastName : element.m_sName);
    }
    if (IsTimeName(element.m_sName)) {
        m_pReport->SetXmlValue(QDateTime::currentDateTime());
    }
}

/// Gives the last item that was looked at, null if there is none.
ReportData *VCReporting::ServeElement(const ElementItems &items, Element &element)
{
    const int count = m_pItemIndex->GetCount();
    int next = 0;
    for (const ElementItems::Candidate &candidate : items.GetCandidates()) {
        if (candidate.m_iPosition > next) {
            PassOverItems(items, element);
        }
        next = candidate.m_iPosition + 1;
        if (candidate.m_iAttribute >= 0) {
            m_sCurrentAttribute = element.m_oAttributes.qName(candidate.m_iAttribute);
            SetAttributeFrom(candidate.m_iPosition);
        } else if (ServeElementFrom(candidate.m_iPosition, element)) {
            return GetItem(candidate.m_iPosition);
        }
    }
    if (next < count) {
        PassOverItems(items, element);
    }
    return GetItem(count - 1);
}

// However many items stand side by side that match nothing, they do what one of them does: a stamp that was refused
// once is refused again, and after one that was taken the attribute holds no type any more.
void VCReporting::PassOverItems(const ElementItems &items, const Element &element)
{
    if (items.GetLastLookedAt() < 0) {
        return;
    }
    m_sCurrentAttribute = element.m_oAttributes.qName(items.GetLastLookedAt());
    if (items.HasStamp()) {
        StampAttribute();
    }
}

/// True if the item was the one to serve the element: those behind it are not looked at then.
bool VCReporting::ServeElementFrom(int index, Element &element)
{
    ReportData *item = GetItem(index);
    if (item == nullptr) {
        return false;
    }
    element.m_sUnit = item->GetUnit();
    element.m_bUnitWanted = element.m_bUnitWanted || !element.m_sUnit.isEmpty();
    if (item->GetMaxOccurs() > 1) {
        m_pReport->SetElementMaxOccurs(element.m_sName, item->GetMaxOccurs());
    }
    SetExplicitValue(index, element);
    if (m_bValueWritten) {
        return false;
    }
    SetGeneralValue(index);
    HandleAttributes(element.m_oAttributes);
    return true;
}

void VCReporting::SetExplicitValue(int index, const Element &element)
{
    const ExplicitReportData explicitData = GetItem(index)->GetExplicitData();
    if (explicitData.m_Kind != EXPLICIT_BOOL && explicitData.m_Kind != EXPLICIT_LONG) {
        return;
    }
    m_iIndex = index;
    if (explicitData.m_Kind == EXPLICIT_BOOL) {
        m_pReport->SetXmlValue(explicitData.m_bFlag);
    } else if (FitsInt(explicitData.m_lValue)) {
        m_pReport->SetXmlValue(static_cast<int>(explicitData.m_lValue));
    }
    m_iIndex = kNoIndex;
    m_bValueWritten = true;
    HandleAttributes(element.m_oAttributes);
}

void VCReporting::SetGeneralValue(int index)
{
    ReportData &item = *GetItem(index);
    const bool isNumber = ReadNumber(item, m_dCurrentNumber);
    m_iIndex = index;
    if (isNumber) {
        m_pReport->SetXmlValue(m_dCurrentNumber);
        m_dCurrentNumber = kNoNumber;
    } else {
        m_pReport->SetXmlValue(ReadText(item));
    }
    m_iIndex = kNoIndex;
    m_bValueWritten = true;
}

void VCReporting::FinishElement(const Element &element, const QString &itemName)
{
    const QString unitAttribute = QStringLiteral("Unit");
    // The template's attribute holds its type: an empty one takes no value.
    if (element.m_bUnitWanted && !element.m_oAttributes.value(unitAttribute).isEmpty()) {
        m_pReport->SetAttributeValue(unitAttribute, element.m_sUnit);
    }
    if (m_bDeleteAfterUse) {
        DeleteReportData(itemName);
    }
    m_bValueWritten = false;
}

ReportData *VCReporting::GetItem(int index)
{
    return index >= 0 && index < static_cast<int>(m_Items.size()) ? m_Items[index].get() : nullptr;
}

void VCReporting::HandleAttributes(QXmlAttributes attributes)
{
    for (int i = 0; i < attributes.count() && !m_Items.empty(); ++i) {
        m_sCurrentAttribute = attributes.qName(i);
        // What needs no item happens at the first one already, unless that item bears the attribute's name.
        const int index = m_pItemIndex->FindFirst(m_sCurrentAttribute);
        const bool isTime = IsTimeName(m_sCurrentAttribute);
        const bool isDefault = m_sCurrentAttribute == QLatin1String("default");
        if (index == 0 || (index > 0 && !isTime && !isDefault)) {
            SetAttributeFrom(index);
        } else if (isTime) {
            StampAttribute();
        } else if (isDefault) {
            // The element has a value now.
            m_pReport->RemoveAttribute(m_sCurrentAttribute);
            m_bValueWritten = true;
        }
    }
}

void VCReporting::SetAttributeFrom(int index)
{
    ReportData *item = GetItem(index);
    if (item == nullptr) {
        return;
    }
    const bool isNumber = ReadNumber(*item, m_dCurrentNumber);
    m_iIndex = index;
    m_bSettingAttribute = true;
    if (isNumber) {
        m_pReport->SetAttributeValue(m_sCurrentAttribute, m_dCurrentNumber);
    } else {
        m_pReport->SetAttributeValue(m_sCurrentAttribute, ReadText(*item));
    }
    m_dCurrentNumber = kNoNumber;
    m_bSettingAttribute = false;
    m_iIndex = kNoIndex;
    m_bValueWritten = true;
}

void VCReporting::StampAttribute()
{
    m_pReport->SetAttributeValue(m_sCurrentAttribute, QDateTime::currentDateTime());
    m_bValueWritten = true;
}

void VCReporting::HandleError(ITagwright::ErrorID id)
{
    if (id == ITagwright::CURRENT_TYPE_IS_NOT_DOUBLE) {
        RetryAsInteger();
    } else if (id == ITagwright::CURRENT_TYPE_IS_NOT_INTEGER) {
        RetryAsText();
    } else if (id == ITagwright::CURRENT_TYPE_IS_NOT_STRING) {
        RetryAsDateTime();
    }
}

void VCReporting::RetryAsInteger()
{
    if (const std::optional<int> integer = ToInteger(m_dCurrentNumber)) {
        Retry(*integer);
    } else {
        RetryAsText();
    }
}

void VCReporting::RetryAsText()
{
    if (HasIndex("VCReporting::XmlUpdate|ErrorEvent|ErrorID == CURRENT_TYPE_IS_NOT_INTEGER: m_iIndex is not valid.")) {
        Retry(ReadText(*GetItem(m_iIndex)));
    }
}

void VCReporting::RetryAsDateTime()
{
    if (HasIndex("VCReporting::XmlUpdate|ErrorEvent|ErrorID == CURRENT_TYPE_IS_NOT_STRING: m_iIndex is not valid.")) {
        // The same item serves one element after the other, and reading a date takes longer than all else here.
        const QString text = ReadText(*GetItem(m_iIndex));
        if (!text.isEmpty() && text != m_sLastDateText) {
            m_sLastDateText = text;
            m_tLastDate = QDateTime::fromString(text, Qt::ISODate);
        }
        Retry(text.isEmpty() ? QDateTime() : m_tLastDate);
    }
}

template <typename Value>
void VCReporting::Retry(Value value)
{
    if (m_bSettingAttribute) {
        m_pReport->SetAttributeValue(m_sCurrentAttribute, value);
    } else {
        m_pReport->SetXmlValue(value);
    }
    m_bValueWritten = true;
}

bool VCReporting::HasIndex(const char *message)
{
    const bool hasItem = GetItem(m_iIndex) != nullptr;
    if (!hasItem) {
        trace::Write(QStringLiteral("vcreporting"), __LINE__, [message] { return QLatin1String(message); });
    }
    return hasItem;
}
