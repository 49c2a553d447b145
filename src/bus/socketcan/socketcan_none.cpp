// SPDX-License-Identifier: MIT
// Systems without SocketCAN.
#include "cansocket.h"
#include "interfacekind.h"

QString interfaceKind(const QString &name)
{
    Q_UNUSED(name)
    return QString();
}

std::optional<CanSocket> CanSocket::find(const QString &)
{
    return std::nullopt;
}

void CanSocket::noteTimes() const {}

std::optional<quint32> CanSocket::dropped() const
{
    return std::nullopt;
}
