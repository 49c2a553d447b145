// SPDX-License-Identifier: MIT
#pragma once

#include "readobserver.h"

#include <snapshot/snapshot.h>

#include <QDateTime>
#include <QMap>
#include <QObject>
#include <QVariant>

#include <functional>

class HostServices;

/*! Makes a snapshot of every read of a plug-in, in whatever way it ends, from what passes on the bus: nothing that was
 *  read is lost with the plug-in's window.
 *
 *  The values come as the plug-in gets them, without their bytes. A node at which the read stopped, and nodes that were
 *  heard and not asked any more, say so.
 */
class ReadSnapshots : public QObject
{
    Q_OBJECT

public:
    using Clock = std::function<QDateTime()>;

    /*! \a services must outlive this; \a program is what the snapshots are said to be made by. */
    ReadSnapshots(HostServices *services, const QString &program, QObject *parent = nullptr);

    /*! The time of day; replaced by tests. */
    void setClock(const Clock &clock) { m_clock = clock; }

signals:
    /*! A read has ended and had values. */
    void snapshotReady(const Snapshot &snapshot);

private:
    /*! What came of one object; invalid until there is a value. */
    struct Answer
    {
        QVariant value;
        qint64 ms = 0; // since the read began
    };
    using Answers = QMap<CanOpen::ObjectKey, Answer>;

    void handlePhase(ReadObserver::Phase phase);
    void handleRequest(quint8 nodeId, CanOpen::ObjectKey key);
    void handleValue(quint8 nodeId, CanOpen::ObjectKey key, const QVariant &value);
    void handleEnd(const ReadSummary &summary);

    Snapshot makeSnapshot(const ReadSummary &summary) const;
    SnapshotNode makeNode(quint8 nodeId, const ReadSummary &summary) const;
    SnapshotEnd endOf(quint8 nodeId, const ReadSummary &summary) const;
    qint64 now() const { return m_begun.msecsTo(m_clock()); }

    HostServices *m_services;
    QString m_program;
    Clock m_clock = &QDateTime::currentDateTime;
    ReadObserver::Phase m_phase = ReadObserver::Phase::Idle;
    QDateTime m_begun;
    int m_bitRate = 0;             // bit/s; 0: nobody tells it
    QDateTime m_played;            // the time of then, of a trace that is played; else invalid
    QMap<quint8, Answers> m_nodes; // what was asked for in the read under way
};
