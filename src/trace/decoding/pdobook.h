// SPDX-License-Identifier: MIT
#pragma once

#include "pdolayout.h"

#include <canopen/objectlookup.h>
#include <trace/core/traceframe.h>

#include <QHash>

#include <cstddef>
#include <map>
#include <optional>
#include <vector>

struct SdoTransfer;

/*! What the PDOs of a trace's devices carry, and since when: told by a data sheet or a snapshot, read or written in the
 *  trace itself.
 *
 *  What somebody read of a device held before as well; what somebody wrote holds from then on. What the trace says counts
 *  more than what was told beside it.
 */
class PdoBook
{
public:
    /*! More are not learnt: in all, and of the frames with one identifier. */
    static constexpr std::size_t mostLayouts = 65536;
    static constexpr std::size_t mostVersions = 256;

    /*! Learns the PDOs of a node on every channel from where its parameters stand. What was told last counts, but none of it
     *  as much as what the trace says, whichever comes first.
     */
    void tell(quint8 nodeId, const CanOpen::ObjectLookup &lookup);

    /*! Learns from a transfer of 1400h to 1BFFh; others do nothing. In the order in which they ended. */
    void learn(const SdoTransfer &transfer);

    /*! What the frame at \a position carries; null when that is not known. The pointer holds until something is learnt. */
    const PdoLayout *find(const TraceFrame &frame, std::size_t position) const;

    /*! Raised when something else is known. */
    int revision() const { return m_revision; }

private:
    struct Known
    {
        quint32 value;
        std::size_t since; // position in the trace
        bool isTold;       // beside the trace
    };

    struct Device
    {
        bool tell(quint32 object, quint32 value);

        QHash<quint32, Known> values;   // by object
        QHash<quint16, quint64> placed; // by communication parameter: where the PDO stands in its index
    };

    struct Version
    {
        std::size_t since;
        qint32 layout; // position; -1: the identifier carries nothing that is known
        quint32 owner; // channel, node and parameter
    };

    using Index = QHash<quint64, std::vector<Version>>; // by channel and identifier

    struct Pdo
    {
        int channel;
        quint8 nodeId;
        quint16 parameter; // 1400h to 15FFh, 1800h to 19FFh
    };

    Device &deviceOf(int channel, quint8 nodeId);
    void tell(int channel, quint8 nodeId, Device *device, const CanOpen::ObjectLookup &lookup);
    void tell(const Pdo &pdo, Device *device, const CanOpen::ObjectLookup &lookup);
    std::optional<std::size_t> note(Device *device, const SdoTransfer &transfer, quint32 value);
    bool isHeard(int channel, const PdoLayout &layout, std::size_t position) const;
    void update(const Pdo &pdo, Device *device, std::size_t changed);
    void place(const Pdo &pdo, Device *device, quint64 identifier, std::size_t since,
               const PdoLayout &layout);
    void withdraw(const Pdo &pdo, Device *device, std::size_t since);
    Index &indexOf(const Pdo &pdo);
    const PdoLayout *layoutAt(const Index &index, const TraceFrame &frame, std::size_t position) const;
    const PdoLayout *versionAt(const Index &index, quint64 identifier, std::size_t position) const;

    std::map<quint32, Device> m_devices;      // by channel and node
    QHash<quint32, std::size_t> m_heardSince; // by owner: from where on the trace says something of a PDO
    Index m_transmit;
    Index m_receive;
    std::vector<PdoLayout> m_layouts;
    int m_revision = 0;
};
