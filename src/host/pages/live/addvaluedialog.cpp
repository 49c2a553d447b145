// SPDX-License-Identifier: MIT
#include "addvaluedialog.h"

#include "livesession.h"
#include "watchmodel.h"

#include <host/pages/copytable.h>

#include <QDialogButtonBox>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QItemSelectionModel>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>
#include <QSpinBox>
#include <QVBoxLayout>

#include <algorithm>

namespace {

constexpr int usualPeriod = 500; // ms
constexpr int periodStep = 100;
constexpr QSize usualListSize(620, 420);

} // namespace

AddValueDialog::AddValueDialog(LiveSession *session, QWidget *parent)
    : QDialog(parent)
    , m_session(session)
    , m_search(new QLineEdit(this))
    , m_table(new CopyTable(this))
    , m_empty(new QLabel(this))
    , m_object(new QLineEdit(this))
    , m_period(new QSpinBox(this))
{
    setObjectName(QStringLiteral("addValueDialog"));
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(tr("Add values to the watch list"));
    showKnown();
    build();
    resize(usualListSize.boundedTo(QGuiApplication::primaryScreen()->availableSize()));
    showState();
}

void AddValueDialog::build()
{
    buildKnown();
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Cancel, this);
    buttons->button(QDialogButtonBox::Cancel)->setText(tr("Cancel"));
    m_add = buttons->addButton(tr("&Add"), QDialogButtonBox::AcceptRole);
    m_add->setObjectName(QStringLiteral("addValues"));
    m_add->setDefault(true);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_search);
    layout->addWidget(m_table, 1);
    layout->addWidget(m_empty, 1);
    layout->addWidget(buildAsked());
    layout->addWidget(buttons);
}

void AddValueDialog::buildKnown()
{
    m_search->setObjectName(QStringLiteral("valueSearch"));
    m_search->setPlaceholderText(tr("Search"));
    m_search->setClearButtonEnabled(true);
    m_filtered.setSourceModel(&m_known);
    m_filtered.setFilterCaseSensitivity(Qt::CaseInsensitive);
    m_filtered.setFilterKeyColumn(-1);
    m_table->setObjectName(QStringLiteral("knownValues"));
    m_table->setWideColumn(1);
    m_table->setModel(&m_filtered);
    m_empty->setText(
        tr("No values are known yet. Close this, and learn what the vehicle sends or open its data "
           "sheets; or name an object below."));
    m_empty->setWordWrap(true);
    m_empty->setAlignment(Qt::AlignCenter);
    connect(m_search, &QLineEdit::textChanged, &m_filtered, &QSortFilterProxyModel::setFilterFixedString);
    connect(m_table->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &AddValueDialog::showState);
    connect(m_table, &QAbstractItemView::doubleClicked, this, &QDialog::accept);
}

QWidget *AddValueDialog::buildAsked()
{
    auto *row = new QWidget(this);
    auto *label = new QLabel(tr("Or as&k for (node:index:sub-index)"), row);
    label->setBuddy(m_object);
    m_object->setObjectName(QStringLiteral("askedObject"));
    m_object->setPlaceholderText(QStringLiteral("2:6040:1"));
    m_period->setObjectName(QStringLiteral("askedPeriod"));
    m_period->setRange(WatchList::shortestPeriod, WatchList::longestPeriod);
    m_period->setSingleStep(periodStep);
    m_period->setValue(usualPeriod);
    const QStringList around = tr("every %1 ms").split(QLatin1String("%1"));
    m_period->setPrefix(around.value(0));
    m_period->setSuffix(around.value(1));
    connect(m_object, &QLineEdit::textChanged, this, &AddValueDialog::showState);
    auto *layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(label);
    layout->addWidget(m_object, 1);
    layout->addWidget(m_period);
    return row;
}

void AddValueDialog::showKnown()
{
    std::vector<LiveValue> values = m_session->live().values().values();
    std::sort(values.begin(), values.end(), [](const LiveValue &a, const LiveValue &b) {
        return a.nodeId < b.nodeId || (a.nodeId == b.nodeId && a.object < b.object);
    });
    QVector<QStringList> rows;
    for (const LiveValue &value : values) {
        if (m_session->watch().find(value.nodeId, value.object) >= 0)
            continue;
        const bool isHeard = value.record.count() > 0;
        rows.append({QString::number(value.nodeId), value.name, value.object.toShortString(),
                     isHeard ? WatchModel::numberText(value.record.last(), value) : QStringLiteral("–"),
                     value.unit});
        WatchedItem item;
        item.nodeId = value.nodeId;
        item.object = value.object;
        m_items.append(item);
    }
    m_known.setRows({tr("Node"), tr("Name"), tr("Object"), tr("Value"), tr("Unit")}, rows);
    m_table->setVisible(!rows.isEmpty());
    m_search->setVisible(!rows.isEmpty());
    m_empty->setVisible(rows.isEmpty());
}

QVector<WatchedItem> AddValueDialog::chosen() const
{
    QVector<WatchedItem> items;
    const QModelIndexList rows = m_table->selectionModel()->selectedRows();
    for (const QModelIndex &row : rows)
        items.append(m_items.at(m_filtered.mapToSource(row).row()));
    if (std::optional<WatchedItem> asked = parseWatched(m_object->text())) {
        asked->period = m_period->value();
        items.append(*asked);
    }
    return items;
}

void AddValueDialog::showState()
{
    const QString typed = m_object->text().trimmed();
    const bool isWrong = !typed.isEmpty() && !parseWatched(typed);
    m_object->setToolTip(isWrong ? tr("Node (1 to 127), index (hexadecimal) and sub-index: 2:6040:1")
                                 : tr("An object that the node is asked for by SDO uploads"));
    QPalette colours = palette();
    if (isWrong)
        colours.setColor(QPalette::Text, Qt::red);
    m_object->setPalette(colours);
    m_add->setEnabled(!isWrong && !chosen().isEmpty());
}
