// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

/*! What a frame is in an SDO transfer. Segments have no number of their own kind in them: only who knows the frames before
 *  them can say.
 */
enum class SdoStep : quint8 {
    None,  //!< no SDO
    Stray, //!< of no transfer whose beginning was seen
    UploadRequest,
    UploadAnswer,
    UploadSegmentRequest,
    UploadSegment,
    DownloadRequest,
    DownloadAnswer,
    DownloadSegment,
    DownloadSegmentAnswer,
    BlockUploadRequest,
    BlockUploadAnswer,
    BlockUploadStart,
    BlockUploadSegment,
    BlockUploadAcknowledge,
    BlockUploadEnd,
    BlockUploadEndAnswer,
    BlockDownloadRequest,
    BlockDownloadAnswer,
    BlockDownloadSegment,
    BlockDownloadAcknowledge,
    BlockDownloadEnd,
    BlockDownloadEndAnswer,
    ClientAbort,
    ServerAbort,
};
