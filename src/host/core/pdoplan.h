// SPDX-License-Identifier: MIT
#pragma once

#include <snapshot/snapshot.h>

#include <optional>

/*! What a node is asked for so that its transmit PDOs can be read: one question after the other, as the answers lead on.
 *
 *  First its heartbeat producer time (1017h), then of each PDO (1800h on) COB-ID, transmission type and event timer, and
 *  the objects of its mapping (1A00h on). PDOs come in blocks of 64, one for each logical device (CiA 301); a block is left
 *  after 8 numbers in a row that are not there.
 */
class PdoPlan
{
public:
    static constexpr int blockLength = 64; // PDOs
    static constexpr int mostAbsent = 8;   // in a row

    explicit PdoPlan(quint8 nodeId) { m_node.id = nodeId; }

    /*! The question that is open; empty when there is none any more. */
    std::optional<CanOpen::ObjectKey> question() const { return m_question; }

    /*! The answer to it. */
    void take(const SnapshotEntry &entry);

    /*! What was answered. Of a mapping that could not be read to its end there is no number of objects. */
    const SnapshotNode &node() const { return m_node; }
    /*! Why the node has answered no more; empty when it has answered everything. */
    const std::optional<SnapshotEntry> &end() const { return m_end; }
    /*! The first of what the node has, or may have, and did not tell. */
    const std::optional<SnapshotEntry> &refusal() const { return m_refusal; }

private:
    quint16 parameter() const;
    quint16 mapping() const;
    void takeCobId(const SnapshotEntry &entry);
    void takeCount(const SnapshotEntry &entry);
    void takeMapped(const SnapshotEntry &entry);
    void leavePdo(bool isThere);
    void noteRefusal(const SnapshotEntry &entry);

    SnapshotNode m_node;
    std::optional<CanOpen::ObjectKey> m_question = CanOpen::ObjectKey{0x1017, 0};
    int m_number = 1; // of the PDO
    int m_absent = 0; // in a row
    quint32 m_count = 0;
    int m_bits = 0; // mapped so far
    std::optional<SnapshotEntry> m_end;
    std::optional<SnapshotEntry> m_refusal;
};
