#include "reportview.h"

#include "reporttree.h"

#include <QFile>
#include <QFontDatabase>
#include <QPlainTextEdit>

ReportView::ReportView(QWidget *parent)
    : QTabWidget(parent)
    , m_pTree(new ReportTree(this))
    , m_pText(new QPlainTextEdit(this))
{
    m_pText->setObjectName(QStringLiteral("reportText"));
    m_pText->setReadOnly(true);
    m_pText->setLineWrapMode(QPlainTextEdit::NoWrap);
    m_pText->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    // The tab key leads on, so that everything behind the text can be reached by keyboard.
    m_pText->setTabChangesFocus(true);
    addTab(m_pTree, tr("&Tree"));
    addTab(m_pText, tr("&XML"));
}

void ReportView::ShowReport(const QString &path)
{
    QFile file(path);
    const bool isOpen = !path.isEmpty() && file.open(QIODevice::ReadOnly);
    m_pText->setPlainText(isOpen ? QString::fromUtf8(file.readAll()) : QString());
    if (isOpen) {
        m_pTree->ShowFile(path);
    } else {
        m_pTree->clear();
    }
}
