#pragma once

#include <QString>

#include <cstddef>
#include <vector>

/// The files of a run that are being read, each included by the one before it, and the limits on them.
class OpenFiles
{
public:
    explicit OpenFiles(const QString &topPath);

    /// Opens an include that stands below `openTags` tags of the file that is open. False, with a reason, if it may not
    /// be read: it is open already, or a limit is reached.
    [[nodiscard]] bool Enter(const QString &path, std::size_t openTags);
    void Leave();

    /// The file that is being read.
    QString GetCurrent() const;

    /// Why the latest file was refused, as a sentence.
    QString GetReason() const;

private:
    struct File
    {
        QString m_sPath;
        std::size_t m_iLevel = 0;
    };

    bool IsOpen(const QString &canonicalPath) const;
    QString RefusalOf(const QString &canonicalPath, std::size_t level) const;

    std::vector<File> m_lFiles;
    int m_iIncludes = 0;
    QString m_sReason;
};
