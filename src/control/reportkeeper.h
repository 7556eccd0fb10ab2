#pragma once

#include <QObject>
#include <QTimer>

#include <list>
#include <memory>

class XmlCreateReport;

/// Takes over the builders that their control needs no longer. One whose comment dialog is open lives on until the
/// dialog has ended, or until the application ends, and nothing saves it then.
class ReportKeeper : public QObject
{
    Q_OBJECT

public:
    ReportKeeper();
    ~ReportKeeper() override;
    Q_DISABLE_COPY(ReportKeeper)

    /// Ends the builder at once, or as soon as none of its dialogs is open. Null is allowed.
    static void Release(std::unique_ptr<XmlCreateReport> report);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    static std::unique_ptr<ReportKeeper> &Instance();
    static void EndWithApplication();

    void Keep(std::unique_ptr<XmlCreateReport> report);
    void ReleaseEnded();

    std::list<std::unique_ptr<XmlCreateReport>> m_lReports;
    QTimer m_oEndTimer; // fires once the dialog that has ended is through with it
};
