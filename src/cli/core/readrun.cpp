// SPDX-License-Identifier: MIT
#include "readrun.h"

#include "interruptibleloop.h"
#include "progressline.h"

#include <host/core/hostservices.h>
#include <reader/datareader.h>

#include <chrono>

namespace {

using namespace std::chrono_literals;

constexpr auto checkInterval = 50ms;

} // namespace

ReadRun::ReadRun(HostServices *services, DataReader *reader, ProgressLine *progress, QObject *parent)
    : QObject(parent)
    , m_services(services)
    , m_reader(reader)
    , m_progress(progress)
{
    m_checkTimer.setInterval(checkInterval);
    connect(&m_checkTimer, &QTimer::timeout, this, &ReadRun::check);
    connect(m_reader, &DataReader::done, this, [this](quint32 index) {
        if (index == 0)
            check();
    });
    connect(&services->sdoClient(), &HostSdoClient::uploadStarted, this, [this] { m_isListening = false; });
}

void ReadRun::run(InterruptibleLoop *loop)
{
    m_loop = loop;
    m_reader->setReceiverHub(m_services->getCanReceiverHub());
    m_reader->setSdoClient(m_services->getSdoClient());
    m_reader->setSecondarySdoClient(m_services->getSecondarySdoClient());

    m_clock.start();
    m_reader->startReading();
    m_checkTimer.start();
    m_loop->run();
    m_checkTimer.stop();
}

void ReadRun::check()
{
    if (!m_reader->isReading()) {
        m_loop->end();
        return;
    }
    if (m_progress->isShown())
        m_progress->update(progressText());
}

QString ReadRun::progressText() const
{
    const ReadProgress progress = m_reader->progress();
    const QString seconds = QString::number(static_cast<double>(m_clock.elapsed()) / 1000.0, 'f', 1);
    if (m_isListening)
        return tr("Listening for nodes, %1 found, %2 s").arg(QString::number(progress.nodesFound), seconds);
    return tr("%1 nodes found, reading node %2, object %3: %4 of %5, %6 s")
        .arg(QString::number(progress.nodesFound), QString::number(progress.nodeId),
             CanOpen::ObjectKey{progress.index, progress.subIndex}.toString(),
             QString::number(progress.entriesDone), QString::number(progress.entriesTotal), seconds);
}
