#include "dom/fileguard.h"

#include "dom/limits.h"

#include <QFile>
#include <QFileInfo>

#ifdef Q_OS_UNIX
#include <sys/stat.h>
#endif

namespace dom {

QString CheckXmlFile(const QString &path)
{
    if (!IsRegularFile(path)) {
        return QStringLiteral("%1 is no regular file").arg(path);
    }
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return QStringLiteral("%1 can't be opened: %2").arg(path, file.errorString());
    }
    return QString();
}

bool IsRegularFile(const QString &path)
{
    return QFileInfo(path).isFile();
}

bool IsFifo(const QString &path)
{
#ifdef Q_OS_UNIX
    struct stat status = {};
    return stat(QFile::encodeName(path).constData(), &status) == 0 && S_ISFIFO(status.st_mode);
#else
    Q_UNUSED(path)
    return false;
#endif
}

} // namespace dom
