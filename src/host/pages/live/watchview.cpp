// SPDX-License-Identifier: MIT
#include "watchview.h"

#include "addvaluedialog.h"
#include "batteryoffer.h"
#include "livefile.h"
#include "livesession.h"
#include "valuetable.h"

#include <canopen/edsfile.h>
#include <system/background.h>
#include <host/pages/copytable.h>
#include <host/pages/sheetdialogs.h>

#include <QAction>
#include <QDir>
#include <QEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QInputDialog>
#include <QLabel>
#include <QMenu>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>

namespace {

// In letters, from which on these columns are shown
constexpr int roomOfMean = 70;
constexpr int roomOfAll = 90;

} // namespace

WatchView::WatchView(LiveSession *session, QWidget *parent)
    : QWidget(parent)
    , m_session(session)
    , m_model(session)
    , m_table(new CopyTable(this))
    , m_empty(new QLabel(m_table))
    , m_offer(new BatteryOffer(session, this))
    , m_add(new QToolButton(this))
    , m_learn(new QToolButton(this))
    , m_ask(new QToolButton(this))
    , m_more(new QToolButton(this))
    , m_menu(new QMenu(this))
    , m_remove(makeAction("removeValue"))
    , m_up(makeAction("moveValueUp"))
    , m_down(makeAction("moveValueDown"))
    , m_sheet(makeAction("openSheet"))
    , m_scan(makeAction("lookForDevices"))
    , m_battery(makeAction("askABattery"))
    , m_save(makeAction("saveValues"))
    , m_folder([] { return QString(); })
{
    build();
    buildMenu();
    connect(&m_session->questions(), &LiveQuestions::changed, this, &WatchView::showState);
    connect(&m_session->questions(), &LiveQuestions::told, this, &WatchView::told);
    connect(&m_session->watch(), &LiveWatch::changed, this, &WatchView::showState);
    connect(m_session, &LiveSession::started, this, &WatchView::showState);
    connect(m_session, &LiveSession::stopped, this, &WatchView::showState);
    connect(m_table->selectionModel(), &QItemSelectionModel::selectionChanged, this, &WatchView::showState);
    retranslate();
}

QAction *WatchView::makeAction(const char *name)
{
    auto *action = new QAction(this);
    action->setObjectName(QLatin1String(name));
    return action;
}

void WatchView::build()
{
    m_table->setObjectName(QStringLiteral("watchTable"));
    m_table->setWideColumn(WatchModel::NameColumn);
    m_table->setModel(&m_model);
    m_table->setMinimumHeight(1);
    m_empty->setWordWrap(true);
    m_empty->setAlignment(Qt::AlignCenter);
    m_empty->setTextFormat(Qt::PlainText);
    auto *over = new QVBoxLayout(m_table);
    over->addWidget(m_empty);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(3);
    layout->addLayout(buildButtons());
    layout->addWidget(m_table, 1);
    layout->addWidget(m_offer);
}

QLayout *WatchView::buildButtons()
{
    m_add->setObjectName(QStringLiteral("addValue"));
    m_learn->setObjectName(QStringLiteral("learnValues"));
    m_ask->setObjectName(QStringLiteral("askForValues"));
    m_ask->setCheckable(true);
    m_more->setObjectName(QStringLiteral("moreOfValues"));
    m_more->setPopupMode(QToolButton::InstantPopup);
    m_more->setMenu(m_menu);
    auto *top = new QHBoxLayout;
    for (QToolButton *button : {m_add, m_learn, m_ask, m_more}) {
        button->setFocusPolicy(Qt::TabFocus);
        top->addWidget(button);
    }
    top->addStretch();
    connect(m_add, &QToolButton::clicked, this, &WatchView::add);
    connect(m_learn, &QToolButton::clicked, this, [this] {
        LiveQuestions &questions = m_session->questions();
        questions.isLearning() ? questions.cancelLearning() : questions.learn();
    });
    connect(m_ask, &QToolButton::clicked, &m_session->questions(), &LiveQuestions::setAsking);
    return top;
}

void WatchView::buildMenu()
{
    m_menu->addActions({m_remove, m_up, m_down});
    m_menu->addSeparator();
    m_menu->addActions({m_sheet, m_scan, m_battery});
    m_menu->addSeparator();
    m_menu->addAction(m_save);
    m_remove->setShortcut(QKeySequence::Delete);
    m_remove->setShortcutContext(Qt::WidgetShortcut);
    m_table->addActions({m_remove, m_up, m_down});
    connect(m_remove, &QAction::triggered, this, &WatchView::remove);
    connect(m_up, &QAction::triggered, this, [this] { move(-1); });
    connect(m_down, &QAction::triggered, this, [this] { move(1); });
    connect(m_sheet, &QAction::triggered, this, &WatchView::chooseSheet);
    connect(m_scan, &QAction::triggered, &m_session->questions(), &LiveQuestions::scan);
    connect(m_battery, &QAction::triggered, this, &WatchView::chooseBattery);
    connect(m_save, &QAction::triggered, this, &WatchView::save);
}

void WatchView::refresh()
{
    m_model.refresh();
    m_offer->refresh();
}

int WatchView::chosenRow() const
{
    const QModelIndexList rows = m_table->selectionModel()->selectedRows();
    return rows.size() == 1 ? rows.first().row() : -1;
}

void WatchView::add()
{
    auto *dialog = new AddValueDialog(m_session, window());
    connect(dialog, &QDialog::accepted, this, [this, dialog] {
        bool isAsked = false;
        for (const WatchedItem &item : dialog->chosen()) {
            if (!m_session->watch().add(item))
                emit failed(tr("The watch list is full."));
            isAsked = isAsked || item.period > 0;
        }
        if (isAsked)
            m_session->questions().setAsking(true);
    });
    dialog->open();
}

void WatchView::remove()
{
    QVector<int> rows;
    for (const QModelIndex &row : m_table->selectionModel()->selectedRows())
        rows.append(row.row());
    std::sort(rows.rbegin(), rows.rend());
    for (const int row : qAsConst(rows))
        m_session->watch().remove(row);
}

void WatchView::move(int by)
{
    const int row = chosenRow();
    if (row < 0 || row + by < 0 || row + by >= m_model.rowCount())
        return;
    m_session->watch().move(row, row + by);
    m_table->selectRow(row + by);
}

void WatchView::chooseSheet()
{
    auto *dialog = new QFileDialog(window(), tr("Open a data sheet"), m_folder(),
                                   tr("Data sheets (%1)").arg(SheetDialogs::patterns()));
    dialog->setObjectName(QStringLiteral("openSheetDialog"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::ExistingFile);
    connect(dialog, &QFileDialog::fileSelected, this,
            [this](const QString &fileName) { openSheet(fileName); });
    dialog->open();
}

void WatchView::openSheet(const QString &fileName, quint8 nodeId)
{
    QString problem;
    const std::optional<CanOpen::EdsFile> sheet = CanOpen::readEdsFile(fileName, nodeId, &problem);
    if (!sheet) {
        emit failed(problem);
        return;
    }
    const quint8 node = nodeId != 0 ? nodeId : sheet->nodeId.value_or(0);
    if (node == 0) {
        SheetDialogs::askForNode(this, fileName, [this, fileName](quint8 id) { openSheet(fileName, id); });
        return;
    }
    LiveValues &values = m_session->live().values();
    m_session->live().learn(node, *sheet);
    m_session->questions().setDataSheet(node, sheet->dictionary);
    emit told(tr("%1 tells the values of node %2; %3 values are known now.")
                  .arg(QFileInfo(fileName).fileName(), QString::number(node),
                       QString::number(values.values().size())),
              values.problems());
}

QString WatchView::nameOf(quint8 nodeId) const
{
    const QString number = QString::number(nodeId);
    return m_session->batteries().contains(nodeId) ? tr("Node %1, a battery").arg(number)
                                                   : tr("Node %1").arg(number);
}

/*! A battery that is known is the first suggestion. */
void WatchView::chooseBattery()
{
    const QVector<quint8> nodes = m_session->questions().heardNodes();
    if (nodes.isEmpty()) {
        emit told(tr("No device was heard yet."), {});
        return;
    }
    const QVector<quint8> known = m_session->batteries();
    QStringList names;
    for (const quint8 node : nodes)
        names.append(nameOf(node));
    const auto *const battery
        = std::find_first_of(nodes.cbegin(), nodes.cend(), known.cbegin(), known.cend());
    auto *dialog = new QInputDialog(window());
    dialog->setObjectName(QStringLiteral("batteryNodeDialog"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setWindowTitle(tr("Ask a battery"));
    dialog->setLabelText(tr("Which node is to be asked for its cells, again and again?"));
    dialog->setComboBoxItems(names);
    if (battery != nodes.cend())
        dialog->setTextValue(nameOf(*battery));
    connect(dialog, &QInputDialog::textValueSelected, this, [this, nodes, names](const QString &name) {
        m_session->questions().askBattery(nodes.value(names.indexOf(name)));
    });
    dialog->open();
}

void WatchView::save()
{
    QFileDialog *dialog = LiveFile::saveDialog(this, "saveValuesDialog", tr("Save values"), m_folder());
    dialog->setNameFilter(tr("Table (*.csv)"));
    connect(dialog, &QFileDialog::fileSelected, this, &WatchView::write);
    dialog->open();
}

void WatchView::write(const QString &fileName)
{
    const auto work = [fileName, table = ValueTable::of(m_session->watch(), m_session->live())] {
        QString problem;
        LiveFile::write(fileName, table.toCsv(), &problem);
        return problem;
    };
    Background::run(this, work, [this, fileName](const QString &problem) {
        if (problem.isEmpty())
            emit told(tr("Saved: %1").arg(QDir::toNativeSeparators(fileName)), {});
        else
            emit failed(problem);
    });
}

void WatchView::showState()
{
    const LiveQuestions &questions = m_session->questions();
    const QString obstacle = questions.obstacle();
    const bool isLearning = questions.isLearning();
    m_learn->setText(isLearning ? tr("Stop learning") : tr("L&earn values"));
    m_learn->setEnabled(isLearning || (obstacle.isEmpty() && !questions.isScanning()));
    m_learn->setToolTip(!obstacle.isEmpty() && !isLearning
                            ? obstacle
                            : tr("Asks the devices once what they send. Nothing is changed in them."));
    const auto &items = m_session->watch().items();
    const bool isAnythingAsked = !questions.batteries().objects().isEmpty()
                                 || std::any_of(items.cbegin(), items.cend(),
                                                [](const WatchedItem &item) { return item.period > 0; });
    m_ask->setVisible(isAnythingAsked);
    m_ask->setChecked(questions.isAsking());
    m_ask->setEnabled(m_session->isListening());
    m_scan->setEnabled(obstacle.isEmpty() && !questions.isScanning() && !isLearning);
    m_battery->setEnabled(questions.canAskBattery());
    m_scan->setText(questions.isScanning() ? tr("Is looking for devices ...")
                                           : tr("Look for &devices without a heartbeat"));
    const int row = chosenRow();
    m_remove->setEnabled(m_table->selectionModel()->hasSelection());
    m_up->setEnabled(row > 0);
    m_down->setEnabled(row >= 0 && row < m_model.rowCount() - 1);
    m_sheet->setEnabled(m_session->isListening());
    m_save->setEnabled(m_model.rowCount() > 0);
    m_empty->setVisible(m_model.rowCount() == 0);
}

/*! Where there is little room the name needs it most; the tool tips have the rest. */
void WatchView::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    const int letters = m_table->width() / std::max(1, m_table->fontMetrics().averageCharWidth());
    for (int column = WatchModel::SmallestColumn; column < WatchModel::ColumnCount; ++column)
        m_table->setColumnHidden(column,
                                 letters < (column <= WatchModel::MeanColumn ? roomOfMean : roomOfAll));
    m_table->setWideColumn(WatchModel::NameColumn);
}

void WatchView::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange)
        retranslate();
    QWidget::changeEvent(event);
}

void WatchView::retranslate()
{
    m_add->setText(tr("&Add..."));
    m_add->setToolTip(tr("Watch values that are known, or ask for an object"));
    m_ask->setText(tr("As&k"));
    m_ask->setToolTip(tr("Asks the devices again and again for the values that they do not send"));
    m_more->setText(tr("More"));
    m_remove->setText(tr("&Remove"));
    m_up->setText(tr("Move &up"));
    m_down->setText(tr("Move do&wn"));
    m_sheet->setText(tr("&Open data sheet (EDS, DCF)..."));
    m_battery->setText(tr("Ask a &battery for its cells..."));
    m_save->setText(tr("&Save values..."));
    m_table->setAccessibleName(tr("Watch list"));
    m_empty->setText(tr("Learn what the vehicle sends, then add values."));
    m_model.refresh();
    emit m_model.headerDataChanged(Qt::Horizontal, 0, WatchModel::ColumnCount - 1);
    showState();
}
