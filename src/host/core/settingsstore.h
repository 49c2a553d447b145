// SPDX-License-Identifier: MIT
#pragma once

#include <QMutex>
#include <QObject>
#include <QThreadPool>
#include <QVariantMap>

#include <functional>

/*! The settings of this program; HostSettings names the keys. Whoever asks reads memory, and what is changed goes to the file
 *  (QSettings) in a thread of its own: such a file is brought safely to the disk, and a busy disk would hold the window for
 *  that long. All is written before the application has ended. A program without names of its own (QCoreApplication), as the
 *  command line, shares the settings of the window. May be used by all threads.
 */
class SettingsStore : public QObject
{
    Q_OBJECT

public:
    static SettingsStore &instance();

    /*! All that is kept, by the whole key ("window/state"). The first call reads the file. */
    QVariantMap values();

    /*! Invalid when there is none. */
    QVariant value(const QString &key);

    /*! An invalid value removes. */
    void setValue(const QString &key, const QVariant &value);

    /*! \a values are all that is kept from now on. Only what differs is written, so that nothing is lost of what another
     *  program writes meanwhile.
     */
    void setValues(const QVariantMap &values);

    /*! Changes them where \a change says so. It is called at once, while nobody else changes them, and must not use the store. */
    void update(const std::function<void(QVariantMap *)> &change);

    /*! Takes in what another program has written, soon. */
    void refresh();

    /*! Tests whether the file can be written, and says it (refused()) when it cannot. */
    void checkFile();

    /*! Waits until all that was asked for is done. */
    void finish();

signals:
    /*! The file can keep nothing: once, until something could be written again, and for each checkFile(). From another thread. */
    void refused(const QString &fileName);

private:
    class Writing;

    /*! What is to be done at the file; an invalid value is a key that is to go. */
    struct Work
    {
        QVariantMap changes;
        bool isCheck = false;
        bool isWanted = false; // also when nothing has changed
    };

    /*! How it went. */
    struct Outcome
    {
        QVariantMap values; // that are in the file now
        QString fileName;
        bool isRefused = false;
    };

    SettingsStore() { m_pool.setMaxThreadCount(1); }
    void load();
    void change(const QString &key, const QVariant &value);
    void changeTo(const QVariantMap &values);
    void start(bool isCheck);
    void doWork();
    static Outcome keep(const QString &organization, const QString &application, const Work &work);

    QMutex m_mutex; // for all of the following
    QVariantMap m_values;
    Work m_waiting;
    QVariantMap m_unkept; // changes that the file did not take; tried again with the next ones
    QString m_organization;
    QString m_application;
    bool m_isLoaded = false;
    bool m_isWorking = false;
    bool m_isRefused = false;
    QThreadPool m_pool; // last, so that it ends before what its thread uses
};
