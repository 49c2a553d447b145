// SPDX-License-Identifier: MIT
#include "busaddress.h"

namespace {

void setError(QString *errorMessage, const QString &text)
{
    if (errorMessage != nullptr)
        *errorMessage = text;
}

} // namespace

std::optional<BusAddress> BusAddress::parse(const QString &text, QString *errorMessage)
{
    const int colon = text.indexOf(QLatin1Char(':'));
    if (colon < 0) {
        setError(
            errorMessage,
            tr("\"%1\" names no bus. Write it as PLUGIN:INTERFACE, for example socketcan:can0.").arg(text));
        return std::nullopt;
    }

    BusAddress address;
    address.plugin = text.left(colon).trimmed();
    address.interfaceName = text.mid(colon + 1).trimmed();
    if (address.plugin.isEmpty()) {
        setError(errorMessage, tr("\"%1\" names no back end before the colon. Write it as PLUGIN:INTERFACE, "
                                  "for example socketcan:can0.")
                                   .arg(text));
        return std::nullopt;
    }
    if (address.interfaceName.isEmpty()) {
        setError(errorMessage, tr("\"%1\" names no interface after the colon. Write it as PLUGIN:INTERFACE, "
                                  "for example socketcan:can0.")
                                   .arg(text));
        return std::nullopt;
    }
    return address;
}

QString BusAddress::toString() const
{
    return plugin + QLatin1Char(':') + interfaceName;
}

bool operator==(const BusAddress &a, const BusAddress &b)
{
    return a.plugin == b.plugin && a.interfaceName == b.interfaceName;
}

bool operator!=(const BusAddress &a, const BusAddress &b)
{
    return !(a == b);
}
