#pragma once

#include <QString>

#include <cstddef>
#include <vector>

/// The files of a run that are being read, each included by the one before it, and the limits on them.
class OpenFiles
{
public:
    explicit OpenFiles(const QString &topPath);

    /// Opens an include that stands below `openTags` tags of the file that is open. If it may not be read, since it is
    /// open already or a limit is reached, the result is why, as a sentence; else it is empty.
    [[nodiscard]] QString Enter(const QString &path, std::size_t openTags);
    void Leave();

    /// The file that is being read.
    QString GetCurrent() const;

private:
    struct File
    {
        QString m_sPath;
        std::size_t m_iLevel = 0;
    };

    QString RefusalOf(const QString &canonicalPath, std::size_t level) const;

    std::vector<File> m_lFiles;
    int m_iIncludes = 0;
};
