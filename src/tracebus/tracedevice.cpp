// SPDX-License-Identifier: MIT
#include "tracedevice.h"

#include "usertraces.h"

#include <canopen/cobid.h>
#include <system/amounts.h>
#include <system/background.h>
#include <system/ordinaryfile.h>
#include <trace/files/tracefile.h>

#include <QLoggingCategory>
#include <QPointer>

#include <algorithm>
#include <utility>

Q_LOGGING_CATEGORY(traceBusLog, "trace.bus")

namespace {

using Pace = TracePlayer::Pace;

// Frames of one turn of the event loop.
constexpr int mostAtOnce = 500;
// How long an unpaced trace waits for somebody who does not take the frames, in ms.
constexpr int waitForReader = 10;
// The longest time of the timer; looking again costs nothing. In ms.
constexpr qint64 longestWait = Q_INT64_C(60) * 1000;
// That are listed as interfaces.
constexpr int mostListed = 1000;
// Between the end of a repeated trace and its next beginning, so that one of a single frame is no flood; us.
constexpr qint64 repeatPause = Q_INT64_C(100) * 1000;

/*! One bus is one channel. */
bool keepChannel(const QString &fileName, const QString &channel, Trace *trace, QString *errorMessage)
{
    const QStringList &channels = trace->head.channels;
    const int number = channel.isEmpty() ? trace->frames.front().channel : channels.indexOf(channel);
    if (number < 0) {
        *errorMessage = TraceCanDevice::tr("The trace %1 has no channel \"%2\". There are: %3.")
                            .arg(fileName, channel, channels.join(QStringLiteral(", ")));
        return false;
    }
    const auto isOther = [number](const TraceFrame &frame) { return frame.channel != number; };
    trace->frames.erase(std::remove_if(trace->frames.begin(), trace->frames.end(), isOther),
                        trace->frames.end());
    return true;
}

void logProblems(const Trace &trace, const QString &fileName)
{
    for (const TraceProblem &problem : trace.problems)
        qCWarning(traceBusLog, "%s, line %lld: %s", qUtf8Printable(fileName), problem.line,
                  qUtf8Printable(problem.text));
    if (trace.missing == MissingFrames::Newest)
        qCWarning(traceBusLog, "%s is too long; its end is not played", qUtf8Printable(fileName));
}

} // namespace

/*! What was read of a file. */
struct TraceCanDevice::Loaded
{
    Trace trace;
    RecordedAnswers answers;
    QString errorMessage; // empty: all is well
};

TraceCanDevice::TraceCanDevice(QString interfaceName, QObject *parent)
    : QCanBusDevice(parent)
    , m_interfaceName(std::move(interfaceName))
{
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::PreciseTimer);
    m_answerTimer.setSingleShot(true);
    m_answerTimer.setInterval(0);
    connect(&m_timer, &QTimer::timeout, this, &TraceCanDevice::play);
    connect(&m_answerTimer, &QTimer::timeout, this, &TraceCanDevice::deliverAnswers);
}

TraceCanDevice::~TraceCanDevice() = default;

void TraceCanDevice::setConfigurationParameter(int key, const QVariant &value)
{
    QCanBusDevice::setConfigurationParameter(key, value);
    if (m_player == nullptr)
        return;
    control(key, value);
    schedule();
}

void TraceCanDevice::control(int key, const QVariant &value)
{
    switch (key) {
    case StepKey:
        if (m_player->pace() != Pace::Stepped)
            m_player->change(Pace::Stepped, m_address.speed, now());
        m_player->step(value.toInt());
        break;
    case PauseKey:
        if (value.toBool() != (m_player->pace() == Pace::Stepped))
            m_player->change(value.toBool() ? Pace::Stepped : m_pace, m_address.speed, now());
        break;
    case SpeedKey:
        setSpeed(value.toDouble());
        break;
    case RestartKey:
        m_player->start(now());
        break;
    case RepeatKey:
        m_address.isRepeated = value.toBool();
        if (m_address.isRepeated && m_player->isAtEnd())
            m_player->start(now());
        break;
    default:
        break;
    }
}

void TraceCanDevice::setSpeed(double speed)
{
    const bool isUnpaced = speed == 0;
    if (!isUnpaced
        && !(speed >= TracePlayer::slowest && speed <= TracePlayer::fastest)) // nor what is no number
        return;
    m_pace = isUnpaced ? Pace::Unpaced : Pace::Recorded;
    if (!isUnpaced)
        m_address.speed = speed;
    const bool isPaused = m_player->pace() == Pace::Stepped;
    m_player->change(isPaused ? Pace::Stepped : m_pace, m_address.speed, now());
}

QVariantMap TraceCanDevice::playback() const
{
    PlaybackState state;
    if (m_player == nullptr)
        return state.toMap();
    const std::vector<TraceFrame> &frames = m_trace.frames;
    state.played = static_cast<qint64>(m_player->position());
    state.frames = static_cast<qint64>(frames.size());
    state.time = frames[std::max<size_t>(m_player->position(), 1) - 1].time;
    state.hasTimeOfDay = m_trace.head.hasTimeOfDay;
    state.isPaused = m_player->pace() == Pace::Stepped;
    state.isRepeated = m_address.isRepeated;
    state.isOver = m_player->isAtEnd() && !m_address.isRepeated;
    state.speed = m_pace == Pace::Unpaced ? 0 : m_address.speed;
    return state.toMap();
}

qint64 TraceCanDevice::busTime() const
{
    return m_player != nullptr ? m_player->stampAt(now()) : 0;
}

int TraceCanDevice::connectTime()
{
    constexpr int longest = 120 * 1000; // a file with as many frames as can be read, on a slow disk
    return longest;
}

bool TraceCanDevice::open()
{
    QString error;
    const std::optional<PlaybackAddress> address = PlaybackAddress::parse(m_interfaceName, &error);
    if (!address) {
        setError(error, ConfigurationError);
        return false;
    }
    m_address = *address;
    Background::run(
        this, [address = *address] { return load(address); },
        [this, attempt = ++m_attempt](Loaded &loaded) {
            if (attempt == m_attempt)
                begin(&loaded);
        });
    return true;
}

TraceCanDevice::Loaded TraceCanDevice::load(const PlaybackAddress &address)
{
    Loaded loaded;
    loaded.errorMessage = ordinaryFileProblem(address.fileName);
    if (!loaded.errorMessage.isEmpty())
        return loaded;
    std::optional<Trace> trace = TraceFile::load(address.fileName, TraceFile::Limits(), &loaded.errorMessage);
    if (!trace)
        return loaded;
    if (trace->frames.empty())
        loaded.errorMessage = tr("The trace %1 has no frames.").arg(address.fileName);
    else
        keepChannel(address.fileName, address.channel, &*trace, &loaded.errorMessage);
    if (loaded.errorMessage.isEmpty())
        loaded.answers = RecordedAnswers::of(trace->frames);
    loaded.trace = std::move(*trace);
    return loaded;
}

void TraceCanDevice::begin(Loaded *loaded)
{
    logProblems(loaded->trace, m_address.fileName);
    if (!loaded->errorMessage.isEmpty()) {
        setError(loaded->errorMessage, ConnectionError);
        setState(UnconnectedState);
        return;
    }
    m_trace = std::move(loaded->trace);
    m_vehicle = std::make_unique<RecordedVehicle>(std::move(loaded->answers), m_address.knowledge);
    m_player = std::make_unique<TracePlayer>(&m_trace.frames);
    m_player->setSpeed(m_address.speed);
    m_player->setPace(m_address.pace);
    m_pace = m_address.pace == Pace::Stepped ? Pace::Recorded : m_address.pace;
    m_clock.start();
    m_player->start(now());
    schedule();
    setState(ConnectedState);
}

void TraceCanDevice::close()
{
    ++m_attempt;
    m_timer.stop();
    m_answerTimer.stop();
    m_answers.clear();
    m_player.reset();
    m_vehicle.reset();
    m_trace = Trace();
    setState(UnconnectedState);
}

qint64 TraceCanDevice::now() const
{
    return m_clock.nsecsElapsed() / Nanoseconds::ofMicrosecond;
}

void TraceCanDevice::play()
{
    const QPointer<TraceCanDevice> alive(this);
    const QVector<QCanBusFrame> frames = takeDue();
    if (!frames.isEmpty())
        enqueueReceivedFrames(frames);
    if (alive.isNull() || m_player == nullptr) // slots may have closed or deleted this
        return;
    if (m_player->isAtEnd() && m_address.isRepeated)
        m_player->start(now() + repeatPause);
    schedule();
}

QVector<QCanBusFrame> TraceCanDevice::takeDue()
{
    QVector<QCanBusFrame> frames;
    if (isReaderBehind())
        return frames;
    const qint64 present = now();
    for (int taken = 0; taken < mostAtOnce; ++taken) {
        const TraceFrame *frame = m_player->take(present);
        if (frame == nullptr)
            break;
        if (isHidden(*frame))
            continue;
        frames.append(frame->toCanBusFrame());
        frames.last().setTimeStamp(QCanBusFrame::TimeStamp::fromMicroSeconds(m_player->stamp()));
    }
    return frames;
}

void TraceCanDevice::schedule()
{
    const std::optional<qint64> due = m_player->nextDue();
    if (!due) {
        m_timer.stop();
        return;
    }
    const qint64 rest = isReaderBehind()
                            ? waitForReader
                            : (*due - now() + Microseconds::ofMillisecond - 1) / Microseconds::ofMillisecond;
    m_timer.start(static_cast<int>(std::clamp<qint64>(rest, 0, longestWait)));
}

/*! Whether an unpaced trace has to wait, or the whole of it would be in the queue at once. */
bool TraceCanDevice::isReaderBehind() const
{
    return m_player->pace() == TracePlayer::Pace::Unpaced && framesAvailable() >= mostAtOnce;
}

/*! Whether the frame is of a transfer of then with a node that now talks with somebody else. */
bool TraceCanDevice::isHidden(const TraceFrame &frame) const
{
    using namespace CanOpen;
    if (frame.isExtended() || frame.isError())
        return false;
    const quint8 nodeId = std::max(nodeIdOf(frame.id, sdoResponseBase), nodeIdOf(frame.id, sdoRequestBase));
    return nodeId != 0 && m_vehicle->isTalking(nodeId);
}

bool TraceCanDevice::writeFrame(const QCanBusFrame &frame)
{
    if (state() != ConnectedState || m_player == nullptr)
        return false;
    if (!frame.isValid() || frame.hasFlexibleDataRateFormat()
        || (frame.frameType() != QCanBusFrame::DataFrame
            && frame.frameType() != QCanBusFrame::RemoteRequestFrame)) {
        setError(tr("Cannot write this kind of frame"), WriteError);
        return false;
    }
    m_answers += m_vehicle->handleFrame(frame, m_player->position());
    if (!m_answers.isEmpty())
        m_answerTimer.start();
    emit framesWritten(1);
    return true;
}

/*! From the event loop: nobody is answered before his request is written. */
void TraceCanDevice::deliverAnswers()
{
    QVector<QCanBusFrame> answers;
    answers.swap(m_answers);
    if (answers.isEmpty())
        return;
    const qint64 stamp = m_player->stampAt(now());
    for (QCanBusFrame &answer : answers)
        answer.setTimeStamp(QCanBusFrame::TimeStamp::fromMicroSeconds(stamp));
    enqueueReceivedFrames(answers);
}

QString TraceCanDevice::interpretErrorFrame(const QCanBusFrame &errorFrame)
{
    Q_UNUSED(errorFrame)
    return QString(); // frames that were recorded are told by who decodes traces
}

QList<QCanBusDeviceInfo> TraceCanDevice::interfaces()
{
    constexpr int onlyChannel = 0;
    QList<QCanBusDeviceInfo> infos;
    const QFileInfoList traces = UserTraces::list(mostListed);
    for (const QFileInfo &trace : traces) {
        const QString time = trace.lastModified().toString(Qt::ISODate);
        infos.append(createDeviceInfo(trace.absoluteFilePath(), QString(), tr("Trace of %1").arg(time),
                                      onlyChannel, true, false));
    }
    return infos;
}
