// SPDX-License-Identifier: MIT
#include "objecttext.h"

#include <canopen/hexadecimal.h>
#include <cli/core/jsonornull.h>
#include <cli/core/textcolumns.h>
#include <interpreter/datainterpreter.h>
#include <interpreter/objectdescriptions.h>

#include <QCoreApplication>
#include <QJsonDocument>
#include <QJsonObject>
#include <QtEndian>

#include <algorithm>

namespace {

struct ObjectTextTr
{
    Q_DECLARE_TR_FUNCTIONS(ObjectText)
};

constexpr int longestNumber = 8; // bytes

bool isInteger(const QVariant &value)
{
    switch (value.userType()) {
    case QMetaType::UInt:
    case QMetaType::Int:
    case QMetaType::ULongLong:
    case QMetaType::LongLong:
        return true;
    default:
        return false;
    }
}

/*! Only of objects with a unit: others would be the number again. Empty for those. */
QString valueInWords(const ObjectValue &object)
{
    if (!object.type || !isInteger(object.value) || CanOpen::byteSize(*object.type) > 4)
        return QString();
    const ObjectDescription *description = objectDescriptions().find(object.key.index);
    // Sub-index 0 of an object with sub-indices is their number.
    const bool isCount = object.key.subIndex == 0 && *object.type == CanOpen::DataType::Unsigned8;
    if (description == nullptr || description->unit == nullptr || isCount)
        return QString();
    return DataInterpreter::formatValue(object.key.index, object.key.subIndex, object.value);
}

quint64 numberOf(const QByteArray &bytes)
{
    quint64 number = 0;
    for (int i = std::min(bytes.size(), longestNumber) - 1; i >= 0; --i)
        number = (number << 8) | static_cast<quint8>(bytes.at(i));
    return number;
}

QString numberText(quint64 number)
{
    return QStringLiteral("%1 (0x%2)").arg(QString::number(number), CanOpen::hexadecimal(number));
}

bool isPrintable(const QByteArray &bytes)
{
    return !bytes.isEmpty()
           && std::all_of(bytes.cbegin(), bytes.cend(), [](char byte) { return byte >= ' ' && byte <= '~'; });
}

QString bytesText(const QByteArray &bytes)
{
    return QString::fromLatin1(bytes.toHex(' ').toUpper());
}

QVector<QStringList> rowsOfTyped(const ObjectValue &object)
{
    QVector<QStringList> rows;
    const QString words = valueInWords(object);
    if (!words.isEmpty())
        rows.append({ObjectTextTr::tr("Value"), words});
    if (isInteger(object.value)) {
        rows.append(
            {ObjectTextTr::tr("Number"),
             QStringLiteral("%1 (0x%2)")
                 .arg(object.value.toString(), QString::number(numberOf(object.bytes), 16).toUpper())});
    } else if (object.value.type() == QVariant::ByteArray) {
        rows.append({ObjectTextTr::tr("Length"), ObjectTextTr::tr("%1 bytes").arg(object.bytes.size())});
    } else {
        rows.append({ObjectTextTr::tr("Value"), object.value.toString()});
    }
    rows.append({ObjectTextTr::tr("Type"), CanOpen::dataTypeName(*object.type)});
    return rows;
}

QVector<QStringList> rowsOfUntyped(const ObjectValue &object)
{
    QVector<QStringList> rows;
    const QByteArray &bytes = object.bytes;
    if (object.isSizeUnknown) {
        rows.append({ObjectTextTr::tr("Length"), ObjectTextTr::tr("the device does not tell it")});
        return rows;
    }
    if (isPrintable(bytes))
        rows.append({ObjectTextTr::tr("Text"), QString::fromLatin1(bytes)});
    if (!bytes.isEmpty() && bytes.size() <= longestNumber)
        rows.append({ObjectTextTr::tr("Number"), numberText(numberOf(bytes))});
    rows.append({ObjectTextTr::tr("Length"), ObjectTextTr::tr("%1 bytes").arg(bytes.size())});
    return rows;
}

QJsonValue jsonValue(const ObjectValue &object)
{
    if (!object.type)
        return QJsonValue::Null;
    switch (object.value.userType()) {
    case QMetaType::UInt:
    case QMetaType::Int:
    case QMetaType::Float:
    case QMetaType::Double:
        return object.value.toDouble();
    case QMetaType::QByteArray:
        return QJsonValue::Null; // "bytes" has it
    default:
        return object.value.toString(); // 64-bit numbers, which JSON readers round, and texts
    }
}

} // namespace

QString objectText(const ObjectValue &object)
{
    QVector<QStringList> rows{
        {ObjectTextTr::tr("Object"),
         ObjectTextTr::tr("%1 of node %2").arg(object.key.toString(), QString::number(object.nodeId))}};
    const QString name = DataInterpreter::objectName(object.key.index, object.key.subIndex);
    if (!name.isEmpty())
        rows.append({ObjectTextTr::tr("Name"), name});
    rows += object.type ? rowsOfTyped(object) : rowsOfUntyped(object);
    rows.append({ObjectTextTr::tr("Bytes"), bytesText(object.bytes)});
    return alignedLines(rows, 0).join(QLatin1Char('\n'));
}

QByteArray objectJson(const ObjectValue &object)
{
    const QString name = DataInterpreter::objectName(object.key.index, object.key.subIndex);
    const QString type = object.type ? CanOpen::dataTypeName(*object.type) : QString();
    QJsonObject json{{QStringLiteral("node"), object.nodeId},
                     {QStringLiteral("index"), object.key.index},
                     {QStringLiteral("subIndex"), object.key.subIndex},
                     {QStringLiteral("name"), textOrNull(name)},
                     {QStringLiteral("type"), textOrNull(type)},
                     {QStringLiteral("value"), jsonValue(object)},
                     {QStringLiteral("text"), textOrNull(valueInWords(object))},
                     {QStringLiteral("bytes"), QString::fromLatin1(object.bytes.toHex())}};
    if (object.isSizeUnknown)
        json.insert(QStringLiteral("sizeKnown"), false);
    return QJsonDocument(json).toJson();
}
