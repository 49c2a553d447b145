// SPDX-License-Identifier: MIT
#include "snapshotreading.h"

#include "objecttypes.h"
#include "snapshotwriting.h"

#include <canopen/cobid.h>
#include <json/jsonobject.h>

#include <limits>

namespace {

using namespace SnapshotJson;

// All that ISO 8601 can say in four digits of a year: a snapshot may be gone on with years later, or have begun on a
// computer that did not know the time.
constexpr qint64 mostYears = 10000;
constexpr qint64 longestDuration = mostYears * 366 * 24 * 3600 * 1000; // ms
constexpr int longestName = 10000;                                     // characters of a free text

template<typename Value, std::size_t size>
std::optional<Value> valueOf(const Word<Value> (&words)[size], const QString &text)
{
    for (const Word<Value> &word : words) {
        if (text == QLatin1String(word.text))
            return word.value;
    }
    return std::nullopt;
}

bool isFraction(const QVariant &value)
{
    return value.type() == QVariant::Double || value.type() == static_cast<QVariant::Type>(QMetaType::Float);
}

bool isNegative(const QVariant &number)
{
    const bool isSigned = number.type() == QVariant::Int || number.type() == QVariant::LongLong;
    return isSigned && number.toLongLong() < 0;
}

/*! Whether the number or text of a file is the one of the bytes. */
bool isSame(const QVariant &decoded, const QVariant &written)
{
    if (isFraction(decoded)) // a whole one is written without a point by some tools
        return decoded.toDouble() == written.toDouble() && written.type() != QVariant::String;
    if (decoded.type() == QVariant::String || written.type() == QVariant::String)
        return decoded.type() == written.type() && decoded == written;
    return !isFraction(written) && decoded.toULongLong() == written.toULongLong()
           && isNegative(decoded) == isNegative(written);
}

} // namespace

Snapshot SnapshotReading::read(const JsonObject &document, int highestVersion)
{
    Snapshot snapshot;
    readHead(document, highestVersion);
    if (document.place().isFaulty())
        return snapshot;
    readOrigin(document, &snapshot);
    document.forEachObject("nodes", [&snapshot](const JsonObject &object) {
        const SnapshotNode node = readNode(object);
        if (!snapshot.nodes.isEmpty() && node.id <= snapshot.nodes.last().id)
            object.place().complain(tr("The nodes do not stand in the order of their IDs."));
        else
            snapshot.nodes.append(node);
    });
    return snapshot;
}

void SnapshotReading::readHead(const JsonObject &document, int highestVersion)
{
    if (document.text("format") != QLatin1String(formatName))
        document.place().complain(tr("This is no snapshot."));
    if (document.integer("version", 1, std::numeric_limits<int>::max()) > highestVersion)
        document.place().complain(tr("This snapshot was made by a newer program. It takes at least the "
                                     "program's version that made it."));
}

void SnapshotReading::readOrigin(const JsonObject &document, Snapshot *snapshot)
{
    snapshot->program = document.text("program", longestName);
    const QString time = document.text("time", longestName);
    snapshot->time = QDateTime::fromString(time, Qt::ISODateWithMs);
    if (!time.isEmpty() && !snapshot->time.isValid())
        JsonPlace(&document.place(), "time").complain(tr("A date and time as in ISO 8601 is wanted."));
    snapshot->duration = document.integer("duration", 0, longestDuration);
    const std::optional<SnapshotScope> scope = valueOf(scopeWords, document.text("scope"));
    if (!scope)
        JsonPlace(&document.place(), "scope").complain(tr("This word is not known."));
    snapshot->scope = scope.value_or(SnapshotScope::Full);
    snapshot->bus = document.text("bus", longestName);
    snapshot->adapter = document.optionalText("adapter", longestName);
    snapshot->bitRate = static_cast<int>(
        document.optionalInteger("bitRate", 0, std::numeric_limits<int>::max()).value_or(0));
    snapshot->notes.vehicle = document.optionalText("vehicle", longestName);
    snapshot->notes.customer = document.optionalText("customer", longestName);
    snapshot->notes.technician = document.optionalText("technician", longestName);
    snapshot->notes.odometer = document.optionalText("odometer", longestName);
    snapshot->notes.note = document.optionalText("note", longestName);
}

SnapshotNode SnapshotReading::readNode(const JsonObject &object)
{
    constexpr int mostBootUps = 1000000000;
    SnapshotNode node;
    node.id = static_cast<quint8>(object.integer("id", CanOpen::firstNodeId, CanOpen::lastNodeId));
    if (object.has("nmtState")) {
        node.nmtState = valueOf(nmtWords, object.text("nmtState"));
        if (!node.nmtState)
            JsonPlace(&object.place(), "nmtState").complain(tr("This word is not known."));
    }
    const std::optional<SnapshotEnd> end = valueOf(endWords, object.text("end"));
    if (!end)
        JsonPlace(&object.place(), "end").complain(tr("This word is not known."));
    node.end = end.value_or(SnapshotEnd::Complete);
    node.bootUps = static_cast<int>(object.optionalInteger("bootUps", 0, mostBootUps).value_or(0));
    if (const auto median = object.optionalInteger("medianAnswer", 0, std::numeric_limits<int>::max()))
        node.medianAnswer = static_cast<int>(*median);
    if (const auto longest = object.optionalInteger("longestAnswer", 0, std::numeric_limits<int>::max()))
        node.longestAnswer = static_cast<int>(*longest);
    node.dataSheet = object.optionalText("dataSheet", longestName);
    object.forEachObject("entries", [&node](const JsonObject &entryObject) {
        const SnapshotEntry entry = readEntry(entryObject);
        if (!node.entries.isEmpty() && !(node.entries.last().key < entry.key))
            entryObject.place().complain(tr("The entries do not stand in the order of index and sub-index."));
        else
            node.entries.append(entry);
    });
    return node;
}

SnapshotEntry SnapshotReading::readEntry(const JsonObject &object)
{
    SnapshotEntry entry;
    entry.key.index = static_cast<quint16>(object.integer("index", 0, 0xFFFF));
    entry.key.subIndex = static_cast<quint8>(object.integer("sub", 0, 0xFF));
    entry.ms = object.integer("ms", 0, longestDuration);
    entry.abortCode = static_cast<quint32>(object.optionalInteger("abortCode", 0, 0xFFFFFFFFLL).value_or(0));
    readType(object, &entry);
    readRaw(object, &entry);
    readGap(object, &entry);
    readValue(object, &entry);
    return entry;
}

void SnapshotReading::readType(const JsonObject &object, SnapshotEntry *entry)
{
    const std::optional<qint64> type = object.optionalInteger("type", 0, 0xFFFF);
    if (!type)
        return;
    if (CanOpen::isKnownDataType(static_cast<quint16>(*type)))
        entry->type = static_cast<CanOpen::DataType>(*type);
    else
        JsonPlace(&object.place(), "type").complain(tr("This is no data type of CiA 301."));
}

void SnapshotReading::readRaw(const JsonObject &object, SnapshotEntry *entry)
{
    const QByteArray digits = object.optionalText("raw", std::numeric_limits<int>::max()).toLatin1();
    entry->raw = QByteArray::fromHex(digits);
    if (entry->raw.toHex() != digits)
        JsonPlace(&object.place(), "raw")
            .complain(tr("Bytes are wanted, two hexadecimal digits each, in lower case."));
}

void SnapshotReading::readGap(const JsonObject &object, SnapshotEntry *entry)
{
    if (!object.has("gap"))
        return;
    const std::optional<SnapshotGap> gap = valueOf(gapWords, object.text("gap"));
    if (!gap)
        JsonPlace(&object.place(), "gap").complain(tr("This word is not known."));
    else if (object.has("value"))
        object.place().complain(tr("There is a value as well as a reason why there is none."));
    entry->gap = gap.value_or(SnapshotGap::Failed);
}

void SnapshotReading::readValue(const JsonObject &object, SnapshotEntry *entry)
{
    if (entry->gap != SnapshotGap::None)
        return;
    const QVariant written = object.scalar("value");
    if (object.has("value") && !written.isValid())
        JsonPlace(&object.place(), "value").complain(tr("A number or a text is wanted."));
    if (entry->raw.isEmpty()) {
        entry->value = written;
        if (!object.has("value") && !entry->type)
            object.place().complain(tr("There is neither a value nor a reason why there is none."));
        if (!object.has("value") && entry->type) // no bytes at all
            entry->value = CanOpen::decodeValue(*entry->type, entry->raw).value_or(QVariant());
        return;
    }
    const std::optional<QVariant> decoded = entry->type ? CanOpen::decodeValue(*entry->type, entry->raw)
                                                        : ObjectTypes::unsignedValue(entry->raw);
    if (!decoded)
        JsonPlace(&object.place(), "raw").complain(tr("The bytes do not fit the data type."));
    else if (written.isValid() && !isSame(*decoded, written))
        JsonPlace(&object.place(), "value").complain(tr("The value is not that of the bytes."));
    entry->value = decoded.value_or(QVariant());
}
