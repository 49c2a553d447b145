// SPDX-License-Identifier: MIT
#include "replyguard.h"

#include <QNetworkReply>
#include <QTimer>

ReplyGuard::ReplyGuard(QNetworkReply *reply, const ReplyLimits &limits)
    : QObject(reply)
    , m_reply(reply)
{
    auto *silence = new QTimer(this);
    silence->setSingleShot(true);
    connect(silence, SIGNAL(timeout()), this, SLOT(end()));
    // A running timer that is started again begins anew.
    connect(reply, SIGNAL(readyRead()), silence, SLOT(start()));
    silence->start(limits.silence);

    auto *duration = new QTimer(this);
    duration->setSingleShot(true);
    connect(duration, SIGNAL(timeout()), this, SLOT(end()));
    duration->start(limits.duration);
}

void ReplyGuard::end()
{
    // The timers may still run while the answer of a finished reply is being shown.
    if (!m_reply->isFinished())
        m_reply->abort();
}
