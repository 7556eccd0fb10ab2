#pragma once

#include "tagwright_export.h"

#include "control/reportsource.h"
#include "events/itagwright.h"

#include <QDateTime>
#include <QPixmap>
#include <QPointer>
#include <QString>
#include <QWidget>

#include <memory>
#include <optional>
#include <type_traits>

class ElemBeginEvent;
class ElementItems;
class ExplicitReportData;
class ItemList;
class QTimer;
class QToolBar;
class QToolButton;
class QXmlAttributes;
class ReportData;
class ReportOutcome;
class SourceItem;
class SourceValue;
class VCButton;
class XmlCreateReport;

namespace values {
class Node;
}

/// The control that makes reports: a button for a tool bar, which is enabled as long as the schema file and the report
/// directory exist, and a list of named values that fill the report.
///
/// A host builds it, adds values by name, and the operator presses the button. Everything happens on the GUI thread.
/// A report runs to its end on the stack of its caller. The control may be deleted in a slot of any of its signals and
/// of its button's, also from an event loop that the slot runs, and by whoever watches the focus or the comment dialog;
/// but not while a report asks the host for a value or the time, or traces, nor when its button gains the focus, as Qt
/// still works on the button then. A button that Qt is at work on otherwise is hidden at once, and destroyed when Qt is
/// through with it.
class TAGWRIGHT_EXPORT VCReporting : public QWidget, public ITagwright
{
    Q_OBJECT

public:
    /// `schema` is the path of the XSD file; a bare file name is looked for beside the program. `reportDirectory` is
    /// where the reports go; "\" may stand for "/" in both. `toolBar` becomes the parent and may be null; placing the
    /// control on it is the host's. Without `showButton` there is no button and the control stays hidden. `objectName`
    /// is ASCII and may be null. With `deleteAfterUse` a value leaves the list when it has filled an element. `icon`
    /// replaces the button's picture unless it is null.
    VCReporting(QString schema, QString reportDirectory, QToolBar *toolBar, bool showButton, const char *objectName,
                bool deleteAfterUse, QPixmap icon);
    /// A report whose comment dialog is open outlives the control until the dialog ends.
    ~VCReporting() override;
    Q_DISABLE_COPY(VCReporting)

    /// Takes another schema, as the constructor does. Always true. The button follows at the next poll.
    bool SetSchema(QString schema);
    /// Takes another report directory, as the constructor does, from the next report on. An open comment dialog saves
    /// into the old one. The button follows at the next poll.
    void SetReportDirectory(QString reportDirectory);
    /// False disables the button and stops the poll. True polls at once, which enables the button if schema and
    /// directory exist, and lets the poll go on. Nothing happens in a control without a button.
    void EnableReportButton(bool enable);
    /// From the next report on: whether a report opens the comment dialog, which then saves it.
    void SetShowCommentDialog(bool show);
    /// From the next report on: whether a report is made valid, as XmlCreateReport::SetValidOutput() has it.
    void SetValidOutput(bool on) { m_bValidOutput = on; }
    /// From the next report on: whether a comment dialog whose file can't be written stays open with its text and says
    /// why, so that the operator can try again. Without it the dialog ends all the same.
    void SetKeepUnsavedDialog(bool keep) { m_bKeepUnsavedDialog = keep; }
    /// The button, or null. The control's.
    QToolButton *GetReportButton();

    /// Adds a value from the value tree, found by `path`, or, with an empty path, the fixed text `value`. The value
    /// fills each element or attribute called `name`; "parent/child" stands for child elements of that parent alone.
    /// Of several values of one name the first that was added counts. A path that the tree doesn't know gives an empty
    /// text.
    ///
    /// With `maxOccurs` above 1 the element is made to stand that often, as far as the schema allows it. `auxText` is
    /// for the host. Numbers are divided by 10 to the power of `exponent`. `unit` goes into the element's attribute
    /// "Unit" if the schema gives it one.
    void AddReportData(QString name, QString path, QString value, int maxOccurs, QString auxText, int exponent,
                       QString unit);
    /// Adds each value below a node, at any depth, under its short name. Nothing happens for null.
    void AddReportData(values::Node *node);
    /// Adds a text.
    void AddExplicitReportData(QString name, QString value, int maxOccurs, QString auxText, int exponent, QString unit);
    /// The same for a text literal in UTF-8: without it C++ would take a literal for a bool.
    void AddExplicitReportData(QString name, const char *value, int maxOccurs, QString auxText, int exponent,
                               QString unit);
    /// Adds a number, which is divided by 10 to the power of `exponent` when it is written.
    void AddExplicitReportData(QString name, double value, int maxOccurs, QString auxText, int exponent, QString unit);
    /// Adds a truth value. It fills boolean elements.
    void AddExplicitReportData(QString name, bool value, int maxOccurs, QString auxText, int exponent, QString unit);
    /// Adds an integer. It fills integer elements and is never scaled; what 32 bits can't hold is not written.
    void AddExplicitReportData(QString name, long value, int maxOccurs, QString auxText, int exponent, QString unit);
    /// The same for a plain int, for which C++ would find three forms equally good.
    void AddExplicitReportData(QString name, int value, int maxOccurs, QString auxText, int exponent, QString unit);
    /// Any other pointer would be taken for a bool.
    template <typename Pointee, typename = std::enable_if_t<!std::is_same_v<std::remove_cv_t<Pointee>, char>>>
    void AddExplicitReportData(QString name, Pointee *value, int maxOccurs, QString auxText, int exponent,
                               QString unit) = delete;
    /// Adds values by place: `source` is asked once for each element or attribute called `name`, also as
    /// "parent/child", and is told where it stands. What it gives is written as a value of its kind is: a number
    /// (divided by 10 to the power of `exponent`), a text, a bool, a date and time. An invalid QVariant is no value:
    /// the element or attribute counts as one that nobody knows. A source that throws gives no value, which is traced;
    /// a null one isn't added.
    ///
    /// The element stands `maxOccurs` times as far as the schema allows it. With 0 and less it gets no value, nor does
    /// anything below it. With "delete after use" sources and containers leave the list when the report has been made,
    /// not before.
    ///
    /// A source may change the list, but not delete the control.
    void AddReportSource(QString name, ReportSource source, int maxOccurs, QString auxText, int exponent, QString unit);
    /// The same for a count of each place. It is asked once for each element; copies that have been made already are
    /// neither more nor fewer by it. One that throws counts as 1.
    void AddReportSource(QString name, ReportSource source, ReportCount maxOccurs, QString auxText, int exponent,
                         QString unit);
    /// Makes an element without a value of its own stand `count` times, with its attributes filled from the list. With
    /// valid output it stays although nothing in it has a value.
    void AddReportContainer(QString name, int count);
    /// The same for a count of each place.
    void AddReportContainer(QString name, ReportCount count);
    /// Removes every value of exactly that name.
    void DeleteReportData(QString name);
    /// Removes all values.
    void ClearReportData();

    /// The report's side of the control; not for the host.
    void XmlUpdate(XmlEvent *event) override;

Q_SIGNALS:
    /// A report is about to be made: the last moment to change values, schema, directory or comment dialog for it.
    void PrepareToReport();
    /// Sent at every poll, changed or not: whether schema file and report directory both exist.
    void ReportDirAndSchemaAvailable(bool bAvailable);
    /// The schema was read and its report made. With the comment dialog the file follows when the dialog ends.
    void ReportSuccessful();
    /// The schema was not read. An empty report file is left.
    void ReportNotSuccessful();
    /// What became of a report (report/reportoutcome.h), once for each: behind the two above without a comment dialog,
    /// at the dialog's end with one, unless the control has ended before. Also for a report that a value's exception
    /// has ended, which neither of the two above is sent for.
    void ReportFinished(const ReportOutcome &outcome);

public Q_SLOTS:
    /// Makes a report, "yyyy-MM-dd_hh-mm-ss-z.xml" in the report directory. The result says that the schema was read;
    /// it is false, without a further signal after PrepareToReport(), for a schema path that doesn't end in ".xsd". A
    /// call from inside a slot of the signals that this sends returns false at once and sends nothing.
    bool SlotToReport();

private Q_SLOTS:
    void SlotCheckFileAndDirectory();

private:
    // The control.
    void SetInputPathToSchema(QString path);
    void MakeReportButton();
    void SetButtonEnabled(bool enable);
    QString MakeReportPath() const;
    bool RunReport();
    bool CreateReport(XmlCreateReport &report, const QString &reportPath);

    // The list.
    std::unique_ptr<ReportData> CreateReportData(QString name, int maxOccurs, QString auxText, int exponent,
                                                 QString unit);
    void AddExplicit(QString name, const ExplicitReportData &explicitData, int maxOccurs, QString auxText, int exponent,
                     QString unit);

    // Values by place.
    void AddSource(ReportData &traits, ReportSource source, ReportCount count);
    void AddContainer(ReportData &traits, ReportCount count);
    void EndSources();
    bool IsFirstVisit();
    bool IsAbsent();
    bool OpenSource(const std::shared_ptr<SourceItem> &source, int &count);
    QVariant GetSourceValue(const std::shared_ptr<SourceItem> &source, const QString &attribute);

    // The values of an element that the report announces.
    struct Element;
    void HandleElement(ElemBeginEvent &event);
    void ServeElement(ElementItems &items, Element &element);
    void PassOverItems(const ElementItems &items);
    bool ServeElementFrom(const std::shared_ptr<ReportData> &item, Element &element);
    bool ServeElementFromSource(const std::shared_ptr<SourceItem> &source, Element &element);
    void SetExplicitValue(const std::shared_ptr<ReportData> &item, const Element &element);
    void FinishElement(const ElementItems &items, const Element &element);

    // The values of its attributes.
    // Qt 5.15 marks the class deprecated.
    QT_WARNING_PUSH
    QT_WARNING_DISABLE_DEPRECATED
    void HandleAttributes(QXmlAttributes attributes);
    QT_WARNING_POP
    bool SetAttributeFromItems(bool areAllAsked);
    bool SetAttributeFrom(const std::shared_ptr<ReportData> &item);
    void StampAttribute();

    // A value on its way to the builder.
    void WriteItem(const std::shared_ptr<ReportData> &item);
    void WriteSource(const QVariant &value, ReportData &item);
    void WriteNextForm();
    template <typename Value>
    void Write(const Value &value);
    void PutAtRest();

    // The next form of a value that didn't fit.
    void HandleError(ITagwright::ErrorID id);
    void RetryAsInteger();
    void RetryAsText();
    void RetryAsDateTime();
    bool HasItem(const char *message);

    // A host may take the button to another place, or the timer, and see it destroyed there.
    QPointer<VCButton> m_pReportButton;
    QPointer<QTimer> m_pCheckTimer;
    std::shared_ptr<QObject> m_pButtonFilter; // shared by all that is at work on the button; null without one
    std::shared_ptr<XmlCreateReport> m_pReport; // the latest; shared by its dialog and its run
    QPixmap m_Pixmap;
    bool m_bValueWritten = false;
    bool m_bDeleteAfterUse = false;
    bool m_bSettingAttribute = false;
    double m_dCurrentNumber = 65535.0;
    std::shared_ptr<ReportData> m_pItem; // whose value is on its way to the builder
    SourceValue *m_pSourceValue = nullptr; // the same, of a source; on the stack
    int m_iCheckInterval = 10000;
    QString m_sSchemaPath;
    QString m_sReportDirectory; // with backslashes
    QString m_sCurrentAttribute;
    std::unique_ptr<ItemList> m_Items;
    // The text that was read as a date last, and its date.
    QString m_sLastDateText;
    QDateTime m_tLastDate;
    bool m_bShowCommentDialog = false;
    bool m_bReporting = false;
    bool m_bValidOutput = false;
    bool m_bKeepUnsavedDialog = false;
    quint64 m_iAnnouncement = 0; // of elements, in all reports
    std::optional<bool> m_oFirstVisit; // of the element in hand; nothing as long as nobody has asked
    QVector<ReportPlace::Step> m_lAbsent; // the way to the element that is to stand 0 times, while it is in hand
};
