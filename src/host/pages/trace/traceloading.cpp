// SPDX-License-Identifier: MIT
#include "traceloading.h"

#include <system/background.h>
#include <system/ordinaryfile.h>
#include <trace/files/tracefile.h>

#include <algorithm>

namespace {

constexpr std::size_t linesAtOnce = 20000; // between two looks whether somebody has cancelled

/*! Lets a reader tell how far it is, and end early. */
class WatchedReader : public TraceReader
{
public:
    WatchedReader(std::unique_ptr<TraceReader> reader, std::atomic<bool> *isCancelled,
                  std::atomic<std::size_t> *frames)
        : m_reader(std::move(reader))
        , m_isCancelled(isCancelled)
        , m_frames(frames)
    {
    }

    Step next(TraceFrame *frame) override
    {
        if (m_isCancelled->load(std::memory_order_relaxed))
            return Step::End;
        const Step step = m_reader->next(frame);
        if (step == Step::Frame)
            m_frames->fetch_add(1, std::memory_order_relaxed);
        else if (step == Step::Problem)
            complain(m_reader->problem().line, m_reader->problem().text);
        return step;
    }
    int bytesPerFrame() const override { return m_reader->bytesPerFrame(); }
    const TraceHead &knownHead() const { return m_reader->head(); }

private:
    std::unique_ptr<TraceReader> m_reader;
    std::atomic<bool> *m_isCancelled;
    std::atomic<std::size_t> *m_frames;
};

} // namespace

TraceLoading::TraceLoading(QObject *parent)
    : QObject(parent)
{
}

TraceLoading::~TraceLoading()
{
    cancel();
}

void TraceLoading::cancel()
{
    if (m_state)
        m_state->isCancelled = true;
    m_state.reset();
}

std::size_t TraceLoading::frames() const
{
    return m_state ? m_state->frames.load() : 0;
}

int TraceLoading::percent() const
{
    constexpr std::size_t whole = 100;
    const std::size_t expected = m_state ? m_state->expected.load() : 0;
    return expected == 0 ? -1 : static_cast<int>(std::min(frames() * whole / expected, whole));
}

void TraceLoading::start(const QString &fileName)
{
    begin(fileName, [fileName](State *state) { return load(fileName, state); });
}

void TraceLoading::start(const QString &fileName, const std::shared_ptr<const Trace> &trace,
                         const TraceDevices &devices)
{
    begin(fileName, [fileName, trace, devices](State *state) {
        return makeDocument(fileName, *trace, devices, state);
    });
}

void TraceLoading::start(const std::shared_ptr<const TraceDocument> &document, const TraceDevices &devices)
{
    begin(document->fileName, [document, devices](State *state) {
        TraceDevices all = document->devices;
        all.add(devices);
        return makeDocument(document->fileName, document->trace, all, state);
    });
}

TraceLoading::Result TraceLoading::makeDocument(const QString &fileName, const Trace &trace,
                                                const TraceDevices &devices, State *state)
{
    auto document = std::make_shared<TraceDocument>();
    document->fileName = fileName;
    document->trace = trace;
    document->devices = devices;
    document->book.tell(devices);
    state->frames = document->trace.frames.size();
    makeLines(document.get(), state);
    return {document, QString()};
}

void TraceLoading::begin(const QString &fileName, const std::function<Result(State *)> &load)
{
    cancel();
    m_fileName = fileName;
    m_state = std::make_shared<State>();
    Background::run(
        this, [load, state = m_state] { return load(state.get()); },
        [this, state = m_state](const Result &result) {
            if (state != m_state)
                return; // cancelled
            m_state.reset();
            if (result.document)
                emit loaded(result.document);
            else
                emit failed(result.problem);
        });
}

TraceLoading::Result TraceLoading::load(const QString &fileName, State *state)
{
    Result result;
    result.problem = ordinaryFileProblem(fileName);
    if (!result.problem.isEmpty())
        return result;
    std::unique_ptr<TraceReader> opened = TraceFile::open(fileName, &result.problem);
    if (!opened)
        return result;
    WatchedReader reader(std::move(opened), &state->isCancelled, &state->frames);
    auto document = std::make_shared<TraceDocument>();
    document->fileName = fileName;
    state->expected = TraceFile::expectedFrames(fileName, reader);
    document->trace = TraceFile::load(&reader, TraceFile::Limits(), state->expected);
    document->trace.head = reader.knownHead();
    makeLines(document.get(), state);
    result.document = std::move(document);
    return result;
}

void TraceLoading::makeLines(TraceDocument *document, State *state)
{
    while (!state->isCancelled && document->lines.advance(linesAtOnce)) {
    }
    if (!state->isCancelled)
        document->lines.finish();
}
