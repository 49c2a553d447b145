// SPDX-License-Identifier: MIT
#include "datainterpreter.h"

#include "texttables.h"

#include <QVariant>

#include <iterator>

namespace {

constexpr char separator[] = " | ";

constexpr BitTextPair deviceTypeLines[] = {
    {16, QT_TRANSLATE_NOOP("DataInterpreter", "DXC not supported\n"),
     QT_TRANSLATE_NOOP("DataInterpreter", "DXC controller supported\n")},
    {24, QT_TRANSLATE_NOOP("DataInterpreter", "Active device\n"),
     QT_TRANSLATE_NOOP("DataInterpreter", "Passive device\n")},
    {25, QT_TRANSLATE_NOOP("DataInterpreter", "Device not changeable by end-user\n"),
     QT_TRANSLATE_NOOP("DataInterpreter", "Device changeable by the end-user\n")},
    {26, QT_TRANSLATE_NOOP("DataInterpreter", "Manufacturer-specific functionality not supported\n"),
     QT_TRANSLATE_NOOP("DataInterpreter", "Manufacturer-specific functionality supported\n")},
    {27, QT_TRANSLATE_NOOP("DataInterpreter", "Masterless mode not supported\n"),
     QT_TRANSLATE_NOOP("DataInterpreter", "Masterless mode supported\n")},
    {30,
     QT_TRANSLATE_NOOP("DataInterpreter",
                       "CANopen device not in Bootloader mode; application software running"),
     QT_TRANSLATE_NOOP("DataInterpreter", "Bootloader active; no application software is running")},
};
static_assert(hasAscendingBits(deviceTypeLines));

constexpr quint8 alarmsSupportedBit = 31;

constexpr BitText alarms[] = {
    {0, QT_TRANSLATE_NOOP("DataInterpreter", "Over voltage alarm supported")},
    {1, QT_TRANSLATE_NOOP("DataInterpreter", "Under voltage alarm supported")},
    {2, QT_TRANSLATE_NOOP("DataInterpreter", "Output over current alarm supported")},
    {3, QT_TRANSLATE_NOOP("DataInterpreter", "Input over current alarm supported")},
    {4, QT_TRANSLATE_NOOP("DataInterpreter", "Electronic over temperature alarm supported")},
    {5, QT_TRANSLATE_NOOP("DataInterpreter", "Battery cells over temperature alarm supported")},
    {6, QT_TRANSLATE_NOOP("DataInterpreter", "Communication error alarm supported")},
    {7, QT_TRANSLATE_NOOP("DataInterpreter", "Battery compatibility error alarm supported")},
    {8, QT_TRANSLATE_NOOP("DataInterpreter", "Electronic power stage defect alarm supported")},
    {9, QT_TRANSLATE_NOOP("DataInterpreter", "Fuse blown alarm supported")},
    {10, QT_TRANSLATE_NOOP("DataInterpreter", "Cell damaged alarm supported")},
    {11, QT_TRANSLATE_NOOP("DataInterpreter", "Charge over temperature alarm supported")},
    {12, QT_TRANSLATE_NOOP("DataInterpreter", "Discharge over temperature alarm supported")},
    {13, QT_TRANSLATE_NOOP("DataInterpreter", "Sensor damaged alarm supported")},
    {14, QT_TRANSLATE_NOOP("DataInterpreter", "Wire broken alarm supported")},
    {15, QT_TRANSLATE_NOOP("DataInterpreter", "Isolation damaged alarm supported")},
};
static_assert(hasAscendingBits(alarms));

constexpr BitText capabilities[] = {
    {0, QT_TRANSLATE_NOOP("DataInterpreter", "Device is able to switch off or on")},
    {1, QT_TRANSLATE_NOOP("DataInterpreter", "Device is possibly active")},
    {2, QT_TRANSLATE_NOOP("DataInterpreter", "Device is a master capable")},
    {3, QT_TRANSLATE_NOOP("DataInterpreter", "Device is able to switch to sleep mode")},
    {4, QT_TRANSLATE_NOOP("DataInterpreter", "Device is able to limit the input current")},
    {5, QT_TRANSLATE_NOOP("DataInterpreter", "Device is able to limit the output current")},
    {6, QT_TRANSLATE_NOOP("DataInterpreter", "Device is able to limit the input voltage")},
    {7, QT_TRANSLATE_NOOP("DataInterpreter", "Device is able to limit the output voltage")},
    {8, QT_TRANSLATE_NOOP("DataInterpreter", "Device is able to transmit dynamic limitation")},
    {9, QT_TRANSLATE_NOOP("DataInterpreter", "Device is able to receive dynamic limitation")},
};
static_assert(hasAscendingBits(capabilities));

constexpr BitText securityFeatures[] = {
    {0, QT_TRANSLATE_NOOP("DataInterpreter", "Mechanical locking with charge&lock cable supported")},
    {1, QT_TRANSLATE_NOOP("DataInterpreter", "Optical alarm supported")},
    {2, QT_TRANSLATE_NOOP("DataInterpreter", "Vibration alarm supported")},
    {3, QT_TRANSLATE_NOOP("DataInterpreter", "RFID-key supported")},
    {4, QT_TRANSLATE_NOOP("DataInterpreter", "Mechanical key supported")},
    {5, QT_TRANSLATE_NOOP("DataInterpreter", "GPS position tracking supported")},
    {6, QT_TRANSLATE_NOOP("DataInterpreter", "Acoustic alarm supported")},
    {7, QT_TRANSLATE_NOOP("DataInterpreter", "Softlock is supported")},
    {8, QT_TRANSLATE_NOOP("DataInterpreter", "Mechanical locking (except charge&lock cable) supported")},
};
static_assert(hasAscendingBits(securityFeatures));

constexpr CodeText keyClasses[] = {
    {0, QT_TRANSLATE_NOOP("DataInterpreter", "Security not supported")},
    {1,
     QT_TRANSLATE_NOOP("DataInterpreter", "Security device; activation in a very secure environment only")},
    {2,
     QT_TRANSLATE_NOOP("DataInterpreter", "Internal device; user has the possibility to activate the key")},
    {3, QT_TRANSLATE_NOOP("DataInterpreter", "External device; temporary keys required")},
    {4, QT_TRANSLATE_NOOP("DataInterpreter", "Internal device, simple changeable; automatic activation of "
                                             "the key resp. simple key learning possible")},
};
static_assert(hasDistinctCodes(keyClasses));

constexpr CodeText levTypes[] = {
    {1, QT_TRANSLATE_NOOP("DataInterpreter", "Pedelec with speed limit (<25 km/h)")},
    {2, QT_TRANSLATE_NOOP("DataInterpreter", "Pedelec with speed limit (<45 km/h)")},
    {3, QT_TRANSLATE_NOOP("DataInterpreter", "Pedelec with speed (>45 km/h)")},
    {4, QT_TRANSLATE_NOOP("DataInterpreter", "Electrical bicycle with speed limit (<25 km/h)")},
    {5, QT_TRANSLATE_NOOP("DataInterpreter", "Electrical bicycle with speed limit (<45 km/h)")},
    {6, QT_TRANSLATE_NOOP("DataInterpreter", "Motor-bike with speed (>45 km/h)")},
    {7, QT_TRANSLATE_NOOP("DataInterpreter", "Electrical bicycle with speed limit (<32 km/h) USA")},
    {8, QT_TRANSLATE_NOOP("DataInterpreter", "Electrical bicycle with speed limit (<20 km/h) CN")},
    {9, QT_TRANSLATE_NOOP("DataInterpreter", "Scooter")},
    {10, QT_TRANSLATE_NOOP("DataInterpreter", "Robot")},
    {11, QT_TRANSLATE_NOOP("DataInterpreter", "Wheelchair")},
};
static_assert(hasDistinctCodes(levTypes));

constexpr CodeText chemistries[] = {
    {0, QT_TRANSLATE_NOOP("DataInterpreter", "Chemistry not specified")},
    {1, QT_TRANSLATE_NOOP("DataInterpreter", "Lead acid (PbA)")},
    {2, QT_TRANSLATE_NOOP("DataInterpreter", "Nickel cadmium")},
    {3, QT_TRANSLATE_NOOP("DataInterpreter", "Nickel zinc (Ni-Zn)")},
    {4, QT_TRANSLATE_NOOP("DataInterpreter", "Reserved")},
    {5, QT_TRANSLATE_NOOP("DataInterpreter", "Nickel iron (Ni-Fe)")},
    {6, QT_TRANSLATE_NOOP("DataInterpreter", "Silver oxide")},
    {7, QT_TRANSLATE_NOOP("DataInterpreter", "Nickel hydrogen (NiH2)")},
    {8, QT_TRANSLATE_NOOP("DataInterpreter", "Nickel metal hydride")},
    {9, QT_TRANSLATE_NOOP("DataInterpreter", "Zinc/Alkaline/Manganese dioxide")},
    {10, QT_TRANSLATE_NOOP("DataInterpreter", "Lithium Ion (Li-Ion) - carbon anode")},
    {11, QT_TRANSLATE_NOOP("DataInterpreter", "Lithium Ion (Li-Ion) - Lithium titanate anode")},
    {12, QT_TRANSLATE_NOOP("DataInterpreter", "Zinc bromine")},
    {13, QT_TRANSLATE_NOOP("DataInterpreter", "Metal air")},
    {14, QT_TRANSLATE_NOOP("DataInterpreter", "Lithium-Iron-sulphide")},
    {15, QT_TRANSLATE_NOOP("DataInterpreter", "Sodium beta")},
};
static_assert(hasDistinctCodes(chemistries));
static_assert(std::size(chemistries) == 16, "every value of the four bits has a text");

constexpr quint8 batteryCount = 16;
constexpr quint8 bitsPerBattery = 2;
constexpr quint8 installedBit = 0;
constexpr quint8 connectedBit = 1;

/*! Appends the numbers, from 1, of the batteries of which \a bit of the two bits is set. */
void appendBatteryNumbers(quint32 batteries, quint8 bit, QString &text)
{
    for (quint8 battery = 0; battery < batteryCount; ++battery) {
        if (!isBitSet(batteries, static_cast<quint8>(battery * bitsPerBattery + bit)))
            continue;
        if (!text.isEmpty())
            text += QLatin1String(", ");
        text += QString::number(battery + 1);
    }
}

} // namespace

QString DataInterpreter::interpretDeviceType(const QVariant &value)
{
    return bitTextPairs(deviceTypeLines, value.toUInt());
}

QString DataInterpreter::interpretSupportedAlarms(const QVariant &value)
{
    const quint32 supported = value.toUInt();
    if (!isBitSet(supported, alarmsSupportedBit))
        return tr("Alarm not supported");
    return bitTexts(alarms, supported).join(QLatin1String(separator));
}

void DataInterpreter::interpretDeviceCapability(const QVariant &value, QStringList &texts)
{
    texts += bitTexts(capabilities, value.toUInt());
}

void DataInterpreter::interpretSpecificationVersions(const QVariant &value, QString &label, QString &text)
{
    const quint32 version = value.toUInt();
    label = QStringLiteral("CiA.part.version.revision");
    text = QStringLiteral("%1.%2.%3.%4")
               .arg(bitField(version, 22, 31))
               .arg(bitField(version, 16, 21))
               .arg(bitField(version, 8, 15))
               .arg(bitField(version, 0, 7));
}

void DataInterpreter::interpretBatteryList(const QVariant &value, QString &installed, QString &connected)
{
    const quint32 batteries = value.toUInt();

    appendBatteryNumbers(batteries, installedBit, installed);
    if (installed.isEmpty())
        installed += tr("No installed batteries");

    appendBatteryNumbers(batteries, connectedBit, connected);
    if (connected.isEmpty())
        connected += tr("No connected batteries");

    // Deliberate: never so, because the text of the installed batteries is not empty by now
    if (!connected.isEmpty() && installed.isEmpty())
        installed += tr("No unconnected installed batteries");
}

void DataInterpreter::interpretSecurityProperties(const QVariant &value, QString &label, QString &features,
                                                  QString &keyClassLabel, QString &keyClass)
{
    const quint32 properties = value.toUInt();
    const QStringList supported = bitTexts(securityFeatures, properties);
    const char *knownKeyClass = findText(keyClasses, bitField(properties, 16, 23));

    label = tr("Security properties");
    features = supported.isEmpty() ? QStringLiteral("nothing supported")
                                   : supported.join(QLatin1String(separator));
    keyClassLabel = tr("Key class");
    keyClass = knownKeyClass != nullptr ? tr(knownKeyClass) : QString();
}

QString DataInterpreter::interpretLevType(const QVariant &value)
{
    return codeText(levTypes, value.toUInt(), QT_TRANSLATE_NOOP("DataInterpreter", "undefined"));
}

QString DataInterpreter::interpretBatteryChemistry(const QVariant &value)
{
    return tr(findText(chemistries, bitField(value.toUInt(), 4, 7)));
}
