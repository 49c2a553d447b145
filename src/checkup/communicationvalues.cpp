// SPDX-License-Identifier: MIT
#include "communicationvalues.h"

#include <canopen/hexadecimal.h>

#include <QCoreApplication>

#include <algorithm>

namespace {

class CommunicationValuesTr
{
    Q_DECLARE_TR_FUNCTIONS(CommunicationValues)
};

enum class Form : quint8 {
    Plain,
    Identifier,         // a COB-ID with its flags
    SwitchedIdentifier, // one that bit 31 switches off
    MappedObject,       // index, sub-index and bits
    WatchedHeartbeat,   // node ID and milliseconds
    Microseconds,
    HundredMicroseconds,
    Milliseconds,
};

struct FormRow
{
    quint16 first;
    quint16 last;
    quint8 firstSub;
    quint8 lastSub;
    Form form;
};

constexpr FormRow forms[] = {
    {0x1005, 0x1005, 0, 0, Form::Identifier},          {0x1006, 0x1007, 0, 0, Form::Microseconds},
    {0x100C, 0x100C, 0, 0, Form::Milliseconds},        {0x1012, 0x1012, 0, 0, Form::Identifier},
    {0x1014, 0x1014, 0, 0, Form::SwitchedIdentifier},  {0x1015, 0x1015, 0, 0, Form::HundredMicroseconds},
    {0x1016, 0x1016, 1, 127, Form::WatchedHeartbeat},  {0x1017, 0x1017, 0, 0, Form::Milliseconds},
    {0x1200, 0x12FF, 1, 2, Form::SwitchedIdentifier},  {0x1400, 0x15FF, 1, 1, Form::SwitchedIdentifier},
    {0x1400, 0x15FF, 3, 3, Form::HundredMicroseconds}, {0x1400, 0x15FF, 5, 5, Form::Milliseconds},
    {0x1600, 0x17FF, 1, 64, Form::MappedObject},       {0x1800, 0x19FF, 1, 1, Form::SwitchedIdentifier},
    {0x1800, 0x19FF, 3, 3, Form::HundredMicroseconds}, {0x1800, 0x19FF, 5, 5, Form::Milliseconds},
    {0x1A00, 0x1BFF, 1, 64, Form::MappedObject},
};

Form formOf(CanOpen::ObjectKey key)
{
    constexpr quint16 endOfArea = 0x2000;
    if (key.index >= endOfArea)
        return Form::Plain;
    const auto *const row = std::find_if(std::begin(forms), std::end(forms), [key](const FormRow &candidate) {
        return key.index >= candidate.first && key.index <= candidate.last
               && key.subIndex >= candidate.firstSub && key.subIndex <= candidate.lastSub;
    });
    return row != std::end(forms) ? row->form : Form::Plain;
}

QString identifier(quint64 number)
{
    constexpr int leastDigits = 3;
    return CanOpen::hexadecimal(number, leastDigits) + QLatin1Char('h');
}

QString switchedIdentifier(quint64 number)
{
    constexpr quint64 isOff = Q_UINT64_C(1) << 31;
    return (number & isOff) != 0 ? CommunicationValuesTr::tr("%1 (not used)").arg(identifier(number))
                                 : identifier(number);
}

QString mappedObject(quint64 number)
{
    if (number == 0)
        return QString();
    const CanOpen::ObjectKey key{static_cast<quint16>(number >> 16), static_cast<quint8>(number >> 8 & 0xFF)};
    return CommunicationValuesTr::tr("%1 (%2 bit)").arg(key.toShortString(), QString::number(number & 0xFF));
}

QString watchedHeartbeat(quint64 number)
{
    if (number == 0)
        return QString();
    return CommunicationValuesTr::tr("node %1, %2 ms")
        .arg(QString::number(number >> 16 & 0xFF), QString::number(number & 0xFFFF));
}

QString milliseconds(quint64 tenths, const QLocale &locale)
{
    const bool isWhole = tenths % 10 == 0;
    return locale.toString(static_cast<double>(tenths) / 10, 'f', isWhole ? 0 : 1) + QStringLiteral(" ms");
}

} // namespace

QString CommunicationValues::text(CanOpen::ObjectKey key, quint64 number, const QLocale &locale)
{
    constexpr quint64 most = 0xFFFFFFFF; // all of them have 32 bits or fewer
    if (number > most)
        return QString();
    switch (formOf(key)) {
    case Form::Plain:
        return QString();
    case Form::Identifier:
        return identifier(number);
    case Form::SwitchedIdentifier:
        return switchedIdentifier(number);
    case Form::MappedObject:
        return mappedObject(number);
    case Form::WatchedHeartbeat:
        return watchedHeartbeat(number);
    case Form::Microseconds:
        return QString::number(number) + QStringLiteral(" µs");
    case Form::HundredMicroseconds:
        return milliseconds(number, locale);
    case Form::Milliseconds:
        return QString::number(number) + QStringLiteral(" ms");
    }
    return QString();
}
