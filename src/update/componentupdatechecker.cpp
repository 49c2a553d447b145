// SPDX-License-Identifier: MIT
#include "componentupdatechecker.h"

#include "boundedreply.h"
#include "updateserver.h"

#include <QNetworkRequest>
#include <QUrl>

namespace {

QUrl requestUrl(quint32 vendorId, quint32 productCode, quint32 revision)
{
    return QUrl(QStringLiteral("http://%1/versioninfo/?vendor=%2&product=%3&revision=%4")
                    .arg(UpdateServer::host())
                    .arg(vendorId)
                    .arg(productCode)
                    .arg(revision));
}

QString textOf(const QByteArray &body)
{
    return QString::fromLatin1(body.constData(),
                               static_cast<int>(qstrnlen(body.constData(), static_cast<uint>(body.size()))));
}

/*! The body stays, for the deliveries of this reply that are still to come. */
QByteArray bodyOf(QNetworkReply &reply)
{
    // Every reply of our own manager is a bounded one.
    const auto *bounded = dynamic_cast<const BoundedReply *>(&reply);
    return bounded != nullptr ? bounded->body() : reply.peek(reply.bytesAvailable());
}

} // namespace

ComponentUpdateChecker::ComponentUpdateChecker(QObject *parent)
    : QObject(parent)
    , m_networkAccessManager(this)
{
}

bool ComponentUpdateChecker::checkForUpdate(quint32 vendorId, quint32 productCode, quint32 revision)
{
    const QUrl url = requestUrl(vendorId, productCode, revision);
    // Deliberate: one identity for all requests under way, so an answer is labelled with the one stored last.
    m_vendorId = vendorId;
    m_productCode = productCode;
    m_revision = revision;
    // Deliberate: one connection more with every check, so that after the k-th each reply yields k answers.
    connect(&m_networkAccessManager, SIGNAL(finished(QNetworkReply *)), this,
            SLOT(replyFinished(QNetworkReply *)));

    const ReplyLimits limits = replyLimits();
    m_networkAccessManager.setMaximumBody(limits.bytes);
    QNetworkReply *reply = m_networkAccessManager.get(QNetworkRequest(url));
    new ReplyGuard(reply, limits); // owned by the reply
    // The manager was connected to this signal first: all deliveries of the reply have happened by then.
    connect(reply, SIGNAL(finished()), reply, SLOT(deleteLater()));
    return true;
}

void ComponentUpdateChecker::replyFinished(QNetworkReply *reply)
{
    QString info;
    m_hasFailed = reply->error() != QNetworkReply::NoError;
    if (m_hasFailed) {
        info = tr("No connection to update information server at %1.")
                   .arg(UpdateServer::displayName(reply->request().url().authority()));
    } else {
        info = textOf(bodyOf(*reply));
    }
    emit updateInformation(m_vendorId, m_productCode, m_revision, info);
}

ReplyLimits ComponentUpdateChecker::replyLimits() const
{
    return {};
}
