// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QString>
#include <QStringList>

class QVariant;

/*! Turns raw values of CANopen objects (CiA 301, CiA 454) into texts for tables, dialogs and the report.
 *
 *  Every operation is a static service without state: the caller fetches the raw value, an integer in a
 *  QVariant as it was read from the bus or a file, and chooses the operation. None of them fails; a value
 *  without a meaning gives a fallback text. Unless said otherwise a value is taken as an unsigned 32-bit
 *  number, so that a negative one counts with its two's complement, and the texts are translated in the
 *  context "DataInterpreter".
 *
 *  Outputs that are passed by reference are replaced, or appended to where the operation says so.
 */
class DataInterpreter : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /*! Returns the display name of an object or sub-object; empty when the object description table has no
     *  row.
     */
    static QString objectName(quint16 index, quint8 subIndex);

    /*! Returns the colour of a value by the object's limits, which are in the value's own raw unit.
     *
     *  Red above the maximum, blue below the minimum, black in range, without limits or without a row.
     */
    static Qt::GlobalColor checkLimits(quint16 index, const QVariant &value);

    /*! Returns a value with its unit, two decimals and its sign: 36500 of object 6040h is "36.50 V".
     *
     *  Without a unit it is an unsigned decimal number; empty when the object description table has no row.
     *  Every sub-index of an object has the same unit.
     */
    static QString formatValue(quint16 index, quint8 subIndex, const QVariant &value);

    /*! Gives label and text of an entry of the identity object 1018h (CiA 301).
     *
     *  \a text of sub-index 1 is the vendor's name, its number when the name is not known, and stays what it
     *  was when there is no vendor table.
     */
    static void interpretIdentity(const QVariant &value, quint8 subIndex, QString &name, QString &text);

    /*! Device type 1000h (CiA 301, CiA 454): six lines. */
    static QString interpretDeviceType(const QVariant &value);

    /*! Error register 1001h (CiA 301): one line for each error; may be empty or start with a line break. */
    static QString interpretErrorRegister(const QVariant &value);

    /*! Security device status 6311h: seven lines, each ending in a line break. */
    static QString interpretSecurityStatus(const QVariant &value);

    /*! State of a finite state automaton (6 bits of the device status), with its colour; not translated. */
    static QString interpretFsaState(quint8 state, Qt::GlobalColor &color);

    /*! State of a voltage converter's processing, with its colour; not translated. */
    static QString interpretProcessingState(quint8 state, Qt::GlobalColor &color);

    /*! Supported device alarms 600Ah: texts joined by " | "; may be empty. */
    static QString interpretSupportedAlarms(const QVariant &value);

    /*! Device control command 6001h; \a text is empty for an unknown command. */
    static void interpretControlCommand(const QVariant &value, QString &text);

    /*! Device status 6002h: what is active, each word ending in a blank, and the device's state. */
    static void interpretDeviceStatus(const QVariant &value, QString &flags, QString &state);

    /*! Status of the energy management system 6080h: words, each ending in a blank. */
    static QString interpretSystemStatus(const QVariant &value);

    /*! Device capability 6003h: appends one text for each capability to \a texts. */
    static void interpretDeviceCapability(const QVariant &value, QStringList &texts);

    /*! Implemented profile version 600Eh: the four numbers of a profile's version and their label. */
    static void interpretSpecificationVersions(const QVariant &value, QString &label, QString &text);

    /*! Installed and connected batteries, numbers 1 to 16; appends to \a installed and \a connected. */
    static void interpretBatteryList(const QVariant &value, QString &installed, QString &connected);

    /*! Security capability 6310h: what is supported, joined by " | ", and the key class (empty when unknown).
     */
    static void interpretSecurityProperties(const QVariant &value, QString &label, QString &features,
                                            QString &keyClassLabel, QString &keyClass);

    /*! Type of light electric vehicle 6081h. */
    static QString interpretLevType(const QVariant &value);

    /*! Battery chemistry: bits 7 to 4 of the type of battery 6100h. */
    static QString interpretBatteryChemistry(const QVariant &value);
};
