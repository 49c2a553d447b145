// SPDX-License-Identifier: MIT
#pragma once

#include <snapshot/objecttypes.h>
#include <snapshot/snapshot.h>

/*! Makes snapshots for tests: nodes and entries in the order in which they are added. */
class SnapshotBuilder
{
public:
    SnapshotBuilder()
    {
        m_snapshot.program = QStringLiteral("test 1.0");
        m_snapshot.time = QDateTime(QDate(2026, 9, 3), QTime(10, 12, 5, 120), Qt::OffsetFromUTC, 7200);
        m_snapshot.duration = 4711;
        m_snapshot.bus = QStringLiteral("simulated:test");
        m_snapshot.bitRate = 250000;
    }

    SnapshotBuilder &node(quint8 id)
    {
        SnapshotNode node;
        node.id = id;
        node.nmtState = CanOpen::NmtState::Operational;
        m_snapshot.nodes.append(node);
        return *this;
    }

    /*! A value of the last node by its bytes; of the type that is known of the object. */
    SnapshotBuilder &raw(quint16 index, quint8 subIndex, const QByteArray &bytes)
    {
        SnapshotEntry entry;
        entry.key = {index, subIndex};
        entry.raw = bytes;
        entry.type = ObjectTypes::matching(ObjectTypes::known(entry.key), bytes);
        entry.value
            = entry.type ? *CanOpen::decodeValue(*entry.type, bytes) : ObjectTypes::unsignedValue(bytes);
        m_snapshot.nodes.last().insert(entry);
        return *this;
    }

    SnapshotBuilder &value(quint16 index, quint8 subIndex, CanOpen::DataType type, const QVariant &value)
    {
        SnapshotEntry entry;
        entry.key = {index, subIndex};
        entry.type = type;
        entry.raw = *CanOpen::encodeValue(type, value);
        entry.value = *CanOpen::decodeValue(type, entry.raw);
        m_snapshot.nodes.last().insert(entry);
        return *this;
    }

    SnapshotBuilder &gap(quint16 index, quint8 subIndex, SnapshotGap gap, quint32 abortCode = 0)
    {
        SnapshotEntry entry;
        entry.key = {index, subIndex};
        entry.gap = gap;
        entry.abortCode = abortCode;
        m_snapshot.nodes.last().insert(entry);
        return *this;
    }

    SnapshotNode &last() { return m_snapshot.nodes.last(); }
    Snapshot &snapshot() { return m_snapshot; }

private:
    Snapshot m_snapshot;
};

/*! Compares what toJson() writes, and what it may not: values of their own, and their types. */
inline bool areSame(const SnapshotEntry &a, const SnapshotEntry &b)
{
    return a.key == b.key && a.type == b.type && a.raw == b.raw && a.value == b.value && a.gap == b.gap
           && a.abortCode == b.abortCode && a.ms == b.ms;
}
