#pragma once

#include <QMainWindow>

class Measurement;
class QLabel;
class QToolBar;
class ReportList;
class ReportOutcome;
class SignalTable;
class VCReporting;

/// The program's window: the tool bar with the reporting control, the panel, the reports made, and the one chosen.
class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    /// `panelPath` is the file that keeps the panel; empty if nothing is kept.
    MainWindow(Measurement &measurement, const QString &schema, const QString &reportFolder, const QString &panelPath);

    VCReporting &GetControl();
    SignalTable &GetSignals() { return *m_pSignals; }
    /// Takes another schema, and tells at once whether it is there.
    void SetSchema(const QString &schema);
    /// Takes another folder for the reports, and shows the newest one in it.
    void SetReportFolder(const QString &folder);

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    void MakeToolBar();
    void AddToolWidgets(QToolBar &toolBar);
    void ChooseSchema();
    void ChooseFolder();
    void MakeCentre();
    void ConnectControl();
    void ShowAvailability(bool isAvailable);
    static QString ToText(const ReportOutcome &outcome);

    Measurement &m_oMeasurement;
    QString m_sSchema;
    QString m_sReportFolder;
    QString m_sPanelPath;
    VCReporting *m_pControl = nullptr; // the tool bar's
    ReportList *m_pReports = nullptr; // the window's
    SignalTable *m_pSignals = nullptr; // the window's
    QLabel *m_pAvailability = nullptr; // the status bar's
};
