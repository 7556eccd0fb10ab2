#include "control/commentdialogimpl.h"

#include "dom/documentsaver.h"
#include "host/veldra.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDomDocument>
#include <QLayout>
#include <QMessageBox>
#include <QPointer>

#include <memory>
#include <utility>
#include <vector>

namespace {

QDomElement FindElement(const QDomDocument &document, const QString &name)
{
    return document.elementsByTagName(name).at(0).toElement();
}

/// The element called `name`, else the one called `otherName`.
QDomElement FindElement(const QDomDocument &document, const QString &name, const QString &otherName)
{
    const QDomElement element = FindElement(document, name);
    return element.isNull() ? FindElement(document, otherName) : element;
}

QString TextOrDashes(const QDomElement &element, const QString &suffix = QString())
{
    return element.isNull() ? QStringLiteral("---") : element.text() + suffix;
}

/// No widget may outlive the application, whoever owns it; its owner hears of that through a guarded pointer.
void EndWithApplication()
{
    std::vector<std::unique_ptr<CommentDialogImpl>> ended;
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        if (auto *dialog = qobject_cast<CommentDialogImpl *>(widget)) {
            ended.emplace_back(dialog);
        }
    }
}

QString UnitSuffix(const QDomElement &element)
{
    const QString unit = element.attribute(QStringLiteral("Unit"));
    return unit.isEmpty() ? QString() : QLatin1Char(' ') + unit;
}

} // namespace

CommentDialogImpl::CommentDialogImpl()
    : QDialog(nullptr, Qt::WindowTitleHint | Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint)
{
    // Once in the list, however many dialogs there are.
    qRemovePostRoutine(&EndWithApplication);
    qAddPostRoutine(&EndWithApplication);
    setObjectName(QStringLiteral("ToReportCommentDialog"));
    setupUi(this);
    for (QLabel *label : { m_pFrequencyLabel, m_pLevelLabel, m_pBandwidthLabel, m_pTimeLabel, m_pAzimuthLabel }) {
        label->clear();
    }
    connect(m_pSaveButton, &QPushButton::clicked, this, &CommentDialogImpl::SlotSaveWithComment);
    connect(m_pNoCommentButton, &QPushButton::clicked, this, &CommentDialogImpl::SlotSaveWithoutComment);
}

CommentDialogImpl::~CommentDialogImpl() = default;

void CommentDialogImpl::SetDocument(QDomDocument *document)
{
    m_pDocument = document;
}

void CommentDialogImpl::SetFileName(QString fileName)
{
    m_sFileName = std::move(fileName);
}

void CommentDialogImpl::ShowData()
{
    const Orvo::DateTime now(OrvoOS::Create().GetTime());
    const QString time = now.toString(QStringLiteral("yyyy/MM/dd hh:mm:ss"));
    m_pTimeLabel->setText(time);
    setWindowTitle(QLatin1String("ToReport - ") + time);
    ShowValues();
    GrowToTexts();
    m_pTextEdit->setFocus();
    show();
}

void CommentDialogImpl::SlotSaveWithComment()
{
    AddComment(m_pTextEdit->toPlainText());
    SaveDocument();
    hide();
}

void CommentDialogImpl::SlotSaveWithoutComment()
{
    SaveDocument();
    hide();
}

void CommentDialogImpl::closeEvent(QCloseEvent *event)
{
    event->accept();
    if (m_bSaved) {
        return;
    }
    if (m_pTextEdit->toPlainText().isEmpty()) {
        SaveDocument();
        return;
    }
    // The report's owner may end the dialog while the question is open.
    const QPointer<CommentDialogImpl> guard(this);
    const int answer = AskForComment();
    if (guard == nullptr) {
        return;
    }
    if (answer == QMessageBox::Yes) {
        SlotSaveWithComment();
    } else if (answer == QMessageBox::No) {
        SlotSaveWithoutComment();
    } else {
        event->ignore();
    }
}

// QMessageBox::warning() would keep the box on the stack, where a dialog that is ended meanwhile would destroy it
// twice.
int CommentDialogImpl::AskForComment()
{
    const QPointer<QMessageBox> box(new QMessageBox(QMessageBox::Warning, tr("Warning"),
                                                    tr("You have enterd a comment. Would you like to save it?"),
                                                    QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel, this));
    const int answer = box->exec();
    if (box != nullptr) {
        box->deleteLater();
    }
    return answer;
}

void CommentDialogImpl::ShowValues()
{
    const QDomElement frequency = FindElement(*m_pDocument, QStringLiteral("Frequency"));
    const QDomElement bandwidth = FindElement(*m_pDocument, QStringLiteral("Bandwidth"));
    const QDomElement level = FindElement(*m_pDocument, QStringLiteral("Level"), QStringLiteral("Signal_Level"));
    const QDomElement azimuth = FindElement(*m_pDocument, QStringLiteral("Azimuth"), QStringLiteral("DFAzimuth"));
    m_pFrequencyLabel->setText(TextOrDashes(frequency, UnitSuffix(frequency)));
    m_pBandwidthLabel->setText(TextOrDashes(bandwidth, UnitSuffix(bandwidth)));
    m_pLevelLabel->setText(TextOrDashes(level));
    m_pAzimuthLabel->setText(TextOrDashes(azimuth, QStringLiteral(" \u00B0")));
}

// The least sizes of the form let the layout cut texts; values, larger fonts and translations may need more room.
void CommentDialogImpl::GrowToTexts()
{
    vboxLayout->activate();
    const QMargins margins = vboxLayout->contentsMargins();
    const int labelsWidth = gridLayout->sizeHint().width() + margins.left() + margins.right();
    resize(size().expandedTo(vboxLayout->totalMinimumSize()).expandedTo(QSize(labelsWidth, 0)));
}

// The schema isn't asked: the operator's word stands in every report.
void CommentDialogImpl::AddComment(const QString &comment)
{
    if (comment.isEmpty()) {
        return;
    }
    QDomElement element = m_pDocument->createElement(QStringLiteral("Comment"));
    m_pDocument->documentElement().appendChild(element);
    element.appendChild(m_pDocument->createTextNode(comment));
}

// What can't be saved is not told to the operator; the dialog ends all the same.
void CommentDialogImpl::SaveDocument()
{
    m_bSaved = dom::SaveDocument(*m_pDocument, m_sFileName).m_sFailure.isEmpty() || m_bSaved;
}
