// SPDX-License-Identifier: MIT
#pragma once

#include <snapshot/snapshot.h>

#include <QtEndian>

/*! Vehicles for the tests of the archive, made by hand. */
namespace Vehicles {

constexpr quint32 vendor = 0xFFFE;

inline SnapshotEntry number(quint16 index, quint8 sub, quint32 value, qint64 ms = 0)
{
    SnapshotEntry entry;
    entry.key = {index, sub};
    entry.type = CanOpen::DataType::Unsigned32;
    entry.raw.resize(4);
    qToLittleEndian(value, entry.raw.data());
    entry.value = value;
    entry.ms = ms;
    return entry;
}

inline SnapshotEntry text(quint16 index, quint8 sub, const QByteArray &value)
{
    SnapshotEntry entry;
    entry.key = {index, sub};
    entry.type = CanOpen::DataType::VisibleString;
    entry.raw = value;
    entry.value = QString::fromLatin1(value);
    return entry;
}

inline SnapshotEntry gap(quint16 index, quint8 sub, SnapshotGap why, quint32 abortCode = 0)
{
    SnapshotEntry entry;
    entry.key = {index, sub};
    entry.gap = why;
    entry.abortCode = abortCode;
    return entry;
}

/*! A device with an identity and one class; \a serial 0: it says none of its own. */
inline SnapshotNode device(quint8 nodeId, quint8 componentClass, quint32 serial)
{
    SnapshotNode node;
    node.id = nodeId;
    node.entries = {number(0x1018, 1, vendor),     number(0x1018, 2, 0x454600U + componentClass),
                    number(0x1018, 3, 0x00010002), number(0x1018, 4, serial),
                    number(0x6000, 0, 1),          number(0x6000, 1, componentClass)};
    return node;
}

inline constexpr quint8 controllerClass = 4;
inline constexpr quint8 chargerClass = 5;
inline constexpr quint8 batteryClass = 6;
inline constexpr quint8 motorClass = 7;
inline constexpr quint8 displayClass = 9;
inline constexpr quint8 lockClass = 10;

/*! On 3 September 2026 at 10:12, two hours before UTC, and \a day days later. */
inline QDateTime time(int day = 0)
{
    return QDateTime(QDate(2026, 9, 3), QTime(10, 12), Qt::OffsetFromUTC, 7200).addDays(day);
}

inline Snapshot snapshot(const QVector<SnapshotNode> &nodes, const QDateTime &at = time())
{
    Snapshot snapshot;
    snapshot.program = QStringLiteral("draxelctl 1.0.0");
    snapshot.time = at;
    snapshot.duration = 1234;
    snapshot.bus = QStringLiteral("socketcan:can0");
    snapshot.nodes = nodes;
    return snapshot;
}

/*! Controller 1000 + n, battery 2000 + n, motor 3000 + n, display 4000 + n, lock 5000 + n. */
inline QVector<SnapshotNode> bike(quint32 n)
{
    return {device(1, controllerClass, 1000 + n), device(2, batteryClass, 2000 + n),
            device(3, motorClass, 3000 + n), device(4, displayClass, 4000 + n),
            device(5, lockClass, 5000 + n)};
}

/*! A visit that its number tells from all others, of one of three vehicles. */
inline Snapshot numbered(int n)
{
    Snapshot result = snapshot(bike(static_cast<quint32>(n % 3)), time().addSecs(60 * n));
    result.notes.note = QString::number(n);
    for (quint8 sub = 1; sub <= 200; ++sub) // what takes several pages of a database
        result.nodes[1].insert(number(0x2000, sub, static_cast<quint32>(n) * 0x9E3779B1U * sub));
    return result;
}

/*! "0000fffe-00454606-2001" */
inline QString key(quint8 componentClass, quint32 serial)
{
    return QStringLiteral("0000fffe-%1-%2")
        .arg(0x454600U + componentClass, 8, 16, QLatin1Char('0'))
        .arg(serial);
}

} // namespace Vehicles
