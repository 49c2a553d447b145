// SPDX-License-Identifier: MIT
#pragma once

#include <live/events/eventlist.h>

#include <QDateTime>
#include <QElapsedTimer>
#include <QWidget>

#include <functional>
#include <vector>

class BatteryView;
class EventView;
class LightStrip;
class LiveSession;
class PlotView;
class QLabel;
class QSplitter;
class QStackedWidget;
class QToolButton;
class WatchView;

/*! The page "Live": what is heard while it is heard. Only arranges what the session knows. Follows at most ten times a
 *  second, and not while it is hidden.
 */
class LivePage : public QWidget
{
    Q_OBJECT

public:
    /*! \a session must outlive the page. */
    explicit LivePage(LiveSession *session, QWidget *parent = nullptr);

    /*! The folder in which file dialogs begin. */
    void setFolder(const std::function<QString()> &folder);

    /*! Shows events of before (times in us since 1970) until another bus is connected. False, and nothing is shown of
     *  them, while one is.
     */
    bool showRecorded(const std::vector<LiveEvent> &events);
    bool isRecorded() const { return m_isRecorded; }

    /*! Chooses the event that is nearest to a time. False without any. */
    bool showEventAt(const QDateTime &time);

    /*! How often it has followed; for tests. */
    int refreshes() const { return m_refreshes; }

signals:
    /*! The user has chosen an event, and where it is in a trace may be shown beside it; or wants to see it there. */
    void eventChosen(const LiveEvent &event, const QDateTime &time);
    void traceRequested(const LiveEvent &event, const QDateTime &time);
    /*! What came of something, and what did not go well with it. */
    void told(const QString &sentence, const QStringList &problems);
    void failed(const QString &sentence);

protected:
    void changeEvent(QEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    QWidget *buildTop();
    QWidget *buildCentre();
    QWidget *buildParts();
    void connectParts();
    void begin();
    void refresh();
    void refreshAll();
    void showLights();
    void showNumbers();
    void retranslate();
    QDateTime timeOfDay(qint64 time) const;

    LiveSession *m_session;
    LightStrip *m_lights = nullptr;
    QToolButton *m_numbers = nullptr;
    QStackedWidget *m_centre = nullptr;
    QLabel *m_empty = nullptr;
    EventView *m_events = nullptr;
    WatchView *m_watch = nullptr;
    BatteryView *m_battery = nullptr;
    PlotView *m_plot = nullptr;
    EventList m_recorded;
    bool m_isRecorded = false; // m_recorded is shown
    int m_ticks = 0;
    int m_refreshes = 0;
};
