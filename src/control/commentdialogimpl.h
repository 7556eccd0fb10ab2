#pragma once

#include "ui_commentdialog.h"

#include <QDialog>
#include <QString>

class QDomDocument;

/// Shows the operator the main values of a finished report, takes a comment and saves the report. It is not modal and
/// decides by itself when it ends, which it shows by being hidden; its owner destroys it. GUI thread only.
class CommentDialogImpl : public QDialog, public Ui::CommentDialog
{
    Q_OBJECT

public:
    CommentDialogImpl();
    ~CommentDialogImpl() override;

    /// The document to show, to add the comment to and to save. Not owned: it must outlive the dialog.
    void SetDocument(QDomDocument *document);
    /// The complete path of the report file.
    void SetFileName(QString fileName);
    /// Fills the labels and opens the dialog. Doesn't wait for its end.
    void ShowData();

public Q_SLOTS:
    void SlotSaveWithComment();
    void SlotSaveWithoutComment();

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    int AskForComment();
    void ShowValues();
    void GrowToTexts();
    void AddComment(const QString &comment);
    void SaveDocument();

    QDomDocument *m_pDocument = nullptr; // not owned
    QString m_sFileName;
    bool m_bSaved = false;
};
