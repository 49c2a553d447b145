// SPDX-License-Identifier: MIT
#include "busrecorder.h"
#include "bytecount.h"
#include "framecount.h"
#include "tracecommand.h"

#include <cli/core/commandarguments.h>
#include <cli/core/console.h>
#include <cli/core/duration.h>
#include <cli/core/interruptibleloop.h>
#include <cli/core/optionnames.h>
#include <system/amounts.h>
#include <trace/files/traceformat.h>

#include <QDir>
#include <QTimer>

namespace {

struct TraceRecordTr
{
    Q_DECLARE_TR_FUNCTIONS(TraceRecord)
};

constexpr QLatin1String rotateOption("rotate");
constexpr QLatin1String keepOption("keep");
constexpr QLatin1String reserveOption("reserve");

/*! The arguments of "trace record". */
class RecordOptions
{
public:
    RecordOptions();

    std::optional<ExitStatus> parse(const QStringList &arguments);

    const CommandArguments &options() const { return m_options; }
    const TraceRecording::Settings &settings() const { return m_settings; }
    std::optional<std::chrono::milliseconds> time() const { return m_time; }

private:
    std::optional<ExitStatus> parseOutput();
    std::optional<ExitStatus> parseRotation();
    std::optional<ExitStatus> parseReserve();
    std::optional<ExitStatus> parseTime();

    CommandArguments m_options{QStringLiteral("trace record"),
                               TraceRecordTr::tr("Records the frames of a bus until Ctrl+C. Sends nothing.")};
    TraceRecording::Settings m_settings;
    std::optional<std::chrono::milliseconds> m_time;
};

RecordOptions::RecordOptions()
{
    m_options.addBusOptions();
    m_options.addOption(
        {outputOption,
         TraceRecordTr::tr("Where to: .log (candump), .asc, .trc, .pcap or .pcapng, with .gz or .zst "
                           "behind it to compress it; \"-\" is standard output, as candump."),
         QStringLiteral("FILE")});
    m_options.addOption({forOption, TraceRecordTr::tr("How long: 500ms, 10s, 2min; usually until Ctrl+C."),
                         QStringLiteral("TIME")});
    m_options.addOption(
        {rotateOption,
         TraceRecordTr::tr("Begin another file, FILE-0001 and so on, after so many bytes (500k, 100M, "
                           "2G) or so much time (10min, 1h)."),
         QStringLiteral("SIZE|TIME")});
    m_options.addOption(
        {keepOption,
         TraceRecordTr::tr("With --rotate: keep only the newest N files of this recording and remove "
                           "the older ones; usually all are kept."),
         QStringLiteral("N")});
    m_options.addOption(
        {reserveOption,
         TraceRecordTr::tr("End when less than this is left on the disk; usually 200M. 0: never."),
         QStringLiteral("SIZE")});
}

std::optional<ExitStatus> RecordOptions::parse(const QStringList &arguments)
{
    if (const std::optional<ExitStatus> status = m_options.parse(arguments))
        return status;
    if (const std::optional<ExitStatus> status = parseOutput())
        return status;
    if (const std::optional<ExitStatus> status = parseRotation())
        return status;
    if (const std::optional<ExitStatus> status = parseReserve())
        return status;
    return parseTime();
}

std::optional<ExitStatus> RecordOptions::parseOutput()
{
    m_settings.path = m_options.value(outputOption);
    if (m_settings.path.isEmpty())
        return m_options.complain(TraceRecordTr::tr("--output FILE is missing."));
    if (m_settings.path != QLatin1String("-") && !TraceFormats::ofName(m_settings.path).format)
        return m_options.complain(
            TraceRecordTr::tr("The name \"%1\" tells no format: it must end with .log, .asc, .trc, "
                              ".pcap or .pcapng; .gz or .zst may follow.")
                .arg(m_settings.path));
    return std::nullopt;
}

std::optional<ExitStatus> RecordOptions::parseRotation()
{
    if (m_options.isSet(rotateOption)) {
        const QString text = m_options.value(rotateOption);
        const bool isNumberAlone = !text.isEmpty() && text.back().isDigit();
        const std::optional<qint64> size = parseByteCount(text);
        const std::optional<std::chrono::milliseconds> time
            = isNumberAlone ? std::nullopt : parseDuration(text);
        if (m_settings.path == QLatin1String("-"))
            return m_options.complain(TraceRecordTr::tr("Standard output cannot be rotated."));
        if (!size && !time)
            return m_options.complain(
                TraceRecordTr::tr("\"%1\" is neither a size (500k, 100M, 2G) nor a time (10min, 1h).")
                    .arg(text));
        m_settings.rotateSize = size.value_or(0);
        m_settings.rotateTime = time ? time->count() * Microseconds::ofMillisecond : 0;
    }
    if (!m_options.isSet(keepOption))
        return std::nullopt;
    if (!m_options.isSet(rotateOption))
        return m_options.complain(TraceRecordTr::tr("--keep counts the files of --rotate."));
    constexpr int mostFiles = 1'000'000;
    const std::optional<int> keep = m_options.number(keepOption, 1, mostFiles);
    m_settings.keep = keep.value_or(0);
    return keep ? std::nullopt : std::make_optional(Exit::usage);
}

std::optional<ExitStatus> RecordOptions::parseReserve()
{
    if (!m_options.isSet(reserveOption))
        return std::nullopt;
    const QString text = m_options.value(reserveOption);
    const std::optional<qint64> reserve = text == QLatin1String("0") ? qint64(0) : parseByteCount(text);
    m_settings.reserve = reserve.value_or(0);
    return reserve
               ? std::nullopt
               : std::make_optional(m_options.complain(
                   TraceRecordTr::tr("\"%1\" is no size; one is written like 500k, 100M or 2G.").arg(text)));
}

std::optional<ExitStatus> RecordOptions::parseTime()
{
    if (!m_options.isSet(forOption))
        return std::nullopt;
    m_time = parseDuration(m_options.value(forOption));
    if (m_time)
        return std::nullopt;
    return m_options.complain(
        TraceRecordTr::tr("\"%1\" is no time; one is written like 500ms, 10s or 2min, up to a week.")
            .arg(m_options.value(forOption)));
}

void sayWhatStays(const QString &file)
{
    Console::printError(
        TraceRecordTr::tr("%1 cannot be removed, so that more files are kept than --keep asks for.")
            .arg(QDir::toNativeSeparators(file)));
}

QString lossText(quint64 reports)
{
    if (reports == 1)
        return TraceRecordTr::tr("Frames were lost: the adapter or this computer told so once.");
    return TraceRecordTr::tr("Frames were lost: the adapter or this computer told so %1 times.").arg(reports);
}

/*! Says what was recorded, and what was not. */
void report(const BusRecorder &recorder)
{
    const TraceRecording &recording = recorder.recording();
    const QStringList files = recording.files();
    const QString name = QDir::toNativeSeparators(files.value(0));
    const QString what = FrameCount::text(recording.frames());
    if (files.size() > 1)
        Console::print(TraceRecordTr::tr("Wrote %1 files from %2 on: %3").arg(files.size()).arg(name, what));
    else
        Console::print(TraceRecordTr::tr("Wrote %1: %2").arg(name, what));
    if (recorder.overruns() > 0)
        Console::printError(lossText(recorder.overruns()));
    if (recorder.unrecorded() > 0)
        Console::printError(TraceRecordTr::tr("%1 CAN FD frames were not recorded; only classic frames are.")
                                .arg(recorder.unrecorded()));
}

ExitStatus statusOf(const BusRecorder &recorder)
{
    if (recorder.bus().state() == BusConnection::State::Lost) {
        Console::printError(TraceRecordTr::tr("The bus was lost: %1").arg(recorder.bus().lossReason()));
        return Exit::stoppedEarly;
    }
    return recorder.overruns() > 0 || recorder.unrecorded() > 0 ? Exit::objectsFailed : Exit::success;
}

ExitStatus record(const RecordOptions &options)
{
    InterruptibleLoop loop;
    BusRecorder recorder(options.settings());
    QString error;
    bool isBusTrouble = false;
    if (!recorder.begin(options.options().bus(), &error, &isBusTrouble)) {
        if (isBusTrouble)
            Console::printBusError(error);
        else
            Console::printError(error);
        return isBusTrouble ? Exit::busNotOpened : Exit::fileFailed;
    }
    QObject::connect(&recorder, &BusRecorder::ended, &recorder, [&loop] { loop.end(); });
    QObject::connect(&recorder, &BusRecorder::keepsTooMany, &recorder, &sayWhatStays);
    if (options.time())
        QTimer::singleShot(*options.time(), Qt::PreciseTimer, &recorder, [&loop] { loop.end(); });
    loop.run();
    // Ctrl+C is how a recording without --for ends.
    const ExitStatus ofBus = statusOf(recorder);
    const bool isWritten = recorder.finish();
    if (!recorder.hasReader())
        return Exit::noReader;
    report(recorder);
    if (!isWritten)
        Console::printError(recorder.recording().errorString());
    return isWritten ? ofBus : Exit::fileFailed;
}

} // namespace

ExitStatus runTraceRecord(const QStringList &arguments)
{
    RecordOptions options;
    if (const std::optional<ExitStatus> status = options.parse(arguments))
        return *status;
    if (options.settings().path == QLatin1String("-"))
        Console::keepOutputForFile();
    return record(options);
}
