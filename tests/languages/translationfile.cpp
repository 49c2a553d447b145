// SPDX-License-Identifier: MIT
#include "translationfile.h"

#include <QFile>
#include <QXmlStreamReader>

namespace {

void readTranslation(QXmlStreamReader &xml, TranslationMessage &message)
{
    message.type = xml.attributes().value(QLatin1String("type")).toString();
    if (!message.hasNumber) {
        message.translations.append(xml.readElementText());
        return;
    }
    while (xml.readNextStartElement())
        message.translations.append(xml.readElementText()); // <numerusform>
}

TranslationMessage readMessage(QXmlStreamReader &xml, const QString &context)
{
    TranslationMessage message;
    message.context = context;
    message.hasNumber = xml.attributes().value(QLatin1String("numerus")) == QLatin1String("yes");
    while (xml.readNextStartElement()) {
        if (xml.name() == QLatin1String("source"))
            message.source = xml.readElementText();
        else if (xml.name() == QLatin1String("comment"))
            message.comment = xml.readElementText();
        else if (xml.name() == QLatin1String("translatorcomment"))
            message.translatorComment = xml.readElementText();
        else if (xml.name() == QLatin1String("translation"))
            readTranslation(xml, message);
        else
            xml.skipCurrentElement();
    }
    return message;
}

void readContext(QXmlStreamReader &xml, QVector<TranslationMessage> &messages)
{
    QString name;
    while (xml.readNextStartElement()) {
        if (xml.name() == QLatin1String("name"))
            name = xml.readElementText();
        else if (xml.name() == QLatin1String("message"))
            messages.append(readMessage(xml, name));
        else
            xml.skipCurrentElement();
    }
}

} // namespace

QString TranslationMessage::key() const
{
    return context + QLatin1String(": ") + source
           + (comment.isEmpty() ? QString() : QStringLiteral(" (%1)").arg(comment));
}

QVector<TranslationMessage> readTranslationFile(const QString &path, QString *errorMessage)
{
    QVector<TranslationMessage> messages;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        *errorMessage = path + QLatin1String(": ") + file.errorString();
        return messages;
    }

    QXmlStreamReader xml(&file);
    if (xml.readNextStartElement() && xml.name() == QLatin1String("TS")) {
        while (xml.readNextStartElement()) {
            if (xml.name() == QLatin1String("context"))
                readContext(xml, messages);
            else
                xml.skipCurrentElement();
        }
    }
    if (xml.hasError()) {
        *errorMessage = QStringLiteral("%1:%2: %3").arg(path).arg(xml.lineNumber()).arg(xml.errorString());
        messages.clear();
    }
    return messages;
}
