// SPDX-License-Identifier: MIT
#include "edsfile.h"

#include "edsvalue.h"
#include "hexadecimal.h"
#include "inifile.h"

#include <QFile>
#include <QMap>

namespace CanOpen {

namespace {

using Field = IniFile::Field;
using Section = IniFile::Section;

constexpr int longestEmergencyText = 200;    // characters
constexpr quint16 firstObjectIndex = 0x0020; // below are the definitions of the static data types

enum class ObjectType { Null = 0, Domain = 2, DefType = 5, DefStruct = 6, Var = 7, Array = 8, Record = 9 };

constexpr ObjectType typeNotSaid = ObjectType::Var; // CiA 306

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

/*! Makes the objects from the sections, whatever their order in the file. */
class EdsParser
{
public:
    EdsParser(const IniFile &ini, quint8 nodeId)
        : m_ini(ini)
        , m_nodeId(nodeId)
    {
    }

    std::optional<EdsFile> parse();
    QString errorMessage() const { return m_error; }

private:
    bool fail(const Section &section, const QString &problem);
    bool failAtKey(const Section &section, const QString &key, int line, const QString &problem);
    bool fail(const Section &section, const Field &field, const char *key, const QString &problem);

    bool readDevice();
    bool readEmergencyTexts();
    bool listObjects();
    bool listSubObject(const Section &section);
    bool checkObjectLists();
    bool checkObjectList(const Section &list);
    bool readObjects();
    bool readSubObjects();
    bool readObject(quint16 index, const Section &section);
    bool readObjectType(const Section &section, ObjectType *type);
    bool checkSubNumber(quint16 index, const Section &section);
    bool readCompactSubObjects(quint16 index, const Section &section, quint8 subIndices);
    bool readEntry(ObjectKey key, const Section &section, std::optional<DataType> typeOfDomain);
    bool readAttributes(const Section &section, ObjectEntry *entry, std::optional<DataType> typeOfDomain);
    bool readType(const Section &section, DataType *type, std::optional<DataType> typeOfDomain);
    bool readAccess(const Section &section, Access *access, bool isDomain);
    bool readValue(const Section &section, ObjectEntry *entry);
    bool encodeField(const Section &section, const Field &field, const char *key, ObjectEntry *entry);
    bool readLimit(const Section &section, const char *key, DataType type, std::optional<qint64> *limit);

    const IniFile &m_ini;
    quint8 m_nodeId;
    QString m_error;
    QMap<quint16, const Section *> m_objects;      // the sections [XXXX]
    QMap<ObjectKey, const Section *> m_subObjects; // the sections [XXXXsubY]
    EdsFile m_file;
};

bool EdsParser::failAtKey(const Section &section, const QString &key, int line, const QString &problem)
{
    m_error = iniProblem(line, section.name, key, problem);
    return false;
}

bool EdsParser::fail(const Section &section, const QString &problem)
{
    return failAtKey(section, QString(), section.line, problem);
}

bool EdsParser::fail(const Section &section, const Field &field, const char *key, const QString &problem)
{
    return failAtKey(section, QLatin1String(key), field.line, field.value + QLatin1Char(' ') + problem);
}

bool EdsParser::readDevice()
{
    if (const Section *info = m_ini.find(QStringLiteral("deviceinfo"))) {
        if (const Field *name = info->find("productname"))
            m_file.productName = name->value;
    }
    // CiA 306 spells the section with one m and one s less than the word has; both are met.
    const Section *device = m_ini.find(QStringLiteral("devicecomissioning"));
    if (device == nullptr)
        device = m_ini.find(QStringLiteral("devicecommissioning"));
    if (device == nullptr)
        return true;
    if (const Field *name = device->find("nodename"))
        m_file.nodeName = name->value;
    const Field *id = device->find("nodeid");
    if (id == nullptr || id->value.isEmpty())
        return true;
    const std::optional<quint64> number = parseEdsNumber(id->value, 127);
    if (number.value_or(0) == 0)
        return fail(*device, *id, "NodeID", QStringLiteral("is no node ID from 1 to 127"));
    m_file.nodeId = static_cast<quint8>(*number);
    if (m_nodeId == 0)
        m_nodeId = *m_file.nodeId;
    return true;
}

bool EdsParser::readEmergencyTexts()
{
    const Section *texts = m_ini.find(QStringLiteral("emergencyerrorcodes"));
    if (texts == nullptr)
        return true;
    for (auto field = texts->fields.cbegin(); field != texts->fields.cend(); ++field) {
        const std::optional<quint64> code = parseEdsNumber(field.key(), 0xFFFF);
        if (!code)
            return failAtKey(*texts, field.key(), field->line, QStringLiteral("is no emergency error code"));
        if (!field->value.isEmpty())
            m_file.emergencyTexts.insert(static_cast<quint16>(*code),
                                         field->value.left(longestEmergencyText));
    }
    return true;
}

bool EdsParser::listObjects()
{
    for (const Section &section : m_ini.sections()) {
        const QString index = section.name.left(4);
        if (index.size() != 4 || !isHexNumber(index))
            continue;
        if (section.name.size() == 4)
            m_objects.insert(index.toUShort(nullptr, 16), &section);
        else if (section.name.mid(4, 3).compare(QLatin1String("sub"), Qt::CaseInsensitive) == 0
                 && !listSubObject(section))
            return false;
    }
    return true;
}

bool EdsParser::listSubObject(const Section &section)
{
    const QString digits = section.name.mid(7);
    if (digits.size() > 2 || !isHexNumber(digits))
        return fail(section, QStringLiteral("the sub-index is no number from 0 to FF"));
    const ObjectKey key{section.name.left(4).toUShort(nullptr, 16),
                        static_cast<quint8>(digits.toUShort(nullptr, 16))};
    if (const Section *first = m_subObjects.value(key))
        return fail(section,
                    QStringLiteral("the sub-index is there twice, first in line %1").arg(first->line));
    m_subObjects.insert(key, &section);
    return true;
}

bool EdsParser::checkObjectLists()
{
    for (const QLatin1String name : {QLatin1String("mandatoryobjects"), QLatin1String("optionalobjects"),
                                     QLatin1String("manufacturerobjects")}) {
        const Section *list = m_ini.find(name);
        if (list != nullptr && !checkObjectList(*list))
            return false;
    }
    return true;
}

bool EdsParser::checkObjectList(const Section &list)
{
    // The numbered keys that are there are walked, not as many as SupportedObjects promises.
    for (auto field = list.fields.constBegin(); field != list.fields.constEnd(); ++field) {
        if (!parseEdsNumber(field.key()))
            continue;
        const std::optional<quint64> index = parseEdsNumber(field->value, 0xFFFF);
        if (!index)
            return failAtKey(list, field.key(), field->line,
                             field->value + QStringLiteral(" is no index of an object"));
        if (!m_objects.contains(static_cast<quint16>(*index)))
            return failAtKey(
                list, field.key(), field->line,
                QStringLiteral("object %1 has no section").arg(hexadecimal(static_cast<quint16>(*index), 4)));
    }
    return true;
}

bool EdsParser::readObjects()
{
    for (auto object = m_objects.constBegin(); object != m_objects.constEnd(); ++object) {
        if (object.key() >= firstObjectIndex && !readObject(object.key(), *object.value()))
            return false;
    }
    return true;
}

bool EdsParser::readObjectType(const Section &section, ObjectType *type)
{
    const Field *field = section.find("objecttype");
    if (field == nullptr)
        return true;
    const std::optional<quint64> code = parseEdsNumber(field->value, 9);
    if (!code || *code == 1 || *code == 3 || *code == 4)
        return fail(section, *field, "ObjectType", QStringLiteral("is no object type of CiA 301"));
    *type = static_cast<ObjectType>(*code);
    return true;
}

bool EdsParser::readObject(quint16 index, const Section &section)
{
    ObjectType type = typeNotSaid;
    if (!readObjectType(section, &type))
        return false;

    if (const Field *count = section.find("compactsubobj")) {
        const std::optional<quint64> number = parseEdsNumber(count->value, 0xFE);
        if (!number)
            return fail(section, *count, "CompactSubObj",
                        QStringLiteral("is no number of sub-indices from 0 to 254"));
        if (*number > 0)
            return readCompactSubObjects(index, section, static_cast<quint8>(*number));
    }

    switch (type) {
    case ObjectType::Var:
        return readEntry(ObjectKey{index, 0}, section, std::nullopt);
    case ObjectType::Domain:
        return readEntry(ObjectKey{index, 0}, section, DataType::Domain);
    case ObjectType::Array:
    case ObjectType::Record:
        return checkSubNumber(index, section);
    case ObjectType::Null:
    case ObjectType::DefType:
    case ObjectType::DefStruct:
        break;
    }
    return true;
}

bool EdsParser::checkSubNumber(quint16 index, const Section &section)
{
    const Field *count = section.find("subnumber");
    if (count == nullptr)
        return true;
    const std::optional<quint64> number = parseEdsNumber(count->value, 0xFF);
    if (!number)
        return fail(section, *count, "SubNumber",
                    QStringLiteral("is no number of sub-indices from 0 to 255"));
    const auto firstSub = m_subObjects.lowerBound(ObjectKey{index, 0});
    if (*number > 0 && (firstSub == m_subObjects.constEnd() || firstSub.key().index != index))
        return failAtKey(section, QStringLiteral("SubNumber"), count->line,
                         QStringLiteral("there is no section [%1sub0]").arg(hexadecimal(index, 4)));
    return true;
}

bool EdsParser::readSubObjects()
{
    for (auto sub = m_subObjects.constBegin(); sub != m_subObjects.constEnd(); ++sub) {
        const Section &section = *sub.value();
        const quint16 index = sub.key().index;
        const Section *parent = m_objects.value(index);
        if (parent == nullptr)
            return fail(section, QStringLiteral("there is no section [%1]").arg(hexadecimal(index, 4)));
        if (index < firstObjectIndex)
            continue;
        ObjectType type = typeNotSaid;
        if (!readObjectType(*parent, &type))
            return false;
        if (type != ObjectType::Array && type != ObjectType::Record)
            return fail(
                section,
                QStringLiteral("object %1 is neither an array nor a record").arg(hexadecimal(index, 4)));
        if (!readEntry(sub.key(), section, std::nullopt))
            return false;
    }
    return true;
}

bool EdsParser::readCompactSubObjects(quint16 index, const Section &section, quint8 subIndices)
{
    ObjectEntry entry;
    if (!readAttributes(section, &entry, std::nullopt) || !readValue(section, &entry))
        return false;

    ObjectEntry numberOfEntries;
    numberOfEntries.name = QStringLiteral("NrOfObjects");
    numberOfEntries.type = DataType::Unsigned8;
    numberOfEntries.access = Access::ReadOnly;
    numberOfEntries.data = QByteArray(1, static_cast<char>(subIndices));
    m_file.dictionary.insert(ObjectKey{index, 0}, numberOfEntries);

    const QString digits = hexadecimal(index, 4).toLower();
    const Section *names = m_ini.find(digits + QStringLiteral("name"));
    const Section *values = m_ini.find(digits + QStringLiteral("value"));
    const ObjectEntry ordinary = entry;
    for (int subIndex = 1; subIndex <= subIndices; ++subIndex) {
        const QByteArray key = QByteArray::number(subIndex);
        const Field *name = names != nullptr ? names->find(key.constData()) : nullptr;
        entry.name = name != nullptr ? name->value : ordinary.name + QString::number(subIndex);
        entry.data = ordinary.data;
        const Field *value = values != nullptr ? values->find(key.constData()) : nullptr;
        if (value != nullptr && !encodeField(*values, *value, key.constData(), &entry))
            return false;
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
    return readType(section, &entry->type, typeOfDomain)
           && readAccess(section, &entry->access, typeOfDomain.has_value())
           && readLimit(section, "LowLimit", entry->type, &entry->lowLimit)
           && readLimit(section, "HighLimit", entry->type, &entry->highLimit);
}

bool EdsParser::readType(const Section &section, DataType *type, std::optional<DataType> typeOfDomain)
{
    const Field *field = section.find("datatype");
    if (field == nullptr && !typeOfDomain)
        return failAtKey(section, QStringLiteral("DataType"), section.line,
                         QStringLiteral("the key is missing"));
    if (field == nullptr) {
        *type = *typeOfDomain;
        return true;
    }
    const std::optional<quint64> code = parseEdsNumber(field->value, 0xFFFF);
    if (!code || !isKnownDataType(static_cast<quint16>(*code)))
        return fail(section, *field, "DataType", QStringLiteral("is no data type of CiA 301"));
    *type = static_cast<DataType>(*code);
    return true;
}

bool EdsParser::readAccess(const Section &section, Access *access, bool isDomain)
{
    const Field *field = section.find("accesstype");
    if (field == nullptr && !isDomain)
        return failAtKey(section, QStringLiteral("AccessType"), section.line,
                         QStringLiteral("the key is missing"));
    if (field == nullptr) {
        *access = Access::ReadWrite;
        return true;
    }
    for (const AccessName &candidate : accessNames) {
        if (field->value.compare(QLatin1String(candidate.name), Qt::CaseInsensitive) == 0) {
            *access = candidate.access;
            return true;
        }
    }
    return fail(section, *field, "AccessType", QStringLiteral("is none of ro, wo, rw, rwr, rww, const"));
}

bool EdsParser::readValue(const Section &section, ObjectEntry *entry)
{
    const char *key = "ParameterValue";
    const Field *field = section.find("parametervalue");
    if (field == nullptr || field->value.isEmpty()) {
        key = "DefaultValue";
        field = section.find("defaultvalue");
    }
    if (field != nullptr && !field->value.isEmpty())
        return encodeField(section, *field, key, entry);
    entry->data = QByteArray(byteSize(entry->type), '\0');
    return true;
}

bool EdsParser::encodeField(const Section &section, const Field &field, const char *key, ObjectEntry *entry)
{
    const std::optional<QByteArray> data = encodeEdsValue(entry->type, field.value, m_nodeId);
    if (!data)
        return fail(section, field, key, QStringLiteral("is no value of type ") + dataTypeName(entry->type));
    entry->data = *data;
    return true;
}

bool EdsParser::readLimit(const Section &section, const char *key, DataType type,
                          std::optional<qint64> *limit)
{
    const Field *field = section.find(QByteArray(key).toLower().constData());
    if (field == nullptr || field->value.isEmpty() || !hasEdsLimits(type))
        return true;
    return readEdsLimit(type, field->value, m_nodeId, limit)
           || fail(section, *field, key, QStringLiteral("is no value of type ") + dataTypeName(type));
}

std::optional<EdsFile> EdsParser::parse()
{
    if (!readDevice() || !readEmergencyTexts() || !listObjects() || !checkObjectLists() || !readObjects()
        || !readSubObjects())
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
    QString problem;
    std::optional<EdsFile> file;
    if (const std::optional<IniFile> ini = IniFile::parse(text, &problem)) {
        EdsParser parser(*ini, nodeId);
        file = parser.parse();
        problem = parser.errorMessage();
    }
    if (!file && errorMessage != nullptr)
        *errorMessage = problem;
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
        const QByteArray text = file.read(IniFile::maximumSize + 1);
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
