// SPDX-License-Identifier: MIT
#pragma once

#include "tracedocument.h"

#include <QObject>

#include <atomic>
#include <functional>
#include <memory>

/*! Loads a trace file in the background. */
class TraceLoading : public QObject
{
    Q_OBJECT

public:
    explicit TraceLoading(QObject *parent = nullptr);
    ~TraceLoading() override;

    /*! Ends what is under way, and begins with another file. */
    void start(const QString &fileName);
    /*! The same with a trace that was read already, and what is known of its devices; it is called \a fileName. */
    void start(const QString &fileName, const std::shared_ptr<const Trace> &trace,
               const TraceDevices &devices);
    /*! The same with the frames and devices of \a document, which changes no more, and \a devices besides. */
    void start(const std::shared_ptr<const TraceDocument> &document, const TraceDevices &devices);
    /*! Nothing more is told of what is under way. */
    void cancel();

    bool isRunning() const { return m_state != nullptr; }
    QString fileName() const { return m_fileName; }
    /*! Frames so far. */
    std::size_t frames() const;
    /*! About how much of the file was read; -1 when nobody knows. */
    int percent() const;

signals:
    /*! From the event loop; not after cancel(). */
    void loaded(const std::shared_ptr<TraceDocument> &document);
    /*! A sentence. */
    void failed(const QString &sentence);

private:
    /*! What the thread of the work and that of the window have together. */
    struct State
    {
        std::atomic<bool> isCancelled{false};
        std::atomic<std::size_t> frames{0};
        std::atomic<std::size_t> expected{0}; // about; 0: nobody knows
    };
    struct Result
    {
        std::shared_ptr<TraceDocument> document; // null: problem says why
        QString problem;
    };

    void begin(const QString &fileName, const std::function<Result(State *)> &load);
    static Result load(const QString &fileName, State *state);
    static Result makeDocument(const QString &fileName, const Trace &trace, const TraceDevices &devices,
                               State *state);
    static void makeLines(TraceDocument *document, State *state);

    std::shared_ptr<State> m_state; // null: nothing is under way
    QString m_fileName;
};
