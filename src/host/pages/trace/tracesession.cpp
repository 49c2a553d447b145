// SPDX-License-Identifier: MIT
#include "tracesession.h"

#include "tracerows.h"

#include <system/background.h>
#include <trace/files/tracefile.h>
#include <trace/files/traceformat.h>

#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <utility>

namespace {

constexpr int tickInterval = 100;           // ms
constexpr std::size_t framesAtOnce = 10000; // into lines: some ms
constexpr std::size_t mostToSort = 100000;  // lines that are sorted again at once

} // namespace

TraceSession::TraceSession(BusConnection *bus, QObject *parent, std::size_t mostHeard)
    : QObject(parent)
    , m_recorder(bus)
    , m_live(mostHeard)
    , m_shown(m_live.document())
{
    m_timer.setInterval(tickInterval);
    connect(&m_timer, &QTimer::timeout, this, &TraceSession::tick);
    connect(&m_recorder, &TraceRecorder::begun, this, &TraceSession::begin);
    connect(&m_recorder, &TraceRecorder::taken, this, [this](const TraceFrame &frame) { m_live.add(frame); });
    connect(&m_recorder, &TraceRecorder::told, this,
            [this](const QString &sentence) { emit told(sentence, {}); });
    connect(&m_recorder, &TraceRecorder::warned, this,
            [this](const QString &sentence) { emit told(QString(), {sentence}); });
    connect(&m_recorder, &TraceRecorder::recordedFile, this, &TraceSession::fileUsed);
    connect(&m_loading, &TraceLoading::loaded, this, [this](const std::shared_ptr<TraceDocument> &document) {
        if (std::exchange(m_isOpening, false))
            takeOpened(document);
        else
            takeRetold(document);
    });
    connect(&m_loading, &TraceLoading::failed, this, &TraceSession::takeFailure);
}

void TraceSession::begin(const TraceHead &head)
{
    const bool wasLive = isLive();
    m_live.begin(head);
    m_known = 0;
    m_hasHeard = true;
    m_timer.start();
    if (wasLive) // a file stays until the user wants something else
        show(m_live.document());
}

void TraceSession::tick()
{
    const std::shared_ptr<TraceDocument> before = m_live.document();
    const bool isAtItsEnd = !m_live.advance(framesAtOnce) && !m_recorder.isListening();
    if (m_live.document() != before) {
        m_known = 0; // of another book
        takeShortened(before);
    }
    if (isAtItsEnd)
        m_live.document()->lines.close();
    const bool isSorted = refresh();
    if (isLive())
        emit grown();
    if (isAtItsEnd && isSorted)
        m_timer.stop();
}

/*! What was learnt lately holds for lines of before as well. Whether that is so for all of them now. */
bool TraceSession::refresh()
{
    TraceDocument &document = *m_live.document();
    const int known = document.book.pdos().revision();
    if (known == m_known)
        return true;
    if (document.lines.refresh(mostToSort))
        return false;
    m_known = known;
    if (isLive())
        emit relearnt();
    return true;
}

/*! The first frames of what is heard have left. */
void TraceSession::takeShortened(const std::shared_ptr<TraceDocument> &before)
{
    if (m_shown != before)
        return;
    const std::size_t frames = before->trace.frames.size() - m_live.document()->trace.frames.size();
    m_shown = m_live.document();
    emit shortened(frames);
}

void TraceSession::takeOpened(const std::shared_ptr<TraceDocument> &document)
{
    emit loadingChanged();
    show(document);
    emit fileUsed(document->fileName);
}

void TraceSession::takeRetold(const std::shared_ptr<TraceDocument> &document)
{
    emit loadingChanged();
    const QStringList sentences = std::exchange(m_telling, Telling()).sentences;
    m_shown = document;
    emit shortened(0);
    emit told(sentences.join(QLatin1Char(' ')), {});
}

/*! What is shown stays, so what was told of it meanwhile holds. */
void TraceSession::takeFailure(const QString &sentence)
{
    const QString fileName = m_loading.fileName();
    m_isOpening = false;
    retell();
    emit fileRefused(fileName);
    emit failed(sentence);
}

void TraceSession::show(const std::shared_ptr<TraceDocument> &document)
{
    m_shown = document;
    forgetTold();
    emit documentChanged();
}

/*! Of a file that is no longer shown. */
void TraceSession::forgetTold()
{
    if (!m_telling.document || m_telling.document == m_shown)
        return;
    m_telling = Telling();
    if (!m_isOpening) {
        m_loading.cancel();
        emit loadingChanged();
    }
    emit told(QString(), {tr("Another trace is shown by now: what was told of the devices of the one before "
                             "is not used.")});
}

void TraceSession::showLive()
{
    show(m_live.document());
}

void TraceSession::retranslate()
{
    m_shown->lines.forgetWords();
    m_live.document()->lines.forgetWords();
}

QStringList TraceSession::endings()
{
    return {QStringLiteral(".log"),  QStringLiteral(".asc"),    QStringLiteral(".trc"),
            QStringLiteral(".pcap"), QStringLiteral(".pcapng"), QStringLiteral(".txt"),
            QStringLiteral(".gz"),   QStringLiteral(".zst")};
}

bool TraceSession::mayBeTrace(const QString &fileName)
{
    const QStringList known = endings();
    return std::any_of(known.begin(), known.end(), [&fileName](const QString &ending) {
        return fileName.endsWith(ending, Qt::CaseInsensitive);
    });
}

bool TraceSession::isTraceFile(const QString &fileName)
{
    if (TraceFormats::ofName(fileName).format)
        return true;
    QString problem;
    return QFileInfo(fileName).isFile() && TraceFile::open(fileName, &problem) != nullptr;
}

void TraceSession::open(const QString &fileName)
{
    m_isOpening = true;
    m_loading.start(fileName);
    emit loadingChanged();
}

void TraceSession::open(const QString &fileName, const std::shared_ptr<const Trace> &trace,
                        const TraceDevices &devices)
{
    m_isOpening = true;
    m_loading.start(fileName, trace, devices);
    emit loadingChanged();
}

void TraceSession::tell(const TraceDevices &devices, const QString &sentence)
{
    if (isLive()) {
        tellHeard(devices);
        emit told(sentence, {});
        return;
    }
    m_telling.document = m_shown;
    m_telling.devices.add(devices);
    m_telling.sentences << sentence;
    if (!m_isOpening)
        retell();
}

/*! Makes the lines anew with all that was told and is not in them. */
void TraceSession::retell()
{
    if (m_telling.document)
        m_loading.start(m_telling.document, m_telling.devices);
    emit loadingChanged();
}

void TraceSession::tellHeard(const TraceDevices &devices)
{
    m_live.tell(devices);
    if (!refresh())
        m_timer.start(); // the bus may be closed
    if (isLive())
        emit relearnt();
}

void TraceSession::cancelOpening()
{
    m_loading.cancel();
    if (!std::exchange(m_isOpening, false))
        m_telling = Telling();
    retell();
}

/*! Whether a file of this name would be taken for one that was saved by itself, and removed some day. */
bool TraceSession::isForAutomatic(const QString &fileName) const
{
    const QFileInfo file(fileName);
    return file.absoluteDir() == QDir(m_recorder.settings().folder)
           && file.fileName().startsWith(QLatin1String("trace "));
}

bool TraceSession::isRefused(const QString &fileName)
{
    if (!isForAutomatic(fileName))
        return false;
    emit failed(tr("Names that begin with \"trace \" are for what is saved by itself in this folder, and "
                   "removed again. Choose another one."));
    return true;
}

void TraceSession::record(const QString &fileName)
{
    QString problem;
    if (!isRefused(fileName) && !m_recorder.record(fileName, &problem))
        emit failed(problem);
}

/*! \a make runs in another thread. */
void TraceSession::saveLater(const QString &fileName, const std::function<Trace()> &make)
{
    if (isRefused(fileName))
        return;
    Background::run(
        this, [fileName, make] { return TraceExport::save(fileName, make()); },
        [this](const TraceExport::Result &result) { report(result); });
}

void TraceSession::save(const QString &fileName, const FlightRecorder &minutes)
{
    saveLater(fileName, [minutes] { return minutes.all(); });
}

void TraceSession::saveShown(const QString &fileName, const TraceRows &rows)
{
    if (!isLive()) {
        saveLater(fileName, [document = m_shown, rows] { return TraceExport::shown(*document, rows); });
        return;
    }
    // It goes on growing.
    saveLater(fileName,
              [trace = std::make_shared<const Trace>(TraceExport::shown(*m_shown, rows))] { return *trace; });
}

void TraceSession::report(const TraceExport::Result &result)
{
    if (!result.problem.isEmpty()) {
        emit failed(result.problem);
        return;
    }
    const auto frames = static_cast<int>(std::min<quint64>(result.frames, 0x7FFFFFFF));
    emit told(tr("Saved: %1, %n frame(s)", nullptr, frames).arg(QDir::toNativeSeparators(result.fileName)),
              result.problems);
    emit fileUsed(result.fileName);
}
