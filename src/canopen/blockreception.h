// SPDX-License-Identifier: MIT
#pragma once

#include "sdoabort.h"
#include "sdoframe.h"

#include <QByteArray>

#include <optional>

namespace CanOpen {

/*! Puts together what a server sends in the blocks of one SDO block upload (CiA 301).
 *
 *  Knows neither frames' way nor time: segments and the ends of waits go in, and what is to be done comes out.
 *  Segments that were lost are asked for again by the number of the last good one.
 */
class BlockReception
{
public:
    /*! Segments in a block. 127 are allowed, but the first byte of a segment is its number: from 32 on, a late
     *  one would look like the start of another transfer.
     */
    static constexpr quint8 blockSize = 31;
    /*! How often in a row a block may bring nothing new. */
    static constexpr int maximumStalls = 4;

    enum class Event {
        Nothing,     //!< more is to come
        Ignored,     //!< twice, late or not of this transfer
        Acknowledge, //!< acknowledge() is to be sent
        Complete,    //!< data() is the value; the end is to be confirmed
        Failed       //!< failure() says why
    };

    /*! Begins; at most \a limit bytes are taken. */
    void begin(const SdoBlockInitiateResponse &response, int limit);

    /*! Eight bytes from the server, anything but an abort. */
    Event take(const QByteArray &payload);

    /*! Nothing has come for a while. */
    Event timeOver();

    QByteArray acknowledge() const;
    const QByteArray &data() const { return m_data; }
    bool hasCrc() const { return m_hasCrc; }
    SdoAbort failure() const { return m_failure; }

private:
    Event handleSegment(const SdoBlockSegment &segment);
    Event endBlock();
    Event takeEnd(const SdoBlockEnd &end);
    Event fail(SdoAbort code);

    QByteArray m_data;
    int m_limit = 0;
    std::optional<quint32> m_size; // when announced
    bool m_hasCrc = false;
    quint8 m_lastGood = 0;     // number of the last segment that came in order
    quint8 m_acknowledged = 0; // that was told
    bool m_hasLastCome = false;
    int m_stalls = 0;
    SdoAbort m_failure = SdoAbort::GeneralError;
};

} // namespace CanOpen
