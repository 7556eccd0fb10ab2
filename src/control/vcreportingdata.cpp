#include "control/itemindex.h"
#include "control/reportdata.h"
#include "control/vcreporting.h"
#include "host/quilmar.h"
#include "host/trace.h"

#include <algorithm>
#include <iterator>
#include <utility>

// The control's list of values: what the host adds and removes.

void VCReporting::AddReportData(QString name, QString path, QString value, int maxOccurs, QString auxText, int exponent,
                                QString unit)
{
    if (trace::IsOn()) {
        _Q_TraceOld(QStringLiteral("VCReporting::AddReportData(%s, %s, %s, %s, %ld, %s)"), name.toStdWString().c_str(),
                    path.toStdWString().c_str(), value.toStdWString().c_str(), auxText.toStdWString().c_str(),
                    static_cast<long>(exponent), unit.toStdWString().c_str());
    }
    auto item = std::make_unique<ReportData>(name, path, value, maxOccurs, auxText, exponent, unit, false);
    // Opens the item: a source that is not there yet is still a value that the host has promised.
    item->SetExplicitData(ExplicitReportData());
    CheckReportData(std::move(item));
}

void VCReporting::AddReportData(values::Node *node)
{
    if (node == nullptr) {
        return;
    }
    for (values::TreeItem *treeItem : node->GetTreeItems()) {
        auto *valueItem = dynamic_cast<values::ValueItem *>(treeItem);
        if (valueItem == nullptr) {
            AddReportData(dynamic_cast<values::Node *>(treeItem));
        } else if (values::ValueBase *value = valueItem->FindValue(QString())) {
            AddReportData(value->GetName(), value->GetPathName(), QString(), 1, QString(), 0, QString());
        }
    }
}

void VCReporting::AddExplicitReportData(QString name, QString value, int maxOccurs, QString auxText, int exponent,
                                        QString unit)
{
    if (trace::IsOn()) {
        _Q_TraceOld(QStringLiteral("VCReporting::AddExplicitReportData(%s, %s, %s, %ld, %s)"),
                    name.toStdWString().c_str(), value.toStdWString().c_str(), auxText.toStdWString().c_str(),
                    static_cast<long>(exponent), unit.toStdWString().c_str());
    }
    AddExplicit(name, value, maxOccurs, auxText, exponent, unit);
}

void VCReporting::AddExplicitReportData(QString name, const char *value, int maxOccurs, QString auxText, int exponent,
                                        QString unit)
{
    AddExplicitReportData(name, QString::fromUtf8(value), maxOccurs, auxText, exponent, unit);
}

void VCReporting::AddExplicitReportData(QString name, double value, int maxOccurs, QString auxText, int exponent,
                                        QString unit)
{
    if (trace::IsOn()) {
        _Q_TraceOld(QStringLiteral("VCReporting::AddExplicitReportData(%s, %f4.2, %s, %ld, %s)"),
                    name.toStdWString().c_str(), value, auxText.toStdWString().c_str(), static_cast<long>(exponent),
                    unit.toStdWString().c_str());
    }
    AddExplicit(name, value, maxOccurs, auxText, exponent, unit);
}

void VCReporting::AddExplicitReportData(QString name, bool value, int maxOccurs, QString auxText, int exponent,
                                        QString unit)
{
    if (trace::IsOn()) {
        _Q_TraceOld(QStringLiteral("VCReporting::AddExplicitReportData(%s, %s, %s, %ld, %s)"),
                    name.toStdWString().c_str(), value ? L"true" : L"false", auxText.toStdWString().c_str(),
                    static_cast<long>(exponent), unit.toStdWString().c_str());
    }
    AddExplicit(name, value, maxOccurs, auxText, exponent, unit);
}

void VCReporting::AddExplicitReportData(QString name, long value, int maxOccurs, QString auxText, int exponent,
                                        QString unit)
{
    if (trace::IsOn()) {
        // The trace's "%d" takes an int: a longer value is shown cut, as it can't be written either.
        _Q_TraceOld(QStringLiteral("VCReporting::AddExplicitReportData(%s, %d, %s, %ld, %s)"),
                    name.toStdWString().c_str(), static_cast<int>(value), auxText.toStdWString().c_str(),
                    static_cast<long>(exponent), unit.toStdWString().c_str());
    }
    AddExplicit(name, value, maxOccurs, auxText, exponent, unit);
}

void VCReporting::AddExplicitReportData(QString name, int value, int maxOccurs, QString auxText, int exponent,
                                        QString unit)
{
    AddExplicitReportData(name, static_cast<long>(value), maxOccurs, auxText, exponent, unit);
}

void VCReporting::DeleteReportData(QString name)
{
    const std::vector<int> positions = m_pItemIndex->Remove(name);
    if (m_bReporting) {
        for (const int position : positions) {
            m_lRetiredItems.push_back(std::move(m_Items[position]));
        }
    }
    EraseAt(m_Items, positions);
}

void VCReporting::ClearReportData()
{
    m_pItemIndex->Clear();
    if (m_bReporting) {
        std::move(m_Items.begin(), m_Items.end(), std::back_inserter(m_lRetiredItems));
    }
    m_Items.clear();
}

std::unique_ptr<ReportData> VCReporting::CreateReportData(QString name, int maxOccurs, QString auxText, int exponent,
                                                          QString unit)
{
    return std::make_unique<ReportData>(name, QString(), QString(), maxOccurs, auxText, exponent, unit, false);
}

void VCReporting::CheckReportData(std::unique_ptr<ReportData> item)
{
    if (item != nullptr && item->IsOpen()) {
        m_pItemIndex->Append(item->GetName());
        m_Items.push_back(std::move(item));
    }
}

void VCReporting::AddExplicit(QString name, const ExplicitReportData &explicitData, int maxOccurs, QString auxText,
                              int exponent, QString unit)
{
    auto item = CreateReportData(name, maxOccurs, auxText, exponent, unit);
    item->SetExplicitData(explicitData);
    CheckReportData(std::move(item));
}
