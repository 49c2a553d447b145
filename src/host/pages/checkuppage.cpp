// SPDX-License-Identifier: MIT
#include "checkuppage.h"

#include "checkupsession.h"
#include "checkupwords.h"
#include "comparisondialog.h"
#include "componentdelegate.h"
#include "componentdetails.h"
#include "lighticon.h"
#include "pagelayout.h"
#include "plainlabel.h"

#include <QAction>
#include <QEvent>
#include <QFontInfo>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QMenu>
#include <QProgressBar>
#include <QPushButton>
#include <QSplitter>
#include <QStackedWidget>
#include <QTableView>
#include <QToolButton>
#include <QVBoxLayout>

namespace {

constexpr int lightSize = 26;
constexpr int barSteps = 1000;
constexpr int leastBarWidth = 90;
constexpr int rowsForWidths = 20; // looked at for the widths of columns: all of 127 would hold the window

QToolButton *makeButton(QAction *action, QWidget *parent)
{
    auto *button = new QToolButton(parent);
    button->setDefaultAction(action);
    button->setToolButtonStyle(Qt::ToolButtonTextOnly);
    button->setFocusPolicy(Qt::TabFocus);
    button->setObjectName(action->objectName() + QStringLiteral("Button"));
    return button;
}

/*! QFontInfo, as the desktop's font may have a size in pixels. */
QFont enlarged(QFont font)
{
    font.setPointSizeF(QFontInfo(font).pointSizeF() * 1.2);
    return font;
}

} // namespace

CheckupPage::CheckupPage(CheckupSession *session, QWidget *parent)
    : QWidget(parent)
    , m_session(session)
    , m_components(session)
    , m_full(makeAction("actionCheckup"))
    , m_quick(makeAction("actionQuickCheckup"))
    , m_scan(makeAction("actionScan"))
    , m_resume(makeAction("actionResume"))
    , m_notes(makeAction("actionNotes"))
    , m_share(makeAction("actionShare"))
    , m_cancel(makeAction("actionCancelCheckup"))
    , m_save(makeAction("actionSaveSnapshot"))
    , m_report(makeAction("actionServiceReport"))
    , m_compareLast(makeAction("actionCompareLast"))
    , m_compareFile(makeAction("actionCompareFile"))
    , m_menu(new QMenu(this))
    , m_compareMenu(new QMenu(this))
{
    setObjectName(QStringLiteral("checkupPage"));
    m_scan->setCheckable(true);
    m_menu->setObjectName(QStringLiteral("checkupMenu"));
    m_menu->addActions({m_full, m_quick, m_resume});
    m_menu->addSeparator();
    m_menu->addActions({m_scan, m_share, m_notes});
    m_compareMenu->addActions({m_compareLast, m_compareFile});

    auto *layout = new PageLayout(this);
    layout->setContentsMargins(PageLayout::margin, PageLayout::margin, PageLayout::margin,
                               PageLayout::margin);
    layout->setSpacing(PageLayout::gap);
    layout->addWidget(buildTop());
    layout->addWidget(buildVerdict());
    layout->addWidget(buildCentre(), 1);
    layout->addWidget(buildBottom());
    m_detailsTimer.setSingleShot(true);
    m_detailsTimer.setInterval(0);
    connect(&m_detailsTimer, &QTimer::timeout, this, &CheckupPage::showDetails);
    connectSession();
    retranslate();
}

QAction *CheckupPage::makeAction(const char *name)
{
    auto *action = new QAction(this);
    action->setObjectName(QLatin1String(name));
    return action;
}

QWidget *CheckupPage::buildTop()
{
    auto *top = new QWidget(this);
    m_start = makeButton(m_full, top);
    m_start->setObjectName(QStringLiteral("checkupButton"));
    m_start->setPopupMode(QToolButton::MenuButtonPopup);
    m_start->setMenu(m_menu);
    QFont bold = m_start->font();
    bold.setBold(true);
    m_start->setFont(bold);
    m_stop = makeButton(m_cancel, top);
    m_stop->setObjectName(QStringLiteral("cancelCheckupButton"));
    m_bar = new QProgressBar(top);
    m_bar->setObjectName(QStringLiteral("checkupProgress"));
    m_bar->setRange(0, barSteps);
    m_bar->setTextVisible(false);
    m_bar->setMinimumWidth(leastBarWidth);
    m_progress = makeCopyableLabel("checkupProgressText", top);
    m_progress->setWordWrap(true);
    auto *layout = new QHBoxLayout(top);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_start);
    layout->addWidget(m_stop);
    layout->addWidget(m_bar, 2);
    layout->addWidget(m_progress, 3);
    return top;
}

QWidget *CheckupPage::buildVerdict()
{
    auto *row = new QWidget(this);
    m_light = new QLabel(row);
    m_light->setObjectName(QStringLiteral("verdictLight"));
    m_verdict = makeCopyableLabel("verdictText", row);
    QFont large = enlarged(m_verdict->font());
    large.setBold(true);
    m_verdict->setFont(large);
    m_verdict->setWordWrap(true);
    m_vehicle = makeCopyableLabel("vehicleText", row);
    m_vehicle->setWordWrap(true);
    m_vehicle->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    auto *layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_light);
    layout->addWidget(m_verdict, 3);
    layout->addWidget(m_vehicle, 2);
    return row;
}

QWidget *CheckupPage::buildCentre()
{
    m_centre = new QStackedWidget(this);
    m_centre->addWidget(buildEmpty());
    auto *splitter = new QSplitter(m_centre);
    splitter->setObjectName(QStringLiteral("checkupSplitter"));
    splitter->setChildrenCollapsible(false);
    m_table = new QTableView(splitter);
    m_table->setObjectName(QStringLiteral("componentTable"));
    m_table->setModel(&m_components);
    m_table->setItemDelegateForColumn(ComponentModel::NameColumn, new ComponentDelegate(m_table));
    m_table->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_table->setSelectionMode(QAbstractItemView::SingleSelection);
    m_table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_table->setShowGrid(false);
    m_table->setTabKeyNavigation(false);
    m_table->setAlternatingRowColors(true);
    m_table->verticalHeader()->hide();
    m_table->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    m_table->verticalHeader()->setDefaultSectionSize(ComponentDelegate::rowHeight(m_table->fontMetrics()));
    m_table->horizontalHeader()->setHighlightSections(false);
    m_table->horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    m_table->horizontalHeader()->setResizeContentsPrecision(rowsForWidths);
    m_table->horizontalHeader()->setSectionResizeMode(ComponentModel::NameColumn, QHeaderView::Stretch);
    m_details = new ComponentDetails(splitter);
    connect(splitter, &QSplitter::splitterMoved, this, &CheckupPage::fitColumns);
    splitter->addWidget(m_table);
    splitter->addWidget(m_details);
    splitter->setStretchFactor(0, 5);
    splitter->setStretchFactor(1, 4);
    m_centre->addWidget(splitter);
    return m_centre;
}

QWidget *CheckupPage::buildEmpty()
{
    auto *page = new QWidget(m_centre);
    m_empty = makeCopyableLabel("checkupEmpty", page);
    m_empty->setWordWrap(true);
    m_empty->setAlignment(Qt::AlignCenter);
    m_empty->setFont(enlarged(m_empty->font()));
    m_open = new QPushButton(page);
    m_open->setObjectName(QStringLiteral("openSnapshotButton"));
    connect(m_open, &QPushButton::clicked, this, &CheckupPage::openRequested);
    auto *layout = new QVBoxLayout(page);
    layout->addStretch();
    layout->addWidget(m_empty);
    layout->addWidget(m_open, 0, Qt::AlignCenter);
    layout->addStretch();
    return page;
}

QWidget *CheckupPage::buildBottom()
{
    auto *row = new QWidget(this);
    m_reportButton = makeButton(m_report, row);
    m_compareButton = new QToolButton(row);
    m_compareButton->setObjectName(QStringLiteral("compareButton"));
    m_compareButton->setMenu(m_compareMenu);
    m_compareButton->setPopupMode(QToolButton::InstantPopup);
    m_compareButton->setFocusPolicy(Qt::TabFocus);
    m_saveButton = makeButton(m_save, row);
    m_notesButton = makeButton(m_notes, row);
    m_kept = makeCopyableLabel("keptText", row);
    m_kept->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    m_keep = new QPushButton(row);
    m_keep->setObjectName(QStringLiteral("keepButton"));
    connect(m_keep, &QPushButton::clicked, m_session, &CheckupSession::keep);
    auto *layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_reportButton);
    layout->addWidget(m_compareButton);
    layout->addWidget(m_saveButton);
    layout->addWidget(m_notesButton);
    layout->addWidget(m_kept, 1);
    layout->addWidget(m_keep);
    return row;
}

void CheckupPage::connectSession()
{
    const auto search = [this] {
        return m_scan->isChecked() ? CheckupSession::Search::All : CheckupSession::Search::Heard;
    };
    connect(m_full, &QAction::triggered, this,
            [this, search] { m_session->start(SnapshotScope::Full, search()); });
    connect(m_quick, &QAction::triggered, this,
            [this, search] { m_session->start(SnapshotScope::Quick, search()); });
    connect(m_resume, &QAction::triggered, m_session, &CheckupSession::resume);
    connect(m_cancel, &QAction::triggered, m_session, &CheckupSession::cancel);
    connect(m_save, &QAction::triggered, this, &CheckupPage::saveRequested);
    connect(m_report, &QAction::triggered, this, &CheckupPage::reportRequested);
    connect(m_notes, &QAction::triggered, this, &CheckupPage::notesRequested);
    connect(m_share, &QAction::triggered, this, &CheckupPage::shareRequested);
    connect(m_compareFile, &QAction::triggered, this, &CheckupPage::compareFileRequested);
    connect(m_compareLast, &QAction::triggered, this, &CheckupPage::compareWithLast);

    connect(m_session, &CheckupSession::changed, this, [this] {
        m_hasChosen = false;
        showAll();
    });
    connect(m_session, &CheckupSession::recordChanged, this, &CheckupPage::showAll);
    connect(m_session, &CheckupSession::keptChanged, this, &CheckupPage::showKept);
    connect(m_session, &CheckupSession::obstacleChanged, this, &CheckupPage::showState);
    connect(m_session, &CheckupSession::busLostChanged, this, &CheckupPage::showVerdict);
    connect(m_session, &CheckupSession::nodesChanged, this, [this](const QVector<quint8> &nodes) {
        showProgress();
        if (!m_table->currentIndex().isValid())
            chooseFirst();
        if (nodes.contains(m_chosen))
            showDetails();
    });
    connect(m_table->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            [this](const QModelIndex &current) {
                if (!current.isValid() || m_isChoosing)
                    return;
                m_chosen = m_components.nodeAt(current.row());
                m_hasChosen = true;
                showDetails();
            });
}

void CheckupPage::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange)
        retranslate();
    if (event->type() == QEvent::FontChange && m_table != nullptr)
        m_table->verticalHeader()->setDefaultSectionSize(
            ComponentDelegate::rowHeight(m_table->fontMetrics()));
    QWidget::changeEvent(event);
}

void CheckupPage::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    fitColumns();
}

/*! Name and light need their room; what is narrow leaves out what the details say as well. */
void CheckupPage::fitColumns()
{
    constexpr int roomyWidth = 45; // letters
    const bool isRoomy = m_table->width() >= roomyWidth * m_table->fontMetrics().averageCharWidth();
    const bool isCompared = !m_session->isRunning() && m_session->record().comparison;
    m_table->setColumnHidden(ComponentModel::StateColumn, !isRoomy);
    m_table->setColumnHidden(ComponentModel::ChangesColumn, !isCompared);
}

void CheckupPage::retranslate()
{
    m_full->setText(tr("Chec&k-up"));
    m_quick->setText(tr("&Quick check-up: the most important values"));
    m_resume->setText(tr("&Go on where it ended"));
    m_scan->setText(tr("Also &look for devices without a heartbeat"));
    m_notes->setText(tr("A&bout this visit..."));
    m_share->setText(tr("&Share of the bus..."));
    m_cancel->setText(tr("Cancel"));
    m_save->setText(tr("&Save check-up..."));
    m_report->setText(tr("Service &report..."));
    m_compareLast->setText(tr("With the &last visit"));
    m_compareFile->setText(tr("With a &file..."));
    m_compareButton->setText(tr("Co&mpare"));
    m_open->setText(tr("&Open a saved vehicle..."));
    m_keep->setText(tr("Keep in the arch&ive"));
    m_components.retranslate();
    showAll();
}

void CheckupPage::showAll()
{
    showState();
    showProgress();
    showVerdict();
    showKept();
    showEmpty();
    fitColumns();
    chooseFirst();
    m_detailsTimer.start(); // behind what waits already: both at once would hold the window
}

/*! What can be done now. */
void CheckupPage::showState()
{
    const bool isRunning = m_session->isRunning();
    const bool hasRecord = !isRunning && !m_session->isEmpty();
    const QString obstacle = m_session->obstacle();
    for (QAction *action : {m_full, m_quick}) {
        action->setEnabled(obstacle.isEmpty());
        action->setToolTip(obstacle.isEmpty() ? tr("Reads all devices and judges what they say") : obstacle);
    }
    m_start->setToolTip(m_full->toolTip());
    m_resume->setEnabled(m_session->canResume());
    m_scan->setEnabled(!isRunning);
    m_share->setEnabled(!isRunning);
    m_cancel->setEnabled(isRunning);
    m_stop->setVisible(isRunning);
    m_save->setEnabled(hasRecord);
    m_report->setEnabled(hasRecord);
    m_compareButton->setEnabled(hasRecord);
    m_compareLast->setEnabled(hasRecord && m_session->record().comparison);
    m_bar->setVisible(isRunning);
    if (!isRunning)
        m_progress->setText(obstacle);
    showEmpty();
}

void CheckupPage::showProgress()
{
    if (!m_session->isRunning())
        return;
    const SnapshotProgress progress = m_session->progress();
    const bool isKnown = progress.total > 0;
    m_bar->setRange(0, isKnown ? barSteps : 0);
    m_bar->setValue(isKnown ? int(qint64(progress.asked) * barSteps / progress.total) : 0);
    m_progress->setText(CheckupWords::progress(progress, m_session->isListening()));
}

void CheckupPage::showVerdict()
{
    if (m_session->isRunning()) {
        const bool isLost = m_session->isBusLost();
        m_light->setPixmap(isLost ? LightIcon::of(ReportMark::Warning).pixmap(lightSize) : QPixmap());
        m_verdict->setText(
            isLost ? tr("The connection to the bus is lost. The check-up goes on when it is back.")
                   : tr("The vehicle is being read ..."));
        m_vehicle->clear();
    } else if (m_session->isEmpty()) {
        m_light->clear();
        m_verdict->clear();
        m_vehicle->clear();
    } else {
        const CheckupRecord &record = m_session->record();
        const ReportMark mark = ReportMarks::of(record.result.verdict);
        m_light->setPixmap(LightIcon::of(mark).pixmap(lightSize));
        m_light->setToolTip(ReportMarks::word(mark));
        m_verdict->setText(CheckupWords::verdict(record));
        m_vehicle->setText(CheckupWords::vehicle(record));
    }
    m_light->setVisible(!m_session->isEmpty() || m_session->isRunning());
}

void CheckupPage::showKept()
{
    using Kept = CheckupSession::Kept;
    const bool hasRecord = !m_session->isRunning() && !m_session->isEmpty();
    const Kept kept = m_session->kept();
    QString text;
    if (hasRecord && kept == Kept::Asked)
        text = tr("Is being kept ...");
    else if (hasRecord && kept == Kept::Yes)
        text = tr("Kept in the archive ✓");
    else if (hasRecord && kept == Kept::Waiting)
        text = tr("▲ The archive cannot be reached: it waits on this computer.");
    else if (hasRecord && kept == Kept::Failed)
        text = tr("▲ It could not be kept. Save it as a file.");
    m_kept->setText(text);
    m_kept->setToolTip(m_session->keepingProblem());
    const bool canBeKept = kept == Kept::No || kept == Kept::Failed;
    m_keep->setVisible(hasRecord && canBeKept && m_session->record().snapshot.valueCount() > 0);
}

void CheckupPage::showEmpty()
{
    const bool isEmpty = m_session->isEmpty() && !m_session->isRunning();
    m_centre->setCurrentIndex(isEmpty ? 0 : 1);
    const bool canStart = m_session->canStart();
    m_empty->setText(
        canStart ? tr("The bus is connected. Press \"Check-up\": all devices are read and judged, which "
                      "takes some minutes. Nothing is changed in them.")
                 : tr("Connect a bus (Ctrl+K) and press \"Check-up\", or open a saved vehicle."));
}

/*! The worst one, unless the user has chosen. */
void CheckupPage::chooseFirst()
{
    if (m_components.rowCount() == 0)
        return;
    const int row = m_hasChosen ? qMax(0, m_components.rowOf(m_chosen)) : 0;
    const bool hadChosen = m_hasChosen;
    m_isChoosing = true;
    m_table->selectRow(row);
    m_isChoosing = false;
    m_chosen = m_components.nodeAt(row);
    m_hasChosen = hadChosen || !m_session->isRunning();
}

quint8 CheckupPage::chosenNode() const
{
    return m_components.nodeAt(m_table->currentIndex().row());
}

void CheckupPage::showDetails()
{
    if (!m_session->isRunning()) {
        m_details->showComponent(m_session->record(), m_chosen);
        return;
    }
    const std::optional<SnapshotNode> node = m_session->node(m_chosen);
    const QModelIndex row = m_components.index(qMax(0, m_components.rowOf(m_chosen)), 0);
    m_details->showValues(node.value_or(SnapshotNode()), row.data(ComponentModel::SentenceRole).toString());
}

void CheckupPage::compareWithLast()
{
    const CheckupRecord &record = m_session->record();
    if (!record.comparison)
        return;
    CheckupRecord earlier;
    earlier.snapshot = record.comparison->earlier;
    auto *dialog = new ComparisonDialog(CheckupWords::vehicle(earlier), CheckupWords::vehicle(record),
                                        record.comparison->comparison, window());
    dialog->show();
}
