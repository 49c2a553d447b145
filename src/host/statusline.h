// SPDX-License-Identifier: MIT
#pragma once

#include <bus/busconnection.h>

#include <QElapsedTimer>
#include <QTimer>
#include <QWidget>

class HostServices;
class QLabel;
class QProgressBar;
class QToolButton;

/*! Says in words what the bus does: connected to what, what is read, frames per second, nodes heard, SDO
 *  uploads. Changes twice a second at most, and when the state changes.
 */
class StatusLine : public QWidget
{
    Q_OBJECT

public:
    /*! \a services must outlive the line. */
    explicit StatusLine(HostServices *services, QWidget *parent = nullptr);

    /*! Shows \a sentence in the place of the state until that changes or a read begins. */
    void showNotice(const QString &sentence);

    /*! Reads the figures; called by a timer. */
    void refresh();

signals:
    /*! The user does not want to wait for the end of the read. */
    void cancelRequested();

protected:
    void changeEvent(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void build();
    QString stateText() const;
    QString newsText() const;
    QString readText() const;
    QString uploadText() const;
    void showProgress();
    void showFigures();
    void handleState(BusConnection::State state);
    void measureFrameRate();

    HostServices *m_services;
    BusConnection *m_bus;
    QLabel *m_state;
    QProgressBar *m_progress;
    QLabel *m_timeLeft;
    QToolButton *m_cancel;
    QLabel *m_frames;
    QLabel *m_nodes;
    QLabel *m_uploads;
    QTimer m_timer;
    QElapsedTimer m_sinceMeasured;
    QString m_notice;
    quint64 m_lastFrames = 0;
    int m_framesPerSecond = 0;
};
