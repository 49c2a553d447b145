// SPDX-License-Identifier: MIT
#pragma once

/*! What draxelctl returns to the shell. */
namespace ExitStatus {

constexpr int success = 0;
constexpr int usage = 1; // unknown command, option or value
constexpr int busNotOpened = 2;
constexpr int noUsableNode = 3;   // node 1 was not heard, or the node asked for is not there
constexpr int stoppedEarly = 4;   // a node did not answer, or the bus was lost
constexpr int fileFailed = 5;     // cannot be read or written
constexpr int serverNotAsked = 6; // the update information server gave no answer
constexpr int objectsFailed = 7;  // the read is whole, but some objects could not be read

/*! Ended by a signal, as shells number it. */
constexpr int signalled(int signalNumber)
{
    return 128 + signalNumber;
}

} // namespace ExitStatus
