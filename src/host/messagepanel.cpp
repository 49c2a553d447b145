// SPDX-License-Identifier: MIT
#include "messagepanel.h"

#include "messagelog.h"

#include <QClipboard>
#include <QEvent>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QScrollBar>
#include <QStyle>
#include <QTableView>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>
#include <chrono>

namespace {

using namespace std::chrono_literals;

constexpr auto layoutDelay = 50ms;
constexpr int usualHeight = 84;
constexpr int usualPanelWidth = 600;

} // namespace

MessagePanel::MessagePanel(MessageLog *log, QWidget *parent)
    : QWidget(parent)
    , m_log(log)
    , m_view(new QTableView(this))
    , m_copy(new QToolButton(this))
    , m_clear(new QToolButton(this))
{
    build();
    retranslate();

    m_layoutTimer.setSingleShot(true);
    m_layoutTimer.setInterval(layoutDelay);
    connect(&m_layoutTimer, &QTimer::timeout, m_view, &QTableView::resizeRowsToContents);
    const auto layOut = [this] {
        if (!m_layoutTimer.isActive())
            m_layoutTimer.start();
    };
    connect(log, &QAbstractItemModel::rowsInserted, this, layOut);
    connect(log, &QAbstractItemModel::rowsMoved, this, layOut);
    connect(log, &QAbstractItemModel::dataChanged, this, layOut);
    connect(m_view->horizontalHeader(), &QHeaderView::sectionResized, this, layOut);
    // New rows change the range and not the value, so this is where the user has scrolled to.
    QScrollBar *bar = m_view->verticalScrollBar();
    connect(bar, &QScrollBar::valueChanged, this,
            [this, bar](int value) { m_isAtEnd = value >= bar->maximum(); });
    connect(bar, &QScrollBar::rangeChanged, this, [this, bar] {
        if (m_isAtEnd)
            bar->setValue(bar->maximum());
    });
    connect(m_copy, &QToolButton::clicked, this, &MessagePanel::copy);
    connect(m_clear, &QToolButton::clicked, log, &MessageLog::clear);
}

QSize MessagePanel::sizeHint() const
{
    return {usualPanelWidth, usualHeight};
}

void MessagePanel::copy()
{
    QVector<int> rows;
    const QModelIndexList selected = m_view->selectionModel()->selectedRows();
    for (const QModelIndex &index : selected)
        rows.append(index.row());
    QGuiApplication::clipboard()->setText(m_log->toText(rows));
}

void MessagePanel::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange)
        retranslate();
    QWidget::changeEvent(event);
}

bool MessagePanel::eventFilter(QObject *object, QEvent *event)
{
    // The view's own copying takes one cell.
    if (object == m_view && event->type() == QEvent::KeyPress
        && static_cast<QKeyEvent *>(event)->matches(QKeySequence::Copy)) {
        copy();
        return true;
    }
    return QWidget::eventFilter(object, event);
}

void MessagePanel::build()
{
    m_view->setObjectName(QStringLiteral("messageView"));
    m_view->setModel(m_log);
    m_view->setShowGrid(false);
    m_view->setWordWrap(true);
    m_view->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_view->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    m_view->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    // Always there: the width of the texts, and so their lines, must not depend on it.
    m_view->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    m_view->setTabKeyNavigation(false);
    m_view->verticalHeader()->hide();
    m_view->verticalHeader()->setMinimumSectionSize(1);
    m_view->verticalHeader()->setDefaultSectionSize(m_view->fontMetrics().height() + 4);
    m_view->horizontalHeader()->hide();
    m_view->horizontalHeader()->setSectionResizeMode(MessageLog::TimeColumn, QHeaderView::ResizeToContents);
    m_view->horizontalHeader()->setSectionResizeMode(MessageLog::TextColumn, QHeaderView::Stretch);
    m_view->installEventFilter(this);

    m_copy->setObjectName(QStringLiteral("copyMessagesButton"));
    m_clear->setObjectName(QStringLiteral("clearMessagesButton"));
    auto *buttons = new QVBoxLayout;
    for (QToolButton *button : {m_copy, m_clear}) {
        button->setAutoRaise(true);
        button->setSizePolicy(QSizePolicy::Minimum, QSizePolicy::Fixed);
        buttons->addWidget(button);
    }
    buttons->addStretch();

    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_view, 1);
    layout->addLayout(buttons);
}

void MessagePanel::retranslate()
{
    m_view->setAccessibleName(tr("Messages"));
    m_copy->setText(tr("Copy"));
    m_copy->setToolTip(tr("Copy the selected messages, or all of them"));
    m_clear->setText(tr("Clear"));
    m_clear->setToolTip(tr("Remove all messages"));
}
