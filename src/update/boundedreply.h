// SPDX-License-Identifier: MIT
#pragma once

#include "httpanswer.h"

#include <QNetworkReply>
#include <QTcpSocket>

/*! A reply to an HTTP GET that costs no more memory and no more time at a stretch than it may, whatever a server sends.
 *
 *  Qt's own unpacks a whole piece before it tells the size, and reads every header again for each one more of the same
 *  name, so that small answers cost gigabytes or minutes. This one asks in the same words and takes the answer in
 *  slices of 64 kB from the event loop. It keeps and sends no cookies and follows no redirect.
 *
 *  finished() comes once, from the event loop; after it the body can be read as often as it is wanted with body().
 */
class BoundedReply : public QNetworkReply
{
    Q_OBJECT

public:
    /*! \a maximumBody in bytes, after decompression. */
    BoundedReply(const QNetworkRequest &request, int maximumBody, QObject *parent);
    ~BoundedReply() override;

    const QByteArray &body() const { return m_answer.body(); }

    void abort() override;
    qint64 bytesAvailable() const override;
    bool isSequential() const override { return true; }

protected:
    qint64 readData(char *data, qint64 maximumSize) override;

private slots:
    void sendRequest();
    void takeSlice();
    void handleDisconnection();
    void handleSocketError(QAbstractSocket::SocketError socketError);

private:
    void look();
    void finish(QNetworkReply::NetworkError code, const QString &reason);

    QTcpSocket m_socket;
    HttpAnswer m_answer;
    int m_readPosition = 0; // in the body
};
