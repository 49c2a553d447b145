// SPDX-License-Identifier: MIT
#pragma once

#include <interface/dxplugininterface.h>

#include <QObject>
#include <QPointer>
#include <QTranslator>

class OverviewForm;

/*! The root of the plug-in: what the host's loader creates, once per process.
 *
 *  Creates the window, passes the host's services on to it and loads the plug-in's translations. The window
 *  belongs to whoever gives it a parent after getWidget(); when it is gone, so are the answers of this class.
 */
class Pl_Overview : public QObject, public DXPlugInInterface
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "org.draxel.plugins.pl_overview" FILE "pl_overview.json")
    Q_INTERFACES(DXPlugInInterface)

public:
    Pl_Overview();
    ~Pl_Overview() override;

    bool activate() override;
    void setHostInterface(HostInterface *host) override;
    QWidget *getWidget() override;
    bool deactivate() override;

    /*! Returns whether the host has a second SDO client to listen to. */
    bool setConnected(bool connected) override;

    bool hostHook1(quint32 value) override;
    bool hostHook2(quint32 value) override;

    /*! Looks for "languages/pl_overview_<language>.qm" beside the program; without it the texts are English.
     */
    void setLanguage(const QString &language) override;

private:
    QPointer<OverviewForm> m_form;
    QTranslator m_translator;
};
