#include "control/itemlist.h"
#include "control/reportdata.h"
#include "control/vcreporting.h"
#include "host/quilmar.h"
#include "host/trace.h"

#include <utility>

// The control's list of values: what the host adds and removes.

namespace {

/// What the traces of all explicit values share.
struct ExplicitTail
{
    const QString &m_sAuxText;
    int m_iExponent;
    const QString &m_sUnit;
};

/// `directive` is the format of `value`.
template <typename Value>
void TraceExplicit(const char *directive, const QString &name, Value value, const ExplicitTail &tail)
{
    if (trace::IsOn()) {
        _Q_TraceOld(
            QStringLiteral("VCReporting::AddExplicitReportData(%s, %1, %s, %ld, %s)").arg(QLatin1String(directive)),
            name.toStdWString().c_str(), value, tail.m_sAuxText.toStdWString().c_str(),
            static_cast<long>(tail.m_iExponent), tail.m_sUnit.toStdWString().c_str());
    }
}

} // namespace

void VCReporting::AddReportData(QString name, QString path, QString value, int maxOccurs, QString auxText, int exponent,
                                QString unit)
{
    if (trace::IsOn()) {
        _Q_TraceOld(QLatin1String("VCReporting::AddReportData(%s, %s, %s, %s, %ld, %s)"), name.toStdWString().c_str(),
                    path.toStdWString().c_str(), value.toStdWString().c_str(), auxText.toStdWString().c_str(),
                    static_cast<long>(exponent), unit.toStdWString().c_str());
    }
    // Also if it isn't open: a source that is not there yet is still a value that the host has promised.
    m_Items->Append(std::make_shared<ReportData>(name, path, value, maxOccurs, auxText, exponent, unit, false));
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
        TraceExplicit("%s", name, value.toStdWString().c_str(), { auxText, exponent, unit });
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
    TraceExplicit("%f4.2", name, value, { auxText, exponent, unit });
    AddExplicit(name, value, maxOccurs, auxText, exponent, unit);
}

void VCReporting::AddExplicitReportData(QString name, bool value, int maxOccurs, QString auxText, int exponent,
                                        QString unit)
{
    TraceExplicit("%s", name, value ? L"true" : L"false", { auxText, exponent, unit });
    AddExplicit(name, value, maxOccurs, auxText, exponent, unit);
}

void VCReporting::AddExplicitReportData(QString name, long value, int maxOccurs, QString auxText, int exponent,
                                        QString unit)
{
    // "%d" takes an int, and would show another number for a longer value.
    const int shortValue = static_cast<int>(value);
    if (shortValue == value) {
        TraceExplicit("%d", name, shortValue, { auxText, exponent, unit });
    } else {
        TraceExplicit("%ld", name, value, { auxText, exponent, unit });
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
    m_Items->Remove(name);
}

void VCReporting::ClearReportData()
{
    m_Items->Clear();
}

std::unique_ptr<ReportData> VCReporting::CreateReportData(QString name, int maxOccurs, QString auxText, int exponent,
                                                          QString unit)
{
    return std::make_unique<ReportData>(name, QString(), QString(), maxOccurs, auxText, exponent, unit, false);
}

void VCReporting::AddExplicit(QString name, const ExplicitReportData &explicitData, int maxOccurs, QString auxText,
                              int exponent, QString unit)
{
    auto item = CreateReportData(name, maxOccurs, auxText, exponent, unit);
    item->SetExplicitData(explicitData);
    m_Items->Append(std::move(item));
}
