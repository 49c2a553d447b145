// SPDX-License-Identifier: MIT
#pragma once

#include <canopen/nmt.h>

#include <QString>

#include <optional>

/*! What the heartbeat tells of a node that answers no SDO: "Node 5 is in the state Stopped and answers no SDO.". Empty
 *  without a \a state, when neither a heartbeat nor a boot-up message has come.
 */
QString silentNodeText(quint8 nodeId, const std::optional<CanOpen::NmtState> &state);
