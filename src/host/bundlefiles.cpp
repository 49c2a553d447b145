// SPDX-License-Identifier: MIT
#include "bundlefiles.h"

#include "bundledialog.h"
#include "filefolder.h"

#include <bundle/bundlefile.h>
#include <bundle/bundlemasking.h>
#include <bundle/systemfacts.h>
#include <system/background.h>
#include <host/pages/checkupsession.h>
#include <host/pages/checkupwords.h>
#include <host/pages/live/livesession.h>
#include <host/pages/trace/tracesession.h>
#include <snapshot/savedvehicle.h>
#include <system/amounts.h>

#include <QCoreApplication>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>

namespace {

Severity told(MessageLog::Severity severity)
{
    switch (severity) {
    case MessageLog::Severity::Information:
        return Severity::Note;
    case MessageLog::Severity::Warning:
        return Severity::Warning;
    case MessageLog::Severity::Error:
        break;
    }
    return Severity::Fault;
}

QDateTime zonedNow()
{
    const QDateTime now = QDateTime::currentDateTime();
    return now.toOffsetFromUtc(now.offsetFromUtc());
}

} // namespace

MessageLog::Severity BundleFiles::severityOf(Severity severity)
{
    switch (severity) {
    case Severity::Note:
        return MessageLog::Severity::Information;
    case Severity::Warning:
        return MessageLog::Severity::Warning;
    case Severity::Fault:
        break;
    }
    return MessageLog::Severity::Error;
}

BundleFiles::BundleFiles(const Sources &sources, QWidget *window)
    : QObject(window)
    , m_from(sources)
    , m_window(window)
{
}

bool BundleFiles::isBundle(const QString &fileName)
{
    return BundleFile::isBundleName(fileName) || BundleFile::isBundle(fileName);
}

std::optional<Snapshot> BundleFiles::loadSnapshot(const QString &fileName, QString *errorMessage)
{
    if (!BundleFile::isBundle(fileName))
        return SavedVehicle::load(fileName, errorMessage);
    const std::optional<SupportBundle> bundle = BundleFile::load(fileName, errorMessage);
    if (bundle && !bundle->snapshot)
        *errorMessage = tr("The support bundle %1 has no snapshot that can be used.")
                            .arg(QDir::toNativeSeparators(fileName));
    return bundle ? bundle->snapshot : std::nullopt;
}

void BundleFiles::save()
{
    auto *dialog = new BundleDialog(m_window);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QDialog::accepted, this, [this, dialog] { chooseName(dialog->isMasked()); });
    dialog->open();
}

void BundleFiles::chooseName(bool isMasked)
{
    auto *dialog = new QFileDialog(m_window, tr("Save support bundle"), FileFolder::start(),
                                   tr("Support bundle (*.zip)"));
    dialog->setObjectName(QStringLiteral("saveBundleDialog"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setDefaultSuffix(QStringLiteral("zip"));
    // The name of a vehicle may be in its other files' names, and is none for a masked one.
    dialog->selectFile(isMasked || m_from.checkup->isEmpty()
                           ? tr("support bundle") + QStringLiteral(".zip")
                           : QFileInfo(CheckupWords::fileName(m_from.checkup->record())).completeBaseName()
                                 + QStringLiteral(".zip"));
    connect(dialog, &QFileDialog::fileSelected, this,
            [this, isMasked](const QString &fileName) { write(fileName, isMasked); });
    dialog->open();
}

void BundleFiles::write(const QString &fileName, bool isMasked)
{
    const auto work
        = [fileName, isMasked, frames = frames(), bundle = std::make_shared<SupportBundle>(collect()),
           rules = m_from.checkup->rules(), language = m_from.checkup->language()] {
              bundle->trace = frames();
              QString problem;
              BundleFile::save(fileName, isMasked ? BundleMasking::masked(*bundle) : *bundle, rules, language,
                               &problem);
              return problem;
          };
    Background::run(this, work, [this, fileName](const QString &problem) {
        if (!problem.isEmpty()) {
            emit failed(problem);
            return;
        }
        FileFolder::remember(fileName);
        emit succeeded(tr("Saved: %1").arg(QDir::toNativeSeparators(fileName)));
    });
}

/*! How to get at the frames, in another thread: as the events of the bundle that is shown, or of the bus; where there is
 *  neither, of the file that the page "Trace" shows.
 */
std::function<std::optional<Trace>()> BundleFiles::frames() const
{
    if (m_shown != nullptr)
        return [shown = m_shown] { return shown->trace; };
    if (m_from.trace->recorder().kept() > 0)
        return [minutes = m_from.trace->recorder().lastMinutes()] { return minutes.all(); };
    if (!m_from.trace->isLive())
        return [document = m_from.trace->document()] { return document->trace; };
    return [] { return std::nullopt; };
}

SupportBundle BundleFiles::collect() const
{
    SupportBundle bundle;
    bundle.program
        = QCoreApplication::applicationName() + QLatin1Char(' ') + QCoreApplication::applicationVersion();
    bundle.time = zonedNow();
    SystemFacts::Adapter adapter{m_from.bus->settings().address.toString(), QString(), m_from.bus->bitRate()};
    if (!m_from.checkup->isEmpty()) {
        bundle.snapshot = m_from.checkup->record().snapshot;
        adapter.description = bundle.snapshot->adapter;
        if (m_from.live->isEmpty())
            adapter = {bundle.snapshot->bus, bundle.snapshot->adapter, bundle.snapshot->bitRate};
    }
    bundle.events = m_shown != nullptr ? m_shown->events : heardEvents();
    bundle.forgottenEvents
        = m_shown != nullptr ? m_shown->forgottenEvents : m_from.live->live().events().list().forgotten();
    bundle.messages = messages();
    bundle.system = SystemFacts::of(bundle.program, adapter);
    return bundle;
}

std::vector<LiveEvent> BundleFiles::heardEvents() const
{
    const LiveBus &live = m_from.live->live();
    const auto timeOf = [&live](qint64 time) {
        return live.timeOfDay(time).toMSecsSinceEpoch() * Microseconds::ofMillisecond;
    };
    std::vector<LiveEvent> events;
    for (LiveEvent event : live.events().list().events()) {
        event.time = timeOf(event.time);
        event.lastTime = timeOf(event.lastTime);
        events.push_back(event);
    }
    return events;
}

QVector<BundleMessage> BundleFiles::messages() const
{
    QVector<BundleMessage> messages;
    for (int row = 0; row < m_from.log->rowCount(); ++row) {
        const QDateTime time = m_from.log->time(row);
        messages.append({time.toOffsetFromUtc(time.offsetFromUtc()), told(m_from.log->severity(row)),
                         m_from.log->text(row)});
    }
    return messages;
}

void BundleFiles::open(const QString &fileName, const std::function<bool()> &isWanted)
{
    struct Loaded
    {
        std::shared_ptr<SupportBundle> bundle; // large: not to be copied
        QString problem;
    };
    const auto load = [fileName] {
        Loaded loaded;
        if (std::optional<SupportBundle> bundle = BundleFile::load(fileName, &loaded.problem))
            loaded.bundle = std::make_shared<SupportBundle>(std::move(*bundle));
        return loaded;
    };
    Background::run(this, load, [this, fileName, isWanted](const Loaded &loaded) {
        if (!isWanted())
            return;
        if (loaded.bundle)
            emit opened(loaded.bundle, fileName);
        else
            emit failed(loaded.problem);
    });
}
