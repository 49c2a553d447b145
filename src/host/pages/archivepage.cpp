// SPDX-License-Identifier: MIT
#include "archivepage.h"

#include "archiveaddressdialog.h"
#include "checkupsession.h"
#include "checkupwords.h"
#include "comparisondialog.h"
#include "copytable.h"
#include "notesdialog.h"
#include "pagelayout.h"
#include "plainlabel.h"
#include "trendplot.h"

#include <archive/archivetransfer.h>

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QEvent>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QSplitter>
#include <QStackedWidget>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>

namespace {

constexpr int typingTime = 200; // ms without a key, before the archive is asked
constexpr int longestSearch = 200;

QLabel *makeLabel(const char *name, QWidget *parent)
{
    QLabel *label = makePlainLabel(name, parent);
    label->setWordWrap(true);
    return label;
}

} // namespace

ArchivePage::ArchivePage(VehicleRecords *records, CheckupSession *session, QWidget *parent)
    : QWidget(parent)
    , m_records(records)
    , m_session(session)
    , m_browser(records)
    , m_folder([] { return QDir::homePath(); })
{
    setObjectName(QStringLiteral("archivePage"));
    m_typing.setSingleShot(true);
    m_typing.setInterval(typingTime);
    build();
    connectBrowser();
    retranslate();
}

void ArchivePage::build()
{
    auto *layout = new PageLayout(this);
    layout->setContentsMargins(PageLayout::margin, PageLayout::margin, PageLayout::margin,
                               PageLayout::margin);
    layout->setSpacing(PageLayout::gap);
    layout->addWidget(buildTop());
    m_problem = makeLabel("archiveProblem", this);
    m_problem->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_problem->hide();
    layout->addWidget(m_problem);
    m_centre = new QStackedWidget(this);
    m_empty = makeLabel("archiveEmpty", m_centre);
    m_empty->setAlignment(Qt::AlignCenter);
    m_centre->addWidget(m_empty);
    m_centre->addWidget(buildCentre());
    layout->addWidget(m_centre, 1);
}

QPushButton *ArchivePage::makeButton(const char *name, void (ArchivePage::*slot)())
{
    auto *button = new QPushButton(this);
    button->setObjectName(QLatin1String(name));
    button->setAutoDefault(false);
    connect(button, &QPushButton::clicked, this, slot);
    return button;
}

QAction *ArchivePage::makeAction(const char *name, void (ArchivePage::*slot)())
{
    auto *action = new QAction(this);
    action->setObjectName(QLatin1String(name));
    connect(action, &QAction::triggered, this, slot);
    return action;
}

QWidget *ArchivePage::buildTop()
{
    auto *top = new QWidget(this);
    m_search = new QLineEdit(top);
    m_search->setObjectName(QStringLiteral("archiveSearch"));
    m_search->setClearButtonEnabled(true);
    m_search->setMaxLength(longestSearch);
    m_import = makeButton("archiveImport", &ArchivePage::importFile);
    m_address = makeButton("archiveAddress", &ArchivePage::chooseArchive);
    auto *layout = new QHBoxLayout(top);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_search, 1);
    layout->addWidget(m_import);
    layout->addWidget(m_address);
    return top;
}

QWidget *ArchivePage::buildCentre()
{
    auto *splitter = new QSplitter(m_centre);
    splitter->setChildrenCollapsible(false);
    m_vehicles = new CopyTable(splitter);
    m_vehicles->setObjectName(QStringLiteral("vehicleTable"));
    m_vehicles->setModel(&m_vehicleModel);
    m_vehicles->setWideColumn(VehicleModel::NameColumn);
    m_vehicles->setSelectionMode(QAbstractItemView::SingleSelection);
    auto *right = new QSplitter(Qt::Vertical, splitter);
    right->setChildrenCollapsible(false);
    right->addWidget(buildVisits());
    right->addWidget(buildTrend());
    right->setStretchFactor(0, 3);
    right->setStretchFactor(1, 4);
    splitter->addWidget(m_vehicles);
    splitter->addWidget(right);
    splitter->setStretchFactor(0, 2);
    splitter->setStretchFactor(1, 3);
    return splitter;
}

QWidget *ArchivePage::buildVisits()
{
    auto *part = new QWidget(this);
    m_visits = new CopyTable(part);
    m_visits->setObjectName(QStringLiteral("visitTable"));
    m_visits->setModel(&m_visitModel);
    m_visits->setWideColumn(VisitModel::VerdictColumn);
    m_open = makeButton("visitOpen", &ArchivePage::open);
    m_compare = makeButton("visitCompare", &ArchivePage::compare);
    m_report = makeButton("visitReport", &ArchivePage::report);
    m_notes = makeAction("visitNotes", &ArchivePage::editNotes);
    m_export = makeAction("visitExport", &ArchivePage::exportVisit);
    m_rename = makeAction("vehicleRename", &ArchivePage::rename);
    m_delete = makeAction("visitDelete", &ArchivePage::removeVisits);
    m_more = new QToolButton(part);
    m_more->setObjectName(QStringLiteral("visitMore"));
    m_more->setPopupMode(QToolButton::InstantPopup);
    m_more->setFocusPolicy(Qt::TabFocus);
    auto *menu = new QMenu(m_more);
    menu->addActions({m_notes, m_export, m_rename});
    menu->addSeparator();
    menu->addAction(m_delete);
    m_more->setMenu(menu);
    auto *buttons = new QHBoxLayout;
    for (QWidget *button : std::initializer_list<QWidget *>{m_open, m_compare, m_report, m_more})
        buttons->addWidget(button);
    buttons->addStretch();
    auto *layout = new QVBoxLayout(part);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_visits, 1);
    layout->addLayout(buttons);
    return part;
}

QWidget *ArchivePage::buildTrend()
{
    auto *part = new QWidget(this);
    m_trendLabel = new QLabel(part);
    m_trends = new QComboBox(part);
    m_trends->setObjectName(QStringLiteral("trendValue"));
    m_trendLabel->setBuddy(m_trends);
    m_noTrend = makeLabel("trendNone", part);
    m_noTrend->setAlignment(Qt::AlignCenter);
    m_plot = new TrendPlot(part);
    m_trendProblem = makeLabel("trendProblem", part);
    m_trendProblem->setTextInteractionFlags(Qt::TextSelectableByMouse);
    auto *choice = new QHBoxLayout;
    choice->addWidget(m_trendLabel);
    choice->addWidget(m_trends, 1);
    auto *layout = new QVBoxLayout(part);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addLayout(choice);
    layout->addWidget(m_noTrend, 1);
    layout->addWidget(m_plot, 1);
    layout->addWidget(m_trendProblem);
    return part;
}

void ArchivePage::connectBrowser()
{
    connect(m_search, &QLineEdit::textChanged, &m_typing, QOverload<>::of(&QTimer::start));
    connect(&m_typing, &QTimer::timeout, this, [this] { m_browser.search(m_search->text()); });
    connect(m_vehicles->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            [this](const QModelIndex &current) {
                const qint64 chosen = current.isValid() ? m_vehicleModel.vehicle(current.row()).id : 0;
                if (chosen != 0 && chosen != m_browser.vehicle())
                    m_browser.chooseVehicle(chosen);
            });
    connect(m_visits->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &ArchivePage::showButtons);
    connect(m_visits, &QTableView::activated, this, &ArchivePage::open);
    connect(m_trends, QOverload<int>::of(&QComboBox::activated), &m_browser, &ArchiveBrowser::chooseTrend);
    connect(&m_browser, &ArchiveBrowser::vehiclesChanged, this, &ArchivePage::showVehicles);
    connect(&m_browser, &ArchiveBrowser::visitsChanged, this, &ArchivePage::showVisits);
    connect(&m_browser, &ArchiveBrowser::trendChanged, this, &ArchivePage::showTrend);
    connect(&m_browser, &ArchiveBrowser::problemChanged, this, &ArchivePage::showProblem);
    connect(&m_browser, &ArchiveBrowser::succeeded, this, &ArchivePage::succeeded);
    connect(&m_browser, &ArchiveBrowser::failed, this, &ArchivePage::failed);
}

void ArchivePage::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange)
        retranslate();
    QWidget::changeEvent(event);
}

void ArchivePage::showEvent(QShowEvent *event)
{
    m_browser.start();
    QWidget::showEvent(event);
}

void ArchivePage::retranslate()
{
    m_search->setPlaceholderText(tr("Search: serial number, vehicle, customer, note, date ..."));
    m_search->setAccessibleName(tr("Search"));
    m_import->setText(tr("&Import..."));
    m_address->setText(tr("&Where it is..."));
    m_open->setText(tr("&Open"));
    m_compare->setText(tr("&Compare"));
    m_compare->setToolTip(tr("With the visit before, or the two that are chosen with each other"));
    m_report->setText(tr("Re&port..."));
    m_notes->setText(tr("&Notes..."));
    m_export->setText(tr("&Export..."));
    m_rename->setText(tr("Na&me vehicle..."));
    m_delete->setText(tr("&Delete..."));
    m_more->setText(tr("Mo&re"));
    m_trendLabel->setText(tr("Over &time:"));
    m_noTrend->setText(tr("No visit of this vehicle has this value."));
    fillTrends();
    showVehicles();
    showVisits();
    showProblem();
    m_browser.askAnew();
}

void ArchivePage::fillTrends()
{
    const int chosen = qMax(0, m_trends->currentIndex());
    m_trends->clear();
    for (int i = 0; i < TrendValues::count(); ++i)
        m_trends->addItem(TrendValues::title(i));
    m_trends->setCurrentIndex(chosen);
}

void ArchivePage::showVehicles()
{
    m_vehicleModel.setVehicles(m_browser.vehicles());
    const bool isEmpty = m_browser.vehicles().isEmpty();
    m_centre->setCurrentIndex(isEmpty ? 0 : 1);
    if (m_browser.isSearching())
        m_empty->setText(tr("The archive is being asked ..."));
    else if (!m_browser.problem().isEmpty())
        m_empty->clear();
    else if (m_browser.searchText().trimmed().isEmpty())
        m_empty->setText(tr("Nothing is kept yet. Every check-up and every read comes in here by itself."));
    else
        m_empty->setText(
            tr("Nothing is found. All words have to be there: serial number, customer, date ..."));
}

void ArchivePage::showVisits()
{
    const int row = m_vehicleModel.rowOf(m_browser.vehicle());
    if (row >= 0 && m_vehicles->currentIndex().row() != row)
        m_vehicles->selectRow(row);
    const QVector<qint64> chosen = chosenVisits();
    m_visitModel.setVisits(m_browser.visits());
    chooseVisits(chosen);
    showButtons();
}

/*! Those of \a visits that are there; else the newest. */
void ArchivePage::chooseVisits(const QVector<qint64> &visits)
{
    QItemSelection selection;
    for (int row = 0; row < m_visitModel.rowCount(); ++row) {
        const QModelIndex index = m_visitModel.index(row, 0);
        if (visits.contains(m_visitModel.visit(row).id))
            selection.select(index, index);
    }
    if (!selection.isEmpty())
        m_visits->selectionModel()->select(selection,
                                           QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    else if (m_visitModel.rowCount() > 0)
        m_visits->selectRow(0);
}

void ArchivePage::showTrend()
{
    const bool isEmpty = m_browser.trend().isEmpty();
    const QString problem = m_browser.trendProblem();
    m_noTrend->setVisible(isEmpty && problem.isEmpty()); // a visit that cannot be read may have it
    m_trendProblem->setText(problem.isEmpty() ? QString() : QStringLiteral("▲ ") + problem);
    m_trendProblem->setVisible(!problem.isEmpty());
    m_plot->setVisible(!isEmpty);
    m_plot->setTrend(m_browser.trendValue(), m_browser.trend());
}

void ArchivePage::showProblem()
{
    m_problem->setText(m_browser.problem().isEmpty() ? QString()
                                                     : QStringLiteral("▲ ") + m_browser.problem());
    m_problem->setVisible(!m_browser.problem().isEmpty());
    m_address->setToolTip(tr("The archive is %1").arg(m_records->address()));
}

void ArchivePage::showButtons()
{
    const int count = chosenVisits().size();
    m_open->setEnabled(count == 1);
    m_report->setEnabled(count == 1);
    m_notes->setEnabled(count == 1);
    m_export->setEnabled(count == 1);
    m_compare->setEnabled(count == 1 || count == 2);
    m_delete->setEnabled(count > 0);
    m_rename->setEnabled(m_browser.vehicle() != 0);
}

QVector<qint64> ArchivePage::chosenVisits() const
{
    QVector<qint64> visits;
    const QModelIndexList rows = m_visits->selectionModel()->selectedRows();
    for (const QModelIndex &row : rows)
        visits.append(m_visitModel.visit(row.row()).id);
    return visits;
}

qint64 ArchivePage::chosenVisit() const
{
    const QVector<qint64> visits = chosenVisits();
    return visits.size() == 1 ? visits.first() : 0;
}

void ArchivePage::open()
{
    const qint64 visit = chosenVisit();
    if (visit != 0)
        m_browser.load(visit,
                       [this, visit](const Snapshot &snapshot) { emit openRequested(snapshot, visit); });
}

void ArchivePage::report()
{
    const qint64 visit = chosenVisit();
    if (visit != 0)
        m_browser.load(visit,
                       [this, visit](const Snapshot &snapshot) { emit reportRequested(snapshot, visit); });
}

void ArchivePage::compare()
{
    const QVector<qint64> visits = chosenVisits();
    const auto show
        = [this](const Snapshot &earlier, const Snapshot &later) { showComparison(earlier, later); };
    if (visits.size() == 2)
        m_browser.loadTwo(visits.at(0), visits.at(1), show);
    else if (visits.size() == 1)
        m_browser.loadWithPrevious(visits.first(), show);
}

void ArchivePage::showComparison(const Snapshot &earlier, const Snapshot &later)
{
    CheckupRecord before;
    before.snapshot = earlier;
    CheckupRecord after;
    after.snapshot = later;
    auto *dialog = new ComparisonDialog(CheckupWords::vehicle(before), CheckupWords::vehicle(after),
                                        m_session->compare(earlier, later), window());
    dialog->show();
}

void ArchivePage::editNotes()
{
    const QModelIndexList rows = m_visits->selectionModel()->selectedRows();
    if (rows.size() != 1)
        return;
    const VisitInfo &visit = m_visitModel.visit(rows.first().row());
    auto *dialog = new NotesDialog(visit.notes, window());
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QDialog::accepted, this,
            [this, dialog, id = visit.id] { m_browser.setNotes(id, dialog->notes()); });
    dialog->open();
}

void ArchivePage::exportVisit()
{
    const QModelIndexList rows = m_visits->selectionModel()->selectedRows();
    if (rows.size() != 1)
        return;
    const VisitInfo &visit = m_visitModel.visit(rows.first().row());
    auto *dialog = new QFileDialog(window(), tr("Export visit"), m_folder(), tr("Check-up (*.dxsnap)"));
    dialog->setObjectName(QStringLiteral("exportVisitDialog"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setDefaultSuffix(QStringLiteral("dxsnap"));
    dialog->selectFile(ArchiveTransfer::fileNameOf(visit));
    connect(dialog, &QFileDialog::fileSelected, this,
            [this, id = visit.id](const QString &fileName) { m_browser.exportVisit(id, fileName); });
    dialog->open();
}

void ArchivePage::removeVisits()
{
    const QVector<qint64> visits = chosenVisits();
    if (visits.isEmpty())
        return;
    auto *box = new QMessageBox(QMessageBox::Warning, QApplication::applicationDisplayName(),
                                tr("Delete %n visit(s) for good?", nullptr, visits.size()),
                                QMessageBox::Cancel, window());
    box->setObjectName(QStringLiteral("deleteQuestion"));
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setTextFormat(Qt::PlainText);
    box->setInformativeText(tr("What was read then is gone. Export it first if it may be needed."));
    QPushButton *yes = box->addButton(tr("&Delete"), QMessageBox::DestructiveRole);
    yes->setObjectName(QStringLiteral("deleteYes"));
    box->button(QMessageBox::Cancel)->setText(tr("Cancel"));
    box->setDefaultButton(QMessageBox::Cancel);
    box->setEscapeButton(QMessageBox::Cancel);
    connect(yes, &QPushButton::clicked, this, [this, visits] { m_browser.remove(visits); });
    box->open();
}

void ArchivePage::rename()
{
    const qint64 vehicle = m_browser.vehicle();
    const int row = m_vehicleModel.rowOf(vehicle);
    if (row < 0)
        return;
    auto *dialog = new QInputDialog(window());
    dialog->setObjectName(QStringLiteral("renameDialog"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setWindowTitle(tr("Name vehicle"));
    dialog->setLabelText(tr("Name; empty for the serial number:"));
    dialog->setTextValue(m_vehicleModel.vehicle(row).name);
    connect(dialog, &QInputDialog::textValueSelected, this,
            [this, vehicle](const QString &name) { m_browser.renameVehicle(vehicle, name); });
    dialog->open();
}

void ArchivePage::importFile()
{
    auto *dialog = new QFileDialog(window(), tr("Import into the archive"), m_folder(),
                                   tr("Vehicles and archives (*.dxsnap *.dxxml *.dxarchive)"));
    dialog->setObjectName(QStringLiteral("importDialog"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::ExistingFile);
    connect(dialog, &QFileDialog::fileSelected, &m_browser, &ArchiveBrowser::importFile);
    dialog->open();
}

void ArchivePage::chooseArchive()
{
    auto *dialog = new ArchiveAddressDialog(window());
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QDialog::accepted, m_records, &VehicleRecords::reopen);
    dialog->open();
}
