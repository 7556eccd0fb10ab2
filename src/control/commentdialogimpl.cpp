#include "control/commentdialogimpl.h"

#include "dom/documentsaver.h"
#include "host/veldra.h"
#include "report/reportfate.h"
#include "report/xmlcreatereport.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDomDocument>
#include <QLayout>
#include <QMessageBox>
#include <QPointer>
#include <QScreen>

#include <initializer_list>
#include <memory>
#include <utility>
#include <vector>

namespace {

/// The first element that bears one of the names, the first name that there is.
QDomElement FindElement(const QDomDocument &document, std::initializer_list<QString> names)
{
    QDomElement element;
    for (auto name = names.begin(); element.isNull() && name != names.end(); ++name) {
        element = document.elementsByTagName(*name).at(0).toElement();
    }
    return element;
}

QString TextOrDashes(const QDomElement &element, const QString &suffix = QString())
{
    return element.isNull() ? QStringLiteral("---") : element.text() + suffix;
}

/// No dialog may outlive the application, whoever owns it; its owner hears of its end through a guarded pointer.
void EndAllDialogs()
{
    // A host that hears of the end of one may end others.
    std::vector<QPointer<CommentDialogImpl>> dialogs;
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        dialogs.emplace_back(qobject_cast<CommentDialogImpl *>(widget));
    }
    for (const QPointer<CommentDialogImpl> &dialog : dialogs) {
        const std::unique_ptr<CommentDialogImpl> ended(dialog.data());
    }
}

/// Has EndAllDialogs() called when the application ends, or before that when the library is unloaded: nothing of the
/// library may stay with Qt then.
class DialogsEnd
{
public:
    DialogsEnd() = default;
    ~DialogsEnd()
    {
        qRemovePostRoutine(&EndAllDialogs);
        EndAllDialogs();
    }
    Q_DISABLE_COPY(DialogsEnd)

    /// Once is enough, but the next application needs it again.
    static void Arrange()
    {
        static const DialogsEnd end;
        qRemovePostRoutine(&EndAllDialogs);
        qAddPostRoutine(&EndAllDialogs);
    }
};

QString UnitSuffix(const QDomElement &element)
{
    const QString unit = element.attribute(QStringLiteral("Unit"));
    return unit.isEmpty() ? QString() : QLatin1Char(' ') + unit;
}

} // namespace

CommentDialogImpl::CommentDialogImpl()
    : CommentDialogImpl(std::make_shared<ReportFate>())
{
}

CommentDialogImpl::CommentDialogImpl(std::shared_ptr<ReportFate> fate)
    : QDialog(nullptr, Qt::WindowTitleHint | Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint)
    , m_pFate(std::move(fate))
    , m_pSelf(this, [](CommentDialogImpl *) {})
{
    DialogsEnd::Arrange();
    setObjectName(QLatin1String("ToReportCommentDialog"));
    setupUi(this);
    connect(m_pSaveButton, &QPushButton::clicked, this, &CommentDialogImpl::SlotSaveWithComment);
    connect(m_pNoCommentButton, &QPushButton::clicked, this, &CommentDialogImpl::SlotSaveWithoutComment);
}

CommentDialogImpl::~CommentDialogImpl()
{
    // Whoever hears of the fate may end the builder, which must not end the dialog once more.
    m_pSelf.reset();
    m_pFate->Settle();
}

void CommentDialogImpl::ShowData()
{
    const Orvo::DateTime now(OrvoOS::Create().GetTime());
    const QString time = now.toString(QLatin1String("yyyy/MM/dd hh:mm:ss"));
    m_pTimeLabel->setText(time);
    setWindowTitle(QLatin1String("ToReport - ") + time);
    ShowValues();
    GrowToTexts();
    m_pTextEdit->setFocus();
    show();
}

void CommentDialogImpl::End()
{
    if (m_iBusy == 0) {
        const std::unique_ptr<CommentDialogImpl> ended(this);
        return;
    }
    m_pDocument = nullptr;
    m_bEnded = true;
    hide();
}

void CommentDialogImpl::Keep(std::shared_ptr<XmlCreateReport> report)
{
    m_bKeepsReport = true;
    // No member: the builder's end must find the dialog destroyed, or it would destroy it once more.
    connect(this, &QObject::destroyed, [kept = std::move(report)] {});
}

void CommentDialogImpl::setVisible(bool isVisible)
{
    ++m_iBusy;
    QDialog::setVisible(isVisible);
    if (!isVisible) {
        m_pFate->Settle();
    }
    m_bEnded = m_bEnded || (m_bKeepsReport && !isVisible);
    LeaveQt();
}

void CommentDialogImpl::done(int result)
{
    ++m_iBusy;
    QDialog::done(result);
    LeaveQt();
}

// Asked for by the outermost of Qt's functions: an event loop that runs inside one of them would not wait for its end.
void CommentDialogImpl::LeaveQt()
{
    --m_iBusy;
    if (m_iBusy == 0 && m_bEnded) {
        deleteLater();
    }
}

void CommentDialogImpl::SlotSaveWithComment()
{
    Save(m_pTextEdit->toPlainText());
}

void CommentDialogImpl::SlotSaveWithoutComment()
{
    Save(QString());
}

void CommentDialogImpl::closeEvent(QCloseEvent *event)
{
    event->accept();
    if (m_bSaved || m_pDocument == nullptr) {
        return;
    }
    if (m_pTextEdit->toPlainText().isEmpty()) {
        event->setAccepted(SaveDocument());
        return;
    }
    // The report's owner may end the dialog while the question is open.
    const QPointer<CommentDialogImpl> guard(this);
    const int answer = AskForComment();
    if (guard == nullptr) {
        return;
    }
    if (answer == QMessageBox::Yes) {
        event->setAccepted(Save(m_pTextEdit->toPlainText()));
    } else if (answer == QMessageBox::No) {
        event->setAccepted(Save(QString()));
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
    const QDomElement frequency = FindElement(*m_pDocument, { QStringLiteral("Frequency") });
    const QDomElement bandwidth = FindElement(*m_pDocument, { QStringLiteral("Bandwidth") });
    const QDomElement level = FindElement(*m_pDocument, { QStringLiteral("Level"), QStringLiteral("Signal_Level") });
    const QDomElement azimuth = FindElement(*m_pDocument, { QStringLiteral("Azimuth"), QStringLiteral("DFAzimuth") });
    m_pFrequencyLabel->setText(TextOrDashes(frequency, UnitSuffix(frequency)));
    m_pBandwidthLabel->setText(TextOrDashes(bandwidth, UnitSuffix(bandwidth)));
    m_pLevelLabel->setText(TextOrDashes(level));
    m_pAzimuthLabel->setText(TextOrDashes(azimuth, QStringLiteral(" \u00B0")));
}

// The least sizes of the form let the layout cut texts; values, larger fonts and translations may need more room. What
// would not leave room on the screen for the rest of the form is cut, and shows more when the operator widens the
// dialog.
void CommentDialogImpl::GrowToTexts()
{
    const QSize available = screen()->availableSize();
    for (QLabel *label : { m_pFrequencyLabel, m_pLevelLabel, m_pBandwidthLabel, m_pTimeLabel, m_pAzimuthLabel }) {
        const QSize wanted = label->sizeHint();
        if (wanted.width() > available.width() / 4 || wanted.height() > available.height() / 8) {
            label->setMinimumWidth(qMax(label->minimumWidth(), qMin(wanted.width(), available.width() / 4)));
            label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);
            label->setAlignment(Qt::AlignLeft | Qt::AlignTop);
        }
    }
    vboxLayout->activate();
    const QMargins margins = vboxLayout->contentsMargins();
    const int labelsWidth = gridLayout->sizeHint().width() + margins.left() + margins.right();
    resize(size().expandedTo(vboxLayout->totalMinimumSize()).expandedTo(QSize(labelsWidth, 0)).boundedTo(available));
}

// The schema isn't asked: the operator's word stands in every report.
QDomElement CommentDialogImpl::AddComment(const QString &comment)
{
    if (comment.isEmpty()) {
        return QDomElement();
    }
    QDomElement element = m_pDocument->createElement(QLatin1String("Comment"));
    m_pDocument->documentElement().appendChild(element);
    element.appendChild(m_pDocument->createTextNode(comment));
    return element;
}

/// False if the dialog stays open, with the comment in its editor alone.
bool CommentDialogImpl::Save(const QString &comment)
{
    if (m_pDocument == nullptr) {
        return true;
    }
    QDomElement element = AddComment(comment);
    if (SaveDocument()) {
        hide();
        return true;
    }
    element.parentNode().removeChild(element);
    return false;
}

// Unless it is to stay, the dialog ends without a word on a failure.
bool CommentDialogImpl::SaveDocument()
{
    const QString failure = dom::SaveDocument(*m_pDocument, m_sFileName).m_sFailure;
    m_bSaved = failure.isEmpty() || m_bSaved;
    m_pFate->GetOutcome().SetSaveResult(failure);
    if (failure.isEmpty() || !m_bKeepUnsaved) {
        return true;
    }
    ShowFailure(failure);
    return false;
}

void CommentDialogImpl::ShowFailure(const QString &failure)
{
    if (m_pFailureLabel == nullptr) {
        m_pFailureLabel = new QLabel(this);
        m_pFailureLabel->setObjectName(QStringLiteral("m_pFailureLabel"));
        m_pFailureLabel->setTextFormat(Qt::PlainText);
        m_pFailureLabel->setWordWrap(true);
        vboxLayout->insertWidget(1, m_pFailureLabel);
    }
    m_pFailureLabel->setText(
        tr("The report could not be saved: %1\nTry again, or press Escape to close without a report.").arg(failure));
}
