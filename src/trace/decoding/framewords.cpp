// SPDX-License-Identifier: MIT
#include "framewords.h"

#include "framesort.h"

#include <canopen/cobid.h>
#include <canopen/emergency.h>
#include <canopen/heartbeat.h>
#include <canopen/hexadecimal.h>
#include <canopen/nmt.h>
#include <canopen/sdoframe.h>
#include <trace/core/traceframe.h>

#include <QCanBusFrame>
#include <QStringList>
#include <QtEndian>

namespace {

constexpr int timeSize = 6;
constexpr quint32 lssAnswer = 0x7E4; // CiA 305
constexpr quint32 lssRequest = 0x7E5;
constexpr quint32 pdoStep = 0x100; // between the identifiers of one node's PDOs of one direction
constexpr quint32 pdoBase = 0x180;
constexpr quint32 receiveBit = 0x080; // of an identifier less the base: a PDO that the node takes

struct Words
{
    quint32 bit;
    const char *text;
};

// Classes of an error frame, as Linux has them
constexpr Words errorClasses[] = {
    {0x001, QT_TRANSLATE_NOOP("FrameWords", "a frame could not be sent in time")},
    {0x002, QT_TRANSLATE_NOOP("FrameWords", "arbitration lost")},
    {0x004, QT_TRANSLATE_NOOP("FrameWords", "the CAN chip has trouble")},
    {0x008, QT_TRANSLATE_NOOP("FrameWords", "protocol violated")},
    {0x010, QT_TRANSLATE_NOOP("FrameWords", "the transceiver has trouble")},
    {0x020, QT_TRANSLATE_NOOP("FrameWords", "nobody acknowledged a frame")},
    {0x040, QT_TRANSLATE_NOOP("FrameWords", "bus-off: the CAN chip has left the bus")},
    {0x080, QT_TRANSLATE_NOOP("FrameWords", "bus error")},
    {0x100, QT_TRANSLATE_NOOP("FrameWords", "the CAN chip was started again")},
};

// Byte 1 of a frame of the class "controller"
constexpr Words controllerStates[] = {
    {0x01, QT_TRANSLATE_NOOP("FrameWords", "received frames were lost")},
    {0x02, QT_TRANSLATE_NOOP("FrameWords", "frames to send were lost")},
    {0x04, QT_TRANSLATE_NOOP("FrameWords", "many errors in receiving")},
    {0x08, QT_TRANSLATE_NOOP("FrameWords", "many errors in sending")},
    {0x10, QT_TRANSLATE_NOOP("FrameWords", "error-passive in receiving")},
    {0x20, QT_TRANSLATE_NOOP("FrameWords", "error-passive in sending")},
    {0x40, QT_TRANSLATE_NOOP("FrameWords", "error-active again")},
};

// Byte 2 of a frame of the class "protocol"
constexpr Words protocolErrors[] = {
    {0x01, QT_TRANSLATE_NOOP("FrameWords", "a single bit")},
    {0x02, QT_TRANSLATE_NOOP("FrameWords", "the form of a frame")},
    {0x04, QT_TRANSLATE_NOOP("FrameWords", "bit stuffing")},
    {0x08, QT_TRANSLATE_NOOP("FrameWords", "a dominant bit could not be sent")},
    {0x10, QT_TRANSLATE_NOOP("FrameWords", "a recessive bit could not be sent")},
    {0x20, QT_TRANSLATE_NOOP("FrameWords", "overload of the bus")},
    {0x40, QT_TRANSLATE_NOOP("FrameWords", "this node announced an error")},
    {0x80, QT_TRANSLATE_NOOP("FrameWords", "in sending")},
};

constexpr const char *requestWords[] = {
    QT_TRANSLATE_NOOP("FrameWords", "segment of a write"),
    QT_TRANSLATE_NOOP("FrameWords", "request to write"),
    QT_TRANSLATE_NOOP("FrameWords", "request to read"),
    QT_TRANSLATE_NOOP("FrameWords", "request for a segment"),
    QT_TRANSLATE_NOOP("FrameWords", "abort by the client"),
    QT_TRANSLATE_NOOP("FrameWords", "request of a block upload"),
    QT_TRANSLATE_NOOP("FrameWords", "request of a block download"),
    QT_TRANSLATE_NOOP("FrameWords", "unknown request"),
};
constexpr const char *answerWords[] = {
    QT_TRANSLATE_NOOP("FrameWords", "segment of a read"),
    QT_TRANSLATE_NOOP("FrameWords", "answer to a segment of a write"),
    QT_TRANSLATE_NOOP("FrameWords", "answer to a read"),
    QT_TRANSLATE_NOOP("FrameWords", "answer to a write"),
    QT_TRANSLATE_NOOP("FrameWords", "abort by the server"),
    QT_TRANSLATE_NOOP("FrameWords", "answer of a block download"),
    QT_TRANSLATE_NOOP("FrameWords", "answer of a block upload"),
    QT_TRANSLATE_NOOP("FrameWords", "unknown answer"),
};
static_assert(std::size(requestWords) == 8 && std::size(answerWords) == 8, "one row for three bits");

QString translated(const char *text)
{
    return QCoreApplication::translate("FrameWords", text);
}

template<std::size_t Size>
QStringList wordsOf(const Words (&table)[Size], quint32 bits)
{
    QStringList words;
    for (const Words &row : table) {
        if ((bits & row.bit) != 0)
            words += translated(row.text);
    }
    return words;
}

bool isRequest(const TraceFrame &frame)
{
    return frame.id > CanOpen::sdoRequestBase;
}

/*! Of the predefined connection set, 1 to 4. */
int pdoNumber(quint32 id)
{
    return static_cast<int>((id - pdoBase) / pdoStep) + 1;
}

} // namespace

QString FrameWords::bytes(const TraceFrame &frame)
{
    if (frame.isRemote())
        return tr("remote, %1 bytes").arg(frame.length);
    return QString::fromLatin1(
        QByteArray::fromRawData(reinterpret_cast<const char *>(frame.bytes.data()), frame.length)
            .toHex(' ')
            .toUpper());
}

QString FrameWords::identifier(const TraceFrame &frame)
{
    constexpr int standardDigits = 3;
    constexpr int extendedDigits = 8;
    return CanOpen::hexadecimal(frame.id, frame.isExtended() ? extendedDigits : standardDigits)
           + QLatin1Char('h');
}

QString FrameWords::line(const TraceFrame &frame)
{
    if (frame.isError())
        return tr("error frame: %1").arg(errors(frame));
    if (frame.isRemote())
        return ofRemote(frame);
    switch (frame.isExtended() ? FrameKind::Other : frameKindOf(frame.id)) {
    case FrameKind::Nmt:
        return ofNmt(frame);
    case FrameKind::Sync:
        return ofSync(frame);
    case FrameKind::Time:
        return ofTime(frame);
    case FrameKind::Emergency:
        return ofEmergency(frame);
    case FrameKind::Pdo:
        return ofPdo(frame);
    case FrameKind::Sdo:
        return ofSdo(frame);
    case FrameKind::Heartbeat:
        return ofHeartbeat(frame);
    case FrameKind::Other:
    case FrameKind::Error:
        break;
    }
    return ofOther(frame);
}

QString FrameWords::malformed(const QString &what, const TraceFrame &frame)
{
    return frame.length == 0 ? tr("%1 without any bytes").arg(what)
                             : tr("%1 of a wrong length: %2").arg(what, bytes(frame));
}

QString FrameWords::ofRemote(const TraceFrame &frame)
{
    const FrameKind kind = frame.isExtended() ? FrameKind::Other : frameKindOf(frame.id);
    if (kind == FrameKind::Heartbeat)
        return tr("is asked for its state (node guarding)");
    if (kind == FrameKind::Pdo)
        return tr("PDO %1 is asked for (remote frame)").arg(pdoNumber(frame.id));
    return tr("frame %1 is asked for (remote frame)").arg(identifier(frame));
}

QString FrameWords::command(quint8 code)
{
    switch (static_cast<CanOpen::NmtCommand>(code)) {
    case CanOpen::NmtCommand::Start:
        return tr("start");
    case CanOpen::NmtCommand::Stop:
        return tr("stop");
    case CanOpen::NmtCommand::EnterPreOperational:
        return tr("enter Pre-operational");
    case CanOpen::NmtCommand::ResetNode:
        return tr("reset the device");
    case CanOpen::NmtCommand::ResetCommunication:
        return tr("reset the communication");
    }
    return tr("unknown command %1h").arg(CanOpen::hexadecimal(code, 2));
}

QString FrameWords::state(quint8 code)
{
    const auto state = static_cast<quint8>(code & ~CanOpen::guardingToggle);
    switch (static_cast<CanOpen::NmtState>(state)) {
    case CanOpen::NmtState::BootUp:
        return tr("Boot-up");
    case CanOpen::NmtState::Stopped:
        return tr("Stopped");
    case CanOpen::NmtState::Operational:
        return tr("Operational");
    case CanOpen::NmtState::PreOperational:
        return tr("Pre-operational");
    }
    return tr("unknown state %1h").arg(CanOpen::hexadecimal(state, 2));
}

QString FrameWords::ofNmt(const TraceFrame &frame)
{
    if (frame.length != CanOpen::nmtFrameSize)
        return malformed(tr("NMT command"), frame);
    const quint8 nodeId = frame.bytes[1];
    const QString words = command(frame.bytes[0]);
    return nodeId == 0 ? tr("NMT command to all nodes: %1").arg(words)
                       : tr("NMT command to node %1: %2").arg(QString::number(nodeId), words);
}

QString FrameWords::ofSync(const TraceFrame &frame)
{
    if (frame.length == 0)
        return tr("SYNC");
    return frame.length == 1 ? tr("SYNC %1").arg(frame.bytes[0]) : malformed(tr("SYNC"), frame);
}

std::optional<QDateTime> FrameWords::timeOfDay(const TraceFrame &frame)
{
    constexpr quint32 millisecondMask = 0x0FFFFFFF;
    constexpr quint32 dayLength = 86'400'000; // ms
    if (frame.size() != timeSize)
        return std::nullopt;
    const quint32 milliseconds = qFromLittleEndian<quint32>(frame.bytes.data()) & millisecondMask;
    if (milliseconds >= dayLength)
        return std::nullopt;
    const QDate day = QDate(1984, 1, 1).addDays(qFromLittleEndian<quint16>(frame.bytes.data() + 4));
    return QDateTime(day, QTime::fromMSecsSinceStartOfDay(static_cast<int>(milliseconds)), Qt::UTC);
}

QString FrameWords::ofTime(const TraceFrame &frame)
{
    const std::optional<QDateTime> time = timeOfDay(frame);
    if (!time && frame.length == timeSize)
        return tr("time that is none: %1").arg(bytes(frame));
    if (!time)
        return malformed(tr("time"), frame);
    return tr("time: %1").arg(time->toString(QStringLiteral("yyyy-MM-dd HH:mm:ss.zzz")));
}

QString FrameWords::ofEmergency(const TraceFrame &frame)
{
    const std::optional<CanOpen::Emergency> emergency = CanOpen::parseEmergency(frame.toCanBusFrame());
    if (!emergency)
        return malformed(tr("emergency"), frame);
    QStringList words{tr("emergency %1h: %2")
                          .arg(CanOpen::hexadecimal(emergency->errorCode, 4),
                               CanOpen::emergencyText(emergency->errorCode))};
    const QString bits = CanOpen::errorRegisterText(emergency->errorRegister);
    const QString number = CanOpen::hexadecimal(emergency->errorRegister, 2);
    words += bits.isEmpty() ? tr("error register %1h").arg(number)
                            : tr("error register %1h (%2)").arg(number, bits);
    const QByteArray own(reinterpret_cast<const char *>(emergency->manufacturer.data()),
                         static_cast<int>(emergency->manufacturer.size()));
    if (own.count('\0') < own.size())
        words += tr("the device's own bytes %1").arg(QString::fromLatin1(own.toHex(' ').toUpper()));
    return words.join(QLatin1String(", "));
}

QString FrameWords::ofPdo(const TraceFrame &frame)
{
    const int number = pdoNumber(frame.id);
    const QString content = frame.length > 0 ? bytes(frame) : tr("no bytes");
    const bool isReceived = ((frame.id - pdoBase) & receiveBit) != 0 && frameNodeOf(frame.id) != 0;
    return isReceived
               ? tr("PDO %1 to the node, its mapping is not known: %2").arg(QString::number(number), content)
               : tr("PDO %1, its mapping is not known: %2").arg(QString::number(number), content);
}

QString FrameWords::sdoCommand(const TraceFrame &frame)
{
    constexpr int specifierShift = 5;
    const std::size_t specifier = frame.bytes[0] >> specifierShift;
    return translated(isRequest(frame) ? requestWords[specifier] : answerWords[specifier]);
}

QString FrameWords::ofSdo(const TraceFrame &frame)
{
    if (frame.length != CanOpen::sdoFrameSize)
        return malformed(tr("SDO"), frame);
    return tr("SDO, %1, of no transfer that begins in the trace: %2").arg(sdoCommand(frame), bytes(frame));
}

QString FrameWords::ofHeartbeat(const TraceFrame &frame)
{
    if (frame.length != 1)
        return malformed(tr("heartbeat"), frame);
    if (frame.bytes[0] == static_cast<quint8>(CanOpen::NmtState::BootUp))
        return tr("boot-up: the device has started");
    return tr("heartbeat: %1").arg(state(frame.bytes[0]));
}

QString FrameWords::errors(const TraceFrame &frame)
{
    constexpr quint32 controllerClass = 0x004;
    constexpr quint32 protocolClass = 0x008;
    constexpr quint32 counterClass = 0x200;
    QStringList words = wordsOf(errorClasses, frame.id);
    if ((frame.id & controllerClass) != 0)
        words += wordsOf(controllerStates, frame.bytes[1]);
    if ((frame.id & protocolClass) != 0)
        words += wordsOf(protocolErrors, frame.bytes[2]);
    const int sending = frame.bytes[6];
    const int receiving = frame.bytes[7];
    if ((frame.id & counterClass) != 0 || sending > 0 || receiving > 0)
        words += tr("error counters: sending %1, receiving %2").arg(sending).arg(receiving);
    return words.isEmpty() ? tr("no reason told") : words.join(QLatin1String("; "));
}

QString FrameWords::ofOther(const TraceFrame &frame)
{
    if (!frame.isExtended() && frame.id == lssRequest)
        return tr("LSS request: %1").arg(bytes(frame));
    if (!frame.isExtended() && frame.id == lssAnswer)
        return tr("LSS answer: %1").arg(bytes(frame));
    return frame.length == 0 ? tr("frame %1 without any bytes").arg(identifier(frame))
                             : tr("frame %1: %2").arg(identifier(frame), bytes(frame));
}
