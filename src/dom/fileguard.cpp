#include "dom/fileguard.h"

#include "dom/depthprobe.h"
#include "dom/markupscanner.h"

#include <QFile>
#include <QFileInfo>

#ifdef Q_OS_UNIX
#include <sys/stat.h>
#endif

namespace dom {

namespace {

QString Sentence(const QString &path, int line, const QString &reason)
{
    return QStringLiteral("%1, line %2: %3").arg(path, QString::number(line), reason);
}

} // namespace

QString CheckXmlFile(const QString &path, const ReadingLimits &limits)
{
    if (!IsRegularFile(path)) {
        return QStringLiteral("%1 is no regular file").arg(path);
    }
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return QStringLiteral("%1 can't be opened: %2").arg(path, file.errorString());
    }
    return CheckXml(&file, path, limits);
}

QString CheckXml(QIODevice *device, const QString &name, const ReadingLimits &limits)
{
    MarkupScanner scanner(device, limits);
    const MarkupScanner::Result result = scanner.Scan();
    if (result == MarkupScanner::Result::Refused) {
        return Sentence(name, scanner.GetLine(), scanner.GetReason());
    }
    DepthProbe probe(limits);
    if (result == MarkupScanner::Result::Doubtful && (!device->seek(0) || !probe.Run(device))) {
        return Sentence(name, probe.GetLine(), probe.GetReason());
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
