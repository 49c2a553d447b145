// SPDX-License-Identifier: MIT
#include "tracerecording.h"

#include <system/amounts.h>
#include <trace/files/tracefile.h>

#include <QCoreApplication>
#include <QDir>

#include <utility>

namespace {

struct TraceRecordingTr
{
    Q_DECLARE_TR_FUNCTIONS(TraceRecording)
};

constexpr qint64 flushPeriod = 800'000;  // us; and who calls ten times a second has a second at most
constexpr qint64 lookPeriod = 4'000'000; // bytes

} // namespace

TraceRecording::TraceRecording(const Settings &settings, FreeSpace freeSpace)
    : m_settings(settings)
    , m_freeSpace(std::move(freeSpace))
    , m_files(settings.path, settings.rotateSize > 0 || settings.rotateTime > 0
                                 ? RecordingFiles::Kind::Numbered
                                 : RecordingFiles::Kind::One)
{
}

TraceRecording::~TraceRecording()
{
    finish();
}

bool TraceRecording::begin(const TraceHead &head, qint64 now)
{
    m_head = head;
    return hasSpace() && beginFile(now);
}

bool TraceRecording::beginFile(qint64 now)
{
    const QString name = m_files.next();
    m_writer = TraceFile::create(name, m_head, &m_error, TraceFile::Appearance::Growing);
    if (!m_writer)
        return false; // and nothing is removed for it
    m_files.add(name);
    m_fileBegin = now;
    m_lastFlush = now;
    m_nextLook = lookPeriod;
    if (m_settings.keep > 0)
        m_files.removeAllBut(m_settings.keep);
    return true;
}

bool TraceRecording::endFile()
{
    const bool isWritten = m_writer->finish();
    if (!isWritten)
        m_error = m_writer->errorString();
    m_writer.reset();
    return isWritten;
}

bool TraceRecording::rotate(qint64 now)
{
    return endFile() && beginFile(now);
}

bool TraceRecording::isFull(qint64 now) const
{
    return (m_settings.rotateSize > 0 && m_writer->size() >= m_settings.rotateSize)
           || (m_settings.rotateTime > 0 && now - m_fileBegin >= m_settings.rotateTime);
}

bool TraceRecording::stop(const QString &sentence)
{
    m_error = sentence;
    m_writer.reset();
    return false;
}

bool TraceRecording::hasSpace()
{
    if (m_settings.reserve == 0)
        return true;
    const qint64 left = m_freeSpace(m_settings.path);
    if (left < 0 || left >= m_settings.reserve)
        return true;
    if (m_writer)
        endFile();
    return stop(TraceRecordingTr::tr("Less than %1 MB are left on the disk of %2: recording has ended.")
                    .arg(m_settings.reserve / Bytes::ofMegabyte)
                    .arg(QDir::toNativeSeparators(m_settings.path)));
}

bool TraceRecording::add(const TraceFrame &frame, qint64 now)
{
    if (!m_writer || (isFull(now) && !rotate(now)))
        return false;
    if (!m_writer->write(frame))
        return stop(m_writer->errorString());
    ++m_frames;
    if (m_writer->size() < m_nextLook)
        return advance(now);
    m_nextLook = m_writer->size() + lookPeriod;
    return hasSpace() && advance(now);
}

bool TraceRecording::advance(qint64 now)
{
    if (!m_writer)
        return false;
    if (now - m_lastFlush < flushPeriod)
        return true;
    m_lastFlush = now;
    if (!m_writer->flush())
        return stop(m_writer->errorString());
    return hasSpace();
}

bool TraceRecording::finish()
{
    return m_writer ? endFile() : m_error.isEmpty();
}
