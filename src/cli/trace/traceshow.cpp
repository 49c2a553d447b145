// SPDX-License-Identifier: MIT
#include "lineprinter.h"
#include "showfilter.h"
#include "tracecommand.h"

#include <cli/core/commandarguments.h>
#include <cli/core/console.h>
#include <cli/core/datasheets.h>
#include <cli/core/language.h>
#include <cli/core/optionnames.h>
#include <cli/core/snapshotsource.h>
#include <cli/core/traceinput.h>
#include <snapshot/snapshot.h>
#include <trace/files/tracefile.h>

#include <QFileInfo>

namespace {

struct TraceShowTr
{
    Q_DECLARE_TR_FUNCTIONS(TraceShow)
};

/*! Prints a trace line by line; keeps none of its frames. */
class TraceShow
{
public:
    ExitStatus run(const QStringList &arguments);

private:
    void addOptions();
    std::optional<ExitStatus> parse(const QStringList &arguments);
    std::optional<ExitStatus> parseKnowledge();
    void learnAhead();
    ExitStatus show();
    bool print(const std::vector<StreamedLine> &lines, LinePrinter *printer);
    void reportChoice() const;

    CommandArguments m_options{
        QStringLiteral("trace show"),
        TraceShowTr::tr("Shows a trace in words: each frame, and each SDO transfer as one line.")};
    ShowFilter m_filter;
    TraceBook m_book;
    TraceDecoder m_decoder{&m_book};
    TraceInput m_input;
    bool m_isFile = false;
    int m_channels = 0; // of a file
    quint64 m_lines = 0;
    quint64 m_shown = 0;
};

void TraceShow::addOptions()
{
    m_options.addPositional(
        QStringLiteral("FILE"),
        TraceShowTr::tr("A trace; - for standard input, of which lines are shown as they come."));
    ShowFilter::addOptions(m_options);
    DataSheets::addOption(
        m_options, TraceShowTr::tr("The EDS or DCF of node N: what its PDOs carry, its objects' types and "
                                   "names; may be given for several nodes."));
    m_options.addOption({snapshotOption,
                         TraceShowTr::tr("A snapshot of the vehicle: what the PDOs of its devices carry."),
                         QStringLiteral("FILE")});
    m_options.addOption({jsonOption, TraceShowTr::tr("Print JSON, an object on each line, for programs.")});
    Language::addOption(m_options);
}

std::optional<ExitStatus> TraceShow::parse(const QStringList &arguments)
{
    addOptions();
    if (const std::optional<ExitStatus> status = m_options.parse(arguments))
        return status;
    if (const std::optional<ExitStatus> status = m_filter.parse(m_options))
        return status;
    if (const std::optional<ExitStatus> status = parseKnowledge())
        return status;
    return Language::loadWithHost(m_options);
}

std::optional<ExitStatus> TraceShow::parseKnowledge()
{
    Snapshot snapshot;
    if (m_options.isSet(snapshotOption)) {
        if (const std::optional<ExitStatus> status = loadSnapshot(m_options.value(snapshotOption), &snapshot))
            return status;
        m_book.tell(snapshot);
    }
    DataSheets sheets;
    if (const std::optional<ExitStatus> status = sheets.parse(m_options))
        return status;
    for (auto sheet = sheets.sheets().cbegin(); sheet != sheets.sheets().cend(); ++sheet)
        m_book.tell(sheet.key(), sheet->dictionary);
    return std::nullopt;
}

/*! What devices say of their PDOs holds for the frames before it, too, and so does how many channels there are. What cannot
 *  be read is said the second time.
 */
void TraceShow::learnAhead()
{
    QString error;
    const std::unique_ptr<TraceReader> reader = TraceInput::readerOf(m_options.positional(), &error);
    if (!reader)
        return;
    SdoTransfers transfers;
    TraceFrame frame;
    std::size_t position = 0;
    for (;;) {
        const TraceReader::Step step = reader->next(&frame);
        if (step == TraceReader::Step::End)
            break;
        if (step == TraceReader::Step::Problem)
            continue;
        transfers.handle(frame, position++);
        if (!transfers.hasFinished())
            continue;
        for (const SdoTransfer &transfer : transfers.takeFinished())
            m_book.learn(transfer);
    }
    m_channels = reader->head().channels.size();
}

bool TraceShow::print(const std::vector<StreamedLine> &lines, LinePrinter *printer)
{
    const TraceFilter &filter = m_filter.filter();
    for (const StreamedLine &line : lines) {
        ++m_lines;
        const FrameSort sort
            = line.transfer ? FrameSort::of(*line.transfer) : m_decoder.sort(line.frame, line.position);
        if (!filter.fits(sort, line.frame.channel))
            continue;
        const bool fitsObject = line.transfer
                                    ? filter.fitsObject(line.transfer->object)
                                    : filter.fitsObjects(m_decoder.layout(line.frame, line.position));
        if (!fitsObject)
            continue;
        const TraceText text
            = line.transfer ? m_decoder.text(*line.transfer) : m_decoder.text(line.frame, line.position);
        if (!filter.fitsText(text.text))
            continue;
        ++m_shown;
        if (!printer->print(line, text, m_input.head()))
            return false;
    }
    return true;
}

void TraceShow::reportChoice() const
{
    if (!m_filter.filter().isEmpty())
        Console::printError(TraceShowTr::tr("%1 of %2 lines shown").arg(m_shown).arg(m_lines));
}

ExitStatus TraceShow::show()
{
    const auto style = m_options.isSet(jsonOption) ? LinePrinter::Style::Json : LinePrinter::Style::Text;
    LinePrinter printer(&m_decoder, style,
                        m_isFile ? LinePrinter::Delivery::InBlocks : LinePrinter::Delivery::AtOnce);
    printer.expectChannels(m_channels);
    // Who looks at a bus waits for no transfer to see what comes beside it.
    LineStream stream(m_isFile ? nullptr : &m_book,
                      m_isFile ? LineStream::Order::AsTheyBegin : LineStream::Order::AsTheyEnd);
    TraceFrame frame;
    while (m_input.next(&frame)) {
        stream.handle(frame);
        if (!print(stream.take(), &printer))
            return Exit::fileFailed;
    }
    stream.finish();
    if (!print(stream.take(), &printer) || !printer.flush())
        return Exit::fileFailed;
    reportChoice();
    return m_input.finish();
}

ExitStatus TraceShow::run(const QStringList &arguments)
{
    if (const std::optional<ExitStatus> status = parse(arguments))
        return *status;
    m_isFile = QFileInfo(m_options.positional()).isFile();
    if (m_isFile)
        learnAhead();
    if (!m_input.open(m_options.positional()))
        return Exit::fileFailed;
    return show();
}

} // namespace

ExitStatus runTraceShow(const QStringList &arguments)
{
    return TraceShow().run(arguments);
}
