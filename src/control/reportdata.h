#pragma once

#include "tagwright_export.h"

#include <QString>

#include <type_traits>

namespace values {
class TreeItem;
class ValueBase;
} // namespace values

/// Which field of an ExplicitReportData holds the value. The numbers are fixed.
enum ExplicitKind {
    EXPLICIT_STRING = 0,
    EXPLICIT_BOOL = 1,
    EXPLICIT_DOUBLE = 2,
    EXPLICIT_LONG = 3,
    /// No explicit value.
    EXPLICIT_NONE = 4
};

/// A value that the host gives as it is, without a source in the value tree. The fields that the kind doesn't name are
/// empty or zero.
class TAGWRIGHT_EXPORT ExplicitReportData
{
public:
    /// No value.
    ExplicitReportData();
    // NOLINTBEGIN(google-explicit-constructor): implicit, as the interface has it.
    /// A text.
    ExplicitReportData(QString text);
    /// The same for a text literal in UTF-8: without it C++ would take a literal for a bool.
    ExplicitReportData(const char *text);
    /// Any other pointer would be taken for a bool.
    template <typename Pointee, typename = std::enable_if_t<!std::is_same_v<std::remove_cv_t<Pointee>, char>>>
    ExplicitReportData(Pointee *) = delete;
    /// A number. It is divided by 10 to the item's exponent when it is written.
    ExplicitReportData(double number);
    /// A truth value.
    ExplicitReportData(bool flag);
    /// A whole number. It is never scaled.
    ExplicitReportData(long value);
    // NOLINTEND(google-explicit-constructor)
    ExplicitReportData(const ExplicitReportData &other);
    ExplicitReportData &operator=(const ExplicitReportData &other);
    virtual ~ExplicitReportData();

    /// Which of the fields below counts.
    ExplicitKind m_Kind = EXPLICIT_NONE;
    /// The text of EXPLICIT_STRING.
    QString m_sText;
    /// The number of EXPLICIT_DOUBLE.
    double m_dNumber = 0.0;
    /// The truth value of EXPLICIT_BOOL.
    bool m_bFlag = false;
    /// The whole number of EXPLICIT_LONG. Beyond 32 bits it is not written.
    long m_lValue = 0;
};

/// Binds one name of the report to a source for its value: a value of the host's value tree, another place of that
/// tree, a fixed text, or an explicit value.
///
/// The source is looked up once, at construction, and read at each report: what the tree gave must live as long as the
/// item and its copies, which borrow it. GUI thread only. Nothing here raises or traces; a false result means that the
/// item has no value in that form.
class TAGWRIGHT_EXPORT ReportData
{
public:
    /// `name` is an element or attribute name, or a parent's and a child's name joined by "/". `path` names the source
    /// in the installed value tree; only where it is empty does `value`, a fixed text, count. `maxOccurs` above 1 asks
    /// for that many elements. `auxText` is kept for the host, nothing reads it. Numbers are divided by 10 to the power
    /// of `exponent`: 3 turns Hz into kHz. `unit` goes into the element's attribute "Unit". The last argument has no
    /// effect; give false.
    ReportData(QString name, QString path, QString value, int maxOccurs, QString auxText, int exponent, QString unit,
               bool);
    /// A copy reads the same source.
    ReportData(const ReportData &other);
    ReportData &operator=(const ReportData &other);
    virtual ~ReportData();

    /// The number of the source, divided by 10 to the exponent. A selection whose text ends in a frequency with its
    /// unit ("100 kHz") gives that frequency in Hz, if its own number doesn't show the same digits. Explicit values are
    /// not looked at. `value` stays as it is where the result is false.
    bool GetDataValue(double &value);
    /// The text of the source, as it is. Explicit values are not looked at.
    bool GetDataValue(QString &value);
    /// The explicit bool; false if the item holds none.
    bool GetDataValue(bool &value);
    /// The explicit long; false if the item holds none.
    bool GetDataValue(long &value);

    /// Replaces the explicit value and opens the item, also with a `data` that holds none.
    void SetExplicitData(ExplicitReportData data);
    /// The explicit value; of kind EXPLICIT_NONE if there is none.
    ExplicitReportData GetExplicitData();

    /// How often the element is to stand.
    int GetMaxOccurs();
    /// The name of the element or attribute, or "parent/child".
    QString GetName();
    /// The text for the attribute "Unit".
    QString GetUnit();
    /// The power of ten by which numbers are divided.
    int GetExponent();
    /// A number divided by 10 to the power of the exponent.
    double Scaled(double number) const;
    /// The value that the tree gave at construction, or null. The tree's.
    values::ValueBase *GetVTObject();
    /// The item has a source or was given explicit data.
    bool IsOpen();

private:
    bool ReadSelection(double number, QString text, double &value) const;

    QString m_sName;
    QString m_sPath;
    QString m_sValue;
    values::ValueBase *m_pVTObject = nullptr; // the value tree's
    values::TreeItem *m_pVTItem = nullptr; // the value tree's
    QString m_sAuxText;
    int m_iExponent = 0;
    int m_iMaxOccurs = 0;
    QString m_sUnit;
    bool m_bOpen = false;
    ExplicitReportData m_ExplicitData;
};
