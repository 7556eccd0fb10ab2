#include "schema/openfiles.h"

#include "dom/limits.h"

#include <QFileInfo>

#include <algorithm>

namespace {

// Two names of one file, as "t.xsd" and "sub/../t.xsd", must not look like two files.
QString CanonicalPath(const QString &path)
{
    const QFileInfo file(path);
    const QString canonical = file.canonicalFilePath();
    return canonical.isEmpty() ? file.absoluteFilePath() : canonical;
}

} // namespace

OpenFiles::OpenFiles(const QString &topPath)
    : m_sTopPath(topPath)
    , m_lFiles { { CanonicalPath(topPath), 0 } }
{
}

QString OpenFiles::PathOf(const QString &location) const
{
    const QLatin1Char separator('/');
    if (m_sTopPath.endsWith(QLatin1String(".xsd"))) {
        return m_sTopPath.left(m_sTopPath.lastIndexOf(separator)) + separator + location;
    }
    return m_sTopPath.endsWith(separator) ? location : separator + location;
}

QString OpenFiles::Enter(const QString &path, std::size_t openTags)
{
    const QString canonicalPath = CanonicalPath(path);
    const bool isOpen = std::any_of(m_lFiles.begin(), m_lFiles.end(),
                                    [&canonicalPath](const File &file) { return file.m_sPath == canonicalPath; });
    if (isOpen) {
        return QStringLiteral("it is being read already");
    }
    if (m_lFiles.size() > limits::kMaxOpenIncludes) {
        return QStringLiteral("at most %1 includes may be open within each other").arg(limits::kMaxOpenIncludes);
    }
    if (m_iIncludes >= limits::kMaxIncludes) {
        return QStringLiteral("at most %1 includes are read in a run").arg(limits::kMaxIncludes);
    }
    // Every open file is parsed on the stack of the one that includes it.
    const std::size_t level = m_lFiles.back().m_iLevel + openTags;
    if (level > limits::kMaxFileDepth) {
        return QStringLiteral("it stands below more than %1 tags of the open files").arg(limits::kMaxFileDepth);
    }
    m_lFiles.push_back({ canonicalPath, level });
    ++m_iIncludes;
    return QString();
}
