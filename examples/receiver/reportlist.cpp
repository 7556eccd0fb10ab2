#include "reportlist.h"

#include "emptyhint.h"

#include <QDir>
#include <QSignalBlocker>

#include <algorithm>

namespace {

/// The reports of a folder, the latest first. Their names are times, whose thousandths may have fewer than three
/// digits.
QStringList FindReports(const QString &folder)
{
    constexpr int kThousandths = 20;
    const auto toKey = [](const QString &file) {
        const QString rest = file.mid(kThousandths);
        const int number = rest.left(rest.indexOf(QLatin1Char('.'))).toInt();
        return std::pair(file.left(kThousandths), number);
    };
    QStringList files = QDir(folder).entryList({ QStringLiteral("*.xml") }, QDir::Files, QDir::Name | QDir::Reversed);
    std::stable_sort(files.begin(), files.end(),
                     [&](const QString &left, const QString &right) { return toKey(left) > toKey(right); });
    return files;
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
