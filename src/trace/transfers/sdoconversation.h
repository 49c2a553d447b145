// SPDX-License-Identifier: MIT
#pragma once

#include "followedtransfer.h"
#include "sdotransfers.h"

#include <optional>
#include <vector>

/*! The transfers of one server with all its clients: the one under way, and the one that it overtook, whose answer may still
 *  come.
 */
class SdoConversation
{
public:
    explicit SdoConversation(quint8 nodeId)
        : m_nodeId(nodeId)
    {
    }

    using Place = SdoTransfers::Place;

    /*! A frame on 600h + node ID; eight bytes. What has ended goes to \a finished; *\a begun counts those that began. */
    Place handleRequest(const FollowedTransfer::Heard &heard, quint32 *begun,
                        std::vector<SdoTransfer> *finished);
    /*! A frame on 580h + node ID; eight bytes. */
    Place handleAnswer(const FollowedTransfer::Heard &heard, std::vector<SdoTransfer> *finished);

    bool isBusy() const { return m_current.has_value() || m_overtaken.has_value(); }

    /*! Ends what nothing has come to for too long. */
    void sweep(qint64 now, std::vector<SdoTransfer> *finished);
    /*! Ends everything. */
    void finish(std::vector<SdoTransfer> *finished);

    /*! For who keeps a list of those that are busy. */
    bool isListed = false;

private:
    using Followed = std::optional<FollowedTransfer>;

    void overtake(const FollowedTransfer::Heard &heard, FollowedTransfer *next,
                  std::vector<SdoTransfer> *finished);
    static Place placeIn(Followed *followed, SdoStep step, std::vector<SdoTransfer> *finished);
    static void end(Followed *followed, bool isTimeOver, std::vector<SdoTransfer> *finished);

    Followed m_current;
    Followed m_overtaken;
    quint8 m_nodeId;
};
