// SPDX-License-Identifier: MIT
#include "messagelog.h"

#include <QApplication>
#include <QIcon>
#include <QStringList>
#include <QStyle>

#include <algorithm>

namespace {

QStyle::StandardPixmap iconOf(MessageLog::Severity severity)
{
    switch (severity) {
    case MessageLog::Severity::Information:
        return QStyle::SP_MessageBoxInformation;
    case MessageLog::Severity::Warning:
        return QStyle::SP_MessageBoxWarning;
    case MessageLog::Severity::Error:
        break;
    }
    return QStyle::SP_MessageBoxCritical;
}

QString timeText(const QDateTime &time)
{
    return time.toString(QStringLiteral("HH:mm:ss"));
}

} // namespace

MessageLog::MessageLog(QObject *parent)
    : QAbstractTableModel(parent)
    , m_clock([] { return QDateTime::currentDateTime(); })
{
}

void MessageLog::add(Severity severity, const QString &text)
{
    const QDateTime now = m_clock();
    const int last = m_messages.size() - 1;
    const int repeated = findRepeated(severity, text, now);
    if (repeated >= 0) {
        if (repeated < last) {
            beginMoveRows(QModelIndex(), repeated, repeated, QModelIndex(), last + 1);
            std::rotate(m_messages.begin() + repeated, m_messages.begin() + repeated + 1, m_messages.end());
            endMoveRows();
        }
        Message &message = m_messages[last];
        ++message.count;
        message.time = now;
        emit dataChanged(index(last, TimeColumn), index(last, TextColumn));
        return;
    }

    append({now, severity, text, 1});
}

void MessageLog::addEarlier(const QDateTime &time, Severity severity, const QString &text)
{
    append({time.toLocalTime(), severity, text, 1});
}

void MessageLog::append(const Message &message)
{
    if (m_messages.size() >= maximumLength) {
        beginRemoveRows(QModelIndex(), 0, 0);
        m_messages.removeFirst();
        endRemoveRows();
    }
    beginInsertRows(QModelIndex(), m_messages.size(), m_messages.size());
    m_messages.append(message);
    endInsertRows();
}

void MessageLog::clear()
{
    beginResetModel();
    m_messages.clear();
    endResetModel();
}

QString MessageLog::toText(const QVector<int> &rows) const
{
    QStringList lines;
    for (int row = 0; row < m_messages.size(); ++row) {
        if (!rows.isEmpty() && !rows.contains(row))
            continue;
        const Message &message = m_messages.at(row);
        lines.append(timeText(message.time) + QLatin1String("  ") + textOf(message));
    }
    return lines.join(QLatin1Char('\n'));
}

int MessageLog::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_messages.size();
}

int MessageLog::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant MessageLog::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || index.row() >= m_messages.size())
        return QVariant();
    const Message &message = m_messages.at(index.row());
    switch (role) {
    case Qt::DisplayRole:
        return index.column() == TimeColumn ? timeText(message.time) : textOf(message);
    case Qt::ToolTipRole:
        return message.time.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
    case Qt::DecorationRole:
        if (index.column() == TimeColumn)
            return QApplication::style()->standardIcon(iconOf(message.severity));
        return QVariant();
    case Qt::TextAlignmentRole:
        return static_cast<int>(Qt::AlignLeft | Qt::AlignTop);
    default:
        return QVariant();
    }
}

QVariant MessageLog::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return QVariant();
    return section == TimeColumn ? tr("Time") : tr("Message");
}

// -1 when it is a new one.
int MessageLog::findRepeated(Severity severity, const QString &text, const QDateTime &now) const
{
    const int first = std::max(m_messages.size() - comparedMessages, 0);
    for (int row = m_messages.size() - 1; row >= first; --row) {
        const Message &message = m_messages.at(row);
        if (message.text == text && message.severity == severity
            && message.time.secsTo(now) <= repetitionTime)
            return row;
    }
    return -1;
}

QString MessageLog::textOf(const Message &message) const
{
    if (message.count == 1)
        return message.text;
    return tr("%1 (%2 times)").arg(message.text, QString::number(message.count));
}
