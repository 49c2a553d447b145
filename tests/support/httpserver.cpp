// SPDX-License-Identifier: MIT
#include "httpserver.h"

#include <QHostAddress>
#include <QTcpSocket>
#include <QTimer>

namespace {

constexpr int dripInterval = 100; // ms

void sendEndlessly(QTcpSocket *socket, const QByteArray &bytes)
{
    QObject::connect(socket, &QTcpSocket::bytesWritten, socket, [socket, bytes] {
        if (socket->bytesToWrite() == 0)
            socket->write(bytes);
    });
    socket->write(bytes);
}

void sendDripping(QTcpSocket *socket, const QByteArray &bytes)
{
    auto *timer = new QTimer(socket);
    QObject::connect(timer, &QTimer::timeout, socket, [socket, timer, rest = bytes]() mutable {
        socket->write(rest.left(1));
        rest.remove(0, 1);
        if (rest.isEmpty())
            timer->stop();
    });
    timer->start(dripInterval);
}

} // namespace

HttpServer::HttpServer(QObject *parent)
    : QObject(parent)
{
    connect(&m_server, &QTcpServer::newConnection, this, &HttpServer::acceptConnection);
    m_server.listen(QHostAddress::LocalHost);
}

HttpServer::~HttpServer()
{
    // The sockets go with m_server, when this object is half gone: they have nothing more to say to it.
    for (QTcpSocket *socket : m_server.findChildren<QTcpSocket *>())
        disconnect(socket, nullptr, this, nullptr);
}

bool HttpServer::isListening() const
{
    return m_server.isListening();
}

QString HttpServer::authority() const
{
    return QStringLiteral("127.0.0.1:%1").arg(m_server.serverPort());
}

void HttpServer::setAnswer(const QByteArray &bytes, Ending ending)
{
    m_answer = Answer{bytes, ending};
}

void HttpServer::send(int request, const QByteArray &bytes, Ending ending)
{
    QTcpSocket *socket = m_sockets.value(request);
    if (socket == nullptr)
        return;
    switch (ending) {
    case Ending::KeepOpen:
        socket->write(bytes);
        break;
    case Ending::Close:
        socket->write(bytes);
        socket->disconnectFromHost();
        break;
    case Ending::Endless:
        sendEndlessly(socket, bytes);
        break;
    case Ending::Drip:
        sendDripping(socket, bytes);
        break;
    }
}

QByteArray HttpServer::requestLine(int request) const
{
    const QByteArray head = m_requests.value(request);
    return head.left(head.indexOf("\r\n"));
}

QByteArray HttpServer::response(const QByteArray &body, const QByteArray &status, const QByteArray &headers)
{
    return "HTTP/1.1 " + status + "\r\nContent-Type: text/plain\r\nContent-Length: "
           + QByteArray::number(body.size()) + "\r\n" + headers + "\r\n" + body;
}

void HttpServer::acceptConnection()
{
    while (QTcpSocket *socket = m_server.nextPendingConnection()) {
        ++m_connectionCount;
        ++m_openConnectionCount;
        connect(socket, &QTcpSocket::readyRead, this, [this, socket] { readRequests(socket); });
        connect(socket, &QTcpSocket::disconnected, this, [this, socket] {
            --m_openConnectionCount;
            socket->deleteLater();
        });
    }
}

void HttpServer::readRequests(QTcpSocket *socket)
{
    const QByteArray end = QByteArrayLiteral("\r\n\r\n");
    for (;;) {
        const QByteArray seen = socket->peek(socket->bytesAvailable());
        const int length = seen.indexOf(end) + end.size();
        if (length < end.size())
            return;
        m_requests.append(socket->read(length));
        m_sockets.append(socket);
        if (m_answer)
            send(m_requests.size() - 1, m_answer->bytes, m_answer->ending);
    }
}
