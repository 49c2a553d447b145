// SPDX-License-Identifier: MIT
#include "bundlemessages.h"

#include <checkup/findingwords.h>

#include <algorithm>
#include <iterator>

namespace {

constexpr int mostMessages = 1000;
constexpr int longestMessage = 10000;
const QLatin1String indent("    ");
constexpr Severity severities[] = {Severity::Note, Severity::Warning, Severity::Fault};

std::optional<BundleMessage> messageOf(const QString &line)
{
    BundleMessage message;
    message.time = QDateTime::fromString(line.section(QLatin1Char(' '), 0, 0), Qt::ISODateWithMs);
    const QString rest = line.section(QLatin1Char(' '), 1);
    const QString word = rest.section(QLatin1String(": "), 0, 0);
    const auto *const severity
        = std::find_if(std::begin(severities), std::end(severities),
                       [&word](Severity known) { return FindingWords::of(known) == word; });
    if (!message.time.isValid() || severity == std::end(severities))
        return std::nullopt;
    message.severity = *severity;
    message.text = rest.section(QLatin1String(": "), 1).left(longestMessage);
    return message;
}

} // namespace

QByteArray BundleMessages::toText(const QVector<BundleMessage> &messages)
{
    QString text;
    for (const BundleMessage &message : messages) {
        QString lines = message.text;
        lines.remove(QLatin1Char('\r')).replace(QLatin1Char('\n'), QLatin1Char('\n') + indent);
        text += message.time.toString(Qt::ISODateWithMs) + QLatin1Char(' ')
                + FindingWords::of(message.severity) + QLatin1String(": ") + lines + QLatin1Char('\n');
    }
    return text.toUtf8();
}

QVector<BundleMessage> BundleMessages::fromText(const QByteArray &text)
{
    QVector<BundleMessage> messages;
    const QStringList lines = QString::fromUtf8(text).split(QLatin1Char('\n'));
    for (const QString &line : lines) {
        if (line.startsWith(indent) && !messages.isEmpty()) {
            QString &last = messages.last().text;
            if (last.size() < longestMessage)
                last += QLatin1Char('\n') + line.mid(indent.size()).left(longestMessage);
        } else if (const std::optional<BundleMessage> message = messageOf(line)) {
            if (messages.size() >= mostMessages)
                break;
            messages.append(*message);
        }
    }
    return messages;
}
