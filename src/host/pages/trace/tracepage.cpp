// SPDX-License-Identifier: MIT
#include "tracepage.h"

#include "filterbar.h"
#include "findbar.h"
#include "tracedialogs.h"
#include "tracesession.h"
#include "tracetable.h"
#include "tracetimes.h"
#include "tracetoolbar.h"

#include <host/pages/pagelayout.h>
#include <host/pages/plainlabel.h>
#include <host/pages/plaintooltip.h>
#include <system/amounts.h>

#include <QAction>
#include <QEvent>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QKeyEvent>
#include <QSplitter>
#include <QStackedWidget>
#include <QToolButton>

#include <algorithm>
#include <array>
#include <utility>

namespace {

constexpr int margin = 9;
constexpr int share = 100;   // of a splitter
constexpr int leastRows = 3; // of a table, with its head

struct PageKey
{
    QKeySequence keys;
    void (FindBar::*slot)();
    const char *text;
};

std::array<PageKey, 3> pageKeys()
{
    return {{{QKeySequence::Find, &FindBar::takeFocus, QT_TRANSLATE_NOOP("TracePage", "Find in the trace")},
             {Qt::Key_F3, &FindBar::findNext, QT_TRANSLATE_NOOP("TracePage", "Find the next line")},
             {Qt::SHIFT + Qt::Key_F3, &FindBar::findPrevious,
              QT_TRANSLATE_NOOP("TracePage", "Find the line before")}}};
}

} // namespace

TracePage::TracePage(TraceSession *session, QWidget *parent)
    : QWidget(parent)
    , m_session(session)
    , m_folder([] { return QString(); })
    , m_hasEvents([] { return false; })
{
    setObjectName(QStringLiteral("tracePage"));
    auto *layout = new PageLayout(this);
    layout->setContentsMargins(margin, margin, margin, margin);
    layout->setSpacing(margin - 3);
    layout->addWidget(buildTop());
    layout->addWidget(buildCentre(), 1);
    layout->addWidget(buildBottom());
    addKeys();
    connectParts();
    connectSession();
    retranslate();
    showDocument();
}

QWidget *TracePage::buildTop()
{
    auto *top = new QWidget(this);
    m_toolbar = new TraceToolbar(m_session, top);
    m_filter = new FilterBar(top);
    m_filter->setObjectName(QStringLiteral("filterBar"));
    m_find = new FindBar(&m_model, top);
    m_count = makePlainLabel("traceCount", top);
    m_problem = makePlainLabel("traceProblem", top);
    m_problem->setWordWrap(true);
    auto *search = new QHBoxLayout;
    search->addWidget(m_find, 1);
    search->addWidget(m_count);
    auto *layout = new QVBoxLayout(top);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(3);
    layout->addWidget(m_toolbar);
    layout->addWidget(m_filter);
    layout->addLayout(search);
    layout->addWidget(m_problem);
    m_problem->hide();
    m_count->setMinimumWidth(0);
    return top;
}

QWidget *TracePage::buildCentre()
{
    m_centre = new QStackedWidget(this);
    m_empty = makePlainLabel("traceEmpty", m_centre);
    m_empty->setAlignment(Qt::AlignCenter);
    m_empty->setWordWrap(true);
    auto *lists = new QSplitter(Qt::Vertical, m_centre);
    lists->setObjectName(QStringLiteral("traceSplitter"));
    lists->setChildrenCollapsible(false);
    m_table = new TraceTable(lists);
    m_table->setObjectName(QStringLiteral("traceTable"));
    m_table->setWideColumn(TraceModel::WhatColumn);
    m_table->setModel(&m_model);
    m_parts = new CopyTable(lists);
    m_parts->setObjectName(QStringLiteral("traceParts"));
    m_parts->setWideColumn(FrameDetails::MeaningColumn);
    m_parts->setModel(&m_details);
    for (CopyTable *table : {static_cast<CopyTable *>(m_table), m_parts}) {
        table->setMinimumHeight(leastRows * table->verticalHeader()->defaultSectionSize());
        lists->addWidget(table);
    }
    lists->setSizes({3 * share, share});
    m_centre->addWidget(m_empty);
    m_centre->addWidget(lists);
    return m_centre;
}

QWidget *TracePage::buildBottom()
{
    auto *bottom = new QWidget(this);
    m_copy = makeButton("traceCopy", nullptr);
    m_export = makeButton("traceExport", &TracePage::exportShown);
    m_events = makeButton("traceEvents", &TracePage::askForEvents);
    m_follow = makeButton("traceFollow", &TracePage::toggleFollowing);
    m_follow->setCheckable(true);
    m_selection = makePlainLabel("traceSelection", bottom);
    auto *layout = new QHBoxLayout(bottom);
    layout->setContentsMargins(0, 0, 0, 0);
    for (QToolButton *button : {m_copy, m_export, m_events, m_follow})
        layout->addWidget(button);
    layout->addWidget(m_selection, 1);
    return bottom;
}

QToolButton *TracePage::makeButton(const char *name, void (TracePage::*pressed)())
{
    auto *button = new QToolButton(this);
    button->setObjectName(QLatin1String(name));
    button->setFocusPolicy(Qt::StrongFocus);
    if (pressed != nullptr)
        connect(button, &QToolButton::clicked, this, pressed);
    return button;
}

void TracePage::addKeys()
{
    for (const PageKey &key : pageKeys()) {
        auto *action = new QAction(this);
        action->setShortcut(key.keys);
        action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
        connect(action, &QAction::triggered, m_find, key.slot);
        addAction(action);
    }
}

QVector<QPair<QString, QString>> TracePage::keyList()
{
    QVector<QPair<QString, QString>> list;
    for (const PageKey &key : pageKeys())
        list.append({key.keys.toString(QKeySequence::NativeText), tr(key.text)});
    return list;
}

void TracePage::connectParts()
{
    connect(m_filter, &FilterBar::filterChanged, this, [this] {
        giveExportUp();
        takeFilter();
    });
    connect(m_filter, &FilterBar::problemChanged, this, &TracePage::showProblem);
    connect(m_find, &FindBar::found, this, [this](int row) { goToLine(m_model.lineAt(row)); });
    connect(&m_model, &TraceModel::looked, this, [this] {
        goToWanted();
        showCounts();
        exportLookedAt();
    });
    connect(m_copy, &QToolButton::clicked, m_table, &CopyTable::copy);
    connect(m_table, &TraceTable::copiedNotAll, this, [this] {
        emit told(
            tr("Only the first %1 lines were copied; \"Export\" saves all.").arg(TraceTable::mostCopied));
    });
    connect(m_table, &TraceTable::followingChanged, this, &TracePage::setFollowing);
    QItemSelectionModel *selection = m_table->selectionModel();
    connect(selection, &QItemSelectionModel::currentRowChanged, this, &TracePage::showChosen);
    connect(selection, &QItemSelectionModel::selectionChanged, this, &TracePage::showSelection);
}

void TracePage::connectSession()
{
    connect(m_session, &TraceSession::documentChanged, this, &TracePage::showDocument);
    connect(m_session, &TraceSession::grown, this, &TracePage::takeGrown);
    connect(m_session, &TraceSession::shortened, this, &TracePage::takeShortened);
    connect(m_session, &TraceSession::relearnt, this, &TracePage::relearn);
}

void TracePage::setFolder(const std::function<QString()> &folder)
{
    m_folder = folder;
    m_toolbar->setFolder(folder);
}

void TracePage::setHasEvents(const std::function<bool()> &hasEvents)
{
    m_hasEvents = hasEvents;
    showSelection();
}

/*! Another trace, or none. */
void TracePage::showDocument()
{
    m_chosen.reset();
    m_wanted.reset();
    giveExportUp();
    m_details.clear();
    const TraceDocument &document = *m_session->document();
    m_model.setDocument(m_session->document());
    m_table->setColumnHidden(TraceModel::ChannelColumn, document.trace.head.channels.size() < 2);
    m_centre->setCurrentIndex(m_session->isEmpty() ? 0 : 1);
    m_follow->setVisible(m_session->isLive());
    for (QToolButton *button : {m_copy, m_export})
        button->setEnabled(!m_session->isEmpty());
    setFollowing(m_session->isLive());
    if (!m_session->isLive())
        m_table->scrollToTop();
    showProblem();
    showSelection();
    showCounts();
}

/*! What is wrong with the filter, or else what there is to know of the file. */
void TracePage::showProblem()
{
    const QString problem = m_filter->problem();
    m_problem->setText(problem.isEmpty() ? documentText() : problem);
    m_problem->setToolTip(problem.isEmpty() ? plainToolTip(documentProblems()) : QString());
    m_problem->setVisible(!m_problem->text().isEmpty());
}

/*! What there is to know of a file beside its frames; empty: nothing. */
QString TracePage::documentText() const
{
    const Trace &trace = m_session->document()->trace;
    QStringList sentences;
    if (!m_session->isLive() && trace.frames.empty())
        sentences << tr("There is not one frame in this file.");
    if (trace.missing == MissingFrames::Newest)
        sentences << tr("The file is too long: only its first %1 frames are shown.")
                         .arg(TraceTimes::count(trace.frames.size()));
    if (trace.unread > 0 && !trace.problems.empty())
        sentences << tr("%n line(s) could not be read.", nullptr, static_cast<int>(trace.unread))
                         + QLatin1Char(' ')
                         + tr("The first one: line %1. %2")
                               .arg(QString::number(trace.problems.front().line),
                                    trace.problems.front().text);
    return sentences.join(QLatin1Char(' '));
}

/*! What could not be read, line by line; empty when its sentence tells all. */
QString TracePage::documentProblems() const
{
    constexpr std::size_t mostNamed = 20;
    const Trace &trace = m_session->document()->trace;
    if (trace.problems.size() < 2)
        return QString();
    QStringList lines;
    for (std::size_t i = 0; i < std::min(trace.problems.size(), mostNamed); ++i)
        lines << tr("Line %1: %2").arg(trace.problems[i].line).arg(trace.problems[i].text);
    if (trace.unread > mostNamed)
        lines << QStringLiteral("...");
    return lines.join(QLatin1Char('\n'));
}

void TracePage::takeGrown()
{
    if (!isVisible())
        return;
    m_model.update();
    if (m_chosen)
        m_details.update(m_model.document(), m_model.document().lines.rowOfFrame(*m_chosen));
}

/*! The line that is chosen stays, as long as it is there, and so does the place. */
void TracePage::takeShortened(std::size_t frames)
{
    const auto shorten = [frames](std::optional<std::size_t> frame) {
        return frame && *frame >= frames ? std::optional<std::size_t>(*frame - frames) : std::nullopt;
    };
    const Place before = place();
    m_chosen = shorten(m_chosen);
    if (!m_chosen)
        m_details.clear();
    m_isGoing = true;
    m_model.setDocument(m_session->document());
    m_isGoing = false;
    goBack({shorten(before.chosen), before.top ? shorten(before.top).value_or(0) : before.top,
            before.isFollowing});
    showDetails();
}

void TracePage::relearn()
{
    if (!m_model.rows().isAll())
        takeFilter();
    else if (isVisible())
        m_model.update(); // other words
    showDetails();
}

void TracePage::takeFilter()
{
    const Place before = place();
    m_isGoing = true;
    m_model.setFilter(m_filter->filter());
    m_isGoing = false;
    goBack(before);
    showCounts();
}

TracePage::Place TracePage::place() const
{
    const TraceLines &lines = m_model.document().lines;
    Place place{m_chosen, std::nullopt, m_table->isFollowing()};
    const int top = m_table->rowAt(0);
    if (m_wanted) // it is on its way
        (m_wanted->going == Going::Choose ? place.chosen : place.top) = lines.at(m_wanted->line).frame;
    else if (top >= 0)
        place.top = lines.at(m_model.lineAt(top)).frame;
    return place;
}

/*! Other rows are shown. Where the newest are followed they still are. */
void TracePage::goBack(const Place &place)
{
    const TraceLines &lines = m_model.document().lines;
    m_wanted.reset();
    if (place.isFollowing)
        return;
    if (place.chosen)
        goToLine(lines.rowOfFrame(*place.chosen));
    else if (place.top)
        goToLine(lines.rowOfFrame(*place.top), Going::Scroll);
}

void TracePage::goToLine(std::size_t line, Going going)
{
    m_wanted = {line, going};
    goToWanted();
}

void TracePage::goToWanted()
{
    const bool isLookedAt = m_wanted && (m_model.rows().examined() > m_wanted->line || !m_model.isLooking());
    if (!isLookedAt)
        return;
    const Wanted wanted = *std::exchange(m_wanted, std::nullopt);
    const int row = m_model.rowOfLine(wanted.line);
    if (row < 0)
        return;
    const QModelIndex index = m_model.index(row, TraceModel::WhatColumn);
    if (wanted.going == Going::Scroll)
        m_table->scrollTo(index, QAbstractItemView::PositionAtTop);
    else if (m_model.lineAt(row) == wanted.line)
        chooseRow(row);
    else // the filter hides it: it stays chosen for when it is shown again
        m_table->scrollTo(index, QAbstractItemView::PositionAtCenter);
}

void TracePage::chooseRow(int row)
{
    const QModelIndex index = m_model.index(row, TraceModel::WhatColumn);
    m_table->selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect
                                                          | QItemSelectionModel::Rows);
    m_table->scrollTo(index, QAbstractItemView::PositionAtCenter);
    setFollowing(false); // also where that has scrolled to the end
}

void TracePage::showMoment(const TraceMoment &moment)
{
    if (!m_session->isLive())
        m_session->showLive();
    showMomentHere(moment);
}

void TracePage::showMomentHere(const TraceMoment &moment)
{
    m_model.update();
    const TraceLines &lines = m_model.document().lines;
    const std::optional<std::size_t> line = moment.lineIn(lines);
    if (!line)
        return;
    if (moment.time < lines.time(0) - TraceMoment::tolerance) {
        if (isVisible())
            emit told(tr("What was on the bus then is no longer in this list."));
        return;
    }
    if (!lines.fits(*line, m_filter->filter()))
        m_filter->clear(); // or it could not be shown
    goToLine(*line);
}

/*! The frames of the chosen line. While another filter or document is taken in, the choice of before stays. */
void TracePage::showChosen()
{
    if (m_isGoing)
        return;
    const QModelIndex current = m_table->currentIndex();
    m_find->setRow(current.isValid() ? current.row() : -1);
    if (!current.isValid()) {
        m_chosen.reset();
        m_details.clear();
        return;
    }
    const std::size_t line = m_model.lineAt(current.row());
    m_chosen = m_model.document().lines.at(line).frame;
    m_details.show(m_model.document(), line);
    setFollowing(false); // the user looks at something
}

/*! The frames of the line that is chosen as they are said now, also where the filter hides it. */
void TracePage::showDetails()
{
    if (m_chosen)
        m_details.show(m_model.document(), m_model.document().lines.rowOfFrame(*m_chosen));
}

void TracePage::showCounts()
{
    const TraceRows &rows = m_model.rows();
    const std::size_t all = m_model.document().lines.size();
    const QString shown = TraceTimes::count(rows.size());
    if (rows.isAll())
        m_count->setText(TraceTimes::lines(rows.size()));
    else if (m_model.isLooking())
        m_count->setText(
            tr("%1 of %2 lines, %3 % looked at")
                .arg(shown, TraceTimes::count(all), QString::number(rows.examined() * 100 / all)));
    else
        m_count->setText(tr("%1 of %2").arg(shown, TraceTimes::lines(all)));
    showHint();
}

/*! Why there is no line. */
void TracePage::showHint()
{
    if (m_model.document().lines.size() == 0)
        m_table->setHint(m_session->isLive() ? tr("Nothing has been heard yet.") : QString());
    else
        m_table->setHint(m_model.isLooking() ? QString() : tr("No line fits the filter."));
}

void TracePage::showSelection()
{
    const int first = m_table->firstSelected();
    const int last = m_table->lastSelected();
    m_events->setVisible(m_session->isLive() || m_hasEvents());
    m_events->setEnabled(first >= 0);
    if (last <= first) {
        m_selection->clear();
        return;
    }
    m_selection->setText(tr("%1 from the first selected line to the last one")
                             .arg(TraceTimes::difference(m_model.timeAt(last) - m_model.timeAt(first))));
}

void TracePage::setFollowing(bool follows)
{
    m_table->setFollowing(follows && m_session->isLive());
    m_follow->setChecked(m_table->isFollowing());
}

void TracePage::toggleFollowing()
{
    setFollowing(m_follow->isChecked());
}

void TracePage::exportShown()
{
    const QString suggested = m_session->isLive() ? QStringLiteral("bus") : QStringLiteral("part");
    TraceDialogs::askToSave(this, "traceExportDialog", tr("Export the lines that are shown"), m_folder(),
                            suggested, [this](const QString &fileName) {
                                m_exportName = fileName;
                                exportLookedAt();
                            });
}

void TracePage::exportLookedAt()
{
    if (!m_exportName.isEmpty() && !m_model.isLooking())
        m_session->saveShown(std::exchange(m_exportName, QString()), m_model.rows());
}

/*! The lines that were to be exported are not the ones that are shown now. */
void TracePage::giveExportUp()
{
    if (m_exportName.isEmpty())
        return;
    const QString name = QFileInfo(std::exchange(m_exportName, QString())).fileName();
    emit told(tr("%1 was not saved: other lines are shown by now.").arg(name));
}

void TracePage::askForEvents()
{
    const int row = m_table->firstSelected();
    if (row >= 0)
        emit eventsRequested(
            QDateTime::fromMSecsSinceEpoch(m_model.timeAt(row) / Microseconds::ofMillisecond));
}

void TracePage::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange)
        retranslate();
    QWidget::changeEvent(event);
}

void TracePage::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape && m_session->loading().isRunning()) {
        m_session->cancelOpening();
        return;
    }
    QWidget::keyPressEvent(event);
}

void TracePage::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    m_model.update();
    showDetails();
    if (m_chosen && m_table->currentIndex().isValid())
        m_table->scrollTo(m_table->currentIndex(), QAbstractItemView::PositionAtCenter);
}

void TracePage::retranslate()
{
    m_empty->setText(tr("Connect a bus (Ctrl+K): what is on it is shown here line by line. Or open a trace "
                        "(Open...). Listening sends nothing."));
    m_table->setAccessibleName(tr("What was on the bus"));
    m_parts->setAccessibleName(tr("The frames of the chosen line"));
    m_copy->setText(tr("&Copy"));
    m_copy->setToolTip(
        tr("Copies the selected lines, or all that are shown (at most %1)").arg(TraceTable::mostCopied));
    m_export->setText(tr("E&xport..."));
    m_export->setToolTip(tr("Saves the frames of the lines that are shown; the name tells the format"));
    m_events->setText(tr("Eve&nts"));
    m_events->setToolTip(tr("Shows the events around the selected line"));
    m_follow->setText(tr("F&ollow"));
    m_follow->setToolTip(tr("Keeps the newest line in sight"));
    m_parts->setHint(tr("The frames of the line that is chosen above stand here, byte by byte."));
    showProblem();
    takeOtherWords();
    showCounts();
    showSelection();
}

/*! A filter may look for them. */
void TracePage::takeOtherWords()
{
    m_session->retranslate();
    if (m_model.rows().filter().text.isEmpty())
        m_model.update();
    else
        takeFilter();
    showDetails();
}
