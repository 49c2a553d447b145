// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/*! Where the update information server is, and what the organisation that runs it is called. */
namespace UpdateServer {

/*! The server as "host" or "host:port", ready to stand in a URL.
 *
 *  The first of these that names a host: the environment variable DRAXEL_UPDATE_HOST, the key "update/host"
 *  of the application's settings, the host compiled in. An entry that is there but names no host (see
 *  isHost()) is passed over with a warning in the log category "update"; an empty one counts as not there.
 */
QString host();

/*! The organisation's plain domain, for messages. Compiled in; never part of a request. */
QString organisationDomain();

/*! What a message calls the server that was asked as \a host: the organisation's domain for the one compiled
 *  in, and \a host itself for one that the user has set.
 */
QString displayName(const QString &host);

/*! Whether the text is a host name, an IPv4 address or an IPv6 address in brackets, and nothing else but
 *  a colon and a port (1 to 65535) after it. Blanks, a scheme, a user name, a path or a query make it none.
 */
bool isHost(const QString &text);

} // namespace UpdateServer
