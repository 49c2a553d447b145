// SPDX-License-Identifier: MIT
#include "componentmodel.h"

#include "checkupsession.h"
#include "checkupwords.h"
#include "lighticon.h"
#include "plaintooltip.h"

#include <snapshot/deviceidentity.h>

#include <algorithm>

namespace {

ReportMark markOf(const QVector<Finding> &findings)
{
    return findings.isEmpty() ? ReportMark::Good : ReportMarks::of(findings.first().severity);
}

} // namespace

ComponentModel::ComponentModel(CheckupSession *session, QObject *parent)
    : QAbstractTableModel(parent)
    , m_session(session)
{
    connect(session, &CheckupSession::changed, this, &ComponentModel::rebuild);
    connect(session, &CheckupSession::recordChanged, this, &ComponentModel::rebuild);
    connect(session, &CheckupSession::nodesChanged, this, &ComponentModel::update);
    rebuild();
}

int ComponentModel::rowOf(quint8 nodeId) const
{
    const auto found = std::find_if(m_rows.cbegin(), m_rows.cend(),
                                    [nodeId](const Row &row) { return row.nodeId == nodeId; });
    return found == m_rows.cend() ? -1 : static_cast<int>(found - m_rows.cbegin());
}

quint8 ComponentModel::nodeAt(int row) const
{
    return row >= 0 && row < m_rows.size() ? m_rows.at(row).nodeId : quint8(0);
}

void ComponentModel::retranslate()
{
    rebuild();
    emit headerDataChanged(Qt::Horizontal, 0, ColumnCount - 1);
}

void ComponentModel::rebuild()
{
    beginResetModel();
    m_rows.clear();
    if (m_session->isRunning())
        fillFromRun();
    else if (!m_session->isEmpty())
        fillFromRecord();
    endResetModel();
}

void ComponentModel::fillFromRun()
{
    const QVector<quint8> nodes = m_session->readNodes();
    for (const quint8 nodeId : nodes)
        m_rows.append(rowFromRun(nodeId));
}

void ComponentModel::fillFromRecord()
{
    const CheckupRecord &record = m_session->record();
    const auto counts = record.changeCounts();
    if (!record.result.vehicleFindings.isEmpty()) {
        Row row;
        row.name = tr("The vehicle as a whole");
        row.mark = markOf(record.result.vehicleFindings);
        row.sentence = record.result.vehicleFindings.first().text;
        m_rows.append(row);
    }
    for (const CheckedComponent &component : record.result.components) {
        Row row;
        row.nodeId = component.nodeId;
        row.name = component.name;
        row.mark = ReportMarks::of(component.state);
        row.sentence = CheckupWords::sentence(component);
        if (const SnapshotNode *node = record.snapshot.find(component.nodeId))
            row.state = CheckupWords::state(*node, record.snapshot.scope);
        const int changes = counts.at(component.nodeId);
        if (record.comparison)
            row.changes = changes == 0 ? QStringLiteral("–") : QString::number(changes);
        m_rows.append(row);
    }
    std::stable_sort(m_rows.begin(), m_rows.end(),
                     [](const Row &a, const Row &b) { return a.mark > b.mark; });
}

ComponentModel::Row ComponentModel::rowFromRun(quint8 nodeId) const
{
    Row row;
    row.nodeId = nodeId;
    const std::optional<SnapshotNode> node = m_session->node(nodeId);
    if (!node)
        return row;
    row.name = DeviceIdentity::of(*node).displayName(nodeId);
    row.state = CheckupWords::state(*node, SnapshotScope::Full);
    if (const CheckedComponent *component = m_session->early(nodeId)) {
        row.mark = ReportMarks::of(component->state);
        row.sentence = CheckupWords::sentence(*component);
        return row;
    }
    const SnapshotProgress progress = m_session->progress(nodeId);
    row.share = progress.total > 0 ? qreal(progress.asked) / progress.total : 0;
    row.sentence = CheckupWords::progress(progress);
    return row;
}

void ComponentModel::update(const QVector<quint8> &nodeIds)
{
    if (!m_session->isRunning())
        return;
    for (const quint8 nodeId : nodeIds) {
        const auto place = std::lower_bound(m_rows.begin(), m_rows.end(), nodeId,
                                            [](const Row &row, quint8 id) { return row.nodeId < id; });
        const int position = static_cast<int>(place - m_rows.begin());
        if (place == m_rows.end() || place->nodeId != nodeId) {
            beginInsertRows(QModelIndex(), position, position);
            m_rows.insert(position, rowFromRun(nodeId));
            endInsertRows();
        } else {
            *place = rowFromRun(nodeId);
            emit dataChanged(index(position, 0), index(position, ColumnCount - 1));
        }
    }
}

int ComponentModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_rows.size();
}

int ComponentModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QString ComponentModel::text(const Row &row, int column) const
{
    switch (column) {
    case NameColumn:
        return row.name;
    case NodeColumn:
        return row.nodeId == 0 ? QString() : QString::number(row.nodeId);
    case StateColumn:
        return row.state;
    case ChangesColumn:
        return row.changes;
    default:
        return QString();
    }
}

QVariant ComponentModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || index.row() >= m_rows.size())
        return QVariant();
    const Row &row = m_rows.at(index.row());
    switch (role) {
    case Qt::DisplayRole:
        return text(row, index.column());
    case Qt::DecorationRole:
        return index.column() == NameColumn ? QVariant(LightIcon::of(row.mark)) : QVariant();
    case Qt::ToolTipRole:
        return plainToolTip(row.sentence);
    case Qt::TextAlignmentRole:
        return index.column() == NodeColumn || index.column() == ChangesColumn
                   ? QVariant(Qt::AlignRight | Qt::AlignVCenter)
                   : QVariant();
    case Qt::AccessibleTextRole: // the light in its word, for who does not see it
        return index.column() == NameColumn
                   ? QVariant(QStringList{ReportMarks::word(row.mark), row.name, row.sentence}.join(
                       QStringLiteral(", ")))
                   : QVariant(text(row, index.column()));
    case MarkRole:
        return int(row.mark);
    case SentenceRole:
        return row.sentence;
    case ShareRole:
        return row.share;
    case NodeRole:
        return row.nodeId;
    default:
        return QVariant();
    }
}

QVariant ComponentModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return QVariant();
    switch (section) {
    case NameColumn:
        return tr("Component");
    case NodeColumn:
        return tr("Node");
    case StateColumn:
        return tr("State");
    case ChangesColumn:
        return tr("Changes");
    default:
        return QVariant();
    }
}
