// SPDX-License-Identifier: MIT
#pragma once

#include <QtPlugin>

class HostInterface;
class QString;
class QWidget;

/*! What a plug-in of the host implements.
 *
 *  The order of the operations is the binary contract between host and plug-in: new ones go to the end.
 *  All calls come from the host's GUI thread, in this order: setHostInterface(), setLanguage() (again
 *  whenever the language changes), getWidget(), setConnected() whenever the bus comes or goes, activate()
 *  and deactivate() when the user turns to the plug-in and away from it.
 */
class DXPlugInInterface
{
public:
    virtual ~DXPlugInInterface() = default;

    /*! The user turns to the plug-in. */
    virtual bool activate() = 0;

    /*! Hands over the host's services; \a host stays the host's and outlives the plug-in. */
    virtual void setHostInterface(HostInterface *host) = 0;

    /*! The plug-in's window, or null when it has none (any more). The host gives it a parent, and with it
     *  an owner.
     */
    virtual QWidget *getWidget() = 0;

    /*! The user turns away from the plug-in. */
    virtual bool deactivate() = 0;

    /*! Tells whether the bus is connected. Returns true when it is and the host has a second SDO client
     *  (HostInterface::getSecondarySdoClient()); the plug-in works without that one all the same.
     */
    virtual bool setConnected(bool connected) = 0;

    /*! Reserved for the host; the argument has no meaning yet. */
    virtual bool hostHook1(quint32 value) = 0;

    /*! Reserved for the host; the argument has no meaning yet. */
    virtual bool hostHook2(quint32 value) = 0;

    /*! Switches the plug-in's texts to \a language, a name such as "de" or "zh_CN". */
    virtual void setLanguage(const QString &language) = 0;
};

#define DXPlugInInterface_iid "org.draxel.DXPlugInInterface/0.1"
Q_DECLARE_INTERFACE(DXPlugInInterface, DXPlugInInterface_iid)
