// SPDX-License-Identifier: MIT
#include "changemodel.h"

#include "plaintooltip.h"

namespace {

struct KindRow
{
    Change::Kind kind;
    const char *text;
};

constexpr KindRow kinds[] = {
    {Change::Kind::Added, QT_TRANSLATE_NOOP("ChangeModel", "New device")},
    {Change::Kind::Removed, QT_TRANSLATE_NOOP("ChangeModel", "Device gone")},
    {Change::Kind::Replaced, QT_TRANSLATE_NOOP("ChangeModel", "Replaced")},
    {Change::Kind::Moved, QT_TRANSLATE_NOOP("ChangeModel", "Moved")},
    {Change::Kind::Firmware, QT_TRANSLATE_NOOP("ChangeModel", "Firmware")},
    {Change::Kind::Parameter, QT_TRANSLATE_NOOP("ChangeModel", "Fixed data")},
    {Change::Kind::Counter, QT_TRANSLATE_NOOP("ChangeModel", "Counter")},
    {Change::Kind::Value, QT_TRANSLATE_NOOP("ChangeModel", "Value")},
    {Change::Kind::Finding, QT_TRANSLATE_NOOP("ChangeModel", "Finding")},
    {Change::Kind::Gap, QT_TRANSLATE_NOOP("ChangeModel", "Not read")},
};

} // namespace

void ChangeModel::setChanges(const QVector<Change> &changes)
{
    beginResetModel();
    m_changes = changes;
    endResetModel();
}

QString ChangeModel::kind(Change::Kind kind)
{
    for (const KindRow &row : kinds) {
        if (row.kind == kind)
            return tr(row.text);
    }
    return QString();
}

int ChangeModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_changes.size();
}

int ChangeModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant ChangeModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || index.row() >= m_changes.size())
        return QVariant();
    const Change &change = m_changes.at(index.row());
    if (role == Qt::ToolTipRole)
        return plainToolTip(change.text);
    if (role != Qt::DisplayRole)
        return QVariant();
    switch (index.column()) {
    case KindColumn:
        return kind(change.kind);
    case TextColumn:
        return change.text;
    case ObjectColumn:
        return change.key ? change.key->toShortString() : QString();
    case BeforeColumn:
        return change.before;
    case AfterColumn:
        return change.after;
    default:
        return QVariant();
    }
}

QVariant ChangeModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return QVariant();
    switch (section) {
    case KindColumn:
        return tr("Kind");
    case TextColumn:
        return tr("What has changed");
    case ObjectColumn:
        return tr("Object");
    case BeforeColumn:
        return tr("Before");
    case AfterColumn:
        return tr("Now");
    default:
        return QVariant();
    }
}
