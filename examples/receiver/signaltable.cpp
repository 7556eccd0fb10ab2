#include "signaltable.h"

#include "emptyhint.h"
#include "measurement.h"
#include "shownvalue.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>

SignalTable::SignalTable(Measurement &measurement, QWidget *parent)
    : QWidget(parent)
    , m_oMeasurement(measurement)
    , m_pTable(new QTableWidget(0, kSignalFields, this))
{
    m_pTable->setObjectName(QStringLiteral("signals"));
    m_pTable->setHorizontalHeaderLabels(
        { tr("MHz"), tr("kHz"), tr("dBµV"), tr("Azimuth"), tr("Modulation"), tr("Status"), tr("Time") });
    m_pTable->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_pTable->setSelectionMode(QAbstractItemView::SingleSelection);
    // The tab key leads on to the buttons.
    m_pTable->setTabKeyNavigation(false);
    m_pTable->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    for (const int words : { kModulation, kStatus, kTime }) {
        m_pTable->horizontalHeader()->setSectionResizeMode(words, QHeaderView::ResizeToContents);
    }
    m_pTable->horizontalHeader()->setHighlightSections(false);
    m_pTable->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 6);
    m_pTable->verticalHeader()->hide();
    new EmptyHint(tr("No signals are noted: a report takes what is measured when it is made."), *m_pTable);
    auto *add = new QPushButton(tr("Add what &is measured"), this);
    add->setObjectName(QStringLiteral("addSignal"));
    auto *remove = new QPushButton(tr("Remo&ve"), this);
    remove->setObjectName(QStringLiteral("removeSignal"));
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(add);
    buttons->addWidget(remove);
    buttons->addStretch();
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_pTable);
    layout->addLayout(buttons);
    connect(add, &QPushButton::clicked, this, &SignalTable::AddPresent);
    connect(remove, &QPushButton::clicked, this, &SignalTable::RemoveChosen);
    connect(m_pTable, &QTableWidget::cellChanged, this, [this](int row, int column) {
        m_oMeasurement.GetSignals()[row][column] = shownvalue::FromShown(m_pTable->item(row, column)->text());
    });
}

void SignalTable::AddPresent()
{
    const Signal signal = m_oMeasurement.GetPresent();
    const int row = m_pTable->rowCount();
    m_oMeasurement.GetSignals().append(signal);
    m_pTable->insertRow(row);
    const QSignalBlocker blocker(m_pTable); // the texts come from there
    for (int column = 0; column < kSignalFields; ++column) {
        m_pTable->setItem(row, column, new QTableWidgetItem(shownvalue::ToShown(signal.at(column))));
    }
    m_pTable->setCurrentCell(row, 0);
}

void SignalTable::RemoveChosen()
{
    const int row = m_pTable->currentRow();
    if (row >= 0) {
        m_oMeasurement.GetSignals().removeAt(row);
        m_pTable->removeRow(row);
    }
}
