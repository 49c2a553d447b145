// SPDX-License-Identifier: MIT
#include "findbar.h"

#include "tracemodel.h"
#include "workslice.h"

#include <host/pages/elidedlabel.h>

#include <QElapsedTimer>
#include <QEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QToolButton>

namespace {

constexpr int rowsBetweenLooks = 64; // at the clock
constexpr int rowsInSlice = 20000;   // where the clock is too coarse to tell
constexpr int leastCharacters = 10;

} // namespace

FindBar::FindBar(TraceModel *model, QWidget *parent)
    : QWidget(parent)
    , m_model(model)
    , m_text(new QLineEdit(this))
    , m_previous(makeButton("findPrevious", &FindBar::findPrevious))
    , m_next(makeButton("findNext", &FindBar::findNext))
    , m_result(new ElidedLabel("findResult", Qt::ElideRight, this))
{
    m_text->setObjectName(QStringLiteral("findText"));
    m_text->setClearButtonEnabled(true);
    m_text->setMinimumWidth(leastCharacters * fontMetrics().averageCharWidth());
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_text, 2);
    layout->addWidget(m_previous);
    layout->addWidget(m_next);
    layout->addWidget(m_result, 1);
    m_timer.setInterval(0);
    connect(&m_timer, &QTimer::timeout, this, &FindBar::look);
    connect(m_text, &QLineEdit::returnPressed, this, &FindBar::findNext);
    connect(m_text, &QLineEdit::textChanged, this, [this] {
        m_search.stop();
        tell();
    });
    // What was found in other rows is nowhere.
    connect(model, &QAbstractItemModel::modelReset, this, [this] {
        m_search.stop();
        m_row = -1;
        tell();
    });
    retranslate();
}

QToolButton *FindBar::makeButton(const char *name, void (FindBar::*pressed)())
{
    auto *button = new QToolButton(this);
    button->setObjectName(QLatin1String(name));
    button->setFocusPolicy(Qt::StrongFocus);
    connect(button, &QToolButton::clicked, this, pressed);
    return button;
}

void FindBar::takeFocus()
{
    m_text->setFocus(Qt::ShortcutFocusReason);
    m_text->selectAll();
}

void FindBar::findNext()
{
    find(TraceSearch::Direction::Forward);
}

void FindBar::findPrevious()
{
    find(TraceSearch::Direction::Backward);
}

void FindBar::find(TraceSearch::Direction direction)
{
    const QString text = m_text->text().trimmed();
    if (text.isEmpty()) {
        takeFocus();
        return;
    }
    m_search.start(m_row, m_model->rowCount(), direction, [this, text](int row) {
        return m_model->wordsAt(row).contains(text, Qt::CaseInsensitive);
    });
    look();
}

void FindBar::look()
{
    QElapsedTimer clock;
    clock.start();
    for (int looked = 0; m_search.state() == TraceSearch::State::Looking && looked < rowsInSlice
                         && clock.elapsed() < workSlice;
         looked += rowsBetweenLooks)
        m_search.advance(rowsBetweenLooks);
    tell();
    if (m_search.state() == TraceSearch::State::Found)
        emit found(m_search.row());
}

void FindBar::tell()
{
    if (m_search.state() == TraceSearch::State::Looking)
        m_timer.start();
    else
        m_timer.stop();
    switch (m_search.state()) {
    case TraceSearch::State::Idle:
        m_result->clear();
        break;
    case TraceSearch::State::Looking:
        m_result->setText(tr("Searching"));
        break;
    case TraceSearch::State::Found:
        m_result->setText(m_search.wentRound() ? tr("Went on from the other end") : QString());
        break;
    case TraceSearch::State::NotFound:
        m_result->setText(tr("Not found"));
        break;
    }
    m_result->setToolTip(m_result->text());
}

void FindBar::keyPressEvent(QKeyEvent *event)
{
    const bool isSearching = m_search.state() == TraceSearch::State::Looking;
    if (event->key() == Qt::Key_Escape && (isSearching || !m_text->text().isEmpty())) {
        m_text->clear(); // also ends the search
        return;
    }
    QWidget::keyPressEvent(event);
}

void FindBar::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange)
        retranslate();
    QWidget::changeEvent(event);
}

void FindBar::retranslate()
{
    m_text->setPlaceholderText(tr("Find (Ctrl+F)"));
    m_text->setToolTip(tr("Words of a line that is shown"));
    m_previous->setText(QStringLiteral("▲"));
    m_previous->setToolTip(tr("Find the one before (Shift+F3)"));
    m_previous->setAccessibleName(tr("Find the one before"));
    m_next->setText(QStringLiteral("▼"));
    m_next->setToolTip(tr("Find the next one (F3)"));
    m_next->setAccessibleName(tr("Find the next one"));
    tell();
}
