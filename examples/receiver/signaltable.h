#pragma once

#include <QWidget>

class Measurement;
class QTableWidget;

/// The signals that the operator has noted, each of which gets its own place in the report. A cell is changed where it
/// stands.
class SignalTable : public QWidget
{
    Q_OBJECT

public:
    SignalTable(Measurement &measurement, QWidget *parent);

    /// Notes what the receiver measures now.
    void AddPresent();

private:
    void RemoveChosen();

    Measurement &m_oMeasurement;
    QTableWidget *m_pTable; // its rows are the measurement's signals
};
