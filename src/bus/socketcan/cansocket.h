// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

#include <optional>

class QString;

/*! The socket that a back end of this program has open on a SocketCAN interface, for what QtSerialBus does not tell of
 *  it. Belongs to the back end; once that has closed it, nothing is told any more.
 */
class CanSocket
{
public:
    /*! Finds it among what this program has open; nothing where there is none, and on systems without SocketCAN. */
    static std::optional<CanSocket> find(const QString &interfaceName);

    /*! Lets the kernel note when each frame comes. Back ends ask for that only after the first frame, which then has
     *  the time when it was read.
     */
    void noteTimes() const;

    /*! Frames that found the queue of the socket full since it was opened; begins at 0 again after 2^32. */
    std::optional<quint32> dropped() const;

private:
    CanSocket(int descriptor, int interfaceIndex)
        : m_descriptor(descriptor)
        , m_interfaceIndex(interfaceIndex)
    {
    }

    int m_descriptor;
    int m_interfaceIndex;
};
