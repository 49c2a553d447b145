// SPDX-License-Identifier: MIT
#pragma once

#include "objectkey.h"

#include <QByteArray>

namespace CanOpen {

/*! Follows the SDO transfer that another client has with the same server, as far as its frames tell.
 *
 *  Takes the payloads of both COB-IDs in the order of the bus. What it cannot follow (a lost frame, two
 *  other clients at once) leaves it "under way": the caller bounds its wait by a time-out.
 */
class ForeignTransfer
{
public:
    /*! A request of the other client (600h + node ID); eight bytes. */
    void handleRequest(const QByteArray &payload);

    /*! An answer of the server (580h + node ID); eight bytes. */
    void handleResponse(const QByteArray &payload);

    /*! Whether the other client's transfer has begun and not yet ended. */
    bool isUnderWay() const { return m_phase != Phase::None; }

    /*! Whether the other client begins its uploads and leaves them there: nothing to wait for. */
    bool isAbandoning() const { return m_isAbandoning; }

    void reset() { m_phase = Phase::None; }

private:
    enum class Phase {
        None,
        UploadInitiated,
        Upload, // segments
        DownloadInitiated,
        DownloadLast, // the next answer is the last one
        Download,
        BlockUpload,
        BlockDownload,
    };

    Phase m_phase = Phase::None;
    bool m_isAbandoning = false;
    ObjectKey m_key;
};

} // namespace CanOpen
