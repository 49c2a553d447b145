// SPDX-License-Identifier: MIT
#include "getcommand.h"

#include "objecttext.h"

#include <cli/core/commandarguments.h>
#include <cli/core/console.h>
#include <cli/core/datatypename.h>
#include <cli/core/interruptibleloop.h>
#include <cli/core/language.h>
#include <cli/core/objectaddress.h>
#include <cli/core/optionnames.h>
#include <cli/core/patienceoptions.h>
#include <cli/core/silentnode.h>

#include <bus/busconnection.h>
#include <canopen/sdoabort.h>
#include <host/core/readrecord.h>
#include <snapshot/objecttypes.h>

namespace {

struct GetCommandTr
{
    Q_DECLARE_TR_FUNCTIONS(GetCommand)
};

constexpr QLatin1String typeOption("type");

/*! Whether the device's value may be of another type than it was asked for. */
bool saysOtherLength(const CanOpen::SdoOutcome &outcome)
{
    using CanOpen::SdoAbort;
    return outcome.code == static_cast<quint32>(SdoAbort::LengthMismatch)
           || outcome.code == static_cast<quint32>(SdoAbort::LengthTooHigh)
           || outcome.code == static_cast<quint32>(SdoAbort::LengthTooLow);
}

class GetCommand
{
public:
    ExitStatus run(const QStringList &arguments);

private:
    std::optional<ExitStatus> parse(const QStringList &arguments);
    std::optional<ExitStatus> parseObject();
    ExitStatus readObject();
    CanOpen::SdoOutcome ask(CanOpen::DataType type);
    void print(const CanOpen::SdoOutcome &outcome) const;
    ExitStatus complain(const CanOpen::SdoOutcome &outcome);

    CommandArguments m_options{QStringLiteral("get"),
                               GetCommandTr::tr("Reads one object of a node. The node need not send "
                                                "a heartbeat.")};
    CanOpen::SdoPatience m_patience;
    quint8 m_nodeId = 0;
    CanOpen::ObjectKey m_key;
    std::optional<CanOpen::DataType> m_type;
    bool m_isTypeChosen = false;
    InterruptibleLoop m_loop;
    BusConnection m_bus;
};

ExitStatus GetCommand::run(const QStringList &arguments)
{
    if (const std::optional<ExitStatus> status = parse(arguments))
        return *status;
    m_bus.sdoClient().setDefaultPatience(m_patience);
    QString error;
    if (!m_bus.connectToBus(m_options.bus(), &error)) {
        Console::printBusError(error);
        return Exit::busNotOpened;
    }
    return readObject();
}

std::optional<ExitStatus> GetCommand::parse(const QStringList &arguments)
{
    m_options.addBusOptions();
    m_options.addPositional(QStringLiteral("NODE"), GetCommandTr::tr("The node ID, 1 to 127."));
    m_options.addPositional(QStringLiteral("INDEX"),
                            GetCommandTr::tr("The object's index, hexadecimal: 1018, 1018h or 0x1018."));
    m_options.addPositional(QStringLiteral("SUB"),
                            GetCommandTr::tr("The sub-index, 0 to 255; 0 when it is left out."),
                            CommandArguments::Presence::Optional);
    m_options.addOption(
        {typeOption,
         GetCommandTr::tr("The data type: %1. Without it that of the read list, and for other objects "
                          "everything that the bytes may mean.")
             .arg(DataTypeName::shortNames().join(QStringLiteral(", "))),
         QStringLiteral("TYPE")});
    m_options.addOption({jsonOption, GetCommandTr::tr("Print JSON, for programs.")});
    PatienceOptions::add(m_options);
    Language::addOption(m_options);
    if (const std::optional<ExitStatus> status = m_options.parse(arguments))
        return status;
    if (const std::optional<ExitStatus> status = PatienceOptions::parse(m_options, &m_patience))
        return status;
    if (const std::optional<ExitStatus> status = parseObject())
        return status;
    return Language::load(m_options);
}

std::optional<ExitStatus> GetCommand::parseObject()
{
    const std::optional<quint8> nodeId = ObjectAddress::parseNodeId(m_options.positional(0));
    if (!nodeId)
        return m_options.complain(
            GetCommandTr::tr("\"%1\" is no node ID from 1 to 127.").arg(m_options.positional(0)));
    const std::optional<quint16> index = ObjectAddress::parseIndex(m_options.positional(1));
    if (!index) {
        return m_options.complain(
            GetCommandTr::tr("\"%1\" is no index. Write it in hexadecimal, for example 1018h.")
                .arg(m_options.positional(1)));
    }
    const QString sub = m_options.positional(2);
    const std::optional<quint8> subIndex
        = ObjectAddress::parseSubIndex(sub.isEmpty() ? QStringLiteral("0") : sub);
    if (!subIndex)
        return m_options.complain(GetCommandTr::tr("\"%1\" is no sub-index from 0 to 255.").arg(sub));
    m_nodeId = *nodeId;
    m_key = {*index, *subIndex};

    m_isTypeChosen = m_options.isSet(typeOption);
    const QVector<CanOpen::DataType> known = ObjectTypes::known(m_key);
    if (m_isTypeChosen)
        m_type = DataTypeName::parse(m_options.value(typeOption));
    else if (!known.isEmpty())
        m_type = known.first();
    if (m_isTypeChosen && !m_type) {
        return m_options.complain(
            GetCommandTr::tr("There is no data type \"%1\"; there are %2.")
                .arg(m_options.value(typeOption), DataTypeName::shortNames().join(QStringLiteral(", "))));
    }
    return std::nullopt;
}

ExitStatus GetCommand::readObject()
{
    CanOpen::SdoOutcome outcome = ask(m_type.value_or(CanOpen::rawBytes));
    const bool isOtherType = m_type && !m_isTypeChosen && saysOtherLength(outcome);
    if (isOtherType && !m_loop.isInterrupted()) {
        m_type.reset();
        const CanOpen::SdoOutcome raw = ask(CanOpen::rawBytes);
        if (raw.kind == CanOpen::SdoOutcome::Kind::Value || raw.kind == CanOpen::SdoOutcome::Kind::Cancelled)
            outcome = raw; // else the first failure says more
    }
    if (m_loop.isInterrupted()) {
        Console::printError(GetCommandTr::tr("Interrupted."));
        return m_loop.status();
    }
    if (outcome.kind != CanOpen::SdoOutcome::Kind::Value)
        return complain(outcome);
    print(outcome);
    return Exit::success;
}

CanOpen::SdoOutcome GetCommand::ask(CanOpen::DataType type)
{
    CanOpen::SdoOutcome result;
    const CanOpen::SdoTicket ticket = m_bus.sdoClient().upload(m_nodeId, m_key, type);
    const QMetaObject::Connection connection
        = QObject::connect(&m_bus.sdoClient(), &CanOpen::SdoClient::finished, &m_bus,
                           [this, ticket, &result](const CanOpen::SdoOutcome &outcome) {
                               if (outcome.ticket != ticket)
                                   return;
                               result = outcome;
                               m_loop.end();
                           });
    m_loop.run();
    QObject::disconnect(connection);
    return result;
}

void GetCommand::print(const CanOpen::SdoOutcome &outcome) const
{
    const ObjectValue object{m_nodeId, m_key, m_type, outcome.value, outcome.raw, outcome.isSizeUnknown};
    if (m_options.isSet(jsonOption))
        Console::printJson(objectJson(object));
    else
        Console::print(objectText(object));
}

ExitStatus GetCommand::complain(const CanOpen::SdoOutcome &outcome)
{
    if (outcome.kind == CanOpen::SdoOutcome::Kind::Cancelled) {
        Console::printError(
            GetCommandTr::tr("Nothing was read, because the bus was lost: %1").arg(m_bus.lossReason()));
        return Exit::stoppedEarly;
    }
    const FailedObject failure{m_nodeId, m_key, ReadResult::of(outcome)};
    Console::printError(failure.toString());
    if (outcome.kind != CanOpen::SdoOutcome::Kind::Timeout)
        return Exit::objectsFailed;
    const bool isSilent = !outcome.isUnasked && !outcome.isCrowdedOut; // else the bus is to blame
    const QString heard = silentNodeText(m_nodeId, m_bus.heartbeats().state(m_nodeId));
    if (isSilent && !heard.isEmpty())
        Console::printError(heard);
    return Exit::stoppedEarly;
}

} // namespace

ExitStatus runGetCommand(const QStringList &arguments)
{
    GetCommand command;
    return command.run(arguments);
}
