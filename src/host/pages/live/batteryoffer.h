// SPDX-License-Identifier: MIT
#pragma once

#include <QVector>
#include <QWidget>

class LiveSession;
class QLabel;
class QToolButton;

/*! A line below the watch list: a battery whose cells are not heard can be asked for them, and what became of that as long
 *  as there are none. It is only there when there is something to be said.
 */
class BatteryOffer : public QWidget
{
    Q_OBJECT

public:
    /*! \a session must outlive it. */
    explicit BatteryOffer(LiveSession *session, QWidget *parent = nullptr);

    /*! Shows what is known now. */
    void refresh();

private:
    QVector<quint8> unheard() const;
    void offer(const QVector<quint8> &nodes);
    void showState(const QVector<quint8> &nodes);
    QString stateText(quint8 nodeId) const;

    LiveSession *m_session;
    QLabel *m_state;
    QToolButton *m_ask;
    quint8 m_offered = 0; // the node that m_ask asks; 0: none
};
