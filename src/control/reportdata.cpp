#include "control/reportdata.h"

#include "host/quilmar.h"

#include <cmath>
#include <utility>

namespace {

/// Takes the unit off a frequency's text, and gives what it stands for in Hz. The characters go at every occurrence.
double TakeUnit(QString &text)
{
    // Two spellings for each power of 1000; the blank stands ahead of plain Hz.
    const QString prefixes = QStringLiteral("  kKmMgG");
    text.remove(text.right(2));
    const QString prefix = text.right(1);
    const int index = prefixes.indexOf(prefix);
    if (index < 0) {
        return 1.0;
    }
    text.remove(prefix);
    const int power = index / 2;
    return std::pow(1000.0, power);
}

} // namespace

ExplicitReportData::ExplicitReportData() = default;

ExplicitReportData::ExplicitReportData(QString text)
    : m_Kind(EXPLICIT_STRING)
    , m_sText(std::move(text))
{
}

ExplicitReportData::ExplicitReportData(const char *text)
    : ExplicitReportData(QString::fromUtf8(text))
{
}

ExplicitReportData::ExplicitReportData(double number)
    : m_Kind(EXPLICIT_DOUBLE)
    , m_dNumber(number)
{
}

ExplicitReportData::ExplicitReportData(bool flag)
    : m_Kind(EXPLICIT_BOOL)
    , m_bFlag(flag)
{
}

ExplicitReportData::ExplicitReportData(long value)
    : m_Kind(EXPLICIT_LONG)
    , m_lValue(value)
{
}

ExplicitReportData::ExplicitReportData(const ExplicitReportData &other) = default;

ExplicitReportData &ExplicitReportData::operator=(const ExplicitReportData &other) = default;

ExplicitReportData::~ExplicitReportData() = default;

ReportData::ReportData(QString name, QString path, QString value, int maxOccurs, QString auxText, int exponent,
                       QString unit, bool)
    : m_sName(std::move(name))
    , m_sPath(std::move(path))
    , m_sAuxText(std::move(auxText))
    , m_iExponent(exponent)
    , m_iMaxOccurs(maxOccurs)
    , m_sUnit(std::move(unit))
{
    if (m_sPath.isEmpty()) {
        m_sValue = std::move(value);
    } else if (values::Tree *tree = values::Tree::Instance()) {
        m_pVTObject = tree->FindValue(m_sPath);
        if (m_pVTObject == nullptr) {
            m_pVTItem = tree->FindItem(m_sPath);
        }
    }
    m_bOpen = m_pVTObject != nullptr || m_pVTItem != nullptr || !m_sValue.isEmpty();
}

ReportData::ReportData(const ReportData &other) = default;

ReportData &ReportData::operator=(const ReportData &other) = default;

ReportData::~ReportData() = default;

bool ReportData::GetDataValue(double &value)
{
    if (auto *numeric = dynamic_cast<values::IValueNumeric *>(m_pVTObject)) {
        value = Scaled(numeric->GetNumber());
        return true;
    }
    if (auto *selection = dynamic_cast<values::ValueSelection *>(m_pVTObject)) {
        const double number = selection->GetSelectionNumber();
        return ReadSelection(number, selection->GetText(), value);
    }
    bool isNumber = false;
    const double number = m_sValue.toDouble(&isNumber);
    if (isNumber) {
        value = Scaled(number);
    }
    return isNumber;
}

bool ReportData::GetDataValue(QString &value)
{
    if (m_pVTObject != nullptr) {
        value = m_pVTObject->GetText();
    } else if (m_pVTItem != nullptr) {
        value = m_pVTItem->GetItemName();
    } else if (!m_sValue.isEmpty()) {
        value = m_sValue;
    } else {
        return false;
    }
    return true;
}

bool ReportData::GetDataValue(bool &value)
{
    if (m_ExplicitData.m_Kind != EXPLICIT_BOOL) {
        return false;
    }
    value = m_ExplicitData.m_bFlag;
    return true;
}

bool ReportData::GetDataValue(long &value)
{
    if (m_ExplicitData.m_Kind != EXPLICIT_LONG) {
        return false;
    }
    value = m_ExplicitData.m_lValue;
    return true;
}

void ReportData::SetExplicitData(ExplicitReportData data)
{
    m_ExplicitData = data;
    m_bOpen = true;
}

ExplicitReportData ReportData::GetExplicitData()
{
    return m_ExplicitData;
}

int ReportData::GetMaxOccurs()
{
    return m_iMaxOccurs;
}

QString ReportData::GetName()
{
    return m_sName;
}

QString ReportData::GetUnit()
{
    return m_sUnit;
}

int ReportData::GetExponent()
{
    return m_iExponent;
}

values::ValueBase *ReportData::GetVTObject()
{
    return m_pVTObject;
}

bool ReportData::IsOpen()
{
    return m_bOpen;
}

bool ReportData::ReadSelection(double number, QString text, double &value) const
{
    if (!text.contains(QLatin1String("Hz"))) {
        value = Scaled(number);
        return true;
    }
    const double factor = TakeUnit(text);
    text = text.trimmed();
    bool isNumber = false;
    const double parsed = text.toDouble(&isNumber) * factor;
    if (isNumber) {
        // Some selections count their choices, others number them by the frequency itself: the digits of the text tell
        // which of the two this one does.
        value = Scaled(QString::number(number, 'g', 12).contains(text) ? number : parsed);
    }
    return isNumber;
}

double ReportData::Scaled(double number) const
{
    return number / std::pow(10.0, m_iExponent);
}
