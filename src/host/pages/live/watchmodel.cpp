// SPDX-License-Identifier: MIT
#include "watchmodel.h"

#include "curveink.h"
#include "livesession.h"

#include <host/pages/plaintooltip.h>

#include <QGuiApplication>
#include <QLocale>
#include <QPalette>

#include <cmath>

WatchModel::WatchModel(LiveSession *session, QObject *parent)
    : QAbstractTableModel(parent)
    , m_session(session)
{
    connect(&session->watch(), &LiveWatch::changed, this, [this] {
        beginResetModel();
        endResetModel();
    });
}

void WatchModel::refresh()
{
    if (rowCount() > 0)
        emit dataChanged(index(0, 0), index(rowCount() - 1, ColumnCount - 1));
}

QString WatchModel::numberText(double number, const LiveValue &value, int moreDecimals)
{
    constexpr int mostDecimals = 6;
    constexpr int digits = 6; // of a number of which nothing is known
    QLocale locale;
    locale.setNumberOptions(QLocale::OmitGroupSeparator);
    const bool isWhole = number == std::floor(number);
    if (value.divisor <= 1)
        return isWhole && std::fabs(number) < 1e15 ? locale.toString(number, 'f', 0)
                                                   : locale.toString(number, 'g', digits);
    const int decimals = qBound(0, qRound(std::log10(value.divisor)) + moreDecimals, mostDecimals);
    return locale.toString(number, 'f', decimals);
}

int WatchModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_session->watch().items().size();
}

int WatchModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(ColumnCount);
}

QString WatchModel::cell(int row, int column) const
{
    const WatchedItem &item = m_session->watch().items().at(row);
    const LiveValue *value = m_session->watch().value(row);
    if (column == NameColumn)
        return m_session->watch().name(row);
    if (column == NodeColumn)
        return QString::number(item.nodeId);
    if (column == ObjectColumn)
        return item.object.toShortString();
    if (value == nullptr)
        return column == UnitColumn ? QString() : QStringLiteral("–");
    switch (column) {
    case ValueColumn:
        return numberText(value->record.last(), *value);
    case UnitColumn:
        return value->unit;
    case SmallestColumn:
        return numberText(value->record.smallest(), *value);
    case LargestColumn:
        return numberText(value->record.largest(), *value);
    default:
        return numberText(value->record.mean(), *value, 1);
    }
}

bool WatchModel::isLate(int row) const
{
    const LiveValue *value = m_session->watch().value(row);
    return value == nullptr || !m_session->isListening() || value->record.isLate(m_session->now());
}

QString WatchModel::sinceWhen(const LiveValue &value) const
{
    const QDateTime time = m_session->live().timeOfDay(value.record.time());
    return tr("It has not come since %1.").arg(time.toString(QStringLiteral("HH:mm:ss")));
}

QString WatchModel::toolTip(int row) const
{
    const WatchedItem &item = m_session->watch().items().at(row);
    QStringList lines{
        tr("%1, node %2, object %3")
            .arg(m_session->watch().name(row), QString::number(item.nodeId), item.object.toShortString())};
    lines.append(item.period > 0 ? tr("It is asked for every %1 ms.").arg(item.period)
                                 : tr("It is listened to."));
    const LiveValue *value = m_session->watch().value(row);
    if (value == nullptr)
        lines.append(tr("It was not heard yet."));
    else if (isLate(row))
        lines.append(sinceWhen(*value));
    if (value != nullptr)
        lines.append(tr("Smallest %1, largest %2, mean %3")
                         .arg(cell(row, SmallestColumn), cell(row, LargestColumn), cell(row, MeanColumn)));
    const QString silence = m_session->watch().silence(row);
    if (!silence.isEmpty())
        lines.append(silence);
    return plainToolTip(lines.join(QLatin1Char('\n')));
}

QVariant WatchModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || index.row() >= rowCount())
        return QVariant();
    const int row = index.row();
    const bool isName = index.column() == NameColumn;
    const bool isPlotted = m_session->watch().items().at(row).isPlotted;
    switch (role) {
    case Qt::DisplayRole:
        return cell(row, index.column());
    case Qt::ToolTipRole:
        return toolTip(row);
    case Qt::ForegroundRole:
        return isLate(row) ? QGuiApplication::palette().brush(QPalette::Disabled, QPalette::Text)
                           : QVariant();
    case Qt::CheckStateRole:
        return isName ? QVariant(isPlotted ? Qt::Checked : Qt::Unchecked) : QVariant();
    case Qt::DecorationRole:
        return isName && isPlotted ? CurveInk::sign(row) : QVariant();
    case Qt::TextAlignmentRole:
        return index.column() >= ValueColumn && index.column() <= MeanColumn && index.column() != UnitColumn
                   ? int(Qt::AlignRight | Qt::AlignVCenter)
                   : int(Qt::AlignLeft | Qt::AlignVCenter);
    default:
        return QVariant();
    }
}

bool WatchModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (role != Qt::CheckStateRole || index.column() != NameColumn || index.row() >= rowCount())
        return false;
    m_session->watch().setPlotted(index.row(), value.toInt() == Qt::Checked);
    return true;
}

Qt::ItemFlags WatchModel::flags(const QModelIndex &index) const
{
    const Qt::ItemFlags flags = QAbstractTableModel::flags(index);
    return index.column() == NameColumn ? flags | Qt::ItemIsUserCheckable : flags;
}

QVariant WatchModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return QVariant();
    switch (section) {
    case NameColumn:
        return tr("Watch list");
    case ValueColumn:
        return tr("Value");
    case UnitColumn:
        return tr("Unit");
    case SmallestColumn:
        return tr("Smallest");
    case LargestColumn:
        return tr("Largest");
    case MeanColumn:
        return tr("Mean");
    case NodeColumn:
        return tr("Node");
    default:
        return tr("Object");
    }
}
