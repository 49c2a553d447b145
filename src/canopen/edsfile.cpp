// SPDX-License-Identifier: MIT
#include "edsfile.h"

#include <QFile>
#include <QHash>
#include <QMap>
#include <QtEndian>

#include <cmath>
#include <cstring>
#include <limits>

namespace CanOpen {

namespace {

// Bounds against hostile files; real ones stay far below.
constexpr int maximumFileSize = 8 * 1024 * 1024; // bytes
constexpr int maximumLineLength = 64 * 1024;     // bytes
constexpr int maximumItems = 500000;             // sections and keys in all
constexpr quint16 firstObjectIndex = 0x0020;     // below are the definitions of the static data types

enum class ObjectType { Null = 0, Domain = 2, DefType = 5, DefStruct = 6, Var = 7, Array = 8, Record = 9 };

struct AccessName
{
    const char *name;
    Access access;
};

// rwr and rww tell the direction of PDO mapping only.
constexpr AccessName accessNames[] = {
    {"ro", Access::ReadOnly},   {"wo", Access::WriteOnly},  {"rw", Access::ReadWrite},
    {"rwr", Access::ReadWrite}, {"rww", Access::ReadWrite}, {"const", Access::Constant},
};

struct Field
{
    QString value;
    int line = 0;
};

struct Section
{
    QString name; // as written
    int line = 0;
    QHash<QString, Field> fields; // by key in lower case

    const Field *find(const char *key) const
    {
        const auto field = fields.constFind(QLatin1String(key));
        return field != fields.constEnd() ? &field.value() : nullptr;
    }
};

QString decodeText(const QByteArray &bytes)
{
    const QString text = QString::fromUtf8(bytes);
    return text.contains(QChar::ReplacementCharacter) ? QString::fromLatin1(bytes) : text;
}

QString hexIndex(quint16 index)
{
    return QString::number(index, 16).toUpper().rightJustified(4, QLatin1Char('0'));
}

/*! Whether \a text is hexadecimal digits only; QString's own conversions take blanks, signs and 0x as well.
 */
bool isHexNumber(const QString &text)
{
    for (const QChar character : text) {
        const bool isHex = (character >= QLatin1Char('0') && character <= QLatin1Char('9'))
                           || (character >= QLatin1Char('a') && character <= QLatin1Char('f'))
                           || (character >= QLatin1Char('A') && character <= QLatin1Char('F'));
        if (!isHex)
            return false;
    }
    return !text.isEmpty();
}

/*! A number of CiA 306 without sign: 0x.. hexadecimal, leading 0 octal, else decimal. */
std::optional<quint64> parseMagnitude(const QString &text)
{
    int base = 10;
    QString digits = text;
    if (text.startsWith(QLatin1String("0x"), Qt::CaseInsensitive)) {
        base = 16;
        digits = text.mid(2);
    } else if (text.size() > 1 && text.startsWith(QLatin1Char('0'))) {
        base = 8;
        digits = text.mid(1);
    }
    if (!isHexNumber(digits))
        return std::nullopt;
    bool isNumber = false;
    const quint64 number = digits.toULongLong(&isNumber, base);
    return isNumber ? std::optional<quint64>(number) : std::nullopt;
}

/*! One term or a sum with `$NODEID`; arithmetic wraps as the bus' unsigned values do. */
struct Number
{
    quint64 magnitude = 0;
    bool isNegative = false;
};

std::optional<Number> parseNumber(QString text, quint8 nodeId)
{
    static const QString nodeIdName = QStringLiteral("$NODEID");
    text = text.trimmed();

    const int position = text.indexOf(nodeIdName, 0, Qt::CaseInsensitive);
    if (position >= 0) {
        QString rest = text;
        rest.remove(position, nodeIdName.size());
        rest = rest.trimmed();
        if (rest.isEmpty())
            return Number{nodeId, false};
        const bool isInFront = position == 0 && rest.startsWith(QLatin1Char('+'));
        const bool isBehind = position > 0 && rest.endsWith(QLatin1Char('+'));
        if (!isInFront && !isBehind)
            return std::nullopt;
        const QString summand = isInFront ? rest.mid(1) : rest.left(rest.size() - 1);
        const std::optional<quint64> number = parseMagnitude(summand.trimmed());
        if (!number || *number > std::numeric_limits<quint64>::max() - nodeId)
            return std::nullopt;
        return Number{*number + nodeId, false};
    }

    const bool isNegative = text.startsWith(QLatin1Char('-'));
    const bool hasSign = isNegative || text.startsWith(QLatin1Char('+'));
    const std::optional<quint64> number = parseMagnitude(hasSign ? text.mid(1) : text);
    if (!number)
        return std::nullopt;
    return Number{*number, isNegative && *number != 0};
}

bool isSigned(DataType type)
{
    return type == DataType::Integer8 || type == DataType::Integer16 || type == DataType::Integer32
           || type == DataType::Integer64;
}

bool isReal(DataType type)
{
    return type == DataType::Real32 || type == DataType::Real64;
}

/*! \a number in \a type's bits, or nothing when it does not fit. Signed values may be written in two's
 *  complement.
 */
std::optional<quint64> fitInteger(DataType type, const Number &number)
{
    if (type == DataType::Boolean)
        return !number.isNegative && number.magnitude <= 1 ? std::optional<quint64>(number.magnitude)
                                                           : std::nullopt;
    const int bits = 8 * byteSize(type);
    const quint64 highest = bits == 64 ? std::numeric_limits<quint64>::max() : (quint64(1) << bits) - 1;
    if (!number.isNegative)
        return number.magnitude <= highest ? std::optional<quint64>(number.magnitude) : std::nullopt;
    if (!isSigned(type) || number.magnitude > quint64(1) << (bits - 1))
        return std::nullopt;
    return (~number.magnitude + 1) & highest;
}

/*! The bits of fitInteger() as a number with its sign; nothing for what a qint64 cannot hold. */
std::optional<qint64> toSigned(DataType type, quint64 bitsOfValue)
{
    if (!isSigned(type))
        return bitsOfValue <= quint64(std::numeric_limits<qint64>::max())
                   ? std::optional<qint64>(static_cast<qint64>(bitsOfValue))
                   : std::nullopt;
    const int shift = 64 - 8 * byteSize(type);
    return static_cast<qint64>(bitsOfValue << shift) >> shift;
}

QByteArray littleEndian(quint64 number, int bytes)
{
    char buffer[8];
    qToLittleEndian(number, buffer);
    return QByteArray(buffer, bytes);
}

/*! REAL values are written as decimal fractions or as the bits of the number (0x..). */
std::optional<QByteArray> encodeReal(DataType type, const QString &text)
{
    if (text.startsWith(QLatin1String("0x"), Qt::CaseInsensitive)) {
        const std::optional<quint64> bits = parseMagnitude(text);
        if (!bits || (type == DataType::Real32 && *bits > std::numeric_limits<quint32>::max()))
            return std::nullopt;
        return littleEndian(*bits, byteSize(type));
    }
    bool isNumber = false;
    const double number = text.toDouble(&isNumber);
    if (!isNumber || !std::isfinite(number))
        return std::nullopt;
    if (type == DataType::Real64) {
        quint64 bits = 0;
        std::memcpy(&bits, &number, sizeof bits);
        return littleEndian(bits, 8);
    }
    if (std::abs(number) > double(std::numeric_limits<float>::max()))
        return std::nullopt;
    const float single = static_cast<float>(number);
    quint32 bits = 0;
    std::memcpy(&bits, &single, sizeof bits);
    return littleEndian(bits, 4);
}

/*! Bytes written as pairs of hexadecimal digits, blanks between them or not. */
std::optional<QByteArray> encodeBytes(const QString &text)
{
    QByteArray digits;
    for (const QChar character : text) {
        if (character.isSpace())
            continue;
        const char digit = character.toLatin1();
        const bool isHex = (digit >= '0' && digit <= '9') || (digit >= 'a' && digit <= 'f')
                           || (digit >= 'A' && digit <= 'F');
        if (!isHex)
            return std::nullopt;
        digits.append(digit);
    }
    if (digits.size() % 2 != 0)
        return std::nullopt;
    return QByteArray::fromHex(digits);
}

std::optional<QByteArray> encodeText(DataType type, const QString &text, quint8 nodeId)
{
    switch (type) {
    case DataType::VisibleString:
        return encodeValue(type, text);
    case DataType::UnicodeString: {
        QByteArray data;
        for (const QChar character : text)
            data.append(littleEndian(character.unicode(), 2));
        return data;
    }
    case DataType::OctetString:
    case DataType::Domain:
        return encodeBytes(text);
    default:
        break;
    }
    if (isReal(type))
        return encodeReal(type, text);
    const std::optional<Number> number = parseNumber(text, nodeId);
    const std::optional<quint64> bits = number ? fitInteger(type, *number) : std::nullopt;
    return bits ? std::optional<QByteArray>(littleEndian(*bits, byteSize(type))) : std::nullopt;
}

QString typeName(DataType type)
{
    switch (type) {
    case DataType::Boolean:
        return QStringLiteral("BOOLEAN");
    case DataType::Integer8:
        return QStringLiteral("INTEGER8");
    case DataType::Integer16:
        return QStringLiteral("INTEGER16");
    case DataType::Integer32:
        return QStringLiteral("INTEGER32");
    case DataType::Integer64:
        return QStringLiteral("INTEGER64");
    case DataType::Unsigned8:
        return QStringLiteral("UNSIGNED8");
    case DataType::Unsigned16:
        return QStringLiteral("UNSIGNED16");
    case DataType::Unsigned32:
        return QStringLiteral("UNSIGNED32");
    case DataType::Unsigned64:
        return QStringLiteral("UNSIGNED64");
    case DataType::Real32:
        return QStringLiteral("REAL32");
    case DataType::Real64:
        return QStringLiteral("REAL64");
    case DataType::VisibleString:
        return QStringLiteral("VISIBLE_STRING");
    case DataType::OctetString:
        return QStringLiteral("OCTET_STRING");
    case DataType::UnicodeString:
        return QStringLiteral("UNICODE_STRING");
    case DataType::Domain:
        return QStringLiteral("DOMAIN");
    }
    return QString();
}

/*! Reads the sections first and makes the objects from them, so that their order in the file does not matter.
 */
class EdsParser
{
public:
    explicit EdsParser(quint8 nodeId)
        : m_nodeId(nodeId)
    {
    }

    std::optional<EdsFile> parse(const QByteArray &text);
    QString errorMessage() const { return m_error; }

private:
    bool fail(int line, const QString &problem);
    bool fail(const Section &section, const Field &field, const char *key, const QString &problem);

    bool readLines(const QByteArray &text);
    bool readLine(QByteArray line, int number);
    bool readSectionHead(const QByteArray &line, int number);
    bool readField(const QByteArray &line, int number);

    bool readDevice();
    bool checkObjectLists();
    bool readObjects();
    bool readSubObjects();
    bool readObject(quint16 index, const Section &section);
    bool readCompactSubObjects(quint16 index, const Section &section, const Field &count);
    bool readEntry(ObjectKey key, const Section &section, std::optional<DataType> typeOfDomain);
    bool readAttributes(const Section &section, ObjectEntry *entry, std::optional<DataType> typeOfDomain);
    bool readValue(const Section &section, ObjectEntry *entry);
    bool readLimit(const Section &section, const char *key, DataType type, std::optional<qint64> *limit);

    const Section *namedSection(const QString &name) const;

    quint8 m_nodeId;
    QString m_error;
    QHash<QString, Section> m_sections; // by name in lower case
    Section *m_current = nullptr;
    int m_items = 0;                       // sections and keys read so far
    QMap<quint16, QString> m_objects;      // names of the sections [XXXX]
    QMap<ObjectKey, QString> m_subObjects; // names of the sections [XXXXsubY]
    EdsFile m_file;
};

bool EdsParser::fail(int line, const QString &problem)
{
    m_error = QStringLiteral("line %1%2").arg(line).arg(problem);
    return false;
}

bool EdsParser::fail(const Section &section, const Field &field, const char *key, const QString &problem)
{
    // A hostile value is not repeated in full.
    QString shown = problem;
    if (shown.size() > 200)
        shown = shown.left(200) + QStringLiteral("...");
    return fail(field.line, QStringLiteral(", [") + section.name + QStringLiteral("] ") + QLatin1String(key)
                                + QStringLiteral(": ") + shown);
}

const Section *EdsParser::namedSection(const QString &name) const
{
    const auto section = m_sections.constFind(name);
    return section != m_sections.constEnd() ? &section.value() : nullptr;
}

bool EdsParser::readLines(const QByteArray &text)
{
    int number = 0;
    int start = text.startsWith("\xEF\xBB\xBF") ? 3 : 0;
    while (start < text.size()) {
        ++number;
        int end = text.indexOf('\n', start);
        if (end < 0)
            end = text.size();
        if (end - start > maximumLineLength)
            return fail(number, QStringLiteral(" is longer than %1 bytes").arg(maximumLineLength));
        if (!readLine(text.mid(start, end - start), number))
            return false;
        start = end + 1;
    }
    return true;
}

bool EdsParser::readLine(QByteArray line, int number)
{
    if (line.contains('\0'))
        return fail(number, QStringLiteral(" has a NUL byte; this is no text file"));
    line = line.trimmed();
    if (line.isEmpty() || line.startsWith(';'))
        return true;
    if (++m_items > maximumItems)
        return fail(number,
                    QStringLiteral(": the file has more than %1 sections and keys").arg(maximumItems));
    return line.startsWith('[') ? readSectionHead(line, number) : readField(line, number);
}

bool EdsParser::readSectionHead(const QByteArray &line, int number)
{
    const int end = line.indexOf(']');
    if (end < 0)
        return fail(number, QStringLiteral(": the section's name has no closing bracket"));
    const QByteArray behind = line.mid(end + 1).trimmed();
    if (!behind.isEmpty() && !behind.startsWith(';'))
        return fail(number, QStringLiteral(": there is text behind the section's name"));

    Section section;
    section.name = decodeText(line.mid(1, end - 1).trimmed());
    section.line = number;
    if (section.name.isEmpty() || section.name.size() > 80)
        return fail(number, QStringLiteral(": the section's name has no length between 1 and 80"));
    const QString key = section.name.toLower();
    if (const Section *first = namedSection(key))
        return fail(number, QStringLiteral(", [") + section.name
                                + QStringLiteral("] is there twice, first in line %1").arg(first->line));

    if (key.size() == 4 && isHexNumber(key)) {
        m_objects.insert(key.toUShort(nullptr, 16), key);
    } else if (isHexNumber(key.left(4)) && key.midRef(4, 3) == QLatin1String("sub")) {
        const QString digits = key.mid(7);
        if (digits.size() > 2 || !isHexNumber(digits))
            return fail(number, QStringLiteral(", [") + section.name
                                    + QStringLiteral("]: the sub-index is no number from 0 to FF"));
        const ObjectKey objectKey{key.left(4).toUShort(nullptr, 16),
                                  static_cast<quint8>(digits.toUShort(nullptr, 16))};
        if (m_subObjects.contains(objectKey))
            return fail(number, QStringLiteral(", [") + section.name + QStringLiteral("] is there twice"));
        m_subObjects.insert(objectKey, key);
    }
    m_current = &*m_sections.insert(key, section);
    return true;
}

bool EdsParser::readField(const QByteArray &line, int number)
{
    if (m_current == nullptr)
        return fail(number, QStringLiteral(": there is text before the first section"));
    const int equals = line.indexOf('=');
    const QByteArray key = equals > 0 ? line.left(equals).trimmed() : QByteArray();
    if (key.isEmpty())
        return fail(number, QStringLiteral(", [") + m_current->name
                                + QStringLiteral("]: neither a section nor a key with a value"));
    const QString lowerKey = decodeText(key).toLower();
    if (m_current->fields.contains(lowerKey))
        return fail(number, QStringLiteral(", [") + m_current->name + QStringLiteral("] ")
                                + decodeText(key.left(80)) + QStringLiteral(": the key is there twice"));
    m_current->fields.insert(lowerKey, Field{decodeText(line.mid(equals + 1).trimmed()), number});
    return true;
}

bool EdsParser::readDevice()
{
    if (const Section *info = namedSection(QStringLiteral("deviceinfo"))) {
        if (const Field *name = info->find("productname"))
            m_file.productName = name->value;
    }
    // CiA 306 spells the section with one m and one s less than the word has; both are met.
    const Section *device = namedSection(QStringLiteral("devicecomissioning"));
    if (device == nullptr)
        device = namedSection(QStringLiteral("devicecommissioning"));
    if (device == nullptr)
        return true;
    if (const Field *name = device->find("nodename"))
        m_file.nodeName = name->value;
    const Field *id = device->find("nodeid");
    if (id == nullptr || id->value.isEmpty())
        return true;
    const std::optional<quint64> number = parseMagnitude(id->value);
    if (!number || *number < 1 || *number > 127)
        return fail(*device, *id, "NodeID", id->value + QStringLiteral(" is no node ID from 1 to 127"));
    m_file.nodeId = static_cast<quint8>(*number);
    if (m_nodeId == 0)
        m_nodeId = *m_file.nodeId;
    return true;
}

bool EdsParser::checkObjectLists()
{
    for (const QLatin1String name : {QLatin1String("mandatoryobjects"), QLatin1String("optionalobjects"),
                                     QLatin1String("manufacturerobjects")}) {
        const Section *list = namedSection(name);
        if (list == nullptr)
            continue;
        // The numbered keys that are there are walked, not as many as SupportedObjects promises.
        for (auto field = list->fields.constBegin(); field != list->fields.constEnd(); ++field) {
            if (!parseMagnitude(field.key()))
                continue;
            const QByteArray key = field.key().left(40).toUtf8();
            const std::optional<quint64> index = parseMagnitude(field->value);
            if (!index || *index > 0xFFFF)
                return fail(*list, *field, key.constData(),
                            field->value + QStringLiteral(" is no index of an object"));
            if (!m_objects.contains(static_cast<quint16>(*index)))
                return fail(
                    *list, *field, key.constData(),
                    QStringLiteral("object %1 has no section").arg(hexIndex(static_cast<quint16>(*index))));
        }
    }
    return true;
}

bool EdsParser::readObjects()
{
    for (auto object = m_objects.constBegin(); object != m_objects.constEnd(); ++object) {
        if (object.key() >= firstObjectIndex && !readObject(object.key(), *namedSection(object.value())))
            return false;
    }
    return true;
}

bool EdsParser::readObject(quint16 index, const Section &section)
{
    ObjectType type = ObjectType::Var; // CiA 306: what a file means that does not say
    if (const Field *field = section.find("objecttype")) {
        const std::optional<quint64> code = parseMagnitude(field->value);
        if (!code || *code > 9 || *code == 1 || *code == 3 || *code == 4)
            return fail(section, *field, "ObjectType",
                        field->value + QStringLiteral(" is no object type of CiA 301"));
        type = static_cast<ObjectType>(*code);
    }

    if (const Field *count = section.find("compactsubobj")) {
        const std::optional<quint64> number = parseMagnitude(count->value);
        if (!number || *number > 0xFE)
            return fail(section, *count, "CompactSubObj",
                        count->value + QStringLiteral(" is no number of sub-indices from 0 to 254"));
        if (*number > 0)
            return readCompactSubObjects(index, section, *count);
    }

    switch (type) {
    case ObjectType::Var:
        return readEntry(ObjectKey{index, 0}, section, std::nullopt);
    case ObjectType::Domain:
        return readEntry(ObjectKey{index, 0}, section, DataType::Domain);
    case ObjectType::Array:
    case ObjectType::Record:
        break;
    case ObjectType::Null:
    case ObjectType::DefType:
    case ObjectType::DefStruct:
        return true;
    }

    if (const Field *count = section.find("subnumber")) {
        const std::optional<quint64> number = parseMagnitude(count->value);
        if (!number || *number > 0xFF)
            return fail(section, *count, "SubNumber",
                        count->value + QStringLiteral(" is no number of sub-indices from 0 to 255"));
        const auto firstSub = m_subObjects.lowerBound(ObjectKey{index, 0});
        if (*number > 0 && (firstSub == m_subObjects.constEnd() || firstSub.key().index != index))
            return fail(section, *count, "SubNumber",
                        QStringLiteral("there is no section [%1sub0]").arg(hexIndex(index)));
    }
    return true;
}

bool EdsParser::readSubObjects()
{
    for (auto sub = m_subObjects.constBegin(); sub != m_subObjects.constEnd(); ++sub) {
        const Section &section = *namedSection(sub.value());
        const auto object = m_objects.constFind(sub.key().index);
        if (object == m_objects.constEnd())
            return fail(section.line,
                        QStringLiteral(", [") + section.name
                            + QStringLiteral("]: there is no section [%1]").arg(hexIndex(sub.key().index)));
        if (sub.key().index < firstObjectIndex)
            continue;
        const Section &parent = *namedSection(object.value());
        const Field *typeField = parent.find("objecttype");
        const quint64 type = typeField != nullptr ? parseMagnitude(typeField->value).value_or(7) : 7;
        if (type != quint64(ObjectType::Array) && type != quint64(ObjectType::Record))
            return fail(section.line, QStringLiteral(", [") + section.name
                                          + QStringLiteral("]: object %1 is neither an array nor a record")
                                                .arg(hexIndex(sub.key().index)));
        if (!readEntry(sub.key(), section, std::nullopt))
            return false;
    }
    return true;
}

bool EdsParser::readCompactSubObjects(quint16 index, const Section &section, const Field &count)
{
    const quint8 subIndices = static_cast<quint8>(*parseMagnitude(count.value));
    ObjectEntry entry;
    if (!readAttributes(section, &entry, std::nullopt) || !readValue(section, &entry))
        return false;

    ObjectEntry numberOfEntries;
    numberOfEntries.name = QStringLiteral("NrOfObjects");
    numberOfEntries.type = DataType::Unsigned8;
    numberOfEntries.access = Access::ReadOnly;
    numberOfEntries.data = QByteArray(1, static_cast<char>(subIndices));
    m_file.dictionary.insert(ObjectKey{index, 0}, numberOfEntries);

    const QString digits = hexIndex(index).toLower();
    const Section *names = namedSection(digits + QStringLiteral("name"));
    const Section *values = namedSection(digits + QStringLiteral("value"));
    const QString objectName = entry.name;
    const QByteArray defaultData = entry.data;
    for (int subIndex = 1; subIndex <= subIndices; ++subIndex) {
        const QByteArray key = QByteArray::number(subIndex);
        const Field *name = names != nullptr ? names->find(key.constData()) : nullptr;
        entry.name = name != nullptr ? name->value : objectName + QString::number(subIndex);
        entry.data = defaultData;
        if (const Field *value = values != nullptr ? values->find(key.constData()) : nullptr) {
            const std::optional<QByteArray> data = encodeText(entry.type, value->value, m_nodeId);
            if (!data)
                return fail(*values, *value, key.constData(),
                            value->value + QStringLiteral(" is no value of type ") + typeName(entry.type));
            entry.data = *data;
        }
        m_file.dictionary.insert(ObjectKey{index, static_cast<quint8>(subIndex)}, entry);
    }
    return true;
}

bool EdsParser::readEntry(ObjectKey key, const Section &section, std::optional<DataType> typeOfDomain)
{
    ObjectEntry entry;
    if (!readAttributes(section, &entry, typeOfDomain) || !readValue(section, &entry))
        return false;
    m_file.dictionary.insert(key, entry);
    return true;
}

bool EdsParser::readAttributes(const Section &section, ObjectEntry *entry,
                               std::optional<DataType> typeOfDomain)
{
    const Field *name = section.find("parametername");
    entry->name = name != nullptr ? name->value : QString();

    if (const Field *field = section.find("datatype")) {
        const std::optional<quint64> code = parseMagnitude(field->value);
        if (!code || *code > 0xFFFF || !isKnownDataType(static_cast<quint16>(*code)))
            return fail(section, *field, "DataType",
                        field->value + QStringLiteral(" is no data type of CiA 301"));
        entry->type = static_cast<DataType>(*code);
    } else if (typeOfDomain) {
        entry->type = *typeOfDomain;
    } else {
        return fail(section.line,
                    QStringLiteral(", [") + section.name + QStringLiteral("] DataType is missing"));
    }

    const Field *field = section.find("accesstype");
    if (field == nullptr && typeOfDomain) {
        entry->access = Access::ReadWrite;
    } else if (field == nullptr) {
        return fail(section.line,
                    QStringLiteral(", [") + section.name + QStringLiteral("] AccessType is missing"));
    } else {
        const AccessName *known = nullptr;
        for (const AccessName &candidate : accessNames) {
            if (field->value.compare(QLatin1String(candidate.name), Qt::CaseInsensitive) == 0)
                known = &candidate;
        }
        if (known == nullptr)
            return fail(section, *field, "AccessType",
                        field->value + QStringLiteral(" is none of ro, wo, rw, rwr, rww, const"));
        entry->access = known->access;
    }
    return readLimit(section, "LowLimit", entry->type, &entry->lowLimit)
           && readLimit(section, "HighLimit", entry->type, &entry->highLimit);
}

bool EdsParser::readValue(const Section &section, ObjectEntry *entry)
{
    const char *key = "ParameterValue";
    const Field *field = section.find("parametervalue");
    if (field == nullptr || field->value.isEmpty()) {
        key = "DefaultValue";
        field = section.find("defaultvalue");
    }
    if (field == nullptr || field->value.isEmpty()) {
        entry->data = QByteArray(byteSize(entry->type), '\0');
        return true;
    }
    const std::optional<QByteArray> data = encodeText(entry->type, field->value, m_nodeId);
    if (!data)
        return fail(section, *field, key,
                    field->value + QStringLiteral(" is no value of type ") + typeName(entry->type));
    entry->data = *data;
    return true;
}

bool EdsParser::readLimit(const Section &section, const char *key, DataType type,
                          std::optional<qint64> *limit)
{
    const Field *field = section.find(QByteArray(key).toLower().constData());
    // Limits of texts mean nothing, and those of REAL values are not checked.
    if (field == nullptr || field->value.isEmpty() || byteSize(type) == 0 || isReal(type))
        return true;
    const std::optional<Number> number = parseNumber(field->value, m_nodeId);
    const std::optional<quint64> bits = number ? fitInteger(type, *number) : std::nullopt;
    if (!bits)
        return fail(section, *field, key,
                    field->value + QStringLiteral(" is no value of type ") + typeName(type));
    *limit = toSigned(type, *bits);
    return true;
}

std::optional<EdsFile> EdsParser::parse(const QByteArray &text)
{
    if (text.size() > maximumFileSize) {
        m_error = QStringLiteral("the file is larger than %1 MB").arg(maximumFileSize / (1024 * 1024));
        return std::nullopt;
    }
    if (!readLines(text) || !readDevice() || !checkObjectLists() || !readObjects() || !readSubObjects())
        return std::nullopt;
    if (m_file.dictionary.isEmpty()) {
        m_error = QStringLiteral("the file describes no object");
        return std::nullopt;
    }
    return m_file;
}

} // namespace

std::optional<EdsFile> parseEds(const QByteArray &text, quint8 nodeId, QString *errorMessage)
{
    EdsParser parser(nodeId);
    std::optional<EdsFile> file = parser.parse(text);
    if (!file && errorMessage != nullptr)
        *errorMessage = parser.errorMessage();
    return file;
}

std::optional<EdsFile> readEdsFile(const QString &path, quint8 nodeId, QString *errorMessage)
{
    QFile file(path);
    QString problem;
    if (!file.open(QIODevice::ReadOnly)) {
        problem = file.errorString();
    } else {
        // One byte more than allowed shows that there is more, whatever the size says (a device file has
        // none).
        const QByteArray text = file.read(maximumFileSize + 1);
        if (file.error() != QFileDevice::NoError) {
            problem = file.errorString();
        } else if (std::optional<EdsFile> eds = parseEds(text, nodeId, &problem)) {
            return eds;
        }
    }
    if (errorMessage != nullptr)
        *errorMessage = path + QStringLiteral(": ") + problem;
    return std::nullopt;
}

} // namespace CanOpen
