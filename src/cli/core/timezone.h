// SPDX-License-Identifier: MIT
#pragma once

/*! The time zone of the computer. */
namespace TimeZone {

/*! Local times are told by the zone of now, as long as the program runs. Otherwise the C library asks the disk for each of them
 *  whether the zone has changed; Qt's virtual bus tells four for every frame. A zone that the environment names stays. To be
 *  called before the program's first thread.
 */
void keep();

} // namespace TimeZone
