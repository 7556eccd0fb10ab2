#pragma once

#include "tagwright_export.h"

#include <QMetaType>
#include <QString>
#include <QStringList>
#include <QVector>

/// What became of a report. A value class: a copy may be kept past the report.
///
/// Sentences are for an operator or a log; they are made only where somebody asks for the outcome.
class TAGWRIGHT_EXPORT ReportOutcome
{
public:
    /// What became of the report's file.
    enum class State {
        /// There is no file yet: the report hasn't been made, or its comment dialog is open.
        Open,
        /// The file stands there, whole.
        Saved,
        /// The file could not be written: GetSaveError() says why.
        NotSaved,
        /// The operator has ended the comment dialog without saving.
        Dropped
    };

    /// A value, or a number of repetitions, that the schema doesn't take at this place. Nothing was written.
    struct RefusedValue
    {
        /// As of ReportPlace::GetText().
        QString m_sPlace;
        /// The value as it came, in the form that was tried first.
        QString m_sValue;
        /// Completes "the value was not written: ".
        QString m_sReason;
        /// A number of ITagwright::ErrorID.
        int m_iError = 0;
    };

    /// Open as long as the comment dialog is.
    State GetState() const { return m_eState; }
    /// True for a file that stands there whole, whatever was refused or is missing in it.
    bool IsSaved() const { return m_eState == State::Saved; }
    /// The report file, as it is called on this system.
    QString GetPath() const { return m_sPath; }
    /// Why there is no whole file, where the system has refused in its own words; empty unless the state is NotSaved.
    QString GetSaveError() const { return m_sSaveError; }

    /// False where the schema could not be read or has no root: the report is empty then.
    bool IsSchemaRead() const { return m_sSchemaError.isEmpty(); }
    /// Why not; empty where it was.
    QString GetSchemaError() const { return m_sSchemaError; }

    /// The values that were refused in each of their forms, in the order in which that was known: during the walk a
    /// count as soon as it was refused and a value behind its element, behind the walk the values of alternatives that
    /// had to go.
    QVector<RefusedValue> GetRefusedValues() const { return m_lRefusedValues; }
    /// The places of the mandatory elements, with valid output also of the required attributes, that got no value, in
    /// the order of the report.
    QStringList GetMissing() const { return m_lMissing; }
    /// Saved, the schema read, nothing refused and nothing missing.
    bool IsComplete() const;

    /// For whoever makes the report, as are the functions behind this one.
    void SetPath(const QString &path) { m_sPath = path; }
    /// An empty `error` says that the schema was read.
    void SetSchemaError(const QString &error) { m_sSchemaError = error; }
    /// An empty `error` says that the file stands there.
    void SetSaveResult(const QString &error);
    /// The operator has ended the dialog unsaved.
    void SetDropped() { m_eState = State::Dropped; }
    /// To be called as soon as it is known.
    void AddRefused(const RefusedValue &refused) { m_lRefusedValues.append(refused); }
    /// To be called in the order of the report.
    void AddMissing(const QString &place) { m_lMissing.append(place); }

private:
    State m_eState = State::Open;
    QString m_sPath;
    QString m_sSaveError;
    QString m_sSchemaError;
    QVector<RefusedValue> m_lRefusedValues;
    QStringList m_lMissing;
};

Q_DECLARE_METATYPE(ReportOutcome)
