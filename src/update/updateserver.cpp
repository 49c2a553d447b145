// SPDX-License-Identifier: MIT
#include "updateserver.h"

#include <QHostAddress>
#include <QLoggingCategory>
#include <QRegularExpression>
#include <QSettings>
#include <QStringList>
#include <QUrl>

namespace {

Q_LOGGING_CATEGORY(lcUpdate, "update")

constexpr int maximumNameLength = 253; // of a host name in DNS, without the closing dot (RFC 1035, 2.3.4)

QRegularExpression wholeText(const QString &pattern)
{
    return QRegularExpression(QRegularExpression::anchoredPattern(pattern));
}

bool isPort(const QString &text)
{
    static const QRegularExpression digits = wholeText(QStringLiteral("[0-9]{1,5}"));
    const int port = text.toInt();
    return digits.match(text).hasMatch() && port >= 1 && port <= 65535;
}

bool isIpV6Address(const QString &text)
{
    // No zone ("%eth0"): a percent sign means something else in a URL.
    static const QRegularExpression characters = wholeText(QStringLiteral("[0-9A-Fa-f:.]+"));
    return characters.match(text).hasMatch()
           && QHostAddress(text).protocol() == QAbstractSocket::IPv6Protocol;
}

bool isIpV4Address(const QString &text)
{
    static const QRegularExpression octets = wholeText(QStringLiteral("(?:[0-9]{1,3}\\.){3}[0-9]{1,3}"));
    return octets.match(text).hasMatch() && QHostAddress(text).protocol() == QAbstractSocket::IPv4Protocol;
}

bool isName(const QString &text)
{
    static const QRegularExpression labels = wholeText(QStringLiteral(
        "(?:[a-z0-9_](?:[a-z0-9_-]{0,61}[a-z0-9_])?\\.)*[a-z0-9_](?:[a-z0-9_-]{0,61}[a-z0-9_])?\\.?"));
    // Not in lower case before: the URL gets the text as it is, and a capital may be no letter of host names.
    const QString name = QString::fromLatin1(QUrl::toAce(text)).toLower();
    return name.size() <= maximumNameLength && labels.match(name).hasMatch();
}

bool isNameOrAddress(const QString &text)
{
    // What ends in a number is an address to a URL, and a short one is filled up: "8080" would be 0.0.31.144.
    static const QRegularExpression number(QStringLiteral("(?:^|\\.)(?:[0-9]+|0[xX][0-9A-Fa-f]*)\\.?$"));
    return number.match(text).hasMatch() ? isIpV4Address(text) : isName(text);
}

QString fromEnvironment()
{
    return qEnvironmentVariable("DRAXEL_UPDATE_HOST");
}

QString fromSettings()
{
    // An unquoted comma in the file makes a list of the entry.
    return QSettings().value(QStringLiteral("update/host")).toStringList().join(QLatin1Char(','));
}

/*! The text when it names a host, or an empty one; says in the log why something else is not used. */
QString checked(const QString &text, const char *source)
{
    if (text.isEmpty() || UpdateServer::isHost(text))
        return text;
    qCWarning(lcUpdate) << source
                        << "names no update information server (host or host:port), ignored:" << text;
    return {};
}

} // namespace

namespace UpdateServer {

QString host()
{
    const QString environment = checked(fromEnvironment(), "The environment variable DRAXEL_UPDATE_HOST");
    if (!environment.isEmpty())
        return environment;
    const QString settings = checked(fromSettings(), "The setting update/host");
    if (!settings.isEmpty())
        return settings;
    return QStringLiteral(OVERVIEW_UPDATE_HOST);
}

QString organisationDomain()
{
    return QStringLiteral(OVERVIEW_ORGANISATION_DOMAIN);
}

QString displayName(const QString &host)
{
    return host == QStringLiteral(OVERVIEW_UPDATE_HOST) ? organisationDomain() : host;
}

bool isHost(const QString &text)
{
    static const QRegularExpression parts = wholeText(QStringLiteral("(?:\\[(.*)\\]|([^:]*))(?::(.*))?"));
    const QRegularExpressionMatch match = parts.match(text);
    if (!match.hasMatch())
        return false;
    if (match.capturedStart(3) >= 0 && !isPort(match.captured(3)))
        return false;
    return match.capturedStart(1) >= 0 ? isIpV6Address(match.captured(1))
                                       : isNameOrAddress(match.captured(2));
}

} // namespace UpdateServer
