// SPDX-License-Identifier: MIT
#include "exchangefile.h"

#include "exchangescanner.h"
#include "markupguard.h"
#include "nodestore.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QTextStream>
#include <QXmlStreamReader>

namespace {

struct Tr
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

constexpr int maximumDepth = 256;      // of elements; an exchange file has 4 levels
constexpr int maximumNamespaces = 256; // declared in one document; an exchange file has none

/*! The end of the piece of about \a size characters that starts at \a start.
 *
 *  It is the start of a tag, so that the parser sees all that it looks at together in one piece. Half
 *  surrogate pairs, zeroes and byte order marks would be left out or taken for something else at the end of a
 *  piece.
 */
int chunkEnd(const QString &text, int start, int size)
{
    const auto isPlain = [](QChar character) {
        return !character.isSurrogate() && !character.isNull() && character != QChar(QChar::ByteOrderMark);
    };
    int end = start;
    do {
        end = text.indexOf(QLatin1Char('<'), end == start ? start + size : end + 1);
    } while (end > start && !isPlain(text.at(end - 1)));
    return end > start ? end : text.size();
}

QString hexadecimal(uint number, int digits)
{
    return QString::number(number, 16).rightJustified(digits, QLatin1Char('0'));
}

uint number(const QXmlStreamAttributes &attributes, const char *name)
{
    constexpr int automaticBase = 0;
    return attributes.value(QLatin1String(name)).toUInt(nullptr, automaticBase);
}

qlonglong signedNumber(const QXmlStreamAttributes &attributes, const char *name)
{
    constexpr int automaticBase = 0;
    return attributes.value(QLatin1String(name)).toLongLong(nullptr, automaticBase);
}

/*! Reads a document token by token without holding a second copy of it, and refuses what would never end. */
class ExchangeReader
{
public:
    ExchangeReader(const QString &text, int chunkSize)
        : m_text(text)
        , m_guard(text)
        , m_chunkSize(chunkSize)
    {
    }

    QXmlStreamReader &xml() { return m_xml; }

    /*! Whether nothing comes any more: the end of the document, an error, or something refused. */
    bool atEnd() const { return m_atEnd || m_refused; }

    bool isComplete() const { return !m_refused && !m_guard.isStopped() && !m_xml.hasError(); }

    /*! Whether the text was refused rather than wrong. */
    bool isRefused() const
    {
        return m_refused
               || (m_guard.isStopped() && m_xml.error() == QXmlStreamReader::PrematureEndOfDocumentError);
    }

    /*! Goes on to the next start or end of an element, the end of the document or an error. */
    void readNextTag();

private:
    bool resume();
    void feed();
    void checkStartTag();

    const QString &m_text;
    MarkupGuard m_guard;
    QXmlStreamReader m_xml;
    int m_chunkSize;
    int m_position = 0; // of the text not yet fed
    int m_depth = 0;
    int m_namespaces = 0;
    bool m_hasRoot = false;
    bool m_atEnd = false;
    bool m_refused = false;
};

void ExchangeReader::feed()
{
    const int end = m_guard.check(chunkEnd(m_text, m_position, m_chunkSize));
    m_xml.addData(QString::fromRawData(m_text.constData() + m_position, end - m_position));
    m_position = end;
}

/*! Gives the parser what it still misses. Returns false when there is no more, or when an error stopped it.
 */
bool ExchangeReader::resume()
{
    if (m_xml.hasError() && m_xml.error() != QXmlStreamReader::PrematureEndOfDocumentError)
        return false;
    if (m_xml.hasError() && !m_xml.atEnd())
        return true; // the parser reports the end of the piece before once more
    if (m_guard.isStopped() || m_position == m_text.size())
        return false;
    feed();
    return true;
}

void ExchangeReader::readNextTag()
{
    if (m_position == 0)
        feed();
    while (true) {
        switch (m_xml.readNext()) {
        case QXmlStreamReader::StartElement:
            checkStartTag();
            return;
        case QXmlStreamReader::EndElement:
            --m_depth;
            return;
        case QXmlStreamReader::DTD:
            // Not every version of the parser objects to a document type inside the document.
            m_refused = m_hasRoot;
            if (m_refused)
                return;
            break;
        case QXmlStreamReader::EndDocument:
        case QXmlStreamReader::Invalid:
            m_atEnd = !resume();
            if (m_atEnd)
                return;
            break;
        default:
            break;
        }
    }
}

void ExchangeReader::checkStartTag()
{
    m_hasRoot = true;
    ++m_depth;
    m_namespaces += m_xml.namespaceDeclarations().size();
    m_refused = m_depth > maximumDepth || m_namespaces > maximumNamespaces;
}

bool writeText(QFileDevice &file, const QString &text)
{
    QTextStream stream(&file);
    for (int start = 0; start < text.size();) {
        const int end = chunkEnd(text, start, exchangeChunkSize);
        stream << text.midRef(start, end - start);
        start = end;
    }
    stream.flush();
    return stream.status() == QTextStream::Ok && file.flush();
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
    store.clear();
    store.clearNodeList();

    quint8 nodeId = 1;
    ExchangeReader reader(text, chunkSize);
    while (!reader.atEnd()) {
        reader.readNextTag();
        // Deliberate: ends of elements count like starts without attributes, so that each </node> lists a
        // node 0 and each closed object is followed by the value 0 of object 0000h.
        const QXmlStreamReader &xml = reader.xml();
        if (xml.name() == QLatin1String("node")) {
            nodeId = static_cast<quint8>(number(xml.attributes(), "nodeid") & 0xFF);
            store.appendNode(nodeId);
        } else if (xml.name() == QLatin1String("object")) {
            const QXmlStreamAttributes attributes = xml.attributes();
            const auto index = static_cast<quint16>(number(attributes, "index") & 0xFFFF);
            const auto subIndex = static_cast<quint8>(number(attributes, "sub") & 0xFF);
            store.setValue(nodeId, index, subIndex, QVariant(signedNumber(attributes, "value")));
        }
    }
    return reader.isComplete();
}

QString exchangeProblem(const QString &text)
{
    bool hasNode = false;
    ExchangeReader reader(text, exchangeChunkSize);
    while (!reader.atEnd()) {
        reader.readNextTag();
        hasNode = hasNode || (reader.xml().isStartElement() && reader.xml().name() == QLatin1String("node"));
    }

    const QXmlStreamReader &xml = reader.xml();
    if (reader.isRefused()) {
        return Tr::tr(
                   "The file is not an exchange file: line %1, column %2 holds XML that exchange files never "
                   "have (entities, or far too many attributes, levels or namespaces).")
            .arg(xml.lineNumber())
            .arg(xml.columnNumber());
    }
    if (xml.hasError()) {
        return Tr::tr("The file is not XML, or not complete: line %1, column %2: %3")
            .arg(QString::number(xml.lineNumber()), QString::number(xml.columnNumber()), xml.errorString());
    }
    if (!hasNode)
        return Tr::tr("There is no node in the file.");
    return QString();
}

bool saveExchangeFile(const QString &fileName, const QString &text, QString *errorMessage)
{
    // What is there and is no file, a pipe for instance, is written to and not replaced.
    const QFileInfo existing(fileName);
    const bool isReplaced = !existing.exists() || existing.isFile() || existing.isDir();
    QSaveFile newFile(fileName);
    QFile openEnd(fileName);
    QFileDevice &file = isReplaced ? static_cast<QFileDevice &>(newFile) : openEnd;

    bool isWritten = file.open(QIODevice::WriteOnly | QIODevice::Text) && writeText(file, text);
    if (isReplaced)
        isWritten = isWritten && newFile.commit();
    if (!isWritten && errorMessage != nullptr) {
        *errorMessage = Tr::tr("The file %1 cannot be written: %2.")
                            .arg(QDir::toNativeSeparators(fileName), file.errorString());
    }
    return isWritten;
}

bool loadExchangeFile(const QString &fileName, QString &text, QString *errorMessage)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        if (errorMessage != nullptr) {
            *errorMessage = Tr::tr("The file %1 cannot be read: %2.")
                                .arg(QDir::toNativeSeparators(fileName), file.errorString());
        }
        return false;
    }
    QTextStream stream(&file);
    text = stream.readAll();
    return true;
}
