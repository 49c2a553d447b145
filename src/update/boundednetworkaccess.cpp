// SPDX-License-Identifier: MIT
#include "boundednetworkaccess.h"

#include "boundedreply.h"

QNetworkReply *BoundedNetworkAccess::createRequest(Operation operation, const QNetworkRequest &request,
                                                   QIODevice *outgoingData)
{
    Q_UNUSED(operation)
    Q_UNUSED(outgoingData)
    return new BoundedReply(request, m_maximumBody, this);
}
