// SPDX-License-Identifier: MIT
#include "datainterpreter.h"

#include "objectdescriptions.h"
#include "objects.h"
#include "texttables.h"
#include "units.h"
#include "vendortable.h"

#include <QVariant>

namespace {

constexpr BitText systemStatusItems[] = {
    {0, QT_TRANSLATE_NOOP("DataInterpreter", "DX is on,")},
    {1, QT_TRANSLATE_NOOP("DataInterpreter", "DX is awake,")},
    {2, QT_TRANSLATE_NOOP("DataInterpreter", "DX in standby,")},
    {3, QT_TRANSLATE_NOOP("DataInterpreter", "DX runs,")},
    {4, QT_TRANSLATE_NOOP("DataInterpreter", "DX warning,")},
    {5, QT_TRANSLATE_NOOP("DataInterpreter", "DX error,")},
};
static_assert(hasAscendingBits(systemStatusItems));

// Deliberate: the closing parentheses are missing, and the decoder of the LEV type has a fuller list
constexpr CodeText shortLevTypes[] = {
    {1, QT_TRANSLATE_NOOP("DataInterpreter", "Pedelec with speed limit (<25km/h")},
    {2, QT_TRANSLATE_NOOP("DataInterpreter", "Pedelec with speed limit (<45km/h")},
    {3, QT_TRANSLATE_NOOP("DataInterpreter", "Pedelec with speed (>45km/h")},
};
static_assert(hasDistinctCodes(shortLevTypes));

/*! The numbers of the entries of the identity object 1018h. */
enum IdentityEntry : quint8 { VendorId = 1, ProductCode = 2, RevisionNumber = 3, SerialNumber = 4 };

// Deliberate: the number says once more what the words say, and every item ends in a comma, the last one too
QString systemStatusText(quint32 value)
{
    return DataInterpreter::tr("%1,").arg(bitField(value, 0, 5)) + bitTextsInOne(systemStatusItems, value);
}

QString shortLevTypeText(quint32 value)
{
    return codeText(shortLevTypes, bitField(value, 0, 7), QT_TRANSLATE_NOOP("DataInterpreter", "reserved"));
}

void interpretVendorId(quint32 vendorId, QString &text)
{
    const VendorTable &vendors = vendorTable();
    if (vendors.isEmpty())
        return;
    text = vendors.contains(vendorId) ? vendors.company(vendorId) : QString::number(vendorId);
}

QString revisionText(quint32 revision)
{
    return QStringLiteral("%1.%2").arg(bitField(revision, 16, 31)).arg(bitField(revision, 0, 15));
}

} // namespace

QString DataInterpreter::objectName(quint16 index, quint8 subIndex)
{
    const ObjectDescription *description = objectDescriptions().find(index);
    if (description == nullptr)
        return QString();
    return subIndex != 0 && subIndex == description->subIndex ? description->subName : description->name;
}

Qt::GlobalColor DataInterpreter::checkLimits(quint16 index, const QVariant &value)
{
    const ObjectDescription *description = objectDescriptions().find(index);
    if (description == nullptr)
        return Qt::black;

    const quint32 number = value.toUInt();
    for (const ObjectLimits &limits : description->limits) {
        if (limits.maximum && *limits.maximum < number)
            return Qt::red;
        if (limits.minimum && *limits.minimum > number)
            return Qt::blue;
    }
    return Qt::black;
}

QString DataInterpreter::formatValue(quint16 index, quint8 subIndex, const QVariant &value)
{
    Q_UNUSED(subIndex)
    if (index == Object::systemStatus)
        return systemStatusText(value.toUInt());
    if (index == Object::levType)
        return shortLevTypeText(value.toUInt());

    const ObjectDescription *description = objectDescriptions().find(index);
    return description != nullptr ? formatWithUnit(description->unit, value) : QString();
}

void DataInterpreter::interpretIdentity(const QVariant &value, quint8 subIndex, QString &name, QString &text)
{
    const quint32 number = value.toUInt();
    switch (subIndex) {
    case VendorId:
        name = tr("Vendor ID");
        interpretVendorId(number, text);
        break;
    case ProductCode:
        name = QStringLiteral("Product code");
        text = QString::number(number);
        break;
    case RevisionNumber:
        name = QStringLiteral("Revision number");
        text = revisionText(number);
        break;
    case SerialNumber:
        name = QStringLiteral("Serial number");
        text = QString::number(number);
        break;
    default:
        name = QStringLiteral("no entry");
        text = QStringLiteral("no entry");
    }
}
