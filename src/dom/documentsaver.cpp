#include "dom/documentsaver.h"

#include "dom/documentwriter.h"
#include "dom/nodewalk.h"

#include <QFile>
#include <QFileInfo>
#include <QTextStream>

#include <filesystem>
#include <system_error>

namespace dom {

namespace {

/// Qt's save takes about 1.6 KB of stack for each level; up to here it is safe also on a host's small stack.
constexpr int kMaxQtSaveDepth = 100;

/// The bytes as a QTextStream on the file itself would write them; there it costs a system call for each line.
QByteArray QtBytes(const QDomDocument &document)
{
    QByteArray bytes;
    QTextStream stream(&bytes, QIODevice::WriteOnly);
    document.save(stream, DocumentWriter::kIndent, QDomNode::EncodingFromDocument); // without one in UTF-8
    stream.flush();
    return bytes;
}

/// True for a named pipe, which may block whoever opens it.
bool IsFifo(const QString &path)
{
    std::error_code unknown;
    return std::filesystem::is_fifo(QFile::encodeName(path).toStdString(), unknown);
}

/// Empty, or why the file could not be written.
QString WriteFile(const std::string &bytes, const QString &path)
{
    if (IsFifo(path)) {
        return QStringLiteral("it is a FIFO, where writing may block");
    }
    QFile file(path);
    // A buffered write takes all and only fails, silently, when the file is closed.
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered)) {
        return file.errorString();
    }
    const auto size = static_cast<qint64>(bytes.size());
    QString reason = file.write(bytes.data(), size) == size ? QString() : file.errorString();
    file.close();
    if (reason.isEmpty() && file.error() != QFileDevice::NoError) {
        reason = file.errorString();
    }
    // A link stays; what it leads to is torn.
    if (!reason.isEmpty() && QFileInfo(path).isFile()) {
        QFile::remove(QFileInfo(path).canonicalFilePath());
    }
    return reason;
}

} // namespace

SaveResult SaveDocument(const QDomDocument &document, const QString &path)
{
    DocumentWriter writer;
    if (writer.Write(document)) {
        return { WriteFile(writer.TakeBytes(), path), writer.HasReplaced() };
    }
    if (IsDeeperThan(document, kMaxQtSaveDepth)) {
        return { QStringLiteral("it holds a document type, a namespace, a reference to an entity or another encoding, "
                                "and more than %1 elements lie within each other")
                     .arg(kMaxQtSaveDepth),
                 false };
    }
    return { WriteFile(QtBytes(document).toStdString(), path), false };
}

} // namespace dom
