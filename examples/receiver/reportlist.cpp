#include "reportlist.h"

#include "emptyhint.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QSignalBlocker>

#include <algorithm>

namespace {

/// The reports of a folder, the last one saved first. Their names, which are times, decide between those that the disk
/// gives the same time: some keep full seconds only.
QStringList FindReports(const QString &folder)
{
    QFileInfoList reports =
        QDir(folder).entryInfoList({ QStringLiteral("*.xml") }, QDir::Files, QDir::Name | QDir::Reversed);
    std::stable_sort(reports.begin(), reports.end(), [](const QFileInfo &left, const QFileInfo &right) {
        return left.lastModified() > right.lastModified();
    });
    QStringList names;
    for (const QFileInfo &report : reports) {
        names << report.fileName();
    }
    return names;
}

} // namespace

ReportList::ReportList(const QString &folder, QWidget *parent)
    : QListWidget(parent)
    , m_sFolder(folder)
{
    setObjectName(QStringLiteral("reports"));
    setAlternatingRowColors(true);
    new EmptyHint(tr("There are no reports in this folder yet. Press the report button to make one."), *this);
    connect(this, &QListWidget::currentTextChanged, this, [this](const QString &file) {
        Q_EMIT ReportChosen(file.isEmpty() ? QString() : QDir(m_sFolder).filePath(file));
    });
    connect(&m_oWatcher, &QFileSystemWatcher::directoryChanged, this, &ReportList::Refresh);
    m_oWatcher.addPath(folder);
}

void ReportList::SetFolder(const QString &folder)
{
    if (!m_oWatcher.directories().isEmpty()) {
        m_oWatcher.removePaths(m_oWatcher.directories());
    }
    m_sFolder = folder;
    m_lFiles.clear();
    clear();
    Refresh();
}

void ReportList::Refresh()
{
    // A folder that was deleted and made again is a new one to the watcher.
    if (m_oWatcher.directories().isEmpty() && QDir(m_sFolder).exists()) {
        m_oWatcher.addPath(m_sFolder);
    }
    const QStringList files = FindReports(m_sFolder);
    if (files == m_lFiles) {
        return;
    }
    const QString chosen = currentItem() == nullptr ? QString() : currentItem()->text();
    const bool hasNew = !files.isEmpty() && !m_lFiles.contains(files.first());
    const int kept = files.indexOf(chosen);
    m_lFiles = files;
    {
        const QSignalBlocker blocker(this);
        clear();
        addItems(files);
        setCurrentRow(-1);
    }
    setCurrentRow(hasNew || kept < 0 ? 0 : kept);
    if (files.isEmpty()) {
        Q_EMIT ReportChosen(QString());
    }
}
