// SPDX-License-Identifier: MIT
#include "vehiclefile.h"

#include "jsonplaces.h"
#include "objectname.h"
#include "wire.h"

#include <canopen/cobid.h>
#include <canopen/edsfile.h>
#include <canopen/plaintext.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>

#include <algorithm>
#include <cmath>

namespace Simulator {

namespace {

constexpr int maximumFileSize = 4 * 1024 * 1024; // bytes

struct StateName
{
    const char *name;
    CanOpen::NmtState state;
};

constexpr StateName stateNames[] = {
    {"operational", CanOpen::NmtState::Operational},
    {"preOperational", CanOpen::NmtState::PreOperational},
    {"stopped", CanOpen::NmtState::Stopped},
};

/*! Reads one vehicle; the first problem is kept with the key where it was met. */
class VehicleReader
{
public:
    explicit VehicleReader(const QString &folder)
        : m_folder(folder)
    {
    }

    std::optional<VehicleDescription> read(const QByteArray &text);
    /*! What is wrong, without control characters of the file. */
    QString errorMessage() const { return CanOpen::plainText(m_problem); }

private:
    bool fail(const QString &key, const QString &problem);
    bool checkKeys(const QJsonObject &json, const QString &place, std::initializer_list<const char *> known);
    bool readString(const QJsonObject &json, const QString &place, const char *key, QString *text);
    bool readNumber(const QJsonObject &json, const QString &place, const char *key, int lowest, int highest,
                    std::optional<int> *number);
    bool readArray(const QJsonObject &json, const QString &place, const char *key, QJsonArray *array);
    bool readSpeed(const QJsonObject &json);
    bool checkEmergencies(const NodeDescription &node, const QString &place);
    bool readFaults(const QJsonObject &json, const QString &place, QVector<Fault> *faults);
    bool readVehicle(const QJsonObject &json);
    bool readNode(const QJsonObject &json, const QString &place);
    bool readHead(const QJsonObject &json, const QString &place, NodeDescription *node);
    bool readDictionary(const QJsonObject &json, const QString &place, NodeDescription *node);
    bool readValues(const QJsonObject &json, const QString &place, NodeDescription *node);
    static QString whyNotMoved(const NodeDescription &node, CanOpen::ObjectKey object);
    bool readBehaviours(const QJsonObject &json, const QString &place, NodeDescription *node);
    bool readState(const QJsonObject &json, const QString &place, NodeDescription *node);

    QString m_folder;
    QString m_wrongKey;
    QString m_problem;
    QSet<int> m_nodeIds;
    VehicleDescription m_vehicle;
};

bool VehicleReader::fail(const QString &key, const QString &problem)
{
    m_wrongKey = key;
    m_problem = problem;
    return false;
}

bool VehicleReader::checkKeys(const QJsonObject &json, const QString &place,
                              std::initializer_list<const char *> known)
{
    const QStringList keys = json.keys();
    for (const QString &key : keys) {
        const bool isKnown = std::any_of(known.begin(), known.end(),
                                         [&key](const char *name) { return key == QLatin1String(name); });
        if (!isKnown)
            return fail(jsonMember(place, key.left(80)), QStringLiteral("this key is not known"));
    }
    return true;
}

bool VehicleReader::readString(const QJsonObject &json, const QString &place, const char *key, QString *text)
{
    const QJsonValue value = json.value(QLatin1String(key));
    if (value.isUndefined())
        return true;
    if (!value.isString())
        return fail(jsonMember(place, QLatin1String(key)), QStringLiteral("no text"));
    *text = value.toString();
    return true;
}

bool VehicleReader::readNumber(const QJsonObject &json, const QString &place, const char *key, int lowest,
                               int highest, std::optional<int> *number)
{
    const QJsonValue value = json.value(QLatin1String(key));
    if (value.isUndefined())
        return true;
    const double asDouble = value.toDouble(lowest - 1.0);
    if (!value.isDouble() || asDouble < lowest || asDouble > highest || std::trunc(asDouble) != asDouble)
        return fail(jsonMember(place, QLatin1String(key)),
                    QStringLiteral("no whole number from %1 to %2").arg(lowest).arg(highest));
    *number = static_cast<int>(asDouble);
    return true;
}

bool VehicleReader::readArray(const QJsonObject &json, const QString &place, const char *key,
                              QJsonArray *array)
{
    const QJsonValue value = json.value(QLatin1String(key));
    if (value.isUndefined())
        return true;
    if (!value.isArray())
        return fail(jsonMember(place, QLatin1String(key)), QStringLiteral("no list"));
    *array = value.toArray();
    for (int number = 0; number < array->size(); ++number) {
        if (!array->at(number).isObject())
            return fail(jsonElement(place, QLatin1String(key), number),
                        QStringLiteral("not in the form { \"key\": value }"));
    }
    return true;
}

bool VehicleReader::readFaults(const QJsonObject &json, const QString &place, QVector<Fault> *faults)
{
    const bool isBus = place.isEmpty();
    QJsonArray array;
    if (!readArray(json, place, "faults", &array))
        return false;
    for (int number = 0; number < array.size(); ++number) {
        const QString here = jsonElement(place, QStringLiteral("faults"), number);
        QString problem;
        const std::optional<Fault> fault = parseFault(array.at(number).toObject(), &problem);
        if (!fault)
            return fail(here + QLatin1Char('.') + problem.section(QLatin1String(": "), 0, 0),
                        problem.section(QLatin1String(": "), 1));
        if (isBus ? !isBusFault(*fault) : !isNodeFault(*fault))
            return fail(here + QStringLiteral(".kind"),
                        isBus ? QStringLiteral("\"%1\" is a fault of a node").arg(faultName(*fault))
                              : QStringLiteral("\"%1\" is a fault of the whole bus").arg(faultName(*fault)));
        faults->append(*fault);
    }
    return true;
}

bool VehicleReader::readSpeed(const QJsonObject &json)
{
    const QLatin1String key("speed");
    const QJsonValue value = json.value(key);
    if (value.isUndefined())
        return true;
    const double speed = value.toDouble(0);
    if (!isVehicleSpeed(speed))
        return fail(key, QStringLiteral("no number from %1 to %2").arg(slowestVehicle).arg(fastestVehicle));
    m_vehicle.speed = speed;
    return true;
}

/*! Whether what an emergency waits for is there. */
bool VehicleReader::checkEmergencies(const NodeDescription &node, const QString &place)
{
    for (int number = 0; number < node.faults.size(); ++number) {
        const auto *emergency = std::get_if<Faults::Emergency>(&node.faults.at(number));
        if (emergency == nullptr || !emergency->object)
            continue;
        const QString key = jsonElement(place, QStringLiteral("faults"), number) + QStringLiteral(".object");
        const CanOpen::ObjectEntry *entry = node.dictionary.find(*emergency->object);
        const QString object = objectKeyText(*emergency->object);
        if (entry == nullptr)
            return fail(key, QStringLiteral("the dictionary has no object %1").arg(object));
        if (!isNumber(entry->type))
            return fail(key, QStringLiteral("%1 is no number").arg(object));
    }
    return true;
}

bool VehicleReader::readVehicle(const QJsonObject &json)
{
    const QString top;
    std::optional<int> bitRate;
    QJsonArray nodes;
    if (!checkKeys(json, top, {"name", "description", "bitRate", "speed", "nodes", "faults"})
        || !readString(json, top, "name", &m_vehicle.name)
        || !readString(json, top, "description", &m_vehicle.description)
        || !readNumber(json, top, "bitRate", 1, 1000000, &bitRate) || !readArray(json, top, "nodes", &nodes)
        || !readSpeed(json) || !readFaults(json, top, &m_vehicle.faults))
        return false;
    if (bitRate && !isKnownBitRate(*bitRate))
        return fail(QStringLiteral("bitRate"),
                    QStringLiteral("%1 bit/s is no bit rate of CAN").arg(*bitRate));
    m_vehicle.bitRate = bitRate.value_or(m_vehicle.bitRate);
    if (nodes.isEmpty())
        return fail(QStringLiteral("nodes"), QStringLiteral("the vehicle has no node"));
    for (int number = 0; number < nodes.size(); ++number) {
        if (!readNode(nodes.at(number).toObject(), jsonElement(top, QStringLiteral("nodes"), number)))
            return false;
    }
    return true;
}

bool VehicleReader::readNode(const QJsonObject &json, const QString &place)
{
    NodeDescription node;
    if (!checkKeys(
            json, place,
            {"id", "name", "dictionary", "heartbeatMs", "bootUp", "state", "values", "behaviour", "faults"})
        || !readHead(json, place, &node) || !readDictionary(json, place, &node)
        || !readValues(json, place, &node) || !readBehaviours(json, place, &node)
        || !readFaults(json, place, &node.faults) || !checkEmergencies(node, place))
        return false;
    m_vehicle.nodes.append(node);
    return true;
}

/*! What stands before the objects: who it is, and how it begins. */
bool VehicleReader::readHead(const QJsonObject &json, const QString &place, NodeDescription *node)
{
    std::optional<int> id;
    std::optional<int> heartbeat;
    if (!readNumber(json, place, "id", CanOpen::firstNodeId, CanOpen::lastNodeId, &id)
        || !readNumber(json, place, "heartbeatMs", 0, 0xFFFF, &heartbeat)
        || !readString(json, place, "name", &node->name) || !readState(json, place, node))
        return false;
    if (!id)
        return fail(jsonMember(place, QStringLiteral("id")), QStringLiteral("the node ID is missing"));
    if (m_nodeIds.contains(*id))
        return fail(jsonMember(place, QStringLiteral("id")),
                    QStringLiteral("node %1 is there twice").arg(*id));
    m_nodeIds.insert(*id);
    node->id = static_cast<quint8>(*id);
    if (heartbeat)
        node->heartbeatMs = static_cast<quint16>(*heartbeat);

    const QJsonValue bootUp = json.value(QLatin1String("bootUp"));
    if (!bootUp.isUndefined() && !bootUp.isBool())
        return fail(jsonMember(place, QStringLiteral("bootUp")), QStringLiteral("neither true nor false"));
    node->bootUp = bootUp.toBool(true);
    return true;
}

bool VehicleReader::readState(const QJsonObject &json, const QString &place, NodeDescription *node)
{
    QString name;
    if (!readString(json, place, "state", &name) || name.isNull())
        return m_problem.isEmpty();
    for (const StateName &candidate : stateNames) {
        if (name == QLatin1String(candidate.name)) {
            node->state = candidate.state;
            return true;
        }
    }
    return fail(jsonMember(place, QStringLiteral("state")),
                QStringLiteral("\"%1\" is none of operational, preOperational, stopped").arg(name.left(80)));
}

bool VehicleReader::readDictionary(const QJsonObject &json, const QString &place, NodeDescription *node)
{
    const QString key = jsonMember(place, QStringLiteral("dictionary"));
    QString path;
    if (!readString(json, place, "dictionary", &path))
        return false;
    if (path.isEmpty())
        return fail(key, QStringLiteral("the device configuration file is missing"));
    QString problem;
    const QString file = QDir(m_folder).filePath(path);
    if (path.contains(QChar::Null) || !QFileInfo(file).isFile())
        return fail(key, QStringLiteral("there is no file %1").arg(file));
    std::optional<CanOpen::EdsFile> eds = CanOpen::readEdsFile(file, node->id, &problem);
    if (!eds)
        return fail(key, problem);
    node->dictionary = eds->dictionary;
    if (node->name.isEmpty())
        node->name = eds->nodeName.isEmpty() ? eds->productName : eds->nodeName;
    return true;
}

bool VehicleReader::readValues(const QJsonObject &json, const QString &place, NodeDescription *node)
{
    const QJsonValue values = json.value(QLatin1String("values"));
    const QString valuesPlace = jsonMember(place, QStringLiteral("values"));
    if (values.isUndefined())
        return true;
    if (!values.isObject())
        return fail(valuesPlace, QStringLiteral("not in the form { \"6041sub1\": 36500 }"));
    const QJsonObject object = values.toObject();
    for (auto value = object.constBegin(); value != object.constEnd(); ++value) {
        const QString here = jsonMember(valuesPlace, value.key().left(80));
        const std::optional<CanOpen::ObjectKey> key = parseObjectKey(value.key());
        if (!key)
            return fail(here, QStringLiteral("no object such as \"6164sub2\""));
        if (node->dictionary.find(*key) == nullptr)
            return fail(here, QStringLiteral("the dictionary has no such object"));
        const bool isScalar = value->isDouble() || value->isString() || value->isBool();
        if (!isScalar || !node->dictionary.setValue(*key, value->toVariant()))
            return fail(here, QStringLiteral("the value does not fit the object's data type"));
    }
    return true;
}

/*! Why a behaviour cannot move \a object; empty when it can. */
QString VehicleReader::whyNotMoved(const NodeDescription &node, CanOpen::ObjectKey object)
{
    const CanOpen::ObjectEntry *entry = node.dictionary.find(object);
    if (entry == nullptr)
        return QStringLiteral("the dictionary has no object %1").arg(objectKeyText(object));
    if (!isNumber(entry->type))
        return QStringLiteral("%1 is no number").arg(objectKeyText(object));
    for (const Behaviour &other : node.behaviours) {
        if (other.object == object)
            return QStringLiteral("%1 moves already").arg(objectKeyText(object));
    }
    return QString();
}

bool VehicleReader::readBehaviours(const QJsonObject &json, const QString &place, NodeDescription *node)
{
    QJsonArray array;
    if (!readArray(json, place, "behaviour", &array))
        return false;
    for (int number = 0; number < array.size(); ++number) {
        const QString here = jsonElement(place, QStringLiteral("behaviour"), number);
        QString problem;
        std::optional<Behaviour> behaviour = parseBehaviour(array.at(number).toObject(), &problem);
        if (!behaviour)
            return fail(here + QLatin1Char('.') + problem.section(QLatin1String(": "), 0, 0),
                        problem.section(QLatin1String(": "), 1));
        problem = whyNotMoved(*node, behaviour->object);
        if (!problem.isEmpty())
            return fail(here + QStringLiteral(".object"), problem);
        node->behaviours.push_back(std::move(*behaviour));
    }
    return true;
}

std::optional<VehicleDescription> VehicleReader::read(const QByteArray &text)
{
    if (text.size() > maximumFileSize) {
        m_problem = QStringLiteral("the file is larger than %1 MB").arg(maximumFileSize / (1024 * 1024));
        return std::nullopt;
    }
    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson(text, &parseError);
    if (parseError.error != QJsonParseError::NoError) {
        const int line = text.left(parseError.offset).count('\n') + 1;
        m_problem = QStringLiteral("line %1: %2").arg(line).arg(parseError.errorString());
        return std::nullopt;
    }
    if (!document.isObject()) {
        m_problem = QStringLiteral("the file is not in the form { \"name\": ..., \"nodes\": [ ... ] }");
        return std::nullopt;
    }
    if (readVehicle(document.object()))
        return m_vehicle;
    m_problem = QStringLiteral("line %1, ").arg(jsonLine(text, m_wrongKey)) + m_wrongKey
                + QStringLiteral(": ") + m_problem;
    return std::nullopt;
}

} // namespace

std::optional<VehicleDescription> parseVehicle(const QByteArray &text, const QString &folder,
                                               QString *errorMessage)
{
    VehicleReader reader(folder);
    std::optional<VehicleDescription> vehicle = reader.read(text);
    if (!vehicle && errorMessage != nullptr)
        *errorMessage = reader.errorMessage();
    return vehicle;
}

std::optional<VehicleDescription> readVehicleFile(const QString &path, QString *errorMessage)
{
    QFile file(path);
    QString problem;
    if (!file.open(QIODevice::ReadOnly)) {
        problem = file.errorString();
    } else {
        const QByteArray text = file.read(maximumFileSize + 1);
        std::optional<VehicleDescription> vehicle
            = parseVehicle(text, QFileInfo(path).absolutePath(), &problem);
        if (vehicle) {
            if (vehicle->name.isEmpty())
                vehicle->name = QFileInfo(path).completeBaseName();
            return vehicle;
        }
    }
    if (errorMessage != nullptr)
        *errorMessage = path + QStringLiteral(": ") + problem;
    return std::nullopt;
}

QStringList vehicleFolders()
{
    const QString fromEnvironment = qEnvironmentVariable("DRAXEL_VEHICLES");
    if (!fromEnvironment.isEmpty()) {
        QStringList folders = fromEnvironment.split(QDir::listSeparator());
        folders.removeAll(QString());
        return folders;
    }
    const QString application = QCoreApplication::applicationDirPath();
    for (const QLatin1String place :
         {QLatin1String("/vehicles"), QLatin1String("/../share/draxel/vehicles")}) {
        const QDir folder(application + place);
        if (folder.exists())
            return {folder.absolutePath()};
    }
    return {};
}

QVector<ShippedVehicle> shippedVehicles()
{
    QVector<ShippedVehicle> vehicles;
    const QStringList folders = vehicleFolders();
    for (const QString &folder : folders) {
        const QFileInfoList files
            = QDir(folder).entryInfoList({QStringLiteral("*.json")}, QDir::Files, QDir::Name);
        for (const QFileInfo &info : files) {
            const auto isKnown
                = [&info](const ShippedVehicle &other) { return other.name == info.completeBaseName(); };
            if (std::any_of(vehicles.cbegin(), vehicles.cend(), isKnown))
                continue;
            QFile file(info.filePath());
            QString description;
            if (file.open(QIODevice::ReadOnly))
                description = QJsonDocument::fromJson(file.read(maximumFileSize))
                                  .object()
                                  .value(QLatin1String("description"))
                                  .toString();
            vehicles.append({info.completeBaseName(), info.filePath(), description});
        }
    }
    return vehicles;
}

QString findVehicleFile(const QString &name, QString *errorMessage)
{
    const QVector<ShippedVehicle> vehicles = shippedVehicles();
    QStringList names;
    for (const ShippedVehicle &vehicle : vehicles) {
        if (vehicle.name == name)
            return vehicle.path;
        names.append(vehicle.name);
    }
    if (!name.contains(QChar::Null) && QFileInfo(name).isFile())
        return name;
    if (errorMessage != nullptr)
        *errorMessage
            = names.isEmpty()
                  ? QStringLiteral("There is no vehicle file \"%1\", and no vehicles are installed").arg(name)
                  : QStringLiteral("There is neither a vehicle nor a vehicle file \"%1\"; vehicles are: %2")
                        .arg(name, names.join(QLatin1String(", ")));
    return QString();
}

} // namespace Simulator
