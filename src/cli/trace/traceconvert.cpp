// SPDX-License-Identifier: MIT
#include "framecount.h"
#include "tracecommand.h"

#include <cli/core/commandarguments.h>
#include <cli/core/console.h>
#include <cli/core/terminal.h>
#include <cli/core/traceinput.h>
#include <trace/files/tracedetails.h>
#include <trace/files/tracefile.h>

#include <QDir>

namespace {

struct TraceConvertTr
{
    Q_DECLARE_TR_FUNCTIONS(TraceConvert)
};

constexpr QLatin1String formatOption("format");

/*! Writes one trace as another. */
class Conversion
{
public:
    Conversion(const QString &to, std::optional<TraceFormat> format)
        : m_to(to)
        , m_format(format ? format : TraceFormats::ofName(to).format)
    {
    }

    ExitStatus run(const QString &from)
    {
        if (!m_input.open(from))
            return Exit::fileFailed;
        if (isToStandardOutput())
            handOnAtOnce();
        TraceFrame frame;
        const bool hasFrames = m_input.next(&frame);
        QString error;
        m_writer = TraceFile::create(m_to, m_input.head(), &error, TraceFile::Appearance::Whole, m_format);
        if (!m_writer) {
            Console::printError(error);
            return Exit::fileFailed;
        }
        if ((hasFrames && !writeAll(&frame)) || !m_writer->finish())
            return reportFailure();
        return report();
    }

private:
    bool isToStandardOutput() const { return m_to == QLatin1String("-"); }

    /*! Who reads the other end sees what has come as it comes. */
    void handOnAtOnce()
    {
        Console::keepOutputForFile();
        m_input.setBeforeWaiting([this] {
            if (m_writer)
                m_writer->flush(); // which the next frame says again when it has failed
        });
    }

    bool writeAll(TraceFrame *frame)
    {
        int channels = m_input.head().channels.size();
        do {
            if (m_input.head().channels.size() != channels) {
                channels = m_input.head().channels.size();
                m_writer->setHead(m_input.head());
            }
            m_details.add(*frame);
            ++m_frames;
            if (!m_writer->write(*frame))
                return false;
        } while (m_input.next(frame));
        return true;
    }

    ExitStatus reportFailure() const
    {
        if (isToStandardOutput() && !Terminal::hasReader(Terminal::Stream::Output))
            return Exit::noReader;
        Console::printError(m_writer->errorString());
        return Exit::fileFailed;
    }

    ExitStatus report() const
    {
        const ExitStatus status = m_input.finish();
        const TraceFormat format = m_format.value_or(TraceFormat::Candump);
        const QStringList lost = m_details.lostIn(format, m_input.head());
        if (!lost.isEmpty())
            Console::printError(
                TraceConvertTr::tr("This format does not hold: %1.").arg(lost.join(QLatin1String(", "))));
        Console::print(TraceConvertTr::tr("Wrote %1: %2")
                           .arg(QDir::toNativeSeparators(m_to), FrameCount::text(m_frames)));
        return status;
    }

    QString m_to;
    std::optional<TraceFormat> m_format;
    TraceInput m_input;
    std::unique_ptr<TraceWriter> m_writer;
    TraceDetails m_details;
    quint64 m_frames = 0;
};

} // namespace

ExitStatus runTraceConvert(const QStringList &arguments)
{
    CommandArguments options(
        QStringLiteral("trace convert"),
        TraceConvertTr::tr("Writes a trace in another format. What IN is, its content tells."));
    options.addPositional(QStringLiteral("IN"), TraceConvertTr::tr("A trace; - for standard input."));
    options.addPositional(
        QStringLiteral("OUT"),
        TraceConvertTr::tr(
            "What is written: .log (candump), .asc, .trc, .pcap or .pcapng, with .gz or .zst behind it to "
            "compress it; - for standard output."));
    options.addOption({formatOption,
                       TraceConvertTr::tr("The format, whatever the name says: %1.")
                           .arg(TraceFormats::writableNames().join(QLatin1String(", "))),
                       QStringLiteral("FORMAT")});
    if (const std::optional<ExitStatus> status = options.parse(arguments))
        return *status;
    std::optional<TraceFormat> format;
    if (options.isSet(formatOption)) {
        format = TraceFormats::writable(options.value(formatOption));
        if (!format)
            return options.complain(TraceConvertTr::tr("There is no format \"%1\"; there are %2.")
                                        .arg(options.value(formatOption),
                                             TraceFormats::writableNames().join(QLatin1String(", "))));
    }
    return Conversion(options.positional(1), format).run(options.positional(0));
}
