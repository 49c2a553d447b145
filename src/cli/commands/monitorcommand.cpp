// SPDX-License-Identifier: MIT
#include "monitorcommand.h"

#include "healthrules.h"
#include "monitorlisting.h"

#include <cli/core/commandarguments.h>
#include <cli/core/console.h>
#include <cli/core/language.h>
#include <cli/core/listening.h>
#include <cli/core/optionnames.h>
#include <cli/core/terminalscreen.h>
#include <live/events/eventwords.h>
#include <live/events/eventwriting.h>
#include <live/health/healthjson.h>

#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTimer>

#include <algorithm>

namespace {

struct MonitorCommandTr
{
    Q_DECLARE_TR_FUNCTIONS(MonitorCommand)
};

constexpr std::chrono::milliseconds usualTablePeriod{1000};
constexpr std::chrono::milliseconds usualBlockPeriod{10000};

class MonitorCommand
{
public:
    ExitStatus run(const QStringList &arguments);

private:
    void addOptions();
    std::optional<ExitStatus> parse(const QStringList &arguments);
    std::optional<ExitStatus> parsePeriod();
    ExitStatus monitor();
    void show();
    void printJson();
    MonitorView view(std::size_t most);
    std::size_t newEvents();

    CommandArguments m_options{
        QStringLiteral("monitor"),
        MonitorCommandTr::tr(
            "Shows how well a bus is and what happens on it, again and again. Sends nothing.")};
    Listening m_listening{std::nullopt};
    std::chrono::milliseconds m_period{0};
    RuleSet m_rules;
    QString m_language;
    std::optional<TerminalScreen> m_screen;
    QElapsedTimer m_sinceShown;
    quint64 m_printed = 0; // number of the last event that was printed
};

void MonitorCommand::addOptions()
{
    m_listening.addOptions(m_options);
    m_options.addOption(
        {everyOption,
         MonitorCommandTr::tr(
             "How often: 100ms and more; usually 1s, and 10s where the output is no terminal."),
         QStringLiteral("TIME")});
    m_options.addOption({jsonOption, MonitorCommandTr::tr("Print a line of JSON each time, for programs.")});
    Language::addOption(m_options);
}

std::optional<ExitStatus> MonitorCommand::parse(const QStringList &arguments)
{
    addOptions();
    if (const std::optional<ExitStatus> status = m_options.parse(arguments))
        return status;
    if (const std::optional<ExitStatus> status = m_listening.parse(m_options))
        return status;
    if (const std::optional<ExitStatus> status = parsePeriod())
        return status;
    return Language::loadWithHost(m_options);
}

std::optional<ExitStatus> MonitorCommand::parsePeriod()
{
    const bool isBlock = !m_options.isSet(jsonOption) && !TerminalScreen::isPossible();
    m_period = isBlock ? usualBlockPeriod : usualTablePeriod;
    return Listening::parsePeriod(m_options, everyOption, &m_period);
}

ExitStatus MonitorCommand::run(const QStringList &arguments)
{
    if (const std::optional<ExitStatus> status = parse(arguments))
        return *status;
    m_rules = HealthRules::load();
    m_language = Language::name(m_options);
    if (const std::optional<ExitStatus> status = m_listening.begin())
        return *status;
    return monitor();
}

ExitStatus MonitorCommand::monitor()
{
    const bool isJson = m_options.isSet(jsonOption);
    if (!isJson && TerminalScreen::isPossible()) {
        m_screen.emplace();
        show();
    }
    QTimer timer;
    timer.setTimerType(Qt::PreciseTimer);
    QObject::connect(&timer, &QTimer::timeout, &timer, [this, isJson] { isJson ? printJson() : show(); });
    timer.start(m_period);
    const bool isScreen = m_screen.has_value();
    const ExitStatus status = m_listening.wait([this] { m_screen.reset(); });
    timer.stop();
    const bool isNew = !m_sinceShown.isValid() || m_sinceShown.elapsed() > m_period.count() / 2;
    if (!isScreen && isNew)
        isJson ? printJson() : show();
    return status;
}

void MonitorCommand::show()
{
    m_sinceShown.start();
    const Signs::Style style = Signs::detectStyle();
    if (m_screen) {
        const Terminal::Size size = Terminal::size();
        m_screen->show(MonitorListing::screen(view(static_cast<std::size_t>(size.lines)), size, style));
        return;
    }
    const QStringList lines = MonitorListing::block(view(newEvents()), style);
    Console::printPlain(lines.join(QLatin1Char('\n')) + QLatin1Char('\n'));
}

/*! How many events have come since the last time. */
std::size_t MonitorCommand::newEvents()
{
    const std::deque<LiveEvent> &events = m_listening.live().events().list().events();
    return static_cast<std::size_t>(std::count_if(
        events.begin(), events.end(), [this](const LiveEvent &event) { return event.number > m_printed; }));
}

/*! With the last \a most events; they count as printed. */
MonitorView MonitorCommand::view(std::size_t most)
{
    LiveBus &live = m_listening.live();
    MonitorView view;
    view.bus = m_options.bus().address.toString();
    if (m_listening.bus().state() != BusConnection::State::Connected)
        view.trouble = m_listening.bus().lossReason();
    view.time = live.timeOfDay(live.now());
    view.numbers = live.healthNumbers();
    view.lights = HealthJudgement::judge(view.numbers, m_rules, m_language);
    const std::deque<LiveEvent> &events = live.events().list().events();
    for (std::size_t i = events.size() - std::min(most, events.size()); i < events.size(); ++i) {
        const LiveEvent &event = events[i];
        const QString time = live.timeOfDay(event.time).toString(QStringLiteral("HH:mm:ss "));
        view.events.append({event.severity(), time + EventWords::line(event)});
        m_printed = event.number;
    }
    return view;
}

void MonitorCommand::printJson()
{
    m_sinceShown.start();
    LiveBus &live = m_listening.live();
    const HealthNumbers numbers = live.healthNumbers();
    QJsonObject json = HealthJson::of(numbers, HealthJudgement::judge(numbers, m_rules, m_language));
    json.insert(QStringLiteral("time"), live.timeOfDay(live.now()).toString(Qt::ISODateWithMs));
    json.insert(QStringLiteral("connected"), m_listening.bus().state() == BusConnection::State::Connected);
    QJsonArray events;
    for (const LiveEvent &event : live.events().list().events()) {
        if (event.number <= m_printed)
            continue;
        m_printed = event.number;
        events.append(EventWriting::toJson(event, [&live](qint64 time) { return live.timeOfDay(time); }));
    }
    json.insert(QStringLiteral("events"), events);
    Console::printJson(QJsonDocument(json).toJson(QJsonDocument::Compact) + '\n');
}

} // namespace

ExitStatus runMonitorCommand(const QStringList &arguments)
{
    MonitorCommand command;
    return command.run(arguments);
}
