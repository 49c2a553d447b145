// SPDX-License-Identifier: MIT
#pragma once

#include "objectdictionary.h"
#include "sdoabort.h"

#include <QByteArray>
#include <QCanBusFrame>
#include <QVector>

namespace CanOpen {

/*! The SDO server of one node (CiA 301): expedited and segmented upload and download, block upload.
 *
 *  Knows no device and no clock: a request goes in, the answers come out.
 */
class SdoServer
{
public:
    /*! \a dictionary stays the caller's and must outlive the server. */
    SdoServer(quint8 nodeId, ObjectDictionary *dictionary);

    /*! Takes a frame from the bus and returns the frames to send, none for what is not addressed to this
     *  server. An 8-byte frame on 600h + node ID is a request; every other length and remote frames are
     *  ignored.
     */
    QVector<QCanBusFrame> handleFrame(const QCanBusFrame &frame);

    /*! Whether uploads go in segments even where one frame could hold the value; not so at first. */
    void setSegmented(bool segmented) { m_isSegmented = segmented; }

    /*! Data bytes in a segment of an upload, 1 to 7; 7 at first. */
    void setSegmentSize(int bytes) { m_segmentSize = bytes; }

    /*! Drops a transfer that is under way, as a reset of the node does. */
    void reset();

private:
    enum class Transfer { None, Upload, Download, BlockUploadStart, BlockUpload, BlockUploadEnd };

    QVector<QByteArray> answer(const QByteArray &request);
    QVector<QByteArray> initiateUpload(ObjectKey key);
    QVector<QByteArray> uploadSegment(const QByteArray &request);
    QVector<QByteArray> initiateDownload(const QByteArray &request);
    QVector<QByteArray> downloadSegment(const QByteArray &request);
    QVector<QByteArray> blockUpload(const QByteArray &request);
    QVector<QByteArray> initiateBlockUpload(const QByteArray &request);
    QVector<QByteArray> acknowledgeBlock(const QByteArray &request);
    QVector<QByteArray> nextBlock();
    QVector<QByteArray> blockEnd();

    std::optional<SdoAbort> startReading(ObjectKey key);
    std::optional<SdoAbort> checkLength(const ObjectEntry &entry, int size) const;
    std::optional<SdoAbort> store(ObjectKey key, const QByteArray &data);
    QVector<QByteArray> abort(ObjectKey key, SdoAbort code);

    quint8 m_nodeId;
    ObjectDictionary *m_dictionary;

    bool m_isSegmented = false;
    int m_segmentSize = 7;
    Transfer m_transfer = Transfer::None;
    ObjectKey m_key;
    QByteArray m_data;     // of the upload, as it was when it began; or what the download has brought so far
    int m_position = 0;    // bytes of an upload that the client has
    bool m_toggle = false; // of the next segment
    std::optional<quint32> m_size; // indicated by the client of a download
    int m_blockSize = 0;           // segments in a block
    int m_blockSent = 0;           // segments of the block that waits for its acknowledge
    bool m_hasCrc = false;
};

} // namespace CanOpen
