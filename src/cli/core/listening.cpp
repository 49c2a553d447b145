// SPDX-License-Identifier: MIT
#include "listening.h"

#include "console.h"
#include "duration.h"
#include "optionnames.h"
#include "terminal.h"

#include <host/core/valueasking.h>

#include <QTimer>

void Listening::addOptions(CommandArguments &options) const
{
    options.addBusOptions();
    const QString text
        = m_time ? tr("How long to listen: 500ms, 10s, 2min; usually %1s.").arg(m_time->count() / 1000)
                 : tr("How long to listen: 500ms, 10s, 2min; usually until Ctrl+C.");
    options.addOption({forOption, text, QStringLiteral("TIME")});
    DataSheets::addOption(
        options, tr("What the device on node N has is in this EDS or DCF: its PDOs and the period of its "
                    "heartbeat count. May be given for several nodes."));
}

std::optional<ExitStatus> Listening::parse(const CommandArguments &options)
{
    m_settings = options.bus();
    if (const std::optional<ExitStatus> status = m_sheets.parse(options))
        return status;
    if (!options.isSet(forOption))
        return std::nullopt;
    m_time = parseDuration(options.value(forOption));
    if (m_time)
        return std::nullopt;
    return options.complain(tr("\"%1\" is no time; one is written like 500ms, 10s or 2min, up to a week.")
                                .arg(options.value(forOption)));
}

std::optional<ExitStatus> Listening::parsePeriod(const CommandArguments &options, const QString &option,
                                                 std::chrono::milliseconds *period)
{
    constexpr std::chrono::milliseconds shortest{ValueAsking::shortestPeriod};
    if (!options.isSet(option))
        return std::nullopt;
    const std::optional<std::chrono::milliseconds> given = parseDuration(options.value(option));
    if (!given || *given < shortest) {
        return options.complain(
            tr("\"%1\" is no time of 100ms or more; one is written like 500ms, 10s or 2min, up to a week.")
                .arg(options.value(option)));
    }
    *period = *given;
    return std::nullopt;
}

std::optional<ExitStatus> Listening::begin()
{
    QString error;
    if (!m_bus.connectToBus(m_settings, &error)) {
        Console::printBusError(error);
        return Exit::busNotOpened;
    }
    m_live.start();
    const QMap<quint8, CanOpen::EdsFile> &sheets = m_sheets.sheets();
    for (auto sheet = sheets.cbegin(); sheet != sheets.cend(); ++sheet)
        m_live.learn(sheet.key(), *sheet);
    if (m_time)
        QTimer::singleShot(*m_time, Qt::PreciseTimer, &m_live, [this] { m_loop.end(); });
    m_steps.begin();
    QObject::connect(&m_live, &LiveBus::ticked, &m_live, [this] {
        if (m_steps.isOver() && !m_isOutlasting)
            m_loop.end();
        // Nobody reads any more.
        if (!Console::isComplete() || !Terminal::hasReader(Terminal::Stream::Output))
            m_loop.end();
    });
    return std::nullopt;
}

ExitStatus Listening::wait(const std::function<void()> &atEnd)
{
    const bool isFinished = m_loop.run();
    if (atEnd)
        atEnd();
    if (!isFinished)
        return m_loop.status();
    if (!Terminal::hasReader(Terminal::Stream::Output))
        return Exit::noReader;
    if (m_bus.state() == BusConnection::State::Connected)
        return Exit::success;
    Console::printError(tr("The bus was lost: %1").arg(m_bus.lossReason()));
    return Exit::stoppedEarly;
}
