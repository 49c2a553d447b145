// SPDX-License-Identifier: MIT
#include "eventview.h"

#include "livefile.h"

#include <host/pages/copytable.h>
#include <system/background.h>

#include <QAction>
#include <QComboBox>
#include <QDir>
#include <QEvent>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLineEdit>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QToolButton>
#include <QVBoxLayout>

namespace {

constexpr int leastRows = 2; // with the head

} // namespace

EventView::EventView(QWidget *parent)
    : QWidget(parent)
    , m_table(new CopyTable(this))
    , m_least(new QComboBox(this))
    , m_text(new QLineEdit(this))
    , m_copy(new QToolButton(this))
    , m_save(new QToolButton(this))
    , m_trace(new QAction(this))
    , m_folder([] { return QString(); })
{
    build();
    follow();
    connect(m_least, QOverload<int>::of(&QComboBox::currentIndexChanged), this, &EventView::filter);
    connect(m_text, &QLineEdit::textChanged, this, &EventView::filter);
    connect(m_copy, &QToolButton::clicked, this, [this] {
        m_model.finishFiltering();
        m_table->copy();
    });
    connect(m_save, &QToolButton::clicked, this, &EventView::save);
    connect(m_table, &QAbstractItemView::clicked, this,
            [this](const QModelIndex &index) { emit eventChosen(m_model.eventAt(index.row())); });
    connect(m_table, &QAbstractItemView::activated, this,
            [this](const QModelIndex &index) { emit traceRequested(m_model.eventAt(index.row())); });
    connect(m_trace, &QAction::triggered, this, [this] {
        const QModelIndex current = m_table->currentIndex();
        if (current.isValid())
            emit traceRequested(m_model.eventAt(current.row()));
    });
    retranslate();
}

void EventView::build()
{
    m_table->setObjectName(QStringLiteral("eventTable"));
    m_table->setWideColumn(EventModel::TextColumn);
    m_table->setModel(&m_model);
    m_table->setMinimumHeight(leastRows * m_table->verticalHeader()->defaultSectionSize());
    m_trace->setObjectName(QStringLiteral("showInTrace"));
    m_table->addAction(m_trace);
    m_least->setObjectName(QStringLiteral("eventSeverity"));
    m_least->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    m_text->setObjectName(QStringLiteral("eventSearch"));
    m_text->setClearButtonEnabled(true);
    m_text->setMinimumWidth(1);
    m_copy->setObjectName(QStringLiteral("copyEvents"));
    m_save->setObjectName(QStringLiteral("saveEvents"));
    auto *top = new QHBoxLayout;
    top->addWidget(m_least);
    top->addWidget(m_text, 1);
    top->addWidget(m_copy);
    top->addWidget(m_save);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(3);
    layout->addLayout(top);
    layout->addWidget(m_table, 1);
}

void EventView::follow()
{
    // New rows change the range and not the value, so this is where the user has scrolled to.
    QScrollBar *bar = m_table->verticalScrollBar();
    connect(bar, &QScrollBar::valueChanged, this,
            [this, bar](int value) { m_isAtEnd = value >= bar->maximum(); });
    connect(bar, &QScrollBar::rangeChanged, this, [this, bar] {
        if (m_isAtEnd)
            bar->setValue(bar->maximum());
    });
}

void EventView::filter()
{
    m_isAtEnd = true;
    m_model.setFilter(static_cast<Severity>(m_least->currentIndex()), m_text->text());
}

bool EventView::chooseNearest(qint64 time)
{
    m_model.update();
    const int row = m_model.nearestRow(time);
    if (row < 0)
        return false;
    m_isAtEnd = false; // so that it stays in sight
    m_table->selectRow(row);
    m_table->scrollTo(m_model.index(row, 0), QAbstractItemView::PositionAtCenter);
    return true;
}

void EventView::save()
{
    auto *dialog = LiveFile::saveDialog(this, "saveEventsDialog", tr("Save events"), m_folder());
    dialog->setNameFilters({tr("Table (*.csv)"), tr("JSON (*.json)")});
    connect(dialog, &QFileDialog::fileSelected, this, &EventView::write);
    dialog->open();
}

void EventView::write(const QString &fileName)
{
    m_model.finishFiltering();
    const auto work = [fileName, table = m_model.shown()] {
        const bool isJson = fileName.endsWith(QLatin1String(".json"), Qt::CaseInsensitive);
        QString problem;
        LiveFile::write(fileName, isJson ? table.toJson() : table.toCsv(), &problem);
        return problem;
    };
    Background::run(this, work, [this, fileName](const QString &problem) {
        if (problem.isEmpty())
            emit succeeded(tr("Saved: %1").arg(QDir::toNativeSeparators(fileName)));
        else
            emit failed(problem);
    });
}

void EventView::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange)
        retranslate();
    QWidget::changeEvent(event);
}

void EventView::retranslate()
{
    const int chosen = qMax(0, m_least->currentIndex());
    const QSignalBlocker blocker(m_least);
    m_least->clear();
    m_least->addItems({tr("All events"), tr("Warnings and faults"), tr("Faults")});
    m_least->setCurrentIndex(chosen);
    m_least->setToolTip(tr("Which events are shown"));
    m_text->setPlaceholderText(tr("Search"));
    m_text->setToolTip(tr("Words of an event, or the number of a node"));
    m_copy->setText(tr("Copy"));
    m_copy->setToolTip(tr("Copy the selected events, or all that are shown"));
    m_trace->setText(tr("Show in the &trace"));
    m_save->setText(tr("Save..."));
    m_save->setToolTip(tr("Save the events that are shown as a table (CSV) or as JSON"));
    m_table->setAccessibleName(tr("Events"));
    m_model.reset();
}
