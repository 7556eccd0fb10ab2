#pragma once

#include "readerrun.h"
#include "rules.h"
#include "schemamodel.h"

#include <QJsonArray>

/// A schema that has been read and checked by every rule.
class CheckedSchema
{
public:
    explicit CheckedSchema(const QString &path);

    /// "file:line:column: error: why", if there is nothing to check; else empty.
    const QString &GetError() const { return m_sError; }
    /// In the order of the files and of the places in them.
    const std::vector<Finding> &GetFindings() const { return m_lFindings; }
    const SchemaModel &GetModel() const { return m_oModel; }

    /// "file:line:column: warning: sentence: cure [rule]", with a terminal's colours or without.
    QString Line(const Finding &finding, bool inColours) const;
    QJsonObject Object(const Finding &finding) const;

private:
    ReaderRun m_oRun;
    SchemaModel m_oModel;
    QString m_sError;
    std::vector<Finding> m_lFindings;
};
