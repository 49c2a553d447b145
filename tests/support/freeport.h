// SPDX-License-Identifier: MIT
#pragma once

#include <QCoreApplication>
#include <QTcpServer>

/*! A port of this machine on which nobody listens; 0 when there is none.
 *
 *  It lies below the ports that the system gives away by itself, and programs that run beside each other look at other
 *  ports first, so nobody takes it before it is used.
 */
inline quint16 freePort()
{
    constexpr int firstPort = 20000;
    constexpr int count = 10000;
    constexpr int portsOfAProgram = 16;
    static int asked = 0;
    const auto program = static_cast<int>(QCoreApplication::applicationPid() % (count / portsOfAProgram));
    for (int tried = 0; tried < count; ++tried) {
        const auto port = static_cast<quint16>(firstPort + (program * portsOfAProgram + asked++) % count);
        QTcpServer server;
        if (server.listen(QHostAddress::LocalHost, port))
            return port;
    }
    return 0;
}
