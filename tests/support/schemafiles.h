#pragma once

#include "support/files.h"

#include <QDir>
#include <QRegularExpression>
#include <QTemporaryDir>

namespace schemafiles {

/// Writes schemas that are given as texts which begin with "name.xsd: " at the start of a line, the top schema first,
/// and in which "include name.xsd;" stands for the tag. The result is the top schema's path.
inline QString Write(const QTemporaryDir &dir, const QString &files)
{
    QString top;
    const QRegularExpression include(QStringLiteral("include (\\S+);"));
    QStringList names = files.split(QRegularExpression(QStringLiteral("(^|\n)(?=\\S+\\.xsd: )")), Qt::SkipEmptyParts);
    for (QString &text : names) {
        const QString path = dir.filePath(text.section(QLatin1Char(':'), 0, 0));
        text = text.section(QLatin1Char(':'), 1).replace(include, QStringLiteral("<xs:include schemaLocation='\\1'/>"));
        QDir().mkpath(QFileInfo(path).path());
        WriteFile(path, QStringLiteral("<xs:schema>%1</xs:schema>").arg(text).toUtf8());
        top = top.isEmpty() ? path : top;
    }
    return top;
}

} // namespace schemafiles
