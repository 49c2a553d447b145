// SPDX-License-Identifier: MIT
#pragma once

#include "snapshot.h"

#include <QCoreApplication>

#include <optional>

class JsonObject;

/*! The reading half of SnapshotFile: takes a document apart and looks whether it fits together. */
class SnapshotReading
{
    Q_DECLARE_TR_FUNCTIONS(SnapshotReading)

public:
    /*! What \a document says; what is wrong is noted in its place. \a highestVersion is the newest one that is known. */
    static Snapshot read(const JsonObject &document, int highestVersion);

private:
    static void readHead(const JsonObject &document, int highestVersion);
    static void readOrigin(const JsonObject &document, Snapshot *snapshot);
    static SnapshotNode readNode(const JsonObject &object);
    static SnapshotEntry readEntry(const JsonObject &object);
    static void readType(const JsonObject &object, SnapshotEntry *entry);
    static void readRaw(const JsonObject &object, SnapshotEntry *entry);
    static void readGap(const JsonObject &object, SnapshotEntry *entry);
    static void readValue(const JsonObject &object, SnapshotEntry *entry);
};
