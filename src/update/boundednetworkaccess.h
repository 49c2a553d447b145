// SPDX-License-Identifier: MIT
#pragma once

#include <QNetworkAccessManager>

/*! Answers every request with a BoundedReply, whose body is \a maximumBody bytes at most. Only for HTTP GET. */
class BoundedNetworkAccess : public QNetworkAccessManager
{
    Q_OBJECT

public:
    using QNetworkAccessManager::QNetworkAccessManager;

    void setMaximumBody(int bytes) { m_maximumBody = bytes; }

protected:
    QNetworkReply *createRequest(Operation operation, const QNetworkRequest &request,
                                 QIODevice *outgoingData) override;

private:
    int m_maximumBody = 0;
};
