// SPDX-License-Identifier: MIT
#include "settingsstore.h"

#include "hostsettings.h"

#include <QCoreApplication>
#include <QMutexLocker>
#include <QRunnable>
#include <QSettings>

#include <utility>

namespace {

void finishAtTheEnd()
{
    SettingsStore::instance().finish();
}

QVariantMap allOf(const QSettings &settings)
{
    QVariantMap values;
    const QStringList keys = settings.allKeys();
    for (const QString &key : keys)
        values.insert(key, settings.value(key));
    return values;
}

void apply(const QVariantMap &changes, QVariantMap *values)
{
    for (auto change = changes.cbegin(); change != changes.cend(); ++change) {
        if (change->isValid())
            values->insert(change.key(), *change);
        else
            values->remove(change.key());
    }
}

void merge(const QVariantMap &news, QVariantMap *changes)
{
    for (auto change = news.cbegin(); change != news.cend(); ++change)
        changes->insert(change.key(), *change);
}

} // namespace

class SettingsStore::Writing : public QRunnable
{
public:
    explicit Writing(SettingsStore *store)
        : m_store(store)
    {
    }
    void run() override { m_store->doWork(); }

private:
    SettingsStore *m_store;
};

SettingsStore &SettingsStore::instance()
{
    static SettingsStore store;
    return store;
}

QVariantMap SettingsStore::values()
{
    const QMutexLocker locker(&m_mutex);
    load();
    return m_values;
}

QVariant SettingsStore::value(const QString &key)
{
    return values().value(key);
}

void SettingsStore::setValue(const QString &key, const QVariant &value)
{
    const QMutexLocker locker(&m_mutex);
    load();
    change(key, value);
    start(false);
}

void SettingsStore::setValues(const QVariantMap &values)
{
    const QMutexLocker locker(&m_mutex);
    load();
    changeTo(values);
    start(false);
}

void SettingsStore::update(const std::function<void(QVariantMap *)> &change)
{
    const QMutexLocker locker(&m_mutex);
    load();
    QVariantMap values = m_values;
    change(&values);
    changeTo(values);
    start(false);
}

void SettingsStore::refresh()
{
    const QMutexLocker locker(&m_mutex);
    load();
    m_waiting.isWanted = true;
    start(false);
}

void SettingsStore::checkFile()
{
    const QMutexLocker locker(&m_mutex);
    load();
    start(true);
}

void SettingsStore::finish()
{
    m_pool.waitForDone();
}

/*! The first time. The names are those of the application that asks now. */
void SettingsStore::load()
{
    if (m_isLoaded)
        return;
    m_isLoaded = true;
    m_organization = QCoreApplication::organizationName();
    m_application = QCoreApplication::applicationName();
    if (m_organization.isEmpty()) {
        m_organization = QLatin1String(HostSettings::organization);
        m_application = QLatin1String(HostSettings::application);
    }
    m_values = allOf(QSettings(m_organization, m_application));
    qAddPostRoutine(finishAtTheEnd);
}

void SettingsStore::change(const QString &key, const QVariant &value)
{
    if (m_values.value(key) == value)
        return;
    m_waiting.changes.insert(key, value);
    apply({{key, value}}, &m_values);
}

void SettingsStore::changeTo(const QVariantMap &values)
{
    const QStringList known = m_values.keys();
    for (const QString &key : known)
        change(key, values.value(key));
    for (auto value = values.cbegin(); value != values.cend(); ++value)
        change(value.key(), *value);
}

void SettingsStore::start(bool isCheck)
{
    m_waiting.isCheck = m_waiting.isCheck || isCheck;
    const bool isSomething = m_waiting.isCheck || m_waiting.isWanted || !m_waiting.changes.isEmpty();
    if (m_isWorking || !isSomething)
        return;
    m_isWorking = true;
    m_pool.start(new Writing(this));
}

/*! In the other thread, until nothing is left. */
void SettingsStore::doWork()
{
    QMutexLocker locker(&m_mutex);
    while (m_waiting.isCheck || m_waiting.isWanted || !m_waiting.changes.isEmpty()) {
        Work work = std::exchange(m_waiting, Work());
        const QVariantMap news = std::exchange(work.changes, m_unkept);
        merge(news, &work.changes);
        locker.unlock();
        const Outcome outcome = keep(m_organization, m_application, work);
        locker.relock();
        m_unkept = outcome.isRefused ? work.changes : QVariantMap();
        if (!outcome.isRefused)
            m_values.clear();
        // What a file does not tell that is out of reach is not gone.
        apply(outcome.values, &m_values);
        apply(m_unkept, &m_values);
        apply(m_waiting.changes, &m_values);
        const bool isNews = outcome.isRefused && (work.isCheck || !m_isRefused);
        m_isRefused = outcome.isRefused;
        if (isNews) {
            locker.unlock();
            emit refused(outcome.fileName);
            locker.relock();
        }
    }
    m_isWorking = false;
}

SettingsStore::Outcome SettingsStore::keep(const QString &organization, const QString &application,
                                           const Work &work)
{
    QSettings settings(organization, application);
    for (auto change = work.changes.cbegin(); change != work.changes.cend(); ++change) {
        if (change->isValid())
            settings.setValue(change.key(), *change);
        else
            settings.remove(change.key());
    }
    settings.sync();
    const bool isRefused = settings.status() == QSettings::AccessError
                           || ((work.isCheck || !work.changes.isEmpty()) && !settings.isWritable());
    return {allOf(settings), settings.fileName(), isRefused};
}
