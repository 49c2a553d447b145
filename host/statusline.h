// SPDX-License-Identifier: MIT
#pragma once

#include <host/core/busconnection.h>

#include <QElapsedTimer>
#include <QTimer>
#include <QWidget>

class QLabel;

/*! Says in words what the bus does: connected to what, frames per second, nodes heard, SDO uploads. */
class StatusLine : public QWidget
{
    Q_OBJECT

public:
    /*! \a bus must outlive the line. */
    explicit StatusLine(BusConnection *bus, QWidget *parent = nullptr);

    /*! Shows \a sentence beside the state until the state changes. */
    void showNotice(const QString &sentence);

    /*! Reads the figures; called by a timer. */
    void refresh();

protected:
    void changeEvent(QEvent *event) override;

private:
    QString stateText() const;
    void handleState(BusConnection::State state);
    void measureFrameRate();

    BusConnection *m_bus;
    QLabel *m_state;
    QLabel *m_frames;
    QLabel *m_nodes;
    QLabel *m_uploads;
    QTimer m_timer;
    QElapsedTimer m_sinceMeasured;
    QString m_notice;
    quint64 m_lastFrames = 0;
    int m_framesPerSecond = 0;
};
