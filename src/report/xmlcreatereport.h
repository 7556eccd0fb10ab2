#pragma once

#include "tagwright_export.h"

#include "events/itagwright.h"
#include "report/reportoutcome.h"
#include "report/reportplace.h"
#include "schema/schematables.h"

#include <QDateTime>
#include <QString>
#include <QTime>

#include <functional>
#include <list>
#include <memory>
#include <type_traits>

class CommentDialogImpl;
class CurrentAttributes;
class Declarations;
class DomParser;
class QDialog;
class QDomDocument;
class QDomElement;
class ReportFate;
class XmlSchemaHandler;
struct GivenValue;

namespace dom {
class GuardedReader;
}

/// Makes one report: reads a schema, walks its template through the callback and saves what came out of it.
///
/// An object serves one run. Its order of calls: construct it, call CreateXmlFromSchema() once, call the setters from
/// inside ITagwright::XmlUpdate() during that run, destroy it when the report is done (a comment dialog may need it
/// longer than the run). Everything happens on the caller's thread, which is the GUI thread where a dialog is wanted.
///
/// The setters work on the current element: the one that the ElemBeginEvent in delivery has announced. During the
/// DocBeginEvent and the DocEndEvent there is none. A setter that is called outside a run does nothing but trace.
/// They have no result; what does not fit is reported by ErrorEvents, delivered on this stack before the setter
/// returns, and the receiver may answer one with another setter call.
class TAGWRIGHT_EXPORT XmlCreateReport
{
public:
    /// `pCallback` receives all events; it is not owned, must outlive this object and must not be null. With a null
    /// one, which is traced, a run returns false and the setters do nothing.
    // NOLINTNEXTLINE(google-explicit-constructor): implicit, as the interface has it.
    XmlCreateReport(ITagwright *pCallback);
    /// Ends the comment dialogs that are still open, unsaved, and then the document.
    ~XmlCreateReport();
    Q_DISABLE_COPY(XmlCreateReport)

    /// For a report that is valid where its schema lies in the documented subset and its values fit; off by default. To
    /// be called before the run. With it each element is announced, whatever has a value, and a last pass before the
    /// saving takes out what got none: optional elements and containers, unused alternatives, attributes, all that the
    /// template says of types and facets. Mandatory elements, and attributes with a default, take the default; what the
    /// schema requires and nobody gave is named by GetOutcome(), each element by an error 16 at the end as well. How
    /// often an element may stand, what a value is held against, and the form in which it is written, is what its own
    /// declaration says; of the elements that a minOccurs above 1 puts side by side, one can be multiplied.
    void SetValidOutput(bool on) { m_bValidOutput = on; }

    /// Has the outcome name the values that were refused and what is missing, as valid output always does; off by
    /// default, since the sentences cost time. To be called before the run.
    void SetCollectOutcome(bool on) { m_bCollectOutcome = on; }

    /// `handler` is called once, when it is known what became of the report: before CreateXmlFromSchema() returns
    /// without a dialog, with one when the dialog ends, be it by this object's or the application's end. It may be
    /// called on the stack of this object's or the dialog's destructor, must not throw, and may destroy this object
    /// unless the run is still on the stack. A handler that is set when that is known already is called at once.
    void SetFateHandler(std::function<void(const ReportOutcome &)> handler);
    /// Whether a comment dialog whose file can't be written stays open with its text and tells the operator why; off by
    /// default. To be called before the run.
    void SetKeepUnsavedDialog(bool keep) { m_bKeepUnsavedDialog = keep; }

    /// Runs the report. `schemaPath` is the XSD file, `reportPath` the file to write, both complete paths; "\" may
    /// stand for "/" in both. With `showCommentDialog` the saving is left to a dialog, which is open when the call
    /// returns.
    ///
    /// The result says that the schema was read, and nothing else: a value that did not fit or a file that could not
    /// be written does not change it. Where the schema can't be read an empty report file is left. A second call on
    /// one object returns false and does nothing.
    bool CreateXmlFromSchema(QString schemaPath, QString reportPath, bool showCommentDialog);

    /// The comment dialogs of this report, in order of creation. They belong to this object, and an open one ends with
    /// it, unsaved: keep it until all of them are hidden, as dialogs are that have ended.
    std::list<QDialog *> GetCommentDialogs() const;

    /// Gives the current element its value and ends it for the walk: its template attributes that served the check are
    /// removed. Raises 7 without a current element, 8 and 9 where it has no type, 9 where its type has no "string" in
    /// it (nor "short" or "long", which every element setter takes), 15 for a value outside its enumeration.
    void SetXmlValue(QString value);
    /// The same for a text literal in UTF-8: without it C++ would take a literal for a bool.
    void SetXmlValue(const char *value);
    /// Any other pointer would be taken for a bool.
    template <typename Pointee, typename = std::enable_if_t<!std::is_same_v<std::remove_cv_t<Pointee>, char>>>
    void SetXmlValue(Pointee *value) = delete;
    /// Twelve significant digits are written; for the type "short" the value is cut towards zero. Raises 7, 8 (twice)
    /// and 10, 10, or 15 for a value outside its bounds or one that a "short" can't hold.
    void SetXmlValue(double value);
    /// Raises 7, 8 and 11, 11, or 15 for a value outside its bounds. One that is refused by a bound leaves the element
    /// without its type.
    void SetXmlValue(int value);
    /// Writes "true" or "false". Raises 7, 8 and 14, or 14.
    void SetXmlValue(bool value);
    /// Writes the ISO form; an invalid one counts as a value, with empty text. Raises 7, 8 and 12, or 12.
    void SetXmlValue(QDateTime value);
    /// Writes the ISO form. Raises 7, 8 and 13, or 13.
    void SetXmlValue(QTime value);

    /// Gives the attribute `name` of the current element its value, in the place of the type that the template holds
    /// there. The element itself still counts as one without a value. Raises 9 where the attribute is missing or its
    /// type has no "string" in it, 15 for a value outside the attribute's enumeration; does nothing without a current
    /// element.
    void SetAttributeValue(QString name, QString value);
    /// The same for a text literal in UTF-8: without it C++ would refuse a literal as ambiguous.
    void SetAttributeValue(QString name, const char *value);
    /// Writes the ISO form. Raises 12; does nothing without a current element.
    void SetAttributeValue(QString name, QDateTime value);
    /// Raises 7 without a current element, 11, or 15 for a value outside the attribute's bounds.
    void SetAttributeValue(QString name, int value);
    /// Twelve significant digits are written. Raises 7, 10, or 15.
    void SetAttributeValue(QString name, double value);
    /// Removes the attribute `name` of the current element. One that it doesn't have is no error.
    void RemoveAttribute(QString name);

    /// Makes the current element, whose name `name` must be, stand `maxOccurs` times (1 and less make no copy): copies
    /// of it as it stands are put behind it, and it is announced again. Raises 16 where the schema doesn't allow the
    /// count at this place, twice where it says nothing of the name.
    ///
    /// A call with the name of the call before, refused or not, is silent, and so is one for an element that has been
    /// multiplied already or is such a copy: a receiver may call this at each announcement. With valid output only a
    /// call for the same declaration below the same parent counts as one with the name of the call before.
    void SetElementMaxOccurs(QString name, int maxOccurs);
    /// Gives up the current element as an alternative of a choice: it is removed, and the walk goes on behind its next
    /// sibling, which is not announced unless valid output is on. Raises -1 where it is no alternative or the last one
    /// that is left.
    void DiscardChoiceItem();

    /// Says that the current element is there although it has no value, as a container that stands for itself. Counts
    /// as a value for what valid output leaves in the report; does nothing without it, or without a current element.
    void KeepCurrentElement();

    /// True where it is called for the current element the first time, false when that is announced again or there is
    /// none: for a receiver that must do something once for each element.
    bool ServeOnce();

    /// Where the current element stands, or the owner of the attribute `attribute` of it; no place without a current
    /// element. Ordinals count the elements that were announced, each once, whatever has been dropped meanwhile.
    ReportPlace GetPlace(const QString &attribute = QString()) const;

    /// What became of the report, as far as it is known: the schema and the path from the run on, the file behind it or
    /// behind the end of the dialog. Refused values and missing elements are only named with SetCollectOutcome() or
    /// SetValidOutput().
    ReportOutcome GetOutcome() const;

private:
    // The run.
    bool ParseSchema(const QString &schemaPath);
    QString ExplainEmptyTemplate(const QString &path, bool isParsed) const;
    void WalkTemplate();
    void SetSchemaAttributes(const QString &normalisedPath);
    void SaveReport(const QString &reportPath);
    void ShowCommentDialog(const QString &reportPath);

    // What the setters share.
    void Error(int id);
    bool FetchCurrentElement(const char *setter);
    bool HasCurrentElement() const;
    bool CheckCurrentElement();

    // Values. `attribute` is empty for the element's own value.
    CurrentAttributes &GetAttributes();
    void SetElement(GivenValue given);
    void SetAttribute(const QString &name, const GivenValue &given);
    QString TypeControl(QString expectedType);
    void RefuseType(const GivenValue &given, const QString &attribute);
    void RefuseValue(const GivenValue &given, const QString &attribute, const QString &reason);
    void WriteValue(GivenValue given, const QString &attribute);
    QString CheckValue(GivenValue &given, const QString &attribute, QStringList &used);
    void CreateAndAppendTextNode(QString text);

    // Occurrences.
    bool IsAskedAgain(const QString &name);
    bool CheckOccurs(const QString &name, int maxOccurs);
    bool CheckOccursMap(QString name, QString tagName, int maxOccurs, QDomElement *element);
    bool MayBeDiscarded() const;

    bool m_bValidOutput = false;
    bool m_bKeepUnsavedDialog = false;
    std::shared_ptr<const Declarations> m_pDeclarations; // with valid output
    bool m_bCollectOutcome = false;
    std::shared_ptr<ReportFate> m_pFate; // shared with the dialog, which may tell it when this object ends
    std::unique_ptr<dom::GuardedReader> m_pReader;
    std::unique_ptr<XmlSchemaHandler> m_pSchemaHandler;
    ITagwright *m_pCallback = nullptr; // not owned
    QDomDocument *m_pDocument = nullptr; // owned by m_pSchemaHandler
    QString m_sLastOccursName;
    int m_iDiscardedItems = 0;
    MissingMap m_MissingMap;
    OccursMap m_OccursMap;
    TypeMap m_TypeMap;
    ChoiceMap m_ChoiceMap;
    QDomElement *m_pCurrentElement = nullptr; // the walk's, or m_pDiscardSuccessor
    std::unique_ptr<DomParser> m_pDomParser; // null but during the walk
    std::list<std::weak_ptr<CommentDialogImpl>> m_CommentDialogs; // owned
    std::unique_ptr<QDomDocument> m_pDialogDocument; // the dialog's handle on the document
    // The element that the walk resumes behind after a discard; the walk reads it when the event has returned.
    std::unique_ptr<QDomElement> m_pDiscardSuccessor;
};
