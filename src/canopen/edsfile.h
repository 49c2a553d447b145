// SPDX-License-Identifier: MIT
#pragma once

#include "objectdictionary.h"

#include <QMap>
#include <QString>

#include <optional>

namespace CanOpen {

/*! What an electronic data sheet or a device configuration file tells (CiA 306). */
struct EdsFile
{
    ObjectDictionary dictionary;
    QString productName;          // [DeviceInfo] ProductName; may be empty
    std::optional<quint8> nodeId; // [DeviceComissioning] NodeID of a DCF
    QString nodeName;             // [DeviceComissioning] NodeName of a DCF; may be empty

    /*! What the maker calls its emergencies, by error code. CiA 306 has no place for this; here it is a section of its own,
     *  which other programs pass over: [EmergencyErrorCodes] 0xFF12=Cell too cold
     */
    QMap<quint16, QString> emergencyTexts;
};

/*! Reads the text of an EDS or DCF.
 *
 *  \a nodeId stands for `$NODEID` in values; 0 takes the file's own. A ParameterValue (DCF) has precedence over a
 *  DefaultValue. Empty on an error; \a errorMessage then names line, section and key.
 */
std::optional<EdsFile> parseEds(const QByteArray &text, quint8 nodeId, QString *errorMessage);

/*! Reads the file \a path likewise; \a errorMessage then begins with the file's name. */
std::optional<EdsFile> readEdsFile(const QString &path, quint8 nodeId, QString *errorMessage);

} // namespace CanOpen
