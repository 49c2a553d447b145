// SPDX-License-Identifier: MIT
#include "datainterpreter.h"

#include "texttables.h"

#include <QVariant>

namespace {

// Deliberate: "Manufactor" is written so; bit 6 has no text, and without bit 0 the text starts with a line
// break
constexpr BitText errors[] = {
    {0, QT_TRANSLATE_NOOP("DataInterpreter", "Generic error")},
    {1, QT_TRANSLATE_NOOP("DataInterpreter", "\nCurrent Error")},
    {2, QT_TRANSLATE_NOOP("DataInterpreter", "\nVoltage Error")},
    {3, QT_TRANSLATE_NOOP("DataInterpreter", "\nTemperature Error")},
    {4, QT_TRANSLATE_NOOP("DataInterpreter", "\nCommunication error")},
    {5, QT_TRANSLATE_NOOP("DataInterpreter", "\nDevice profile specific")},
    {7, QT_TRANSLATE_NOOP("DataInterpreter", "\nManufactor specific error")},
};
static_assert(hasAscendingBits(errors));

// Deliberate: bits 2, 6 and 7 are set when all is well, unlike the others; bit 5 is not shown
constexpr BitTextPair securityStates[] = {
    {0, QT_TRANSLATE_NOOP("DataInterpreter", "Locking mechanism supported\n"),
     QT_TRANSLATE_NOOP("DataInterpreter", "No locking mechanism supported\n")},
    {1, QT_TRANSLATE_NOOP("DataInterpreter", "Device is locked locally\n"),
     QT_TRANSLATE_NOOP("DataInterpreter", "Device is not locked locally\n")},
    {2, QT_TRANSLATE_NOOP("DataInterpreter", "No manipulation detected\n"),
     QT_TRANSLATE_NOOP("DataInterpreter", "Manipulation detected\n")},
    {3, QT_TRANSLATE_NOOP("DataInterpreter", "Device does not own the current encryption key\n"),
     QT_TRANSLATE_NOOP("DataInterpreter", "Device owns current encryption key\n")},
    {4, QT_TRANSLATE_NOOP("DataInterpreter", "Initial encryption key is missing\n"),
     QT_TRANSLATE_NOOP("DataInterpreter", "Device owns initial encryption key\n")},
    {6, QT_TRANSLATE_NOOP("DataInterpreter", "No network lock requested\n"),
     QT_TRANSLATE_NOOP("DataInterpreter", "Locking of all virtual devices in the EMS requested\n")},
    {7, QT_TRANSLATE_NOOP("DataInterpreter", "Network is not locked\n"),
     QT_TRANSLATE_NOOP("DataInterpreter",
                       "All virtual devices in the EMS that support softlocking are locked\n")},
};
static_assert(hasAscendingBits(securityStates));

struct StateText
{
    quint8 code;
    const char *text;
    Qt::GlobalColor color;
};

constexpr StateText fsaStates[] = {
    {0, "specific FSA not active", Qt::white},
    {1, "Do-Not-Attach", Qt::darkYellow},
    {2, "Ready-To-Attach", Qt::darkGreen},
    {3, "Normal Operation", Qt::green},
    {6, "Error", Qt::red},
};
static_assert(hasDistinctCodes(fsaStates));

// Deliberate: the two error states are green like the other states of processing
constexpr StateText processingStates[] = {
    {0, "specific FSA not active", Qt::white},      {1, "Idle", Qt::yellow},
    {2, "Apply A-to-B processing", Qt::darkGreen},  {4, "Apply B-to-A processing", Qt::darkGreen},
    {6, "Stop processing", Qt::darkYellow},         {10, "A-to-B processing: PR_Idle", Qt::green},
    {11, "A-to-B processing: UA const", Qt::green}, {12, "A-to-B processing: UB const", Qt::green},
    {13, "A-to-B processing: IA const", Qt::green}, {14, "A-to-B processing: IB const", Qt::green},
    {15, "A-to-B processing: MPPT", Qt::green},     {16, "A-to-B processing: PR_Error", Qt::green},
    {20, "B-to-A processing: PR_Idle", Qt::green},  {21, "B-to-A processing: UA const", Qt::green},
    {22, "B-to-A processing: UB const", Qt::green}, {23, "B-to-A processing: IA const", Qt::green},
    {24, "B-to-A processing: IB const", Qt::green}, {25, "B-to-A processing: MPPT", Qt::green},
    {26, "B-to-A processing: PR_Error", Qt::green},
};
static_assert(hasDistinctCodes(processingStates));

constexpr quint8 emergencyShutdownBit = 0;

// Deliberate: the odd codes are never reached, because bit 0 alone means an emergency shutdown
constexpr CodeText controlCommands[] = {
    {0, QT_TRANSLATE_NOOP("DataInterpreter", "No action")},
    {4, QT_TRANSLATE_NOOP("DataInterpreter", "Enter operating")},
    {5, QT_TRANSLATE_NOOP("DataInterpreter", "Enter limiting")},
    {6, QT_TRANSLATE_NOOP("DataInterpreter", "Enter operating")},
    {7, QT_TRANSLATE_NOOP("DataInterpreter", "Enter connected")},
    {9, QT_TRANSLATE_NOOP("DataInterpreter", "Enter disconnected")},
    {10, QT_TRANSLATE_NOOP("DataInterpreter", "Enter masterless operating")},
    {11, QT_TRANSLATE_NOOP("DataInterpreter", "Enter compatibillity check")},
    {13, QT_TRANSLATE_NOOP("DataInterpreter", "Enter sleep mode and keep local layer settings")},
    {14, QT_TRANSLATE_NOOP("DataInterpreter", "Enter sleep mode and set node id to 0xFF")},
};
static_assert(hasDistinctCodes(controlCommands));

constexpr BitText statusFlags[] = {
    {0, QT_TRANSLATE_NOOP("DataInterpreter", "Current input active ")},
    {1, QT_TRANSLATE_NOOP("DataInterpreter", "Current output active ")},
    {2, QT_TRANSLATE_NOOP("DataInterpreter", "Fixed voltage input active ")},
    {3, QT_TRANSLATE_NOOP("DataInterpreter", "Fixed voltage output active ")},
    {4, QT_TRANSLATE_NOOP("DataInterpreter", "Current regulation/limitation active ")},
    {5, QT_TRANSLATE_NOOP("DataInterpreter", "Voltage regulation/limitation active ")},
};
static_assert(hasAscendingBits(statusFlags));

constexpr CodeText deviceStates[] = {
    {0, QT_TRANSLATE_NOOP("DataInterpreter", "Disconnected")},
    {1, QT_TRANSLATE_NOOP("DataInterpreter", "Connected")},
    {2, QT_TRANSLATE_NOOP("DataInterpreter", "Compatibility Check")},
    {3, QT_TRANSLATE_NOOP("DataInterpreter", "Limiting")},
    {4, QT_TRANSLATE_NOOP("DataInterpreter", "Operating")},
    {5, QT_TRANSLATE_NOOP("DataInterpreter", "Masterless")},
    {6, QT_TRANSLATE_NOOP("DataInterpreter", "Sleep Mode")},
};
static_assert(hasDistinctCodes(deviceStates));

constexpr BitTextPair powerLine[] = {
    {0, QT_TRANSLATE_NOOP("DataInterpreter", "Powerline on "),
     QT_TRANSLATE_NOOP("DataInterpreter", "Powerline off ")},
};

constexpr BitText systemStates[] = {
    {1, QT_TRANSLATE_NOOP("DataInterpreter", "EMS is not sleeping, ready to work ")},
    {2, QT_TRANSLATE_NOOP("DataInterpreter", "CAN communication is working properly ")},
    {4, QT_TRANSLATE_NOOP("DataInterpreter", "EMS warning ")},
    {5, QT_TRANSLATE_NOOP("DataInterpreter", "EMS error ")},
};
static_assert(hasAscendingBits(systemStates));

/*! Returns text and colour of a state; both are the same in every language. */
template<std::size_t count>
QString stateText(const StateText (&table)[count], quint8 state, Qt::GlobalColor &color)
{
    const StateText *row = findRow(table, state);
    color = row != nullptr ? row->color : Qt::darkYellow;
    return row != nullptr ? QString(QLatin1String(row->text))
                          : QStringLiteral("Reserved: 0x%1").arg(state, 0, 16);
}

} // namespace

QString DataInterpreter::interpretErrorRegister(const QVariant &value)
{
    const quint32 errorRegister = value.toUInt();
    if (errorRegister == 0)
        return QStringLiteral("No error");
    return bitTextsInOne(errors, errorRegister);
}

QString DataInterpreter::interpretSecurityStatus(const QVariant &value)
{
    return bitTextPairs(securityStates, value.toUInt());
}

QString DataInterpreter::interpretFsaState(quint8 state, Qt::GlobalColor &color)
{
    return stateText(fsaStates, state, color);
}

QString DataInterpreter::interpretProcessingState(quint8 state, Qt::GlobalColor &color)
{
    return stateText(processingStates, state, color);
}

void DataInterpreter::interpretControlCommand(const QVariant &value, QString &text)
{
    const quint32 command = value.toUInt();
    text.clear();
    if (isBitSet(command, emergencyShutdownBit)) {
        text = tr("Emergency shutdown");
        return;
    }
    if (const char *known = findText(controlCommands, bitField(command, 0, 5)))
        text = tr(known);
}

void DataInterpreter::interpretDeviceStatus(const QVariant &value, QString &flags, QString &state)
{
    const quint32 status = value.toUInt();
    const QString active = bitTextsInOne(statusFlags, status);
    flags = active.isEmpty() ? tr("nothing active") : active;
    state
        = codeText(deviceStates, bitField(status, 13, 20), QT_TRANSLATE_NOOP("DataInterpreter", "reserved"));
}

QString DataInterpreter::interpretSystemStatus(const QVariant &value)
{
    const quint32 status = value.toUInt();
    return bitTextPairs(powerLine, status) + bitTextsInOne(systemStates, status);
}
