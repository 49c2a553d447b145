// SPDX-License-Identifier: MIT
#include "patiencedialog.h"

#include <canopen/cobid.h>

#include <QDialogButtonBox>
#include <QEvent>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QScrollBar>
#include <QSpinBox>
#include <QTableWidget>
#include <QVBoxLayout>

#include <algorithm>

namespace {

enum Column { NodeColumn, TimeoutColumn, RepeatsColumn, ColumnCount };

constexpr int timeoutStep = 50;  // ms
constexpr int slowTimeout = 500; // ms, offered for a node that is added

QSpinBox *makeTimeoutBox(int value)
{
    auto *box = new QSpinBox;
    box->setRange(PatienceSettings::shortestTimeout, PatienceSettings::longestTimeout);
    box->setSingleStep(timeoutStep);
    box->setSuffix(QStringLiteral(" ms"));
    box->setValue(value);
    return box;
}

QSpinBox *makeRepeatsBox(int value)
{
    auto *box = new QSpinBox;
    box->setRange(0, PatienceSettings::mostRepeats);
    box->setValue(value);
    return box;
}

QSpinBox *makeNodeBox(int nodeId)
{
    auto *box = new QSpinBox;
    box->setRange(CanOpen::firstNodeId, CanOpen::lastNodeId);
    box->setValue(nodeId);
    return box;
}

} // namespace

PatienceDialog::PatienceDialog(const PatienceSettings &settings, QWidget *parent)
    : QDialog(parent)
    , m_explanation(new QLabel(this))
    , m_timeoutLabel(new QLabel(this))
    , m_repeatsLabel(new QLabel(this))
    , m_nodesLabel(new QLabel(this))
    , m_timeout(makeTimeoutBox(settings.general.timeout))
    , m_repeats(makeRepeatsBox(settings.general.repeats))
    , m_nodes(new QTableWidget(0, ColumnCount, this))
    , m_add(new QPushButton(this))
    , m_remove(new QPushButton(this))
    , m_defaults(new QPushButton(this))
{
    setObjectName(QStringLiteral("patienceDialog"));
    build();
    for (auto it = settings.nodes.cbegin(); it != settings.nodes.cend(); ++it)
        addRow(it.key(), it.value());
    retranslate();
}

PatienceSettings PatienceDialog::settings() const
{
    PatienceSettings settings;
    settings.general = {m_timeout->value(), m_repeats->value()};
    for (int row = 0; row < m_nodes->rowCount(); ++row) {
        settings.nodes.insert(static_cast<quint8>(rowBox(row, NodeColumn)->value()),
                              {rowBox(row, TimeoutColumn)->value(), rowBox(row, RepeatsColumn)->value()});
    }
    return settings;
}

void PatienceDialog::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange)
        retranslate();
    QDialog::changeEvent(event);
}

void PatienceDialog::build()
{
    m_explanation->setWordWrap(true);
    m_timeout->setObjectName(QStringLiteral("timeoutBox"));
    m_repeats->setObjectName(QStringLiteral("repeatsBox"));
    m_nodes->setObjectName(QStringLiteral("nodeTable"));
    m_add->setObjectName(QStringLiteral("addNodeButton"));
    m_remove->setObjectName(QStringLiteral("removeNodeButton"));
    m_defaults->setObjectName(QStringLiteral("defaultsButton"));
    for (QPushButton *button : {m_add, m_remove, m_defaults})
        button->setAutoDefault(false);
    m_timeoutLabel->setBuddy(m_timeout);
    m_repeatsLabel->setBuddy(m_repeats);
    m_nodesLabel->setBuddy(m_nodes);
    m_nodes->verticalHeader()->hide();
    m_nodes->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    m_nodes->setSelectionBehavior(QAbstractItemView::SelectRows);

    auto *form = new QFormLayout;
    form->addRow(m_timeoutLabel, m_timeout);
    form->addRow(m_repeatsLabel, m_repeats);
    auto *rowButtons = new QHBoxLayout;
    rowButtons->addWidget(m_add);
    rowButtons->addWidget(m_remove);
    rowButtons->addStretch();
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    buttons->addButton(m_defaults, QDialogButtonBox::ResetRole);

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_explanation);
    layout->addLayout(form);
    layout->addWidget(m_nodesLabel);
    layout->addWidget(m_nodes, 1);
    layout->addLayout(rowButtons);
    layout->addWidget(buttons);

    connect(m_add, &QPushButton::clicked, this, &PatienceDialog::addNextNode);
    connect(m_remove, &QPushButton::clicked, this, &PatienceDialog::removeRow);
    connect(m_defaults, &QPushButton::clicked, this, &PatienceDialog::showDefaults);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
}

void PatienceDialog::retranslate()
{
    setWindowTitle(tr("Patience with slow nodes"));
    m_explanation->setText(tr("How long to wait for a node's answer before it counts as silent. Every repeat "
                              "waits twice as long as the try before it."));
    m_timeoutLabel->setText(tr("&Time-out:"));
    m_repeatsLabel->setText(tr("&Repeats:"));
    m_nodesLabel->setText(tr("Nodes with a patience of their &own:"));
    m_nodes->setHorizontalHeaderLabels({tr("Node"), tr("Time-out"), tr("Repeats")});
    fitTable();
    m_add->setText(tr("&Add node"));
    m_remove->setText(tr("Re&move node"));
    m_defaults->setText(tr("&Defaults"));
}

// The columns share the width, so each needs room for the widest header.
void PatienceDialog::fitTable()
{
    int widest = 0;
    for (int column = 0; column < m_nodes->columnCount(); ++column)
        widest = std::max(widest, m_nodes->horizontalHeader()->sectionSizeHint(column));
    m_nodes->setMinimumWidth(widest * m_nodes->columnCount() + 2 * m_nodes->frameWidth()
                             + m_nodes->verticalScrollBar()->sizeHint().width());
}

void PatienceDialog::addRow(int nodeId, const PatienceSettings::Patience &patience)
{
    const int row = m_nodes->rowCount();
    m_nodes->insertRow(row);
    m_nodes->setCellWidget(row, NodeColumn, makeNodeBox(nodeId));
    m_nodes->setCellWidget(row, TimeoutColumn, makeTimeoutBox(patience.timeout));
    m_nodes->setCellWidget(row, RepeatsColumn, makeRepeatsBox(patience.repeats));
    m_nodes->setCurrentCell(row, NodeColumn);
}

void PatienceDialog::addNextNode()
{
    const PatienceSettings chosen = settings();
    for (int nodeId = CanOpen::firstNodeId; nodeId <= CanOpen::lastNodeId; ++nodeId) {
        if (chosen.nodes.contains(static_cast<quint8>(nodeId)))
            continue;
        addRow(nodeId, {std::max(slowTimeout, chosen.general.timeout), chosen.general.repeats});
        return;
    }
}

void PatienceDialog::removeRow()
{
    // Without a row that is chosen: the last one.
    const int row = m_nodes->currentRow() >= 0 ? m_nodes->currentRow() : m_nodes->rowCount() - 1;
    m_nodes->removeRow(row);
}

void PatienceDialog::showDefaults()
{
    const PatienceSettings defaults;
    m_timeout->setValue(defaults.general.timeout);
    m_repeats->setValue(defaults.general.repeats);
    m_nodes->setRowCount(0);
}

QSpinBox *PatienceDialog::rowBox(int row, int column) const
{
    return static_cast<QSpinBox *>(m_nodes->cellWidget(row, column));
}
