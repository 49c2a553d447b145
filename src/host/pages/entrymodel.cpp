// SPDX-License-Identifier: MIT
#include "entrymodel.h"

#include "plaintooltip.h"

#include <checkup/objectwords.h>
#include <snapshot/snapshotwords.h>

#include <algorithm>

namespace {

constexpr int longestText = 400; // characters of a value in a cell; a device may send thousands

QString shortened(const QString &text)
{
    return text.size() <= longestText ? text : text.left(longestText) + QStringLiteral("…");
}

} // namespace

EntryModel::EntryModel(Content content, QObject *parent)
    : QAbstractTableModel(parent)
    , m_content(content)
{
}

void EntryModel::setNode(const SnapshotNode &node)
{
    beginResetModel();
    m_entries.clear();
    const auto belongs = [this](const SnapshotEntry &entry) {
        return m_content == Content::Values ? entry.hasValue() : entry.isGap();
    };
    std::copy_if(node.entries.cbegin(), node.entries.cend(), std::back_inserter(m_entries), belongs);
    endResetModel();
}

int EntryModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_entries.size();
}

int EntryModel::columnCount(const QModelIndex &parent) const
{
    if (parent.isValid())
        return 0;
    return m_content == Content::Values ? BytesColumn + 1 : ValueColumn + 1;
}

QString EntryModel::text(const SnapshotEntry &entry, int column) const
{
    switch (column) {
    case NameColumn:
        return ObjectWords::name(entry.key);
    case NumberColumn:
        return entry.key.toShortString();
    case ValueColumn:
        if (m_content == Content::Gaps)
            return SnapshotWords::reason(entry);
        return shortened(entry.value.isValid() ? ObjectWords::value(entry.key, entry.value)
                                               : QString::fromLatin1(entry.raw.toHex(' ')));
    case BytesColumn:
        return shortened(QString::fromLatin1(entry.raw.toHex(' ')));
    default:
        return QString();
    }
}

QVariant EntryModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || index.row() >= m_entries.size())
        return QVariant();
    const SnapshotEntry &entry = m_entries.at(index.row());
    if (role == Qt::DisplayRole)
        return text(entry, index.column());
    if (role == Qt::ToolTipRole)
        return plainToolTip(ObjectWords::nameAndNumber(entry.key) + QStringLiteral("\n")
                            + text(entry, ValueColumn));
    return QVariant();
}

QVariant EntryModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return QVariant();
    switch (section) {
    case NameColumn:
        return tr("What");
    case NumberColumn:
        return tr("Object");
    case ValueColumn:
        return m_content == Content::Values ? tr("Value") : tr("Why not");
    case BytesColumn:
        return tr("Bytes");
    default:
        return QVariant();
    }
}
