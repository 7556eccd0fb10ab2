#pragma once

#include <QString>

#include <cstddef>
#include <vector>

/// The stack of files that a run is reading, each included by the one below it, and the limits on it.
class OpenFiles
{
public:
    explicit OpenFiles(const QString &topPath);

    /// Where an include is sought: from the top schema's directory, whichever file it stands in. A top schema whose
    /// name doesn't end in ".xsd" counts as having none.
    QString PathOf(const QString &location) const;

    /// Opens an include that stands below `openTags` tags of the current file. The result is empty, or says, as a
    /// sentence, why the include may not be read: it is open already, or a limit is reached.
    [[nodiscard]] QString Enter(const QString &path, std::size_t openTags);
    void Leave() { m_lFiles.pop_back(); }

    /// No include is open.
    bool IsAtTop() const { return m_lFiles.size() == 1; }
    /// The file that is being read.
    QString GetCurrent() const { return m_lFiles.back().m_sPath; }

private:
    struct File
    {
        QString m_sPath;
        std::size_t m_iLevel = 0;
    };

    QString m_sTopPath;
    std::vector<File> m_lFiles;
    int m_iIncludes = 0;
};
