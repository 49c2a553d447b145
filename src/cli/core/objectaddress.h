// SPDX-License-Identifier: MIT
#pragma once

#include <canopen/objectkey.h>

#include <QString>

#include <optional>

/*! An object of a node as it is written on a command line. Empty for what cannot be read so. */
struct ObjectAddress
{
    quint8 nodeId = 0;
    CanOpen::ObjectKey key;

    /*! "2:6040:1", "2:0x6040:1", "2:1000h"; sub-index 0 when it is left out. */
    static std::optional<ObjectAddress> parse(const QString &text);

    /*! "1018", "1018h" and "0x1018". */
    static std::optional<quint16> parseIndex(QString text);
    /*! From 0 to 255, "10" or "0x0A". */
    static std::optional<quint8> parseSubIndex(const QString &text);
    /*! From 1 to 127, likewise. */
    static std::optional<quint8> parseNodeId(const QString &text);
};
