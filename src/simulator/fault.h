// SPDX-License-Identifier: MIT
#pragma once

#include "faultkinds.h"

#include <QString>
#include <QStringList>

#include <optional>
#include <type_traits>
#include <variant>

class QJsonObject;

namespace Simulator {

/*! One fault of a node or of the bus. */
using Fault = std::variant<
    Faults::Silent, Faults::NoBootUp, Faults::NoHeartbeat, Faults::BabbleHeartbeat, Faults::HeartbeatTopBit,
    Faults::HeartbeatLength, Faults::HeartbeatRemote, Faults::Stopped, Faults::Restarts, Faults::Emergency,
    Faults::EmergencyOfNobody, Faults::BabbleEmergency, Faults::BabblePdo, Faults::PdoLength,
    Faults::LyingMapping, Faults::SdoSilent, Faults::SdoDelay, Faults::SdoAbort, Faults::AbortMidTransfer,
    Faults::WrongToggle, Faults::WrongMultiplexer, Faults::SizeBits, Faults::Segmented, Faults::Endless,
    Faults::WrongWidth, Faults::BlockUpload, Faults::DoubleAnswers, Faults::LateCopies, Faults::LateAnswers,
    Faults::HalfOpen, Faults::BabbleSdo, Faults::ForeignClient, Faults::AbandoningClient, Faults::DropFrames,
    Faults::Traffic, Faults::Flood, Faults::BusLoss>;

/*! The number of a kind: Fault::index() of its faults. */
template<typename Kind, std::size_t place = 0>
constexpr std::size_t faultKind()
{
    if constexpr (std::is_same_v<Kind, std::variant_alternative_t<place, Fault>>)
        return place;
    else
        return faultKind<Kind, place + 1>();
}

/*! The name of its kind in vehicle files, for example "sdoDelay". */
QString faultName(const Fault &fault);

/*! Whether it can be one of the whole bus. */
bool isBusFault(const Fault &fault);
/*! Whether it can be one of a node. */
bool isNodeFault(const Fault &fault);

/*! The names of all kinds, and the parameters of one (none for an unknown name): for messages and documents.
 */
QStringList faultNames();
QStringList faultParameters(const QString &name);

/*! Reads a fault of a vehicle file; \a errorMessage then tells the key and what is wrong. */
std::optional<Fault> parseFault(const QJsonObject &json, QString *errorMessage);

} // namespace Simulator
