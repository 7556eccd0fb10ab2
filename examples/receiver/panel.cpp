#include "panel.h"

#include "measurement.h"
#include "shownvalue.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

namespace {

/// Takes point and comma alike as the decimal sign: no number shows a sign between its thousands, and with one of them
/// passed over 98.1 would become 981.
class NumberBox : public QDoubleSpinBox
{
public:
    using QDoubleSpinBox::QDoubleSpinBox;

    QValidator::State validate(QString &text, int &position) const override
    {
        for (const char sign : { '.', ',' }) {
            text.replace(QLatin1Char(sign), locale().decimalPoint());
        }
        return QDoubleSpinBox::validate(text, position);
    }
};

} // namespace

Panel::Panel(Measurement &measurement, QWidget *parent)
    : QWidget(parent)
    , m_oMeasurement(measurement)
{
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(MakeMeasurementGroup());
    layout->addWidget(MakeReceiverGroup());
    layout->addWidget(MakeStationGroup());
    layout->addStretch();
    AlignFields();
}

void Panel::AlignFields()
{
    const QList<QLabel *> labels = findChildren<QLabel *>();
    int width = 0;
    for (const QLabel *label : labels) {
        width = qMax(width, label->sizeHint().width());
    }
    for (QLabel *label : labels) {
        label->setMinimumWidth(width);
    }
}

QWidget *Panel::MakeStationGroup()
{
    auto *group = new QGroupBox(tr("Station"), this);
    auto *form = new QFormLayout(group);
    AddText(*form, tr("&Name"), QStringLiteral("Station/Name"));
    AddText(*form, tr("&Operator"), QStringLiteral("Station/Operator"));
    AddChoice(*form, tr("Countr&y"), QStringLiteral("Station/Country"),
              { QStringLiteral("AT"), QStringLiteral("CH"), QStringLiteral("DE"), QStringLiteral("FR"),
                QStringLiteral("NL") });
    return group;
}

QWidget *Panel::MakeMeasurementGroup()
{
    auto *group = new QGroupBox(tr("Measurement"), this);
    auto *form = new QFormLayout(group);
    AddNumber(*form, tr("&Frequency"), QStringLiteral("Measurement/Frequency"),
              { 0.009, 40000.0, 0.1, 6, 1e6, " MHz" });
    AddChoice(*form, tr("&Bandwidth"), QStringLiteral("Measurement/Bandwidth"), Measurement::GetBandwidths());
    AddNumber(*form, tr("&Level"), QStringLiteral("Measurement/Level"), { -59.9, 159.9, 0.5, 1, 1.0, " dBµV" });
    AddNumber(*form, tr("A&zimuth"), QStringLiteral("Measurement/Azimuth"), { 0.0, 359.9, 1.0, 1, 1.0, " °" });
    AddChoice(*form, tr("&Modulation"), QStringLiteral("Measurement/Modulation"),
              { QStringLiteral("AM"), QStringLiteral("FM") });
    AddChoice(*form, tr("&Status"), QStringLiteral("Measurement/Status"),
              { QStringLiteral("licensed"), QStringLiteral("unlicensed"), QStringLiteral("unknown") });
    return group;
}

QWidget *Panel::MakeReceiverGroup()
{
    auto *group = new QGroupBox(tr("Receiver"), this);
    auto *form = new QFormLayout(group);
    AddChoice(*form, tr("&Detector"), QStringLiteral("Receiver/Detector"),
              { QStringLiteral("Average"), QStringLiteral("Peak"), QStringLiteral("RMS"), QStringLiteral("Sample") });
    AddNumber(*form, tr("&Attenuation"), QStringLiteral("Receiver/Attenuation"), { 0.0, 70.0, 5.0, 0, 1.0, " dB" });
    AddSwitch(*form, tr("&Preamplifier"), QStringLiteral("Receiver/Preamplifier"));
    return group;
}

void Panel::AddText(QFormLayout &form, const QString &label, const QString &path)
{
    auto *edit = new QLineEdit(m_oMeasurement.GetText(path), this);
    edit->setObjectName(path);
    connect(edit, &QLineEdit::textChanged, this,
            [this, path](const QString &text) { m_oMeasurement.SetText(path, text); });
    form.addRow(label, edit);
}

void Panel::AddNumber(QFormLayout &form, const QString &label, const QString &path, const Range &range)
{
    auto *box = new NumberBox(this);
    box->setObjectName(path);
    box->setDecimals(range.m_iDecimals);
    box->setRange(range.m_dMinimum, range.m_dMaximum);
    box->setSingleStep(range.m_dStep);
    box->setSuffix(QString::fromUtf8(range.m_sUnit));
    box->setValue(m_oMeasurement.GetNumber(path) / range.m_dScale);
    const auto take = [this, path, scale = range.m_dScale](double number) {
        m_oMeasurement.SetNumber(path, number * scale);
    };
    // What was restored may lie outside the range.
    take(box->value());
    connect(box, QOverload<double>::of(&QDoubleSpinBox::valueChanged), this, take);
    form.addRow(label, box);
}

void Panel::AddChoice(QFormLayout &form, const QString &label, const QString &path, const QStringList &choices)
{
    auto *box = new QComboBox(this);
    box->setObjectName(path);
    for (const QString &choice : choices) {
        box->addItem(shownvalue::ToShown(choice), choice);
    }
    box->setCurrentIndex(box->findData(m_oMeasurement.GetText(path)));
    connect(box, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            [this, path, box] { m_oMeasurement.SetText(path, box->currentData().toString()); });
    form.addRow(label, box);
}

void Panel::AddSwitch(QFormLayout &form, const QString &label, const QString &path)
{
    auto *box = new QCheckBox(label, this);
    box->setObjectName(path);
    box->setChecked(m_oMeasurement.GetText(path) == QLatin1String("on"));
    connect(box, &QCheckBox::toggled, this, [this, path](bool isOn) {
        m_oMeasurement.SetText(path, isOn ? QStringLiteral("on") : QStringLiteral("off"));
    });
    form.addRow(QString(), box);
}
