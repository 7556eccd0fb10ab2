#include "control/elementitems.h"
#include "control/reportdata.h"
#include "control/sourceitem.h"
#include "control/sourcevalue.h"
#include "control/vcreporting.h"
#include "events/xmlevent.h"
#include "host/trace.h"
#include "report/facets.h"
#include "report/xmlcreatereport.h"

#include <QScopeGuard>

#include <optional>
#include <type_traits>

// How an element that a report announces gets its values from the list. A setter of the builder that refuses a value
// calls XmlUpdate() again before it returns; the nested call learns from the members which value is on its way. Reading
// an item runs host code, which may change the list: an item that is being served is shared, never looked up again.

namespace {

constexpr double kNoNumber = 65535.0;

QString Unit()
{
    return QStringLiteral("vcreporting");
}

/// The number of an item. What a host gave as a double stands in no source that GetDataValue() looks at.
bool ReadNumber(ReportData &item, double &number)
{
    const ExplicitReportData data = item.GetExplicitData();
    if (data.m_Kind == EXPLICIT_DOUBLE) {
        number = item.Scaled(data.m_dNumber);
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

void TraceTooLong(const XmlCreateReport &report, long value)
{
    trace::Write(Unit(), __LINE__, [&] {
        return QStringLiteral("%1: the value \"%2\" was not written: it needs more than 32 bits.")
            .arg(report.GetPlace().GetText(), QString::number(value));
    });
}

} // namespace

template <typename Value>
void VCReporting::Write(const Value &value)
{
    if (!m_bSettingAttribute) {
        m_pReport->SetXmlValue(value);
    } else if constexpr (!std::is_same_v<Value, bool> && !std::is_same_v<Value, QTime>) {
        m_pReport->SetAttributeValue(m_sCurrentAttribute, value);
    }
    m_bValueWritten = true;
}

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

/// The element that the walk has announced, and what its items have asked for so far.
struct VCReporting::Element
{
    QString m_sName;
    QXmlAttributes m_oAttributes;
    bool m_bUnitWanted = false;
    QString m_sUnit; // of the last item that matched

    void WantUnit(const QString &unit)
    {
        m_sUnit = unit;
        m_bUnitWanted = m_bUnitWanted || !unit.isEmpty();
    }
};

void VCReporting::HandleElement(ElemBeginEvent &event)
{
    ++m_iAnnouncement;
    m_oFirstVisit.reset();
    if (IsAbsent()) {
        return;
    }
    Element element;
    element.m_sName = event.GetElementName();
    element.m_oAttributes = event.GetElementAttributes();
    const QString parentName = m_Items->HasPathNames() ? event.GetParentName() : QString();
    ElementItems items(*m_Items, element.m_sName, parentName, element.m_oAttributes);
    ServeElement(items, element);
    if (m_bValueWritten) {
        FinishElement(items, element);
    }
    if (IsTimeName(element.m_sName) && m_lAbsent.isEmpty()) {
        m_pReport->SetXmlValue(QDateTime::currentDateTime());
    }
}

void VCReporting::ServeElement(ElementItems &items, Element &element)
{
    while (items.Next()) {
        PassOverItems(items);
        if (!items.MatchesElement()) {
            m_sCurrentAttribute = items.GetItem()->GetName();
            SetAttributeFrom(items.GetItem());
        } else if (ServeElementFrom(items.GetItem(), element)) {
            return;
        }
    }
    PassOverItems(items);
}

// However many items stand side by side that match nothing, they do what the first of them does: a stamp that was
// refused is refused again, and one that was taken leaves no type in the attribute for a second.
void VCReporting::PassOverItems(const ElementItems &items)
{
    if (!items.GetStamped().isEmpty() && items.HasPassedItems()) {
        m_sCurrentAttribute = items.GetStamped();
        StampAttribute();
    }
}

/// True if the item was the one to serve the element: those behind it are not looked at then.
bool VCReporting::ServeElementFrom(const std::shared_ptr<ReportData> &item, Element &element)
{
    if (const auto source = std::dynamic_pointer_cast<SourceItem>(item)) {
        return ServeElementFromSource(source, element);
    }
    element.WantUnit(item->GetUnit());
    if (item->GetMaxOccurs() > 1) {
        m_pReport->SetElementMaxOccurs(element.m_sName, item->GetMaxOccurs());
    }
    SetExplicitValue(item, element);
    if (m_bValueWritten) {
        return false;
    }
    WriteItem(item);
    HandleAttributes(element.m_oAttributes);
    return true;
}

bool VCReporting::ServeElementFromSource(const std::shared_ptr<SourceItem> &source, Element &element)
{
    int count = 1;
    if (!OpenSource(source, count)) {
        return true;
    }
    const QVariant value = GetSourceValue(source, QString());
    if (count > 1) {
        m_pReport->SetElementMaxOccurs(element.m_sName, count);
    }
    if (source->IsContainer()) {
        m_pReport->KeepCurrentElement();
    } else if (!value.isValid()) {
        return false;
    } else if (!m_bValueWritten) {
        element.WantUnit(source->GetUnit());
        WriteSource(value, *source);
    }
    HandleAttributes(element.m_oAttributes);
    return true;
}

void VCReporting::SetExplicitValue(const std::shared_ptr<ReportData> &item, const Element &element)
{
    const ExplicitReportData explicitData = item->GetExplicitData();
    if (explicitData.m_Kind != EXPLICIT_BOOL && explicitData.m_Kind != EXPLICIT_LONG) {
        return;
    }
    m_pItem = item;
    if (explicitData.m_Kind == EXPLICIT_BOOL) {
        Write(explicitData.m_bFlag);
    } else if (const auto integer = facets::ToInteger(static_cast<double>(explicitData.m_lValue))) {
        Write(*integer);
    } else {
        TraceTooLong(*m_pReport, explicitData.m_lValue);
    }
    PutAtRest();
    m_bValueWritten = true;
    HandleAttributes(element.m_oAttributes);
}

void VCReporting::FinishElement(const ElementItems &items, const Element &element)
{
    const QString unitAttribute = QStringLiteral("Unit");
    // The template's attribute holds its type: an empty one takes no value.
    if (element.m_bUnitWanted && !element.m_oAttributes.value(unitAttribute).isEmpty()) {
        m_pReport->SetAttributeValue(unitAttribute, element.m_sUnit);
    }
    if (m_bDeleteAfterUse) {
        m_Items->RemoveUsed(items.GetUsedName());
    }
    m_bValueWritten = false;
}

// A stamp and the end of a default happen at the list's first item already, so an item that bears the attribute's name
// counts for these two only if it is the first.
void VCReporting::HandleAttributes(QXmlAttributes attributes)
{
    for (int i = 0; i < attributes.count() && m_Items->GetFirst() != ItemList::kNone; ++i) {
        m_sCurrentAttribute = attributes.qName(i);
        const bool isTime = IsTimeName(m_sCurrentAttribute);
        const bool isDefault = m_sCurrentAttribute == QLatin1String("default");
        if (SetAttributeFromItems(!isTime && !isDefault)) {
            continue;
        }
        if (isTime) {
            StampAttribute();
        } else if (isDefault) {
            m_pReport->RemoveAttribute(m_sCurrentAttribute);
            m_bValueWritten = true;
        }
    }
}

/// Of the items that bear the attribute's name the first that knows a value counts: all of them do, or only the list's
/// first item. False if none does.
bool VCReporting::SetAttributeFromItems(bool areAllAsked)
{
    ItemList::Serial serial = m_Items->FindBehind(ItemList::kNone, m_sCurrentAttribute);
    while (serial != ItemList::kNone && (areAllAsked || serial == m_Items->GetFirst())) {
        if (SetAttributeFrom(m_Items->Get(serial))) {
            return true;
        }
        serial = m_Items->FindBehind(serial, m_sCurrentAttribute);
    }
    return false;
}

/// False if the item is a source that has known no value, asked now or at the element's first announcement.
bool VCReporting::SetAttributeFrom(const std::shared_ptr<ReportData> &item)
{
    if (const auto source = std::dynamic_pointer_cast<SourceItem>(item)) {
        const QVariant value = GetSourceValue(source, m_sCurrentAttribute);
        if (value.isValid()) {
            m_bSettingAttribute = true;
            WriteSource(value, *source);
        }
        return value.isValid() || !IsFirstVisit();
    }
    m_bSettingAttribute = true;
    WriteItem(item);
    return true;
}

void VCReporting::StampAttribute()
{
    m_pReport->SetAttributeValue(m_sCurrentAttribute, QDateTime::currentDateTime());
    m_bValueWritten = true;
}

/// For the element in hand, or the attribute that is being set.
void VCReporting::WriteItem(const std::shared_ptr<ReportData> &item)
{
    const bool isNumber = ReadNumber(*item, m_dCurrentNumber);
    m_pItem = item;
    if (isNumber) {
        Write(m_dCurrentNumber);
    } else {
        Write(ReadText(*item));
    }
    PutAtRest();
}

/// The same for what a source has given.
void VCReporting::WriteSource(const QVariant &value, ReportData &item)
{
    SourceValue forms(value, item, m_bSettingAttribute, m_bValidOutput);
    m_pSourceValue = &forms;
    // Also if an override of the host's throws: the value on the stack is gone then.
    const auto rest = qScopeGuard([this] { PutAtRest(); });
    WriteNextForm();
}

void VCReporting::WriteNextForm()
{
    m_pSourceValue->SetNext([this](const auto &value) { Write(value); });
}

/// No value is on its way to the builder.
void VCReporting::PutAtRest()
{
    m_pItem.reset();
    m_pSourceValue = nullptr;
    m_dCurrentNumber = kNoNumber;
    m_bSettingAttribute = false;
}

void VCReporting::HandleError(ITagwright::ErrorID id)
{
    if (m_pSourceValue != nullptr) {
        if (id >= ITagwright::CURRENT_TYPE_IS_NOT_STRING && id <= ITagwright::CURRENT_TYPE_IS_NOT_BOOL) {
            WriteNextForm();
        }
    } else if (id == ITagwright::CURRENT_TYPE_IS_NOT_DOUBLE) {
        RetryAsInteger();
    } else if (id == ITagwright::CURRENT_TYPE_IS_NOT_INTEGER) {
        RetryAsText();
    } else if (id == ITagwright::CURRENT_TYPE_IS_NOT_STRING) {
        RetryAsDateTime();
    }
}

void VCReporting::RetryAsInteger()
{
    if (const std::optional<int> integer = facets::ToInteger(m_dCurrentNumber)) {
        Write(*integer);
    } else {
        RetryAsText();
    }
}

void VCReporting::RetryAsText()
{
    if (HasItem("VCReporting::XmlUpdate|ErrorEvent|ErrorID == CURRENT_TYPE_IS_NOT_INTEGER: m_iIndex is not valid.")) {
        Write(ReadText(*m_pItem));
    }
}

void VCReporting::RetryAsDateTime()
{
    if (HasItem("VCReporting::XmlUpdate|ErrorEvent|ErrorID == CURRENT_TYPE_IS_NOT_STRING: m_iIndex is not valid.")) {
        // The same item serves one element after the other, and reading a date takes longer than all else here.
        const QString text = ReadText(*m_pItem);
        if (!text.isEmpty() && text != m_sLastDateText) {
            m_sLastDateText = text;
            m_tLastDate = QDateTime::fromString(text, Qt::ISODate);
        }
        Write(text.isEmpty() ? QDateTime() : m_tLastDate);
    }
}

bool VCReporting::HasItem(const char *message)
{
    if (m_pItem == nullptr) {
        trace::Write(Unit(), __LINE__, [message] { return QLatin1String(message); });
    }
    return m_pItem != nullptr;
}
