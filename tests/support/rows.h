#pragma once

#include <QStringList>
#include <QTest>

/// Rows of texts: the first is the row's name, the others are what its column "row" holds.
template <std::size_t Count, std::size_t Columns>
void AddRows(const char *const (&rows)[Count][Columns])
{
    QTest::addColumn<QStringList>("row");
    for (const auto &row : rows) {
        QStringList texts;
        for (std::size_t i = 1; i < Columns; ++i) {
            texts << QString::fromUtf8(row[i]);
        }
        QTest::newRow(row[0]) << texts;
    }
}
