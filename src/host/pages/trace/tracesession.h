// SPDX-License-Identifier: MIT
#pragma once

#include "tracerecorder.h"
#include "livetrace.h"
#include "traceexport.h"
#include "traceloading.h"

#include <QObject>
#include <QStringList>
#include <QTimer>

#include <functional>
#include <memory>

class TraceRows;

/*! What the page "Trace" is about: what is heard, or a file that was opened; and the recorder. Sends nothing. */
class TraceSession : public QObject
{
    Q_OBJECT

public:
    /*! \a bus must outlive the session; \a mostHeard: see LiveTrace. */
    explicit TraceSession(BusConnection *bus, QObject *parent = nullptr,
                          std::size_t mostHeard = LiveTrace::usualMost);

    TraceRecorder &recorder() { return m_recorder; }
    const TraceRecorder &recorder() const { return m_recorder; }
    TraceLoading &loading() { return m_loading; }

    /*! What is shown; never null. What is heard grows. */
    const std::shared_ptr<TraceDocument> &document() const { return m_shown; }
    /*! Whether what is heard is shown, or was heard last. */
    bool isLive() const { return m_shown == m_live.document(); }
    /*! Whether there is nothing to show: no file, and nothing was ever listened to. */
    bool isEmpty() const { return isLive() && !m_hasHeard; }

    /*! What names of files end with that may be traces: ".log" and so on. */
    static QStringList endings();
    static bool mayBeTrace(const QString &fileName);
    /*! Whether the name is that of a trace, also of a compressed one, or else the file holds one. */
    static bool isTraceFile(const QString &fileName);

    /*! Loads a file in the background, and then shows it; what is shown stays until then. */
    void open(const QString &fileName);
    /*! The same with a trace that was read already out of the file \a fileName, and what its devices have answered. */
    void open(const QString &fileName, const std::shared_ptr<const Trace> &trace,
              const TraceDevices &devices);
    /*! What else is known of the devices of what is shown; the lines of a file are made anew in the background. \a sentence
     *  is told when it is done. While another file is opened it waits for what becomes of that.
     */
    void tell(const TraceDevices &devices, const QString &sentence);
    /*! The same of those that are heard; until the bus is another one. */
    void tellHeard(const TraceDevices &devices);
    void cancelOpening();
    /*! Shows what is heard again. */
    void showLive();
    /*! The language is another one: lines say their words anew. */
    void retranslate();

    /*! Records what comes from now on; what is in the way is told. */
    void record(const QString &fileName);
    /*! Saves in the background; what came of it is told. */
    void save(const QString &fileName, const FlightRecorder &minutes);
    /*! The same with the lines that are shown. */
    void saveShown(const QString &fileName, const TraceRows &rows);

signals:
    /*! Another document. */
    void documentChanged();
    /*! What is shown is in another document now, without its first \a frames; the others are the same. */
    void shortened(std::size_t frames);
    /*! More is known of what PDOs carry: lines may fit another filter. */
    void relearnt();
    /*! What is heard has grown, and is shown; at most ten times a second. */
    void grown();
    void loadingChanged();
    /*! A file is shown, or was saved. */
    void fileUsed(const QString &fileName);
    /*! A file could not be opened; failed() says why. */
    void fileRefused(const QString &fileName);
    /*! What came of something, and what did not go well with it. */
    void told(const QString &sentence, const QStringList &problems);
    void failed(const QString &sentence);

private:
    /*! What was told of the devices of a file, until its lines say so. */
    struct Telling
    {
        std::shared_ptr<TraceDocument> document; // null: nothing
        TraceDevices devices;
        QStringList sentences;
    };

    void begin(const TraceHead &head);
    void tick();
    bool refresh();
    void takeShortened(const std::shared_ptr<TraceDocument> &before);
    bool isRefused(const QString &fileName);
    void saveLater(const QString &fileName, const std::function<Trace()> &make);
    void retell();
    void forgetTold();
    void takeOpened(const std::shared_ptr<TraceDocument> &document);
    void takeRetold(const std::shared_ptr<TraceDocument> &document);
    void takeFailure(const QString &sentence);
    void show(const std::shared_ptr<TraceDocument> &document);
    void report(const TraceExport::Result &result);
    bool isForAutomatic(const QString &fileName) const;

    TraceRecorder m_recorder;
    LiveTrace m_live;
    TraceLoading m_loading;
    std::shared_ptr<TraceDocument> m_shown;
    Telling m_telling;
    bool m_isOpening = false; // a file is loaded; or else lines are made anew
    QTimer m_timer;
    int m_known = 0; // revision of what is known of PDOs by which lines are sorted
    bool m_hasHeard = false;
};
