// SPDX-License-Identifier: MIT
#pragma once

/*! What draxelctl returns to the shell; a type of its own, so that it is taken for no other number. */
struct ExitStatus
{
    int number = 0;
};

constexpr bool operator==(ExitStatus a, ExitStatus b)
{
    return a.number == b.number;
}
constexpr bool operator!=(ExitStatus a, ExitStatus b)
{
    return !(a == b);
}

namespace Exit {

constexpr ExitStatus success{0};
constexpr ExitStatus usage{1}; // unknown command, option or value
constexpr ExitStatus busNotOpened{2};
constexpr ExitStatus noUsableNode{3};   // node 1 was not heard, or the node asked for is not there
constexpr ExitStatus stoppedEarly{4};   // a node did not answer, or the bus was lost
constexpr ExitStatus fileFailed{5};     // cannot be read or written
constexpr ExitStatus serverNotAsked{6}; // the update information server gave no answer
constexpr ExitStatus objectsFailed{7};  // all was asked for, but some of it could not be read
constexpr ExitStatus different{7};      // of a comparison: something has changed
constexpr ExitStatus findings{8};       // of a check-up: there are faults or warnings

/*! Ended by a signal, as shells number it. */
constexpr ExitStatus signalled(int signalNumber)
{
    return {128 + signalNumber};
}

constexpr ExitStatus noReader = signalled(13); // nobody reads the output any more, as after SIGPIPE

} // namespace Exit
