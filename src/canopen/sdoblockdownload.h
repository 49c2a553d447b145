// SPDX-License-Identifier: MIT
#pragma once

#include "sdoframe.h"

#include <QByteArray>

#include <optional>

namespace CanOpen {

/*! \file
 *  The frames of the SDO block download (CiA 301), read only: this program writes to no device, but hears others do it.
 *  Fields as in sdoframe.h.
 *
 *  | Frame                             | Sent by | Byte 0, bits 7 to 0 | Bytes 1 to 3 | Bytes 4 to 7   |
 *  |-----------------------------------|---------|---------------------|--------------|----------------|
 *  | block download initiate request   | client  | 110 00 r s 0        | multiplexer  | size           |
 *  | block download initiate response  | server  | 101 00 r 00         | multiplexer  | blksize, 0     |
 *  | block download segment            | client  | c qqqqqqq           | data         | data           |
 *  | block download acknowledge        | server  | 101 000 10          | q, blksize   | 0              |
 *  | block download end                | client  | 110 nnn 01          | CRC (two), 0 | 0              |
 *  | block download end response       | server  | 101 000 01          | 0            | 0              |
 */

/*! The same fields as the answer to a block upload has. */
using SdoBlockDownloadRequest = SdoBlockInitiateResponse;

struct SdoBlockDownloadResponse
{
    ObjectKey key;
    bool crcSupported = false;
    quint8 blockSize = 0; // segments in a block; any value is read
};

// Empty when the payload has not eight bytes or another command specifier.
std::optional<SdoBlockDownloadRequest> readSdoBlockDownloadRequest(const QByteArray &payload);
std::optional<SdoBlockDownloadResponse> readSdoBlockDownloadResponse(const QByteArray &payload);
std::optional<SdoBlockAcknowledge> readSdoBlockDownloadAcknowledge(const QByteArray &payload);
std::optional<SdoBlockEnd> readSdoBlockDownloadEnd(const QByteArray &payload);
bool isSdoBlockDownloadEndResponse(const QByteArray &payload);

} // namespace CanOpen
