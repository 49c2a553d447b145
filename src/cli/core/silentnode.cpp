// SPDX-License-Identifier: MIT
#include "silentnode.h"

#include <QCoreApplication>

namespace {

struct SilentNodeTr
{
    Q_DECLARE_TR_FUNCTIONS(SilentNode)
};

} // namespace

QString silentNodeText(quint8 nodeId, const std::optional<CanOpen::NmtState> &state)
{
    if (!state)
        return QString();
    if (*state == CanOpen::NmtState::Stopped)
        return SilentNodeTr::tr("Node %1 is in the state Stopped and answers no SDO.").arg(nodeId);
    if (*state == CanOpen::NmtState::BootUp)
        return SilentNodeTr::tr("Node %1 has sent its boot-up message, but does not answer.").arg(nodeId);
    return SilentNodeTr::tr("Node %1 sends a heartbeat, but does not answer.").arg(nodeId);
}
