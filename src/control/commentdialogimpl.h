#pragma once

#include "ui_commentdialog.h"

#include <QDialog>
#include <QString>

#include <memory>
#include <utility>

class QDomDocument;
class QDomElement;
class ReportFate;
class XmlCreateReport;

/// Shows the operator the main values of a finished report, takes a comment and saves the report. It is not modal and
/// decides by itself when it ends, which it shows by being hidden; its owner ends it with End(). GUI thread only.
class CommentDialogImpl : public QDialog, public Ui::CommentDialog
{
    Q_OBJECT

public:
    CommentDialogImpl();
    /// `fate` hears of each saving, and of the end of the dialog.
    explicit CommentDialogImpl(std::shared_ptr<ReportFate> fate);
    ~CommentDialogImpl() override;

    /// The document to show, to add the comment to and to save. Not owned: it must outlive the dialog or its End().
    void SetDocument(QDomDocument *document) { m_pDocument = document; }
    /// The complete path of the report file.
    void SetFileName(QString fileName) { m_sFileName = std::move(fileName); }
    /// Fills the labels and opens the dialog. Doesn't wait for its end.
    void ShowData();
    /// Destroys the dialog without saving. One that Qt is just showing or hiding is destroyed when Qt is through with
    /// it: a host can hear of that and end the dialog's owner at once.
    void End();
    /// Expires when the destruction begins. A QPointer to a widget stays until the slots of destroyed() have run.
    std::weak_ptr<CommentDialogImpl> GetSelf() const { return m_pSelf; }
    /// Takes over the builder to which the dialog belongs, as nobody else needs it: both go when the dialog has ended.
    void Keep(std::shared_ptr<XmlCreateReport> report);
    /// Whether it stays open with its text and says why when the file can't be written.
    void SetKeepUnsaved(bool keep) { m_bKeepUnsaved = keep; }

    void setVisible(bool isVisible) override;

public Q_SLOTS:
    void SlotSaveWithComment();
    void SlotSaveWithoutComment();
    void done(int result) override;

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    void LeaveQt();
    int AskForComment();
    void ShowValues();
    void GrowToTexts();
    QDomElement AddComment(const QString &comment);
    bool Save(const QString &comment);
    bool SaveDocument();
    void ShowFailure(const QString &failure);

    QDomDocument *m_pDocument = nullptr; // not owned; null when the dialog has been ended
    QString m_sFileName;
    std::shared_ptr<ReportFate> m_pFate; // the report's, or one of which nobody hears
    bool m_bSaved = false;
    bool m_bKeepsReport = false;
    bool m_bEnded = false; // to be destroyed as soon as Qt is through with it
    std::shared_ptr<CommentDialogImpl> m_pSelf; // owns nothing
    bool m_bKeepUnsaved = false;
    QLabel *m_pFailureLabel = nullptr; // null as long as all went well
    int m_iBusy = 0; // how many of Qt's functions that show or hide the dialog are on the stack
};
