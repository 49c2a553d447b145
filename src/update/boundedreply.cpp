// SPDX-License-Identifier: MIT
#include "boundedreply.h"

#include <QLocale>
#include <QUrl>

#include <algorithm>

namespace {

constexpr int sliceSize
    = 4 * 1024; // bytes handled at a stretch; they may unpack to 4 MB, or be a thousand chunks
constexpr int standardPort = 80;

QByteArray hostHeader(const QUrl &url)
{
    QByteArray host = url.host(QUrl::FullyEncoded).toLatin1();
    if (host.contains(':'))
        host = '[' + host + ']'; // an IPv6 address
    return url.port() < 0 ? host : host + ':' + QByteArray::number(url.port());
}

QByteArray languageHeader()
{
    const QString system = QLocale::system().name().replace(QLatin1Char('_'), QLatin1Char('-'));
    return system == QLatin1String("C") ? QByteArrayLiteral("en,*") : system.toLatin1() + ",en,*";
}

/*! The request with the headers that Qt's network layer sends of itself. */
QByteArray requestHead(const QUrl &url)
{
    return "GET " + url.toEncoded(QUrl::RemoveScheme | QUrl::RemoveAuthority | QUrl::RemoveFragment)
           + " HTTP/1.1\r\nHost: " + hostHeader(url)
           + "\r\nConnection: Keep-Alive\r\nAccept-Encoding: gzip, deflate\r\nAccept-Language: "
           + languageHeader() + "\r\nUser-Agent: Mozilla/5.0\r\n\r\n";
}

} // namespace

BoundedReply::BoundedReply(const QNetworkRequest &request, int maximumBody, QObject *parent)
    : QNetworkReply(parent)
    , m_answer(maximumBody)
{
    setRequest(request);
    setUrl(request.url());
    setOperation(QNetworkAccessManager::GetOperation);
    open(QIODevice::ReadOnly | QIODevice::Unbuffered);

    m_socket.setReadBufferSize(sliceSize);
    connect(&m_socket, SIGNAL(connected()), this, SLOT(sendRequest()));
    connect(&m_socket, SIGNAL(readyRead()), this, SLOT(takeSlice()));
    connect(&m_socket, SIGNAL(disconnected()), this, SLOT(handleDisconnection()));
    connect(&m_socket, SIGNAL(error(QAbstractSocket::SocketError)), this,
            SLOT(handleSocketError(QAbstractSocket::SocketError)));
    const auto port = static_cast<quint16>(url().port(standardPort));
    // From the event loop: nobody is connected to the signals yet.
    QMetaObject::invokeMethod(
        this, [this, port] { m_socket.connectToHost(url().host(), port); }, Qt::QueuedConnection);
}

BoundedReply::~BoundedReply()
{
    m_socket.disconnect(this); // it tells of its end
}

void BoundedReply::abort()
{
    if (!isFinished())
        finish(OperationCanceledError, QStringLiteral("Operation canceled"));
}

qint64 BoundedReply::bytesAvailable() const
{
    const bool isWhole = m_answer.state() == HttpAnswer::State::Complete;
    return QNetworkReply::bytesAvailable() + (isWhole ? body().size() - m_readPosition : 0);
}

qint64 BoundedReply::readData(char *data, qint64 maximumSize)
{
    const int count = static_cast<int>(qMin<qint64>(maximumSize, body().size() - m_readPosition));
    std::copy_n(body().constData() + m_readPosition, count, data);
    m_readPosition += count;
    return count > 0 || !isFinished() ? count : -1;
}

void BoundedReply::sendRequest()
{
    m_socket.write(requestHead(url()));
}

void BoundedReply::takeSlice()
{
    if (isFinished())
        return;
    const int bodySize = body().size();
    m_answer.take(m_socket.read(sliceSize));
    look();
    if (isFinished())
        return;
    if (body().size() != bodySize)
        emit readyRead();
    if (m_socket.bytesAvailable() > 0)
        QMetaObject::invokeMethod(this, "takeSlice", Qt::QueuedConnection);
}

void BoundedReply::handleDisconnection()
{
    // The end may come with the last bytes, of which there is at most one slice.
    while (!isFinished() && m_socket.bytesAvailable() > 0) {
        m_answer.take(m_socket.read(sliceSize));
        look();
    }
    m_answer.close();
    look();
}

void BoundedReply::handleSocketError(QAbstractSocket::SocketError socketError)
{
    if (socketError != QAbstractSocket::RemoteHostClosedError && !isFinished())
        finish(UnknownNetworkError, m_socket.errorString());
}

void BoundedReply::look()
{
    constexpr int firstErrorStatus = 400;
    if (isFinished() || m_answer.state() == HttpAnswer::State::Open)
        return;
    setAttribute(QNetworkRequest::HttpStatusCodeAttribute, m_answer.status());
    if (m_answer.state() == HttpAnswer::State::Failed)
        finish(ProtocolFailure, QStringLiteral("The answer is broken or too long"));
    else if (m_answer.status() >= firstErrorStatus)
        finish(UnknownContentError,
               QStringLiteral("The server answered with status %1").arg(m_answer.status()));
    else
        finish(NoError, QString());
}

void BoundedReply::finish(QNetworkReply::NetworkError code, const QString &reason)
{
    if (code != NoError)
        setError(code, reason);
    setFinished(true);
    m_socket.abort();
    QMetaObject::invokeMethod(this, "finished", Qt::QueuedConnection);
}
