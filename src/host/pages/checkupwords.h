// SPDX-License-Identifier: MIT
#pragma once

#include <canopen/nmt.h>
#include <checkup/findings.h>
#include <snapshot/snapshot.h>
#include <snapshot/snapshotreader.h>

#include <QCoreApplication>
#include <QString>

#include <optional>

struct CheckupRecord;

/*! What the page of the check-up says, translated. */
class CheckupWords
{
    Q_DECLARE_TR_FUNCTIONS(CheckupWords)

public:
    /*! What a device does, in one or two words: "Operating", "No answer". */
    static QString state(const SnapshotNode &node, SnapshotScope scope);

    /*! The one sentence of a component: its worst finding, why it was not checked, or that it is in order. */
    static QString sentence(const CheckedComponent &component);

    /*! "node 5 of 14 · 3102 of 8410 · 4 s left" */
    static QString progress(const SnapshotProgress &progress, bool isListening);
    /*! Of one node: "Is being read: 120 of 600" */
    static QString progress(const SnapshotProgress &progress);

    /*! "About 2 min left"; empty while it is too early to say. */
    static QString timeLeft(const std::optional<std::chrono::milliseconds> &time);

    /*! The verdict in words, with what was found in numbers. */
    static QString verdict(const CheckupRecord &record);

    /*! Which vehicle, of when and from where: "Vehicle 1104001 · 3 September 2026, 10:12" */
    static QString vehicle(const CheckupRecord &record);

    /*! A name without folder for its file: "1104001 2026-09-03 10-12.dxsnap" */
    static QString fileName(const CheckupRecord &record);

    /*! "1 finding", of kinds: "2 faults, 1 warning". Empty for none. */
    static QString counts(int faults, int warnings, int notes, int notChecked);
};
