// SPDX-License-Identifier: MIT
#include "emergency.h"

#include "cobid.h"

#include <QCanBusFrame>
#include <QCoreApplication>
#include <QStringList>

#include <algorithm>

namespace CanOpen {

namespace {

constexpr int emergencySize = 8; // bytes
constexpr int manufacturerOffset = 3;

struct CodeRange
{
    quint16 first;
    quint16 last;
    const char *text;
};

// Ranges stand behind what they hold: the first that has a code has its words.
constexpr CodeRange emergencyTexts[] = {
    {0x8110, 0x8110, QT_TRANSLATE_NOOP("CanOpen", "CAN overrun (messages lost)")},
    {0x8120, 0x8120, QT_TRANSLATE_NOOP("CanOpen", "CAN in error passive mode")},
    {0x8130, 0x8130, QT_TRANSLATE_NOOP("CanOpen", "life guard or heartbeat error")},
    {0x8140, 0x8140, QT_TRANSLATE_NOOP("CanOpen", "recovered from bus off")},
    {0x8150, 0x8150, QT_TRANSLATE_NOOP("CanOpen", "CAN-ID collision")},
    {0x8210, 0x8210, QT_TRANSLATE_NOOP("CanOpen", "PDO not processed: wrong length")},
    {0x8220, 0x8220, QT_TRANSLATE_NOOP("CanOpen", "PDO too long")},
    {0x8230, 0x8230, QT_TRANSLATE_NOOP("CanOpen", "MPDO not processed: destination not available")},
    {0x8240, 0x8240, QT_TRANSLATE_NOOP("CanOpen", "unexpected SYNC length")},
    {0x8250, 0x8250, QT_TRANSLATE_NOOP("CanOpen", "RPDO time-out")},
    {0x0000, 0x00FF, QT_TRANSLATE_NOOP("CanOpen", "error reset or no error")},
    {0x1000, 0x10FF, QT_TRANSLATE_NOOP("CanOpen", "generic error")},
    {0x2100, 0x21FF, QT_TRANSLATE_NOOP("CanOpen", "current, input side")},
    {0x2200, 0x22FF, QT_TRANSLATE_NOOP("CanOpen", "current inside the device")},
    {0x2300, 0x23FF, QT_TRANSLATE_NOOP("CanOpen", "current, output side")},
    {0x2000, 0x2FFF, QT_TRANSLATE_NOOP("CanOpen", "current")},
    {0x3100, 0x31FF, QT_TRANSLATE_NOOP("CanOpen", "mains voltage")},
    {0x3200, 0x32FF, QT_TRANSLATE_NOOP("CanOpen", "voltage inside the device")},
    {0x3300, 0x33FF, QT_TRANSLATE_NOOP("CanOpen", "output voltage")},
    {0x3000, 0x3FFF, QT_TRANSLATE_NOOP("CanOpen", "voltage")},
    {0x4100, 0x41FF, QT_TRANSLATE_NOOP("CanOpen", "ambient temperature")},
    {0x4200, 0x42FF, QT_TRANSLATE_NOOP("CanOpen", "device temperature")},
    {0x4000, 0x4FFF, QT_TRANSLATE_NOOP("CanOpen", "temperature")},
    {0x5000, 0x5FFF, QT_TRANSLATE_NOOP("CanOpen", "hardware")},
    {0x6100, 0x61FF, QT_TRANSLATE_NOOP("CanOpen", "internal software")},
    {0x6200, 0x62FF, QT_TRANSLATE_NOOP("CanOpen", "user software")},
    {0x6300, 0x63FF, QT_TRANSLATE_NOOP("CanOpen", "data set")},
    {0x6000, 0x6FFF, QT_TRANSLATE_NOOP("CanOpen", "software")},
    {0x7000, 0x7FFF, QT_TRANSLATE_NOOP("CanOpen", "additional modules")},
    {0x8100, 0x81FF, QT_TRANSLATE_NOOP("CanOpen", "communication")},
    {0x8200, 0x82FF, QT_TRANSLATE_NOOP("CanOpen", "protocol error")},
    {0x8000, 0x8FFF, QT_TRANSLATE_NOOP("CanOpen", "monitoring")},
    {0x9000, 0x90FF, QT_TRANSLATE_NOOP("CanOpen", "external error")},
    {0xF000, 0xF0FF, QT_TRANSLATE_NOOP("CanOpen", "additional functions")},
    {0xFF00, 0xFFFF, QT_TRANSLATE_NOOP("CanOpen", "specific to the device")},
    {0x0000, 0xFFFF, QT_TRANSLATE_NOOP("CanOpen", "unknown error")},
};
static_assert(sizeof(emergencyTexts) / sizeof(emergencyTexts[0]) == 36,
              "the classes of CiA 301 and what is left");

constexpr bool isEachReached()
{
    const CodeRange *end = std::end(emergencyTexts);
    for (const CodeRange *row = emergencyTexts; row != end; ++row) {
        for (const CodeRange *before = emergencyTexts; before != row; ++before) {
            if (before->first <= row->first && before->last >= row->last)
                return false;
        }
    }
    return true;
}
static_assert(isEachReached(), "no row hides behind an earlier one");

constexpr const char *errorRegisterTexts[] = {
    QT_TRANSLATE_NOOP("CanOpen", "generic error"),
    QT_TRANSLATE_NOOP("CanOpen", "current"),
    QT_TRANSLATE_NOOP("CanOpen", "voltage"),
    QT_TRANSLATE_NOOP("CanOpen", "temperature"),
    QT_TRANSLATE_NOOP("CanOpen", "communication"),
    QT_TRANSLATE_NOOP("CanOpen", "device profile"),
    QT_TRANSLATE_NOOP("CanOpen", "reserved bit 6"),
    QT_TRANSLATE_NOOP("CanOpen", "specific to the manufacturer"),
};
static_assert(sizeof(errorRegisterTexts) / sizeof(errorRegisterTexts[0]) == 8, "one row per bit");

QString translated(const char *text)
{
    return QCoreApplication::translate("CanOpen", text);
}

} // namespace

quint32 Emergency::historyEntry() const
{
    return errorCode | quint32(manufacturer[0]) << 16 | quint32(manufacturer[1]) << 24;
}

QCanBusFrame makeEmergencyFrame(quint32 cobId, const Emergency &emergency)
{
    QByteArray payload(emergencySize, '\0');
    payload[0] = static_cast<char>(emergency.errorCode & 0xFF);
    payload[1] = static_cast<char>(emergency.errorCode >> 8);
    payload[2] = static_cast<char>(emergency.errorRegister);
    std::copy(emergency.manufacturer.begin(), emergency.manufacturer.end(),
              payload.begin() + manufacturerOffset);
    QCanBusFrame frame(identifierOf(cobId), payload);
    frame.setExtendedFrameFormat(isExtendedCobId(cobId));
    return frame;
}

std::optional<Emergency> parseEmergency(const QCanBusFrame &frame)
{
    const QByteArray payload = frame.payload();
    if (frame.frameType() != QCanBusFrame::DataFrame || payload.size() != emergencySize)
        return std::nullopt;
    const auto byteAt = [&payload](int place) { return static_cast<quint8>(payload.at(place)); };
    Emergency emergency;
    emergency.errorCode = static_cast<quint16>(byteAt(0) | byteAt(1) << 8);
    emergency.errorRegister = byteAt(2);
    for (std::size_t i = 0; i < emergency.manufacturer.size(); ++i)
        emergency.manufacturer[i] = byteAt(manufacturerOffset + static_cast<int>(i));
    return emergency;
}

QString emergencyText(quint16 errorCode)
{
    for (const CodeRange &row : emergencyTexts) {
        if (errorCode >= row.first && errorCode <= row.last)
            return translated(row.text);
    }
    return QString(); // the last row has every code
}

QString errorRegisterBitText(int bit)
{
    Q_ASSERT(bit >= 0 && bit < 8);
    return translated(errorRegisterTexts[bit & 7]);
}

QString errorRegisterText(quint8 errorRegister)
{
    QStringList texts;
    for (int bit = 0; bit < 8; ++bit) {
        if ((errorRegister >> bit & 1) != 0)
            texts.append(errorRegisterBitText(bit));
    }
    return texts.join(QLatin1String(", "));
}

} // namespace CanOpen
