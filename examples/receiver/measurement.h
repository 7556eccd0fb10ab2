#pragma once

#include "host/quilmar.h"

#include <QString>
#include <QStringList>
#include <QVector>

class ReportPlace;
class VCReporting;

/// The columns of a signal: MHz, kHz, dBµV, degrees, and texts.
enum SignalField { kFrequency, kBandwidth, kLevel, kAzimuth, kModulation, kStatus, kTime, kSignalFields };
/// A signal as it was measured or changed by hand, one text for each column.
using Signal = QStringList;

/// What the receiver measures and is set to: the value tree from which the reports are filled. There is one of it; it
/// installs its tree for the whole process.
class Measurement
{
public:
    /// Filled with a plausible state.
    Measurement();
    ~Measurement();
    Q_DISABLE_COPY(Measurement)

    values::MemoryTree &GetTree();

    double GetNumber(const QString &path);
    QString GetText(const QString &path);
    /// Numbers are in basic units: Hz, dBµV, degrees.
    void SetNumber(const QString &path, double number);
    void SetText(const QString &path, const QString &text);
    /// What a saved text of any kind of value stands for. An unknown path, or a text that is no such value, is passed
    /// over.
    void Restore(const QString &path, const QString &text);

    /// What is measured now.
    Signal GetPresent();
    /// The signals that were noted. A report holds these or, if there are none, what is measured when it is made.
    QVector<Signal> &GetSignals() { return m_lSignals; }

    /// The filters, as the tree names them: "150 kHz".
    static QStringList GetBandwidths();

    /// Gives a control all the names that a report may ask for. What depends on the moment of the report follows when
    /// the control prepares one.
    void FillControl(VCReporting &control);

private:
    void PrepareReport(VCReporting &control);
    void AddSignalSources(VCReporting &control);
    QString GetSignalText(int field, const ReportPlace &place) const;

    values::MemoryTree m_oTree;
    QVector<Signal> m_lSignals;
    QVector<Signal> m_lReported; // in the report that is being made
};
