// SPDX-License-Identifier: MIT
#include "snapshotmasking.h"

#include "masking.h"

#include <snapshot/objecttypes.h>

#include <QRegularExpression>

namespace {

constexpr int usualBits = 32; // of a number that came without bytes

/*! An odometer is worth to know, and a number tells nothing of its owner. */
QString maskedOdometer(const QString &text, Masking *masking)
{
    static const QRegularExpression number(QStringLiteral("^\\s*[0-9][0-9 .,']*\\s*(km|mi|miles|h)?\\s*$"));
    return number.match(text).hasMatch() ? text : masking->word(text);
}

SnapshotNotes masked(const SnapshotNotes &notes, Masking *masking)
{
    SnapshotNotes masked;
    masked.vehicle = masking->word(notes.vehicle);
    masked.customer = masking->word(notes.customer);
    masked.technician = masking->word(notes.technician);
    masked.note = masking->word(notes.note);
    masked.odometer = maskedOdometer(notes.odometer, masking);
    return masked;
}

/*! Of a file that holds no bytes. */
void maskValue(SnapshotEntry *entry, Masking *masking)
{
    const bool isSecret = Masking::isSecret(entry->key);
    if (entry->value.type() == QVariant::String)
        entry->value
            = isSecret ? masking->word(entry->value.toString()) : masking->text(entry->value.toString());
    else if (entry->value.isValid() && isSecret)
        entry->value
            = QVariant::fromValue<qulonglong>(masking->number(entry->value.toULongLong(), usualBits));
}

void mask(SnapshotEntry *entry, Masking *masking)
{
    if (entry->raw.isEmpty()) {
        maskValue(entry, masking);
        return;
    }
    const QByteArray raw = masking->value(entry->key, entry->raw);
    if (raw == entry->raw)
        return;
    entry->raw = raw;
    if (!entry->value.isValid())
        return;
    entry->value = entry->type ? CanOpen::decodeValue(*entry->type, raw).value_or(QVariant())
                               : ObjectTypes::unsignedValue(raw);
}

void learn(const SnapshotEntry &entry, Masking *masking)
{
    if (!entry.raw.isEmpty())
        masking->learnValue(entry.key, entry.raw);
    else if (entry.value.type() == QVariant::String && Masking::isSecret(entry.key))
        masking->learnSerial(entry.value.toString());
    else if (entry.value.type() == QVariant::String)
        masking->learnValue(entry.key, entry.value.toString().toLatin1());
    else if (Masking::isSecret(entry.key))
        masking->learnNumber(entry.value.toULongLong());
}

} // namespace

void SnapshotMasking::learn(const Snapshot &snapshot, Masking *masking)
{
    const SnapshotNotes &notes = snapshot.notes;
    for (const QString &name : {notes.vehicle, notes.customer, notes.technician, notes.note})
        masking->learnName(name);
    masking->learnBus(snapshot.bus);
    for (const SnapshotNode &node : snapshot.nodes) {
        for (const SnapshotEntry &entry : node.entries)
            ::learn(entry, masking);
    }
}

Snapshot SnapshotMasking::masked(Snapshot snapshot, Masking *masking)
{
    snapshot.notes = ::masked(snapshot.notes, masking);
    snapshot.bus = masking->text(snapshot.bus);
    snapshot.adapter = masking->text(snapshot.adapter);
    for (SnapshotNode &node : snapshot.nodes) {
        node.dataSheet = masking->text(node.dataSheet);
        for (SnapshotEntry &entry : node.entries)
            mask(&entry, masking);
    }
    return snapshot;
}
