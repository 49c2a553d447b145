// SPDX-License-Identifier: MIT
#include "eventscommand.h"

#include <cli/core/commandarguments.h>
#include <cli/core/console.h>
#include <cli/core/language.h>
#include <cli/core/listening.h>
#include <cli/core/optionnames.h>
#include <cli/core/signs.h>
#include <cli/core/terminal.h>
#include <live/events/eventwords.h>
#include <live/events/eventwriting.h>

#include <QJsonArray>
#include <QJsonDocument>

namespace {

struct EventsCommandTr
{
    Q_DECLARE_TR_FUNCTIONS(EventsCommand)
};

/*! Prints events as they come. */
class EventPrinter
{
public:
    explicit EventPrinter(LiveBus *live)
        : m_live(live)
    {
    }

    /*! Those that are new, a line each. */
    void printNew()
    {
        for (const LiveEvent &event : m_live->events().list().events()) {
            if (event.number <= m_printed)
                continue;
            m_printed = event.number;
            const QString time = m_live->timeOfDay(event.time).toString(QStringLiteral("HH:mm:ss.zzz"));
            Console::printPlain(time + QLatin1Char(' ') + m_signs.of(event.severity())
                                + Terminal::visible(EventWords::line(event)));
        }
    }

private:
    LiveBus *m_live;
    Signs m_signs{Signs::detectStyle()};
    quint64 m_printed = 0;
};

EventWriting::TimeOfDay timesOf(const LiveBus &live)
{
    return [&live](qint64 time) { return live.timeOfDay(time); };
}

QByteArray jsonOf(const LiveBus &live)
{
    QJsonArray events;
    for (const LiveEvent &event : live.events().list().events())
        events.append(EventWriting::toJson(event, timesOf(live)));
    const QJsonObject json{{QStringLiteral("events"), events},
                           {QStringLiteral("forgotten"), double(live.events().list().forgotten())}};
    return QJsonDocument(json).toJson();
}

QByteArray csvOf(const LiveBus &live)
{
    QByteArray csv = EventWriting::csvHead();
    for (const LiveEvent &event : live.events().list().events())
        csv += EventWriting::toCsv(event, timesOf(live));
    return csv;
}

ExitStatus listenForEvents(const CommandArguments &options, Listening *listening)
{
    if (const std::optional<ExitStatus> status = listening->begin())
        return *status;
    LiveBus &live = listening->live();
    const bool isDocument = options.isSet(jsonOption) || options.isSet(csvOption);
    EventPrinter printer(&live);
    if (!isDocument)
        QObject::connect(&live, &LiveBus::ticked, &live, [&printer] { printer.printNew(); });
    const ExitStatus status = listening->wait();
    if (options.isSet(jsonOption))
        Console::printJson(jsonOf(live));
    else if (options.isSet(csvOption))
        Console::write(csvOf(live));
    else
        printer.printNew();
    return status;
}

} // namespace

ExitStatus runEventsCommand(const QStringList &arguments)
{
    CommandArguments options(QStringLiteral("events"),
                             EventsCommandTr::tr("Lists what happens on a bus. Sends nothing."));
    Listening listening(std::nullopt);
    listening.addOptions(options);
    options.addOption({jsonOption, EventsCommandTr::tr("Print JSON at the end, for programs.")});
    options.addOption({csvOption, EventsCommandTr::tr("Print a table (CSV) at the end.")});
    Language::addOption(options);
    if (const std::optional<ExitStatus> status = options.parse(arguments))
        return *status;
    if (const std::optional<ExitStatus> status = listening.parse(options))
        return *status;
    if (const std::optional<ExitStatus> status = Language::loadWithHost(options))
        return *status;
    return listenForEvents(options, &listening);
}
