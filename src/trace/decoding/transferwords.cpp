// SPDX-License-Identifier: MIT
#include "transferwords.h"

#include "framesort.h"

#include <canopen/sdoabort.h>
#include <system/amounts.h>
#include <trace/transfers/sdotransfer.h>

#include <QStringList>

#include <algorithm>

namespace {

struct ProblemWords
{
    SdoTransfer::Problem problem;
    const char *text;
};

constexpr ProblemWords problemWords[] = {
    {SdoTransfer::WrongToggle, QT_TRANSLATE_NOOP("TransferWords", "the toggle bit did not alternate")},
    {SdoTransfer::LostSegment, QT_TRANSLATE_NOOP("TransferWords", "frames of it are missing in the trace")},
    {SdoTransfer::SizeMismatch,
     QT_TRANSLATE_NOOP("TransferWords", "not as many bytes came as were announced")},
    {SdoTransfer::WrongChecksum, QT_TRANSLATE_NOOP("TransferWords", "the checksum is wrong")},
    {SdoTransfer::ForeignClient,
     QT_TRANSLATE_NOOP("TransferWords", "another client used the device meanwhile")},
    {SdoTransfer::Overtaken,
     QT_TRANSLATE_NOOP("TransferWords", "another request came before it was at its end")},
    {SdoTransfer::Repeated, QT_TRANSLATE_NOOP("TransferWords", "a part of it came twice")},
    {SdoTransfer::Cut, QT_TRANSLATE_NOOP("TransferWords", "too long to be kept")},
};

} // namespace

QString TransferWords::object(const SdoTransfer &transfer) const
{
    const QString number = transfer.object.toShortString();
    const QString name = m_book->name(transfer.nodeId, transfer.object);
    return name.isEmpty() ? number : number + QLatin1Char(' ') + name;
}

QString TransferWords::value(const SdoTransfer &transfer) const
{
    return transfer.hasValue()
               ? m_values->ofBytes(transfer.nodeId, transfer.object, transfer.data, transfer.isSizeUnknown)
               : QString();
}

QString TransferWords::reason(const SdoTransfer &transfer)
{
    switch (transfer.outcome) {
    case SdoTransfer::Outcome::Done:
        break;
    case SdoTransfer::Outcome::AbortedByServer:
        return tr("refused: %1").arg(CanOpen::sdoAbortText(transfer.abortCode));
    case SdoTransfer::Outcome::AbortedByClient:
        return tr("ended by the client: %1").arg(CanOpen::sdoAbortText(transfer.abortCode));
    case SdoTransfer::Outcome::NoAnswer:
        return tr("no answer");
    case SdoTransfer::Outcome::Broken:
        return tr("its frames make no whole value");
    case SdoTransfer::Outcome::Unfinished:
        return tr("not finished");
    }
    return QString();
}

QString TransferWords::problems(const SdoTransfer &transfer)
{
    QStringList words;
    for (const ProblemWords &row : problemWords) {
        if (transfer.has(row.problem))
            words += tr(row.text);
    }
    return words.join(QLatin1String("; "));
}

QString TransferWords::effort(const SdoTransfer &transfer)
{
    const auto duration = double(std::max<qint64>(0, transfer.end - transfer.begin));
    const QString time = duration < Microseconds::ofSecond
                             ? tr("%1 ms").arg(duration / Microseconds::ofMillisecond, 0, 'f', 1)
                             : tr("%1 s").arg(duration / Microseconds::ofSecond, 0, 'f', 2);
    const QString frames = transfer.frames == 1 ? tr("1 frame") : tr("%1 frames").arg(transfer.frames);
    switch (transfer.protocol) {
    case SdoTransfer::Protocol::Segmented:
        return tr("%1 in segments, %2").arg(frames, time);
    case SdoTransfer::Protocol::Block:
        return tr("%1 in blocks, %2").arg(frames, time);
    case SdoTransfer::Protocol::Expedited:
        break;
    }
    return tr("%1, %2").arg(frames, time);
}

QString TransferWords::action(const SdoTransfer &transfer) const
{
    const QString what = object(transfer);
    const QString why = reason(transfer);
    if (!why.isEmpty())
        return transfer.isUpload ? tr("read %1: %2").arg(what, why) : tr("write %1: %2").arg(what, why);
    const QString number
        = transfer.hasValue() ? value(transfer) : tr("%1 bytes and more").arg(transfer.data.size());
    return transfer.isUpload ? tr("read %1 = %2").arg(what, number) : tr("write %1 = %2").arg(what, number);
}

TraceText TransferWords::text(const SdoTransfer &transfer) const
{
    TraceText text{FrameSort::of(transfer).mark, action(transfer), effort(transfer)};
    const QString trouble = problems(transfer);
    if (!trouble.isEmpty())
        text.text = tr("%1; %2").arg(text.text, trouble);
    return text;
}
