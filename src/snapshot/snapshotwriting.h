// SPDX-License-Identifier: MIT
#pragma once

#include "snapshot.h"

#include <QByteArray>

/*! The words of the file for states, and the writing half of SnapshotFile. */
namespace SnapshotJson {

template<typename Value>
struct Word
{
    Value value;
    const char *text;
};

constexpr Word<SnapshotGap> gapWords[] = {
    {SnapshotGap::Absent, "absent"},       {SnapshotGap::Abort, "abort"},
    {SnapshotGap::NoAnswer, "noAnswer"},   {SnapshotGap::WrongSize, "wrongSize"},
    {SnapshotGap::Failed, "failed"},       {SnapshotGap::Stopped, "stopped"},
    {SnapshotGap::Cancelled, "cancelled"},
};

constexpr Word<SnapshotEnd> endWords[] = {
    {SnapshotEnd::Complete, "complete"},
    {SnapshotEnd::Silent, "silent"},
    {SnapshotEnd::Stopped, "stopped"},
    {SnapshotEnd::Cancelled, "cancelled"},
};

constexpr Word<CanOpen::NmtState> nmtWords[] = {
    {CanOpen::NmtState::BootUp, "bootUp"},
    {CanOpen::NmtState::Stopped, "stopped"},
    {CanOpen::NmtState::Operational, "operational"},
    {CanOpen::NmtState::PreOperational, "preOperational"},
};

constexpr Word<SnapshotScope> scopeWords[] = {
    {SnapshotScope::Full, "full"},
    {SnapshotScope::Quick, "quick"},
    {SnapshotScope::Imported, "imported"},
    {SnapshotScope::Recorded, "recorded"},
};

/*! The word of a value that is in the table. */
template<typename Value, std::size_t size>
QString wordOf(const Word<Value> (&words)[size], Value value)
{
    for (const Word<Value> &word : words) {
        if (word.value == value)
            return QString::fromLatin1(word.text);
    }
    return QString();
}

constexpr char formatName[] = "draxel-snapshot";

QByteArray write(const Snapshot &snapshot, int version);

} // namespace SnapshotJson
