// SPDX-License-Identifier: MIT
#include "mask.h"

#include <QMessageAuthenticationCode>
#include <QRandomGenerator>
#include <QtEndian>

#include <algorithm>
#include <array>

namespace {

constexpr int tokenDigits = 4;
constexpr int tokenBits = 16;
constexpr int mostBits = 64;
constexpr int mostAttempts = 1000; // then there are more secrets than tokens
constexpr int keyWords = 8;
constexpr int hexadecimalBase = 16;
const QLatin1String front("masked-");

/*! One form for all ways to write a secret. */
QByteArray formOf(const QString &secret)
{
    const QString text = secret.trimmed().toCaseFolded();
    bool isNumber = false;
    const quint64 number = text.toULongLong(&isNumber);
    return isNumber ? QByteArray::number(number) : text.toUtf8();
}

quint64 highestOf(int bits)
{
    return bits >= mostBits ? ~quint64(0) : (quint64(1) << bits) - 1;
}

} // namespace

Mask::Mask()
{
    std::array<quint32, keyWords> random{};
    QRandomGenerator::system()->generate(random.begin(), random.end());
    m_key = QByteArray(reinterpret_cast<const char *>(random.data()), sizeof random);
}

QByteArray Mask::digest(const QByteArray &secret, int attempt) const
{
    return QMessageAuthenticationCode::hash(QByteArray::number(attempt) + ' ' + secret, m_key,
                                            QCryptographicHash::Sha256);
}

QString Mask::tokenOf(const QByteArray &secret)
{
    const auto known = m_tokens.constFind(secret);
    if (known != m_tokens.constEnd())
        return *known;
    QString token;
    for (int attempt = 0; attempt < mostAttempts; ++attempt) {
        token = QString::fromLatin1(digest(secret, attempt).toHex().left(tokenDigits).toUpper());
        // A number that ends with 0000h or FFFFh might come to be one that says that there is none.
        const bool isUsable = token != QLatin1String("0000") && token != QLatin1String("FFFF");
        if (isUsable && !m_taken.contains(token))
            break;
    }
    m_taken.insert(token);
    m_tokens.insert(secret, token);
    return token;
}

QString Mask::word(const QString &secret)
{
    return front + tokenOf(formOf(secret));
}

quint64 Mask::number(quint64 secret, int bits)
{
    const quint64 highest = highestOf(bits);
    if (secret == 0 || secret == highest)
        return secret;
    const QByteArray form = QByteArray::number(secret);
    const quint64 token = tokenOf(form).toUInt(nullptr, hexadecimalBase);
    const auto random = qFromLittleEndian<quint64>(digest(form, 0).constData() + tokenDigits);
    const quint64 number = ((random << tokenBits) | token) & highest;
    return number != secret ? number : number ^ 1;
}

QString Mask::text(const QString &secret, int size)
{
    const QString token = tokenOf(formOf(secret));
    if (size <= tokenDigits)
        return token.right(size);
    const int letters = std::min(size - tokenDigits - 1, front.size() - 1);
    const QString text = QString(front).left(letters) + QLatin1Char('-') + token;
    return text.leftJustified(size, QLatin1Char('.'));
}
