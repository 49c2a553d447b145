// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

/*! A library with the right identifier that does not implement the host's interface. */
class WrongVersionPlugin : public QObject
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "org.draxel.plugins.wrongversion" FILE "wrongversionplugin.json")
};
