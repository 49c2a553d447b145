// SPDX-License-Identifier: MIT
#include "sdoabort.h"

#include "hexadecimal.h"

#include <QCoreApplication>

namespace CanOpen {

namespace {

struct AbortText
{
    SdoAbort code;
    const char *text;
};

constexpr AbortText abortTexts[] = {
    {SdoAbort::ToggleBitNotAlternated, QT_TRANSLATE_NOOP("CanOpen", "The toggle bit did not alternate")},
    {SdoAbort::ProtocolTimedOut, QT_TRANSLATE_NOOP("CanOpen", "The SDO protocol timed out")},
    {SdoAbort::CommandSpecifierUnknown,
     QT_TRANSLATE_NOOP("CanOpen", "The command specifier is not valid or unknown")},
    {SdoAbort::InvalidBlockSize, QT_TRANSLATE_NOOP("CanOpen", "The block size is not valid")},
    {SdoAbort::InvalidSequenceNumber, QT_TRANSLATE_NOOP("CanOpen", "The sequence number is not valid")},
    {SdoAbort::CrcError, QT_TRANSLATE_NOOP("CanOpen", "The checksum is wrong")},
    {SdoAbort::OutOfMemory, QT_TRANSLATE_NOOP("CanOpen", "The device is out of memory")},
    {SdoAbort::UnsupportedAccess, QT_TRANSLATE_NOOP("CanOpen", "The access to the object is not supported")},
    {SdoAbort::WriteOnly, QT_TRANSLATE_NOOP("CanOpen", "The object can only be written")},
    {SdoAbort::ReadOnly, QT_TRANSLATE_NOOP("CanOpen", "The object can only be read")},
    {SdoAbort::ObjectDoesNotExist, QT_TRANSLATE_NOOP("CanOpen", "The object does not exist")},
    {SdoAbort::CannotBeMapped, QT_TRANSLATE_NOOP("CanOpen", "The object cannot be mapped to a PDO")},
    {SdoAbort::PdoLengthExceeded,
     QT_TRANSLATE_NOOP("CanOpen", "The mapped objects exceed the length of a PDO")},
    {SdoAbort::ParameterIncompatible, QT_TRANSLATE_NOOP("CanOpen", "The parameter is incompatible")},
    {SdoAbort::InternalIncompatibility,
     QT_TRANSLATE_NOOP("CanOpen", "The device has an internal incompatibility")},
    {SdoAbort::HardwareError, QT_TRANSLATE_NOOP("CanOpen", "The access failed because of a hardware error")},
    {SdoAbort::LengthMismatch, QT_TRANSLATE_NOOP("CanOpen", "The length does not match the data type")},
    {SdoAbort::LengthTooHigh, QT_TRANSLATE_NOOP("CanOpen", "There are more bytes than the data type has")},
    {SdoAbort::LengthTooLow, QT_TRANSLATE_NOOP("CanOpen", "There are fewer bytes than the data type has")},
    {SdoAbort::SubIndexDoesNotExist, QT_TRANSLATE_NOOP("CanOpen", "The sub-index does not exist")},
    {SdoAbort::ValueInvalid, QT_TRANSLATE_NOOP("CanOpen", "The value is not valid")},
    {SdoAbort::ValueTooHigh, QT_TRANSLATE_NOOP("CanOpen", "The value is too high")},
    {SdoAbort::ValueTooLow, QT_TRANSLATE_NOOP("CanOpen", "The value is too low")},
    {SdoAbort::MaximumBelowMinimum, QT_TRANSLATE_NOOP("CanOpen", "The maximum is less than the minimum")},
    {SdoAbort::ResourceNotAvailable, QT_TRANSLATE_NOOP("CanOpen", "The resource is not available")},
    {SdoAbort::GeneralError, QT_TRANSLATE_NOOP("CanOpen", "General error")},
    {SdoAbort::CannotBeStored, QT_TRANSLATE_NOOP("CanOpen", "The data cannot be transferred or stored")},
    {SdoAbort::CannotBeStoredLocalControl,
     QT_TRANSLATE_NOOP("CanOpen", "The data cannot be transferred or stored because of local control")},
    {SdoAbort::CannotBeStoredDeviceState,
     QT_TRANSLATE_NOOP("CanOpen",
                       "The data cannot be transferred or stored in the present state of the device")},
    {SdoAbort::NoObjectDictionary, QT_TRANSLATE_NOOP("CanOpen", "There is no object dictionary")},
    {SdoAbort::NoData, QT_TRANSLATE_NOOP("CanOpen", "No data is available")},
    {SdoAbort::NotRecorded, QT_TRANSLATE_NOOP("CanOpen", "The trace holds no answer of the device to this")},
    {SdoAbort::RecordedLater,
     QT_TRANSLATE_NOOP("CanOpen", "The device answers this only later in the trace")},
};

constexpr bool isSortedByCode()
{
    const AbortText *previous = nullptr;
    for (const AbortText &row : abortTexts) {
        if (previous != nullptr && previous->code >= row.code)
            return false;
        previous = &row;
    }
    return true;
}
static_assert(isSortedByCode(), "each code once, in ascending order");

const char *findText(quint32 code)
{
    for (const AbortText &row : abortTexts) {
        if (static_cast<quint32>(row.code) == code)
            return row.text;
    }
    return nullptr;
}

// As CiA 301 writes its codes: "0602 0000h"
QString codeToString(quint32 code)
{
    const QString digits = hexadecimal(code, 8);
    return QStringLiteral("%1 %2h").arg(digits.left(4), digits.mid(4));
}

} // namespace

bool isAboutTheTransfer(quint32 code)
{
    return code == static_cast<quint32>(SdoAbort::ToggleBitNotAlternated)
           || (code >= static_cast<quint32>(SdoAbort::ProtocolTimedOut)
               && code <= static_cast<quint32>(SdoAbort::CrcError));
}

bool isGapOfTrace(quint32 code)
{
    return code == static_cast<quint32>(SdoAbort::NotRecorded)
           || code == static_cast<quint32>(SdoAbort::RecordedLater);
}

QString sdoAbortText(quint32 code)
{
    const char *text = findText(code);
    if (text == nullptr)
        return QCoreApplication::translate("CanOpen", "Abort code %1").arg(codeToString(code));
    return QStringLiteral("%1 (%2)").arg(QCoreApplication::translate("CanOpen", text), codeToString(code));
}

} // namespace CanOpen
