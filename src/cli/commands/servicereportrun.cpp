// SPDX-License-Identifier: MIT
#include "servicereportrun.h"

#include <cli/core/archiveaccess.h>
#include <cli/core/childtask.h>
#include <cli/core/commandarguments.h>
#include <cli/core/console.h>
#include <cli/core/interruptibleloop.h>
#include <cli/core/language.h>
#include <cli/core/optionnames.h>
#include <cli/core/reportfiles.h>
#include <cli/core/ruleoptions.h>
#include <cli/core/snapshotsource.h>

#include <checkup/checkup.h>
#include <checkup/snapshotcomparison.h>
#include <host/core/settingsstore.h>
#include <servicereport/healthtrends.h>
#include <servicereport/htmlreport.h>
#include <servicereport/pdfreport.h>
#include <servicereport/reportlanguage.h>
#include <servicereport/reportmaker.h>
#include <servicereport/servicereportfiles.h>
#include <servicereport/workshopsettings.h>
#include <snapshot/deviceidentity.h>

#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>

#include <utility>

namespace {

struct ServiceReportRunTr
{
    Q_DECLARE_TR_FUNCTIONS(ServiceReportRun)
};

constexpr QLatin1String serviceOption("service");
constexpr QLatin1String workshopOption("workshop");
constexpr QLatin1String logoOption("logo");

class Run
{
public:
    Run(const CommandArguments &options, QString folder)
        : m_options(options)
        , m_folder(std::move(folder))
        , m_language(Language::name(options))
    {
    }

    ExitStatus run(const QString &fileName)
    {
        if (const std::optional<ExitStatus> status = load(fileName))
            return *status;
        QString error;
        if (!prepareReportFolder(m_folder, &error)) {
            Console::printError(error);
            return Exit::fileFailed;
        }
        InterruptibleLoop loop;
        const QStringList before = emptyFiles();
        const std::optional<int> status = runAsChild([this] { return write().number; }, &loop);
        if (status)
            return {*status};
        removeHalfFiles(before);
        Console::printError(loop.isInterrupted()
                                ? ServiceReportRunTr::tr("Interrupted; the report was not written.")
                                : ServiceReportRunTr::tr("The report was not written: its process failed."));
        return loop.isInterrupted() ? loop.status() : Exit::fileFailed;
    }

private:
    std::optional<ExitStatus> load(const QString &fileName)
    {
        if (const std::optional<ExitStatus> status = loadSnapshot(fileName, &m_data.snapshot))
            return status;
        if (m_options.isSet(againstOption)) {
            m_older.emplace();
            if (const std::optional<ExitStatus> status
                = loadSnapshot(m_options.value(againstOption), &*m_older))
                return status;
        }
        if (const std::optional<ExitStatus> status = RuleOptions::load(m_options, &m_rules))
            return status;
        loadTrends();
        if (m_options.isSet(archiveOption)) {
            if (const std::optional<ExitStatus> status = loadArchivedTrends())
                return status;
        }
        return loadWorkshop();
    }

    std::optional<ExitStatus> loadWorkshop()
    {
        WorkshopSettings workshop = WorkshopSettings::load(SettingsStore::instance().values());
        if (m_options.isSet(workshopOption)) {
            workshop.lines = m_options.values(workshopOption);
            workshop.name = workshop.lines.takeFirst();
        }
        if (m_options.isSet(logoOption))
            workshop.logoFile = m_options.value(logoOption);
        QString error;
        m_data.workshop = workshop.toWorkshop(&error);
        if (error.isEmpty())
            return std::nullopt;
        Console::printError(error);
        // A logo that was chosen long ago is no reason for not having a report.
        return m_options.isSet(logoOption) ? std::optional<ExitStatus>(Exit::fileFailed) : std::nullopt;
    }

    void loadTrends()
    {
        m_data.trends = HealthTrends::of(m_data.snapshot);
        if (m_older)
            HealthTrends::add(&m_data.trends, *m_older, m_data.snapshot);
    }

    std::optional<ExitStatus> loadArchivedTrends()
    {
        ArchiveAccess access;
        if (const std::optional<ExitStatus> status = access.open(m_options, Archive::Missing::Refuse))
            return status;
        QStringList problems;
        for (HealthTrend &trend : m_data.trends) {
            const SnapshotNode *node = m_data.snapshot.find(trend.nodeId);
            const QString key = node != nullptr ? DeviceIdentity::of(*node).toKey() : QString();
            QString error;
            const std::optional<ValueTrend> archived
                = key.isEmpty() ? ValueTrend()
                                : access.archive().deviceTrend(key, HealthTrends::object(trend), &error);
            if (!archived) {
                Console::printError(error);
                return Exit::fileFailed;
            }
            problems += archived->problems;
            trend.damagedVisits = archived->problems.size();
            for (const TrendPoint &point : archived->points)
                HealthTrends::addVisit(&trend, point.time, point.value, m_data.snapshot.time);
        }
        problems.removeDuplicates(); // of each pack
        for (const QString &problem : qAsConst(problems))
            Console::printError(problem);
        return std::nullopt;
    }

    ExitStatus write()
    {
        const ReportLanguage language(m_language);
        m_data.locale = language.locale();
        m_data.program = QStringLiteral("%1 %2").arg(QCoreApplication::applicationName(),
                                                     QCoreApplication::applicationVersion());
        m_data.checkup = Checkup::judge(m_data.snapshot, m_rules, m_language, m_older ? &*m_older : nullptr);
        if (m_older)
            m_data.comparison = compare();
        const ServiceReport report = makeServiceReport(m_data);
        ServiceReportFiles::Paths paths;
        QString error;
        if (!ServiceReportFiles::write(m_folder, ServiceReportFiles::baseName(m_data.snapshot),
                                       toHtml(report), toPdf(report, usualPaper(QLocale::system())), &paths,
                                       &error)) {
            Console::printError(error);
            return Exit::fileFailed;
        }
        print(paths);
        return Console::isComplete() ? Exit::success : Exit::fileFailed;
    }

    ReportComparison compare() const
    {
        const CheckupResult wasFound = Checkup::judge(*m_older, m_rules, m_language);
        return {m_older->time,
                SnapshotComparison::compare({&*m_older, &wasFound}, {&m_data.snapshot, &m_data.checkup},
                                            m_rules.kinds())};
    }

    void print(const ServiceReportFiles::Paths &paths) const
    {
        if (m_options.isSet(jsonOption)) {
            const QJsonObject object{{QStringLiteral("html"), paths.html},
                                     {QStringLiteral("pdf"), paths.pdf}};
            Console::printJson(QJsonDocument(object).toJson());
            return;
        }
        for (const QString &path : {paths.pdf, paths.html})
            Console::print(ServiceReportRunTr::tr("Wrote %1").arg(QDir::toNativeSeparators(path)));
    }

    /*! Files of the report's name that hold nothing: those that were being written. */
    QStringList emptyFiles() const
    {
        QStringList names;
        const QDir folder(m_folder);
        const QFileInfoList files = folder.entryInfoList(
            {ServiceReportFiles::baseName(m_data.snapshot) + QLatin1Char('*')}, QDir::Files | QDir::Hidden);
        for (const QFileInfo &file : files) {
            if (file.size() == 0)
                names.append(file.fileName());
        }
        return names;
    }

    void removeHalfFiles(const QStringList &before) const
    {
        const QStringList now = emptyFiles();
        for (const QString &name : now) {
            if (!before.contains(name))
                QFile::remove(QDir(m_folder).filePath(name));
        }
    }

    const CommandArguments &m_options;
    QString m_folder;
    QString m_language;
    ServiceReportData m_data;
    std::optional<Snapshot> m_older;
    RuleSet m_rules;
};

} // namespace

void ServiceReportRun::addOptions(CommandArguments &options)
{
    options.addOption(
        {serviceOption,
         ServiceReportRunTr::tr("Write the service report: check-up, changes, components and values "
                                "for the customer, as service_VEHICLE_DATE_TIME.pdf and .html.")});
    options.addOption(
        {againstOption,
         ServiceReportRunTr::tr("Say what has changed since this earlier file (.dxsnap or .dxxml)."),
         QStringLiteral("OLDER")});
    options.addOption(
        {workshopOption,
         ServiceReportRunTr::tr("The workshop's name; once more for each line of its address. Usually "
                                "as set in the window."),
         QStringLiteral("TEXT")});
    options.addOption({logoOption, ServiceReportRunTr::tr("The workshop's logo, a PNG or JPEG file."),
                       QStringLiteral("IMAGE")});
    options.addOption(
        {archiveOption,
         ServiceReportRunTr::tr("Show how the state of health went over the visits in this archive: a "
                                "file, or postgresql://user@host/database."),
         QStringLiteral("ARCHIVE")});
    RuleOptions::add(options);
    options.addOption(
        {jsonOption, ServiceReportRunTr::tr("Print the names of the files of a service report as JSON.")});
}

bool ServiceReportRun::isWanted(const CommandArguments &options)
{
    return options.isSet(serviceOption);
}

QString ServiceReportRun::strayOption(const CommandArguments &options)
{
    for (const QLatin1String option :
         {againstOption, workshopOption, logoOption, archiveOption, rulesOption, jsonOption}) {
        if (options.isSet(option))
            return option;
    }
    return QString();
}

ExitStatus ServiceReportRun::run(const CommandArguments &options, const QString &fileName,
                                 const QString &folder)
{
    return Run(options, folder).run(fileName);
}
