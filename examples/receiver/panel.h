#pragma once

#include <QWidget>

class Measurement;
class QComboBox;
class QFormLayout;

/// Where the operator changes what the receiver measures. Each change goes into the value tree at once.
class Panel : public QWidget
{
    Q_OBJECT

public:
    Panel(Measurement &measurement, QWidget *parent);

private:
    QWidget *MakeStationGroup();
    QWidget *MakeMeasurementGroup();
    QWidget *MakeReceiverGroup();

    /// The fields of all groups begin at one place.
    void AlignFields();

    void AddText(QFormLayout &form, const QString &label, const QString &path);
    /// `scale` is the size of the shown unit in the tree's: 1e6 for MHz.
    struct Range
    {
        double m_dMinimum;
        double m_dMaximum;
        double m_dStep;
        int m_iDecimals;
        double m_dScale;
        const char *m_sUnit;
    };
    void AddNumber(QFormLayout &form, const QString &label, const QString &path, const Range &range);
    void AddChoice(QFormLayout &form, const QString &label, const QString &path, const QStringList &choices);
    void AddSwitch(QFormLayout &form, const QString &label, const QString &path);

    Measurement &m_oMeasurement;
};
