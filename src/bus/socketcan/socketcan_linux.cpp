// SPDX-License-Identifier: MIT
// What the kernel tells of its CAN interfaces and of the sockets on them. The kind of an interface is asked by rtnetlink:
// where it lies below /sys does not tell, as serial lines lie beside virtual ones.
#include "cansocket.h"
#include "interfacekind.h"

#include <QDir>
#include <QFile>

#include <array>
#include <cstring>

#include <linux/can.h>
#include <linux/rtnetlink.h>
#include <linux/sock_diag.h>
#include <linux/sockios.h>
#include <net/if.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

namespace {

constexpr timeval longestWait{1, 0}; // s, us

/*! A socket to the kernel's table of interfaces. */
class RouteSocket
{
public:
    RouteSocket()
        : m_descriptor(::socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC, NETLINK_ROUTE))
    {
        if (m_descriptor >= 0)
            ::setsockopt(m_descriptor, SOL_SOCKET, SO_RCVTIMEO, &longestWait, sizeof(longestWait));
    }
    ~RouteSocket()
    {
        if (m_descriptor >= 0)
            ::close(m_descriptor);
    }
    Q_DISABLE_COPY(RouteSocket)

    /*! The message about an interface, or as much of it as there is room for. */
    QByteArray ask(unsigned int interfaceIndex) const;

private:
    int m_descriptor;
};

QByteArray RouteSocket::ask(unsigned int interfaceIndex) const
{
    struct
    {
        nlmsghdr header;
        ifinfomsg message;
    } request{};
    request.header.nlmsg_len = NLMSG_LENGTH(sizeof(request.message));
    request.header.nlmsg_type = RTM_GETLINK;
    request.header.nlmsg_flags = NLM_F_REQUEST;
    request.message.ifi_index = static_cast<int>(interfaceIndex);
    if (m_descriptor < 0 || ::send(m_descriptor, &request, sizeof(request), 0) < 0)
        return QByteArray();
    constexpr int mostBytes = 32 * 1024;
    QByteArray answer(mostBytes, '\0');
    const ssize_t size = ::recv(m_descriptor, answer.data(), mostBytes, 0);
    return answer.left(size > 0 ? static_cast<int>(size) : 0);
}

/*! The value of the first attribute of a type; empty when it is not among \a attributes. */
QByteArray attribute(const QByteArray &attributes, unsigned short type)
{
    const int headerSize = RTA_LENGTH(0);
    int position = 0;
    while (position + headerSize <= attributes.size()) {
        rtattr header{};
        std::memcpy(&header, attributes.constData() + position, sizeof(header));
        if (header.rta_len < headerSize || header.rta_len > attributes.size() - position)
            break;
        if ((header.rta_type & NLA_TYPE_MASK) == type)
            return attributes.mid(position + headerSize, header.rta_len - headerSize);
        position += static_cast<int>(RTA_ALIGN(header.rta_len));
    }
    return QByteArray();
}

/*! 0 for everything but an open socket of SocketCAN. */
int interfaceOf(int descriptor)
{
    sockaddr_can address{};
    socklen_t size = sizeof(address);
    if (::getsockname(descriptor, reinterpret_cast<sockaddr *>(&address), &size) != 0)
        return 0;
    return address.can_family == AF_CAN ? address.can_ifindex : 0;
}

} // namespace

QString interfaceKind(const QString &name)
{
    const unsigned int interfaceIndex = ::if_nametoindex(QFile::encodeName(name).constData());
    if (interfaceIndex == 0)
        return QString();
    const QByteArray answer = RouteSocket().ask(interfaceIndex);
    nlmsghdr header{};
    const int before = static_cast<int>(NLMSG_LENGTH(NLMSG_ALIGN(sizeof(ifinfomsg))));
    if (answer.size() < before)
        return QString();
    std::memcpy(&header, answer.constData(), sizeof(header));
    if (header.nlmsg_type != RTM_NEWLINK)
        return QString();
    const QByteArray kind = attribute(attribute(answer.mid(before), IFLA_LINKINFO), IFLA_INFO_KIND);
    return QString::fromLatin1(kind.constData()); // it ends with a zero byte
}

std::optional<CanSocket> CanSocket::find(const QString &interfaceName)
{
    const int wanted = static_cast<int>(::if_nametoindex(QFile::encodeName(interfaceName).constData()));
    if (wanted == 0)
        return std::nullopt;
    const QStringList open = QDir(QStringLiteral("/proc/self/fd")).entryList(QDir::System | QDir::Files);
    for (const QString &name : open) {
        const int descriptor = name.toInt();
        if (interfaceOf(descriptor) == wanted)
            return CanSocket(descriptor, wanted);
    }
    return std::nullopt;
}

void CanSocket::noteTimes() const
{
    // Fails as there was no frame yet, which does not matter.
    timeval time{};
    if (interfaceOf(m_descriptor) == m_interfaceIndex)
        ::ioctl(m_descriptor, SIOCGSTAMP, &time);
}

std::optional<quint32> CanSocket::dropped() const
{
    // The back end may have closed it, and its number may be that of something else.
    if (interfaceOf(m_descriptor) != m_interfaceIndex)
        return std::nullopt;
    std::array<quint32, SK_MEMINFO_VARS> numbers{};
    socklen_t size = sizeof(numbers);
    if (::getsockopt(m_descriptor, SOL_SOCKET, SO_MEMINFO, numbers.data(), &size) != 0)
        return std::nullopt;
    return numbers.at(SK_MEMINFO_DROPS);
}
