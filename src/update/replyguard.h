// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

#include <chrono>

class QNetworkReply;

/*! What a server may take for one answer. All values are positive. */
struct ReplyLimits
{
    std::chrono::milliseconds silence = std::chrono::seconds(30); // from one part of the body to the next
    std::chrono::milliseconds duration = std::chrono::minutes(2); // from the request to the end of the body
    int bytes = 4 * 1024 * 1024; // of the body, after decompression; more would hold up the window
};

/*! Ends one reply that takes longer than it may, so that no server can hold a request for ever.
 *
 *  A reply that is ended so finishes at once with QNetworkReply::OperationCanceledError. One that has
 *  finished is left alone. The guard belongs to the reply and dies with it.
 */
class ReplyGuard : public QObject
{
    Q_OBJECT

public:
    /*! Guards \a reply from now on; the reply becomes the parent. */
    ReplyGuard(QNetworkReply *reply, const ReplyLimits &limits);

private slots:
    void end();

private:
    QNetworkReply *m_reply; // the parent
};
