// SPDX-License-Identifier: MIT
#include "watchcommand.h"

#include "watchprinter.h"

#include <cli/core/commandarguments.h>
#include <cli/core/console.h>
#include <cli/core/listening.h>
#include <cli/core/optionnames.h>
#include <cli/core/shareoption.h>

#include <QFile>
#include <QTimer>

#include <memory>

namespace {

struct WatchCommandTr
{
    Q_DECLARE_TR_FUNCTIONS(WatchCommand)
};

constexpr int usualShare = 20; // percent
constexpr std::chrono::milliseconds usualPeriod{500};

class WatchCommand
{
public:
    ExitStatus run(const QStringList &arguments);

private:
    void addOptions();
    std::optional<ExitStatus> parse(const QStringList &arguments);
    std::optional<ExitStatus> parseObjects();
    std::optional<ExitStatus> openTable();
    ExitStatus watch();
    void write(const QByteArray &lines);
    ExitStatus finish(ExitStatus waited, const WatchedValues &values, const WatchPrinter &printer) const;

    CommandArguments m_options{
        QStringLiteral("watch"),
        WatchCommandTr::tr("Shows the values of chosen objects as they come: from PDOs where the device "
                           "maps them, else by asking.")};
    Listening m_listening{std::nullopt};
    QVector<ObjectAddress> m_objects;
    std::chrono::milliseconds m_period = usualPeriod;
    int m_share = usualShare;
    QFile m_table;
    bool m_isTableBroken = false;
};

void WatchCommand::addOptions()
{
    m_listening.addOptions(m_options);
    m_options.addPositional(
        QStringLiteral("NODE:INDEX:SUB"),
        WatchCommandTr::tr("An object: node ID, index (hexadecimal) and sub-index, 0 when it is left out; "
                           "2:6040:1."),
        CommandArguments::Presence::Repeated);
    m_options.addOption(
        {everyOption,
         WatchCommandTr::tr(
             "How often values are asked for, and printed at most: 100ms and more; usually %1ms.")
             .arg(usualPeriod.count()),
         QStringLiteral("TIME")});
    m_options.addOption({csvOption,
                         WatchCommandTr::tr("Write what is printed to this file as well, as a table."),
                         QStringLiteral("FILE")});
    m_options.addOption(
        {jsonOption, WatchCommandTr::tr("Print a line of JSON for each value, for programs.")});
    ShareOption::add(m_options, usualShare);
}

std::optional<ExitStatus> WatchCommand::parse(const QStringList &arguments)
{
    addOptions();
    if (const std::optional<ExitStatus> status = m_options.parse(arguments))
        return status;
    if (const std::optional<ExitStatus> status = m_listening.parse(m_options))
        return status;
    if (const std::optional<ExitStatus> status = ShareOption::parse(m_options, &m_share))
        return status;
    if (const std::optional<ExitStatus> status = Listening::parsePeriod(m_options, everyOption, &m_period))
        return status;
    return parseObjects();
}

std::optional<ExitStatus> WatchCommand::parseObjects()
{
    const QStringList texts = m_options.positionals();
    for (const QString &text : texts) {
        const std::optional<ObjectAddress> object = ObjectAddress::parse(text);
        if (!object) {
            return m_options.complain(
                WatchCommandTr::tr(
                    "\"%1\" is no object; one is written like 2:6040:1, with node ID, index and sub-index.")
                    .arg(text));
        }
        m_objects.append(*object);
    }
    return std::nullopt;
}

std::optional<ExitStatus> WatchCommand::openTable()
{
    if (!m_options.isSet(csvOption))
        return std::nullopt;
    m_table.setFileName(m_options.value(csvOption));
    if (m_table.open(QIODevice::WriteOnly | QIODevice::Unbuffered)) {
        write(WatchPrinter::tableHead());
        return m_isTableBroken ? std::optional(Exit::fileFailed) : std::nullopt;
    }
    Console::printError(WatchCommandTr::tr("The file %1 cannot be written: %2")
                            .arg(m_table.fileName(), m_table.errorString()));
    return Exit::fileFailed;
}

/*! Each line at once: what has come is not lost with the program. */
void WatchCommand::write(const QByteArray &lines)
{
    if (!m_table.isOpen() || m_isTableBroken || lines.isEmpty() || m_table.write(lines) == lines.size())
        return;
    m_isTableBroken = true;
    Console::printError(WatchCommandTr::tr("The file %1 cannot be written: %2")
                            .arg(m_table.fileName(), m_table.errorString()));
    m_listening.end();
}

ExitStatus WatchCommand::run(const QStringList &arguments)
{
    if (const std::optional<ExitStatus> status = parse(arguments))
        return *status;
    if (const std::optional<ExitStatus> status = openTable())
        return *status;
    m_listening.outlastTraces();
    if (const std::optional<ExitStatus> status = m_listening.begin())
        return *status;
    return watch();
}

ExitStatus WatchCommand::watch()
{
    WatchedValues values(&m_listening.bus(), &m_listening.live());
    values.setSharePercent(m_share);
    const auto form = m_options.isSet(jsonOption) ? WatchPrinter::Form::Json : WatchPrinter::Form::Text;
    WatchPrinter printer(&values, &m_listening.live(), form);
    values.start(m_objects, m_listening.dataSheets(), m_period);
    QTimer timer;
    timer.setTimerType(Qt::PreciseTimer);
    QObject::connect(&timer, &QTimer::timeout, &timer, [this, &printer] { write(printer.printNew()); });
    timer.start(m_period);
    const ExitStatus waited = m_listening.wait();
    timer.stop();
    write(printer.printNew());
    printer.printSummary();
    return finish(waited, values, printer);
}

ExitStatus WatchCommand::finish(ExitStatus waited, const WatchedValues &values,
                                const WatchPrinter &printer) const
{
    const QStringList problems = values.problems();
    for (const QString &problem : problems)
        Console::printError(problem);
    if (m_isTableBroken)
        return Exit::fileFailed;
    if (waited != Exit::success)
        return waited;
    return printer.isComplete() ? Exit::success : Exit::objectsFailed;
}

} // namespace

ExitStatus runWatchCommand(const QStringList &arguments)
{
    WatchCommand command;
    return command.run(arguments);
}
