#pragma once

#include "support/files.h"

#include <QDir>
#include <QRegularExpression>
#include <QTemporaryDir>

namespace schemafiles {

/// "{n|text}" stands for n times the text, in which # is a number that counts from 10000, and ^ the one behind it.
/// "{-n|text}" counts down to 10000.
inline QString Repeated(const QString &text)
{
    constexpr int kFirst = 10000;
    const QStringList parts = text.split(QRegularExpression(QStringLiteral("[{}]")));
    QString repeated = parts.at(0);
    for (int i = 1; i < parts.size(); ++i) {
        const int times = i % 2 == 0 ? 0 : parts.at(i).section(QLatin1Char('|'), 0, 0).toInt();
        for (int n = 0; n < qAbs(times); ++n) {
            const int number = times < 0 ? kFirst - times - 1 - n : kFirst + n;
            repeated += parts.at(i)
                            .section(QLatin1Char('|'), 1)
                            .replace(QLatin1Char('#'), QString::number(number))
                            .replace(QLatin1Char('^'), QString::number(number + 1));
        }
        repeated += i % 2 == 0 ? parts.at(i) : QString();
    }
    return repeated;
}

/// Writes schemas that are given as texts which begin with "name.xsd: " at the start of a line, the top schema first,
/// and in which "include name.xsd;" stands for the tag. A single one needs no name. The result is the top schema's
/// path.
inline QString Write(const QTemporaryDir &dir, QString files)
{
    files.prepend(QLatin1String(files.contains(QLatin1String(".xsd: ")) ? "" : "top.xsd: "));
    const QRegularExpression include(QStringLiteral("include (\\S+);"));
    const QRegularExpression start(QStringLiteral("(^|\n)(?=\\S+\\.xsd: )"));
    for (QString text : files.split(start, Qt::SkipEmptyParts)) {
        const QString path = dir.filePath(text.section(QLatin1Char(':'), 0, 0));
        text = text.section(QLatin1Char(':'), 1).replace(include, QStringLiteral("<xs:include schemaLocation='\\1'/>"));
        QDir().mkpath(QFileInfo(path).path());
        WriteFile(path, QStringLiteral("<xs:schema>%1</xs:schema>").arg(text).toUtf8());
    }
    return dir.filePath(files.section(QLatin1Char(':'), 0, 0));
}

} // namespace schemafiles
