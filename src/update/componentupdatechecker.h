// SPDX-License-Identifier: MIT
#pragma once

#include "boundednetworkaccess.h"
#include "replyguard.h"

#include <QObject>

class QNetworkReply;

/*! Asks the update information server what it knows about the firmware of one component.
 *
 *  The question is the component's identity (CANopen identity object 1018h), sent as an HTTP GET of
 *  "/versioninfo/?vendor=...&product=...&revision=..." to UpdateServer::host(). No answer costs more than 32 MB, cookies
 *  are neither kept nor sent. Everything happens in the
 *  thread of the checker; the answer comes through the event loop, never from inside checkForUpdate().
 *
 *  Holds nothing but the identity of the last request, so that overlapping requests all carry that one.
 */
class ComponentUpdateChecker : public QObject
{
    Q_OBJECT

public:
    explicit ComponentUpdateChecker(QObject *parent = nullptr);

    /*! Sends the question and returns true. A failure is not returned: it arrives as an answer, at the latest
     *  when the replyLimits() are reached. The k-th call makes every reply from then on yield k answers.
     */
    bool checkForUpdate(quint32 vendorId, quint32 productCode, quint32 revision);

    /*! Whether the answer emitted last stands for a network failure. */
    bool hasFailed() const { return m_hasFailed; }

signals:
    /*! One answer, with the identity given to the last checkForUpdate().
     *
     *  \a info is the body of the reply as Latin-1 up to its first zero byte, unchanged and as long as the
     *  server made it: plain text from outside, to be shown as such and never as markup. After any network
     *  failure it is a translated sentence that says so.
     */
    void updateInformation(quint32 vendorId, quint32 productcode, quint32 revision, QString info);

public slots:
    /*! Makes the answer of a finished reply of this checker and emits it. May be called several times for one reply. */
    void replyFinished(QNetworkReply *reply);

protected:
    /*! What the server may take for the next request's answer. */
    virtual ReplyLimits replyLimits() const;

private:
    BoundedNetworkAccess m_networkAccessManager;
    quint32 m_vendorId = 0;
    quint32 m_productCode = 0;
    quint32 m_revision = 0;
    bool m_hasFailed = false;
};
