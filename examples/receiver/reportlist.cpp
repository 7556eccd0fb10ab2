#include "reportlist.h"

#include <QDir>
#include <QSignalBlocker>

ReportList::ReportList(const QString &folder, QWidget *parent)
    : QListWidget(parent)
    , m_sFolder(folder)
{
    setObjectName(QStringLiteral("reports"));
    setAlternatingRowColors(true);
    connect(this, &QListWidget::currentTextChanged, this, [this](const QString &file) {
        Q_EMIT ReportChosen(file.isEmpty() ? QString() : QDir(m_sFolder).filePath(file));
    });
    connect(&m_oWatcher, &QFileSystemWatcher::directoryChanged, this, &ReportList::Refresh);
    m_oWatcher.addPath(folder);
}

void ReportList::Refresh()
{
    // A folder that was deleted and made again is a new one to the watcher.
    if (m_oWatcher.directories().isEmpty() && QDir(m_sFolder).exists()) {
        m_oWatcher.addPath(m_sFolder);
    }
    const QStringList files =
        QDir(m_sFolder).entryList({ QStringLiteral("*.xml") }, QDir::Files, QDir::Name | QDir::Reversed);
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
