// SPDX-License-Identifier: MIT
#include "batteryoffer.h"

#include "batterypack.h"
#include "livesession.h"

#include <host/pages/plainlabel.h>

#include <QHBoxLayout>
#include <QLabel>
#include <QToolButton>

#include <algorithm>

using State = BatteryQuestions::State;

BatteryOffer::BatteryOffer(LiveSession *session, QWidget *parent)
    : QWidget(parent)
    , m_session(session)
    , m_state(makePlainLabel("batteryState", this))
    , m_ask(new QToolButton(this))
{
    setObjectName(QStringLiteral("batteryOffer"));
    m_ask->setObjectName(QStringLiteral("askBattery"));
    m_ask->setFocusPolicy(Qt::TabFocus);
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_ask);
    layout->addWidget(m_state, 1);
    connect(m_ask, &QToolButton::clicked, this, [this] { m_session->questions().askBattery(m_offered); });
    hide();
}

void BatteryOffer::refresh()
{
    const QVector<quint8> nodes = unheard();
    offer(nodes);
    showState(nodes);
    setVisible(m_session->isListening() && (!m_ask->isHidden() || !m_state->text().isEmpty()));
}

/*! The batteries of which no cell is heard. */
QVector<quint8> BatteryOffer::unheard() const
{
    const QVector<BatteryPack> packs = BatteryPack::of(m_session->live().values(), m_session->now());
    const auto isHeard = [&packs](quint8 node) {
        return std::any_of(packs.cbegin(), packs.cend(),
                           [node](const BatteryPack &pack) { return pack.nodeId == node; });
    };
    QVector<quint8> nodes = m_session->batteries();
    nodes.erase(std::remove_if(nodes.begin(), nodes.end(), isHeard), nodes.end());
    return nodes;
}

/*! The first that was not asked. */
void BatteryOffer::offer(const QVector<quint8> &nodes)
{
    const LiveQuestions &questions = m_session->questions();
    const auto offered = std::find_if(nodes.cbegin(), nodes.cend(), [&questions](quint8 node) {
        return questions.batteries().state(node) == State::Unasked;
    });
    m_offered = offered != nodes.cend() ? *offered : quint8(0);
    m_ask->setVisible(m_offered != 0);
    m_ask->setEnabled(questions.canAskBattery());
    m_ask->setToolTip(questions.obstacle());
    m_ask->setText(tr("Ask node %1 for its cells").arg(m_offered));
}

void BatteryOffer::showState(const QVector<quint8> &nodes)
{
    QString text;
    for (const quint8 node : nodes)
        text = text.isEmpty() ? stateText(node) : text;
    m_state->setText(text);
}

QString BatteryOffer::stateText(quint8 nodeId) const
{
    const QString node = QString::number(nodeId);
    switch (m_session->questions().batteries().state(nodeId)) {
    case State::BeingAsked:
        return tr("Node %1 is asked for its cells ...").arg(node);
    case State::Known:
        return tr("No cell of node %1 has answered yet.").arg(node);
    case State::Unasked:
    case State::WithoutCells:
        break;
    }
    return QString();
}
