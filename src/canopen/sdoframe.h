// SPDX-License-Identifier: MIT
#pragma once

#include "objectkey.h"

#include <QByteArray>

#include <array>
#include <optional>

class QCanBusFrame;

namespace CanOpen {

/*! \file
 *  The frames of the SDO protocols of CiA 301, built and read; both directions, without any state.
 *
 *  A frame has always eight bytes. Multi-byte fields have their least significant byte first; unused bytes are 0.
 *
 *  | Frame                           | Sent by | Byte 0, bits 7 to 0 | Bytes 1 to 3 | Bytes 4 to 7       |
 *  |---------------------------------|---------|---------------------|--------------|--------------------|
 *  | initiate download request       | client  | 001 0 nn e s        | multiplexer  | data or size       |
 *  | initiate download response      | server  | 011 0 0000          | multiplexer  | 0                  |
 *  | download segment request        | client  | 000 t nnn c         | data         | data               |
 *  | download segment response       | server  | 001 t 0000          | 0            | 0                  |
 *  | initiate upload request         | client  | 010 0 0000          | multiplexer  | 0                  |
 *  | initiate upload response        | server  | 010 0 nn e s        | multiplexer  | data or size       |
 *  | upload segment request          | client  | 011 t 0000          | 0            | 0                  |
 *  | upload segment response         | server  | 000 t nnn c         | data         | data               |
 *  | abort                           | either  | 100 0 0000          | multiplexer  | abort code         |
 *  | block upload initiate request   | client  | 101 00 r 00         | multiplexer  | blksize, pst, 0, 0 |
 *  | block upload initiate response  | server  | 110 00 r s 0        | multiplexer  | size               |
 *  | block upload start              | client  | 101 000 11          | 0            | 0                  |
 *  | block upload segment            | server  | c qqqqqqq           | data         | data               |
 *  | block upload acknowledge        | client  | 101 000 10          | q, blksize   | 0                  |
 *  | block upload end                | server  | 110 nnn 01          | CRC (two), 0 | 0                  |
 *  | block upload end response       | client  | 101 000 01          | 0            | 0                  |
 *
 *  - n: bytes of the data field that are not used
 *  - e: expedited, bytes 4 to 7 are the data; else they are the size of the value
 *  - s: n or the size is indicated
 *  - t: toggle bit
 *  - c: last segment
 *  - r: CRC supported
 *  - q: sequence number in the block, 1 to 127; in the acknowledge that of the last good segment
 *  - blksize: segments in a block, 1 to 127
 *  - pst: protocol switch threshold in bytes
 *  - multiplexer: index in bytes 1 and 2, sub-index in byte 3
 */

constexpr int sdoFrameSize = 8;
constexpr int sdoExpeditedSize = 4; // most data bytes of an initiate frame
constexpr int sdoSegmentSize = 7;   // most data bytes of a segment
constexpr quint8 sdoMaximumBlockSize = 127;

/*! Bits 7 to 5 of byte 0 in what a client sends. */
enum class SdoRequest : quint8 {
    DownloadSegment = 0,
    InitiateDownload = 1,
    InitiateUpload = 2,
    UploadSegment = 3,
    Abort = 4,
    BlockUpload = 5,
    BlockDownload = 6,
    Reserved = 7,
};

/*! Bits 7 to 5 of byte 0 in what a server sends. */
enum class SdoResponse : quint8 {
    UploadSegment = 0,
    DownloadSegment = 1,
    InitiateUpload = 2,
    InitiateDownload = 3,
    Abort = 4,
    BlockDownload = 5,
    BlockUpload = 6,
    Reserved = 7,
};

/*! Bits 1 and 0 of byte 0 in what a client sends of a block upload. */
enum class SdoBlockUpload : quint8 { Initiate = 0, EndResponse = 1, Acknowledge = 2, Start = 3 };

/*! The data bytes of one frame, without a heap. */
struct SdoChunk
{
    std::array<char, sdoSegmentSize> bytes{};
    int size = 0; // 0 to 7

    QByteArray toByteArray() const { return QByteArray(bytes.data(), size); }
};

/*! What an initiate upload response or an initiate download request says. */
struct SdoInitiate
{
    ObjectKey key;
    bool expedited = false;
    bool sizeIndicated = false;
    quint32 size = 0; // of the whole value when indicated, else 0
    SdoChunk data;    // of an expedited transfer; all four bytes when the size is not indicated
};

/*! What a segment says, in either direction. */
struct SdoSegment
{
    bool toggle = false;
    bool last = false;
    SdoChunk data;
};

struct SdoBlockInitiateRequest
{
    ObjectKey key;
    bool crcSupported = false;
    quint8 blockSize = 0;               // segments in a block; valid are 1 to 127, any value is read
    quint8 protocolSwitchThreshold = 0; // bytes; 0: no switch to another protocol
};

struct SdoBlockInitiateResponse
{
    ObjectKey key;
    bool crcSupported = false;
    bool sizeIndicated = false;
    quint32 size = 0; // when indicated, else 0
};

struct SdoBlockSegment
{
    bool last = false;
    quint8 sequenceNumber = 0; // valid are 1 to 127
    SdoChunk data;             // always seven bytes when read; the end frame tells how many count
};

struct SdoBlockAcknowledge
{
    quint8 lastSequenceNumber = 0;
    quint8 nextBlockSize = 0; // any value is read
};

struct SdoBlockEnd
{
    int unusedBytes = 0; // of the last segment, 0 to 7
    quint16 crc = 0;
};

/*! Whether \a frame can be an SDO at all: a data frame with an 11-bit identifier and eight bytes. */
bool isSdoFrame(const QCanBusFrame &frame);

// Common parts. A payload shorter than eight bytes is read as if zeros followed it.
SdoRequest sdoRequestOf(const QByteArray &payload);
SdoResponse sdoResponseOf(const QByteArray &payload);
SdoBlockUpload sdoBlockUploadOf(const QByteArray &payload);
ObjectKey sdoKeyOf(const QByteArray &payload);
quint32 sdoAbortCodeOf(const QByteArray &payload);
/*! The toggle bit of an upload segment request or a download segment response. */
bool sdoToggleOf(const QByteArray &payload);

// Frames read: empty when the payload has not eight bytes or another command specifier.
std::optional<SdoInitiate> readSdoInitiateUploadResponse(const QByteArray &payload);
std::optional<SdoInitiate> readSdoInitiateDownloadRequest(const QByteArray &payload);
std::optional<SdoSegment> readSdoUploadSegmentResponse(const QByteArray &payload);
std::optional<SdoSegment> readSdoDownloadSegmentRequest(const QByteArray &payload);
std::optional<SdoBlockInitiateRequest> readSdoBlockInitiateRequest(const QByteArray &payload);
std::optional<SdoBlockInitiateResponse> readSdoBlockInitiateResponse(const QByteArray &payload);
/*! Block segments have no command specifier: every eight bytes are one. */
std::optional<SdoBlockSegment> readSdoBlockSegment(const QByteArray &payload);
std::optional<SdoBlockAcknowledge> readSdoBlockAcknowledge(const QByteArray &payload);
std::optional<SdoBlockEnd> readSdoBlockEnd(const QByteArray &payload);

// Frames built: always eight bytes.
/*! The command byte of an abort, from either side. */
constexpr quint8 sdoAbortCommand = 0x80;

QByteArray makeSdoAbort(ObjectKey key, quint32 code);
QByteArray makeSdoInitiateUploadRequest(ObjectKey key);
/*! Expedited; \a data has 1 to 4 bytes. More are cut off. */
QByteArray makeSdoExpeditedUploadResponse(ObjectKey key, const QByteArray &data);
/*! The start of a segmented upload of \a size bytes. */
QByteArray makeSdoSegmentedUploadResponse(ObjectKey key, quint32 size);
QByteArray makeSdoUploadSegmentRequest(bool toggle);
/*! \a data has 0 to 7 bytes. More are cut off. */
QByteArray makeSdoUploadSegmentResponse(bool toggle, bool last, const QByteArray &data);
/*! Expedited; \a data has 1 to 4 bytes. More are cut off. */
QByteArray makeSdoExpeditedDownloadRequest(ObjectKey key, const QByteArray &data);
/*! The start of a segmented download of \a size bytes. */
QByteArray makeSdoSegmentedDownloadRequest(ObjectKey key, quint32 size);
QByteArray makeSdoInitiateDownloadResponse(ObjectKey key);
/*! \a data has 0 to 7 bytes. More are cut off. */
QByteArray makeSdoDownloadSegmentRequest(bool toggle, bool last, const QByteArray &data);
QByteArray makeSdoDownloadSegmentResponse(bool toggle);
QByteArray makeSdoBlockInitiateRequest(const SdoBlockInitiateRequest &request);
QByteArray makeSdoBlockInitiateResponse(const SdoBlockInitiateResponse &response);
QByteArray makeSdoBlockStart();
/*! \a data has 0 to 7 bytes. More are cut off. */
QByteArray makeSdoBlockSegment(bool last, quint8 sequenceNumber, const QByteArray &data);
QByteArray makeSdoBlockAcknowledge(SdoBlockAcknowledge acknowledge);
QByteArray makeSdoBlockEnd(SdoBlockEnd end);
QByteArray makeSdoBlockEndResponse();

/*! The byte at \a place of \a payload; 0 behind its end. */
inline quint8 byteAt(const QByteArray &payload, int place)
{
    return place < payload.size() ? static_cast<quint8>(payload.at(place)) : quint8(0);
}

/*! The CRC of a block transfer: polynomial x^16 + x^12 + x^5 + 1, start value 0. */
quint16 sdoBlockCrc(const QByteArray &data);

} // namespace CanOpen
