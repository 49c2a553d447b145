// SPDX-License-Identifier: MIT
#include "tracerecorder.h"

#include <system/background.h>
#include <live/events/eventlist.h>
#include <system/amounts.h>
#include <trace/recording/tracefolder.h>

#include <QCanBusFrame>
#include <QDateTime>
#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <utility>

namespace {

constexpr int recordingInterval = 100; // ms
constexpr FaultSaving::Settings savingTimes{5 * Microseconds::ofSecond, 60 * Microseconds::ofSecond};

qint64 timeOfDay()
{
    return QDateTime::currentMSecsSinceEpoch() * Microseconds::ofMillisecond;
}

struct Saved
{
    QString file;
    QString problem;
};

} // namespace

TraceRecorder::TraceRecorder(BusConnection *bus, QObject *parent)
    : QObject(parent)
    , m_bus(bus)
    , m_faults(savingTimes)
    , m_time(timeOfDay())
{
    m_steady.start();
    m_timer.setInterval(recordingInterval);
    connect(&m_timer, &QTimer::timeout, this, &TraceRecorder::tick);
    connect(bus, &BusConnection::frameReceived, this,
            [this](const QCanBusFrame &frame) { take(frame, TraceFrame::Flag(0)); });
    connect(bus, &BusConnection::frameSent, this,
            [this](const QCanBusFrame &frame) { take(frame, TraceFrame::Sent); });
    connect(bus, &BusConnection::stateChanged, this, &TraceRecorder::handleState);
}

qint64 TraceRecorder::now() const
{
    return m_steady.nsecsElapsed() / Nanoseconds::ofMicrosecond;
}

TraceHead TraceRecorder::head() const
{
    TraceHead head;
    const QString name = m_bus->settings().address.interfaceName;
    head.channels = QStringList(name.isEmpty() ? QStringLiteral("can0") : name);
    head.hasTimeOfDay = true;
    return head;
}

void TraceRecorder::handleState(BusConnection::State state)
{
    if (state == BusConnection::State::Connected && !m_isListening) {
        begin();
    } else if (state == BusConnection::State::Disconnected && m_isListening) {
        m_isListening = false;
        noticeFaults();
        if (m_faults.isWaiting()) // nothing more will come that it could wait for
            saveByItself();
        if (!m_recording)
            m_timer.stop();
        emit ended();
    }
}

void TraceRecorder::begin()
{
    m_isListening = true;
    m_lastEvent = 0;
    m_faults = FaultSaving(savingTimes);
    m_time = RecordedTime(timeOfDay() - now());
    m_flight.clear();
    m_flight.setHead(head());
    m_timer.start();
    emit begun(head());
}

void TraceRecorder::take(const QCanBusFrame &frame, TraceFrame::Flag flag)
{
    if (!m_isListening || !TraceFrame::canHold(frame))
        return;
    TraceFrame traced = TraceFrame::of(frame, m_time.timeOf(frame, now(), m_bus->busTime()));
    traced.flags = static_cast<quint8>(traced.flags | flag);
    m_flight.add(traced);
    if (m_recording)
        m_recording->add(traced, now());
    emit taken(traced);
    if (m_flight.size() == 1)
        emit keptFirst();
}

void TraceRecorder::tick()
{
    if (m_recording)
        m_recording->advance(now());
    noticeFaults();
    if (m_faults.takeDue(now()))
        saveByItself();
    if (m_recording)
        emit recordingChanged();
}

void TraceRecorder::noticeFaults()
{
    if (m_events == nullptr || m_events->events().empty())
        return;
    const std::deque<LiveEvent> &events = m_events->events();
    const quint64 last = events.back().number;
    if (last < m_lastEvent) // another bus
        m_lastEvent = 0;
    // The newest stand at the end, and their numbers have no gaps.
    const auto unseen = std::min<quint64>(last - m_lastEvent, events.size());
    m_lastEvent = last;
    const bool hasFault
        = std::any_of(events.end() - static_cast<std::ptrdiff_t>(unseen), events.end(),
                      [](const LiveEvent &event) { return event.severity() == Severity::Fault; });
    // The faults of a trace that is played are in a file already.
    const bool isPlayed = m_bus->busTime().has_value();
    if (hasFault && m_settings.savesFaults && !isPlayed)
        m_faults.handleFault(now());
}

void TraceRecorder::saveByItself()
{
    if (m_flight.size() == 0)
        return;
    const TraceFolder folder(m_settings.folder, m_settings.mostBytes);
    const QDateTime time = QDateTime::currentDateTimeUtc();
    Background::run(
        this,
        [folder, flight = lastMinutes(), time] {
            Saved saved;
            saved.file = folder.save(flight.all(), time, &saved.problem);
            return saved;
        },
        [this](const Saved &saved) { reportSaved(saved.file, saved.problem); });
}

void TraceRecorder::reportSaved(const QString &file, const QString &problem)
{
    if (file.isEmpty()) {
        emit warned(tr("What was on the bus before a fault could not be saved. %1").arg(problem));
        return;
    }
    emit told(tr("What was on the bus before a fault is saved: %1").arg(QDir::toNativeSeparators(file)));
    const bool wasTooLarge = std::exchange(m_isFolderTooLarge, !problem.isEmpty());
    if (m_isFolderTooLarge && !wasTooLarge)
        emit warned(problem);
}

bool TraceRecorder::record(const QString &fileName, QString *errorMessage)
{
    stopRecording();
    if (isFinishing(fileName)) {
        *errorMessage
            = tr("%1 is still being written. Choose another name.").arg(QDir::toNativeSeparators(fileName));
        return false;
    }
    TraceRecording::Settings settings;
    settings.path = fileName;
    if (m_settings.rotation == TraceSettings::Rotation::Size)
        settings.rotateSize = m_settings.rotationMegabytes * Bytes::ofMegabyte;
    else if (m_settings.rotation == TraceSettings::Rotation::Time)
        settings.rotateTime = m_settings.rotationMinutes * Microseconds::ofMinute;
    auto recording = std::make_unique<BackgroundRecording>(settings);
    if (!recording->begin(head(), now())) {
        *errorMessage = recording->errorString();
        return false;
    }
    connect(recording.get(), &BackgroundRecording::ended, this,
            [this, ended = recording.get()] { endRecording(ended); });
    m_recording = std::move(recording);
    m_recordingBegin = now();
    m_timer.start();
    emit recordingChanged();
    return true;
}

bool TraceRecorder::isFinishing(const QString &fileName) const
{
    return std::any_of(m_finishing.begin(), m_finishing.end(), [&fileName](const auto &recording) {
        return recording->path() == fileName || recording->files().contains(fileName);
    });
}

void TraceRecorder::stopRecording()
{
    if (!m_recording)
        return;
    m_finishing.push_back(std::move(m_recording));
    if (!m_isListening)
        m_timer.stop();
    emit recordingChanged();
    m_finishing.back()->finish();
}

/*! Nothing more of it is written: it was stopped, or has ended by itself. */
void TraceRecorder::endRecording(BackgroundRecording *recording)
{
    if (recording == m_recording.get())
        stopRecording();
    const auto finished = std::find_if(m_finishing.begin(), m_finishing.end(),
                                       [recording](const auto &one) { return one.get() == recording; });
    report(**finished);
    finished->release()->deleteLater(); // it is telling this
    m_finishing.erase(finished);
}

void TraceRecorder::report(const BackgroundRecording &recording)
{
    const QStringList files = recording.files();
    const QString first = QDir::toNativeSeparators(files.first());
    const QString name
        = files.size() == 1 ? first : tr("%1 to %2").arg(first, QFileInfo(files.last()).fileName());
    const auto frames = static_cast<int>(std::min<quint64>(recording.written(), 0x7FFFFFFF));
    if (recording.errorString().isEmpty())
        emit told(tr("Recorded: %1, %n frame(s)", nullptr, frames).arg(name));
    else
        emit warned(tr("The recording %1 has ended. %2").arg(name, recording.errorString()));
    emit recordedFile(files.first());
}
