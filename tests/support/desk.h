#pragma once

#include "support/controlrun.h"

#include "events/xmlevent.h"
#include "report/reportoutcome.h"

#include <QApplication>
#include <QDialog>
#include <QPushButton>
#include <QTimer>
#include <QToolButton>

#include <functional>

/// Does something at each event ahead of the control, as an own receiver may.
class HookedControl : public VCReporting
{
public:
    using VCReporting::VCReporting;
    void XmlUpdate(XmlEvent *event) override
    {
        m_fnHook(event);
        VCReporting::XmlUpdate(event);
    }
    std::function<void(XmlEvent *)> m_fnHook = [](XmlEvent *) {};
};

/// A control on the tool bar of a window, as a host has it, and in words what its signals say.
struct Desk : ControlRun
{
    explicit Desk(const QString &content = QStringLiteral("<t A/>"))
        : ControlRun(content)
    {
        const auto note = [this](const char *word) { return [this, word] { m_lHeard << QLatin1String(word); }; };
        QObject::connect(m_pControl.get(), &VCReporting::PrepareToReport, note("prepare"));
        QObject::connect(m_pControl.get(), &VCReporting::ReportSuccessful, note("good"));
        QObject::connect(m_pControl.get(), &VCReporting::ReportNotSuccessful, note("bad"));
        QObject::connect(m_pControl.get(), &VCReporting::ReportDirAndSchemaAvailable,
                         [this](bool available) { m_lHeard << QLatin1String(available ? "there" : "missing"); });
        QObject::connect(m_pControl.get(), &VCReporting::ReportFinished,
                         [this](const ReportOutcome &outcome) { NoteOutcome(outcome); });
        m_oToolBar.addWidget(m_pControl.get());
        m_oToolBar.show();
    }

    void AddText(const char *name, const char *text, int maxOccurs = 1) const
    {
        m_pControl->AddExplicitReportData(QLatin1String(name), text, maxOccurs, QString(), 0, QString());
    }

    /// The poll, without the ten seconds of waiting for it.
    void Poll() const { QMetaObject::invokeMethod(m_pControl->findChild<QTimer *>(), "timeout"); }
    void Press() const { QTest::mouseClick(m_pButton, Qt::LeftButton); }

    /// What has been heard since the last look.
    QString Heard()
    {
        const QString heard = m_lHeard.join(QLatin1Char(' '));
        m_lHeard.clear();
        return heard;
    }

    QToolBar m_oToolBar;
    std::unique_ptr<HookedControl> m_pControl =
        std::make_unique<HookedControl>(SchemaPath(), ReportFolder(), &m_oToolBar, true, "reporting", false, QPixmap());
    QPointer<QToolButton> m_pButton = m_pControl->GetReportButton();

private:
    void NoteOutcome(const ReportOutcome &outcome)
    {
        static const char *const states[] = { "open", "saved", "not saved", "dropped" };
        const bool isUnsaved = outcome.GetState() == ReportOutcome::State::NotSaved;
        m_lHeard << QLatin1String(states[static_cast<int>(outcome.GetState())]);
        for (const ReportOutcome::RefusedValue &refused : outcome.GetRefusedValues()) {
            m_lHeard << refused.m_sPlace << refused.m_sValue << QString::number(refused.m_iError);
        }
        if (!outcome.IsSchemaRead()) {
            m_lHeard << QStringLiteral("unread");
        }
        if (outcome.GetSaveError().isEmpty() == isUnsaved) {
            m_lHeard << QStringLiteral("unexplained");
        }
    }

    QStringList m_lHeard;
};

/// The comment dialog that the operator sees.
inline QDialog *Dialog()
{
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        if (widget->inherits("CommentDialogImpl") && widget->isVisible()) {
            return qobject_cast<QDialog *>(widget);
        }
    }
    return nullptr;
}

inline void Press(const QWidget *dialog, const char *button)
{
    QTest::mouseClick(dialog->findChild<QPushButton *>(QLatin1String(button)), Qt::LeftButton);
}
