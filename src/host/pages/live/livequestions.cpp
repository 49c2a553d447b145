// SPDX-License-Identifier: MIT
#include "livequestions.h"

#include <bus/buswords.h>
#include <host/core/hostservices.h>
#include <host/core/livebus.h>

LiveQuestions::LiveQuestions(HostServices *services, LiveBus *live, QObject *parent)
    : QObject(parent)
    , m_services(services)
    , m_live(live)
    , m_learning(&services->bus())
    , m_asking(&services->bus())
    , m_batteries(&services->bus())
{
    connect(&services->bus(), &BusConnection::stateChanged, this, &LiveQuestions::handleState);
    connect(&services->reads(), &ReadObserver::phaseChanged, this, &LiveQuestions::pause);
    connect(&m_learning, &PdoLearning::learned, this, &LiveQuestions::handleLearned);
    connect(&m_learning, &PdoLearning::notLearned, this,
            [this](quint8, const QString &reason) { m_failures.append(reason); });
    connect(&m_learning, &PdoLearning::finished, this, &LiveQuestions::handleLearningEnd);
    connect(&m_batteries, &BatteryQuestions::finished, this, &LiveQuestions::handleBattery);
    connect(&m_batteries, &BatteryQuestions::told, this, &LiveQuestions::told);
    connect(&m_asking, &ValueAsking::answered, this,
            [this](quint8 nodeId, CanOpen::ObjectKey object, double number) {
                m_silences.remove(keyOf(nodeId, object));
                m_live->values().note(nodeId, object, number, m_live->now());
            });
    connect(&m_asking, &ValueAsking::notAnswered, this,
            [this](quint8 nodeId, CanOpen::ObjectKey object, const QString &reason) {
                m_silences.insert(keyOf(nodeId, object), reason);
            });
}

LiveQuestions::~LiveQuestions() = default;

quint32 LiveQuestions::keyOf(quint8 nodeId, CanOpen::ObjectKey object)
{
    return quint32(nodeId) << 24 | quint32(object.index) << 8 | object.subIndex;
}

void LiveQuestions::setSharePercent(int percent)
{
    m_learning.setSharePercent(percent);
    m_asking.setSharePercent(percent);
    m_batteries.setSharePercent(percent);
}

QString LiveQuestions::obstacle() const
{
    if (m_services->bus().state() != BusConnection::State::Connected)
        return tr("Connect a bus first.");
    if (m_isCheckingUp)
        return tr("A check-up is running.");
    if (m_services->reads().isReading())
        return tr("The overview is reading.");
    return QString();
}

void LiveQuestions::handleState()
{
    if (m_services->bus().state() == BusConnection::State::Disconnected) {
        m_scan.reset();
        m_batteries.forget();
        m_sheets.clear();
        setAsking(false);
    }
    pause();
}

QVector<quint8> LiveQuestions::heardNodes() const
{
    QVector<quint8> nodes;
    for (const NodeNumbers &node : m_live->healthNumbers().nodes) {
        if (node.frames > 0)
            nodes.append(node.id);
    }
    return nodes;
}

void LiveQuestions::learn()
{
    if (!obstacle().isEmpty() || isLearning())
        return;
    const QVector<quint8> nodes = heardNodes();
    if (nodes.isEmpty()) {
        emit told(tr("No device was heard yet."), {});
        return;
    }
    m_failures.clear();
    m_learnedNodes = 0;
    m_learning.start(nodes);
    pause();
}

void LiveQuestions::handleLearned(quint8 nodeId, const PdoSource &source)
{
    Q_UNUSED(nodeId)
    ++m_learnedNodes;
    m_live->learn(source);
}

void LiveQuestions::handleLearningEnd()
{
    const auto values = static_cast<int>(m_live->values().values().size());
    pause();
    emit told(tr("%1 devices were asked, %2 values are known now.")
                  .arg(QString::number(m_learnedNodes), QString::number(values)),
              m_failures + m_live->values().problems());
}

void LiveQuestions::scan()
{
    if (!obstacle().isEmpty() || isScanning())
        return;
    m_scan = std::make_unique<CanOpen::NodeScan>(&m_services->bus().sdoClient());
    connect(m_scan.get(), &CanOpen::NodeScan::finished, this, &LiveQuestions::handleScanEnd,
            Qt::QueuedConnection);
    m_scan->start();
    pause();
}

void LiveQuestions::handleScanEnd(const QVector<quint8> &nodeIds)
{
    if (m_scan == nullptr)
        return;
    const QVector<quint8> unasked = m_scan->unaskedNodes();
    m_scan.reset();
    QStringList problems;
    if (!unasked.isEmpty())
        problems.append(tr("Could not be asked: node %1.").arg(BusWords::nodes(unasked.toList())));
    pause();
    emit told(nodeIds.isEmpty() ? tr("No device answers.")
                                : tr("These devices answer: node %1.").arg(BusWords::nodes(nodeIds.toList())),
              problems);
}

void LiveQuestions::askBattery(quint8 nodeId)
{
    if (!canAskBattery())
        return;
    m_batteries.ask(nodeId);
    pause();
}

bool LiveQuestions::canAskBattery() const
{
    return obstacle().isEmpty() && !isScanning() && !isLearning() && !m_batteries.isAsking();
}

void LiveQuestions::handleBattery(quint8 nodeId)
{
    if (m_batteries.state(nodeId) == BatteryQuestions::State::Known) {
        m_isAsking = true; // that was wanted
        renew();
    }
    pause();
}

void LiveQuestions::setAsked(const QVector<AskedObject> &objects)
{
    m_asked = objects;
    renew();
}

void LiveQuestions::setDataSheet(quint8 nodeId, const CanOpen::ObjectDictionary &dictionary)
{
    m_sheets.insert(nodeId, dictionary);
    emit dataSheetSet(nodeId, dictionary);
    renew();
}

QVector<AskedObject> LiveQuestions::wanted() const
{
    QVector<AskedObject> wanted = m_asked + m_batteries.objects();
    for (AskedObject &object : wanted) {
        const auto sheet = m_sheets.constFind(object.nodeId);
        const CanOpen::ObjectEntry *entry = sheet != m_sheets.cend() ? sheet->find(object.object) : nullptr;
        if (entry != nullptr)
            object.type = entry->type;
    }
    return wanted;
}

void LiveQuestions::renew()
{
    m_silences.clear();
    m_asking.setObjects(m_isAsking ? wanted() : QVector<AskedObject>());
}

void LiveQuestions::setAsking(bool isAsking)
{
    const bool canAsk = m_services->bus().state() != BusConnection::State::Disconnected;
    if ((isAsking && canAsk) == m_isAsking)
        return;
    m_isAsking = isAsking && canAsk;
    if (!m_isAsking)
        m_batteries.cancel();
    renew();
    pause();
}

QString LiveQuestions::silence(quint8 nodeId, CanOpen::ObjectKey object) const
{
    return m_silences.value(keyOf(nodeId, object));
}

void LiveQuestions::setCheckingUp(bool isCheckingUp)
{
    m_isCheckingUp = isCheckingUp;
    pause();
}

/*! One who asks at a time. */
void LiveQuestions::pause()
{
    const bool isBusy = m_isCheckingUp || m_services->reads().isReading();
    if (isBusy)
        m_scan.reset();
    m_learning.setPaused(isBusy || isScanning());
    m_batteries.setPaused(isBusy || isScanning() || isLearning());
    m_asking.setPaused(isBusy || isScanning() || isLearning() || m_batteries.isAsking());
    emit changed();
}
