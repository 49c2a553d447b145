// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QList>
#include <QObject>
#include <QPointer>
#include <QTcpServer>

#include <optional>

class QTcpSocket;

/*! An HTTP server on the loopback that does to its clients whatever a test wants.
 *
 *  It reads request heads (bodies are not expected) and sends bytes; it knows no more of HTTP, so that an
 *  answer may break every rule. Lives in the event loop of the test.
 */
class HttpServer : public QObject
{
    Q_OBJECT

public:
    enum class Ending {
        KeepOpen,
        Close,   // after the bytes are sent
        Endless, // the bytes are sent again and again until the client leaves
        Drip     // one byte every 100 ms, then KeepOpen
    };

    explicit HttpServer(QObject *parent = nullptr);
    ~HttpServer() override;

    /*! Whether the server listens. It does so from the start; false only when the machine refuses. */
    bool isListening() const;

    /*! "127.0.0.1:" and the port. */
    QString authority() const;

    /*! Sends this to every request from now on. Without it requests stay unanswered. */
    void setAnswer(const QByteArray &bytes, Ending ending = Ending::KeepOpen);

    /*! Sends bytes on the connection of a request, counted from 0, if the client is still there. */
    void send(int request, const QByteArray &bytes, Ending ending = Ending::KeepOpen);

    /*! The heads of all requests so far, from the request line to the empty line, in order of arrival. */
    QList<QByteArray> requests() const { return m_requests; }

    /*! The first line of a request without its line end; empty when there is no such request. */
    QByteArray requestLine(int request) const;

    /*! Number of connections accepted so far, and of those that the client still holds. */
    int connectionCount() const { return m_connectionCount; }
    int openConnectionCount() const { return m_openConnectionCount; }

    /*! A well-formed answer with the right Content-Length; \a headers are whole lines with their ends. */
    static QByteArray response(const QByteArray &body, const QByteArray &status = QByteArrayLiteral("200 OK"),
                               const QByteArray &headers = {});

private:
    struct Answer
    {
        QByteArray bytes;
        Ending ending;
    };

    void acceptConnection();
    void readRequests(QTcpSocket *socket);

    QTcpServer m_server;
    std::optional<Answer> m_answer;
    QList<QByteArray> m_requests;
    QList<QPointer<QTcpSocket>> m_sockets; // one entry per request
    int m_connectionCount = 0;
    int m_openConnectionCount = 0;
};
