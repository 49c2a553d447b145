// SPDX-License-Identifier: MIT
#pragma once

#include "messagelog.h"

#include <bundle/supportbundle.h>

#include <QObject>
#include <QString>

#include <functional>
#include <memory>
#include <optional>

class BusConnection;
class CheckupSession;
class LiveSession;
class TraceSession;
class QWidget;

/*! Makes support bundles of what the window knows, and opens others. Dialogs are shown, not run; the work is done in the
 *  background.
 */
class BundleFiles : public QObject
{
    Q_OBJECT

public:
    /*! Where what is in a bundle comes from; all must outlive this. */
    struct Sources
    {
        const BusConnection *bus;
        CheckupSession *checkup;
        LiveSession *live;
        TraceSession *trace;
        const MessageLog *log;
    };

    /*! \a window is the parent of dialogs. */
    BundleFiles(const Sources &sources, QWidget *window);

    /*! Whether the name is that of a bundle, or the file begins like one. */
    static bool isBundle(const QString &fileName);

    /*! The vehicle of a bundle, a snapshot or an exchange file; empty with a sentence. */
    static std::optional<Snapshot> loadSnapshot(const QString &fileName, QString *errorMessage);

    /*! Asks how and where, and saves. */
    void save();
    void write(const QString &fileName, bool isMasked);

    /*! Reads a file, and then says opened() or failed(), unless \a isWanted has become false meanwhile. */
    void open(const QString &fileName, const std::function<bool()> &isWanted);

    static MessageLog::Severity severityOf(Severity severity);

    /*! The bundle of which events and frames are shown; null: those of the bus are. */
    void setShownBundle(const std::shared_ptr<const SupportBundle> &bundle) { m_shown = bundle; }

signals:
    void opened(const std::shared_ptr<const SupportBundle> &bundle, const QString &fileName);
    /*! What has been done, a sentence. */
    void succeeded(const QString &sentence);
    /*! What could not be done and why, for a box. */
    void failed(const QString &sentence);

private:
    void chooseName(bool isMasked);
    SupportBundle collect() const;
    std::function<std::optional<Trace>()> frames() const;
    std::vector<LiveEvent> heardEvents() const;
    QVector<BundleMessage> messages() const;

    Sources m_from;
    QWidget *m_window;
    std::shared_ptr<const SupportBundle> m_shown;
};
