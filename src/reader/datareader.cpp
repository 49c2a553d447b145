// SPDX-License-Identifier: MIT
#include "datareader.h"

#include <store/exchangefile.h>
#include <interface/canreceiverhub.h>
#include <interface/sdoclient.h>
#include <interface/secondarysdoclient.h>

#include <QDateTime>
#include <QDebug>
#include <QStringList>
#include <QTimer>
#include <QTimerEvent>

namespace {

constexpr int detectionTime = 2000; // ms; every node sends a heartbeat in this time
constexpr int uploadTimeout = 100;  // ms
constexpr quint16 firstHeartbeatCobId = 0x701;
constexpr quint16 lastHeartbeatCobId = 0x77F;
constexpr quint8 controllerNodeId = 1;
constexpr quint32 noAnswer = 0xFFFFFFFF;

} // namespace

DataReader::DataReader(QObject *parent)
    : QObject(parent)
    , m_generalEntries(readListGroup(ReadGroup::General))
    , m_group2Entries(readListGroup(ReadGroup::Group2))
    , m_group3Entries(readListGroup(ReadGroup::Group3))
    , m_group4Entries(readListGroup(ReadGroup::Group4))
    , m_group5Entries(readListGroup(ReadGroup::Group5))
{
    connect(this, SIGNAL(done(quint32)), this, SLOT(finishedSlot(quint32)));
}

void DataReader::setSdoClient(SdoClient *client)
{
    m_sdoClient = client;
    if (client != nullptr)
        listenTo(client->getQObject());
}

void DataReader::setReceiverHub(CanReceiverHub *hub)
{
    m_receiverHub = hub;
}

bool DataReader::setSecondarySdoClient(SecondarySdoClient *client)
{
    m_secondarySdoClient = client;
    if (client == nullptr)
        return false;
    listenTo(client->getQObject());
    return true;
}

void DataReader::listenTo(const QObject *sdoSignals)
{
    if (sdoSignals == nullptr)
        return;
    connect(sdoSignals, SIGNAL(resultReceived(quint8, quint16, quint8, QVariant)), this,
            SLOT(sdoResultReceived(quint8, quint16, quint8, QVariant)), Qt::UniqueConnection);
    connect(sdoSignals, SIGNAL(errorReceived(quint8, quint16, quint8, quint32)), this,
            SLOT(sdoErrorReceived(quint8, quint16, quint8, quint32)), Qt::UniqueConnection);
}

bool DataReader::startReading()
{
    if (m_reading)
        return false;

    m_detecting = true;
    m_reading = true;
    m_nodeId = controllerNodeId;
    // Deliberate: the list of nodes is not cleared; a run only adds to it.
    clearStore();

    if (m_detectionTimer.isNull())
        m_detectionTimer = new QTimer(this);

    for (quint16 cobId = firstHeartbeatCobId; cobId <= lastHeartbeatCobId && m_receiverHub != nullptr;
         ++cobId) {
        if (const QObject *receiver = m_receiverHub->getReceiver(cobId))
            connect(receiver, SIGNAL(received(quint16)), this, SLOT(received(quint16)));
    }

    m_detectionTimer->setInterval(detectionTime);
    m_detectionTimer->setSingleShot(true);
    m_detectionTimer->setTimerType(Qt::PreciseTimer); // a coarse timer may be off by 5 %
    connect(m_detectionTimer, SIGNAL(timeout()), this, SLOT(handleHBdetectionTimeout()),
            Qt::UniqueConnection);
    m_detectionTimer->start();
    return true;
}

ReadProgress DataReader::progress() const
{
    ReadProgress progress;
    progress.nodeId = m_nodeId;
    progress.index = m_index;
    progress.subIndex = m_subIndex;
    progress.nodesFound = m_store.nodeList().size();
    progress.entriesTotal = progress.nodesFound * readListLength;
    if (!m_detecting)
        progress.entriesDone = m_nodePosition * readListLength + (m_reading ? m_entryPosition : 0);
    return progress;
}

QList<quint8> DataReader::getNodeList() const
{
    QStringList ids;
    for (const quint8 nodeId : m_store.nodeList())
        ids.append(QString::number(nodeId));
    qDebug().noquote() << QLatin1Char('(') + ids.join(QLatin1String(", ")) + QLatin1Char(')');
    return m_store.nodeList();
}

QString DataReader::exportXml() const
{
    return exportToText(m_store, QDateTime::currentDateTime());
}

bool DataReader::importXml(const QString &text)
{
    importFrom(text, m_store);
    return true;
}

void DataReader::received(quint16 value)
{
    if (!m_detecting)
        return;
    const auto nodeId = static_cast<quint8>(value & 0xFF);
    if (!m_store.nodeList().contains(nodeId))
        m_store.appendNode(nodeId);
}

void DataReader::handleHBdetectionTimeout()
{
    m_detecting = false;
    m_store.sortNodeList();
    qDebug() << "Found nodes:" << m_store.nodeList();

    // Deliberate: without node 1, the bus controller, nothing is read and nothing is said.
    if (m_store.nodeList().contains(controllerNodeId))
        startSequence();
    else
        m_reading = false;
}

void DataReader::startSequence()
{
    m_readStarted = true;
    m_nodePosition = 0;
    rebuildWorkingList();
    // Deliberate: node 1 in the place of the list's first node, which after an import may be a node 0.
    m_nodeId = controllerNodeId;
    loadEntry();
    scheduleNextElement();
}

void DataReader::rebuildWorkingList()
{
    m_workingList.clear();
    m_workingList.reserve(readListLength);
    m_workingList += m_generalEntries;
    m_workingList += m_group2Entries;
    m_workingList += m_group3Entries;
    m_workingList += m_group4Entries;
    m_workingList += m_group5Entries;
    m_entryPosition = 0;
}

void DataReader::loadEntry()
{
    const ReadEntry &entry = m_workingList.at(m_entryPosition);
    m_index = entry.index;
    m_subIndex = entry.subIndex;
    m_dataType = entry.dataType;
}

void DataReader::readNextElement()
{
    if (m_sdoClient == nullptr) {
        // Deliberate: the run stays in progress; a host that goes away during a run has to answer first.
        emit done(0);
        return;
    }
    m_sdoClient->upload(m_nodeId, m_index, m_subIndex, m_dataType, uploadTimeout);
    emit done(m_index);
}

bool DataReader::advance()
{
    ++m_entryPosition;
    if (m_entryPosition >= m_workingList.size()) {
        ++m_nodePosition;
        // An import during the run may have made the list shorter.
        if (m_nodePosition >= m_store.nodeList().size()) {
            m_reading = false;
            return false;
        }
        m_nodeId = m_store.nodeList().at(m_nodePosition);
        rebuildWorkingList();
    }
    loadEntry();
    return true;
}

void DataReader::continueOrFinish()
{
    if (advance())
        scheduleNextElement();
    else
        emit done(0);
}

void DataReader::scheduleNextElement()
{
    // QTimer::singleShot() would post an event instead, for which the event loop has to be woken up by a system call.
    startTimer(0);
}

void DataReader::timerEvent(QTimerEvent *event)
{
    killTimer(event->timerId());
    readNextElement();
}

void DataReader::sdoResultReceived(quint8 nodeId, quint16 index, quint8 subIndex, const QVariant &value)
{
    if (!m_reading)
        return;
    // Deliberate: the answer is filed under its own key, whatever was asked for.
    setValue(nodeId, index, subIndex, value);
    if (!m_detecting)
        continueOrFinish();
}

void DataReader::sdoErrorReceived(quint8 nodeId, quint16 index, quint8 subIndex, quint32 errorCode)
{
    Q_UNUSED(subIndex)
    // While nodes are detected no request of this run is out: the error belongs to the one sent after a
    // time-out had ended the run before.
    if (!m_reading || m_detecting)
        return;
    if (errorCode == noAnswer) {
        m_reading = false;
        emit done(0);
        qDebug() << "Stop on Timeout: Node = " << nodeId << "index = " << index;
    }
    // Deliberate: one more request goes out after a time-out; its answer is ignored.
    continueOrFinish();
}

void DataReader::newNmtState(quint8 nodeId, NmtSender::NmtState state)
{
    emit nmtStateUpdate(nodeId, state);
}

void DataReader::finishedSlot(quint32 value)
{
    Q_UNUSED(value)
    if (m_reading)
        return;
    qDebug("void DataReader::finishedSlot(quint32)");
    if (m_receiverHub == nullptr)
        return;
    for (const quint8 nodeId : m_store.nodeList()) {
        if (const QObject *source = m_receiverHub->getNmtStateSource(nodeId))
            connect(source, SIGNAL(newNmtState(quint8, NmtSender::NmtState)), this,
                    SLOT(newNmtState(quint8, NmtSender::NmtState)));
    }
}
