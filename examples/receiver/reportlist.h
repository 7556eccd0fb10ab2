#pragma once

#include <QFileSystemWatcher>
#include <QListWidget>

/// The reports that lie in the report folder, the last one saved first, whatever they are called. It follows the
/// folder, since a report with a comment is saved long after its press.
class ReportList : public QListWidget
{
    Q_OBJECT

public:
    /// Empty until the first Refresh().
    ReportList(const QString &folder, QWidget *parent);

    /// Goes over to another folder and chooses its newest report.
    void SetFolder(const QString &folder);
    /// Looks at the folder now. A report that has come is chosen.
    void Refresh();

Q_SIGNALS:
    /// The complete path of the report that is chosen now; empty if there is none.
    void ReportChosen(const QString &path);

private:
    QString m_sFolder;
    QFileSystemWatcher m_oWatcher;
    QStringList m_lFiles;
};
