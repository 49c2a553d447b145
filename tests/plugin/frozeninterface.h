// SPDX-License-Identifier: MIT
#pragma once

#include <QMetaType>
#include <QObject>

/*! The interface of host and plug-in as it was shipped, for a test that calls the built plug-in the way that a host
 *  built long ago does: by the places of the operations in the tables of virtual functions.
 *
 *  A copy, not to be brought up to date: when the test of it fails, the headers in src/interface have broken the hosts
 *  and plug-ins that exist.
 */

class NmtSender
{
public:
    enum NmtState { Unknown = 0, BootUp = 1, PreOperational = 2, Operational = 3, Stopped = 4 };
};
Q_DECLARE_METATYPE(NmtSender::NmtState)

class CanReceiverHub
{
public:
    virtual ~CanReceiverHub() = default;
    virtual QObject *getReceiver(quint16 cobId) = 0;
    virtual QObject *getNmtStateSource(quint8 nodeId) = 0;
};

class SdoClient
{
public:
    virtual ~SdoClient() = default;
    virtual void upload(quint8 nodeId, quint16 index, quint8 subIndex, quint16 dataType, int timeout) = 0;
    virtual QObject *getQObject() = 0;
};

class SecondarySdoClient
{
public:
    virtual ~SecondarySdoClient() = default;
    virtual QObject *getQObject() = 0;
};

class HostInterface
{
public:
    virtual ~HostInterface() = default;
    virtual CanReceiverHub *getCanReceiverHub() = 0;
    virtual SdoClient *getSdoClient() = 0;
    virtual SecondarySdoClient *getSecondarySdoClient() = 0;
};

class DXPlugInInterface
{
public:
    virtual ~DXPlugInInterface() = default;
    virtual bool activate() = 0;
    virtual void setHostInterface(HostInterface *host) = 0;
    virtual QWidget *getWidget() = 0;
    virtual bool deactivate() = 0;
    virtual bool setConnected(bool connected) = 0;
    virtual bool hostHook1(quint32 value) = 0;
    virtual bool hostHook2(quint32 value) = 0;
    virtual void setLanguage(const QString &language) = 0;
};
