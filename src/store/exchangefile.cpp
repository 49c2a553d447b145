// SPDX-License-Identifier: MIT
#include "exchangefile.h"

#include "exchangereader.h"
#include "exchangescanner.h"
#include "nodestore.h"
#include "wholefile.h"

#include <system/systemerrortext.h>

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QLocale>
#include <QRegularExpression>
#include <QTextStream>
#include <QXmlStreamReader>

namespace {

struct ExchangeFileTr
{
    Q_DECLARE_TR_FUNCTIONS(ExchangeFile)
};

// Deliberate: the blank before the first "=", and "pl_overwiew" in this spelling.
constexpr char declarationLine[] = "<?xml version =\"1.0\" encoding=\"UTF-8\" ?>\n";
constexpr char rootLine[] = "<dxtoolstorage pl_overwiew=\"1.0\" date=\"%1\">\n";
constexpr char nodesLine[] = "    <nodes>\n";
constexpr char nodeLine[] = "        <node nodeid=\"%1\">\n";
constexpr char objectLine[]
    = QT_TRANSLATE_NOOP("DataReader", "            <object index=\"0x%1\" sub=\"0x%2\" value=\"%3\" />\n");
constexpr char nodeEndLine[] = "        </node>\n";
constexpr char nodesEndLine[] = "    </nodes>\n";
constexpr char rootEndLine[] = "</dxtoolstorage>\n";

QString hexadecimal(uint number, int digits)
{
    return QString::number(number, 16).rightJustified(digits, QLatin1Char('0'));
}

qlonglong signedNumber(const QXmlStreamAttributes &attributes, const char *name)
{
    constexpr int automaticBase = 0;
    return attributes.value(QLatin1String(name)).toLongLong(nullptr, automaticBase);
}

bool isNode(const QXmlStreamReader &xml)
{
    return xml.isStartElement() && xml.name() == QLatin1String("node")
           && xml.attributes().hasAttribute(QLatin1String("nodeid"));
}

/*! What is wrong with a document that was read to its end or as far as it goes; empty when nothing is. */
QString problemOf(const ExchangeReader &reader, bool hasNode)
{
    const QXmlStreamReader &xml = reader.xml();
    const QString line = QString::number(xml.lineNumber());
    const QString column = QString::number(xml.columnNumber());
    switch (reader.refusal()) {
    case ExchangeReader::Refusal::Markup:
        return ExchangeFileTr::tr(
                   "The file is not an exchange file: line %1, column %2 holds XML that exchange files never "
                   "have (entities, or far too many attributes, levels or namespaces).")
            .arg(line, column);
    case ExchangeReader::Refusal::Nodes:
        return ExchangeFileTr::tr("The file lists far more nodes than a vehicle can have, the first one "
                                  "too many in line %1, column %2.")
            .arg(line, column);
    case ExchangeReader::Refusal::None:
        break;
    }
    if (xml.error() == QXmlStreamReader::PrematureEndOfDocumentError)
        return ExchangeFileTr::tr("The file is not complete: it ends in line %1, column %2.")
            .arg(line, column);
    if (xml.hasError())
        return ExchangeFileTr::tr("The file is not XML: line %1, column %2: %3")
            .arg(line, column, xml.errorString());
    return hasNode ? QString() : ExchangeFileTr::tr("There is no node in the file.");
}

/*! Replaces values and node list of \a store by those that \a reader comes to. Returns whether there is a node with an
 *  ID among them.
 */
bool importThrough(ExchangeReader &reader, NodeStore &store)
{
    store.clear();
    store.clearNodeList();

    quint8 nodeId = 1;
    bool hasNode = false;
    while (!reader.atEnd()) {
        reader.readNextTag();
        if (reader.refusal() != ExchangeReader::Refusal::None)
            break;
        // Deliberate: ends of elements count like starts without attributes, so that each </node> lists a
        // node 0 and each closed object is followed by the value 0 of object 0000h.
        const QXmlStreamReader &xml = reader.xml();
        if (xml.name() == QLatin1String("node")) {
            hasNode = hasNode || isNode(xml);
            nodeId = static_cast<quint8>(numberOf(xml.attributes(), "nodeid") & 0xFF);
            store.appendNode(nodeId);
        } else if (xml.name() == QLatin1String("object")) {
            const QXmlStreamAttributes attributes = xml.attributes();
            const auto index = static_cast<quint16>(numberOf(attributes, "index") & 0xFFFF);
            const auto subIndex = static_cast<quint8>(numberOf(attributes, "sub") & 0xFF);
            store.setValue(nodeId, index, subIndex, QVariant(signedNumber(attributes, "value")));
        }
    }
    return hasNode;
}

bool writeText(WholeFile &file, const QString &text)
{
    bool isWritten = true;
    for (int start = 0; isWritten && start < text.size();) {
        const int end = chunkEnd(text, start, exchangeChunkSize);
        QByteArray bytes;
        QTextStream(&bytes, QIODevice::WriteOnly) << text.midRef(start, end - start);
        isWritten = file.write(bytes);
        start = end;
    }
    return isWritten;
}

bool failed(QString *errorMessage, const QString &message)
{
    if (errorMessage != nullptr)
        *errorMessage = message;
    return false;
}

} // namespace

QString exportToText(const NodeStore &store, const QDateTime &date)
{
    // Longest line of an object with a 32-bit value; longer values make the text grow as they come.
    constexpr int objectLineLength = 70;
    int length = 256;
    for (const quint8 nodeId : store.nodeList())
        length += 64 + store.objects(nodeId).size() * objectLineLength;

    QString text;
    text.reserve(length);
    text += QLatin1String(declarationLine);
    text += QString::fromLatin1(rootLine).arg(date.toString(Qt::TextDate));
    text += QLatin1String(nodesLine);
    const QString objectTemplate = QCoreApplication::translate("DataReader", objectLine);
    for (const quint8 nodeId : store.nodeList()) {
        text += QString::fromLatin1(nodeLine).arg(nodeId);
        const ObjectMap &objects = store.objects(nodeId);
        for (auto entry = objects.constBegin(); entry != objects.constEnd(); ++entry) {
            // Deliberate: the value is not escaped.
            text += objectTemplate.arg(hexadecimal(entry.key().index, 4),
                                       hexadecimal(entry.key().subIndex, 2), entry->toString());
        }
        text += QLatin1String(nodeEndLine);
    }
    text += QLatin1String(nodesEndLine);
    text += QLatin1String(rootEndLine);
    return text;
}

bool importFrom(const QString &text, NodeStore &store)
{
    return importAsWritten(text, store) || importByParser(text, store);
}

bool importByParser(const QString &text, NodeStore &store, int chunkSize)
{
    ExchangeReader reader(text, chunkSize);
    importThrough(reader, store);
    return reader.isComplete();
}

QString importChecked(const QString &text, NodeStore &store)
{
    // As it is written, a file has no fault but that it may be empty; the parser takes far longer.
    if (importAsWritten(text, store) && !store.nodeList().isEmpty())
        return QString();
    ExchangeReader reader(text, exchangeChunkSize);
    const bool hasNode = importThrough(reader, store);
    return problemOf(reader, hasNode);
}

QString exchangeProblem(const QString &text)
{
    NodeStore store;
    return importChecked(text, store);
}

QDateTime exchangeDate(const QString &text)
{
    constexpr int headLength = 1000; // the date stands in the first tag
    static const QRegularExpression date(QStringLiteral("<dxtoolstorage[^>]* date=\"([^\"]*)\""));
    const QRegularExpressionMatch match = date.match(text.left(headLength));
    // As the export writes it: English day and month.
    return match.hasMatch()
               ? QLocale::c().toDateTime(match.captured(1), QStringLiteral("ddd MMM d HH:mm:ss yyyy"))
               : QDateTime();
}

bool saveExchangeFile(const QString &fileName, const QString &text, QString *errorMessage)
{
    WholeFile file(fileName);
    if (file.open(QIODevice::Text) && writeText(file, text) && file.commit())
        return true;
    return failed(errorMessage,
                  ExchangeFileTr::tr("The file %1 cannot be written: %2.")
                      .arg(QDir::toNativeSeparators(fileName), systemErrorText(file.errorString())));
}

bool loadExchangeFile(const QString &fileName, QString &text, QString *errorMessage)
{
    const QString shownName = QDir::toNativeSeparators(fileName);
    QFile file(fileName);
    QString content;
    if (file.open(QIODevice::ReadOnly | QIODevice::Text))
        content = QTextStream(&file).read(maximumExchangeFileSize + 1);
    if (file.error() != QFileDevice::NoError) {
        return failed(errorMessage, ExchangeFileTr::tr("The file %1 cannot be read: %2.")
                                        .arg(shownName, systemErrorText(file.errorString())));
    }
    if (content.size() > maximumExchangeFileSize)
        return failed(
            errorMessage,
            ExchangeFileTr::tr("The file %1 is far too large for an exchange file.").arg(shownName));
    text = content;
    return true;
}
