// SPDX-License-Identifier: MIT
#pragma once

class QCanBusFrame;

namespace CanOpen {

/*! What may be sent to a vehicle by somebody who only looks: the client's frames of SDO uploads, and aborts (CiA 301).
 *
 *  A data frame in standard format on COB-ID 601h to 67Fh, of eight bytes, whose first byte is one of
 *
 *  | Byte 0   | Frame                          |
 *  |----------|--------------------------------|
 *  | 40h      | initiate upload                |
 *  | 60h, 70h | upload segment, both toggles   |
 *  | 80h      | abort                          |
 *  | A0h, A4h | initiate block upload          |
 *  | A3h      | start of a block upload        |
 *  | A2h      | acknowledge of a block         |
 *  | A1h      | end of a block upload          |
 *
 *  Everything else could change something: downloads write, NMT commands stop and start, PDOs and SYNC drive outputs.
 */
bool isUploadRequest(const QCanBusFrame &frame);

} // namespace CanOpen
