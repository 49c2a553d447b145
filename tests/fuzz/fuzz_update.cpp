// SPDX-License-Identifier: MIT
// Update servers: names of hosts, and answers of any content. No network is used.
#include "bytereader.h"

#include <update/componentupdatechecker.h>
#include <update/updateserver.h>

#include <QCoreApplication>
#include <QNetworkReply>
#include <QUrl>

#include <cstring>

namespace {

/*! An answer that has arrived. */
class Answer : public QNetworkReply
{
public:
    explicit Answer(const QByteArray &body)
        : m_body(body)
    {
        open(QIODevice::ReadOnly);
        setFinished(true);
    }

    void abort() override {}
    qint64 bytesAvailable() const override { return m_body.size() + QNetworkReply::bytesAvailable(); }

protected:
    qint64 readData(char *data, qint64 maximum) override
    {
        const int count = static_cast<int>(qMin<qint64>(maximum, m_body.size()));
        std::memcpy(data, m_body.constData(), static_cast<std::size_t>(count));
        m_body.remove(0, count);
        return count;
    }

private:
    QByteArray m_body;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, std::size_t size)
{
    static int argc = 1;
    static char name[] = "fuzz";
    static char *argv[] = {name, nullptr};
    static const QCoreApplication application(argc, argv);
    static ComponentUpdateChecker checker; // takes long to make, and keeps nothing of an answer

    const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<int>(size));
    const QString text = QString::fromUtf8(bytes);
    if (UpdateServer::isHost(text)) {
        const QUrl url(QStringLiteral("http://%1/versioninfo/").arg(text));
        require(url.isValid() && url.path() == QLatin1String("/versioninfo/") && url.userName().isEmpty());
    }

    QString info;
    const QObject receiver; // the connection ends with it
    QObject::connect(&checker, &ComponentUpdateChecker::updateInformation, &receiver,
                     [&info](quint32, quint32, quint32, const QString &received) { info = received; });
    Answer answer(bytes);
    checker.replyFinished(&answer);
    checker.replyFinished(&answer); // a second delivery finds the same
    const int end = bytes.indexOf('\0');
    require(info == QString::fromLatin1(end < 0 ? bytes : bytes.left(end)));
    return 0;
}
