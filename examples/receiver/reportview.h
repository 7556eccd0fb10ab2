#pragma once

#include <QTabWidget>

class QPlainTextEdit;
class ReportTree;

/// Shows a report, as a tree and as it stands in its file.
class ReportView : public QTabWidget
{
    Q_OBJECT

public:
    explicit ReportView(QWidget *parent);

    /// An empty path shows nothing.
    void ShowReport(const QString &path);

private:
    ReportTree *m_pTree;
    QPlainTextEdit *m_pText;
};
