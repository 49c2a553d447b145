// SPDX-License-Identifier: MIT
#include "communicationnames.h"

#include <QCoreApplication>

#include <algorithm>

namespace {

constexpr int anySub = -1;

/*! One object, or as many as there are channels of a kind; of all sub-indices that no row before names. */
struct NameRow
{
    quint16 first;
    quint16 last;
    const char *name; // with %1 for the number of the channel
    int sub = anySub;
};

constexpr NameRow names[] = {
    {0x1002, 0x1002, QT_TRANSLATE_NOOP("CommunicationNames", "Manufacturer status register")},
    {0x1005, 0x1005, QT_TRANSLATE_NOOP("CommunicationNames", "SYNC message identifier")},
    {0x1006, 0x1006, QT_TRANSLATE_NOOP("CommunicationNames", "SYNC period")},
    {0x1007, 0x1007, QT_TRANSLATE_NOOP("CommunicationNames", "Synchronous window length")},
    {0x1008, 0x1008, QT_TRANSLATE_NOOP("CommunicationNames", "Manufacturer device name")},
    {0x1009, 0x1009, QT_TRANSLATE_NOOP("CommunicationNames", "Hardware version")},
    {0x100A, 0x100A, QT_TRANSLATE_NOOP("CommunicationNames", "Software version")},
    {0x100C, 0x100C, QT_TRANSLATE_NOOP("CommunicationNames", "Guard time")},
    {0x100D, 0x100D, QT_TRANSLATE_NOOP("CommunicationNames", "Life time factor")},
    {0x1010, 0x1010, QT_TRANSLATE_NOOP("CommunicationNames", "Store parameters")},
    {0x1011, 0x1011, QT_TRANSLATE_NOOP("CommunicationNames", "Restore default parameters")},
    {0x1012, 0x1012, QT_TRANSLATE_NOOP("CommunicationNames", "TIME message identifier")},
    {0x1014, 0x1014, QT_TRANSLATE_NOOP("CommunicationNames", "Emergency message identifier")},
    {0x1015, 0x1015, QT_TRANSLATE_NOOP("CommunicationNames", "Emergency inhibit time")},
    {0x1016, 0x1016, QT_TRANSLATE_NOOP("CommunicationNames", "Heartbeats that are watched")},
    {0x1017, 0x1017, QT_TRANSLATE_NOOP("CommunicationNames", "Heartbeat period")},
    {0x1019, 0x1019, QT_TRANSLATE_NOOP("CommunicationNames", "SYNC counter")},
    {0x1020, 0x1020, QT_TRANSLATE_NOOP("CommunicationNames", "Date of the configuration")},
    {0x1029, 0x1029, QT_TRANSLATE_NOOP("CommunicationNames", "Behaviour on errors")},
    {0x1200, 0x127F, QT_TRANSLATE_NOOP("CommunicationNames", "SDO server %1")},
    {0x1280, 0x12FF, QT_TRANSLATE_NOOP("CommunicationNames", "SDO client %1")},
    {0x1400, 0x15FF, QT_TRANSLATE_NOOP("CommunicationNames", "Received PDO %1, identifier"), 1},
    {0x1400, 0x15FF, QT_TRANSLATE_NOOP("CommunicationNames", "Received PDO %1, transmission type"), 2},
    {0x1400, 0x15FF, QT_TRANSLATE_NOOP("CommunicationNames", "Received PDO %1, inhibit time"), 3},
    {0x1400, 0x15FF, QT_TRANSLATE_NOOP("CommunicationNames", "Received PDO %1, event timer"), 5},
    {0x1400, 0x15FF, QT_TRANSLATE_NOOP("CommunicationNames", "Received PDO %1")},
    {0x1600, 0x17FF, QT_TRANSLATE_NOOP("CommunicationNames", "Received PDO %1, mapping")},
    {0x1800, 0x19FF, QT_TRANSLATE_NOOP("CommunicationNames", "Sent PDO %1, identifier"), 1},
    {0x1800, 0x19FF, QT_TRANSLATE_NOOP("CommunicationNames", "Sent PDO %1, transmission type"), 2},
    {0x1800, 0x19FF, QT_TRANSLATE_NOOP("CommunicationNames", "Sent PDO %1, inhibit time"), 3},
    {0x1800, 0x19FF, QT_TRANSLATE_NOOP("CommunicationNames", "Sent PDO %1, event timer"), 5},
    {0x1800, 0x19FF, QT_TRANSLATE_NOOP("CommunicationNames", "Sent PDO %1, SYNC start value"), 6},
    {0x1800, 0x19FF, QT_TRANSLATE_NOOP("CommunicationNames", "Sent PDO %1")},
    {0x1A00, 0x1BFF, QT_TRANSLATE_NOOP("CommunicationNames", "Sent PDO %1, mapping")},
};

} // namespace

QString CommunicationNames::name(CanOpen::ObjectKey key)
{
    const auto row = std::find_if(std::begin(names), std::end(names), [key](const NameRow &candidate) {
        return key.index >= candidate.first && key.index <= candidate.last
               && (candidate.sub == anySub || candidate.sub == key.subIndex);
    });
    if (row == std::end(names))
        return QString();
    const QString text = QCoreApplication::translate("CommunicationNames", row->name);
    return row->first == row->last ? text : text.arg(key.index - row->first + 1);
}
